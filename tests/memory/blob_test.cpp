// Blobs where memory runs out. The linker leads the library's calls of the C heap here.
#include "blob.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "testsupport.h"
#include "vqbase.h"

namespace {

// Which allocation fails, counted from 0; those after it succeed again.
long allocationsLeft = -1;
bool failed = false;
long blocks = 0;  // in use

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

// The records. What stands behind the other operator may be the C heap again.
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    if (Fails()) return nullptr;
    const long left = std::exchange(allocationsLeft, -1);
    void* const block = ::operator new(n);
    allocationsLeft = left;
    return block;
}

namespace {

std::string Show(const VqBlob& blob) {
    return blob.IsNullValue() ? "null" : vqtest::Hex(blob.Data(), static_cast<std::size_t>(blob.Length()));
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

// Runs an operation while one of its allocations fails; false when it has not so many.
bool RunFailing(const Operation& operation, long allocation, VqBlob& blob, VqBlob& other) {
    refused.clear();
    failed = false;
    allocationsLeft = allocation;
    operation.run(blob, other);
    allocationsLeft = -1;
    return failed;
}

TEST_F(BlobMemory, WithoutHelpEveryBlobStaysOrIsNullAndNothingLeaks) {
    help = 0;
    for (const bool fromNull : {false, true}) {
        for (const Operation& operation : operations) {
            for (long allocation = 0;; ++allocation) {
                SCOPED_TRACE(std::string(operation.name) + (fromNull ? " of null, " : ", ") +
                             std::to_string(allocation));
                refused.reserve(4);
                const long blocksBefore = blocks;
                bool ran = false;
                {
                    VqBlob blob(nullptr, 200), other("pqr", 3);
                    if (fromNull) blob.SetNullValue();
                    const bool null = operation.makesNull || fromNull;
                    ran = RunFailing(operation, allocation, blob, other);
                    if (ran) {
                        EXPECT_EQ(Show(blob), null ? "null" : Show(VqBlob(200L)));
                        EXPECT_EQ(Show(other), "70 71 72");
                        ASSERT_EQ(refused.size(), 1u);
                        EXPECT_GT(refused[0], 0u);
                    }
                }
                EXPECT_EQ(blocks, blocksBefore);
                if (!ran) break;
            }
        }
    }
}

TEST_F(BlobMemory, WithHelpEverythingGoesOn) {
    help = 1;
    for (const Operation& operation : operations) {
        VqBlob expected(200L), expectedOther("pqr", 3);
        operation.run(expected, expectedOther);
        for (long allocation = 0;; ++allocation) {
            VqBlob blob(200L), other("pqr", 3);
            if (!RunFailing(operation, allocation, blob, other)) break;
            EXPECT_EQ(Show(blob), Show(expected)) << operation.name << ", " << allocation;
            EXPECT_EQ(Show(other), Show(expectedOther)) << operation.name << ", " << allocation;
        }
    }
}

}  // namespace
