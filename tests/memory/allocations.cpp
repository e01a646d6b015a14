#include "allocations.h"

#include <cstdlib>
#include <new>

namespace vqtest {

long Allocations::blocks = 0;
long Allocations::objects = 0;
long Allocations::made = 0;
long Allocations::left_ = -1;
bool Allocations::failed_ = false;
bool Allocations::throws_ = false;

bool Allocations::Fails() {
    if (left_ < 0 || left_-- != 0) return false;
    failed_ = true;
    return true;
}

}  // namespace vqtest

using vqtest::Allocations;

extern "C" {

void* __real_malloc(std::size_t n);
void* __real_calloc(std::size_t count, std::size_t n);
void __real_free(void* block);

void* __wrap_malloc(std::size_t n) {
    ++Allocations::made;
    void* const block = Allocations::Fails() ? nullptr : __real_malloc(n);
    Allocations::blocks += block != nullptr;
    return block;
}

void* __wrap_calloc(std::size_t count, std::size_t n) {
    ++Allocations::made;
    void* const block = Allocations::Fails() ? nullptr : __real_calloc(count, n);
    Allocations::blocks += block != nullptr;
    return block;
}

void __wrap_free(void* block) {
    Allocations::blocks -= block != nullptr;
    __real_free(block);
}
}

namespace {

void* NewBlock(std::size_t n) {
    ++Allocations::made;
    void* const block = __real_malloc(n != 0 ? n : 1);
    Allocations::objects += block != nullptr;
    return block;
}

}  // namespace

// What fails only where that is asked for, and does not count among the blocks.
void* operator new(std::size_t n) {
    void* const block = Allocations::Throws() ? nullptr : NewBlock(n);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
void* operator new[](std::size_t n) { return operator new(n); }
void operator delete(void* block) noexcept {
    Allocations::objects -= block != nullptr;
    __real_free(block);
}
void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete(block); }

// The library's own: records, scratch texts, the arrays of a row.
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    return Allocations::Fails() ? nullptr : NewBlock(n);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept { return operator new(n, std::nothrow); }
