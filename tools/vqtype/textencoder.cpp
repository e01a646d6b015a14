#include "textencoder.h"

#include <algorithm>

#include "error.h"
#include "multibyte.h"

namespace {

constexpr unsigned char Unicode = 253;

bool IsSurrogate(unsigned short unit) { return (unit & 0xF800) == 0xD800; }

// Texts without bytes from here up have no surrogates and no characters beyond U+FFFF; in all others the library's
// conversion is more lenient than the workbench.
constexpr unsigned char FirstSpecialLead = 0xED;

bool IsSpecial(char byte) { return static_cast<unsigned char>(byte) >= FirstSpecialLead; }

}  // namespace

std::string DescribeFault(std::string_view text, const Utf8Fault& fault) {
    return fmt::format("not UTF-8: byte 0x{:02x} at offset {}", static_cast<unsigned char>(text[fault.offset]),
                       fault.offset);
}

TextEncoder::TextEncoder(const TextOptions& options)
    : set_(RequireCodeSet(options.codeSet)), isChosen_(options.isChosen) {}

// Unicode text passes as it stands: its set need not know every unit, halves of surrogate pairs least of all.
const void* TextEncoder::Encode(std::string_view text) {
    Decode(text);
    if (const std::size_t zero = text.find('\0'); zero != text.npos) {
        const auto end = std::find(units_.begin(), units_.end(), 0);
        throw TextFault{fmt::format("a text cannot hold the zero character (at character {})", end - units_.begin())};
    }
    const void* codes = set_.GetCode() == Unicode ? units_.data() : set_.GetCharSize() == 1 ? Map(bytes_) : Map(words_);
    CheckLength();
    return codes;
}

void TextEncoder::Decode(std::string_view text) {
    if (units_.size() <= text.size()) units_.resize(text.size() + 1);
    int length = -1;
    if (std::none_of(text.begin(), text.end(), IsSpecial)) {
        length = VqMultiByteStr2WCharStr(units_.data(), static_cast<int>(text.size()), text.data(),
                                         static_cast<unsigned>(text.size()));
    }
    if (length >= 0) {
        length_ = static_cast<std::size_t>(length);
    } else {
        DecodeStrictly(text);
    }
    units_[length_] = 0;
}

// Where the other conversion does not suffice, or has found a fault.
void TextEncoder::DecodeStrictly(std::string_view text) {
    try {
        const std::u16string units = Utf8ToUtf16(text);
        std::copy(units.begin(), units.end(), units_.begin());
        length_ = units.size();
    } catch (const Utf8Fault& fault) {
        throw TextFault{DescribeFault(text, fault)};
    }
}

template <class Code>
const void* TextEncoder::Map(std::vector<Code>& codes) {
    if (codes.size() <= length_) codes.resize(length_ + 1);
    for (std::size_t i = 0; i < length_; ++i) codes[i] = static_cast<Code>(CodeAt(i));
    codes[length_] = 0;
    return codes.data();
}

unsigned short TextEncoder::CodeAt(std::size_t i) {
    const unsigned short unit = units_[i];
    if (unit < known_.size() && known_[unit] != 0) return known_[unit];
    if (IsSurrogate(unit) || !set_.HasUnicode(unit)) {
        throw TextFault{fmt::format("code set {} has no character {}{}", DescribeCodeSet(set_.GetCode()),
                                    Quoted(CharacterAt(i)), isChosen_ ? " (use --code-set 253 for Unicode)" : "")};
    }
    const unsigned short code = set_.FromUnicode(unit);
    if (unit < known_.size()) known_[unit] = code;
    return code;
}

// As the user sees it: both halves of a pair.
std::string TextEncoder::CharacterAt(std::size_t i) const {
    const std::u16string units(units_.begin() + static_cast<std::ptrdiff_t>(i),
                               units_.begin() + static_cast<std::ptrdiff_t>(i + (IsSurrogate(units_[i]) ? 2 : 1)));
    return Utf16ToUtf8(units);
}

void TextEncoder::CheckLength() const {
    const std::size_t most = VqString::MaxSize / static_cast<unsigned>(set_.GetCharSize()) - 1;
    if (length_ > most) {
        throw TextFault{fmt::format("{} characters are too many: a string of code set {} holds at most {}", length_,
                                    DescribeCodeSet(set_.GetCode()), most)};
    }
}
