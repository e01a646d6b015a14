// What the entry points ask of the other libraries, whose answers the linker leads here, and of a heap without room.
#include "library.h"

#include <gtest/gtest.h>

#include "allocations.h"
#include "vqtypes.h"

using namespace vqtest;

namespace {

std::vector<unsigned long> asked;
int verdict = 0;

int contextOfLanguages = 0;
VqTypeMgr* managerThen = nullptr;

}  // namespace

extern "C" int __wrap__Z20CheckVqVersionNumbermmmmmm(unsigned long major, unsigned long minor, unsigned long release,
                                                     unsigned long build, unsigned long patch, unsigned long flags) {
    asked = {major, minor, release, build, patch, flags};
    return verdict;
}

extern "C" void __wrap____VqI18NContext(int attach) {
    contextOfLanguages = attach;
    managerThen = DefaultTypeMgr();
}

namespace {

TEST(LibraryAndOthers, TheBaseLibraryGivesTheVerdict) {
    for (const unsigned long flags : {0ul, 4ul, 8ul, 0xFFFFFFFCul}) {
        verdict = static_cast<int>(flags % 7) + 1;
        EXPECT_EQ(_VqCheckDll(flags), verdict);
        EXPECT_EQ(asked, (std::vector<unsigned long>{9, 5, 23, 262, 0, flags | 3}));
    }
}

TEST(LibraryAndOthers, LanguagesAreAttachedAndDetachedFirst) {
    for (const int attach : {7, 0, -1, 0}) {
        VqTypeMgr* const before = DefaultTypeMgr();
        ___VqTypemgrContext(attach);
        EXPECT_EQ(contextOfLanguages, attach);
        EXPECT_EQ(managerThen, before);
        EXPECT_EQ(DefaultTypeMgr() != nullptr, attach != 0);
        if (attach != 0) delete before;
    }
}

// Whoever asks for the default manager is told, and whoever asks again has another try.
TEST(LibraryAndOthers, ADefaultManagerThatLacksMemoryIsMadeLater) {
    ___VqTypemgrContext(0);
    const RefusedMemory refused;
    EXPECT_TRUE(Allocations::Failing(0, [] { ___VqTypemgrContext(1); }));
    VqTypeMgr* found = nullptr;
    EXPECT_TRUE(Allocations::Failing(0, [&] { found = DefaultTypeMgr(); }));
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(refused.Sizes(), (std::vector<unsigned long>(2, sizeof(VqTypeMgr))));
    EXPECT_NE(DefaultTypeMgr(), nullptr);
    ___VqTypemgrContext(0);

    const RefusedMemory helped(true);
    EXPECT_TRUE(Allocations::Failing(0, [] { ___VqTypemgrContext(1); }));
    EXPECT_EQ(helped.Sizes(), (std::vector<unsigned long>(1, sizeof(VqTypeMgr))));
    EXPECT_NE(DefaultTypeMgr(), nullptr);
}

}  // namespace
