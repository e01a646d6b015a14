#include "vqassert.h"

#include <atomic>
#include <cstdio>

namespace {

void WriteReport(const char* expression, const char* file, int line) {
    std::fprintf(stderr, "%s(%d): assertion failed: %s\n", file ? file : "?", line, expression ? expression : "?");
}

constinit std::atomic<VqAssertHandler> assertHandler{WriteReport};

}  // namespace

void VIQA_assert(const char* expression, const char* file, int line) { assertHandler.load()(expression, file, line); }

VqAssertHandler VqSetAssertHandler(VqAssertHandler handler) {
    return assertHandler.exchange(handler ? handler : WriteReport);
}
