// Blobs: searching next to the C library's memmem, to Boyer, Moore and Horspool's search and to std::string_view's
// find; comparing next to memcmp; appending next to std::string, which keeps room in reserve where a blob does not.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "vqtm.h"

#ifdef __linux__
#include <string.h>
#endif

namespace {

template <class Bytes>
Bytes Make(std::string_view bytes) {
    if constexpr (std::is_same_v<Bytes, VqBlob>) {
        return VqBlob(bytes.data(), static_cast<long>(bytes.size()));
    } else {
        return Bytes(bytes);
    }
}

constexpr const char* syllables[] = {"ver", "be",  "sch", "ung", "en",  "er",  "ein", "lich", "keit", "an", "auf",
                                     "der", "die", "das", "und", "ist", "mit", "zu",  "bar",  "heit", "st", "ge"};

// Words of one to three syllables.
std::string MakeText(std::size_t length) {
    std::mt19937 random(4096);
    std::string text;
    while (text.size() < length) {
        for (std::size_t i = random() % 3 + 1; i != 0; --i) text += syllables[random() % std::size(syllables)];
        text += ' ';
    }
    text.resize(length);
    return text;
}

std::string MakeNoise(std::size_t length) {
    std::mt19937 random(4096);
    std::string bytes(length, 0);
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

// --- Search

struct Haystack {
    const char* name;
    std::string bytes;
    std::string pattern;  // 16 bytes, at the end alone
};

const std::vector<Haystack>& Haystacks() {
    static const std::vector<Haystack> haystacks = [] {
        constexpr std::size_t Length = 1 << 20;
        const std::string run = "aaaaabaaaaaaaaaa", period = "abababababababba";
        std::vector<Haystack> made = {{"Text/1MiB", MakeText(Length), "unverzichtbarste"},
                                      {"Random/1MiB", MakeNoise(Length), "0123456789abcdef"},
                                      {"RunHard/1MiB", std::string(Length, 'a'), run},
                                      {"PeriodHard/1MiB", std::string(), period}};
        while (made[3].bytes.size() < Length) made[3].bytes += "ab";
        for (Haystack& haystack : made) haystack.bytes.replace(Length - 16, 16, haystack.pattern);
        return made;
    }();
    return haystacks;
}

std::size_t ByBlob(const VqBlob& blob, const VqBlob& pattern) { return static_cast<std::size_t>(blob.Search(pattern)); }

std::size_t ByView(std::string_view bytes, std::string_view pattern) { return bytes.find(pattern); }

std::size_t ByHorspool(std::string_view bytes, std::string_view pattern) {
    const std::boyer_moore_horspool_searcher searcher(pattern.begin(), pattern.end());
    const auto found = std::search(bytes.begin(), bytes.end(), searcher);
    return found != bytes.end() ? static_cast<std::size_t>(found - bytes.begin()) : bytes.npos;
}

#ifdef __linux__
std::size_t ByMemmem(std::string_view bytes, std::string_view pattern) {
    const void* const found = memmem(bytes.data(), bytes.size(), pattern.data(), pattern.size());
    return found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - bytes.data()) : bytes.npos;
}
#endif

template <class Bytes, class Find>
void Search(benchmark::State& state, const Haystack& haystack, Find find) {
    const Bytes bytes = Make<Bytes>(haystack.bytes), pattern = Make<Bytes>(haystack.pattern);
    for (auto _ : state) {
        if (find(bytes, pattern) != haystack.bytes.size() - 16) state.SkipWithError("not found");
    }
}

// A pattern of 6 bytes in fields of 64, found in every second one.
template <class Bytes, class Find>
void SearchFields(benchmark::State& state, Find find) {
    constexpr std::size_t Count = 1024, Field = 64, Pattern = 6;
    const std::string text = MakeText(Count * Field);
    std::mt19937 random(8);
    std::vector<Bytes> fields, patterns;
    for (std::size_t i = 0; i < Count; ++i) {
        const std::size_t from = i % 2 == 0 ? i : random() % Count;
        fields.push_back(Make<Bytes>(std::string_view(text).substr(i * Field, Field)));
        patterns.push_back(
            Make<Bytes>(std::string_view(text).substr(from * Field + random() % (Field - Pattern), Pattern)));
    }
    for (auto _ : state) {
        std::size_t sum = 0;
        for (std::size_t i = 0; i < Count; ++i) sum += find(fields[i], patterns[i]) < Field ? 1 : 0;
        if (sum < Count / 2) state.SkipWithError("not found");
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(Count));
}

// --- Comparison of equal bytes, where all are looked at: of several pairs, as keys are met

template <class Bytes, class Order>
void Compare(benchmark::State& state, std::size_t length, Order order) {
    const std::size_t count = length < 4096 ? 64 : 1;
    const std::string noise = MakeNoise(length);
    std::vector<Bytes> first, second;
    for (std::size_t i = 0; i < count; ++i) {
        first.push_back(Make<Bytes>(noise));
        second.push_back(first.back());
    }
    for (auto _ : state) {
        for (std::size_t i = 0; i < count; ++i) {
            if (order(first[i], second[i]) != 0) state.SkipWithError("not equal");
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(count));
}

int BlobOrder(const VqBlob& a, const VqBlob& b) { return a != b; }

int StringOrder(const std::string& a, const std::string& b) { return a.compare(b); }

// The lengths are known to be equal.
int MemoryOrder(const std::string& a, const std::string& b) { return std::memcmp(a.data(), b.data(), a.size()); }

// --- Growth by pieces of 256 bytes

void Append(benchmark::State& state, std::size_t length) {
    const VqBlob piece(256L);
    for (auto _ : state) {
        VqBlob blob;
        while (blob.Length() < static_cast<long>(length)) blob += piece;
        benchmark::DoNotOptimize(blob.Data());
    }
}

// The length that is known is set first.
void Fill(benchmark::State& state, std::size_t length) {
    const VqBlob piece(256L);
    for (auto _ : state) {
        VqBlob blob(static_cast<long>(length));
        for (long at = 0; at < static_cast<long>(length); at += 256) blob.CopyTo(piece, at, 256);
        benchmark::DoNotOptimize(blob.Data());
    }
}

void AppendToStdString(benchmark::State& state, std::size_t length) {
    const std::string piece(256, 0);
    for (auto _ : state) {
        std::string bytes;
        while (bytes.size() < length) bytes += piece;
        benchmark::DoNotOptimize(bytes.data());
    }
}

template <class... Arguments>
void Register(const std::string& name, Arguments... arguments) {
    benchmark::RegisterBenchmark(("Blob/" + name).c_str(), arguments...);
}

template <class RegisterOne>
void RegisterPeers(RegisterOne registerOne) {
    registerOne("/peer_string_view", ByView);
    registerOne("/peer_horspool", ByHorspool);
#ifdef __linux__
    registerOne("/peer_memmem", ByMemmem);
#endif
}

const bool registered = [] {
    using View = std::string_view;
    for (const Haystack& h : Haystacks()) {
        const std::string name = std::string("Search/") + h.name;
        Register(name + "/ours", [&h](benchmark::State& state) { Search<VqBlob>(state, h, ByBlob); });
        RegisterPeers([&](const char* peer, auto find) {
            Register(name + peer, [&h, find](benchmark::State& state) { Search<View>(state, h, find); });
        });
    }
    Register("Search/Field/6in64/ours", [](benchmark::State& state) { SearchFields<VqBlob>(state, ByBlob); });
    RegisterPeers([](const char* peer, auto find) {
        Register(std::string("Search/Field/6in64") + peer,
                 [find](benchmark::State& state) { SearchFields<View>(state, find); });
    });
    for (const std::size_t length : {std::size_t{64}, std::size_t{4096}, std::size_t{1} << 20}) {
        const std::string name = "Compare/" + std::to_string(length);
        Register(name + "/ours", [length](benchmark::State& state) { Compare<VqBlob>(state, length, BlobOrder); });
        Register(name + "/peer_std_string",
                 [length](benchmark::State& state) { Compare<std::string>(state, length, StringOrder); });
        Register(name + "/peer_memcmp",
                 [length](benchmark::State& state) { Compare<std::string>(state, length, MemoryOrder); });
    }
    for (const std::size_t length : {std::size_t{4096}, std::size_t{65536}}) {
        const std::string bytes = std::to_string(length);
        Register("Append/" + bytes + "/ours", Append, length);
        Register("Append/" + bytes + "/peer_std_string", AppendToStdString, length);
        Register("Fill/" + bytes + "/ours", Fill, length);
        Register("Fill/" + bytes + "/peer_std_string", AppendToStdString, length);
    }
    return true;
}();

}  // namespace
