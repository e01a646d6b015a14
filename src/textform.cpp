#include "textform.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include "_vqnulty.h"
#include "cformat.h"
#include "textscan.h"
#include "valueslots.h"

namespace vq {
namespace {

template <class T>
constexpr const char* LettersOf = std::is_floating_point_v<T> ? FloatingLetters : IntegerLetters;

// What a null format stands for.
template <class T>
constexpr const char* OwnFormat = "%d";
template <>
constexpr const char* OwnFormat<signed char> = "%c";
template <>
constexpr const char* OwnFormat<float> = "%f";
template <>
constexpr const char* OwnFormat<double> = "%f";

constexpr bool IsPrintable(unsigned c) { return c >= 0x20 && c <= 0x7E; }

// The length of the form that an unprintable byte has, with its value, or 0 when none stands at `text`.
unsigned ReadEscape(const char* text, std::uint32_t& byte) {
    static constexpr Conversion hex = {.width = 4, .bits = 8, .letter = 'x'};
    TextCursor at(text);
    if (std::strncmp(text, "0x", 2) != 0 || !ScanInteger(at, hex, byte)) return 0;
    return at.At() == text + 4 && !IsPrintable(byte) ? 4 : 0;
}

template <class T>
void FormatScalar(std::string& text, T value, const char* format) {
    if (format == nullptr) format = OwnFormat<T>;
    if constexpr (std::is_floating_point_v<T>) {
        ExpandFormat(format, FloatingLetters, text,
                     [&](const Conversion& c) { AppendFloating(text, c, static_cast<double>(value)); });
    } else {
        const auto bits = static_cast<std::uint32_t>(value);
        if (sizeof(T) == 1 && !IsPrintable(bits)) format = "0x%02x";
        ExpandFormat(format, IntegerLetters, text,
                     [&](const Conversion& c) { AppendInteger(text, c, bits, 8 * sizeof(T)); });
    }
}

template <class T>
bool ScanNumber(TextCursor& text, const Conversion& conversion, T& value) {
    if constexpr (std::is_floating_point_v<T>) {
        double number;
        if (!ScanFloating(text, conversion, number)) return false;
        if (!conversion.suppressed) value = static_cast<T>(number);
    } else {
        std::uint32_t bits;
        if (!ScanInteger(text, conversion, bits)) return false;
        if (!conversion.suppressed) value = static_cast<T>(bits);
    }
    return true;
}

template <class T>
VqString& PrintValues(VqString& out, const void* values, const char* format, unsigned long count) {
    if (values == nullptr || count == 0) return out;
    std::string text;
    for (unsigned long i = 0; i < count && !IsTooLong(text.size()); ++i) {
        if (i != 0 && sizeof(T) != 1) text += ',';
        FormatScalar(text, LoadValue<T>(values, i), format);
    }
    return out << text.c_str();
}

template <class T>
void* ScanValues(void* values, const VqString& text, const char* format, unsigned long count) {
    if (values == nullptr) return values;
    ScanElements(text, count, [&](const char* at, unsigned long i, bool& found) {
        T value = LoadValue<T>(values, i);
        at = ScanScalar(at, format, value, found);
        if (found) StoreValue(values, i, value);
        return at;
    });
    return values;
}

}  // namespace

template <class T>
void PrintScalar(VqString& out, T value, const char* format) {
    std::string text;
    FormatScalar(text, value, format);
    out << text.c_str();
}

template <class T>
const char* ScanScalar(const char* text, const char* format, T& value, bool& found) {
    if (format == nullptr) format = OwnFormat<T>;
    if constexpr (sizeof(T) == 1) {
        std::uint32_t byte;
        if (const unsigned length = ReadEscape(text, byte)) {
            value = static_cast<T>(byte);
            found = true;
            return text + length;
        }
    }
    TextCursor at(text);
    MatchFormat(at, format, LettersOf<T>, [&](TextCursor& in, const Conversion& conversion, const char*) {
        if (!ScanNumber(in, conversion, value)) return false;
        found |= !conversion.suppressed;
        return true;
    });
    return at.At();
}

const char* EndOfElement(const char* text, const char* format) {
    const char* const behindNull = SkipNullPrintString(text);
    if (behindNull != nullptr && (*behindNull == ',' || *behindNull == 0)) return behindNull;
    auto commas = format != nullptr ? std::count(format, format + std::strlen(format), ',') : 0;
    while (*text != 0 && (*text != ',' || commas-- != 0)) ++text;
    return text;
}

template void PrintScalar(VqString&, signed char, const char*);
template void PrintScalar(VqString&, std::int16_t, const char*);
template void PrintScalar(VqString&, std::int32_t, const char*);
template void PrintScalar(VqString&, float, const char*);
template void PrintScalar(VqString&, double, const char*);
template const char* ScanScalar(const char*, const char*, signed char&, bool&);
template const char* ScanScalar(const char*, const char*, std::int16_t&, bool&);
template const char* ScanScalar(const char*, const char*, std::int32_t&, bool&);
template const char* ScanScalar(const char*, const char*, float&, bool&);
template const char* ScanScalar(const char*, const char*, double&, bool&);

void SingleByteText::Map() {
    mapped_.emplace(VqString::GetDefault8CodeSet(), text_->GetLanguage());
    *mapped_ += *text_;
    text_ = &*mapped_;
}

const char* SkipNullPrintString(const char* text) {
    const SingleByteText null(VqNullPrintString());
    const char* sign = null.Get();
    if (*sign == 0) return *text == 0 ? text : nullptr;
    for (; *sign != 0; ++sign, ++text) {
        if (*text != *sign) return nullptr;
    }
    return text;
}

}  // namespace vq

