#include "countednew.h"

#include <cstdlib>
#include <new>

std::atomic<long> vqtest::liveBlocks{0};

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* const block = std::malloc(size != 0 ? size : 1);
    if (block != nullptr) ++vqtest::liveBlocks;
    return block;
}

void* operator new(std::size_t size) {
    void* const block = operator new(size, std::nothrow);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void operator delete(void* block) noexcept {
    if (block != nullptr) --vqtest::liveBlocks;
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
