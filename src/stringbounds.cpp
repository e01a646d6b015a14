// Bounds of strings and 8-bit strings: estimates by the share of texts that lie below a key, and keys clipped to the
// length of index keys.

#include <algorithm>
#include <cstring>
#include <limits>

#include "keybounds.h"
#include "stringarray.h"
#include "textshare.h"
#include "vqbase.h"
#include "vqistring.h"
#include "wildcard.h"

namespace {

using vq::Interval;
using vq::NoWildcard;
using vq::TextContext;

constexpr const char* SourceName = "src\\vqtypevl";

constexpr unsigned short OwnOperators = 0x800F;  // the other bits are the caller's

// --- Estimates, of texts as sequences of symbols

template <class Symbols>
struct Text {
    vq::TextPlace<Symbols> place;
    bool isNull = false;

    std::uint32_t Symbol() const { return place.symbols.Symbol(); }
};

// Null lies below all texts. How many keys are null is not known.
constexpr double NullShare = 1.0 / 64;

// A predicate's key between both ends of an index.
struct TextRange {
    Interval key, index;

    double Length() const { return index.high - index.low; }

    // What the operators select; nothing where the ends are out of order. Never more than the length: the parts are
    // differences of the same numbers.
    double SelectedArea(unsigned short operators) const {
        if (!(Length() > 0)) return 0;
        const bool equal = operators & VqOperator_Equal, less = operators & VqOperator_Less;
        const bool greater = operators & VqOperator_Greater;
        if (less && greater) return equal ? Length() : Length() - (key.high - key.low);
        if (less) return (equal ? key.high : key.low) - index.low;
        if (greater) return index.high - (equal ? key.low : key.high);
        return equal ? key.high - key.low : 0;
    }
};

enum class Relation { Inside, Below, Above, Everything };

// The three texts of an estimate. They are read once.
template <class Symbols, class Alphabet>
struct RangeReader {
    Alphabet alphabet;
    TextContext context;  // at the start of the texts
    Text<Symbols> key, low, high;
    Relation relation = Relation::Inside;
    unsigned leastClass = 0;

    TextRange Read() {
        if (!low.isNull && !high.isNull) SkipCommonBeginning();
        leastClass = std::min({ClassOf(key), ClassOf(low), ClassOf(high)});
        const Interval index = IndexInterval();
        return {KeyInterval(index), index};
    }

    // What both ends have in common all keys of the index have, and none lies apart by it.
    void SkipCommonBeginning() {
        if (key.isNull) relation = Relation::Below;
        for (std::uint32_t symbol; (symbol = low.Symbol()) != 0 && symbol == high.Symbol();) {
            if (relation == Relation::Inside) relation = Follow(symbol);
            context = alphabet.Behind(symbol);
            low.place.symbols.Step();
            high.place.symbols.Step();
        }
    }
    Relation Follow(std::uint32_t symbol) {
        const std::uint32_t own = key.Symbol();
        if (own == 0 && key.place.isBeginning) return Relation::Everything;
        if (own != symbol) return own < symbol ? Relation::Below : Relation::Above;
        key.place.symbols.Step();
        return Relation::Inside;
    }

    // Texts of another collation class lie apart, each class on a line of its own. The end of a text has no class.
    static unsigned ClassOf(const Text<Symbols>& text) {
        const std::uint32_t symbol = text.isNull ? 0 : text.Symbol();
        return symbol != 0 ? symbol >> 16 : std::numeric_limits<unsigned>::max();
    }
    void Start(Text<Symbols>& text) const {
        text.place.context = context;
        if (text.isNull) {
            text.place.place = {-NullShare, NullShare};
            text.place.isRead = true;
        } else if (text.Symbol() != 0) {
            text.place.place.begin = ClassOf(text) - leastClass;
        }
    }