// --- Rows of the descriptor table: numbers

VqString& CharPrint(VqString& out, void* values, const char* format, unsigned long count) {
    return vq::PrintValues<signed char>(out, values, format, count);
}
VqString& ShortPrint(VqString& out, void* values, const char* format, unsigned long count) {
    return vq::PrintValues<std::int16_t>(out, values, format, count);
}
VqString& LongPrint(VqString& out, void* values, const char* format, unsigned long count) {
    return vq::PrintValues<std::int32_t>(out, values, format, count);
}
VqString& IntPrint(VqString& out, void* values, const char* format, unsigned long count) {
    return vq::PrintValues<std::int32_t>(out, values, format, count);
}
VqString& FloatPrint(VqString& out, void* values, const char* format, unsigned long count) {
    return vq::PrintValues<float>(out, values, format, count);
}
VqString& DoublePrint(VqString& out, void* values, const char* format, unsigned long count) {
    return vq::PrintValues<double>(out, values, format, count);
}

void* CharScan(void* values, VqString& text, const char* format, unsigned long count) {
    if (values == nullptr) return values;
    const vq::SingleByteText single(text);
    const char* at = single.Get();
    bool found = true;
    for (signed char* byte = static_cast<signed char*>(values); found && count != 0; --count, ++byte) {
        found = false;
        at = vq::ScanScalar(at, format, *byte, found);
    }
    return values;
}
void* ShortScan(void* values, VqString& text, const char* format, unsigned long count) {
    return vq::ScanValues<std::int16_t>(values, text, format, count);
}
void* LongScan(void* values, VqString& text, const char* format, unsigned long count) {
    return vq::ScanValues<std::int32_t>(values, text, format, count);
}
void* IntScan(void* values, VqString& text, const char* format, unsigned long count) {
    return vq::ScanValues<std::int32_t>(values, text, format, count);
}
void* FloatScan(void* values, VqString& text, const char* format, unsigned long count) {
    return vq::ScanValues<float>(values, text, format, count);
}
void* DoubleScan(void* values, VqString& text, const char* format, unsigned long count) {
    return vq::ScanValues<double>(values, text, format, count);
}

// --- Rows of the descriptor table: strings

namespace {

// Appends to a string: its own characters a run at a time, and parts of other strings.
class TextPrinter {
  public:
    explicit TextPrinter(VqString& out) : out_(out), length_(out.Len()) {}

    // Of all that was to be appended, whether there was room for it or not.
    std::size_t size() const { return length_ + literal_.size(); }

    void operator+=(char c) { literal_ += c; }

    void Append(const vq::Conversion& conversion, const VqString& value) {
        const int length = value.Len();
        const int taken = conversion.precision < 0 ? length : std::min(length, conversion.precision);
        const std::string fill(static_cast<std::size_t>(std::max(conversion.width - taken, 0)), ' ');
        if (!conversion.left) literal_ += fill;
        Flush();
        VqString part(value.GetCodeSet(), value.GetLanguage());
        part.AssignChars(value.StrGet(), value.GetCodeSet(), static_cast<unsigned short>(taken));
        out_ += part;
        length_ += static_cast<std::size_t>(taken);
        if (conversion.left) literal_ += fill;
    }

    void Flush() {
        out_ << literal_.c_str();
        length_ += literal_.size();
        literal_.clear();
    }

  private:
    VqString& out_;
    std::size_t length_;
    std::string literal_;
};

void PrintText(VqString& out, const VqString& value, const char* format) {
    if (value.IsNullValue()) {
        out += VqNullPrintString();
        return;
    }
    TextPrinter printer(out);
    vq::ExpandFormat(format, vq::StringLetters, printer,
                     [&](const vq::Conversion& conversion) { printer.Append(conversion, value); });
    printer.Flush();
}

bool IsNullPrintString(const VqString& text) {
    const vq::SingleByteText single(text);
    const char* const rest = vq::SkipNullPrintString(single.Get());
    return rest != nullptr && *rest == 0;
}

// Takes the part of `text` between two places; a part that says null makes the value null.
void AssignPart(VqString& value, const VqString& text, const char* from, const char* to) {
    VqString part(text.GetCodeSet(), text.GetLanguage());
    part.AssignChars(from, text.GetCodeSet(),
                     static_cast<unsigned short>((to - from) / static_cast<int>(vq::CharSizeOf(text.GetCodeSet()))));
    if (text.IsNullValue() || IsNullPrintString(part)) {
        value.SetNullValue();
    } else {
        value = std::move(part);
    }
}

}  // namespace

VqString& StringPrint(VqString& out, void* values, const char* format, unsigned long count) {
    if (values == nullptr) return out;
    const VqString* const strings = static_cast<const VqString*>(values);
    vq::PrintElements(out, count,
                      [&](unsigned long i) { PrintText(out, strings[i], format != nullptr ? format : "%s"); });
    return out;
}

void* StringScan(void* values, VqString& text, const char* format, unsigned long count) {
    if (values == nullptr) return values;
    const VqString source(text);  // the text may be among the values
    vq::ScanTexts(source, format, count, [&](unsigned long i, const char* from, const char* to) {
        AssignPart(static_cast<VqString*>(values)[i], source, from, to);
    });
    return values;
}
