// Hash codes of strings by length, next to the plain loop and, for information, to a hash function made for speed; and
// of integers by type, next to that function and, in long arrays, to the plain loop and a copy of as many bytes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "strhash.h"
#include "stringiterator.h"
#include "vqcollation.h"
#include "vqstring.h"
#include "vqtypes.h"

#if __has_include(<xxhash.h>)
#define XXH_INLINE_ALL
#include <xxhash.h>
#define VQTM_HAVE_XXHASH
#endif

namespace {

constexpr std::size_t KeyCount = 64;
constexpr std::size_t Lengths[] = {8, 11, 16, 32, 64, 256};

[[gnu::noinline]] std::uint32_t LoopOverBytes(const VqString& s) {
    std::uint32_t h = 0;
    for (const char* at = s.StrGet(); *at != 0; ++at) h = h * 9 + static_cast<std::uint32_t>(*at);
    return h;
}

[[gnu::noinline]] std::uint32_t LoopOverUnits(const VqString& s) {
    std::uint32_t h = 0;
    const auto* at = reinterpret_cast<const unsigned short*>(s.StrGet());
    for (; *at != 0; ++at) h = h * 9 + *at;
    return h;
}

[[gnu::noinline]] std::uint32_t LoopOverOrders(const VqString& s) {
    std::uint32_t h = 0;
    for (VqStringIterator at(s); !at.IsEnd();) {
        h = h * 9 + static_cast<std::uint32_t>(VqCollationKey(at.GetNextOrder(1), at.GetCollationClass()));
    }
    return h;
}

std::uint32_t HashOrders(const VqString& s) { return HashString(s.GetCodeSet(), s.GetLanguage(), s.StrGet(), -1, 255); }

#ifdef VQTM_HAVE_XXHASH
[[gnu::noinline]] std::uint32_t Xxh3(const VqString& s) {
    const std::size_t charSize = s.GetCodeSet() < 225 ? 1 : 2;
    return static_cast<std::uint32_t>(XXH3_64bits(s.StrGet(), s.GetSize() - charSize));
}
#endif

std::vector<VqString> Keys(std::size_t length, unsigned char codeSet) {
    std::mt19937 random(5);
    std::vector<VqString> keys;
    for (std::size_t i = 0; i < KeyCount; ++i) {
        std::string text;
        for (std::size_t k = 0; k < length; ++k) text += static_cast<char>('a' + random() % 26);
        keys.emplace_back(text.c_str());
        keys.back().MapToCodeSet(codeSet);
    }
    return keys;
}

template <class Hash>
void Run(benchmark::State& state, std::size_t length, unsigned char codeSet, Hash hash, Hash reference) {
    const std::vector<VqString> keys = Keys(length, codeSet);
    for (const VqString& key : keys) {
        if (reference != nullptr && hash(key) != reference(key)) return state.SkipWithError("another code");
    }
    for (auto _ : state) {
        for (const VqString& key : keys) benchmark::DoNotOptimize(hash(key));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}

using HashFunction = std::uint32_t (*)(const VqString&);

void Register(const char* name, unsigned char codeSet, HashFunction ours, HashFunction loop, HashFunction peer) {
    for (const std::size_t length : Lengths) {
        const std::string stem = std::string("Hash/") + name + "/" + std::to_string(length);
        const auto add = [&](const char* who, HashFunction hash, HashFunction reference) {
            benchmark::RegisterBenchmark((stem + who).c_str(), Run<HashFunction>, length, codeSet, hash, reference);
        };
        add("/ours", ours, loop);
        add("/peer_loop", loop, nullptr);
        if (peer != nullptr) add("/peer_xxh3", peer, nullptr);
    }
}

// --- By type, through the type manager

constexpr std::uint32_t Multiplier = 1103515245;

#ifdef __clang__
#define VECTORISED [[gnu::noinline]]
#else
#define VECTORISED [[gnu::noinline, gnu::optimize("O3")]]
#endif

// Takes words as they lie: next to StoredLongs it swaps no bytes, and so does less than is asked.
VECTORISED std::uint32_t LoopOverLongs(const std::uint32_t* keys, std::size_t count) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < count; ++i) word ^= keys[i];
    return word * Multiplier;
}