    // Where the ends lie far apart, they are read no further than that does not count any more.
    Interval IndexInterval() {
        constexpr double Coarse = 1.0 / 2048, Far = 1.0 / 4;
        const auto between = [this](double width) {
            low.place.NarrowTo(width, alphabet);
            high.place.NarrowTo(width, alphabet);
            return Interval{low.place.place.begin, high.place.place.End()};
        };
        Start(low);
        Start(high);
        const Interval coarse = between(Coarse);
        return coarse.high - coarse.low > Far ? coarse : between(vq::LeastWidth);
    }
    Interval KeyInterval(const Interval& index) {
        if (relation == Relation::Below) return {index.low, index.low};
        if (relation == Relation::Above) return {index.high, index.high};
        if (relation == Relation::Everything) return index;
        Start(key);
        key.place.NarrowTo(vq::LeastWidth, alphabet);
        const vq::Slice& place = key.place.place;
        return {std::clamp(place.begin, index.low, index.high), std::clamp(place.End(), index.low, index.high)};
    }
};

// `charWildPos` is 0 for a key that holds no wildcard.
double EstimateText(unsigned short operators, std::size_t charWildPos, const TextRange& range) {
    const double valueRange = range.Length(), valueTotalArea = range.SelectedArea(operators);
    if (!(valueTotalArea > 0)) return 0;
    if (!(charWildPos != 0 || valueRange >= valueTotalArea)) {
        VIQA_assert("charWildPos != 0 || valueRange >= valueTotalArea", SourceName, __LINE__);
    }
    constexpr double Least = std::numeric_limits<float>::epsilon();
    return std::clamp(valueTotalArea / valueRange, Least, 1.0);
}

// --- Keys as they are recorded

// A key in the making, clipped where it gets too long.
class KeyBuffer {
  public:
    explicit KeyBuffer(unsigned char format) : format_(format) {}

    void Add(const void* bytes, unsigned long n) {
        n = std::min(n, Room());
        std::memcpy(bytes_ + actualLen_, bytes, n);
        actualLen_ += n;
    }
    void AddByte(unsigned char byte) { Add(&byte, 1); }
    void AddWord(unsigned long value) {
        const auto word = static_cast<std::uint16_t>(value);
        unsigned char stored[2];
        Add(stored, ShortStore(stored, &word, format_, 1));
    }
    void FillWith(unsigned char byte, unsigned long most = VqINDEX_MAX_KEYLEN) {
        while (actualLen_ < most) AddByte(byte);
    }

    void RecordLow(VqIdxBounds* scanBounds, unsigned short operators) const {
        Record(scanBounds, operators | VqOperator_Greater);
    }
    void RecordHigh(VqIdxBounds* scanBounds, unsigned short operators) const {
        Record(scanBounds, operators | VqOperator_Less);
    }
    void Record(VqIdxBounds* scanBounds, int operators) const {
        if (!(actualLen_ <= VqINDEX_MAX_KEYLEN)) {
            VIQA_assert("actualLen <= VqINDEX_MAX_KEYLEN", SourceName, __LINE__);
        }
        vq::RecordKey(scanBounds, static_cast<unsigned short>(operators), bytes_, actualLen_);
    }

  private:
    unsigned long Room() const { return VqINDEX_MAX_KEYLEN - actualLen_; }

    unsigned char bytes_[VqINDEX_MAX_KEYLEN];
    unsigned long actualLen_ = 0;
    unsigned char format_;
};

// Keys are stored ones; the code of the memory form reads as this machine's byte order.
unsigned char ByteOrderOf(unsigned char format) {
    const unsigned char order = format & VqFormat_OrderMask;
    return order == VqFormat_Memory ? static_cast<unsigned char>(VqFormat_LittleEndian) : order;
}

// --- Strings

constexpr unsigned char UnicodeSet = 253;
constexpr unsigned long RecordHead = 4, RecordTrailer = 2;  // length, code set, language; 0x00 and 0xFF

struct StringKey {
    const char* text;
    unsigned char codeSet, language;
    unsigned char order;
    std::size_t length;                 // in characters
    std::size_t wildcard = NoWildcard;  // in characters too

