// Blobs where memory runs out.
#include "blob.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "allocations.h"
#include "rowvalues.h"

namespace {

using vqtest::Allocations;
using vqtest::RefusedMemory;

std::string Show(const VqBlob& blob) {
    return blob.IsNullValue() ? "null" : vqtest::Hex(blob.Data(), static_cast<std::size_t>(blob.Length()));
}

// The record's bytes, which it gives back; null without a record.
VqBlob Adopted(VqBlob::Record* record) {
    const char* const none = nullptr;
    VqBlob blob = record != nullptr ? VqBlob(record->data, record->length) : VqBlob(none);
    VqBlob::FreeData(record);
    return blob;
}

struct Operation {
    const char* name;
    std::function<void(VqBlob& blob, VqBlob& other)> run;
    bool makesNull = false;  // without memory; otherwise everything stays
};

const Operation operations[] = {
    {"default", [](VqBlob& a, VqBlob&) { a = VqBlob(); }, true},
    {"length", [](VqBlob& a, VqBlob&) { a = VqBlob(300L); }, true},
    {"bytes", [](VqBlob& a, VqBlob&) { a = VqBlob("xyz", 3); }, true},
    {"text", [](VqBlob& a, VqBlob&) { a = VqBlob("xyz"); }, true},
    {"number", [](VqBlob& a, VqBlob&) { a = VqBlob(-31); }, true},
    {"copy", [](VqBlob& a, VqBlob& b) { a = VqBlob(b); }, true},
    {"CopyFrom", [](VqBlob& a, VqBlob& b) { a = b.CopyFrom(1, 2); }, true},
    {"CopyFrom nothing", [](VqBlob& a, VqBlob& b) { a = b.CopyFrom(1, 0); }, true},
    {"=", [](VqBlob& a, VqBlob& b) { a = static_cast<const VqBlob&>(b); }},
    {"= with length", [](VqBlob& a, VqBlob&) { a = "\2\0\0\0ab"; }},
    {"SetTo", [](VqBlob& a, VqBlob&) { a.SetTo("0123456789", 10); }},
    {"SetTo itself", [](VqBlob& a, VqBlob&) { a.SetTo(a.Seek(1, a.Length() - 1), a.Length() - 1); }},
    {"Destroy", [](VqBlob& a, VqBlob& b) { a.Destroy(b); }},
    {"Expand", [](VqBlob& a, VqBlob&) { a.Expand(7); }},
    {"Resize", [](VqBlob& a, VqBlob&) { a.Resize(900); }},
    {"Append", [](VqBlob& a, VqBlob& b) { a.Append(b); }},
    {"Append itself", [](VqBlob& a, VqBlob&) { a += a; }},
    {"Cut", [](VqBlob& a, VqBlob&) { a.Cut(1, 1); }},
    {"string", [](VqBlob& a, VqBlob&) { a = VqBlob(VqString("xyz")); }, true},
    {"ScanFromVqString", [](VqBlob& a, VqBlob&) { a.ScanFromVqString(VqString("<0102>"), "<%x>"); }},
    {"AllocData", [](VqBlob& a, VqBlob&) { a = Adopted(VqBlob::AllocData(3)); }, true},
    {"BlobLoad", [](VqBlob& a, VqBlob&) { BlobLoad(&a, "\0\0\0\6\0\0\0\2ab", VqFormat_BigEndian, 1); }, true},
};

// Leaves the operation's blobs as `expected` and `expectedOther`, whichever allocation fails, and nothing leaks.
void ExpectWithoutMemory(const Operation& operation, bool fromNull, const VqBlob& expected, const VqBlob& expectedOther,
                         bool isHelped = false) {
    for (long allocation = 0;; ++allocation) {
        SCOPED_TRACE(std::string(operation.name) + (fromNull ? " of null, " : ", ") + std::to_string(allocation));
        const long blocksBefore = Allocations::blocks;
        const RefusedMemory refused(isHelped);
        bool ran = false;
        {
            VqBlob blob(200L), other("pqr", 3);
            if (fromNull) blob.SetNullValue();
            ran = Allocations::Failing(allocation, [&] { operation.run(blob, other); });
            EXPECT_EQ(refused.Sizes().size(), ran ? 1u : 0u);
            if (ran) {
                EXPECT_EQ(Show(blob), Show(expected));
                EXPECT_EQ(Show(other), Show(expectedOther));
                EXPECT_GT(refused.Sizes().at(0), 0u);
            }
        }
        EXPECT_EQ(Allocations::blocks, blocksBefore);
        if (!ran) return;
    }
}

TEST(BlobMemory, WithoutHelpEveryBlobStaysOrIsNullAndWithHelpEverythingGoesOn) {
    for (const bool fromNull : {false, true}) {
        for (const Operation& operation : operations) {
            VqBlob before(200L), other("pqr", 3);
            if (fromNull) before.SetNullValue();
            VqBlob unhelped(before), helped(before);
            if (operation.makesNull) unhelped.SetNullValue();
            ExpectWithoutMemory(operation, fromNull, unhelped, other);
            operation.run(helped, other);
            ExpectWithoutMemory(operation, fromNull, helped, other, true);
        }
    }
}

// An array that cannot be had is null; an element that finds no memory is a null blob.
TEST(BlobMemory, ArraysAreMadeWithoutIt) {
    VqTypeMgr manager(5);
    bool ran = true;
    for (long allocation = 0; ran; ++allocation) {
        SCOPED_TRACE(allocation);
        const long blocksBefore = Allocations::blocks;
        const RefusedMemory refused;
        VqBlob* blobs = nullptr;
        ran =
            Allocations::Failing(allocation, [&] { blobs = static_cast<VqBlob*>(manager.Create(VqTypeId_VqBlob, 3)); });
        EXPECT_EQ(refused.Sizes().size(), ran ? 1u : 0u);
        EXPECT_EQ(blobs == nullptr, allocation == 0);
        if (blobs == nullptr) continue;
        EXPECT_EQ(std::count_if(blobs, blobs + 3, [](const VqBlob& blob) { return blob.IsNullValue(); }), ran);
        manager.Delete(VqTypeId_VqBlob, blobs, 3);
        EXPECT_EQ(Allocations::blocks, blocksBefore);
    }
}

TEST(BlobNumbers, AreReadInPlace) {
    const std::string digits = "0." + std::string(5000, '7') + "e1";
    const VqBlob blob(digits.data(), static_cast<long>(digits.size()));
    const long madeBefore = Allocations::made;
    const double number = blob;
    EXPECT_EQ(Allocations::made, madeBefore);
    EXPECT_NEAR(number, 70. / 9, 1e-12);
}

}  // namespace
