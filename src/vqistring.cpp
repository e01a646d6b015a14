#include "vqistring.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "istringweights.h"
#include "numbertext.h"
#include "vqbase.h"

namespace {

constexpr std::size_t MaxLength = 65535;

// A new text of these pieces one after the other, cut at the largest length.
char* Join(std::initializer_list<std::string_view> pieces) {
    std::size_t room = 0;
    for (const std::string_view piece : pieces) room += piece.size();
    room = std::min(room, MaxLength);
    char* const text = new char[room + 1];
    char* at = text;
    for (const std::string_view piece : pieces) {
        const std::size_t n = std::min(piece.size(), room);
        if (n != 0) std::memcpy(at, piece.data(), n);
        at += n;
        room -= n;
    }
    *at = 0;
    return text;
}

// The same, or the null text where there is nothing to copy.
char* CopyOf(std::string_view text) { return text.empty() ? nullptr : Join({text}); }

// A new text of `n` times `c`.
char* Repeat(std::size_t n, char c) {
    char* const text = new char[n + 1];
    std::memset(text, c, n);
    text[n] = 0;
    return text;
}

std::string_view ViewOf(const vq::IStringText& text) { return {text.StrGet(), text.Len()}; }

// Up to `n` bytes of `s`, which may be null.
std::string_view Bounded(const char* s, std::size_t n) {
    if (s == nullptr) return {};
    const void* const end = std::memchr(s, 0, n);
    return {s, end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - s) : n};
}

std::string_view Whole(const char* s) { return {s, std::min(std::strlen(s), MaxLength)}; }

// Added to a small letter, or taken from a capital one.
constexpr unsigned CaseDistance = 32;

constexpr bool IsSmallLetter(unsigned byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 0xE0 && byte <= 0xFE && byte != 0xF7);
}
constexpr bool IsCapitalLetter(unsigned byte) {
    return IsSmallLetter(byte + CaseDistance) && byte + CaseDistance < 256;
}

}  // namespace

namespace vq {

// --- Construction and assignment

IStringText::IStringText(const IStringText& other) : text_(Join({ViewOf(other)})) {}

IStringText::IStringText(char c) : text_(CopyOf({&c, std::size_t{c != 0}})) {}

IStringText::IStringText(const char* s) : text_(s != nullptr ? CopyOf(Whole(s)) : nullptr) {}

IStringText::IStringText(const char* s, unsigned short n) {
    if (n == 0) return;
    text_ = Repeat(n, 0);
    const std::string_view taken = Bounded(s, n);
    if (!taken.empty()) std::memcpy(text_, taken.data(), taken.size());
}

template <class T>
inline void IStringText::SetNumber(T value) {
    char digits[24];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    text_ = CopyOf({digits, static_cast<std::size_t>(end - digits)});
}

IStringText::IStringText(int value) { SetNumber(value); }

IStringText::IStringText(long value) { SetNumber(value); }

IStringText::IStringText(unsigned long value) { SetNumber(value); }

IStringText::IStringText(double value) {
    char digits[320];  // sign, 309 digits, point, six decimals
    const char* const end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 6).ptr;
    text_ = CopyOf({digits, static_cast<std::size_t>(end - digits)});
}

void IStringText::Take(char* text) {
    delete[] text_;
    text_ = text;
}

// New texts are made before the old one goes: the argument may be this text.

void IStringText::Assign(const IStringText& other) {
    if (&other == this) return;
    Take(Join({ViewOf(other)}));
    flags_ = other.flags_;
}

void IStringText::Assign(const char* s) {
    Take(s != nullptr ? CopyOf(Whole(s)) : nullptr);
    flags_ = 0;
}

void IStringText::SetText(const char* s, unsigned short n) {
    Take(CopyOf(Bounded(s, n)));
    flags_ = 0;
}

// --- Access

unsigned short IStringText::Len() const {
    return text_ != nullptr ? static_cast<unsigned short>(Whole(text_).size()) : static_cast<unsigned short>(0);
}

