#include "layout.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>

#include "blob.h"
#include "datetime.h"
#include "operations.h"
#include "ref.h"
#include "seal.h"
#include "stddate.h"
#include "values.h"
#include "vqnull.h"

namespace {

using enum PartKind;

#define PART(Class, name, member) \
    Part { name, offsetof(Class, member), sizeof(static_cast<Class*>(nullptr)->member) }

constexpr std::size_t PointerSize = sizeof(void*);

// --- In memory

constexpr Part stringMemory[] = {{"text at", 0, PointerSize},
                                 {"size", PointerSize, 2},
                                 {"code set", PointerSize + 2, 1},
                                 {"language", PointerSize + 3, 1}};
constexpr Part shortStringMemory[] = {{"text at", 0, PointerSize}, {"flags", PointerSize, 1}};
constexpr Part blobMemory[] = {{"record at", 0, PointerSize}};
constexpr Part dateMemory[] = {PART(VqDate, "year", year), PART(VqDate, "month", month), PART(VqDate, "day", day)};
constexpr Part timeMemory[] = {PART(VqTime, "hour", hour), PART(VqTime, "minute", minute),
                               PART(VqTime, "second", second)};
constexpr Part dateTimeMemory[] = {PART(VqDateTime, "year", date.year),     PART(VqDateTime, "month", date.month),
                                   PART(VqDateTime, "day", date.day),       PART(VqDateTime, "hour", time.hour),
                                   PART(VqDateTime, "minute", time.minute), PART(VqDateTime, "second", time.second)};
constexpr Part standardDateMemory[] = {PART(d_Date, "year", year), PART(d_Date, "month", month),
                                       PART(d_Date, "day", day)};
constexpr Part standardTimeMemory[] = {PART(d_Time, "zone hours", tz_hour), PART(d_Time, "zone minutes", tz_minute),
                                       PART(d_Time, "hour", hour),          PART(d_Time, "minute", minute),
                                       PART(d_Time, "second", second),      PART(d_Time, "hundredths", hundredths)};
constexpr Part timestampMemory[] = {PART(d_Timestamp, "year", date.year),
                                    PART(d_Timestamp, "month", date.month),
                                    PART(d_Timestamp, "day", date.day),
                                    PART(d_Timestamp, "zone hours", time.tz_hour),
                                    PART(d_Timestamp, "zone minutes", time.tz_minute),
                                    PART(d_Timestamp, "hour", time.hour),
                                    PART(d_Timestamp, "minute", time.minute),
                                    PART(d_Timestamp, "second", time.second),
                                    PART(d_Timestamp, "hundredths", time.hundredths)};
constexpr Part intervalMemory[] = {PART(d_Interval, "seconds", seconds)};
constexpr Part int64Memory[] = {PART(VqInt64, "low half", low), PART(VqInt64, "high half", high)};
constexpr Part sealMemory[] = {PART(VqSeal, "high", high), PART(VqSeal, "middle", middle), PART(VqSeal, "low", low)};
constexpr Part objectMemory[] = {PART(VqObjId, "block", block), PART(VqObjId, "low", low), PART(VqObjId, "high", high)};
constexpr Part classMemory[] = {PART(VqClassId, "class", classNumber), PART(VqClassId, "version", version)};
constexpr Part refMemory[] = {PART(VqRef, "block", id.block),
                              PART(VqRef, "low", id.low),
                              PART(VqRef, "high", id.high),
                              PART(VqRef, "database", database),
                              PART(VqRef, "class", classId.classNumber),
                              PART(VqRef, "version", classId.version)};
constexpr Part null1Memory[] = {PART(VqNull_char, "value", value), PART(VqNull_char, "null", isNull)};
constexpr Part null2Memory[] = {PART(VqNull_short, "value", value), PART(VqNull_short, "null", isNull)};
constexpr Part null4Memory[] = {PART(VqNull_long, "value", value), PART(VqNull_long, "null", isNull)};
constexpr Part null8Memory[] = {PART(VqNull_double, "value", value), PART(VqNull_double, "null", isNull)};
constexpr Part nullInt64Memory[] = {PART(VqNull_VqInt64, "low half", value.low),
                                    PART(VqNull_VqInt64, "high half", value.high),
                                    PART(VqNull_VqInt64, "null", isNull)};

#undef PART

// --- On disk, one behind the other, so that offsets follow from sizes

#define DATE \
    {"year", 0, 2, Signed}, {"month", 0, 1, Signed}, { "day", 0, 1, Signed }
#define CLOCK \
    {"hour", 0, 1, Signed}, {"minute", 0, 1, Signed}, { "second", 0, 1, Signed }
#define ZONE \
    {"zone hours", 0, 1, Signed}, { "zone minutes", 0, 1, Signed }
#define HALVES \
    {"low half", 0, 4, Unsigned}, { "high half", 0, 4, Signed }
#define OBJECT \
    {"block", 0, 4, Unsigned}, {"low", 0, 4, Unsigned}, { "high", 0, 2, Unsigned }
#define INDICATOR \
    { "null", 0, 1, Unsigned }

constexpr Part stringDisk[] = {{"length N", 0, 2, Unsigned},
                               {"code set", 0, 1, Unsigned},
                               {"language", 0, 1, Unsigned},
                               {"text: N - 4 bytes", 0, 0},
                               {"00 ff", 0, 2, Unknown}};
constexpr Part shortStringDisk[] = {{"flags", 0, 1, Unsigned}, {"length N", 0, 2, Unsigned}, {"text: N bytes", 0, 0}};
constexpr Part blobDisk[] = {{"total", 0, 4, Signed}, {"length N", 0, 4, Signed}, {"N bytes", 0, 0}};
constexpr Part dateDisk[] = {DATE};
constexpr Part timeDisk[] = {CLOCK};
constexpr Part dateTimeDisk[] = {DATE, CLOCK};
constexpr Part standardTimeDisk[] = {ZONE, CLOCK, {"hundredths", 0, 1, Signed}};
constexpr Part timestampDisk[] = {DATE, ZONE, CLOCK, {"hundredths", 0, 1, Signed}};
constexpr Part int64Disk[] = {HALVES};
constexpr Part sealDisk[] = {{"high", 0, 2, HighFirst}, {"middle", 0, 2, HighFirst}, {"low", 0, 2, HighFirst}};
constexpr Part objectDisk[] = {OBJECT};
constexpr Part classDisk[] = {{"class", 0, 2, Unsigned}, {"version", 0, 2, Unsigned}};
constexpr Part refDisk[] = {OBJECT, {"database", 0, 2, Unsigned}, {"class", 0, 2, Unsigned}};
constexpr Part null1Disk[] = {INDICATOR, {"value", 0, 1}};
constexpr Part null2Disk[] = {INDICATOR, {"value", 0, 2}};
constexpr Part null4Disk[] = {INDICATOR, {"value", 0, 4}};
constexpr Part null8Disk[] = {INDICATOR, {"value", 0, 8}};
constexpr Part nullInt64Disk[] = {INDICATOR, HALVES};

#undef DATE
#undef CLOCK
#undef ZONE
#undef HALVES
#undef OBJECT
#undef INDICATOR

// --- Rows: every row that is not here has one part, the value

struct RowParts {
    VqTypeId id;
    std::span<const Part> memory;
    std::span<const Part> disk;
};

constexpr RowParts rows[] = {
    {VqTypeId_VqString, stringMemory, stringDisk},
    {VqTypeId_VqDate, dateMemory, dateDisk},
    {VqTypeId_VqTime, timeMemory, timeDisk},
    {VqTypeId_VqObjId, objectMemory, objectDisk},
    {VqTypeId_VqClassId, classMemory, classDisk},
    {VqTypeId_VqRef, refMemory, refDisk},
    {VqTypeId_VqBlob, blobMemory, blobDisk},
    {VqTypeId_VqDateTime, dateTimeMemory, dateTimeDisk},
    {VqTypeId_VqIString, shortStringMemory, shortStringDisk},
    {VqTypeId_VqCaseIString, shortStringMemory, shortStringDisk},
    {VqTypeId_d_Date, standardDateMemory, dateDisk},
    {VqTypeId_d_Time, standardTimeMemory, standardTimeDisk},
    {VqTypeId_d_Timestamp, timestampMemory, timestampDisk},
    {VqTypeId_d_Interval, intervalMemory, {}},
    {VqTypeId_VqInt64, int64Memory, int64Disk},
    {VqTypeId_VqNull_char, null1Memory, null1Disk},
    {VqTypeId_VqNull_uchar, null1Memory, null1Disk},
    {VqTypeId_VqNull_short, null2Memory, null2Disk},
    {VqTypeId_VqNull_ushort, null2Memory, null2Disk},
    {VqTypeId_VqNull_int, null4Memory, null4Disk},
    {VqTypeId_VqNull_unsigned, null4Memory, null4Disk},
    {VqTypeId_VqNull_long, null4Memory, null4Disk},
    {VqTypeId_VqNull_ulong, null4Memory, null4Disk},
    {VqTypeId_VqNull_float, null4Memory, null4Disk},
    {VqTypeId_VqNull_double, null8Memory, null8Disk},
    {VqTypeId_VqNull_VqInt64, nullInt64Memory, nullInt64Disk},
    {VqTypeId_VqSeal, sealMemory, sealDisk},
};

std::vector<Part> PartsOf(VqTypeId id, std::span<const Part> RowParts::*form, std::size_t size) {
    for (const RowParts& row : rows) {
        if (row.id == id && !(row.*form).empty()) return {(row.*form).begin(), (row.*form).end()};
    }
    return std::vector<Part>(size != 0, Part{"value", 0, size});
}

// --- Drawing

// The offset of a part whose place depends on the value counts from the end of the one that does.
class Offsets {
  public:
    std::string Next(const Part& part) {
        if (part.size != 0) return Text(at_ += part.size);
        counted_ = true;
        at_ = 0;
        return Text(0);
    }
    std::string Text(std::size_t at) const {
        if (!counted_) return fmt::to_string(at);
        return at == 0 ? "..." : fmt::format("+{}", at);
    }