    bool HasWildcard() const { return wildcard != NoWildcard; }
    bool IsNull() const { return vq::IsNullText(codeSet, language); }
    unsigned CharSize() const { return vq::CharSizeOf(codeSet); }
    std::size_t Characters() const { return HasWildcard() ? wildcard : length; }
    unsigned long Bytes() const { return static_cast<unsigned long>(Characters() * CharSize()); }
    bool SortsLike(const StringKey& other) const { return codeSet == other.codeSet && language == other.language; }
};

// In line, as is what reads the ends of an index: a processor waits for what it has just written piece by piece when it
// is copied as a whole.
[[gnu::always_inline]] inline StringKey ReadString(const vq::StringArray& array, unsigned char order) {
    vq::StringElement element = array.Current();
    element.Repair();
    return {element.text, element.codeSet, element.language, order, element.Characters()};
}

void AddHead(KeyBuffer& key, unsigned long bytes, unsigned char codeSet, unsigned char language) {
    key.AddWord(bytes + RecordHead);
    key.AddByte(codeSet);
    key.AddByte(language);
}

void AddTrailer(KeyBuffer& key) {
    key.AddByte(0);
    key.AddByte(0xFF);
}

void AddRecord(KeyBuffer& key, const StringKey& string, unsigned long bytes) {
    AddHead(key, bytes, string.codeSet, string.language);
    key.Add(string.text, bytes);
    AddTrailer(key);
}

// Null matches a pattern of '*' and lies below the empty text.
void AddNull(KeyBuffer& key) {
    AddHead(key, 0, 0, VqNullMark);
    AddTrailer(key);
}

// As many characters of the text, at most, as leave no letter in two that is written with several.
std::size_t WholeLetters(const StringKey& string, const vq::KeySource& source, std::size_t most) {
    const std::size_t all = string.Characters();
    if (all <= most) return all;
    std::size_t whole = 0;
    for (vq::KeyReader keys(source, string.text, all); keys.Key() != 0; keys.Step()) {
        const std::size_t at = all - keys.Remaining();
        if (at > most) break;
        whole = at;
    }
    return whole;
}

// The text in Unicode, whose last unit sorts behind all that can follow it in any code set, and that unit to the end.
void AddLastOfCollation(KeyBuffer& key, const StringKey& string) {
    constexpr unsigned long bytes = VqINDEX_MAX_KEYLEN - RecordHead - RecordTrailer;
    constexpr std::size_t leastLast = 2;
    const vq::KeySource source(vq::CodeSetOf(string.codeSet), string.language, string.order);
    const std::size_t characters = WholeLetters(string, source, bytes / 2 - leastLast);
    const unsigned charSize = string.CharSize();
    AddHead(key, bytes, UnicodeSet, string.language);
    for (std::size_t i = 0; i < characters; ++i) {
        key.AddWord(source.set->ToUnicode(vq::LoadChar(string.text + i * charSize, charSize, string.order)));
    }
    key.FillWith(0xFF, RecordHead + bytes);
    AddTrailer(key);
}

// Of native bytes 0xFF is the last. It can occur in texts, so the key counts as clipped: what goes on like it is equal.
void AddLastOfBytes(KeyBuffer& key, const StringKey& string) {
    AddHead(key, VqINDEX_MAX_KEYLEN - RecordHead + 1, 0, string.language);
    key.Add(string.text, static_cast<unsigned long>(string.Characters()));
    key.FillWith(0xFF);
}

void RecordPattern(VqIdxBounds* scanBounds, unsigned short operators, const StringKey& string) {
    KeyBuffer low(string.order), high(string.order);
    const auto beginning = static_cast<unsigned long>(string.wildcard * string.CharSize());
    if (beginning == 0)
        AddNull(low);
    else
        AddRecord(low, string, beginning);
    if (string.codeSet == 0)
        AddLastOfBytes(high, string);
    else
        AddLastOfCollation(high, string);
    low.RecordLow(scanBounds, operators);
    high.RecordHigh(scanBounds, operators);
}

// Keys that fit are copied as they are, in whatever layout. A clipped one is a record that says how long its text is.
void RecordLiteral(VqIdxBounds* scanBounds, unsigned short operators, const void* key, unsigned long size,
                   const StringKey& string) {
    if (size <= VqINDEX_MAX_KEYLEN) return vq::RecordKey(scanBounds, operators, key, size);
    KeyBuffer clipped(string.order);
    const bool isRecord = string.text == static_cast<const char*>(key) + RecordHead;
    if (isRecord)
        clipped.Add(key, size);
    else
        AddRecord(clipped, string, string.Bytes());
    clipped.Record(scanBounds, operators);
}

// False without statistics: an end of the index that is missing, or too short for a string.
[[gnu::always_inline]] inline bool ReadEnd(const void* key, std::uint32_t length, unsigned char order,
                                           unsigned long lacking, StringKey& end) {
    if (key == nullptr || length == 0) return false;
    const vq::StringArray array(order, length, key, lacking);
    if (array.Ended()) return false;
    end = ReadString(array, order);
    return true;
}

Text<vq::ByteSymbols> BytesOf(const StringKey& string) {
    return {{vq::ByteSymbols(string.text, string.Characters()), string.HasWildcard()}, string.IsNull()};
}
Text<vq::OrderSymbols> OrdersOf(const StringKey& string, const vq::KeySource& source) {
    return {{vq::OrderSymbols(source, string.text, string.Characters()), string.HasWildcard()}, string.IsNull()};
}
Text<vq::ReadyOrderSymbols> OrdersOf(const StringKey& string, const std::int32_t* table) {
    return {{vq::ReadyOrderSymbols(table, string.text, string.Characters()), string.HasWildcard()}, string.IsNull()};
}
vq::KeySource SourceOf(const StringKey& string) {
    return vq::KeySource(vq::CodeSetOf(string.codeSet), string.language, string.order);
}

// False where a character has no ready key. Flat, so that the texts' state can stay in registers.
[[gnu::flatten]] bool ReadReadyOrders(const StringKey& key, const StringKey& low, const StringKey& high,
                                      const std::int32_t* table, TextRange& range) {
    RangeReader<vq::ReadyOrderSymbols, vq::OrderAlphabet> reader = {
        {}, vq::StartOfText(key.language), OrdersOf(key, table), OrdersOf(low, table), OrdersOf(high, table)};
    range = reader.Read();
    return reader.key.place.symbols.AllReady() && reader.low.place.symbols.AllReady() &&
           reader.high.place.symbols.AllReady();
}

TextRange ReadOrders(const StringKey& key, const vq::KeySource& keys, const StringKey& low, const StringKey& high) {
    TextRange range;
    if (keys.table.count == 256 && low.SortsLike(key) && high.SortsLike(key) &&
        ReadReadyOrders(key, low, high, keys.table.keys, range)) {
        return range;
    }
    const vq::KeySource lows = SourceOf(low), highs = SourceOf(high);
    RangeReader<vq::OrderSymbols, vq::OrderAlphabet> reader = {
        {}, vq::StartOfText(key.language), OrdersOf(key, keys), OrdersOf(low, lows), OrdersOf(high, highs)};
    return reader.Read();
}

double EstimateString(unsigned short operators, const StringKey& key, const vq::KeySource& keys, const StringKey& low,
                      const StringKey& high) {
    const std::size_t charWildPos = key.HasWildcard() ? key.wildcard : 0;
    const bool native = (key.codeSet | low.codeSet | high.codeSet) == 0;
    if (!native) return EstimateText(operators, charWildPos, ReadOrders(key, keys, low, high));
    RangeReader<vq::ByteSymbols, vq::ByteAlphabet> reader = {
        {}, vq::StartOfText(key.language), BytesOf(key), BytesOf(low), BytesOf(high)};
    return EstimateText(operators, charWildPos, reader.Read());
}

double BoundStrings(const VqIdxBounds* indexBounds, unsigned short& operators, const void* key, unsigned char format,
                    unsigned long count, VqIdxBounds* scanBounds, unsigned long lacking) {
    operators &= OwnOperators;
    if (key == nullptr || count == 0) return 0;
    const unsigned char order = ByteOrderOf(format);
    const unsigned long size = StringSizeGet(key, order, order, count);
    const vq::StringArray array(order, size, key, lacking);
    if (array.Ended()) {  // a record without code set and language is no text
        vq::RecordKey(scanBounds, operators, key, size);
        return 0;
    }
    StringKey string = ReadString(array, order);
    const vq::KeySource source = SourceOf(string);
    string.wildcard = string.codeSet == 0 ? vq::FindWildcardByte(string.text, string.length)
                                          : vq::FindWildcard(source, string.text, string.length);
    if (string.HasWildcard()) {
        operators |= VqOperator_Wildcard;
        RecordPattern(scanBounds, operators, string);
    } else if (scanBounds != nullptr) {
        RecordLiteral(scanBounds, operators, key, size, string);
    }
    StringKey low, high;
    if (indexBounds == nullptr || !ReadEnd(indexBounds->lowKey, indexBounds->lowKeyLength, order, lacking, low) ||
        !ReadEnd(indexBounds->highKey, indexBounds->highKeyLength, order, lacking, high)) {
        return 0;
    }
    return EstimateString(operators, string, source, low, high);
}

}  // namespace

