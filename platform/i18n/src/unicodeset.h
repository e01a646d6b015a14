// Unicode in 16-bit units. A surrogate unit is a character of its own.
#ifndef VQ_UNICODESET_H
#define VQ_UNICODESET_H

#include "codetables.h"

namespace vq {

class UnicodeCodeSet final : public VqCodeSet {
  public:
    unsigned char GetCollationClass(unsigned char language) const override;
    unsigned char GetCode() const override { return 253; }
    const char* GetName() const override { return "Unicode"; }
    unsigned short ToUnicode(unsigned short code) const override { return code; }
    unsigned short FromUnicode(unsigned short unit) const override { return unit; }
    bool HasUnicode(unsigned short) const override { return true; }
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
};

extern const UnicodeCodeSet unicodeCodeSet;

// A number that changes with any order of any set in any language.
std::uint32_t OrderVersion();

}  // namespace vq

#endif
