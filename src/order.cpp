#include "order.h"

#include <array>
#include <cstdint>
#include <string>

#include "vqlanguagecontext.h"
#include "vqstring.h"

namespace {

constexpr unsigned short UndefinedOrder = 13;
constexpr unsigned short SymbolBase = 80;
constexpr unsigned short DigitBase = 16128;
constexpr unsigned short LetterBase = 16384;
constexpr unsigned short IdeographBase = 32768;
constexpr unsigned char IdeographicClass = 20;

constexpr unsigned FirstLetter = 62;  // the character of letter index 0
constexpr unsigned short AccentBits = 0x0F80;
constexpr unsigned short ExtensionBits = 0x0003;
constexpr unsigned short CaseBits = 0x3000;
constexpr unsigned short LowerCase = 0x1000;

struct SymbolName {
    std::uint8_t symbol;
    const char* name;
};

constexpr SymbolName symbolNames[] = {
    {32, "_"},
    {34, "macron sign"},
    {35, "soft hyphen"},
    {36, "-"},
    {37, ","},
    {38, ";"},
    {39, ":"},
    {40, "!"},
    {41, "inverted exclamation mark"},
    {42, "?"},
    {44, "solidus"},
    {46, "full stop"},
    {49, "middle dot"},
    {50, "cedilla"},
    {52, "apostrophe"},
    {55, "\""},
    {58, "left pointing double angle quotation mark"},
    {59, "right pointing double angle quotation mark"},
    {60, "("},
    {62, ")"},
    {64, "["},
    {65, "]"},
    {66, "{"},
    {67, "}"},
    {68, "section sign"},
    {69, "pilcrow sign"},
    {70, "copyright sign"},
    {71, "registered sign"},
    {73, "@"},
    {74, "currency sign"},
    {75, "cent sign"},
    {76, "$"},
    {77, "pound sign"},
    {78, "yen sign"},
    {79, "*"},
    {80, "reverse solidus"},
    {81, "&"},
    {82, "#"},
    {83, "%"},
    {85, "+"},
    {87, "plus minus sign"},
    {88, "'"},
    {89, "`"},
    {91, "^"},
    {94, "diaeresis"},
    {96, "~"},
    {98, "division sign"},
    {99, "multiplication sign"},
    {101, "<"},
    {103, "="},
    {105, ">"},
    {106, "not sign"},
    {107, "|"},
    {108, "broken bar"},
    {109, "degree sign"},
    {110, "micron sign"},
    {139, "inverted question mark"},
};

constexpr const char* accentNames[] = {
    nullptr,         "cedilla",      "accent acute", "accent grave", "accent circumflex",
    "tilde",         "diaeresis",    "ring above",   "stroke",       "accent caron",
    "accent macron", "accent breve", "dot above",    "ogonek",       "accent double acute",
};

enum class Kind { Space, Symbol, Digit, Letter, Ideograph };

constexpr Kind KindOf(unsigned short order, unsigned char collationClass) {
    if (order >= IdeographBase || (collationClass & 127) >= IdeographicClass) return Kind::Ideograph;
    if (order < SymbolBase) return Kind::Space;
    if (order < DigitBase) return Kind::Symbol;
    return order < LetterBase ? Kind::Digit : Kind::Letter;
}

const char* NameOfSymbol(unsigned symbol) {
    for (const SymbolName& entry : symbolNames) {
        if (entry.symbol == symbol) return entry.name;
    }
    return nullptr;
}

constexpr unsigned AccentOf(unsigned short order) { return (order & AccentBits) >> 7; }

const char* NameOfAccent(unsigned accent) { return accent < std::size(accentNames) ? accentNames[accent] : nullptr; }

std::string DescribeLetter(unsigned short order) {
    const bool lower = (order & CaseBits) != 0;
    std::string text = lower ? "lower letter " : "upper letter ";
    text += static_cast<char>((order >> 2 & 31) + FirstLetter + (lower ? 'a' - 'A' : 0));
    if (const unsigned accent = AccentOf(order); accent != 0) {
        const char* const name = NameOfAccent(accent);
        text += std::string(" with ") + (name != nullptr ? name : "");
    }
    if (order & ExtensionBits) text += " with extension";
    return text;
}

std::string DescribeDigit(unsigned short order) {
    unsigned short digit, expand;
    VqExtractDigitFromOrder(order, digit, expand);
    return "digit " + std::to_string(digit) + (expand ? " with expand" : "");
}

std::string DescribeIdeograph(unsigned short order) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text = "HAN character 0x";
    for (int shift = 12; shift >= 0; shift -= 4) text += digits[order >> shift & 15];
    return text + "\n";
}

