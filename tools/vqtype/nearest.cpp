#include "nearest.h"

#include <algorithm>
#include <vector>

#include "text.h"

namespace {

// Levenshtein distance.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

}  // namespace

NearestName::NearestName(std::string_view given)
    : given_(given), best_{std::min<std::size_t>(3, given.size() / 4 + 2), 0} {}

void NearestName::Try(std::string_view form, std::string_view name) {
    const Distance distance{EditDistance(Lowered(form), Lowered(given_)), EditDistance(form, given_)};
    if (distance < best_) best_ = distance, nearest_ = name;
}

std::string NearestName::Question() const { return nearest_.empty() ? "" : "; did you mean " + nearest_ + "?"; }
