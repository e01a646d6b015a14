#include "snapshot.h"

#include "../text.h"

namespace store {

PageSnapshot::PageSnapshot(Environment& environment, const PageReport& report) {
    const auto attempt = [&](const PageReport& found) {
        transaction_.emplace(environment, Access::Read);
        pages_.emplace(environment.Name());
        return pages_->ReadMeta(mdb_txn_id(transaction_->Handle()), found);
    };
    if (ReadMetaPages(attempt, report)) return;
    throw CommandError("{}: the meta pages are damaged", Printable(environment.Name()));
}

}  // namespace store
