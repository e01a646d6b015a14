#include "vqstring.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>

#include "comparetexts.h"
#include "numbertext.h"
#include "options.h"
#include "textunit.h"
#include "vqbase.h"
#include "vqchar.h"

using vq::CharSizeOf;

namespace {

constexpr unsigned char UnicodeSet = 253;

// Longest text of one number: "-" and 10 or 20 digits, or fifteen digits with sign, point and exponent.
constexpr std::size_t NumberRoom = 32;

void ReportOverflow() {
    const VqConfig* config = DefaultConfig(-1);
    if (config == nullptr || config->GetInt("debug", "stringOverflow", 0) != 0) {
        VIQA_assert("\"String overflow\" && 0", "src\\vqstring", 1361);
    }
}

// Bytes of a buffer that a wanted size gets: too large a size is reported and cut to whole characters.
std::size_t LimitedSize(std::size_t wanted, unsigned charSize) {
    if (wanted <= VqString::MaxSize) return wanted;
    ReportOverflow();
    return VqString::MaxSize - VqString::MaxSize % charSize;
}

// Maps `n` characters of a text in the machine's order. Unicode is in the middle.
void MapText(const char* text, const VqCodeSet& source, std::size_t n, const VqCodeSet& target, char* out) {
    constexpr std::size_t Step = 256;
    unsigned short units[Step];
    while (n != 0) {
        const std::size_t count = std::min(n, Step);
        source.MapToUnicode(text, count, units);
        target.MapFromUnicode(units, count, out);
        text += count * static_cast<std::size_t>(source.GetCharSize());
        out += count * static_cast<std::size_t>(target.GetCharSize());
        n -= count;
    }
}

// The first `length` characters of a text mapped into another code set, with a zero character behind.
std::unique_ptr<char[]> MapCodeSet(const char* text, unsigned char from, unsigned char to, std::size_t length,
                                   unsigned char order) {
    const unsigned sourceSize = CharSizeOf(from), targetSize = CharSizeOf(to);
    const VqCodeSet& source = vq::CodeSetOf(from);
    const VqCodeSet& target = vq::CodeSetOf(to);
    std::unique_ptr<char[]> mapped(new char[(length + 1) * targetSize]);
    std::memset(mapped.get() + length * targetSize, 0, targetSize);
    std::unique_ptr<char[]> swapped;
    if (sourceSize == 2 && order == vq::OrderHighFirst) {
        swapped.reset(new char[2 * length + 1]);
        ShortStore(swapped.get(), text, VqFormat_BigEndian, static_cast<unsigned long>(length));
        text = swapped.get();
    }
    if (length == 0) return mapped;
    if (&source == &target) {
        std::memcpy(mapped.get(), text, length * targetSize);
    } else if (target.GetCode() == UnicodeSet) {
        source.MapToUnicode(text, length, mapped.get());
    } else if (source.GetCode() == UnicodeSet) {
        target.MapFromUnicode(text, length, mapped.get());
    } else {
        MapText(text, source, length, target, mapped.get());
    }
    return mapped;
}

// Appends pieces to a buffer of fixed room; what does not fit is left out.
class BoundedWriter {
  public:
    BoundedWriter(char* out, std::size_t room) : out_(out), room_(room) {}

    void Append(const char* bytes, std::size_t n) {
        n = std::min(n, room_);
        if (n != 0) std::memcpy(out_, bytes, n);
        Advance(n);
    }
    // Characters of two bytes, high byte first.
    void AppendSwapped(const char* bytes, std::size_t n) {
        n = std::min(n, room_);
        ShortStore(out_, bytes, VqFormat_BigEndian, n / 2);
        Advance(n);
    }
    void AppendRepeated(unsigned short code, unsigned charSize, std::size_t n) {
        n = std::min(n, room_ / charSize);
        for (std::size_t i = 0; i < n; ++i) vq::StoreChar(out_ + i * charSize, charSize, code);
        Advance(n * charSize);
    }

  private:
    void Advance(std::size_t n) {
        out_ += n;
        room_ -= n;
    }

    char* out_;
    std::size_t room_;  // bytes
};

template <class T>
std::to_chars_result PrintNumber(char* first, char* last, T value) {
    return std::to_chars(first, last, value);
}

std::to_chars_result PrintNumber(char* first, char* last, double value) {
    return std::to_chars(first, last, value, std::chars_format::general, 15);
}

}  // namespace

