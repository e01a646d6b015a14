#include "diskform.h"

#include <algorithm>

#include "error.h"
#include "memfile.h"
#include "table.h"
#include "vqcodeset.h"

namespace {

constexpr std::size_t BytesPerLine = 16;

// --- Strings: 16-bit length of what follows, code set, language, characters, 0x00, 0xFF

constexpr std::size_t LengthSize = 2;   // of the length field
constexpr std::size_t StringLeast = 4;  // of what follows: code set, language, trailer
constexpr std::size_t TrailerSize = 2;

std::size_t ReadLength(const Bytes& bytes, std::size_t at, unsigned char format) {
    const unsigned first = bytes[at], second = bytes[at + 1];
    return format == VqFormat_BigEndian ? first << 8 | second : second << 8 | first;
}

[[noreturn]] void FailShort(VqTypeId id, std::size_t at, std::size_t needed, std::size_t left) {
    throw CommandError("HEX: a {} at offset {} needs {} bytes; {} are left", TypeName(id), at, needed, left);
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

std::string StringText(const ValueArray& values, unsigned long index) {
    return values.IsNull(index) ? values.Print(index) : Quoted(values.Print(index));
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
    fields.push_back({at + 4, textSize, prefix + "text", StringText(values, index)});
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
        form.fields.push_back({start, ends[i] - start, prefix + "text", StringText(*form.values, i)});
        form.fields.push_back({ends[i], 1, prefix + "terminator", ""});
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

// The row of a nullable scalar: an indicator byte stands before the value.
bool IsNullableScalar(VqTypeId id) { return id >= VqTypeId_VqNull_char && id <= VqTypeId_VqNull_VqInt64; }

std::string ValueText(const ValueArray& values, unsigned long index) {
    const std::string text = values.PrintExact(index);
    const bool isCharacter =
        std::string(Manager().ExchangeFormat(values.GetType(), nullptr)) == "%c" && text.size() == 1;
    return isCharacter ? Quoted(text) : text;
}

void AddFields(std::vector<Field>& fields, const Bytes& bytes, std::size_t at, std::size_t size,
               const ValueArray& values, unsigned long index) {
    const VqTypeId id = values.GetType();
    const std::string prefix = Prefix(index, values.GetCount());
    if (id == VqTypeId_VqString) return AddStringFields(fields, bytes, at, size, values, index, prefix);
    if (IsNullableScalar(id)) {
        fields.push_back(
            {at, 1, prefix + "null", fmt::format("{} ({})", bytes[at], values.IsNull(index) ? "yes" : "no")});
        ++at, --size;
    }
    fields.push_back({at, size, prefix + "value", ValueText(values, index)});
}

}  // namespace

DiskForm ReadDiskForm(VqTypeId id, const Bytes& bytes, unsigned char format) {
    if (bytes.empty()) throw CommandError("HEX: no bytes");
    if (id == VqTypeId_VqString && IsLegacy(bytes, format)) return ReadLegacyStrings(bytes, format);
    std::vector<std::size_t> starts;
    for (std::size_t at = 0; at < bytes.size(); at += RequireValue(id, bytes, at, format)) starts.push_back(at);

    const auto count = static_cast<unsigned long>(starts.size());
    DiskForm form{std::make_unique<ValueArray>(id, count), {}};
    form.values->Load(bytes, format);
    for (unsigned long i = 0; i < count; ++i) {
        const std::size_t end = i + 1 < count ? starts[i + 1] : bytes.size();
        AddFields(form.fields, bytes, starts[i], end - starts[i], *form.values, i);
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