std::string Describe(unsigned short order, Kind kind) {
    if (kind == Kind::Ideograph) return DescribeIdeograph(order);
    if (kind == Kind::Space) return order == UndefinedOrder ? "undefined ordering indicator" : "space";
    if (kind == Kind::Digit) return DescribeDigit(order);
    if (kind == Kind::Letter) return DescribeLetter(order);
    const char* const name = NameOfSymbol(static_cast<unsigned>(order - SymbolBase));
    return std::string("symbol ") + (name != nullptr ? name : "");
}

const char* NameOf(unsigned short order, Kind kind) {
    if (kind == Kind::Symbol) return NameOfSymbol(static_cast<unsigned>(order - SymbolBase));
    return kind == Kind::Letter ? NameOfAccent(AccentOf(order)) : nullptr;
}

// The first language whose texts in `set` have the class; -1 when there is none.
int LanguageOfClass(const VqCodeSet& set, unsigned char collationClass) {
    for (unsigned language = 0; language < 256; ++language) {
        if (set.GetCollationClass(static_cast<unsigned char>(language)) == (collationClass & 0x7F)) {
            return static_cast<int>(language);
        }
    }
    return -1;
}

// What code set 1 has of one order.
struct Holders {
    int alone = -1;  // the first character that has the order and no other
    int any = -1;    // the first character that has it at all
    int count = 0;   // of these
};

Holders FindHolders(const VqCodeSet& set, unsigned char language, unsigned short order) {
    Holders holders;
    for (unsigned short code = 0; code < 256; ++code) {
        unsigned short orders[2];
        const int n = set.GetOrders(code, language, orders);
        if (orders[0] != order && (n == 1 || orders[1] != order)) continue;
        if (holders.count++ == 0) holders.any = code;
        if (n == 1 && holders.alone < 0) holders.alone = code;
    }
    return holders;
}

// The order of the letter itself, of which an order beside another one is a variant.
constexpr unsigned short PlainLetter(unsigned short order) {
    const unsigned plain = order & ~unsigned{AccentBits | CaseBits};
    return static_cast<unsigned short>(order & CaseBits ? plain | LowerCase : plain);
}

// The code of the character that an order stands for, -1 where there is none; `count` as in VqConvertOrderToChar.
int CharacterOf(const VqCodeSet& set, unsigned char language, unsigned short order, int& count) {
    const Holders holders = FindHolders(set, language, order);
    count = holders.count;
    if (holders.alone >= 0 || count == 0) return holders.alone;
    const bool isLetter = KindOf(order, set.GetCollationClass(language)) == Kind::Letter;
    const int letter = isLetter ? FindHolders(set, language, PlainLetter(order)).alone : -1;
    return letter >= 0 ? letter : holders.any;
}

}  // namespace

short VqExtractSymbolFromOrder(unsigned short order, unsigned short& symbol) {
    if (order < SymbolBase || order >= DigitBase) return VqStatus_Refused;
    symbol = static_cast<unsigned short>(order - SymbolBase);
    return VqStatus_Ok;
}

short VqExtractDigitFromOrder(unsigned short order, unsigned short& digit, unsigned short& expand) {
    if (order < DigitBase || order >= LetterBase) return VqStatus_Refused;
    digit = static_cast<unsigned short>(((order & 0xFFFE) - DigitBase) / 10);
    expand = order & 1;
    return VqStatus_Ok;
}

short VqConvertOrderToString(unsigned short order, unsigned char collationClass, VqString& text) {
    text = Describe(order, KindOf(order, collationClass)).c_str();
    return VqStatus_Ok;
}

short VqConvertOrderToChar(unsigned short order, unsigned char collationClass, unsigned char& c, int* count,
                           const char** name) {
    const VqCodeSet& set = *VqLanguageContext::QueryCodeSet(1);
    const int language = LanguageOfClass(set, collationClass);
    int holders = 0;
    const int code = language >= 0 ? CharacterOf(set, static_cast<unsigned char>(language), order, holders) : -1;
    c = static_cast<unsigned char>(code >= 0 ? code : 0);
    if (count != nullptr) *count = holders;
    if (name != nullptr) *name = NameOf(order, KindOf(order, collationClass));
    return code >= 0 ? VqStatus_Ok : VqStatus_Refused;
}
