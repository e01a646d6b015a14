// Configuration texts: any bytes are either loaded or refused with a reason, and a refusal changes nothing.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "vqconfig.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

// Asks for whatever stands before an equals sign; a key gives one number, or none whatever the default.
void AskForEveryKey(const VqConfig& config, const std::string& text) {
    for (std::size_t end = text.find('='); end != text.npos; end = text.find('=', end + 1)) {
        const std::size_t newline = text.rfind('\n', end);
        const std::size_t start = newline == text.npos ? 0 : newline + 1;
        const std::string key = text.substr(start, end - start);
        const int number = config.GetInt("s", key.c_str(), 1);
        const int other = config.GetInt("s", key.c_str(), 2);
        Require(number == other || (number == 1 && other == 2));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    VqConfig config;
    config.SetInt("kept", "kept", 7);
    const bool loaded = config.LoadText(text.data(), static_cast<unsigned long>(size), "fuzz.ini");
    Require(loaded == (std::strlen(config.ErrorText()) == 0));
    Require(loaded || config.GetInt("kept", "kept", 0) == 7);
    AskForEveryKey(config, text);
    config.SetInt("S", "new", -5);
    Require(config.GetInt("s", "NEW", 0) == -5);
    return 0;
}
