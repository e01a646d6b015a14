// Disk forms of strings: the current records, and the legacy layout of native 1-byte texts.

#include <algorithm>
#include <cstring>

#include "textunit.h"
#include "vqbase.h"
#include "vqstring.h"

using vq::CharSizeOf;

namespace {

constexpr unsigned long HeaderSize = 4;   // length, code set, language
constexpr unsigned long TrailerSize = 2;  // 0x00, 0xFF
constexpr unsigned long LengthSize = 2;
// The length field counts code set, language, characters and trailer.
constexpr unsigned long MaxCharacterBytes = 65535 - (HeaderSize - LengthSize) - TrailerSize;
// What a memory file answers for a record that would run past its end.
constexpr unsigned long PastEnd = 65535;

unsigned short LoadLength(const void* at, unsigned char format) {
    std::int16_t length;
    ShortStore(&length, at, format & VqFormat_OrderMask, 1);
    return static_cast<unsigned short>(length);
}

void StoreLength(void* at, unsigned long length, unsigned char format) {
    const std::uint16_t value = static_cast<std::uint16_t>(length);
    ShortStore(at, &value, format & VqFormat_OrderMask, 1);
}

// Bytes of a string's characters on disk, without any terminator. What the length field cannot count is left out.
unsigned long CharacterBytes(const VqString& string) {
    const unsigned long size = string.GetSize(), charSize = CharSizeOf(string.GetCodeSet());
    const unsigned long bytes = size == 0 ? 0 : size - charSize;
    return std::min(bytes, MaxCharacterBytes - MaxCharacterBytes % charSize);
}

// The code set that a size is asked for under the format's code-set bits.
unsigned char EffectiveCodeSet(unsigned char codeSet, unsigned char format) {
    if (codeSet == VqNullMark) return codeSet;
    if (codeSet != 0) return format & VqFormat_ToNative ? 0 : codeSet;
    return format & VqFormat_FromNative ? VqLanguageContext::GetNativeCodeSet() : codeSet;
}

// Disk bytes of one record with that many bytes of characters, under the format's code-set bits.
unsigned long RecordSize(unsigned long characterBytes, unsigned char codeSet, unsigned char format) {
    unsigned long data = characterBytes + TrailerSize;
    const unsigned char effective = EffectiveCodeSet(codeSet, format);
    if ((format & VqFormat_Widest) && effective != 0 && effective != VqNullMark) {
        data *= CharSizeOf(effective) == 1 ? 4 : 2;
    }
    return data + HeaderSize;
}

// One record as it stands on disk. A damaged length may be too short for the header; what it leaves out reads as 0.
struct Record {
    const unsigned char* start;
    unsigned long length;  // what the length field says: bytes after it

    Record(const void* at, unsigned char format)
        : start(static_cast<const unsigned char*>(at)), length(LoadLength(at, format)) {}

    unsigned long Size() const { return LengthSize + length; }
    bool IsLegacy() const { return start[length + 1] == 0; }
    unsigned char CodeSet() const { return length < 1 ? static_cast<unsigned char>(0) : start[2]; }
    unsigned char Language() const { return length < 2 ? static_cast<unsigned char>(0) : start[3]; }
    unsigned long CharacterBytes() const { return length < HeaderSize ? 0 : length - HeaderSize; }
    // The size under the format's code-set bits.
    unsigned long SizeFor(unsigned char format) const {
        return format & VqFormat_Widest ? RecordSize(CharacterBytes(), CodeSet(), format) : Size();
    }
};

// The size of `count` records; `recordAt` gives the record at an offset, or null where it would run past the end.
template <class RecordAt>
unsigned long SumRecords(RecordAt recordAt, unsigned char format, unsigned long count) {
    unsigned long sum = 0, offset = 0;
    for (unsigned long i = 0; i < count; ++i) {
        const void* const at = recordAt(offset);
        if (at == nullptr) return sum + (count - i) * PastEnd;
        const Record record(at, format);
        if (i == 0 && !(format & VqFormat_Widest) && record.IsLegacy()) return record.Size();
        sum += record.SizeFor(format);
        offset += record.Size();
    }
    return sum;
}

// Walks a memory file's records from its position on, and puts the position back.
class MemFileRecords {
  public:
    MemFileRecords(MemFile& file, unsigned char format) : file_(file), format_(format), start_(file.Position()) {}
    ~MemFileRecords() { file_.Seek(start_, 0); }

    const void* operator()(unsigned long offset) const {
        const unsigned char* const length = file_.Seek(start_ + offset, LengthSize);
        return length == nullptr ? nullptr : file_.Seek(start_ + offset, Record(length, format_).Size());
    }

  private:
    MemFile& file_;
    unsigned char format_;
    unsigned long start_;
};

// --- The legacy layout

// The bytes of each text's characters in a legacy area, all of whose texts and zero characters share one 16-bit count.
class LegacyBudget {
  public:
    explicit LegacyBudget(unsigned long count) : texts_(count) {}

    // How many of the next text's `wanted` bytes fit beside the zero characters that are still to come.
    unsigned long Take(unsigned long wanted) {
        const unsigned long room = left_ > texts_ ? left_ - texts_ : 0;
        const unsigned long taken = std::min(wanted, room);
        left_ -= taken + (left_ != 0);
        --texts_;
        return taken;
    }
    bool HasRoom() const { return left_ != 0; }
    unsigned long Used() const { return 65535 - left_; }

