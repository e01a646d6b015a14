#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "unicodeset.h"
#include "vqcase.h"

namespace {

struct LongCase {
    std::uint16_t unit;
    std::uint16_t units[VqMaxCaseLength];  // 0 behind the last
};

struct UnitRange {
    std::uint16_t first;
    std::uint16_t last;
};

#include "../data/generated/casing.inc"

constexpr unsigned char Turkish = 17;
constexpr unsigned short CapitalDottedI = 0x130;
constexpr unsigned short SmallDotlessI = 0x131;

int One(unsigned short unit, unsigned short units[VqMaxCaseLength]) {
    units[0] = unit;
    return 1;
}

// The mapping to several units, or 0 when `unit` has none.
template <std::size_t N>
int Long(const LongCase (&table)[N], unsigned short unit, unsigned short units[VqMaxCaseLength]) {
    if (unit < table[0].unit) return 0;
    const auto entry = std::lower_bound(std::begin(table), std::end(table), unit,
                                        [](const LongCase& c, unsigned short wanted) { return c.unit < wanted; });
    if (entry == std::end(table) || entry->unit != unit) return 0;
    std::copy(std::begin(entry->units), std::end(entry->units), units);
    return entry->units[2] != 0 ? 3 : 2;
}

template <std::size_t N>
bool Contains(const UnitRange (&ranges)[N], unsigned short unit) {
    const auto range = std::lower_bound(std::begin(ranges), std::end(ranges), unit,
                                        [](const UnitRange& r, unsigned short wanted) { return r.last < wanted; });
    return range != std::end(ranges) && range->first <= unit;
}

}  // namespace

bool VqHasDotlessI(unsigned char language) { return language == Turkish; }

int VqFullUpperCase(unsigned short unit, unsigned char language, unsigned short units[VqMaxCaseLength]) {
    if (unit == 'i' && VqHasDotlessI(language)) return One(CapitalDottedI, units);
    if (const int count = Long(upperLong, unit, units)) return count;
    return One(vq::unicodeCodeSet.ToUpper(unit), units);
}

int VqFullLowerCase(unsigned short unit, unsigned char language, unsigned short units[VqMaxCaseLength]) {
    if (VqHasDotlessI(language)) {
        if (unit == 'I') return One(SmallDotlessI, units);
        if (unit == CapitalDottedI) return One('i', units);
    }
    if (const int count = Long(lowerLong, unit, units)) return count;
    return One(vq::unicodeCodeSet.ToLower(unit), units);
}

unsigned VqGetCaseContext(unsigned short unit) {
    unsigned context = 0;
    if (Contains(casedUnits, unit)) context |= VqCaseContext_Cased;
    if (Contains(ignorableUnits, unit)) context |= VqCaseContext_Ignorable;
    if (Contains(markUnits, unit)) context |= VqCaseContext_Mark;
    return context;
}
