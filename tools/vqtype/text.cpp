#include "text.h"

#include <charconv>
#include <vector>

#include "error.h"
#include "stringiterator.h"
#include "utf8.h"
#include "vqlanguagecontext.h"

namespace {

constexpr unsigned char Unicode = 253;

bool IsSurrogate(char16_t unit) { return (unit & 0xF800) == 0xD800; }

// Unicode text passes as it stands: its set need not know every unit, halves of surrogate pairs least of all.
bool HasUnit(const VqCodeSet& set, char16_t unit) {
    return set.GetCode() == Unicode || (!IsSurrogate(unit) && set.HasUnicode(unit));
}

unsigned short CodeOf(const VqCodeSet& set, char16_t unit) {
    return set.GetCode() == Unicode ? static_cast<unsigned short>(unit) : set.FromUnicode(unit);
}

const VqCodeSet& RequireCodeSet(unsigned char codeSet) {
    const VqCodeSet* set = VqLanguageContext::QueryCodeSet(codeSet);
    if (!set) throw CommandError("code set {}: there is no code set of this number", codeSet);
    return *set;
}

std::u16string DecodeText(std::string_view text, const std::string& place) {
    try {
        return Utf8ToUtf16(text);
    } catch (const Utf8Fault& fault) {
        throw CommandError("{}: not UTF-8: byte 0x{:02x} at offset {}", place,
                           static_cast<unsigned char>(text[fault.offset]), fault.offset);
    }
}

// The character at `i`, both halves of a pair, as the user sees it.
std::string CharacterAt(const std::u16string& units, std::size_t i) {
    return Utf16ToUtf8(std::u16string_view(units).substr(i, IsSurrogate(units[i]) ? 2 : 1));
}

void CheckUnits(const std::u16string& units, const VqCodeSet& set, bool isChosen, const std::string& place) {
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (units[i] == 0) throw CommandError("{}: a text cannot hold the zero character (at character {})", place, i);
        if (!HasUnit(set, units[i])) {
            throw CommandError("{}: code set {} has no character {}{}", place, DescribeCodeSet(set.GetCode()),
                               Quoted(CharacterAt(units, i)), isChosen ? " (use --code-set 253 for Unicode)" : "");
        }
    }
    const std::size_t most = (VqString::MaxSize - 1) / static_cast<unsigned>(set.GetCharSize());
    if (units.size() > most) {
        throw CommandError("{}: {} characters are too many: a string of code set {} holds at most {}", place,
                           units.size(), DescribeCodeSet(set.GetCode()), most);
    }
}

template <class Unit>
VqString Encode(const std::u16string& units, const VqCodeSet& set, const TextOptions& options) {
    std::vector<Unit> codes;
    for (const char16_t unit : units) codes.push_back(static_cast<Unit>(CodeOf(set, unit)));
    VqString string(options.codeSet, options.language);
    string.AssignChars(codes.data(), options.codeSet, static_cast<unsigned short>(codes.size()));
    return string;
}

// `text` with what a terminal cannot show or would act on as escapes, and a backslash before the characters `marked`.
std::string Escaped(std::string_view text, std::string_view marked) {
    std::string out;
    for (std::size_t at = 0, length = 0; at < text.size(); at += length) {
        char32_t code = 0;
        length = DecodeUtf8(text.substr(at), code);
        if (length == 0) {
            out += fmt::format("\\x{:02x}", static_cast<unsigned char>(text[at]));
            length = 1;
        } else if (code < 0x20 || (code >= 0x7F && code < 0xA0)) {
            out += fmt::format("\\u{:04x}", static_cast<unsigned>(code));
        } else {
            if (marked.find(text[at]) != marked.npos) out += '\\';
            out += text.substr(at, length);
        }
    }
    return out;
}

unsigned ParseByte(const std::string& text) {
    unsigned value = 256;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end && value < 256 ? value : 256;
}

std::string ListLanguages() {
    std::string list;
    for (unsigned code = 0; code < 256; ++code) {
        const char* name = VqLanguageContext::GetLanguageName(static_cast<unsigned char>(code));
        if (name) list += fmt::format("{}{} {}", list.empty() ? "" : ", ", code, name);
    }
    return list;
}

std::string ListCodeSets() {
    std::string list;
    for (unsigned code = 0; code < 256; ++code) {
        const VqCodeSet* set = VqLanguageContext::QueryCodeSet(static_cast<unsigned char>(code));
        if (set) list += fmt::format("{}{} {}", list.empty() ? "" : ", ", code, code ? set->GetName() : "native");
    }
    return list;
}

}  // namespace

void CheckUtf8(std::string_view text, const std::string& place) { DecodeText(text, place); }

VqString MakeString(std::string_view text, const TextOptions& options, const std::string& place) {
    const VqCodeSet& set = RequireCodeSet(options.codeSet);
    const std::u16string units = DecodeText(text, place);
    CheckUnits(units, set, options.isChosen, place);
    return set.GetCharSize() == 1 ? Encode<char>(units, set, options) : Encode<unsigned short>(units, set, options);
}

std::string ToUtf8(const VqString& string) {
    const VqCodeSet& set = RequireCodeSet(string.GetCodeSet());
    std::u16string units;
    for (VqStringIterator at(string); !at.IsEnd(); ++at) {
        const unsigned short code = at.GetCode();
        units += static_cast<char16_t>(set.GetCode() == Unicode ? code : set.ToUnicode(code));
    }
    return Utf16ToUtf8(units);
}

std::string Quoted(std::string_view text) { return '"' + Escaped(text, "\"\\") + '"'; }

std::string Printable(std::string_view text) { return Escaped(text, ""); }

std::string Shortened(std::string_view text, std::size_t most) {
    if (text.size() <= most) return std::string(text);
    for (int i = 0; i < 3 && (text[most] & 0xC0) == 0x80; ++i) --most;
    return std::string(text.substr(0, most)) + "\u2026";
}

std::string Echo(std::string_view text) { return Quoted(Shortened(text, 60)); }

bool IsCodeSet(unsigned char codeSet) { return VqLanguageContext::QueryCodeSet(codeSet) != nullptr; }

std::string DescribeCodeSet(unsigned char codeSet) {
    const VqCodeSet* set = VqLanguageContext::QueryCodeSet(codeSet);
    return set ? fmt::format("{} ({})", codeSet, codeSet ? set->GetName() : "native") : fmt::to_string(codeSet);
}

std::string DescribeLanguage(unsigned char language) {
    const char* name = VqLanguageContext::GetLanguageName(language);
    return name ? fmt::format("{} ({})", language, name) : fmt::to_string(language);
}

unsigned char ParseCodeSet(const std::string& text) {
    const unsigned code = ParseByte(text);
    if (code < 256 && IsCodeSet(static_cast<unsigned char>(code))) return static_cast<unsigned char>(code);
    throw CommandError("--code-set {}: expected one of the numbers: {}", Echo(text), ListCodeSets());
}

unsigned char ParseLanguage(const std::string& text) {
    const unsigned code = ParseByte(text);
    if (code < 256 && VqLanguageContext::GetLanguageName(static_cast<unsigned char>(code))) {
        return static_cast<unsigned char>(code);
    }
    const int found = VqLanguageContext::FindLanguage(text.c_str());
    if (found >= 0) return static_cast<unsigned char>(found);
    throw CommandError("--language {}: expected a number or a name: {}", Echo(text), ListLanguages());
}
