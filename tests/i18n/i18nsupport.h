// What the tests of code sets share: all sets, their codes, orders by name of the field.
#ifndef VQ_I18NSUPPORT_H
#define VQ_I18NSUPPORT_H

#include <array>
#include <compare>
#include <string>
#include <string_view>
#include <vector>

#include "vqlanguagecontext.h"

namespace vqtest {

inline std::vector<const VqCodeSet*> AllSets() {
    std::vector<const VqCodeSet*> sets;
    for (int code = 1; code < 256; ++code) {
        if (const VqCodeSet* set = VqLanguageContext::QueryCodeSet(static_cast<unsigned char>(code)))
            sets.push_back(set);
    }
    return sets;
}

inline const VqCodeSet& Unicode() { return *VqLanguageContext::QueryCodeSet(253); }

// The sets of an East Asian encoding: many codes stand for nothing, and some characters have two.
inline bool IsEastAsian(const VqCodeSet& set) { return set.GetCharSize() == 2 && set.GetCode() != 253; }

constexpr unsigned char Turkish = 17;
constexpr unsigned char IdeographicClass = 20;  // letters are plain numbers there

inline unsigned CodeCount(const VqCodeSet& set) { return set.GetCharSize() == 1 ? 256 : 65536; }

// One language of each collation class.
inline std::vector<unsigned char> ClassLanguages() {
    std::vector<unsigned char> languages;
    std::array<bool, 256> seen{};
    for (unsigned char language = 0; VqLanguageContext::GetLanguageName(language) != nullptr; ++language) {
        bool& known = seen[Unicode().GetCollationClass(language)];
        if (!known) languages.push_back(language);
        known = true;
    }
    return languages;
}

// The orders of one character; the second is 0 where there is one.
struct Orders {
    int count = 0;
    std::array<unsigned short, 2> order{};

    auto operator<=>(const Orders& other) const { return order <=> other.order; }
    bool operator==(const Orders& other) const { return order == other.order; }
};

inline Orders OrdersOf(const VqCodeSet& set, unsigned code, unsigned char language = 0) {
    unsigned short written[2] = {};
    Orders result;
    result.count = set.GetOrders(static_cast<unsigned short>(code), language, written);
    for (std::size_t i = 0; i < 2 && static_cast<int>(i) < result.count; ++i) result.order[i] = written[i];
    return result;
}

// A letter of several characters: how many (0: none), and its orders.
struct Contraction {
    int count = 0;
    Orders orders;
};

inline Contraction ContractionAt(const VqCodeSet& set, const unsigned short codes[VqMaxContraction],
                                 unsigned char language) {
    unsigned short written[2] = {};
    Contraction result;
    result.count = set.GetContraction(codes, language, written);
    if (result.count != 0) result.orders = {written[1] != 0 ? 2 : 1, {written[0], written[1]}};
    return result;
}

// The contraction that an ASCII text begins with.
inline Contraction ContractionOf(const VqCodeSet& set, std::string_view text, unsigned char language) {
    unsigned short codes[VqMaxContraction] = {};
    for (std::size_t i = 0; i < std::size(codes) && i < text.size(); ++i)
        codes[i] = static_cast<unsigned char>(text[i]);
    return ContractionAt(set, codes, language);
}

// Calls `use` with the codes (the third 0 where there are two) and the orders of every contraction, by codes.
template <class Use>
void ForEachContraction(const VqCodeSet& set, unsigned char language, Use use) {
    const std::u16string_view letters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const std::u16string_view letterOrEnd(u"\0ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", 53);
    for (const char16_t first : letters) {
        for (const char16_t second : letters) {
            for (const char16_t third : letterOrEnd) {
                const unsigned short codes[VqMaxContraction] = {first, second, third};
                const Contraction found = ContractionAt(set, codes, language);
                if (found.count == (third != 0 ? 3 : 2)) use(codes, found.orders);
            }
        }
    }
}

constexpr bool IsLetterOrder(unsigned order) { return order >= 16384 && order < 32768; }

// The bits of an order that decide first: all, but for a letter's case and accent.
constexpr unsigned Primary(unsigned order) { return IsLetterOrder(order) ? order & 0x407F : order; }
constexpr unsigned CaseOf(unsigned order) { return order >> 12 & 3; }
constexpr unsigned AccentOf(unsigned order) { return order >> 7 & 31; }
constexpr char LetterOf(unsigned order) { return static_cast<char>((order >> 2 & 31) + 62); }
constexpr unsigned ExtensionOf(unsigned order) { return order & 3; }

// "Windows-1252 E9"
inline std::string Label(const VqCodeSet& set, unsigned code) {
    static const char digits[] = "0123456789ABCDEF";
    std::string hex;
    for (int shift = set.GetCharSize() == 1 ? 4 : 12; shift >= 0; shift -= 4) hex += digits[code >> shift & 15];
    return std::string(set.GetName()) + " " + hex;
}

}  // namespace vqtest

#endif
