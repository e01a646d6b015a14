// Arrays of scalars and the peers of what turns them into big-endian bytes: a copy of the same bytes, and the plain
// loop of swaps.
#ifndef BENCH_SCALARARRAYS_H
#define BENCH_SCALARARRAYS_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

namespace vqbench {

// What the library, or a peer of it, does with an array; all of them called in the same way.
using ArrayOperation = unsigned long (*)(void* dst, const void* src, unsigned char format, unsigned long count);
constexpr unsigned char BigEndian = 2;

template <class Word>
std::vector<Word> RandomWords(std::size_t count) {
    std::mt19937_64 random(count);
    std::vector<Word> words(count);
    for (Word& word : words) word = static_cast<Word>(random());
    return words;
}

inline std::uint16_t Swapped(std::uint16_t word) { return __builtin_bswap16(word); }
inline std::uint32_t Swapped(std::uint32_t word) { return __builtin_bswap32(word); }
inline std::uint64_t Swapped(std::uint64_t word) { return __builtin_bswap64(word); }

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
void RunArray(benchmark::State& state, ArrayOperation operation, std::size_t count) {
    const std::vector<Word> source = RandomWords<Word>(count);
    std::vector<Word> target(count, 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(target.data(), source.data(), BigEndian, static_cast<unsigned long>(count)));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(count * sizeof(Word)));
}

// Registers CASE/count/ours next to its two peers, for each count.
template <class Word>
void RegisterArrays(const std::string& name, ArrayOperation ours, std::initializer_list<long> counts) {
    const struct {
        const char* variant;
        ArrayOperation operation;
    } runs[] = {{"ours", ours}, {"peer_memcpy", CopyBytes<Word>}, {"peer_loop", SwapLoop<Word>}};
    for (const auto& run : runs) {
        for (const long count : counts) {
            const std::string full = name + "/" + std::to_string(count) + "/" + run.variant;
            benchmark::RegisterBenchmark(full.c_str(), RunArray<Word>, run.operation, static_cast<std::size_t>(count));
        }
    }
}

}  // namespace vqbench

#endif