[[gnu::noinline]] std::uint32_t CopyLongs(const std::uint32_t* keys, std::size_t count) {
    static std::vector<std::uint32_t> copy;
    copy.resize(count);
    std::memcpy(copy.data(), keys, count * sizeof *keys);
    return copy[0];
}

const VqTypeMgr manager(12);

template <unsigned char format>
std::uint32_t HashLongs(const std::uint32_t* keys, std::size_t count) {
    int status;
    return static_cast<std::uint32_t>(
        manager.Hash(VqTypeId_long, 0, keys, static_cast<unsigned long>(count), format, status));
}

#ifdef VQTM_HAVE_XXHASH
[[gnu::noinline]] std::uint32_t Xxh3OfLongs(const std::uint32_t* keys, std::size_t count) {
    return static_cast<std::uint32_t>(XXH3_64bits(keys, count * sizeof *keys));
}
#endif

using HashOfLongs = std::uint32_t (*)(const std::uint32_t* keys, std::size_t count);

template <unsigned char format>
std::uint32_t ExpectedHash(const std::uint32_t* keys, std::size_t count) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < count; ++i) word ^= format == VqFormat_BigEndian ? __builtin_bswap32(keys[i]) : keys[i];
    return word * Multiplier;
}

void RunLongs(benchmark::State& state, HashOfLongs hash, HashOfLongs reference, std::size_t count) {
    std::vector<std::uint32_t> keys(std::max(count, KeyCount));
    std::mt19937 random(6);
    for (std::uint32_t& key : keys) key = static_cast<std::uint32_t>(random());
    if (reference != nullptr && hash(keys.data(), count) != reference(keys.data(), count)) {
        return state.SkipWithError("another code");
    }
    const std::size_t calls = keys.size() / count;
    for (auto _ : state) {
        for (std::size_t i = 0; i < calls; ++i) benchmark::DoNotOptimize(hash(&keys[i * count], count));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(calls));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(calls * count * sizeof keys[0]));
}

template <unsigned char format>
void RegisterLongs(const std::string& name, std::size_t count,
                   std::initializer_list<std::pair<const char*, HashOfLongs>> peers) {
    const std::string stem = "Hash/" + name + "/" + std::to_string(count) + "/";
    benchmark::RegisterBenchmark((stem + "ours").c_str(), RunLongs, HashLongs<format>, ExpectedHash<format>, count);
    for (const auto& [who, hash] : peers) {
        benchmark::RegisterBenchmark((stem + who).c_str(), RunLongs, hash, nullptr, count);
    }
}

const bool registered = [] {
#ifdef VQTM_HAVE_XXHASH
    const HashFunction xxh3 = Xxh3;
    RegisterLongs<VqFormat_Memory>("Longs", 1, {{"peer_xxh3", Xxh3OfLongs}});
    RegisterLongs<VqFormat_BigEndian>("StoredLongs", 1, {{"peer_xxh3", Xxh3OfLongs}});
#else
    const HashFunction xxh3 = nullptr;
#endif
    for (const std::size_t count : {std::size_t{1024}, std::size_t{1000000}}) {
        RegisterLongs<VqFormat_Memory>("Longs", count, {{"peer_loop", LoopOverLongs}, {"peer_memcpy", CopyLongs}});
        RegisterLongs<VqFormat_BigEndian>("StoredLongs", count, {{"peer_loop", LoopOverLongs}});
    }
    Register("Bytes", 1, HashVqString, LoopOverBytes, xxh3);
    Register("Units", 253, HashVqString, LoopOverUnits, xxh3);
    Register("Orders", 1, HashOrders, LoopOverOrders, nullptr);
    return true;
}();

}  // namespace