// --- The editing engine

void VqString::SpliceChars(const Splice& splice) {
    const unsigned z = CharSize();
    const char* source = static_cast<const char*>(splice.source);
    std::size_t start = splice.start;
    unsigned char order = splice.order;
    if (splice.mode != TruncateAndWrite &&
        (source == nullptr || vq::LoadChar(source, CharSizeOf(splice.codeSet)) == 0)) {
        return;
    }

    std::size_t count = splice.count;
    std::unique_ptr<char[]> mapped;
    if ((splice.codeSet != 0 && splice.codeSet != codeSet_) || CharSizeOf(splice.codeSet) != z) {
        const unsigned sourceSize = CharSizeOf(splice.codeSet);
        source += start * sourceSize;
        // A character to repeat may be the zero character.
        if (splice.repeat == 1) count = vq::BoundedLength(source, sourceSize, count);
        mapped = MapCodeSet(source, splice.codeSet, codeSet_, count, order);
        source = mapped.get();
        start = 0;
        order = 1;
    }

    const std::size_t oldText = size_ != 0 ? size_ - z : 0;
    const std::size_t head = std::min(splice.position * z, oldText);
    const std::size_t inserted = count * z * splice.repeat;
    const std::size_t tailStart = splice.mode == Overwrite ? std::min(head + count * z, oldText) : head;
    const std::size_t tail = splice.mode == TruncateAndWrite ? 0 : oldText - tailStart;
    const std::size_t size = LimitedSize(head + inserted + tail + z, z);

    std::unique_ptr<char[]> buffer(new char[size]);
    BoundedWriter out(buffer.get(), size - z);
    out.Append(buffer_, head);
    if (splice.repeat > 1) {
        out.AppendRepeated(vq::LoadChar(source, z, order), z, count * splice.repeat);
    } else if (z == 2 && order == vq::OrderHighFirst) {
        out.AppendSwapped(source + start * z, inserted);
    } else {
        out.Append(source + start * z, inserted);
    }
    if (tail != 0) out.Append(buffer_ + tailStart, tail);
    std::memset(buffer.get() + size - z, 0, z);

    delete[] buffer_;
    buffer_ = buffer.release();
    size_ = static_cast<std::uint16_t>(size);
}

void VqString::AssignChars(const void* text, unsigned char codeSet, unsigned short n, unsigned char order) {
    const unsigned z = CharSizeOf(codeSet);
    const std::size_t count = text == nullptr ? 0 : n == All ? vq::TextLength(text, z) : std::size_t{n};
    if (codeSet == codeSet_ && (order != vq::OrderHighFirst || z == 1) && (count + 1) * z <= MaxSize) {
        AssignSame(text, count * z, z);
    } else if (count != 0) {
        SpliceChars({TruncateAndWrite, text, codeSet, 0, 0, count, 1, order});
    } else {
        AssignSame(nullptr, 0, z);
    }
}

// What the engine does with text that needs no mapping, swapping or cutting: one allocation, one copy. No text gives no
// buffer. The string has none yet.
inline void VqString::ConstructSame(const void* text, std::size_t bytes, unsigned charSize) {
    if (bytes == 0) return;
    char* const buffer = new char[bytes + charSize];
    std::memcpy(buffer, text, bytes);
    buffer[bytes] = 0;
    if (charSize == 2) buffer[bytes + 1] = 0;
    buffer_ = buffer;
    size_ = static_cast<std::uint16_t>(bytes + charSize);
}

// The same for a string that may have a buffer, in which the text may lie.
void VqString::AssignSame(const void* text, std::size_t bytes, unsigned charSize) {
    char* const old = buffer_;
    buffer_ = nullptr;
    size_ = 0;
    ConstructSame(text, bytes, charSize);
    delete[] old;
}

void VqString::AppendChars(const void* text, unsigned char codeSet, unsigned short n) {
    const unsigned z = CharSizeOf(codeSet);
    // Much is printed into new strings: there is nothing to keep, and so nothing to measure.
    const bool isNew = buffer_ == nullptr && codeSet == codeSet_;
    if (isNew && text != nullptr && n != All && (n + 1u) * z <= MaxSize) return ConstructSame(text, n * z, z);
    AppendToText(text, codeSet, n);
}

