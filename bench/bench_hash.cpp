// Hash codes of strings by length, next to the plain loop and, for information, to a hash function made for speed.
#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#include "strhash.h"
#include "stringiterator.h"
#include "vqcollation.h"
#include "vqstring.h"

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
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * keys.size()));
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

const bool registered = [] {
#ifdef VQTM_HAVE_XXHASH
    const HashFunction xxh3 = Xxh3;
#else
    const HashFunction xxh3 = nullptr;
#endif
    Register("Bytes", 1, HashVqString, LoopOverBytes, xxh3);
    Register("Units", 253, HashVqString, LoopOverUnits, xxh3);
    Register("Orders", 1, HashOrders, LoopOverOrders, nullptr);
    return true;
}();

}  // namespace
