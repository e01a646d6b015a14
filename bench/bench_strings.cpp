// Strings made from text and copied, next to std::string of the same length.
#include <benchmark/benchmark.h>

#include <string>

#include "vqstring.h"

namespace {

constexpr std::size_t Lengths[] = {8, 15, 16, 32, 100, 1000, 30000};

template <class String>
void FromText(benchmark::State& state, std::size_t length) {
    const std::string text(length, 'x');
    const char* from = text.c_str();
    for (auto _ : state) {
        benchmark::DoNotOptimize(from);
        String made(from);
        benchmark::DoNotOptimize(made);
    }
}

template <class String>
void Copy(benchmark::State& state, std::size_t length) {
    const String original(std::string(length, 'x').c_str());
    for (auto _ : state) {
        String copy(original);
        benchmark::DoNotOptimize(copy);
    }
}

using Case = void (*)(benchmark::State&, std::size_t);

void Register(const char* name, Case ours, Case peer) {
    for (const std::size_t length : Lengths) {
        const std::string stem = std::string("Strings/") + name + "/" + std::to_string(length);
        benchmark::RegisterBenchmark((stem + "/ours").c_str(), ours, length);
        benchmark::RegisterBenchmark((stem + "/peer_std_string").c_str(), peer, length);
    }
}

const bool registered = [] {
    Register("FromText", FromText<VqString>, FromText<std::string>);
    Register("Copy", Copy<VqString>, Copy<std::string>);
    return true;
}();

}  // namespace
