// Code sets of 16-bit units that hold the codes of an East Asian set: a byte, or lead and trail byte in one unit.
#ifndef VQ_WIDESET_H
#define VQ_WIDESET_H

#include "codetables.h"

namespace vq {

// The entries of one high byte: `values[start]` is that of low byte `first`. An empty row has `first` above `last`.
struct WideRow {
    std::uint16_t start;
    std::uint8_t first;
    std::uint8_t last;
};

// A mapping of 16-bit units by their high byte; 0 where there is none.
struct WideMap {
    const WideRow* rows;  // 256
    const std::uint16_t* values;

    constexpr std::uint16_t operator[](unsigned short unit) const {
        const WideRow& row = rows[unit >> 8];
        const unsigned low = unit & 255U;
        return low < row.first || low > row.last ? std::uint16_t{0} : values[row.start + low - row.first];
    }
};

struct WideSetData {
    std::uint8_t code;
    const char* name;
    WideMap units;  // by code
    WideMap codes;  // by Unicode unit
};

// Everything but the mapping is told by the Unicode character of a code. Several codes may stand for one character;
// the mapping from Unicode gives one of them, the same that other converters prefer.
class WideCodeSet final : public VqCodeSet {
  public:
    explicit constexpr WideCodeSet(const WideSetData& data) : data_(data) {}

    unsigned char GetCollationClass(unsigned char language) const override;
    unsigned char GetCode() const override { return data_.code; }
    const char* GetName() const override { return data_.name; }
    unsigned short ToUnicode(unsigned short code) const override;
    unsigned short FromUnicode(unsigned short unit) const override;
    bool HasUnicode(unsigned short unit) const override { return unit == 0 || data_.codes[unit] != 0; }
    unsigned short GetClass(unsigned short code) const override;
    unsigned short GetProperties(unsigned short code) const override;
    unsigned short ToUpper(unsigned short code) const override;
    unsigned short ToLower(unsigned short code) const override;
    int GetOrders(unsigned short code, unsigned char language, unsigned short orders[2]) const override;
    VqKeyTable GetKeyTable(unsigned char language) const override;
    int GetContraction(const unsigned short codes[VqMaxContraction], unsigned char language,
                       unsigned short orders[2]) const override;
    void MapToUnicode(const void* text, std::size_t n, void* units) const override;
    void MapFromUnicode(const void* units, std::size_t n, void* text) const override;

  private:
    bool IsCharacter(unsigned short code) const { return code == 0 || data_.units[code] != 0; }
    unsigned short CodeOfCase(unsigned short code, unsigned short partner) const;

    WideSetData data_;
};

// The set of that number, or null.
const VqCodeSet* FindWideCodeSet(unsigned char codeSet);

}  // namespace vq

#endif
