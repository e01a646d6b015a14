#include "header.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>

#include "../diskform.h"
#include "../error.h"
#include "library.h"
#include "vqchar.h"
#include "vqlanguagecontext.h"

namespace store {

namespace {

// --- The library as it is now

using Version = std::array<unsigned long, 3>;

Version LibraryVersion() {
    Version version;
    unsigned long build, patch, number;
    const char *module, *date, *text, *compiler, *extra;
    _VqDescribeDll(&version[0], &version[1], &version[2], &build, &patch, &module, &date, &text, &number, &compiler,
                   &extra);
    return version;
}

std::string TextOf(const Version& version) { return fmt::format("{}", fmt::join(version, ".")); }

// What the class would be: of no use for a code set that there is not.
unsigned char ClassOf(unsigned char language, unsigned char codeSet) {
    const VqCodeSet* set = VqLanguageContext::QueryCodeSet(codeSet);
    return set ? set->GetCollationClass(language) : 0;
}

std::vector<CollationLanguage> LanguagesOf(const Schema& schema) {
    std::vector<CollationLanguage> languages;
    for (const Column& column : schema.Columns()) {
        if (column.type != VqTypeId_VqString) continue;
        const CollationLanguage one{column.text.language, column.text.codeSet,
                                    ClassOf(column.text.language, column.text.codeSet)};
        if (std::find(languages.begin(), languages.end(), one) == languages.end()) languages.push_back(one);
    }
    return languages;
}

// --- Numbers and characters as text

// Takes the number that `text` begins with.
template <class Number>
bool TakeNumber(std::string_view& text, Number& number, int base = 10) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number, base);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    return result.ec == std::errc();
}

bool Take(std::string_view& text, std::string_view prefix) {
    if (text.substr(0, prefix.size()) != prefix) return false;
    text.remove_prefix(prefix.size());
    return true;
}

template <class Number>
bool IsNumber(std::string_view text, Number& number, int base = 10) {
    return TakeNumber(text, number, base) && text.empty();
}

bool IsVersion(std::string_view text, Version& version) {
    return TakeNumber(text, version[0]) && Take(text, ".") && TakeNumber(text, version[1]) && Take(text, ".") &&
           IsNumber(text, version[2]);
}

constexpr const char* StandardWildcards = "U+002A U+003F -";

// Any run of characters, any one, the next one literally; a code of 0 is none.
using Wildcards = std::array<unsigned short, 3>;

bool IsWildcards(std::string_view text, Wildcards& codes) {
    for (unsigned short& code : codes) {
        if (&code != codes.data() && !Take(text, " ")) return false;
        code = 0;
        if (!Take(text, "-") && !(Take(text, "U+") && TakeNumber(text, code, 16) && code != 0)) return false;
    }
    return text.empty();
}

// --- Lines: a name, how the value is written, how it is read

struct Line {
    const char* name;
    std::string (*write)(const Header& header);
    bool (*read)(std::string_view text, Header& header);
};

std::string WriteLanguages(const Header& header) {
    std::string text;
    for (const CollationLanguage& one : header.languages) {
        text += fmt::format("{}{}/{}:{}", text.empty() ? "" : " ", one.language, one.codeSet, one.collationClass);
    }
    return text;
}

bool ReadLanguages(std::string_view text, Header& header) {
    while (!text.empty()) {
        CollationLanguage one{};
        if (!header.languages.empty() && !Take(text, " ")) return false;
        if (!TakeNumber(text, one.language) || !Take(text, "/") || !TakeNumber(text, one.codeSet) || !Take(text, ":") ||
            !TakeNumber(text, one.collationClass)) {
            return false;
        }
        header.languages.push_back(one);
    }
    return true;
}

const Line Lines[] = {
    {"format-version", [](const Header& header) { return fmt::to_string(header.formatVersion); },
     [](std::string_view text, Header& header) { return IsNumber(text, header.formatVersion); }},
    {"library-version", [](const Header& header) { return header.libraryVersion; },
     [](std::string_view text, Header& header) {
         Version version;
         header.libraryVersion = text;
         return IsVersion(text, version);
     }},
    {"order-version", [](const Header& header) { return fmt::to_string(header.orderVersion); },
     [](std::string_view text, Header& header) { return IsNumber(text, header.orderVersion); }},
    {"byte-order",
     [](const Header& header) { return std::string(header.format == VqFormat_BigEndian ? "big" : "little"); },
     [](std::string_view text, Header& header) {
         header.format = ByteOrderOf(std::string(text));
         return text == "little" || text == "big";
     }},
    {"native-code-set", [](const Header& header) { return fmt::to_string(header.nativeCodeSet); },
     [](std::string_view text, Header& header) { return IsNumber(text, header.nativeCodeSet); }},
    {"comparison", [](const Header& header) { return fmt::format("0x{:04X}", header.defaultCmpOp); },
     [](std::string_view text, Header& header) { return Take(text, "0x") && IsNumber(text, header.defaultCmpOp, 16); }},
    {"wildcards", [](const Header& header) { return header.wildcards; },
     [](std::string_view text, Header& header) {
         Wildcards codes;
         header.wildcards = text;
         return IsWildcards(text, codes);
     }},
    {"collation", WriteLanguages, ReadLanguages},
    {"schema", [](const Header& header) { return header.schema.Format(); },
     [](std::string_view text, Header& header) {
         header.schema = Schema::Parse(text, fmt::format("the schema that library {} wrote", header.libraryVersion));
         return true;
     }},
};

