// Searching in time linear in the text, whatever text and pattern hold.
//
// Knuth, Morris and Pratt: Fast pattern matching in strings (1977).
#ifndef VQ_LINEARSEARCH_H
#define VQ_LINEARSEARCH_H

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace vq {

constexpr std::size_t NotFound = static_cast<std::size_t>(-1);

// The borders of each beginning of a pattern: how long the longest shorter beginning is that also ends it. Units are
// comparison keys, or bytes.
class PatternBorders {
  public:
    explicit PatternBorders(std::vector<std::int32_t> units) : units_(std::move(units)), borders_(units_.size() + 1) {
        std::uint16_t border = 0;
        for (std::size_t i = 1; i < units_.size(); ++i) {
            while (border != 0 && units_[i] != units_[border]) border = borders_[border];
            border = static_cast<std::uint16_t>(border + (units_[i] == units_[border]));
            borders_[i + 1] = border;
        }
    }

    // The first place from `start` on where the pattern lies in the units that `unitAt` gives for places below `end`,
    // and that `accept(place, true)` takes. A negative unit may be anything: `accept(place, false)` is asked about each
    // place that fits up to there.
    template <class UnitAt, class Accept>
    std::size_t Find(std::size_t start, std::size_t end, UnitAt unitAt, Accept accept) const {
        std::size_t fitting = 0;
        for (std::size_t at = start; at < end; ++at) {
            const std::int32_t unit = unitAt(at);
            if (unit < 0) {
                for (;; fitting = borders_[fitting]) {
                    if (accept(at - fitting, false)) return at - fitting;
                    if (fitting == 0) break;
                }
                continue;
            }
            while (fitting != 0 && unit != units_[fitting]) fitting = borders_[fitting];
            if (unit != units_[fitting]) continue;
            if (++fitting < units_.size()) continue;
            if (accept(at + 1 - fitting, true)) return at + 1 - fitting;
            fitting = borders_[fitting];
        }
        return NotFound;
    }

  private:
    std::vector<std::int32_t> units_;
    std::vector<std::uint16_t> borders_;  // by length; texts have fewer than 65536 characters
};

}  // namespace vq

#endif
