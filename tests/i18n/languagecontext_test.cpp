#include "vqlanguagecontext.h"

#include <gtest/gtest.h>

#include <string>

#include "i18nsupport.h"

namespace {

using Context = VqLanguageContext;

// Every default of the context in one value.
std::vector<int> Defaults() {
    return {Context::GetNativeCodeSet(),    Context::GetDefaultCodeSet(),  Context::GetDefault8CodeSet(),
            Context::GetDefault16CodeSet(), Context::GetDefaultLanguage(), Context::GetDefaultCmpOp()};
}

const std::vector<int> startValues = {1, 1, 1, 253, 0, 0x10};

class LanguageContext : public testing::Test {
  protected:
    ~LanguageContext() override { ___VqI18NContext(1); }
};

TEST_F(LanguageContext, SettersChangeOneDefaultEach) {
    EXPECT_EQ(Defaults(), startValues);
    Context::SetNativeCodeSet(5);
    Context::SetDefaultCodeSet(6);
    Context::SetDefault8CodeSet(7);
    Context::SetDefault16CodeSet(228);
    Context::SetDefaultLanguage(8);
    Context::SetDefaultCmpOp(0x120);
    EXPECT_EQ(Defaults(), (std::vector<int>{5, 6, 7, 228, 8, 0x120}));
}

TEST_F(LanguageContext, AttachingAndDetachingStartAfresh) {
    for (const int attach : {0, 1}) {
        Context::SetDefault16CodeSet(225);
        Context::SetDefaultCmpOp(0);
        ___VqI18NContext(attach);
        EXPECT_EQ(Defaults(), startValues);
    }
}

TEST_F(LanguageContext, CodeSetsAreFoundByNumber) {
    std::string numbers;
    for (int code = 1; code < 256; ++code) {
        const VqCodeSet* const set = Context::QueryCodeSet(static_cast<unsigned char>(code));
        if (set == nullptr) continue;
        EXPECT_EQ(set->GetCode(), code);
        numbers += std::to_string(code) + " ";
    }
    EXPECT_EQ(numbers, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 225 226 227 228 253 ");
}

TEST_F(LanguageContext, ReadyKeysOfByteSetsAreThoseOfTheirObjects) {
    for (int place = 0; place < 0x10000; ++place) {
        const auto code = static_cast<unsigned char>(place >> 8), language = static_cast<unsigned char>(place);
        const bool bytes = code != 0 && code < VqFirstWideCodeSet && Context::QueryCodeSet(code) != nullptr;
        const std::int32_t* const keys = bytes ? Context::QueryCodeSet(code)->GetKeyTable(language).keys : nullptr;
        ASSERT_EQ(Context::QueryByteKeys(code, language), keys) << int{code} << ", language " << int{language};
    }
}

TEST_F(LanguageContext, CodeZeroIsTheNativeSet) {
    Context::SetNativeCodeSet(9);
    EXPECT_STREQ(Context::QueryCodeSet(0)->GetName(), "KOI8-R");
}

TEST_F(LanguageContext, DefaultsRefuseSetsOfAnotherCharacterSize) {
    for (const unsigned char other : std::initializer_list<unsigned char>{0, 99, 225, 253, 254}) {
        Context::SetNativeCodeSet(other);
        EXPECT_EQ(Context::GetNativeCodeSet(), 1);
    }
    Context::SetDefault8CodeSet(253);
    Context::SetDefault16CodeSet(2);
    EXPECT_EQ(Defaults(), startValues);
}

TEST_F(LanguageContext, LanguagesAreFoundByNameInAnyCase) {
    int count = 0;
    for (int language = 0; language < 256; ++language) {
        const char* const name = Context::GetLanguageName(static_cast<unsigned char>(language));
        if (name == nullptr) continue;
        ++count;
        EXPECT_EQ(Context::FindLanguage(name), language);
    }
    EXPECT_EQ(count, 24);
    EXPECT_EQ(Context::FindLanguage("neutral"), 0);
    EXPECT_EQ(Context::FindLanguage("German"), 2);
    EXPECT_EQ(Context::FindLanguage("CHINESE Simplified"), 21);
    for (const char* none : {"", "germ", "germanic", "[erman"}) EXPECT_EQ(Context::FindLanguage(none), -1) << none;
    EXPECT_EQ(Context::FindLanguage(nullptr), -1);
}

TEST_F(LanguageContext, ClassBytesOfLanguagesStayBelow128) {
    for (const VqCodeSet* set : vqtest::AllSets()) {
        for (int language = 0; language < 256; ++language) {
            const unsigned char byte = set->GetCollationClass(static_cast<unsigned char>(language));
            EXPECT_TRUE(byte >= 1 && byte < 128) << language;
            if (Context::GetLanguageName(static_cast<unsigned char>(language)) == nullptr) {
                EXPECT_EQ(byte, set->GetCollationClass(0)) << language;
            }
        }
    }
}

}  // namespace
