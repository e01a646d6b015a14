/// \file
/// Sorted runs of keys in a temporary file, and their merging.
#ifndef VQTYPE_STORE_KEYRUNS_H
#define VQTYPE_STORE_KEYRUNS_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bytes.h"

namespace store {

/// Runs of keys in a file without a name beside the store: it is gone with this object, however the program ends.
class KeyRuns {
  public:
    /// `store` is the file's name, beside which there must be room. The temporary file is made with the first run.
    explicit KeyRuns(std::string store) : store_(std::move(store)) {}
    KeyRuns(const KeyRuns&) = delete;
    KeyRuns& operator=(const KeyRuns&) = delete;
    ~KeyRuns();

    bool IsEmpty() const { return runs_.empty(); }

    /// Writes a run: Start, its keys in order, End. Throws CommandError where there is no room.
    /// @{
    void Start();
    void Add(ByteView key);
    void End();
    /// @}

    /// Gives the keys of all runs to `take`, by the order `isBefore`; of equal ones those of earlier runs first.
    void Merge(const std::function<bool(ByteView, ByteView)>& isBefore, const std::function<void(ByteView)>& take);

  private:
    struct Run {
        std::uint64_t start, end;  // in the file
    };
    class Reader;

    void Open();
    void Write();
    void Read(std::uint64_t at, unsigned char* to, std::size_t size) const;
    [[noreturn]] void Fail(const char* doing) const;

    std::string store_;
    int file_ = -1;
    std::uint64_t written_ = 0;
    Bytes buffer_;  // not written yet
    std::vector<Run> runs_;
};

}  // namespace store

#endif