void VqString::AppendToText(const void* text, unsigned char codeSet, unsigned short n) {
    const unsigned z = CharSizeOf(codeSet);
    const std::size_t count = text == nullptr ? 0 : n == All ? vq::TextLength(text, z) : std::size_t{n};
    if (count == 0) return;
    const std::size_t length = IsEmpty() ? 0 : Len();
    if (codeSet == codeSet_ && (length + count + 1) * z <= MaxSize) {
        AppendSame(length * z, text, count * z, z);
    } else {
        SpliceChars({TruncateAndWrite, text, codeSet, length, 0, count, 1, 1});
    }
}

// The first `head` bytes stay. The text may lie in the buffer.
void VqString::AppendSame(std::size_t head, const void* text, std::size_t bytes, unsigned charSize) {
    const std::size_t size = head + bytes + charSize;
    char* const old = buffer_;
    char* const buffer = size == size_ ? old : new char[size];
    if (buffer != old && head != 0) std::memcpy(buffer, old, head);
    std::memmove(buffer + head, text, bytes);
    buffer[head + bytes] = 0;
    if (charSize == 2) buffer[head + bytes + 1] = 0;
    buffer_ = buffer;
    size_ = static_cast<std::uint16_t>(size);
    if (buffer != old) delete[] old;
}

// Most strings are made here: from text in their own code set, whose character size is known.
template <unsigned charSize>
inline void VqString::ConstructFrom(const void* text, unsigned short n) {
    if (text == nullptr) return;
    const std::size_t count = n == All ? vq::TextLength(text, charSize) : std::size_t{n};
    if ((count + 1) * charSize <= MaxSize) {
        ConstructSame(text, count * charSize, charSize);
    } else {
        AssignChars(text, codeSet_, n);
    }
}

template <class T>
inline void VqString::AssignNumber(T value) {
    char text[NumberRoom];
    const auto [end, error] = PrintNumber(text, text + sizeof text, value);
    AssignChars(text, codeSet_, static_cast<unsigned short>(end - text));
}

// --- Construction

VqString::VqString() : VqString(GetDefaultCodeSet(), GetDefaultLanguage()) {}

VqString::VqString(unsigned char codeSet, unsigned char language) : codeSet_(codeSet), language_(language) {}

VqString::VqString(const VqString& other) : codeSet_(other.codeSet_), language_(other.language_) {
    const unsigned z = CharSize();
    if (other.buffer_ != nullptr) {
        ConstructSame(other.buffer_, vq::BoundedLength(other.buffer_, z, other.size_ / z) * z, z);
    }
}

VqString::VqString(VqString&& other) noexcept { Destruct(other); }

VqString::VqString(char c) : VqString(&c, static_cast<unsigned short>(c != 0)) {}

VqString::VqString(unsigned short c) : VqString(&c, static_cast<unsigned short>(c != 0)) {}

VqString::VqString(const char* text) : VqString(text, All) {}

VqString::VqString(const unsigned short* text) : VqString(text, All) {}

VqString::VqString(const char* text, unsigned short n)
    : codeSet_(VqLanguageContext::GetDefault8CodeSet()), language_(VqLanguageContext::GetDefaultLanguage()) {
    ConstructFrom<1>(text, n);
}

VqString::VqString(const unsigned short* text, unsigned short n)
    : codeSet_(VqLanguageContext::GetDefault16CodeSet()), language_(VqLanguageContext::GetDefaultLanguage()) {
    ConstructFrom<2>(text, n);
}

VqString::VqString(short value) : VqString(static_cast<int>(value)) {}

VqString::VqString(int value) : VqString(GetDefault8CodeSet(), GetDefaultLanguage()) { AssignNumber(value); }

VqString::VqString(unsigned int value) : VqString(static_cast<int>(value)) {}

VqString::VqString(long value) : VqString(GetDefault8CodeSet(), GetDefaultLanguage()) { AssignNumber(value); }

VqString::VqString(unsigned long value) : VqString(GetDefault8CodeSet(), GetDefaultLanguage()) { AssignNumber(value); }

VqString::VqString(double value) : VqString(GetDefault8CodeSet(), GetDefaultLanguage()) { AssignNumber(value); }

