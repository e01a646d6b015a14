#include "text.h"

#include <algorithm>
#include <charconv>

#include "error.h"
#include "stringiterator.h"
#include "textencoder.h"
#include "utf8.h"
#include "vqlanguagecontext.h"

namespace {

constexpr unsigned char Unicode = 253;

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

// ISO 639-1 codes of the languages, the two of Norwegian among them, and the tags by which Chinese is told apart.
constexpr NamedCode LanguageCodes[] = {
    {1, "en"},  {2, "de"},  {3, "fr"},       {4, "es"},     {5, "it"},       {6, "pt"},     {7, "nl"},
    {8, "sv"},  {9, "fi"},  {10, "da"},      {11, "no"},    {11, "nb"},      {11, "nn"},    {12, "is"},
    {13, "pl"}, {14, "cs"}, {15, "sk"},      {16, "hu"},    {17, "tr"},      {18, "ru"},    {19, "el"},
    {20, "ja"}, {21, "zh"}, {21, "zh-Hans"}, {21, "zh-CN"}, {22, "zh-Hant"}, {22, "zh-TW"}, {23, "ko"},
};

std::string Listed(const std::vector<NamedCode>& codes) {
    std::string list;
    for (const auto& [code, name] : codes) list += fmt::format("{}{} {}", list.empty() ? "" : ", ", code, name);
    return list;
}

// Those of all codes that have a name.
std::vector<NamedCode> Named(const char* (*nameOf)(unsigned char)) {
    std::vector<NamedCode> codes;
    for (unsigned number = 0; number < 256; ++number) {
        const auto code = static_cast<unsigned char>(number);
        if (const char* name = nameOf(code)) codes.push_back({code, name});
    }
    return codes;
}

}  // namespace

void CheckUtf8(std::string_view text, const std::string& place) {
    try {
        Utf8ToUtf16(text);
    } catch (const Utf8Fault& fault) {
        throw CommandError("{}: {}", place, DescribeFault(text, fault));
    }
}

VqString MakeString(std::string_view text, const TextOptions& options, const std::string& place) {
    TextEncoder encoder(options);
    try {
        const void* codes = encoder.Encode(text);
        VqString string(options.codeSet, options.language);
        string.AssignChars(codes, options.codeSet, static_cast<unsigned short>(encoder.GetLength()));
        return string;
    } catch (const TextFault& fault) {
        throw CommandError("{}: {}", place, fault.text);
    }
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

std::string Lowered(std::string_view text) {
    std::string lowered(text);
    for (char& c : lowered) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return lowered;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) { return Lowered(a) == Lowered(b); }

std::vector<NamedCode> CodeSets() {
    return Named([](unsigned char code) { return IsCodeSet(code) ? CodeSetName(code) : nullptr; });
}

std::vector<NamedCode> Languages() {
    return Named([](unsigned char code) { return VqLanguageContext::GetLanguageName(code); });
}

bool IsCodeSet(unsigned char codeSet) { return VqLanguageContext::QueryCodeSet(codeSet) != nullptr; }

const char* CodeSetName(unsigned char codeSet) { return codeSet ? RequireCodeSet(codeSet).GetName() : "native"; }

std::string DescribeCodeSet(unsigned char codeSet) {
    return IsCodeSet(codeSet) ? fmt::format("{} ({})", codeSet, CodeSetName(codeSet)) : fmt::to_string(codeSet);
}

std::string DescribeLanguage(unsigned char language) {
    const char* name = VqLanguageContext::GetLanguageName(language);
    return name ? fmt::format("{} ({})", language, name) : fmt::to_string(language);
}

const VqCodeSet& RequireCodeSet(unsigned char codeSet) {
    const VqCodeSet* set = VqLanguageContext::QueryCodeSet(codeSet);
    if (!set) throw CommandError("code set {}: there is no code set of this number", codeSet);
    return *set;
}

unsigned char ParseCodeSet(const std::string& text, const char* place) {
    const unsigned number = ParseByte(text);
    for (const auto& [code, name] : CodeSets()) {
        if (code == number || EqualIgnoringCase(text, name)) return code;
    }
    throw CommandError("{} {}: expected a number or a name: {}", place, Echo(text), Listed(CodeSets()));
}

unsigned char ParseLanguage(const std::string& text, const char* place) {
    const unsigned code = ParseByte(text);
    if (code < 256 && VqLanguageContext::GetLanguageName(static_cast<unsigned char>(code))) {
        return static_cast<unsigned char>(code);
    }
    const int found = VqLanguageContext::FindLanguage(text.c_str());
    if (found >= 0) return static_cast<unsigned char>(found);
    for (const auto& [language, shortName] : LanguageCodes) {
        if (EqualIgnoringCase(text, shortName)) return language;
    }
    throw CommandError("{} {}: expected a number, a name or an ISO 639 code: {}", place, Echo(text),
                       Listed(Languages()));
}
