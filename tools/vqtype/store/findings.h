/// \file
/// What is found wrong with a store: the first findings in full, all by number.
#ifndef VQTYPE_STORE_FINDINGS_H
#define VQTYPE_STORE_FINDINGS_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace store {

class Findings {
  public:
    static constexpr std::size_t MostTexts = 100;

    /// Adds one sentence about a part of the store ("pages", "records", "index name").
    void Add(const std::string& part, std::string text);

    std::uint64_t Count() const { return count_; }
    /// Those of the first findings.
    const std::vector<std::string>& Texts() const { return texts_; }
    /// The parts, in the order in which they were found damaged, and how many findings each has.
    const std::vector<std::pair<std::string, std::uint64_t>>& Parts() const { return parts_; }

  private:
    std::uint64_t count_ = 0;
    std::vector<std::string> texts_;
    std::vector<std::pair<std::string, std::uint64_t>> parts_;
};

}  // namespace store

#endif
