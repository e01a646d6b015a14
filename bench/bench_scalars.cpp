// The base library's byte order: arrays of scalars stored big-endian.
#include "scalararrays.h"
#include "vqbase.h"

namespace {

using vqbench::RegisterArrays;

const bool registered = [] {
    RegisterArrays<std::uint16_t>("Scalars/StoreShortBE", ShortStore, {1, 16, 1024, 1 << 20});
    RegisterArrays<std::uint32_t>("Scalars/StoreLongBE", LongStore, {1, 16, 1024, 1 << 20});
    RegisterArrays<std::uint64_t>("Scalars/StoreDoubleBE", DoubleStore, {1, 16, 1024, 1 << 20});
    return true;
}();

}  // namespace
