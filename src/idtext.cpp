#include "idtext.h"

#include <string>
#include <utility>

#include "_vqnulty.h"
#include "cformat.h"
#include "textform.h"
#include "vqstring.h"

namespace vq {
namespace {

// What stands at a place of a format: a number, a character, or nothing.
struct Element {
    IdNumber number = IdNumberCount;
    char literal = 0;
};

IdNumber NumberOf(char letter) { return static_cast<IdNumber>(IdLetters.find(letter)); }

// A walk over a format.
class Walk {
  public:
    Walk(const char* format, const IdDirectives& directives) : at_(format), directives_(directives) {}

    bool More() const { return *at_ != 0; }
    Element Next() {
        const char c = *at_++;
        return c == '%' && More() ? Directive(*at_++) : Element{IdNumberCount, c == '%' ? '\0' : c};
    }

  private:
    Element Directive(char letter) {
        if (letter == 'h' || letter == 'l') return {NextPosition(letter == 'l')};
        if (directives_.named.find(letter) != std::string_view::npos) return {NumberOf(letter)};
        return {IdNumberCount, letter};
    }
    // A directive of the wrong width takes its place all the same.
    IdNumber NextPosition(bool isLong) {
        if (position_ == directives_.positional.size()) return IdNumberCount;
        const IdNumber number = NumberOf(directives_.positional[position_++]);
        return IsLong(number) == isLong ? number : IdNumberCount;
    }

    const char* at_;
    const IdDirectives& directives_;
    std::size_t position_ = 0;
};

// The value of the digits at `text`, modulo 2^64.
std::uint64_t ReadDigits(TextCursor& text) {
    std::uint64_t number = 0;
    for (unsigned digit; (digit = DigitValue(text.Code())) < 10; text.Skip()) number = number * 10 + digit;
    return number;
}

// The characters about a number tell which it is; the ends of the text are 0. Where both do, the first row that fits.
void TakeNumber(IdNumbers& numbers, std::uint64_t value, unsigned before, unsigned after) {
    static constexpr struct {
        char before, after;  // 0: any
        IdNumber number;
    } places[] = {{'#', 0, Block}, {'v', 0, Version},     {0, ':', Database},   {0, '-', High},
                  {0, '#', Low},   {0, 'v', ClassNumber}, {',', 0, ClassNumber}};
    for (const auto& place : places) {
        if (place.before != 0 ? before != static_cast<unsigned char>(place.before)
                              : after != static_cast<unsigned char>(place.after)) {
            continue;
        }
        numbers[place.number] = static_cast<std::uint32_t>(value);
        return;
    }
    if (before != 0 || after != 0) return;
    numbers[Low] = static_cast<std::uint32_t>(value);
    numbers[High] = static_cast<std::uint16_t>(value >> 32);
}

bool IsNullText(const VqString& text, const SingleByteText& single) {
    return text.IsNullValue() || SkipNullPrintString(single.Get()) != nullptr;
}

// The null value has no code set and no language to keep.
VqString EmptyLike(const VqString& text) {
    return text.IsNullValue() ? VqString() : VqString(text.GetCodeSet(), text.GetLanguage());
}

}  // namespace

void PrintNullId(VqString& out) {
    VqString result = EmptyLike(out);
    result += VqNullPrintString();
    out = std::move(result);
}

void PrintIdText(VqString& out, const IdNumbers& numbers, const IdDirectives& directives, const char* format) {
    std::string text;
    for (Walk walk(format, directives); walk.More() && !IsTooLong(text.size());) {
        const Element element = walk.Next();
        if (element.number != IdNumberCount) {
            text += std::to_string(numbers[element.number]);
        } else if (element.literal != 0) {
            text += element.literal;
        }
    }
    VqString result = EmptyLike(out);
    result << text.c_str();
    out = std::move(result);
}

bool ScanIdText(IdNumbers& numbers, const VqString& text, const IdDirectives& directives, const char* format) {
    const SingleByteText single(text);
    if (IsNullText(text, single)) return false;
    numbers = {};
    TextCursor at(single.Get());
    for (Walk walk(format, directives); walk.More() && at.Code() != 0;) {
        const Element element = walk.Next();
        if (element.number != IdNumberCount) {
            ScanInteger(at, {.bits = IsLong(element.number) ? 32u : 16u, .letter = 'u'}, numbers[element.number]);
        } else if (element.literal != 0) {
            at.Skip();
        }
    }
    return true;
}

bool ScanIdExchange(IdNumbers& numbers, const VqString& text) {
    const SingleByteText single(text);
    if (IsNullText(text, single)) return false;
    numbers = {};
    unsigned before = 0;
    for (TextCursor at(single.Get()); at.Code() != 0;) {
        if (DigitValue(at.Code()) < 10) {
            const std::uint64_t value = ReadDigits(at);
            TakeNumber(numbers, value, before, at.Code());
        } else {
            if (!IsBlank(at.Code())) before = at.Code();
            at.Skip();
        }
    }
    return true;
}

}  // namespace vq
