/// \file
/// Runs a fuzzer's entry on stored inputs: each argument is a file, or a folder of files. Links in the place of
/// libFuzzer, so that every seed and every former finding is tried on each target. Fails when it finds no input at all.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const fs::path& place) {
    std::vector<fs::path> files;
    if (!fs::is_directory(place)) return {place};
    for (const auto& entry : fs::directory_iterator(place))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

/// A heap block of exactly the input's size, so that a sanitizer sees a read past its end.
void Replay(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read " + file.string());
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    const auto block = std::make_unique<std::uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), block.get());
    std::fprintf(stderr, "%s\n", file.filename().string().c_str());
    LLVMFuzzerTestOneInput(block.get(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) try {
    int count = 0;
    for (int i = 1; i < argc; ++i)
        for (const fs::path& file : FilesOf(argv[i])) Replay(file), ++count;
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
