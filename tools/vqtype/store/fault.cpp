#include "fault.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <string_view>

#include "../text.h"

namespace store {

namespace {

// A handler can neither allocate nor format: what it says is ready before.
std::array<char, 512> message;
std::size_t messageSize = 0;

void Prepare(const std::string& name, bool isLocked) {
    constexpr std::string_view before = "vqtype store: ";
    constexpr std::string_view damaged = ": the store's pages are damaged; `vqtype store check` tells where\n";
    constexpr std::string_view changed =
        ": the store was changed while it was read, and this user has no permission to lock it; or it is damaged\n";
    const std::string_view after = isLocked ? damaged : changed;
    const std::string text = std::string(before) +
                             Shortened(Printable(name), message.size() - before.size() - after.size() - 3) +
                             std::string(after);
    messageSize = text.copy(message.data(), message.size());
}

[[noreturn]] void End() {
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, message.data(), messageSize);
    ::_exit(2);
}

extern "C" void EndAtFault(int) { End(); }

}  // namespace

void WatchFaults(MDB_env* environment, const std::string& name, bool isLocked) {
    Prepare(name, isLocked);
    struct sigaction action {};
    action.sa_handler = EndAtFault;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE}) ::sigaction(signal, &action, nullptr);
    mdb_env_set_assert(environment, [](MDB_env*, const char*) { End(); });
}

}  // namespace store
