#include "diskform.h"

#include <algorithm>
#include <cstdint>

#include "error.h"
#include "layout.h"
#include "memfile.h"
#include "table.h"
#include "vqcodeset.h"

namespace {

constexpr std::size_t BytesPerLine = 16;

// An unsigned number of up to 4 bytes.
std::uint32_t ReadNumber(const Bytes& bytes, std::size_t at, std::size_t size, unsigned char format) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < size; ++i) {
        number = number << 8 | bytes[at + (format == VqFormat_BigEndian ? i : size - 1 - i)];
    }
    return number;
}

std::int32_t ReadSigned(const Bytes& bytes, std::size_t at, std::size_t size, unsigned char format) {
    const std::uint32_t sign = 1u << (8 * size - 1);
    return static_cast<std::int32_t>((ReadNumber(bytes, at, size, format) ^ sign) - sign);
}

// --- Strings: 16-bit length of what follows, code set, language, characters, 0x00, 0xFF

constexpr std::size_t LengthSize = 2;   // of the length field
constexpr std::size_t StringLeast = 4;  // of what follows: code set, language, trailer
constexpr std::size_t TrailerSize = 2;

std::size_t ReadLength(const Bytes& bytes, std::size_t at, unsigned char format) {
    return ReadNumber(bytes, at, LengthSize, format);
}

[[noreturn]] void FailShort(VqTypeId id, std::size_t at, std::size_t needed, std::size_t left) {
    throw CommandError("HEX: {} at offset {} needs {} bytes; {} are left", TypeName(id), at, needed, left);
}

std::size_t RequireStringLength(const Bytes& bytes, std::size_t at, unsigned char format) {
    const std::size_t left = bytes.size() - at;
    if (left < LengthSize) FailShort(VqTypeId_VqString, at, LengthSize, left);
    const std::size_t following = ReadLength(bytes, at, format);
    if (following + LengthSize > left) FailShort(VqTypeId_VqString, at, following + LengthSize, left);
    return following;
}

// An area is in the legacy layout when the last byte that its first length counts is zero.
bool IsLegacy(const Bytes& bytes, unsigned char format) {
    const std::size_t following = RequireStringLength(bytes, 0, format);
    return bytes[following + LengthSize - 1] == 0;
}

bool IsNullMark(unsigned char codeSet, unsigned char language) {
    return language == VqNullMark || (codeSet == VqNullMark && language == 0);
}

void CheckStringRecord(const Bytes& bytes, std::size_t at, std::size_t following) {
    if (following < StringLeast) {
        throw CommandError("HEX: the string at offset {} is too short: its length is {}, the least is {}", at,
                           following, StringLeast);
    }
    const std::size_t end = at + LengthSize + following;
    if (bytes[end - 2] != 0x00 || bytes[end - 1] != 0xFF) {
        throw CommandError("HEX: the string at offset {} ends in {:02x} {:02x} at offset {}; expected 00 ff", at,
                           bytes[end - 2], bytes[end - 1], end - 2);
    }
    const unsigned char codeSet = bytes[at + 2];
    const std::size_t textSize = following - StringLeast;
    if (!IsNullMark(codeSet, bytes[at + 3]) && !IsCodeSet(codeSet)) {
        throw CommandError("HEX: the string at offset {} has code set {} (at offset {}), which does not exist", at,
                           codeSet, at + 2);
    }
    const std::size_t charSize = codeSet < VqFirstWideCodeSet ? 1 : 2;
    if (textSize % charSize != 0) {
        throw CommandError("HEX: the string at offset {} has 2-byte characters in an odd number of bytes: {}", at,
                           textSize);
    }
    for (std::size_t i = 0; i < textSize; i += charSize) {
        if (bytes[at + 4 + i] == 0 && bytes[at + 4 + i + charSize - 1] == 0) {
            throw CommandError("HEX: the string at offset {} holds a zero character at offset {}", at, at + 4 + i);
        }
    }
}