  private:
    unsigned long left_ = 65535;
    unsigned long texts_;
};

unsigned long LoadLegacy(VqString* strings, const void* src, unsigned char format, unsigned long count) {
    const unsigned long total = LoadLength(src, format);
    const char* text = static_cast<const char*>(src) + LengthSize;
    const char* const end = text + total;
    for (unsigned long i = 0; i < count; ++i) {
        const unsigned long room = static_cast<unsigned long>(end - text);
        const void* const zero = std::memchr(text, 0, room);
        const unsigned long length = zero ? static_cast<unsigned long>(static_cast<const char*>(zero) - text) : room;
        strings[i] = VqString(text, static_cast<unsigned short>(std::min(length, 65534UL)));
        text += std::min(length + 1, room);
    }
    return total + LengthSize;
}

}  // namespace

unsigned long StringStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    const VqString* const strings = static_cast<const VqString*>(src);
    unsigned char* out = static_cast<unsigned char*>(dst);
    for (unsigned long i = 0; i < count; ++i) {
        const VqString& string = strings[i];
        const unsigned long bytes = CharacterBytes(string);
        StoreLength(out, bytes + HeaderSize, format);
        out[2] = string.GetCodeSet();
        out[3] = string.GetLanguage();
        out += HeaderSize;
        if (CharSizeOf(string.GetCodeSet()) == 2) {
            ShortStore(out, string.StrGet(), format & VqFormat_OrderMask, bytes / 2);
        } else {
            std::memcpy(out, string.StrGet(), bytes);
        }
        out += bytes;
        *out++ = 0x00;
        *out++ = 0xFF;
    }
    return static_cast<unsigned long>(out - static_cast<unsigned char*>(dst));
}

unsigned long StringLoad(void* dst, const void* src, unsigned char format, unsigned long count) {
    VqString* const strings = static_cast<VqString*>(dst);
    if (count == 0) return 0;
    if (Record(src, format).IsLegacy()) return LoadLegacy(strings, src, format, count);
    unsigned long offset = 0;
    for (unsigned long i = 0; i < count; ++i) {
        const Record record(static_cast<const unsigned char*>(src) + offset, format);
        const unsigned long n = record.CharacterBytes() / CharSizeOf(record.CodeSet());
        VqString string(record.CodeSet(), record.Language());
        string.AssignChars(record.start + HeaderSize, record.CodeSet(), static_cast<unsigned short>(n),
                           format & VqFormat_OrderMask);
        strings[i].Destruct(string);
        offset += record.Size();
    }
    return offset;
}

unsigned long StringNullSizeGet(unsigned long count) { return (HeaderSize + TrailerSize) * count; }

unsigned long StringSizeGet(const void* data, unsigned char dataFormat, unsigned char format, unsigned long count) {
    if (!(dataFormat & VqFormat_Memory)) {
        const auto recordAt = [data](unsigned long offset) { return static_cast<const unsigned char*>(data) + offset; };
        return SumRecords(recordAt, format, count);
    }
    const VqString* const strings = static_cast<const VqString*>(data);
    unsigned long sum = 0;
    for (unsigned long i = 0; i < count; ++i) {
        sum += RecordSize(CharacterBytes(strings[i]), strings[i].GetCodeSet(), format);
    }
    return sum;
}

unsigned long StringSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    return SumRecords(MemFileRecords(*file, format), format, count);
}

bool StringsFitMemFile(MemFile* file, unsigned char format, unsigned long count) {
    const MemFileRecords records(*file, format);
    unsigned long offset = 0;
    for (unsigned long i = 0; i < count; ++i) {
        const void* const at = records(offset);
        if (at == nullptr) return false;
        const Record record(at, format);
        if (i == 0 && record.IsLegacy()) return true;
        offset += record.Size();
    }
    return true;
}

unsigned long LegacyStringStore(void* dst, const void* src, unsigned char format, unsigned long count) {
    if (count == 0) return 0;
    const VqString* const strings = static_cast<const VqString*>(src);
    char* out = static_cast<char*>(dst) + LengthSize;
    const VqCodeSet& native = vq::CodeSetOf(0);
    LegacyBudget budget(count);
    for (unsigned long i = 0; i < count && budget.HasRoom(); ++i) {
        const unsigned charSize = CharSizeOf(strings[i].GetCodeSet());
        const VqCodeSet& set = vq::CodeSetOf(strings[i].GetCodeSet());
        const unsigned long n = budget.Take(strings[i].Len());
        for (unsigned long k = 0; k < n; ++k) {
            const unsigned short code = vq::LoadChar(strings[i].StrGet() + k * charSize, charSize);
            vq::StoreChar(out++, 1, vq::MapCode(code, set, native));
        }
        *out++ = 0;
    }
    StoreLength(dst, budget.Used(), format);
    return budget.Used() + LengthSize;
}

unsigned long LegacyStringSizeGet(const void* data, unsigned char dataFormat, unsigned char format,
                                  unsigned long count) {
    if (count == 0) return 0;
    if (!(dataFormat & VqFormat_Memory)) return StringSizeGet(data, dataFormat, format & VqFormat_OrderMask, count);
    const VqString* const strings = static_cast<const VqString*>(data);
    LegacyBudget budget(count);
    for (unsigned long i = 0; i < count && budget.HasRoom(); ++i) budget.Take(strings[i].Len());
    return budget.Used() + LengthSize;
}

unsigned long LegacyStringSizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count) {
    return StringSizeGetFromMemFile(file, format & VqFormat_OrderMask, count);
}
