#include "charoperation.h"

#include "stringiterator.h"
#include "textunit.h"
#include "vqcase.h"

namespace {

static_assert(VqCharOperation::MaxResult >= VqMaxCaseLength);

constexpr unsigned short CapitalI = 'I';
constexpr unsigned short CaseDistance = 'a' - 'A';
constexpr unsigned short DotAbove = 0x307;
constexpr unsigned short CapitalSigma = 0x3A3;
constexpr unsigned short FinalSigma = 0x3C2;

// A character with what its mapping depends on.
struct Character {
    explicit Character(const VqStringIterator& place)
        : set(vq::CodeSetOf(place.GetCodeSet())), code(place.GetCode()), unit(set.ToUnicode(code)) {}

    const VqCodeSet& set;
    unsigned short code;
    unsigned short unit;
};

unsigned short UnitAt(const VqStringIterator& place) { return Character(place).unit; }

bool IsIgnorable(unsigned short unit) { return (VqGetCaseContext(unit) & VqCaseContext_Ignorable) != 0; }
bool IsCased(unsigned short unit) { return (VqGetCaseContext(unit) & VqCaseContext_Cased) != 0; }
bool IsMark(unsigned short unit) { return (VqGetCaseContext(unit) & VqCaseContext_Mark) != 0; }

// The nearest unit before the place that `skip` does not pass over; 0 when there is none.
unsigned short Before(VqStringIterator place, bool (*skip)(unsigned short)) {
    while (!place.IsStart()) {
        const unsigned short unit = UnitAt(--place);
        if (!skip(unit)) return unit;
    }
    return 0;
}

// The same behind the place.
unsigned short Behind(VqStringIterator place, bool (*skip)(unsigned short)) {
    unsigned short unit = UnitAt(++place);
    while (skip(unit)) unit = UnitAt(++place);
    return unit;
}

bool EndsWord(const VqStringIterator& sigma) {
    return IsCased(Before(sigma, IsIgnorable)) && !IsCased(Behind(sigma, IsIgnorable));
}

bool HasAll(const VqCodeSet& set, const unsigned short* units, int count) {
    for (int i = 0; i < count; ++i) {
        if (!set.HasUnicode(units[i])) return false;
    }
    return true;
}

using SimpleMapping = unsigned short (VqCodeSet::*)(unsigned short code) const;

// Writes the mapping in the character's code set. Where the set lacks a part of a longer one, the simple mapping
// stands in for it; where it lacks that too, the character stays.
int InSet(const Character& c, const unsigned short* units, int count, SimpleMapping simple, unsigned short* result) {
    const bool same = count == 1 && units[0] == c.unit;
    if (same || !HasAll(c.set, units, count)) {
        result[0] = count > 1 ? (c.set.*simple)(c.code) : c.code;
        return 1;
    }
    for (int i = 0; i < count; ++i) result[i] = c.set.FromUnicode(units[i]);
    return count;
}

// The codes of ASCII are the same in every set, and only a dotless i makes a difference among them.
bool IsPlain(unsigned short code, unsigned char language) { return code < 0x80 && !VqHasDotlessI(language); }

int One(unsigned short code, unsigned short* result) {
    result[0] = code;
    return 1;
}

}  // namespace

int VqUpperCaseOperation::Apply(const VqStringIterator& place, unsigned short result[MaxResult]) {
    const unsigned short code = place.GetCode();
    if (IsPlain(code, place.GetLanguage())) {
        return One(static_cast<unsigned short>(code >= 'a' && code <= 'z' ? code - CaseDistance : code), result);
    }
    const Character c(place);
    unsigned short units[VqMaxCaseLength];
    const int count = VqFullUpperCase(c.unit, place.GetLanguage(), units);
    return InSet(c, units, count, &VqCodeSet::ToUpper, result);
}

int VqLowerCaseOperation::Apply(const VqStringIterator& place, unsigned short result[MaxResult]) {
    const unsigned short code = place.GetCode();
    if (IsPlain(code, place.GetLanguage())) {
        return One(static_cast<unsigned short>(code >= 'A' && code <= 'Z' ? code + CaseDistance : code), result);
    }
    const Character c(place);
    unsigned short units[VqMaxCaseLength];
    int count = VqFullLowerCase(c.unit, place.GetLanguage(), units);
    if (c.unit == CapitalSigma && c.set.HasUnicode(FinalSigma) && EndsWord(place)) units[0] = FinalSigma;
    if (VqHasDotlessI(place.GetLanguage())) {
        if (c.unit == CapitalI && Behind(place, IsMark) == DotAbove) units[0] = 'i';
        if (c.unit == DotAbove && Before(place, IsMark) == CapitalI) count = 0;
    }
    return InSet(c, units, count, &VqCodeSet::ToLower, result);
}
