#include "progress.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "../files.h"

namespace store {

namespace {

constexpr auto Pause = std::chrono::milliseconds(100);
constexpr std::size_t BarWidth = 20;

// Characters of a line of the terminal but the last, where some terminals begin the next line.
std::size_t LineWidth() {
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
    return isKnown ? size.ws_col - 1U : 79U;
}

std::string Grouped(std::uint64_t number) {
    std::string digits = fmt::to_string(number);
    for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
    return digits;
}

std::string Bar(double share) {
    const auto done = static_cast<std::size_t>(share * static_cast<double>(BarWidth));
    const std::string arrow = done < BarWidth ? std::string(done, '=') + '>' : std::string(BarWidth, '=');
    return fmt::format(" [{:<{}}] {:3.0f} %", arrow, BarWidth, share * 100);
}

}  // namespace

bool CanShowProgress() { return isatty(STDERR_FILENO) == 1 && EnvironmentVariable("TERM") != "dumb"; }

std::string ProgressText(const std::string& doing, const Progressed& progressed, std::size_t width) {
    std::string text = doing;
    if (progressed.whole != 0) {
        text += Bar(std::min(1.0, static_cast<double>(progressed.part) / static_cast<double>(progressed.whole)));
    }
    text += fmt::format("  {} rows", Grouped(progressed.rows));
    if (progressed.seconds > 0) {
        const double rate = static_cast<double>(progressed.rows) / progressed.seconds;
        text += fmt::format(", {} a second", Grouped(static_cast<std::uint64_t>(rate)));
    }
    return text.substr(0, width);
}

Progress::Progress(std::string doing, std::uint64_t whole, bool isQuiet)
    : doing_(std::move(doing)), whole_(whole), isShown_(!isQuiet && CanShowProgress()) {}

void Progress::Update(std::uint64_t rows, std::uint64_t part) {
    if (!isShown_) return;
    const Clock::time_point now = Clock::now();
    if (now < next_) return;
    next_ = now + Pause;
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const std::string text = ProgressText(doing_, {rows, part, whole_, seconds}, LineWidth());
    WriteError(fmt::format("\r{:<{}}", text, width_));
    width_ = std::max(width_, text.size());
}

void Progress::Clear() {
    if (width_ != 0) WriteError(fmt::format("\r{:<{}}\r", "", width_));
    width_ = 0;
}

}  // namespace store
