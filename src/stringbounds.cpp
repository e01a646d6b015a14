// Bounds of strings: estimates by the share of texts that lie below a key, and keys clipped to the length of index
// keys.

#include <algorithm>

#include "keybuffer.h"
#include "stringarray.h"
#include "textrange.h"
#include "vqbase.h"
#include "wildcard.h"

namespace {

using vq::KeyBuffer;
using vq::NoWildcard;

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
    bool IsNative() const { return codeSet == 0 || IsNull(); }
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

vq::KeySource SourceOf(const StringKey& string) {
    return vq::KeySource(vq::CodeSetOf(string.codeSet), string.language, string.order);
}

void AddHead(KeyBuffer& key, unsigned long bytes, unsigned char codeSet, unsigned char language) {
    const auto length = static_cast<std::uint16_t>(bytes + RecordHead);
    unsigned char head[RecordHead] = {0, 0, codeSet, language};
    ShortStore(head, &length, key.Format(), 1);
    key.AddClipped(head, sizeof head);
}

void AddTrailer(KeyBuffer& key) {
    constexpr unsigned char trailer[RecordTrailer] = {0, 0xFF};
    key.AddClipped(trailer, sizeof trailer);
}

void AddRecord(KeyBuffer& key, const StringKey& string) {
    AddHead(key, string.Bytes(), string.codeSet, string.language);
    key.AddClipped(string.text, string.Bytes());
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

// A language of the last collation class, whose last unit sorts behind the texts of all languages.
unsigned char LastLanguage() {
    const VqCodeSet& unicode = vq::CodeSetOf(UnicodeSet);
    unsigned char last = 0;
    for (unsigned char language = 0; VqLanguageContext::GetLanguageName(language) != nullptr; ++language) {
        if (unicode.GetCollationClass(language) > unicode.GetCollationClass(last)) last = language;
    }
    return last;
}

// The text in Unicode, whose last unit sorts behind all that can follow it in any code set, and that unit to the end.
// Where elements in front of it leave no room, the key ends with them, as a clipped one does.
void AddLastOfCollation(KeyBuffer& key, const StringKey& string) {
    constexpr unsigned long unit = 2;
    if (key.Room() < RecordHead + unit + RecordTrailer) return;
    const unsigned long units = (key.Room() - RecordHead - RecordTrailer) / unit;
    const vq::KeySource source = SourceOf(string);
    const auto characters = static_cast<unsigned long>(WholeLetters(string, source, units - 1));
    const unsigned charSize = string.CharSize();
    AddHead(key, units * unit, UnicodeSet, characters != 0 ? string.language : LastLanguage());
    for (unsigned long i = 0; i < characters; ++i) {
        key.AddWord(source.set->ToUnicode(vq::LoadChar(string.text + i * charSize, charSize, string.order)));
    }
    key.FillWith(0xFF, (units - characters) * unit);
    AddTrailer(key);
}

// Of native bytes 0xFF is the last. It can occur in texts, so the key counts as clipped: what goes on like it is equal.
void AddLastOfBytes(KeyBuffer& key, const StringKey& string) {
    if (key.Room() < RecordHead) return;
    AddHead(key, key.Room() - RecordHead + 1, 0, string.language);
    key.AddClipped(string.text, string.Bytes());
    key.FillWith(0xFF, key.Room());
}

// An array of keys of which one is a pattern.
struct PatternKey {
    vq::StringArray array;
    unsigned long before;  // elements in front of the pattern; they stay as they are
    StringKey pattern;
    bool byBytes;
};

void AddElements(KeyBuffer& key, vq::StringArray array, unsigned char order, unsigned long count) {
    for (; count != 0 && !array.Ended(); --count) {
        AddRecord(key, ReadString(array, order));
        array.Advance(array.Current());
    }
}

[[gnu::noinline]] void RecordPattern(VqIdxBounds* scanBounds, unsigned short operators, const PatternKey& key) {
    if (scanBounds == nullptr) return;
    const StringKey& pattern = key.pattern;
    const bool isEmpty = pattern.Characters() == 0;
    KeyBuffer low(pattern.order), high(pattern.order);
    AddElements(low, key.array, pattern.order, key.before);
    AddElements(high, key.array, pattern.order, key.before);
    if (isEmpty)
        AddNull(low);
    else
        AddRecord(low, pattern);
    if (key.byBytes && !isEmpty)
        AddLastOfBytes(high, pattern);
    else
        AddLastOfCollation(high, pattern);
    low.RecordLow(scanBounds, operators);
    high.RecordHigh(scanBounds, operators);
}

// Keys that fit are copied as they are, in whatever layout. A clipped one is a record that says how long its text is.
void RecordLiteral(VqIdxBounds* scanBounds, unsigned short operators, const void* key, unsigned long size,
                   const vq::StringArray& array, unsigned char order, unsigned long count) {
    if (scanBounds == nullptr) return;
    if (size <= VqINDEX_MAX_KEYLEN) return vq::RecordKey(scanBounds, operators, key, size);
    KeyBuffer clipped(order);
    const bool isRecord = array.Current().text == static_cast<const char*>(key) + RecordHead;
    if (isRecord)
        clipped.AddClipped(key, size);
    else
        AddElements(clipped, array, order, count);
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

vq::Text<vq::ByteSymbols> BytesOf(const StringKey& string) {
    return {{vq::ByteSymbols(string.text, string.Characters()), string.HasWildcard()}, string.IsNull()};
}
vq::Text<vq::OrderSymbols> OrdersOf(const StringKey& string, const vq::KeySource& source) {
    return {{vq::OrderSymbols(source, string.text, string.Characters()), string.HasWildcard()}, string.IsNull()};
}
vq::Text<vq::ReadyOrderSymbols> OrdersOf(const StringKey& string, const std::int32_t* table) {
    return {{vq::ReadyOrderSymbols(table, string.text, string.Characters()), string.HasWildcard()}, string.IsNull()};
}
// False where a character has no ready key. Flat, so that the texts' state can stay in registers.
[[gnu::flatten]] bool ReadReadyOrders(const StringKey& key, const StringKey& low, const StringKey& high,
                                      const std::int32_t* table, vq::TextRange& range) {
    vq::RangeReader<vq::ReadyOrderSymbols, vq::OrderAlphabet> reader = {
        {}, vq::StartOfText(key.language), OrdersOf(key, table), OrdersOf(low, table), OrdersOf(high, table)};
    range = reader.Read();
    return reader.key.place.symbols.AllReady() && reader.low.place.symbols.AllReady() &&
           reader.high.place.symbols.AllReady();
}

vq::TextRange ReadOrders(const StringKey& key, const vq::KeySource& keys, const StringKey& low, const StringKey& high) {
    vq::TextRange range;
    if (keys.table.count == 256 && low.SortsLike(key) && high.SortsLike(key) &&
        ReadReadyOrders(key, low, high, keys.table.keys, range)) {
        return range;
    }
    const vq::KeySource lows = SourceOf(low), highs = SourceOf(high);
    vq::RangeReader<vq::OrderSymbols, vq::OrderAlphabet> reader = {
        {}, vq::StartOfText(key.language), OrdersOf(key, keys), OrdersOf(low, lows), OrdersOf(high, highs)};
    return reader.Read();
}

double EstimateString(unsigned short operators, const StringKey& key, const vq::KeySource& keys, const StringKey& low,
                      const StringKey& high, bool byBytes) {
    const std::size_t charWildPos = key.HasWildcard() ? key.wildcard : 0;
    if (!byBytes) return vq::EstimateText(operators, charWildPos, ReadOrders(key, keys, low, high));
    vq::RangeReader<vq::ByteSymbols, vq::ByteAlphabet> reader = {
        {}, vq::StartOfText(key.language), BytesOf(key), BytesOf(low), BytesOf(high)};
    return vq::EstimateText(operators, charWildPos, reader.Read());
}

// Texts of the native set compare with native ones by bytes and with others by letters: a pattern that may meet others
// ends where it holds a wildcard for either. Null is no pattern.
std::size_t FindWildcard(const StringKey& string, const vq::KeySource& source, bool byBytes) {
    if (string.IsNull()) return NoWildcard;
    const std::size_t byte = string.codeSet == 0 ? vq::FindWildcardByte(string.text, string.length) : NoWildcard;
    return byBytes ? byte : std::min(byte, vq::FindWildcard(source, string.text, string.length));
}

// Records the first pattern behind the first element of an array, if there is one. What texts an index has there is not
// known.
[[gnu::noinline]] bool RecordLaterPattern(VqIdxBounds* scanBounds, unsigned short& operators,
                                          const vq::StringArray& array, unsigned char order, unsigned long count,
                                          bool hasStatistics) {
    vq::StringArray at = array;
    for (unsigned long before = 0; before < count && !at.Ended(); ++before) {
        StringKey pattern = ReadString(at, order);
        const bool byBytes = pattern.codeSet == 0 && !hasStatistics;
        pattern.wildcard = FindWildcard(pattern, SourceOf(pattern), byBytes);
        if (before != 0 && pattern.HasWildcard()) {
            RecordPattern(scanBounds, operators |= VqOperator_Wildcard, {array, before, pattern, byBytes});
            return true;
        }
        at.Advance(at.Current());
    }
    return false;
}

double BoundStrings(const VqIdxBounds* indexBounds, unsigned short& operators, const void* key, unsigned char format,
                    unsigned long count, VqIdxBounds* scanBounds, unsigned long lacking) {
    operators &= vq::TextOperators;
    if (key == nullptr || count == 0) return 0;
    const unsigned char order = vq::ByteOrderOf(format);
    const unsigned long size = StringSizeGet(key, order, order, count);
    const vq::StringArray array(order, size, key, lacking);
    if (array.Ended()) {  // a record without code set and language is no text
        vq::RecordKey(scanBounds, operators, key, size);
        return 0;
    }
    StringKey low, high;
    const bool hasStatistics = indexBounds != nullptr &&
                               ReadEnd(indexBounds->lowKey, indexBounds->lowKeyLength, order, lacking, low) &&
                               ReadEnd(indexBounds->highKey, indexBounds->highKeyLength, order, lacking, high);
    StringKey string = ReadString(array, order);
    const bool byBytes = string.codeSet == 0 && (!hasStatistics || (low.IsNative() && high.IsNative()));
    const vq::KeySource source = SourceOf(string);
    string.wildcard = FindWildcard(string, source, byBytes);
    if (string.HasWildcard()) {
        RecordPattern(scanBounds, operators |= VqOperator_Wildcard, {array, 0, string, byBytes});
    } else if (count == 1 || !RecordLaterPattern(scanBounds, operators, array, order, count, hasStatistics)) {
        RecordLiteral(scanBounds, operators, key, size, array, order, count);
    }
    return hasStatistics ? EstimateString(operators, string, source, low, high, byBytes) : 0;
}

}  // namespace

VQ_BOUNDS_FUNCTION(StringEvalAndBound, BoundStrings(indexBounds, operators, key, format, count, scanBounds, 0))
VQ_BOUNDS_FUNCTION(LegacyStringEvalAndBound, BoundStrings(indexBounds, operators, key, format, count, scanBounds, 2))
