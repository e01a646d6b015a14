// Arrays of scalars: stored big-endian, next to a copy of the same bytes and to the plain loop of swaps.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "vqbase.h"

namespace {

constexpr long kCounts[] = {1, 16, 1024, 1 << 20};

// What the library, or a peer of it, does with an array; all of them called in the same way.
using Operation = unsigned long (*)(void* dst, const void* src, unsigned char format, unsigned long count);
constexpr unsigned char kBigEndian = 2;

template <class Word>
std::vector<Word> RandomWords(std::size_t count) {
    std::mt19937_64 random(count);
    std::vector<Word> words(count);
    for (Word& word : words) word = static_cast<Word>(random());
    return words;
}

std::uint16_t Swapped(std::uint16_t word) { return __builtin_bswap16(word); }
std::uint32_t Swapped(std::uint32_t word) { return __builtin_bswap32(word); }
std::uint64_t Swapped(std::uint64_t word) { return __builtin_bswap64(word); }

template <class Word>
[[gnu::noinline]] unsigned long CopyBytes(void* dst, const void* src, unsigned char, unsigned long count) {
    std::memcpy(dst, src, count * sizeof(Word));
    return count * sizeof(Word);
}

template <class Word>
[[gnu::noinline]] unsigned long SwapLoop(void* dst, const void* src, unsigned char, unsigned long count) {
    for (unsigned long i = 0; i < count; ++i) {
        Word word;
        std::memcpy(&word, static_cast<const char*>(src) + i * sizeof word, sizeof word);
        word = Swapped(word);
        std::memcpy(static_cast<char*>(dst) + i * sizeof word, &word, sizeof word);
    }
    return count * sizeof(Word);
}

template <class Word>
void RunArray(benchmark::State& state, Operation operation, unsigned char format, std::size_t count) {
    const std::vector<Word> source = RandomWords<Word>(count);
    std::vector<Word> target(count, 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(target.data(), source.data(), format, static_cast<unsigned long>(count)));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(count * sizeof(Word)));
}

template <class Word>
void RegisterArray(const std::string& name, const char* variant, Operation operation) {
    for (long count : kCounts) {
        const std::string full = "Scalars/" + name + "/" + std::to_string(count) + "/" + variant;
        benchmark::RegisterBenchmark(full.c_str(), RunArray<Word>, operation, kBigEndian,
                                     static_cast<std::size_t>(count));
    }
}

template <class Word>
void RegisterStore(const std::string& name, Operation ours) {
    RegisterArray<Word>(name, "ours", ours);
    RegisterArray<Word>(name, "peer_memcpy", CopyBytes<Word>);
    RegisterArray<Word>(name, "peer_loop", SwapLoop<Word>);
}

const bool registered = [] {
    RegisterStore<std::uint16_t>("StoreShortBE", ShortStore);
    RegisterStore<std::uint32_t>("StoreLongBE", LongStore);
    RegisterStore<std::uint64_t>("StoreDoubleBE", DoubleStore);
    return true;
}();

}  // namespace