VqString::~VqString() { delete[] buffer_; }

void VqString::Destroy() {
    delete[] buffer_;
    buffer_ = nullptr;
    size_ = 0;
    codeSet_ = 0;
    language_ = 0;
}

void VqString::d_deactivate() { Destroy(); }

void VqString::Destruct(VqString& other) {
    if (&other == this) return;
    delete[] buffer_;
    buffer_ = other.buffer_;
    size_ = other.size_;
    codeSet_ = other.codeSet_;
    language_ = other.language_;
    other.buffer_ = nullptr;
    other.size_ = 0;
}

// --- Assignment and appending

// The new text is made before the old one goes: the argument may point into it.

VqString& VqString::operator=(const VqString& other) {
    if (&other == this) return *this;
    VqString copy(other);
    Destruct(copy);
    return *this;
}

VqString& VqString::operator=(VqString&& other) noexcept {
    Destruct(other);
    return *this;
}

VqString& VqString::operator=(const char* text) { return *this = VqString(text); }

VqString& VqString::operator=(const unsigned short* text) { return *this = VqString(text); }

VqString& VqString::operator+=(const VqString& other) {
    AppendChars(other.buffer_, other.codeSet_, other.Len());
    return *this;
}

VqString& VqString::operator<<(char c) { return *this += VqString(c); }

VqString& VqString::operator<<(const char* text) { return *this += VqString(text); }

VqString& VqString::operator<<(const unsigned short* text) { return *this += VqString(text); }

VqString& VqString::operator<<(const VqString& other) { return *this += other; }

VqString& VqString::operator<<(short value) { return *this += VqString(value); }

VqString& VqString::operator<<(int value) { return *this += VqString(value); }

VqString& VqString::operator<<(unsigned int value) { return *this += VqString(value); }

VqString& VqString::operator<<(long value) { return *this += VqString(value); }

VqString& VqString::operator<<(unsigned long value) { return *this += VqString(value); }

VqString& VqString::operator<<(double value) { return *this += VqString(value); }

VqString& VqString::operator<<(float value) { return *this += VqString(static_cast<double>(value)); }

VqString& VqString::operator<<(unsigned short value) {
    return *this += CharSize() == 1 ? VqString(static_cast<unsigned int>(value)) : VqString(value);
}

VqString operator+(const VqString& a, const VqString& b) {
    VqString sum(a.GetCodeSet(), a.GetLanguage());
    sum += a;
    sum += b;
    return sum;
}

VqString operator+(const VqString& a, const char* b) { return a + VqString(b); }

VqString operator+(const char* a, const VqString& b) { return VqString(a) + b; }

// --- Access

unsigned VqString::CharSize() const { return CharSizeOf(codeSet_); }

unsigned short VqString::Len() const {
    if (buffer_ == nullptr) return 0;
    const unsigned z = CharSize();
    return static_cast<unsigned short>(vq::BoundedLength(buffer_, z, size_ / z));
}

bool VqString::IsEmpty() const { return buffer_ == nullptr || vq::LoadChar(buffer_, CharSize()) == 0; }

VqChar VqString::operator[](int i) {
    if (i < 0 || i > Len()) return VqChar(0, 255, 255);
    return VqChar(*this, i * static_cast<int>(CharSize()));
}

VqChar VqString::operator[](int i) const {
    if (i < 0 || i > Len()) return VqChar(0, 255, 255);
    return VqChar(vq::LoadChar(StrGet() + i * static_cast<int>(CharSize()), CharSize()), codeSet_, language_);
}

// --- Numbers

VqString::operator long() const {
    return vq::ParseLong(StrGet(), CharSize(), vq::optionBlock & vq::OptionDecimalNumbers ? 10 : 0);
}

VqString::operator int() const { return static_cast<int>(static_cast<long>(*this)); }

VqString::operator short() const { return static_cast<short>(static_cast<long>(*this)); }

VqString::operator double() const { return vq::ParseDouble(StrGet(), CharSize()); }

namespace {

int ParseStarted(const VqString& text, int base, long& out) {
    out = 0;
    const VqChar first = text[0];
    if (!first.IsDigit() && first.GetCode() != '-') return -1;
    out = vq::ParseLong(text.StrGet(), CharSizeOf(text.GetCodeSet()), base);
    return 0;
}

}  // namespace

