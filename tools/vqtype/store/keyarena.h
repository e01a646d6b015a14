/// \file
/// Many keys in memory, in blocks that never move.
#ifndef VQTYPE_STORE_KEYARENA_H
#define VQTYPE_STORE_KEYARENA_H

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "bytes.h"

namespace store {

/// Keys of at most 65535 bytes, one behind the other.
class KeyArena {
  public:
    using Place = std::uint32_t;  ///< of a key; the places of later keys are higher

    /// True while there are places for one more key.
    bool HasRoom() const { return blocks_.size() < MostBlocks; }

    Place Add(ByteView key) {
        if (blocks_.empty() || blocks_.back().size - blocks_.back().used < key.size() + LengthSize) StartBlock();
        Block& block = blocks_.back();
        unsigned char* const to = block.bytes.get() + block.used;
        const auto length = static_cast<std::uint16_t>(key.size());
        std::memcpy(to, &length, LengthSize);
        std::memcpy(to + LengthSize, key.data(), key.size());
        const auto place = static_cast<Place>((blocks_.size() - 1) * BlockSize + block.used);
        block.used += key.size() + LengthSize;
        return place;
    }

    ByteView Key(Place place) const {
        const unsigned char* const at = At(place);
        std::uint16_t length;
        std::memcpy(&length, at, LengthSize);
        return {at + LengthSize, length};
    }
    /// Gives the places of all keys to `take`, in the sequence in which they were added.
    template <class Take>
    void ForEach(const Take& take) const {
        for (std::size_t block = 0; block < blocks_.size(); ++block) {
            for (std::size_t at = 0; at < blocks_[block].used;) {
                const auto place = static_cast<Place>(block * BlockSize + at);
                take(place);
                at += LengthSize + Key(place).size();
            }
        }
    }
    /// Lets the processor fetch a key that is wanted soon.
    void Prefetch(Place place) const { __builtin_prefetch(At(place)); }

    std::size_t Bytes() const { return bytes_; }
    void Clear() { *this = KeyArena(); }

  private:
    static constexpr std::size_t BlockSize = std::size_t{1} << 21, MostBlocks = (std::size_t{1} << 32) / BlockSize;
    static constexpr std::size_t FirstBlockSize = std::size_t{1} << 17, LengthSize = 2;

    struct Free {
        void operator()(unsigned char* bytes) const { std::free(bytes); }
    };
    struct Block {
        std::unique_ptr<unsigned char, Free> bytes;
        std::size_t size, used = 0;
    };

    // Each of the first blocks is twice the one before. From then on a block is a large page, where the system has
    // such: keys in order lie anywhere, and most of the time that it takes to get to one would be spent on finding its
    // page.
    void StartBlock() {
        const std::size_t size = blocks_.empty() ? FirstBlockSize : std::min(BlockSize, 2 * blocks_.back().size);
        auto* const bytes = static_cast<unsigned char*>(std::aligned_alloc(size, size));
        if (bytes == nullptr) throw std::bad_alloc();
        blocks_.push_back({std::unique_ptr<unsigned char, Free>(bytes), size});
        bytes_ += size;
        if (size == BlockSize) ::madvise(bytes, size, MADV_HUGEPAGE);
    }
    const unsigned char* At(Place place) const { return blocks_[place / BlockSize].bytes.get() + place % BlockSize; }

    std::vector<Block> blocks_;
    std::size_t bytes_ = 0;  // of all blocks
};

}  // namespace store

#endif