std::string LengthText(std::size_t following) { return fmt::format("{} bytes follow", following); }

void AddStringFields(std::vector<Field>& fields, const Bytes& bytes, std::size_t at, std::size_t size,
                     const ValueArray& values, unsigned long index, const std::string& prefix) {
    const std::size_t textSize = size - LengthSize - StringLeast;
    fields.push_back({at, LengthSize, prefix + "length", LengthText(size - LengthSize)});
    fields.push_back({at + 2, 1, prefix + "code set", DescribeCodeSet(bytes[at + 2])});
    fields.push_back({at + 3, 1, prefix + "language",
                      values.IsNull(index) ? fmt::format("{} (null: {})", bytes[at + 3], values.Print(index))
                                           : DescribeLanguage(bytes[at + 3])});
    fields.push_back({at + 4, textSize, prefix + "text", values.Describe(index)});
    fields.push_back({at + 4 + textSize, TrailerSize, prefix + "trailer", ""});
}

std::string Prefix(unsigned long index, unsigned long count) { return count > 1 ? fmt::format("[{}] ", index) : ""; }

// --- Legacy strings: one 16-bit length of all that follows, then zero-terminated texts

DiskForm ReadLegacyStrings(const Bytes& bytes, unsigned char format) {
    const std::size_t following = ReadLength(bytes, 0, format);
    if (following + LengthSize != bytes.size()) {
        throw CommandError("HEX: the legacy strings end at offset {}, the bytes at offset {}", following + LengthSize,
                           bytes.size());
    }
    std::vector<std::size_t> ends;
    std::size_t start = LengthSize;
    for (std::size_t i = LengthSize; i < bytes.size(); ++i) {
        if (bytes[i] != 0) continue;
        if (i - start >= VqString::MaxSize) throw CommandError("HEX: the text at offset {} is too long", start);
        ends.push_back(i);
        start = i + 1;
    }
    const unsigned long count = ends.size();
    DiskForm form{std::make_unique<ValueArray>(VqTypeId_VqString, count), {}};
    form.fields.push_back({0, LengthSize, "legacy length", LengthText(following)});
    if (count == 0) return form;
    form.values->Load(bytes, format);
    start = LengthSize;
    for (unsigned long i = 0; i < count; start = ends[i++] + 1) {
        const std::string prefix = Prefix(i, count);
        form.fields.push_back({start, ends[i] - start, prefix + "text", form.values->Describe(i)});
        form.fields.push_back({ends[i], 1, prefix + "terminator", ""});
    }
    return form;
}

// --- 8-bit strings: flags, 16-bit length, characters

bool IsShortString(VqTypeId id) { return id == VqTypeId_VqIString || id == VqTypeId_VqCaseIString; }

void AddShortStringFields(std::vector<Field>& fields, const Bytes& bytes, std::size_t at, std::size_t size,
                          unsigned char format, const ValueArray& values, unsigned long index,
                          const std::string& prefix) {
    const std::size_t textAt = at + 1 + LengthSize;
    fields.push_back({at, 1, prefix + "flags", fmt::format("0x{:02x}", bytes[at])});
    fields.push_back({at + 1, LengthSize, prefix + "length", LengthText(ReadLength(bytes, at + 1, format))});
    fields.push_back({textAt, at + size - textAt, prefix + "text", values.Describe(index)});
}

// --- Blobs: one 32-bit count of all that follows, then for each a 32-bit length and its bytes

constexpr std::size_t BlobLengthSize = 4;
constexpr std::int32_t NullBlobLength = -1;

