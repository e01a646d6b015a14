#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string_view>

#include "i18nsupport.h"

namespace {

using namespace vqtest;

unsigned short U(unsigned code) { return static_cast<unsigned short>(code); }

// Calls `check` for every code of every set in every class.
template <class Check>
void ForEachCode(Check check) {
    for (const VqCodeSet* set : AllSets()) {
        for (const unsigned char language : ClassLanguages()) {
            for (unsigned code = 0; code < CodeCount(*set); ++code) check(*set, code, OrdersOf(*set, code, language));
        }
    }
}

TEST(Orders, LieInTheRangeOfTheirKind) {
    ForEachCode([](const VqCodeSet& set, unsigned code, const Orders& orders) {
        const unsigned first = orders.order[0];
        const unsigned properties = set.GetProperties(U(code));
        ASSERT_TRUE(orders.count == 1 || orders.count == 2) << Label(set, code);
        ASSERT_EQ(first == 0, code == 0) << Label(set, code);
        ASSERT_EQ(first < 80 && first != 13, (properties & VqCharProperty_Space) != 0) << Label(set, code);
        ASSERT_FALSE(first >= 16 && first < 32) << Label(set, code) << ": a mark of the tables";
        if (set.GetCharSize() == 1) {
            ASSERT_EQ(first == 13, set.ToUnicode(U(code)) == 0xFFFD) << Label(set, code);
        }
        if (IsLetterOrder(first)) {
            ASSERT_TRUE(properties & VqCharProperty_Letter) << Label(set, code);
        }
        if (orders.count == 2) {
            ASSERT_GE(orders.order[1], 16384) << Label(set, code);
        }
    });
}

TEST(Orders, NoTwoCharactersShareThem) {
    for (const VqCodeSet* set : AllSets()) {
        for (const unsigned char language : ClassLanguages()) {
            std::map<Orders, unsigned> seen;
            for (unsigned code = 0; code < CodeCount(*set); ++code) {
                const Orders orders = OrdersOf(*set, code, language);
                if (orders.order[0] == 13) continue;
                if (set->FromUnicode(set->ToUnicode(U(code))) != code) continue;  // one more code of the character
                const auto [place, isNew] = seen.emplace(orders, code);
                ASSERT_TRUE(isNew) << Label(*set, code) << " and " << Label(*set, place->second);
            }
        }
    }
}

TEST(Orders, NamedSymbolsHaveTheCodesOfTheirNames) {
    struct Symbol {
        unsigned code;
        unsigned unit;
    };
    static const Symbol symbols[] = {
        {32, '_'},   {34, 0xAF},  {35, 0xAD},  {36, '-'},  {37, ','},  {38, ';'},  {39, ':'},   {40, '!'},  {41, 0xA1},
        {42, '?'},   {44, '/'},   {46, '.'},   {49, 0xB7}, {50, 0xB8}, {52, '\''}, {55, '"'},   {58, 0xAB}, {59, 0xBB},
        {60, '('},   {62, ')'},   {64, '['},   {65, ']'},  {66, '{'},  {67, '}'},  {68, 0xA7},  {69, 0xB6}, {70, 0xA9},
        {71, 0xAE},  {73, '@'},   {74, 0xA4},  {75, 0xA2}, {76, '$'},  {77, 0xA3}, {78, 0xA5},  {79, '*'},  {80, '\\'},
        {81, '&'},   {82, '#'},   {83, '%'},   {85, '+'},  {87, 0xB1}, {88, 0xB4}, {89, '`'},   {91, '^'},  {94, 0xA8},
        {96, '~'},   {98, 0xF7},  {99, 0xD7},  {101, '<'}, {103, '='}, {105, '>'}, {106, 0xAC}, {107, '|'}, {108, 0xA6},
        {109, 0xB0}, {110, 0xB5}, {139, 0xBF},
    };
    static_assert(std::size(symbols) == 57);
    for (const unsigned char language : ClassLanguages()) {
        for (const Symbol& s : symbols) {
            EXPECT_EQ(OrdersOf(Unicode(), s.unit, language).order[0], 80 + s.code) << std::hex << s.unit;
        }
        for (unsigned control = 1; control < 32; ++control) {
            if (control < 9 || control > 13) {
                EXPECT_EQ(OrdersOf(Unicode(), control, language).order[0], 80 + control);
            }
        }
    }
}

TEST(Orders, LettersCarryCaseAccentAndExtension) {
    struct Case {
        unsigned unit;
        char letter;
        unsigned letterCase;
        unsigned accent;
        bool extension;
    };
    static const Case cases[] = {
        {'A', 'A', 0, 0, false},    {'z', 'Z', 1, 0, false},    {0xE7, 'C', 1, 1, false},   {0xC9, 'E', 0, 2, false},
        {0xE8, 'E', 1, 3, false},   {0xD4, 'O', 0, 4, false},   {0xF1, 'N', 1, 5, false},   {0xDC, 'U', 0, 6, false},
        {0xE5, 'A', 1, 7, false},   {0xD8, 'O', 0, 8, false},   {0x142, 'L', 1, 8, false},  {0x111, 'D', 1, 8, false},
        {0x161, 'S', 1, 9, false},  {0x100, 'A', 0, 10, false}, {0x11F, 'G', 1, 11, false}, {0x130, 'I', 0, 12, false},
        {0x105, 'A', 1, 13, false}, {0x150, 'O', 0, 14, false}, {0xAA, 'A', 2, 0, false},   {0xBA, 'O', 2, 0, false},
        {0xF0, 'D', 1, 0, true},    {0xDE, 'T', 0, 0, true},    {0x14A, 'N', 0, 0, true},   {0x131, 'I', 1, 0, true},
        {0x17F, 'S', 2, 0, false},  {0x259, 'E', 1, 0, true},
    };
    for (const Case& c : cases) {
        const Orders orders = OrdersOf(Unicode(), c.unit);
        const unsigned order = orders.order[0];
        EXPECT_EQ(orders.count, 1) << std::hex << c.unit;
        EXPECT_TRUE(IsLetterOrder(order)) << std::hex << c.unit;
        EXPECT_EQ(LetterOf(order), c.letter) << std::hex << c.unit;
        EXPECT_EQ(CaseOf(order), c.letterCase) << std::hex << c.unit;
        EXPECT_EQ(AccentOf(order), c.accent) << std::hex << c.unit;
        EXPECT_EQ(ExtensionOf(order) != 0, c.extension) << std::hex << c.unit;
    }
    EXPECT_EQ(OrdersOf(Unicode(), '5').order[0], 16128 + 5 * 10);
    EXPECT_EQ(OrdersOf(Unicode(), 'A').order[0], 16384 | 3 << 2);
    EXPECT_EQ(OrdersOf(Unicode(), 'a').order[0], 16384 | 3 << 2 | 1 << 12);
}

TEST(Orders, BothCasesOfALetterDifferInCaseAlone) {
    ForEachCode([](const VqCodeSet& set, unsigned code, const Orders&) {
        const unsigned short lower = set.ToLower(U(code));
        if (lower == code || set.ToUpper(lower) != code) return;
        const auto unit = static_cast<char16_t>(set.ToUnicode(U(code)));
        for (const unsigned char language : ClassLanguages()) {
            if (set.GetCollationClass(language) == IdeographicClass) continue;
            // The Turkish partners of I and dotted I are others than in the tables of case.
            if (language == Turkish && std::u16string_view(u"I\u0130\u0132").find(unit) != std::u16string_view::npos)
                continue;
            const Orders big = OrdersOf(set, code, language), small = OrdersOf(set, lower, language);
            ASSERT_EQ(big.count, small.count) << Label(set, code);
            for (std::size_t i = 0; i < 2; ++i) {
                if (!IsLetterOrder(big.order[i])) continue;
                ASSERT_EQ(big.order[i] & ~0x3000, small.order[i] & ~0x3000) << Label(set, code);
                if (i == 0) {
                    ASSERT_EQ(CaseOf(big.order[i]), 0U) << Label(set, code);
                    ASSERT_NE(CaseOf(small.order[i]), 0U) << Label(set, code);
                }
            }
        }
    });
}

TEST(Orders, SyllablesAndIdeographsKeepTheirOrder) {
    unsigned highest = 0;  // of all first orders but that of U+FFFF, which nothing stands behind
    for (unsigned unit = 0; unit < 65535; ++unit)
        highest = std::max<unsigned>(highest, OrdersOf(Unicode(), unit).order[0]);
    for (const auto& [first, last] : {std::pair{0x3400U, 0x4DBFU},
                                      {0x4E00U, 0x9FFFU},
                                      {0xAC00U, 0xD7A3U},
                                      {0xD800U, 0xDFFFU},
                                      {0xE000U, 0xF8FFU}}) {
        for (unsigned unit = first; unit < last; ++unit) {
            const Orders orders = OrdersOf(Unicode(), unit);
            ASSERT_LT(orders, OrdersOf(Unicode(), unit + 1)) << std::hex << unit;
            if (orders.count == 2) {
                ASSERT_GT(orders.order[1], highest) << std::hex << unit;
            }
        }
    }
}

// No other order is the last one, in the first place or the second.
TEST(Orders, TheLastOneBelongsToTheLastUnitAlone) {
    for (const unsigned char language : ClassLanguages()) {
        for (unsigned unit = 0; unit < 65536; ++unit) {
            const Orders orders = OrdersOf(Unicode(), unit, language);
            const unsigned last = std::max<unsigned>(orders.order[0], orders.count == 2 ? orders.order[1] : 0);
            ASSERT_EQ(last == 0xFFFF, unit == 0xFFFF) << std::hex << unit << " in language " << int{language};
        }
    }
}

// Letters that have no order of their own are told by their class: upper or other.
TEST(CharacterClass, IsTheNeutralOrderButForLettersOfOtherAlphabets) {
    const std::u16string_view upper = u"\u0391\u0416\u212B", other = u"\u03B1\u05D0\u3042";
    for (unsigned unit = 0; unit < 65536; ++unit) {
        const unsigned value = Unicode().GetClass(U(unit)), order = OrdersOf(Unicode(), unit).order[0];
        if (value != order) {
            ASSERT_TRUE(value == 16384 || value == 20480) << std::hex << unit;
            ASSERT_TRUE(Unicode().GetProperties(U(unit)) & VqCharProperty_Letter) << std::hex << unit;
        }
        const auto isIn = [&](std::u16string_view list) { return list.find(U(unit)) != list.npos; };
        ASSERT_TRUE(value == 16384 || !isIn(upper)) << std::hex << unit;
        ASSERT_TRUE(value == 20480 || !isIn(other)) << std::hex << unit;
    }
}

// --- What must not change unnoticed

class Crc32 {
  public:
    void Add(unsigned short value) {
        for (const int byte : {value & 255, value >> 8}) {
            state_ ^= static_cast<std::uint32_t>(byte);
            for (int bit = 0; bit < 8; ++bit) state_ = state_ >> 1 ^ (state_ & 1 ? 0xEDB88320U : 0U);
        }
    }
    void Add(const Orders& orders) {
        Add(orders.order[0]);
        Add(orders.order[1]);
    }
    std::uint32_t Value() const { return ~state_; }

