#include "findings.h"

#include <algorithm>

namespace store {

void Findings::Add(const std::string& part, std::string text) {
    ++count_;
    const auto found =
        std::find_if(parts_.begin(), parts_.end(), [&part](const auto& one) { return one.first == part; });
    if (found == parts_.end()) {
        parts_.emplace_back(part, 1);
    } else {
        ++found->second;
    }
    if (texts_.size() < MostTexts) texts_.push_back(std::move(text));
}

}  // namespace store