// The places where the blobs begin.
std::vector<std::size_t> RequireBlobs(const Bytes& bytes, unsigned char format) {
    if (bytes.size() < BlobLengthSize) FailShort(VqTypeId_VqBlob, 0, BlobLengthSize, bytes.size());
    const std::size_t total = ReadNumber(bytes, 0, BlobLengthSize, format);
    const std::size_t following = bytes.size() - BlobLengthSize;
    if (total != following) {
        throw CommandError("HEX: the blobs' total at offset 0 counts {} bytes behind it; there are {}", total,
                           following);
    }
    std::vector<std::size_t> starts;
    for (std::size_t at = BlobLengthSize; at < bytes.size();) {
        const std::size_t left = bytes.size() - at;
        if (left < BlobLengthSize) FailShort(VqTypeId_VqBlob, at, BlobLengthSize, left);
        const std::int32_t length = ReadSigned(bytes, at, BlobLengthSize, format);
        if (length < NullBlobLength) {
            throw CommandError("HEX: the blob at offset {} has the length {}; expected -1 for null, 0 or more", at,
                               length);
        }
        const std::size_t size = BlobLengthSize + static_cast<std::size_t>(std::max(length, 0));
        if (size > left) FailShort(VqTypeId_VqBlob, at, size, left);
        starts.push_back(at);
        at += size;
    }
    return starts;
}

DiskForm ReadBlobs(const Bytes& bytes, unsigned char format) {
    const std::vector<std::size_t> starts = RequireBlobs(bytes, format);
    const auto count = static_cast<unsigned long>(starts.size());
    DiskForm form{std::make_unique<ValueArray>(VqTypeId_VqBlob, count), {}};
    form.fields.push_back({0, BlobLengthSize, "total", LengthText(bytes.size() - BlobLengthSize)});
    if (count == 0) return form;
    form.values->Load(bytes, format);
    for (unsigned long i = 0; i < count; ++i) {
        const std::string prefix = Prefix(i, count);
        const std::size_t at = starts[i];
        const std::size_t end = i + 1 < count ? starts[i + 1] : bytes.size();
        const bool isNull = form.values->IsNull(i);
        form.fields.push_back(
            {at, BlobLengthSize, prefix + "length",
             isNull ? fmt::format("{} (null: {})", NullBlobLength, form.values->Print(i))
                    : fmt::format("{} byte{}", end - at - BlobLengthSize, end - at - BlobLengthSize == 1 ? "" : "s")});
        if (!isNull) form.fields.push_back({at + BlobLengthSize, end - at - BlobLengthSize, prefix + "bytes", ""});
    }
    return form;
}

// --- All types

// Bytes of the value at `at`, all of which are there.
std::size_t RequireValue(VqTypeId id, const Bytes& bytes, std::size_t at, unsigned char format) {
    if (id == VqTypeId_VqString) CheckStringRecord(bytes, at, RequireStringLength(bytes, at, format));
    MemFile file(bytes.data() + at, static_cast<unsigned long>(bytes.size() - at));
    const std::size_t size = Manager().DiskLenGetFromMemFile(id, &file, format, 1);
    if (size == 0) throw CommandError("TYPE: {} has no disk form", TypeName(id));
    if (size > file.Size()) FailShort(id, at, size, file.Size());
    return size;
}

constexpr std::string_view WholeValue = "value", NullIndicator = "null";

std::string PartText(const Part& part, const Bytes& bytes, std::size_t at, unsigned char format) {
    switch (part.kind) {
        case PartKind::Signed:
            return fmt::to_string(ReadSigned(bytes, at, part.size, format));
        case PartKind::Unsigned:
            return fmt::to_string(ReadNumber(bytes, at, part.size, format));
        case PartKind::HighFirst:
            return fmt::to_string(ReadNumber(bytes, at, part.size, VqFormat_BigEndian));
        default:
            return "";
    }
}