VQ_BOUNDS_FUNCTION(StringEvalAndBound, BoundStrings(indexBounds, operators, key, format, count, scanBounds, 0))
VQ_BOUNDS_FUNCTION(LegacyStringEvalAndBound, BoundStrings(indexBounds, operators, key, format, count, scanBounds, 2))

// --- 8-bit strings

namespace {

constexpr unsigned long ByteRecordHead = 3;  // flags, length

struct ByteKey {
    const unsigned char* text;
    unsigned long length;  // of the text; where there is a wildcard, in front of it
    unsigned char flags;
    unsigned char order;
    bool hasWildcard;

    bool IsRaw() const { return flags & VqIStringFlag_Raw; }
};

// The record starts at `record`, of whose bytes `length` may be read.
ByteKey ReadByteKey(const void* record, unsigned long length, unsigned char order) {
    const auto* const at = static_cast<const unsigned char*>(record);
    std::uint16_t declared;
    ShortStore(&declared, at + 1, order, 1);
    const unsigned long there = std::min<unsigned long>(declared, length - ByteRecordHead);
    return {at + ByteRecordHead, there, at[0], order, false};
}

void CutAtWildcard(ByteKey& key) {
    const auto isWildcard = [](unsigned char byte) { return byte == '*' || byte == '?'; };
    const unsigned char* const end = std::find(key.text, key.text + key.length, 0);
    const unsigned char* const found = std::find_if(key.text, end, isWildcard);
    key.hasWildcard = found != end;
    if (key.hasWildcard) key.length = static_cast<unsigned long>(found - key.text);
}

// The table of a key; its own flags stand for those of the texts that it is compared with.
const vq::WeightTable& WeightsOf(const VqIString*, unsigned char) { return vq::istringWeights; }
const vq::WeightTable& WeightsOf(const VqCaseIString*, unsigned char flags) { return vq::CaseWeights(flags); }

void AddByteHead(KeyBuffer& buffer, const ByteKey& key, unsigned long length) {
    buffer.AddByte(key.flags);
    buffer.AddWord(length);
}

// The byte that is last in the order.
unsigned char LastByte(const ByteKey& key, const vq::WeightTable& table) {
    if (key.IsRaw()) return 0xFF;
    const auto* const heaviest = std::max_element(std::begin(table.weight), std::end(table.weight));
    return static_cast<unsigned char>(heaviest - std::begin(table.weight));
}

// The last byte of the order fills the high end: 0xFF among raw bytes, else the one that weighs most. It can occur in
// texts, so the key counts as clipped: what goes on like it is equal.
void RecordBytePattern(VqIdxBounds* scanBounds, unsigned short operators, const ByteKey& key,
                       const vq::WeightTable& table) {
    KeyBuffer low(key.order), high(key.order);
    AddByteHead(low, key, key.length);
    low.Add(key.text, key.length);
    AddByteHead(high, key, VqINDEX_MAX_KEYLEN - ByteRecordHead + 1);
    high.Add(key.text, key.length);
    high.FillWith(LastByte(key, table));
    low.RecordLow(scanBounds, operators);
    high.RecordHigh(scanBounds, operators);
}

double EstimateByteKey(unsigned short operators, const ByteKey& key, const ByteKey& low, const ByteKey& high,
                       const vq::WeightTable& table) {
    const std::size_t charWildPos = key.hasWildcard ? key.length : 0;
    if (key.IsRaw()) {
        const auto bytes = [](const ByteKey& k) {
            return Text<vq::ByteSymbols>{{vq::ByteSymbols(k.text, k.length), k.hasWildcard}};
        };
        RangeReader<vq::ByteSymbols, vq::ByteAlphabet> reader = {
            {}, vq::NoLetterBefore, bytes(key), bytes(low), bytes(high)};
        return EstimateText(operators, charWildPos, reader.Read());
    }
    const auto weights = [&table](const ByteKey& k) {
        return Text<vq::WeightSymbols>{{vq::WeightSymbols(table, k.text, k.length), k.hasWildcard}};
    };
    RangeReader<vq::WeightSymbols, vq::WeightAlphabet> reader = {
        {&table}, vq::NoLetterBefore, weights(key), weights(low), weights(high)};
    return EstimateText(operators, charWildPos, reader.Read());
}

// False without statistics, as for strings.
bool ReadEnd(const void* key, std::uint32_t length, unsigned char order, ByteKey& end) {
    if (key == nullptr || length < ByteRecordHead) return false;
    end = ReadByteKey(key, length, order);
    return true;
}

template <class Value>
double BoundByteStrings(const VqIdxBounds* indexBounds, unsigned short& operators, const void* key,
                        unsigned char format, unsigned long count, VqIdxBounds* scanBounds,
                        decltype(VqIStringSizeGet)* sizeGet) {
    operators &= OwnOperators;
    if (key == nullptr || count == 0) return 0;
    const unsigned char order = ByteOrderOf(format);
    ByteKey own = ReadByteKey(key, std::numeric_limits<unsigned long>::max(), order);
    CutAtWildcard(own);
    const vq::WeightTable& table = WeightsOf(static_cast<const Value*>(nullptr), own.flags);
    if (own.hasWildcard) {
        operators |= VqOperator_Wildcard;
        RecordBytePattern(scanBounds, operators, own, table);
    } else if (scanBounds != nullptr) {
        KeyBuffer clipped(order);
        clipped.Add(key, sizeGet(key, order, order, count));
        clipped.Record(scanBounds, operators);
    }
    ByteKey low, high;
    if (indexBounds == nullptr || !ReadEnd(indexBounds->lowKey, indexBounds->lowKeyLength, order, low) ||
        !ReadEnd(indexBounds->highKey, indexBounds->highKeyLength, order, high)) {
        return 0;
    }
    return EstimateByteKey(operators, own, low, high, table);
}

}  // namespace

VQ_BOUNDS_FUNCTION(VqIStringEvalAndBound, BoundByteStrings<VqIString>(indexBounds, operators, key, format, count,
                                                                      scanBounds, VqIStringSizeGet))
VQ_BOUNDS_FUNCTION(VqCaseIStringEvalAndBound, BoundByteStrings<VqCaseIString>(indexBounds, operators, key, format,
                                                                              count, scanBounds, VqCaseIStringSizeGet))
