// Code sets whose codes are bytes.
#ifndef VQ_BYTESET_H
#define VQ_BYTESET_H

#include "codetables.h"

namespace vq {

constexpr std::int32_t MostPairs = 8;

// The keys of one set in one collation class, and the orders of the characters that sort as two.
struct ByteKeys {
    std::int32_t keys[256];
    std::uint16_t pairs[MostPairs][2];
};

class ByteCodeSet final : public VqCodeSet {
  public:
    // `keys`: one table for each place of a collation class.
    constexpr ByteCodeSet(const ByteSetData& data, const ByteKeys* const* keys) : data_(data), keys_(keys) {}

    unsigned char GetCollationClass(unsigned char language) const override;
    unsigned char GetCode() const override { return data_.code; }
    const char* GetName() const override { return data_.name; }
    unsigned short ToUnicode(unsigned short code) const override;
    unsigned short FromUnicode(unsigned short unit) const override;
    bool HasUnicode(unsigned short unit) const override;
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
    std::uint8_t CodeOf(unsigned short unit) const;

    ByteSetData data_;
    const ByteKeys* const* keys_;
};

// The set of that number, or null.
const VqCodeSet* FindByteCodeSet(unsigned char codeSet);

}  // namespace vq

#endif