// A value of several parts stands whole in front of them, without bytes of its own.
void AddFields(std::vector<Field>& fields, const Bytes& bytes, std::size_t at, std::size_t size,
               const ValueArray& values, unsigned long index, unsigned char format) {
    const VqTypeId id = values.GetType();
    const std::string prefix = Prefix(index, values.GetCount());
    if (id == VqTypeId_VqString) return AddStringFields(fields, bytes, at, size, values, index, prefix);
    if (IsShortString(id)) return AddShortStringFields(fields, bytes, at, size, format, values, index, prefix);
    const std::vector<Part> parts = DiskParts(id);
    const bool isWhole =
        std::any_of(parts.begin(), parts.end(), [](const Part& part) { return part.name == WholeValue; });
    if (!isWhole) fields.push_back({at, 0, prefix + "value", values.Describe(index)});
    for (const Part& part : parts) {
        std::string text = PartText(part, bytes, at + part.offset, format);
        if (part.name == WholeValue) text = values.Describe(index);
        if (part.name == NullIndicator) text += values.IsNull(index) ? " (yes)" : " (no)";
        fields.push_back({at + part.offset, part.size, prefix + part.name, text});
    }
}

}  // namespace

DiskForm ReadDiskForm(VqTypeId id, const Bytes& bytes, unsigned char format) {
    if (bytes.empty()) throw CommandError("HEX: no bytes");
    if (id == VqTypeId_VqString && IsLegacy(bytes, format)) return ReadLegacyStrings(bytes, format);
    if (id == VqTypeId_VqBlob) return ReadBlobs(bytes, format);
    std::vector<std::size_t> starts;
    for (std::size_t at = 0; at < bytes.size(); at += RequireValue(id, bytes, at, format)) starts.push_back(at);

    const auto count = static_cast<unsigned long>(starts.size());
    DiskForm form{std::make_unique<ValueArray>(id, count), {}};
    form.values->Load(bytes, format);
    for (unsigned long i = 0; i < count; ++i) {
        const std::size_t end = i + 1 < count ? starts[i + 1] : bytes.size();
        AddFields(form.fields, bytes, starts[i], end - starts[i], *form.values, i, format);
    }
    return form;
}

std::string FormatFields(const Bytes& bytes, const std::vector<Field>& fields) {
    Table table{{"offset"}, {"bytes"}, {"field"}, {"value"}};
    for (const Field& field : fields) {
        std::size_t done = 0;
        do {
            const std::size_t length = std::min(BytesPerLine, field.length - done);
            const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(field.offset + done);
            table.AddRow({fmt::format("0x{:04x}", field.offset + done),
                          FormatHex(Bytes(first, first + static_cast<std::ptrdiff_t>(length))), done ? "" : field.name,
                          done ? "" : field.value});
            done += length;
        } while (done < field.length);
    }
    return table.Format();
}

std::string FormatHex(const Bytes& bytes) { return fmt::format("{:02x}", fmt::join(bytes, " ")); }

Bytes ParseHex(const std::string& text) {
    constexpr std::string_view Digits = "0123456789abcdef", Blanks = " \t\r\n";
    Bytes bytes;
    int high = -1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const std::size_t digit = Digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c);
        if (digit == Digits.npos) {
            if (high < 0 && Blanks.find(c) != Blanks.npos) continue;
            throw CommandError("HEX: expected pairs of hexadecimal digits; position {} is none", i);
        }
        if (high < 0) {
            high = static_cast<int>(digit);
        } else {
            bytes.push_back(static_cast<unsigned char>(high << 4 | static_cast<int>(digit)));
            high = -1;
        }
    }
    if (high >= 0) throw CommandError("HEX: an odd number of hexadecimal digits: the last byte is cut");
    return bytes;
}

unsigned char ByteOrderOf(const std::string& name) {
    return name == "big" ? VqFormat_BigEndian : VqFormat_LittleEndian;
}

std::string FormatSummary(const DiskForm& form, const Bytes& bytes, const std::string& order) {
    const unsigned long count = form.values->GetCount();
    return fmt::format("{} {} of {}, {} byte{}, {}-endian\n", count, count == 1 ? "value" : "values",
                       TypeName(form.values->GetType()), bytes.size(), bytes.size() == 1 ? "" : "s", order);
}