int IStringText::FindText(const IStringText& s) const {
    const std::size_t pos = ViewOf(*this).find(ViewOf(s));
    return pos == std::string_view::npos ? -1 : static_cast<int>(pos);
}

IStringText::operator long() const { return ParseLong(StrGet(), 1, 10); }

IStringText::operator int() const { return static_cast<int>(static_cast<long>(*this)); }

IStringText::operator short() const { return static_cast<short>(static_cast<long>(*this)); }

IStringText::operator double() const { return ParseDouble(StrGet(), 1); }

// --- Editing

void IStringText::AppendText(const IStringText& s) {
    if (s.text_ != nullptr) Take(Join({ViewOf(*this), ViewOf(s)}));
}

void IStringText::InsertText(const IStringText& s, unsigned short pos) {
    const std::string_view own = ViewOf(*this);
    const std::string_view inserted = ViewOf(s).substr(0, MaxLength - own.size());
    if (ViewOf(s).empty()) return;
    const std::size_t at = std::min<std::size_t>(pos, own.size());
    Take(Join({own.substr(0, at), inserted, own.substr(at)}));
}

void IStringText::ReplaceText(const IStringText& s, unsigned short pos) {
    const std::size_t length = Len(), source = s.Len();
    if (pos < length) std::memmove(text_ + pos, s.StrGet(), std::min(source, length - pos));
}

void IStringText::FillText(unsigned short n, char c) {
    if (n > Len()) {
        Take(Repeat(n, c));
    } else if (n != 0) {
        std::memset(text_, c, n);
    }
}

void IStringText::ExpandText(unsigned short n, char c) {
    const std::string_view own = ViewOf(*this);
    if (n <= own.size()) return;
    char* const padded = Repeat(n, c);
    std::copy(own.begin(), own.end(), padded);
    Take(padded);
}

void IStringText::CutText(unsigned short pos, unsigned short n) {
    const std::string_view own = ViewOf(*this);
    if (n == 0 || pos > own.size()) return;
    const std::string_view front = own.substr(0, pos), rest = own.substr(std::min<std::size_t>(own.size(), pos + n));
    if (front.size() + rest.size() == own.size() && !own.empty()) return;
    Take(front.empty() && rest.empty() ? nullptr : Join({front, rest}));
}

void IStringText::TakePart(const IStringText& s, unsigned short pos, unsigned short n) {
    const std::string_view text = ViewOf(s);
    Take(pos <= text.size() ? CopyOf(text.substr(pos, n)) : nullptr);
}

void IStringText::Exchange(char from, char to) {
    if (text_ != nullptr) std::replace(text_, text_ + Len(), from, to);
}

void IStringText::Map(char (*map)(char)) {
    if (text_ != nullptr) std::transform(text_, text_ + Len(), text_, map);
}

// The two directions treat ÿ as each other's opposite; œ goes the right way.

char IStringText::UpperOf(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (IsSmallLetter(byte)) return static_cast<char>(byte - CaseDistance);
    return byte == 0x9F ? '\xFF' : byte == 0x9C ? '\x8C' : c;
}

char IStringText::LowerOf(char c) {
    const auto byte = static_cast<unsigned char>(c);
    if (IsCapitalLetter(byte)) return static_cast<char>(byte + CaseDistance);
    return byte == 0xFF ? '\x9F' : byte == 0x8C ? '\x9C' : c;
}

// --- Comparison

namespace {

int CompareTerminated(const WeightTable& table, const char* a, const char* b, unsigned short n, unsigned char flagsA,
                      unsigned char flagsB) {
    if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
    return CompareWeights(table, {reinterpret_cast<const unsigned char*>(a), Terminated, flagsA},
                          {reinterpret_cast<const unsigned char*>(b), Terminated, flagsB}, n != 0 ? n : MaxWeights);
}

}  // namespace
}  // namespace vq

int VqIString::Compare(const char* a, const char* b, unsigned short n, unsigned char flagsA, unsigned char flagsB) {
    return vq::CompareTerminated(vq::istringWeights, a, b, n, flagsA, flagsB);
}