  private:
    std::size_t at_ = 0;
    bool counted_ = false;
};

std::vector<Part> WithGaps(const std::vector<Part>& parts, std::size_t size) {
    std::vector<Part> all;
    std::size_t end = 0;
    const auto fill = [&](std::size_t next) {
        if (next > end) all.push_back({"unused", end, next - end, Unknown});
    };
    for (const Part& part : parts) {
        fill(part.offset);
        all.push_back(part);
        end = part.offset + part.size;
    }
    fill(size);
    return all;
}

std::string Padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

}  // namespace

std::vector<Part> MemoryParts(VqTypeId id) { return PartsOf(id, &RowParts::memory, Manager().MemLenGet(id, 1)); }

std::vector<Part> DiskParts(VqTypeId id) {
    if (!Does(id, "store") || !Does(id, "size")) return {};
    const std::size_t fixedSize = Manager().IsFixed(id) ? Manager().DiskLenGet(id, nullptr, 0, 1, 0) : 0;
    std::vector<Part> parts = PartsOf(id, &RowParts::disk, fixedSize);
    std::size_t offset = 0;
    for (Part& part : parts) {
        part.offset = offset;
        offset += part.size;
    }
    return parts;
}

std::string DrawParts(const std::vector<Part>& parts, std::size_t size, unsigned indent) {
    const std::string blanks(indent, ' ');
    std::string offsets = blanks + "0", rule = blanks + "+", names = blanks + "|";
    Offsets at;
    for (const Part& part : WithGaps(parts, size)) {
        rule += std::string(std::strlen(part.name) + 2, '-') + "+";
        names += fmt::format(" {} |", part.name);
        offsets = Padded(offsets, rule.size() - 1) + at.Next(part);
    }
    return offsets + "\n" + rule + "\n" + names + "\n" + rule + "\n";
}