// --- What stands between

class Comparison {
  public:
    explicit Comparison(const Header& header) : header_(header) {}

    std::vector<Obstacle> Obstacles() {
        Look(header_.formatVersion == FormatVersion, {"", false, true},
             "its files are of format {}; this program reads format {}", header_.formatVersion, FormatVersion);
        if (!obstacles_.empty()) return obstacles_;
        LookAtLibrary();
        LookAtCodeSets();
        LookAtOrder();
        return obstacles_;
    }

  private:
    template <class... Args>
    void Look(bool isGood, Obstacle obstacle, fmt::format_string<Args...> reason, Args&&... args) {
        if (isGood) return;
        obstacle.reason = fmt::format(reason, std::forward<Args>(args)...);
        obstacles_.push_back(std::move(obstacle));
    }

    void LookAtLibrary() {
        Version writer{};
        IsVersion(header_.libraryVersion, writer);
        Look(writer <= LibraryVersion(), {}, "it was written by version {} of the library; this one is {}",
             header_.libraryVersion, TextOf(LibraryVersion()));
        Look((header_.defaultCmpOp & ~StoreCmpOps) == 0 && (header_.defaultCmpOp & VqCmp_Exact), {},
             "its comparison 0x{:04X} is unknown to this program", header_.defaultCmpOp);
    }

    void LookAtCodeSets() {
        const unsigned char native = header_.nativeCodeSet;
        Look(native != 0 && IsCodeSet(native) && native < VqFirstWideCodeSet, {"", false, true},
             "its native code set {} is none of 1-byte characters that this library has", native);
        for (const CollationLanguage& one : header_.languages) {
            Look(IsCodeSet(one.codeSet), {"", false, true}, "code set {} is unknown to this library", one.codeSet);
        }
    }

    void LookAtOrder() {
        const Obstacle mended{"", true, false};
        Look(header_.orderVersion == VqLanguageContext::GetOrderVersion(), mended,
             "its texts are sorted by version {} of the orders; this library sorts by version {}", header_.orderVersion,
             VqLanguageContext::GetOrderVersion());
        for (const CollationLanguage& one : header_.languages) {
            const unsigned char now = ClassOf(one.language, one.codeSet);
            Look(one.collationClass == now || !IsCodeSet(one.codeSet), mended,
                 "its language {} in code set {} is sorted by collation class {}; this library sorts it by {}",
                 DescribeLanguage(one.language), DescribeCodeSet(one.codeSet), one.collationClass, now);
        }
    }

    const Header& header_;
    std::vector<Obstacle> obstacles_;
};

void Set(const Header& header) {
    VqLanguageContext::SetNativeCodeSet(header.nativeCodeSet);
    VqLanguageContext::SetDefaultCmpOp(header.defaultCmpOp);
    Wildcards codes{};
    IsWildcards(header.wildcards, codes);
    void (*const setters[])(const VqChar&) = {VqString::SetAsterisk, VqString::SetQuestion, VqString::SetEscape};
    for (std::size_t i = 0; i < codes.size(); ++i) setters[i](VqChar(codes[i], 253, 0));
}

}  // namespace

Header Header::Make(Schema schema, unsigned char format, unsigned short defaultCmpOp) {
    Header header;
    header.languages = LanguagesOf(schema);
    header.schema = std::move(schema);
    header.format = format;
    header.formatVersion = FormatVersion;
    header.libraryVersion = TextOf(LibraryVersion());
    header.orderVersion = VqLanguageContext::GetOrderVersion();
    header.nativeCodeSet = VqLanguageContext::GetNativeCodeSet();
    header.defaultCmpOp = defaultCmpOp;
    header.wildcards = StandardWildcards;
    return header;
}

std::string Header::Format() const {
    std::string text;
    for (const Line& line : Lines) text += fmt::format("{}={}\n", line.name, line.write(*this));
    return text;
}

Header Header::Parse(std::string_view text, const std::string& place) {
    Header header;
    for (const Line& line : Lines) {
        const std::string_view given = text.substr(0, text.find('\n'));
        std::string_view value = given;
        if (!Take(value, line.name) || !Take(value, "=") || !line.read(value, header)) {
            throw CommandError("{}: {} cannot be understood; expected {}=…", place, Echo(given), line.name);
        }
        if (header.formatVersion != FormatVersion) return header;
        text.remove_prefix(std::min(given.size() + 1, text.size()));
    }
    if (!text.empty()) throw CommandError("{}: {} cannot be understood", place, Echo(text));
    return header;
}

std::vector<Obstacle> Adopt(const Header& header) {
    std::vector<Obstacle> obstacles = Comparison(header).Obstacles();
    const bool isUnderstood =
        std::none_of(obstacles.begin(), obstacles.end(), [](const Obstacle& one) { return one.hidesRecords; });
    if (isUnderstood) Set(header);
    return obstacles;
}

}  // namespace store
