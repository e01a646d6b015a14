// The library's entry points: what it tells of itself, its verdicts, attaching and detaching, the option block.
#include "library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "vqbase.h"
#include "vqlanguagecontext.h"
#include "vqtypes.h"

namespace {

// --- Identity

struct Identity {
    unsigned long version[5] = {};
    const char *module = nullptr, *dateTime = nullptr, *text2 = nullptr, *compiler = nullptr, *extra = nullptr;
    unsigned long number = 0;
    const char* product = _VqDescribeDll(&version[0], &version[1], &version[2], &version[3], &version[4], &module,
                                         &dateTime, &text2, &number, &compiler, &extra);
};

TEST(Library, DescribesItself) {
    const Identity identity;
    EXPECT_STREQ(identity.product, "Quillbase Typemanager");
    const unsigned long version[] = {9, 5, 23, 262, 0};
    EXPECT_TRUE(std::equal(std::begin(version), std::end(version), identity.version));
    EXPECT_STREQ(identity.module, "vq95FtmsB");
    EXPECT_STREQ(identity.dateTime, "Jun 28 2005 01:17:27");
    EXPECT_STREQ(identity.text2, "unknown");
    EXPECT_EQ(identity.number, 1361u);
    EXPECT_TRUE(std::string_view(identity.compiler).ends_with(" / 32")) << identity.compiler;
    EXPECT_STREQ(identity.extra, "");
}

TEST(Library, TellsOnlyWhatIsAskedFor) {
    const Identity identity;
    struct Info {
        const char *compiler, *description, *date, *module;
        unsigned long number;
    };
    const Info untouched = {"-", "-", "-", "-", 7};
    for (unsigned asked = 0; asked < 32; ++asked) {
        Info info = untouched;
        const auto pointer = [&](unsigned bit, auto* out) { return (asked & bit) != 0 ? out : nullptr; };
        _GetVqTypeMgrInfo(pointer(1, &info.compiler), pointer(2, &info.number), pointer(4, &info.description),
                          pointer(8, &info.date), pointer(16, &info.module));
        EXPECT_STREQ(info.compiler, (asked & 1) != 0 ? identity.compiler : "-");
        EXPECT_EQ(info.number, (asked & 2) != 0 ? 1361u : 7u);
        EXPECT_STREQ(info.description, (asked & 4) != 0 ? "Quillbase Typemanager 9.5.23.262.0 " : "-");
        EXPECT_STREQ(info.date, (asked & 8) != 0 ? "Jun 28 2005" : "-");
        EXPECT_STREQ(info.module, (asked & 16) != 0 ? "vq95FtmsB" : "-");
    }
}

TEST(Library, FillsTheDescriptionAnewEachTime) {
    const char* first = nullptr;
    _GetVqTypeMgrInfo(nullptr, nullptr, &first, nullptr, nullptr);
    const std::string text = first;
    std::memset(const_cast<char*>(first), '#', text.size() + 1);  // the buffer is the library's, but no constant
    const char* second = nullptr;
    _GetVqTypeMgrInfo(nullptr, nullptr, &second, nullptr, nullptr);
    EXPECT_EQ(second, first) << "one buffer for all";
    EXPECT_EQ(second, text);
}

// A library finds itself beside the base library of its own version, whatever it is asked to compare.
TEST(Library, FitsTheBaseLibraryThatItWasBuiltWith) {
    for (const unsigned long flags : {0ul, 12ul, ~0ul}) EXPECT_EQ(_VqCheckDll(flags), VqVersion_Compatible) << flags;
}

// --- Attaching and detaching

TEST(Library, AttachingMakesAManagerAndBothWaysResetTheLanguages) {
    for (const int attach : {1, -1, 0}) {
        VqLanguageContext::SetDefaultCmpOp(VqCmp_IgnoreCase);
        VqLanguageContext::SetDefaultLanguage(2);
        const std::unique_ptr<VqTypeMgr> before(attach != 0 ? DefaultTypeMgr() : nullptr);
        ___VqTypemgrContext(attach);
        EXPECT_EQ(DefaultTypeMgr() != nullptr && DefaultTypeMgr()->SupportsNullValue(VqTypeId_VqString), attach != 0);
        EXPECT_EQ(VqLanguageContext::GetDefaultCmpOp(), VqCmp_Exact) << attach;
        EXPECT_EQ(VqLanguageContext::GetDefaultLanguage(), 0) << attach;
    }
    ___VqTypemgrContext(1);
}

// --- Options

TEST(Library, TheOptionBlockMakesNumbersInStringsDecimal) {
    EXPECT_EQ(*___VqTypeMgrOptions(), 0u);
    *___VqTypeMgrOptions() = 1;
    const int decimal = VqString("010");
    *___VqTypeMgrOptions() = 0xFFFFFFFEu;
    const int octal = VqString("010");
    *___VqTypeMgrOptions() = 0;
    EXPECT_EQ(decimal, 10);
    EXPECT_EQ(octal, 8);
}

}  // namespace
