/// \file
/// Sorts the keys of one index, in memory as far as that goes.
#ifndef VQTYPE_STORE_KEYSORTER_H
#define VQTYPE_STORE_KEYSORTER_H

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "keyarena.h"
#include "keyruns.h"
#include "treekey.h"

namespace store {

/// Collects tree keys (treekey.h), then gives them in the order of CompareTreeKeys.
class KeySorter {
  public:
    enum class Use {
        Hints,        ///< sorthint.h tells most keys apart, and the order is what it takes the manager's for
        Comparisons,  ///< the manager's comparison alone: slower by far
    };

    /// Keys of values of `type` in the byte order `format`. Temporary files are made beside `store`.
    KeySorter(VqTypeId type, unsigned char format, std::string store, Use use)
        : type_(type), format_(format), use_(use), runs_(std::move(store)) {}

    void Add(ByteView key) {
        if (!arena_.HasRoom()) Spill();
        arena_.Add(key);
        ++count_;
        bytes_ += key.size();
        ++held_[static_cast<std::size_t>(ClassOf(key))];
    }

    std::uint64_t Count() const { return count_; }
    /// Bytes of all keys.
    std::uint64_t Bytes() const { return bytes_; }
    /// Bytes of memory that the keys take, and their sorting.
    std::size_t Memory() const { return arena_.Bytes() + Held() * sizeof(Entry); }
    /// Moves what is in memory to the disk, sorted. Throws CommandError where there is no room.
    void Spill();

    /// Sorts what is in memory. Call it once, when all keys are there; another thread may do so.
    void Sort();
    /// Gives all keys to `take`, in order, behind Sort. Call it once: the keys are gone with it.
    void Drain(const std::function<void(ByteView)>& take);

  private:
    struct Entry {
        std::uint64_t word;  // the hint
        KeyArena::Place place;
    };
    using Entries = std::vector<Entry>;
    class Sorting;

    std::size_t Held() const { return held_[0] + held_[1] + held_[2]; }
    void SortMemory();
    // Neighbours in order lie anywhere in memory: those that follow are fetched in time.
    void PrefetchBehind(const Entry* entry) const {
        constexpr std::ptrdiff_t ahead = 8;
        if (entries_.data() + entries_.size() - entry > ahead) arena_.Prefetch(entry[ahead].place);
    }
    void EachInMemory(const std::function<void(ByteView)>& take) const;
    void Release();

    VqTypeId type_;
    unsigned char format_;
    Use use_;
    std::uint64_t count_ = 0, bytes_ = 0;
    std::array<std::size_t, 3> held_{};  // keys in memory, of each class
    KeyArena arena_;
    std::vector<Entry> entries_;
    KeyRuns runs_;
};

}  // namespace store

#endif
