/// \file
/// Records: the columns' disk forms one after the other, and four bytes that tell whether they are still what was
/// written.
#ifndef VQTYPE_STORE_RECORD_H
#define VQTYPE_STORE_RECORD_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "bytes.h"
#include "schema.h"

namespace store {

/// Bytes of an object identifier in stored form.
constexpr std::size_t IdSize = 10;
using Id = std::array<unsigned char, IdSize>;

/// Numbers of records are from 1 to this.
constexpr std::uint64_t MostRecords = (std::uint64_t{1} << 48) - 1;

/// The identifier of that number (from 1 to MostRecords) in stored form, and the number of one.
Id IdOf(std::uint64_t number, unsigned char format);
std::uint64_t NumberOf(ByteView id, unsigned char format);

/// CRC-32 (ISO 3309) of the two parts one after the other, so that every change of a single bit, and of up to 32
/// neighbours, is found.
std::uint32_t Checksum(ByteView first, ByteView second);

/// Appends the checksum of the key and the bytes, low byte first.
void SealBytes(Bytes& bytes, ByteView key);
/// True where the bytes end with the checksum of the key and of what stands in front of it.
bool IsSealed(ByteView bytes, ByteView key);
/// Sealed bytes without the checksum; there are at least its four.
ByteView Unsealed(ByteView bytes);

/// Records of a schema in one byte order. They end with the checksum of the identifier and the forms (SealBytes).
class RecordForm {
  public:
    /// The schema outlives it.
    RecordForm(const Schema& schema, unsigned char format);

    /// Cuts a record into its columns' disk forms, `forms[i]` of column i, without a look at the checksum. Nothing is
    /// loaded before every length is known to lie within the bytes. Returns an empty text, or what is wrong ("column
    /// name: …").
    std::string Split(ByteView record, std::vector<ByteView>& forms) const;
    /// The same, and the checksum is compared.
    std::string Check(ByteView id, ByteView record, std::vector<ByteView>& forms) const;

  private:
    std::size_t SizeOf(std::size_t column, ByteView bytes) const;

    const Schema& schema_;
    unsigned char format_;
    std::vector<std::size_t> sizes_;  // of each column's form; 0 where that depends on the value
};

}  // namespace store

#endif
