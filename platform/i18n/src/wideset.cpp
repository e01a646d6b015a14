#include "wideset.h"

#include "unicodeset.h"
#include "unittext.h"

namespace vq {
namespace {

#include "../data/generated/widebig5.inc"
#include "../data/generated/widegbk.inc"
#include "../data/generated/wideshiftjis.inc"
#include "../data/generated/wideunifiedhangul.inc"

constexpr unsigned short NoCharacter = 0xFFFD;

constexpr WideCodeSet wideCodeSets[] = {
    WideCodeSet({225, "Shift_JIS", {codeRowsShiftJis, unitsShiftJis}, {unitRowsShiftJis, codesShiftJis}}),
    WideCodeSet({226, "GBK", {codeRowsGbk, unitsGbk}, {unitRowsGbk, codesGbk}}),
    WideCodeSet({227, "Big5", {codeRowsBig5, unitsBig5}, {unitRowsBig5, codesBig5}}),
    WideCodeSet({228,
                 "Unified Hangul",
                 {codeRowsUnifiedHangul, unitsUnifiedHangul},
                 {unitRowsUnifiedHangul, codesUnifiedHangul}}),
};

}  // namespace

unsigned char WideCodeSet::GetCollationClass(unsigned char language) const {
    return unicodeCodeSet.GetCollationClass(language);
}

unsigned short WideCodeSet::ToUnicode(unsigned short code) const {
    return IsCharacter(code) ? data_.units[code] : NoCharacter;
}

unsigned short WideCodeSet::FromUnicode(unsigned short unit) const {
    const unsigned short code = data_.codes[unit];
    return code != 0 || unit == 0 ? code : '?';
}

void WideCodeSet::MapToUnicode(const void* text, std::size_t n, void* units) const {
    for (std::size_t i = 0; i < n; ++i) SetUnitAt(units, i, ToUnicode(UnitAt(text, i)));
}

void WideCodeSet::MapFromUnicode(const void* units, std::size_t n, void* text) const {
    for (std::size_t i = 0; i < n; ++i) SetUnitAt(text, i, FromUnicode(UnitAt(units, i)));
}

unsigned short WideCodeSet::GetClass(unsigned short code) const {
    return IsCharacter(code) ? unicodeCodeSet.GetClass(data_.units[code]) : UndefinedOrder;
}

unsigned short WideCodeSet::GetProperties(unsigned short code) const {
    return IsCharacter(code) ? unicodeCodeSet.GetProperties(data_.units[code]) : 0;
}

// A character without partner keeps its code, also where another code of it is preferred.
unsigned short WideCodeSet::CodeOfCase(unsigned short code, unsigned short partner) const {
    return partner != data_.units[code] && HasUnicode(partner) ? data_.codes[partner] : code;
}

unsigned short WideCodeSet::ToUpper(unsigned short code) const {
    return CodeOfCase(code, unicodeCodeSet.ToUpper(data_.units[code]));
}

unsigned short WideCodeSet::ToLower(unsigned short code) const {
    return CodeOfCase(code, unicodeCodeSet.ToLower(data_.units[code]));
}

int WideCodeSet::GetOrders(unsigned short code, unsigned char language, unsigned short orders[2]) const {
    if (IsCharacter(code)) return unicodeCodeSet.GetOrders(data_.units[code], language, orders);
    orders[0] = UndefinedOrder;
    return 1;
}

VqKeyTable WideCodeSet::GetKeyTable(unsigned char language) const {
    return {nullptr, 0, unicodeCodeSet.GetKeyTable(language).contractions};
}

int WideCodeSet::GetContraction(const unsigned short codes[VqMaxContraction], unsigned char language,
                                unsigned short orders[2]) const {
    unsigned short units[VqMaxContraction];
    for (int i = 0; i < VqMaxContraction; ++i) units[i] = data_.units[codes[i]];
    return unicodeCodeSet.GetContraction(units, language, orders);
}

const VqCodeSet* FindWideCodeSet(unsigned char codeSet) {
    for (const WideCodeSet& set : wideCodeSets) {
        if (set.GetCode() == codeSet) return &set;
    }
    return nullptr;
}

}  // namespace vq
