#include "../diskform.h"
#include "../files.h"
#include "commands.h"
#include "store.h"

namespace store {

void RunCreate(const CreateOptions& options) {
    unsigned operation = VqCmp_Exact;
    if (options.ignoreCase) operation |= VqCmp_IgnoreCase;
    if (options.ignoreAccents) operation |= VqCmp_IgnoreAccents;
    Store::Create(options.store, Header::Make(Schema::Parse(options.schema, "--schema"), ByteOrderOf(options.order),
                                              static_cast<unsigned short>(operation)));
    const Store made(options.store, Purpose::Read);
    Write(fmt::format("{}: made, with {} column{}: {}\n", Printable(options.store), made.GetSchema().Count(),
                      made.GetSchema().Count() == 1 ? "" : "s", made.GetSchema().Format()));
}

}  // namespace store
