// Blobs where memory runs out. The linker leads the library's calls of the C heap here.
#include "blob.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "rowvalues.h"
#include "vqbase.h"

namespace {

// Which allocation fails, counted from 0; those after it succeed again.
long allocationsLeft = -1;
bool failed = false;
long blocks = 0;  // in use
long news = 0;    // so far

bool Fails() {
    if (allocationsLeft < 0 || allocationsLeft-- != 0) return false;
    failed = true;
    return true;
}

}  // namespace

extern "C" {

void* __real_malloc(std::size_t n);
void* __real_calloc(std::size_t count, std::size_t n);
void __real_free(void* block);

void* __wrap_malloc(std::size_t n) {
    void* const block = Fails() ? nullptr : __real_malloc(n);
    blocks += block != nullptr;
    return block;
}

void* __wrap_calloc(std::size_t count, std::size_t n) {
    void* const block = Fails() ? nullptr : __real_calloc(count, n);
    blocks += block != nullptr;
    return block;
}

void __wrap_free(void* block) {
    blocks -= block != nullptr;
    __real_free(block);
}
}

// What neither can fail nor counts among the blocks.
void* operator new(std::size_t n) {
    ++news;
    if (void* const block = __real_malloc(n != 0 ? n : 1)) return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t n) { return operator new(n); }
void operator delete(void* block) noexcept { __real_free(block); }
void operator delete[](void* block) noexcept { __real_free(block); }
void operator delete(void* block, std::size_t) noexcept { __real_free(block); }
void operator delete[](void* block, std::size_t) noexcept { __real_free(block); }

// The records, and the arrays of a row.
void* operator new(std::size_t n, const std::nothrow_t&) noexcept { return Fails() ? nullptr : ::operator new(n); }
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return operator new(n, std::nothrow); }

namespace {

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

std::vector<unsigned long> refused;
int help = 0;

class BlobMemory : public testing::Test {
  protected:
    BlobMemory()
        : before_(VqSetMemoryHandler([](unsigned long size) {
              refused.push_back(size);
              return help;
          })) {}
    ~BlobMemory() override { VqSetMemoryHandler(before_); }

  private:
    VqMemoryHandler before_;
};

// Runs something while one of its allocations fails; false when it has not so many.
template <class Run>
bool RunFailing(long allocation, Run run) {
    refused.clear();
    refused.reserve(4);
    failed = false;
    allocationsLeft = allocation;
    run();
    allocationsLeft = -1;
    return failed;
}

// Leaves the operation's blobs as `expected` and `expectedOther`, whichever allocation fails, and nothing leaks.
void ExpectWithoutMemory(const Operation& operation, bool fromNull, const VqBlob& expected,
                         const VqBlob& expectedOther) {
    for (long allocation = 0;; ++allocation) {
        SCOPED_TRACE(std::string(operation.name) + (fromNull ? " of null, " : ", ") + std::to_string(allocation));
        const long blocksBefore = blocks;
        bool ran = false;
        {
            VqBlob blob(200L), other("pqr", 3);
            if (fromNull) blob.SetNullValue();
            ran = RunFailing(allocation, [&] { operation.run(blob, other); });
            EXPECT_EQ(refused.size(), ran ? 1u : 0u);
            if (ran) {
                EXPECT_EQ(Show(blob), Show(expected));
                EXPECT_EQ(Show(other), Show(expectedOther));
                EXPECT_GT(refused.at(0), 0u);
            }
        }
        EXPECT_EQ(blocks, blocksBefore);
        if (!ran) return;
    }
}

TEST_F(BlobMemory, WithoutHelpEveryBlobStaysOrIsNullAndWithHelpEverythingGoesOn) {
    for (const bool fromNull : {false, true}) {
        for (const Operation& operation : operations) {
            VqBlob before(200L), other("pqr", 3);
            if (fromNull) before.SetNullValue();
            VqBlob unhelped(before), helped(before);
            if (operation.makesNull) unhelped.SetNullValue();
            help = 0;
            ExpectWithoutMemory(operation, fromNull, unhelped, other);
            operation.run(helped, other);
            help = 1;
            ExpectWithoutMemory(operation, fromNull, helped, other);
        }
    }
}

// An array that cannot be had is null; an element that finds no memory is a null blob.
TEST_F(BlobMemory, RowsMakeArraysWithoutMemory) {
    help = 0;
    VqTypeMgr manager(5);
    const vqtest::RowValues samples(manager, VqTypeId_VqBlob, 3);
    const std::unique_ptr<VqTypeConvertData> texts(manager.ConvertTo(VqTypeId_VqBlob, samples.Get(), 3));
    const struct {
        std::function<void*()> run;
        int nulls;  // what fails to be made may be made when it is given its value
    } makers[] = {
        {[&] { return manager.Create(VqTypeId_VqBlob, 3); }, 1},
        {[&] { return manager.ConvertFrom(VqTypeId_VqBlob, texts.get(), 3); }, 0},
    };
    for (const auto& maker : makers) {
        for (long allocation = 0;; ++allocation) {
            SCOPED_TRACE(allocation);
            const long blocksBefore = blocks;
            VqBlob* blobs = nullptr;
            const bool ran = RunFailing(allocation, [&] { blobs = static_cast<VqBlob*>(maker.run()); });
            EXPECT_EQ(refused.size(), ran ? 1u : 0u);
            if (ran && allocation == 0) {
                EXPECT_EQ(blobs, nullptr);
                continue;
            }
            EXPECT_EQ(std::count_if(blobs, blobs + 3, [](const VqBlob& blob) { return blob.IsNullValue(); }),
                      ran ? maker.nulls : 0);
            manager.Delete(VqTypeId_VqBlob, blobs, 3);
            EXPECT_EQ(blocks, blocksBefore);
            if (!ran) break;
        }
    }
}

TEST(BlobNumbers, AreReadInPlace) {
    const std::string digits = "0." + std::string(5000, '7') + "e1";
    const VqBlob blob(digits.data(), static_cast<long>(digits.size()));
    const long blocksBefore = blocks, newsBefore = news;
    const double number = blob;
    EXPECT_EQ(news, newsBefore);
    EXPECT_EQ(blocks, blocksBefore);
    EXPECT_NEAR(number, 70. / 9, 1e-12);
}

}  // namespace