int VqCaseIString::Compare(const char* a, const char* b, unsigned short n, unsigned char flagsA, unsigned char flagsB) {
    return vq::CompareTerminated(vq::CaseWeights(flagsA), a, b, n, flagsA, flagsB);
}

// --- Rows of the descriptor table: disk form

namespace {

constexpr unsigned long HeaderSize = 3;  // flags, length
constexpr unsigned long LongestRecord = HeaderSize + 65535;

unsigned long LoadLength(const unsigned char* record, unsigned char format) {
    std::uint16_t length;
    ShortStore(&length, record + 1, format & VqFormat_OrderMask, 1);
    return length;
}

template <class Text>
unsigned long StoreTexts(void* dst, const void* src, unsigned char format, unsigned long count) {
    unsigned char* out = static_cast<unsigned char*>(dst);
    for (unsigned long i = 0; i < count; ++i) {
        const Text& text = static_cast<const Text*>(src)[i];
        const std::uint16_t length = text.Len();
        out[0] = text.GetFlags();
        ShortStore(out + 1, &length, format & VqFormat_OrderMask, 1);
        std::memcpy(out + HeaderSize, text.StrGet(), length);
        out += HeaderSize + length;
    }
    return static_cast<unsigned long>(out - static_cast<unsigned char*>(dst));
}

template <class Text>
unsigned long LoadTexts(void* dst, const void* src, unsigned char format, unsigned long count) {
    const unsigned char* record = static_cast<const unsigned char*>(src);
    for (unsigned long i = 0; i < count; ++i) {
        Text& text = static_cast<Text*>(dst)[i];
        const unsigned long length = LoadLength(record, format);
        text.SetText(reinterpret_cast<const char*>(record + HeaderSize), static_cast<unsigned short>(length));
        text.SetFlags(record[0]);
        record += HeaderSize + length;
    }
    return static_cast<unsigned long>(record - static_cast<const unsigned char*>(src));
}

template <class Text>
unsigned long SizeOfTexts(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count) {
    unsigned long size = 0;
    for (unsigned long i = 0; i < count; ++i) {
        size += HeaderSize + (dataFormat & VqFormat_Memory
                                  ? static_cast<const Text*>(data)[i].Len()
                                  : LoadLength(static_cast<const unsigned char*>(data) + size, format));
    }
    return size;
}

unsigned long SizeInMemFile(MemFile& file, unsigned char format, unsigned long count) {
    const unsigned long start = file.Position();
    unsigned long size = 0, left = count;
    for (; left != 0; --left) {
        const unsigned char* const header = file.Seek(start + size, HeaderSize);
        const unsigned long record = header == nullptr ? 0 : HeaderSize + LoadLength(header, format);
        if (header == nullptr || file.Seek(start + size, record) == nullptr) break;
        size += record;
    }
    file.Seek(start, 0);
    return size + left * LongestRecord;
}

}  // namespace

#define VQTM_ISTRING_ROW(Name)                                                                         \
    unsigned long Name##Store(void* dst, const void* src, unsigned char format, unsigned long count) { \
        return StoreTexts<Name>(dst, src, format, count);                                              \
    }                                                                                                  \
    unsigned long Name##Load(void* dst, const void* src, unsigned char format, unsigned long count) {  \
        return LoadTexts<Name>(dst, src, format, count);                                               \
    }                                                                                                  \
    unsigned long Name##NullSizeGet(unsigned long count) { return HeaderSize * count; }                \
    unsigned long Name##SizeGet(const void* data, unsigned char dataFormat, unsigned char format,      \
                                unsigned long count) {                                                 \
        return SizeOfTexts<Name>(data, dataFormat, format, count);                                     \
    }                                                                                                  \
    unsigned long Name##SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) { \
        return SizeInMemFile(*file, format, count);                                                    \
    }

VQTM_ISTRING_ROW(VqIString)
VQTM_ISTRING_ROW(VqCaseIString)
