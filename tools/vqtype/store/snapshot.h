/// \file
/// A store's pages as they are at one time, while others write.
#ifndef VQTYPE_STORE_SNAPSHOT_H
#define VQTYPE_STORE_SNAPSHOT_H

#include <optional>
#include <string>
#include <vector>

#include "lmdb.h"
#include "pages.h"

namespace store {

/// The pages of a transaction that reads, and that lasts as long as this does.
class PageSnapshot {
  public:
    /// What is wrong with the meta pages goes to `report`. Throws CommandError where none can be used.
    PageSnapshot(Environment& environment, const PageReport& report);

    const PageFile& Pages() const { return *pages_; }

  private:
    std::optional<Transaction> transaction_;
    std::optional<PageFile> pages_;
};

/// Calls `attempt(report)`, which reads meta pages and tells whether it could, until it finds nothing wrong or that
/// does not change: who writes meanwhile can take the meta pages of a transaction away, but not again and again. What
/// the last call has found goes to `report`.
template <class Attempt>
bool ReadMetaPages(Attempt attempt, const PageReport& report) {
    constexpr int MostAttempts = 20;
    std::vector<std::string> faults;
    bool isRead = false;
    for (int i = 0; i < MostAttempts && (!isRead || !faults.empty()); ++i) {
        faults.clear();
        isRead = attempt([&faults](const std::string& what) { faults.push_back(what); });
    }
    for (const std::string& fault : faults) report(fault);
    return isRead;
}

}  // namespace store

#endif
