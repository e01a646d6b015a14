/// \file
/// One line on standard error that tells how far a long job is.
#ifndef VQTYPE_STORE_PROGRESS_H
#define VQTYPE_STORE_PROGRESS_H

#include <chrono>
#include <cstdint>
#include <string>

namespace store {

/// True where a progress line is of use: standard error is a terminal that can go back in its line (TERM is not
/// "dumb"). The line has neither colours nor other control sequences, so NO_COLOR leaves nothing to take away.
bool CanShowProgress();

/// What a job has done so far.
struct Progressed {
    std::uint64_t rows = 0;
    std::uint64_t part = 0, whole = 0;  ///< of the work, in any unit (bytes of a file); 0 of 0 where nobody knows
    double seconds = 0;
};

/// The line's text: `loading [=====>    ]  52 %  1,040,000 rows, 812,000 a second`, at most `width` characters.
std::string ProgressText(const std::string& doing, const Progressed& progressed, std::size_t width);

/// Shows the line from a second after its making on, at most ten times a second, and takes it away in the end. Not for
/// two threads at once.
class Progress {
  public:
    /// `doing` is a word or two ("loading"). `whole` is as in Progressed, 0 where it is not known. Nothing is ever
    /// shown where `isQuiet`, or where CanShowProgress is false.
    Progress(std::string doing, std::uint64_t whole, bool isQuiet = false);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { Clear(); }

    /// Tells how far the job is. It asks the clock: every few hundred rows is often enough.
    void Update(std::uint64_t rows, std::uint64_t part = 0);
    /// Takes the line away, before something else is written to standard error; the next update may bring it back.
    void Clear();

  private:
    using Clock = std::chrono::steady_clock;

    std::string doing_;
    std::uint64_t whole_;
    bool isShown_;  // ever
    Clock::time_point start_ = Clock::now(), next_ = start_ + std::chrono::seconds(1);
    std::size_t width_ = 0;  // of what stands on the line
};

}  // namespace store

#endif
