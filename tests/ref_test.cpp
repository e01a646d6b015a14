#include "ref.h"

#include <gtest/gtest.h>

#include "idsupport.h"
#include "testsupport.h"

using namespace vqtest;

namespace {

constexpr unsigned Unresolved = VqRef::UnresolvedDatabase;

TEST(VqRef, IsValidWithObjectClassAndDatabase) {
    const VqObjId object = Object(1, 42, 7), none = Object(0, 0, 7);
    const struct {
        VqRef ref;
        bool valid, validOrigin;
    } cases[] = {
        {Ref(3, object, Class(12, 0)), true, true},
        {Ref(0, object, Class(12, 0)), true, true},
        {Ref(3, object, Class(0, 5)), false, false},
        {Ref(Unresolved, object, Class(12, 0)), false, true},
        {Ref(Unresolved, object), false, true},
        {Ref(3, none, Class(12, 0)), false, false},
        {Ref(Unresolved, none, Class(12, 0)), false, false},
    };
    for (const auto& [ref, valid, validOrigin] : cases) {
        EXPECT_TRUE(ref.IsValid() == valid && ref.IsInvalid() == !valid) << NumbersOf(ref);
        EXPECT_TRUE(ref.IsValidOriginId() == validOrigin && ref.IsInvalidOriginId() == !validOrigin) << NumbersOf(ref);
    }
}

TEST(References, TakeThePartsThatTheirSourcesHave) {
    const VqRef full = Ref(3, Object(1, 42, 7), Class(12, 5));
    VqRef ref = full;
    ref = Class(20, 6);
    EXPECT_EQ(NumbersOf(ref), "1 42 7 3 20 6");
    ref = Object(2, 43, 8);
    EXPECT_EQ(NumbersOf(ref), "2 43 8 3 20 6");
    ref = Object(Object(4, 44, 9), 5);
    EXPECT_EQ(NumbersOf(ref), "4 44 9 5 20 6");
    ref = static_cast<unsigned short>(6);
    EXPECT_EQ(NumbersOf(ref), "4 44 9 6 20 6");

    VqLocalRef local;
    local = full;
    EXPECT_EQ(NumbersOf(local), "1 42 7 12 5");
    ref = local;
    EXPECT_EQ(NumbersOf(ref), "1 42 7 0 12 5");
    local = ref;
    EXPECT_EQ(NumbersOf(local), "1 42 7 12 5");
    local = Class(8, 9);
    local = Object(6, 7, 8);
    EXPECT_EQ(NumbersOf(local), "6 7 8 8 9");
    EXPECT_TRUE(!local.IsNullValue() && local.SetNullValue() == 0 && local.IsNullValue());
}

TEST(References, ComeBeforeNumberedDatabasesWhereTheyAreLocal) {
    const struct {
        VqRef ref;
        int order;  // of the local reference to (1, 4) with it
    } cases[] = {
        {Ref(0, Object(1, 4)), 0}, {Ref(2, Object(1, 4)), -1}, {Ref(2, Object(1, 3)), 1}, {Ref(0, Object(1, 5)), -1}};
    const VqLocalRef local = Local(Object(1, 4, 9), Class(3, 3));
    for (const auto& [ref, order] : cases) {
        EXPECT_EQ(local != ref, order) << NumbersOf(ref);
        EXPECT_EQ(ref != local, -order) << NumbersOf(ref);
        EXPECT_TRUE((local == ref) == (order == 0) && (ref == local) == (order == 0)) << NumbersOf(ref);
    }
    EXPECT_EQ(local != Local(Object(1, 5)), -1);
    EXPECT_TRUE(local == Local(Object(1, 4)) && (local != Local(Object(1, 4))) == 0);
}

// --- Text

template <class Reference>
std::string Printed(const Reference& ref, const char* format) {
    VqString text;
    ref.PrintToVqString(text, format);
    return Bytes(text);
}

TEST(References, PrintAndScan) {
    const VqRef ref = Ref(3, Object(1, 42, 7), Class(12, 5));
    EXPECT_EQ(Printed(ref, nullptr), "(3:1-42#7,12v5)");
    EXPECT_EQ(Printed(ref, "%h:%h-%l#%l, %h;%h|%V%D"), "3:1-42#7, 12;|53") << "no position for the version";
    EXPECT_EQ(Printed(ref, "%l%l%h%h%h"), "12") << "the wrong widths";
    EXPECT_EQ(Printed(Ref(3, Object(0, 0, 7), Class(12, 5)), "%C"), "{NULL}");
    VqRef back;
    back.ScanFromVqString("(3:1-42#7,12v5)");
    EXPECT_EQ(NumbersOf(back), NumbersOf(ref));
    back.ScanFromVqString("{NULL}");
    EXPECT_EQ(NumbersOf(back), "0 0 0 0 0 0");

    VqLocalRef local;
    local = ref;
    EXPECT_EQ(Printed(local, nullptr) + Printed(local, "%D:%L v%V"), "(1-42#7,12)0:42 v5");
    local.ScanFromVqString("(2-43#8,13)");
    EXPECT_EQ(NumbersOf(local), "2 43 8 13 0");
}

}  // namespace
