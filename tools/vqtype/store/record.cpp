#include "record.h"

#include <fmt/format.h>
#include <libdeflate.h>

#include <algorithm>
#include <cstring>

#include "memfile.h"
#include "objid.h"
#include "vqcodeset.h"

namespace store {

namespace {

// --- Forms whose sizes are not all that must be right before they are loaded

unsigned long LengthOf(ByteView form, std::size_t size, unsigned char format) {
    unsigned long length = 0;
    for (std::size_t i = 0; i < size; ++i) length = length << 8 | form[format == VqFormat_BigEndian ? i : size - 1 - i];
    return length;
}

// A string: length, code set, language, characters, 0x00, 0xFF. Other ends are those of the legacy layout.
const char* FaultOfString(ByteView form, unsigned char format) {
    if (form.size() < 6 || LengthOf(form, 2, format) + 2 != form.size()) return "its string has another length";
    if (form[form.size() - 2] != 0x00 || form.back() != 0xFF) return "its string has no end";
    if (form[2] >= VqFirstWideCodeSet && form.size() % 2 != 0 && form[2] != VqNullMark) {
        return "its string has half a character";
    }
    return nullptr;
}

// Blobs: the bytes that follow, and for one blob its length and bytes.
const char* FaultOfBlob(ByteView form, unsigned char format) {
    if (form.size() < 8) return "its blob has no length";
    const unsigned long length = LengthOf(form.subspan(4), 4, format), following = form.size() - 8;
    constexpr unsigned long Null = 0xFFFFFFFF;
    return length == following || (length == Null && following == 0) ? nullptr : "its blob has another length";
}

const char* FaultOf(VqTypeId type, ByteView form, unsigned char format) {
    if (type == VqTypeId_VqString) return FaultOfString(form, format);
    if (type == VqTypeId_VqBlob) return FaultOfBlob(form, format);
    return nullptr;
}

constexpr std::size_t ChecksumSize = 4;

void AppendChecksum(Bytes& bytes, std::uint32_t checksum) {
    for (unsigned shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<unsigned char>(checksum >> shift));
}

}  // namespace

// --- Identifiers

Id IdOf(std::uint64_t number, unsigned char format) {
    VqObjId object;
    object.low = static_cast<std::uint32_t>(number);
    object.high = static_cast<std::uint16_t>(number >> 32);
    Id id;
    VqObjId::Store(id.data(), &object, format, 1);
    return id;
}

std::uint64_t NumberOf(ByteView id, unsigned char format) {
    VqObjId object;
    VqObjId::Load(&object, id.data(), format, 1);
    return std::uint64_t{object.high} << 32 | object.low;
}

// --- Checksums

// Nothing at a null pointer would begin the checksum anew.
std::uint32_t Checksum(ByteView first, ByteView second) {
    const std::uint32_t checksum = first.empty() ? 0 : libdeflate_crc32(0, first.data(), first.size());
    return second.empty() ? checksum : libdeflate_crc32(checksum, second.data(), second.size());
}

void SealBytes(Bytes& bytes, ByteView key) { AppendChecksum(bytes, Checksum(key, bytes)); }

bool IsSealed(ByteView bytes, ByteView key) {
    if (bytes.size() < ChecksumSize) return false;
    const ByteView content = bytes.first(bytes.size() - ChecksumSize);
    return LengthOf(bytes.last(ChecksumSize), ChecksumSize, VqFormat_LittleEndian) == Checksum(key, content);
}

ByteView Unsealed(ByteView bytes) { return bytes.first(bytes.size() - ChecksumSize); }

// --- Records

RecordForm::RecordForm(const Schema& schema, unsigned char format) : schema_(schema), format_(format) {
    for (const Column& column : schema.Columns()) {
        const bool isFixed = Manager().IsFixed(column.type) != 0;
        sizes_.push_back(isFixed ? Manager().DiskLenGet(column.type, nullptr, format, 1, VqFormat_Memory) : 0);
    }
}

std::string RecordForm::Split(ByteView record, std::vector<ByteView>& forms) const {
    forms.resize(sizes_.size());
    if (record.size() < ChecksumSize) return "the record is cut off";
    ByteView rest = Unsealed(record);
    for (std::size_t i = 0; i < sizes_.size(); ++i) {
        std::size_t size = sizes_[i];
        if (size == 0) size = SizeOf(i, rest);
        if (size > rest.size()) return fmt::format("column {}: the record is cut off", schema_[i].name);
        forms[i] = rest.first(size);
        rest = rest.subspan(size);
        const char* const fault = sizes_[i] == 0 ? FaultOf(schema_[i].type, forms[i], format_) : nullptr;
        if (fault) return fmt::format("column {}: {}", schema_[i].name, fault);
    }
    return rest.empty() ? "" : fmt::format("{} bytes follow the last column", rest.size());
}

std::size_t RecordForm::SizeOf(std::size_t column, ByteView bytes) const {
    MemFile file(bytes.data(), bytes.size());
    return Manager().DiskLenGetFromMemFile(schema_[column].type, &file, format_, 1);
}

std::string RecordForm::Check(ByteView id, ByteView record, std::vector<ByteView>& forms) const {
    const bool isSealed = IsSealed(record, id);
    const std::string fault = Split(record, forms);
    if (!fault.empty()) return fault;
    return isSealed ? "" : "the bytes are not those that were written: the checksum is another";
}

}  // namespace store
