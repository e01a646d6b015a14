#include "vqchar.h"

#include <gtest/gtest.h>

#include "stringiterator.h"
#include "testsupport.h"

using namespace vqtest;

namespace {

TEST(VqChar, PropertiesFollowTheCodeSet) {
    const struct {
        VqChar c;
        bool space, digit, alpha, upper, lower, punct;
    } cases[] = {
        {VqChar('a'), false, false, true, false, true, false},
        {VqChar('Z'), false, false, true, true, false, false},
        {VqChar('7'), false, true, false, false, false, false},
        {VqChar(' '), true, false, false, false, false, false},
        {VqChar('\t'), true, false, false, false, false, false},
        {VqChar('\0'), true, false, false, false, false, false},
        {VqChar('-'), false, false, false, false, false, true},
        {VqChar(0xE9, 1, 0), false, false, true, false, true, false},      // é
        {VqChar(0xE9, 4, 0), false, false, true, true, false, false},      // Θ
        {VqChar(0xC1, 9, 0), false, false, true, false, true, false},      // а
        {VqChar(0xA0, 1, 0), true, false, false, false, false, false},     // no-break space
        {VqChar(0x0416, 253, 0), false, false, true, true, false, false},  // Ж
        {VqChar(0x4E2D, 253, 0), false, false, true, false, false, false},
        {VqChar(0x0663, 253, 0), false, true, false, false, false, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.c.GetCode());
        EXPECT_EQ(c.c.IsSpace(), c.space);
        EXPECT_EQ(c.c.IsDigit(), c.digit);
        EXPECT_EQ(c.c.IsAlpha(), c.alpha);
        EXPECT_EQ(c.c.IsUpper(), c.upper);
        EXPECT_EQ(c.c.IsLower(), c.lower);
        EXPECT_EQ(c.c.IsPunct(), c.punct);
        EXPECT_EQ(c.c.IsAlnum(), c.alpha || c.digit);
    }
    EXPECT_TRUE(VqChar('\x01').IsControl());
}

TEST(VqChar, ChangesCaseWithinItsCodeSet) {
    EXPECT_EQ(VqChar(0xE9, 1, 0).ToUpper().GetCode(), 0xC9);
    EXPECT_EQ(VqChar(0xFF, 1, 0).ToUpper().GetCode(), 0x9F);  // Ÿ is in Windows-1252
    EXPECT_EQ(VqChar(0xFF, 2, 0).ToUpper().GetCode(), 0xFF);  // and not in ISO 8859-1
    EXPECT_EQ(VqChar(0x0416, 253, 0).ToLower().GetCode(), 0x0436);
    EXPECT_EQ(VqChar(0xDF, 1, 0).ToUpper().GetCode(), 0xDF);
}

TEST(VqChar, FreeCharactersMapOnAssignment) {
    VqChar c('x');
    c = VqChar(0x20AC, 253, 0);
    EXPECT_EQ(c.GetCode(), 0x80);
    EXPECT_EQ(c.GetCodeSet(), 1);
    c = VqChar(0x4E2D, 253, 0);
    EXPECT_EQ(c.GetCode(), '?');
    EXPECT_TRUE(VqChar(0x80, 1, 0) == VqChar(0x20AC, 253, 0));
    EXPECT_TRUE(VqChar(0x82, 3, 0) != VqChar(0x82, 1, 0));
}

TEST(VqStringIterator, WalksForwardAndBackInEveryCodeSet) {
    for (const unsigned char codeSet : std::initializer_list<unsigned char>{1, 3, 7, 253}) {
        VqString s("walk");
        s.MapToCodeSet(codeSet);
        VqStringIterator it(s);
        std::string seen;
        for (; !it.IsEnd(); ++it) seen += static_cast<char>(it.GetCode());
        EXPECT_EQ(seen, "walk");
        ++it;
        EXPECT_EQ(it.GetPosition(), 4u);
        seen.clear();
        while (!it.IsStart()) {
            --it;
            seen += static_cast<char>(it.Get().GetCode());
        }
        EXPECT_EQ(seen, "klaw");
        --it;
        EXPECT_TRUE(it.IsStart());
    }
    EXPECT_TRUE(VqStringIterator(1, 0, nullptr).IsEnd());
    EXPECT_EQ(VqStringIterator(253, 0, nullptr).GetNextOrder(1), 0);
}

TEST(VqStringIterator, ReadsEitherByteOrder) {
    const unsigned char highFirst[] = {0x20, 0xAC, 0x00, 0x41, 0, 0};
    VqStringIterator it(253, 0, highFirst, 2);
    EXPECT_EQ(it.GetCode(), 0x20AC);
    ++it;
    EXPECT_EQ(it.GetCode(), 0x41);
}

TEST(VqStringIterator, GivesTwoOrdersForALetterThatSortsAsTwo) {
    const VqString s("\xDF!");
    VqStringIterator it(s);
    const unsigned short looked = it.GetNextOrder(0);
    EXPECT_EQ(it.GetNextOrder(1), looked);
    EXPECT_EQ(it.GetPosition(), 0u);
    const unsigned short second = it.GetNextOrder(0);
    EXPECT_EQ(it.GetNextOrder(1), second);
    EXPECT_EQ(it.GetPosition(), 1u);
    EXPECT_EQ(it.GetNextOrder(1), 80 + 40);  // the exclamation mark
    EXPECT_EQ(it.GetNextOrder(1), 0);
    --it;
    --it;
    it.GetNextOrder(1);
    ++it;
    EXPECT_EQ(it.GetCode(), '!') << "moving on drops the second order";
    EXPECT_EQ(it.GetNextOrder(0), 80 + 40);
}

}  // namespace
