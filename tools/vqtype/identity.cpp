#include "identity.h"

#include <fmt/format.h>

#include "library.h"

std::string Identity() {
    unsigned long major, minor, release, build, patch, number;
    const char *module, *date, *text, *compiler, *extra;
    const char* const product =
        _VqDescribeDll(&major, &minor, &release, &build, &patch, &module, &date, &text, &number, &compiler, &extra);
    const std::string tail = *extra ? fmt::format("\nExtra:     {}", extra) : "";
    return fmt::format(
        "vqtype ({}) {}.{}.{}.{}.{}\n"
        "Module:    {}\n"
        "Text:      {}\n"
        "Built:     {}, number {}\n"
        "Compiler:  {}{}",
        product, major, minor, release, build, patch, module, text, date, number, compiler, tail);
}