  private:
    std::uint32_t state_ = ~std::uint32_t{0};
};

TEST(OrderVersion, IsTheChecksumOfAllOrdersOfAllLanguages) {
    Crc32 crc;
    for (unsigned char language = 0; VqLanguageContext::GetLanguageName(language) != nullptr; ++language) {
        for (const VqCodeSet* set : AllSets()) {
            for (unsigned code = 0; code < CodeCount(*set); ++code) crc.Add(OrdersOf(*set, code, language));
        }
        ForEachContraction(Unicode(), language, [&](const unsigned short*, const Orders& orders) { crc.Add(orders); });
    }
    EXPECT_EQ(VqLanguageContext::GetOrderVersion(), crc.Value());
}

std::string Utf8(unsigned unit) {
    const auto tail = [&](unsigned shift) { return static_cast<char>(0x80 | (unit >> shift & 0x3F)); };
    if (unit < 0x80) return {static_cast<char>(unit)};
    if (unit < 0x800) return {static_cast<char>(0xC0 | unit >> 6), tail(0)};
    return {static_cast<char>(0xE0 | unit >> 12), tail(6), tail(0)};
}

std::string Shown(const VqCodeSet& set, unsigned code) {
    const unsigned properties = set.GetProperties(U(code));
    const bool visible = (properties & (VqCharProperty_Letter | VqCharProperty_Digit | VqCharProperty_Punct)) != 0;
    return visible ? Utf8(set.ToUnicode(U(code))) : '<' + Label(set, code).substr(Label(set, code).size() - 2) + '>';
}

// Orders as texts compare by them: all primaries, then the last accents, then case with its sign reversed.
std::array<unsigned, 6> SortKey(const Orders& o, unsigned char language = 0) {
    if (Unicode().GetCollationClass(language) == IdeographicClass) return {o.order[0], o.order[1]};
    const auto accent = [&](std::size_t i) { return IsLetterOrder(o.order[i]) ? AccentOf(o.order[i]) : 0; };
    const auto lower = [&](std::size_t i) { return IsLetterOrder(o.order[i]) ? 3 - CaseOf(o.order[i]) : 0; };
    return {Primary(o.order[0]), Primary(o.order[1]), accent(1), accent(0), lower(0), lower(1)};
}

// Prints texts by the orders that they have, those that differ below the primary level together.
void PrintSorted(std::ostream& out, std::vector<std::pair<std::array<unsigned, 6>, std::string>> texts) {
    std::sort(texts.begin(), texts.end());
    for (std::size_t i = 0, shown = 0; i < texts.size(); ++i) {
        const auto& key = texts[i].first;
        const bool samePrimary = i > 0 && key[0] == texts[i - 1].first[0] && key[1] == texts[i - 1].first[1];
        if (!samePrimary && i > 0) out << (shown >= 24 ? "\n" : " ");
        if (!samePrimary && shown >= 24) shown = 0;
        out << texts[i].second;
        ++shown;
    }
    out << "\n";
}

// All characters of a set in the neutral order.
void PrintSet(std::ostream& out, const VqCodeSet& set) {
    std::vector<std::pair<std::array<unsigned, 6>, std::string>> texts;
    for (unsigned code = 0; code < 256; ++code) texts.emplace_back(SortKey(OrdersOf(set, code)), Shown(set, code));
    out << "\n" << set.GetName() << "\n";
    PrintSorted(out, texts);
}

// The letters of a class, as far as they are common in Latin or of a script that other classes do not order.
void PrintLetters(std::ostream& out, unsigned char language) {
    std::vector<std::pair<std::array<unsigned, 6>, std::string>> texts;
    for (unsigned unit = 0; unit < 0x530; ++unit) {
        const Orders orders = OrdersOf(Unicode(), unit, language);
        const bool common = unit < 0x180 || !IsLetterOrder(OrdersOf(Unicode(), unit).order[0]);
        if (common && IsLetterOrder(orders.order[0])) texts.emplace_back(SortKey(orders, language), Utf8(unit));
    }
    ForEachContraction(Unicode(), language, [&](const unsigned short* codes, const Orders& orders) {
        std::string text;
        for (int i = 0; i < VqMaxContraction && codes[i] != 0; ++i) text += static_cast<char>(codes[i]);
        texts.emplace_back(SortKey(orders, language), '{' + text + '}');
    });
    PrintSorted(out, texts);
}

std::string OrderText() {
    std::ostringstream out;
    out << "order version " << VqLanguageContext::GetOrderVersion() << "\n";
    for (const VqCodeSet* set : AllSets()) {
        if (set->GetCharSize() == 1) PrintSet(out, *set);
    }
    for (const unsigned char language : ClassLanguages()) {
        Crc32 crc;
        for (unsigned unit = 0; unit < 65536; ++unit) crc.Add(OrdersOf(Unicode(), unit, language));
        out << "\nUnicode, class " << int{Unicode().GetCollationClass(language)} << " ("
            << VqLanguageContext::GetLanguageName(language) << "): checksum " << crc.Value() << "\n";
        PrintLetters(out, language);
    }
    return out.str();
}

// Set VQTM_UPDATE_GOLDEN to write the file anew, and read the difference before committing it: files that were sorted
// under the old orders are out of order under the new.
TEST(OrderVersion, OrdersAreThoseOfTheGoldenText) {
    const std::string path = VQTM_SOURCE_DIR "/tests/golden/i18n/orders.txt";
    const std::string text = OrderText();
    if (std::getenv("VQTM_UPDATE_GOLDEN") != nullptr) std::ofstream(path, std::ios::binary) << text;
    std::ostringstream golden;
    golden << std::ifstream(path, std::ios::binary).rdbuf();
    EXPECT_EQ(text, golden.str());
}

}  // namespace