int VqString::Atol(long& out) const { return ParseStarted(*this, 10, out); }

int VqString::Strtol(long& out) const { return ParseStarted(*this, 0, out); }

// --- Code set

short VqString::SetCodeSetCode(unsigned char codeSet) {
    if (CharSizeOf(codeSet) != CharSize()) return VqStatus_Refused;
    codeSet_ = codeSet;
    return VqStatus_Ok;
}

short VqString::SetCodeSet(unsigned char codeSet) {
    if (CharSizeOf(codeSet) != CharSize()) TakeMapped(*this, codeSet, All);
    codeSet_ = codeSet;
    return VqStatus_Ok;
}

short VqString::MapToCodeSet(unsigned char codeSet) {
    if (codeSet == 0) return VqStatus_Refused;
    if (codeSet != codeSet_) TakeMapped(*this, codeSet, All);
    codeSet_ = codeSet;
    return VqStatus_Ok;
}

short VqString::CopyMapped(const VqString& src, unsigned char codeSet, short n) {
    if (&src == this) return VqStatus_Refused;
    TakeMapped(src, codeSet, static_cast<unsigned short>(n));
    codeSet_ = codeSet;
    language_ = src.language_;
    return static_cast<short>(size_);
}

// Replaces the buffer by at most `most` characters of `src`'s text, mapped into `codeSet`; `src` may be this string.
void VqString::TakeMapped(const VqString& src, unsigned char codeSet, unsigned short most) {
    std::unique_ptr<char[]> mapped;
    std::size_t size = 0;
    if (src.buffer_ != nullptr) {
        const unsigned z = CharSizeOf(codeSet);
        const unsigned sourceSize = src.CharSize();
        const std::size_t readable = std::min<std::size_t>(most, src.size_ / sourceSize);
        size = LimitedSize((vq::BoundedLength(src.buffer_, sourceSize, readable) + 1) * z, z);
        mapped = MapCodeSet(src.buffer_, src.codeSet_, codeSet, size / z - 1, 1);
    }
    delete[] buffer_;
    buffer_ = mapped.release();
    size_ = static_cast<std::uint16_t>(size);
}

unsigned char VqString::GetDefaultCodeSet() { return VqLanguageContext::GetDefaultCodeSet(); }

unsigned char VqString::GetDefaultLanguage() { return VqLanguageContext::GetDefaultLanguage(); }

unsigned char VqString::GetDefault8CodeSet() { return VqLanguageContext::GetDefault8CodeSet(); }

unsigned char VqString::GetDefault16CodeSet() { return VqLanguageContext::GetDefault16CodeSet(); }

unsigned short VqString::GetDefaultCmpOp() { return VqLanguageContext::GetDefaultCmpOp(); }

void VqString::SetDefaultCodeSet(unsigned char codeSet) { VqLanguageContext::SetDefaultCodeSet(codeSet); }

void VqString::SetDefaultLanguage(unsigned char language) { VqLanguageContext::SetDefaultLanguage(language); }

void VqString::SetDefaultCmpOp(unsigned short op) { VqLanguageContext::SetDefaultCmpOp(op); }

// --- Null

bool VqString::IsNullValue() const { return vq::IsNullText(codeSet_, language_); }

int VqString::SetNullValue() {
    Destroy();
    language_ = VqNullMark;
    return VqStatus_Ok;
}

// --- Comparison

int VqString::Compare(const VqString& other, short n, unsigned short op) const {
    if (op == VqCmp_Default) op = GetDefaultCmpOp();
    return vq::CompareTexts({codeSet_, language_, buffer_, size_},
                            {other.codeSet_, other.language_, other.buffer_, other.size_}, op, n, 1, nullptr);
}

bool VqString::operator==(const VqString& other) const { return this == &other || Compare(other) == 0; }

bool VqString::EqualsIgnoreLanguage(const VqString& other) const {
    const unsigned char language = language_ == other.language_ ? language_ : 0;
    return vq::CompareTexts({codeSet_, language, buffer_, size_},
                            {other.codeSet_, language, other.buffer_, other.size_}, VqCmp_KeyOnly, -1, 1, nullptr) == 0;
}
