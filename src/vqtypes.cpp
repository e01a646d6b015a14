#include "vqtypes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

#include "_vqnulty.h"
#include "blobslots.h"
#include "booleanslots.h"
#include "dateslots.h"
#include "idslots.h"
#include "int64slots.h"
#include "istringslots.h"
#include "scalar.h"
#include "sealslots.h"
#include "stddateslots.h"
#include "stringslots.h"
#include "textform.h"
#include "vqbase.h"
#include "vqistring.h"
#include "vqnull.h"
#include "vqtypcmp.h"
#include "vqtypevl.h"
#include "vqtyphash.h"

namespace {

// --- Functions that do nothing

template <class Function>
struct Nothing;
template <class Result, class... Arguments>
struct Nothing<Result (*)(Arguments...)> {
    static Result Do(Arguments... arguments) {
        (Settle(arguments), ...);
        return Result();
    }

  private:
    // Where a slot has a status, nothing went wrong.
    static void Settle(int& status) { status = VqStatus_Ok; }
    template <class Other>
    static void Settle(const Other&) {}
};
template <class... Arguments>
struct Nothing<VqString& (*)(VqString&, Arguments...)> {
    static VqString& Do(VqString& out, Arguments...) { return out; }
};

// Fits every slot.
struct DoNothing {
    template <class Function>
    constexpr operator Function() const {
        return Nothing<Function>::Do;
    }
};
constexpr DoNothing nothing;

// --- Families: the functions that several rows share, and the length of one value. Each starts as the illegal one, so
// that no slot but SetNull is ever empty: the manager calls them without looking.

constexpr VqTypeDescriptor illegalFamily = {
    .name = nullptr,
    .create = nothing,
    .destroy = nothing,
    .store = nothing,
    .load = nothing,
    .nullSizeGet = nothing,
    .sizeGet = nothing,
    .sizeGetFromMemFile = nothing,
    .compare = nothing,
    .evalAndBound = nothing,
    .hash = nothing,
    .convertTo = nothing,
    .convertFrom = nothing,
    .constructor = nothing,
    .destructor = nothing,
    .assignment = nothing,
    .copy = nothing,
    .translate = nothing,
    .isNull = nothing,
    .setNull = nullptr,
    .format = nullptr,
    .print = nothing,
    .scan = nothing,
    .memoryLength = 0,
    .fixed = 1,
    .defaultValue = nothing,
};

// Slots is the class of static functions that the family has in common.
template <class T, class Slots>
constexpr VqTypeDescriptor LifeAndExchange() {
    VqTypeDescriptor row = illegalFamily;
    row.create = Slots::Create;
    row.destroy = Slots::Delete;
    row.convertTo = Slots::ConvertTo;
    row.convertFrom = Slots::ConvertFrom;
    row.constructor = Slots::Constructor;
    row.destructor = Slots::Destructor;
    row.assignment = Slots::Assignment;
    row.copy = Slots::Copy;
    row.memoryLength = sizeof(T);
    row.defaultValue = Slots::DefaultValue;
    return row;
}

#define SCALAR_FAMILY(T, Text, Name, StoreFunction, LoadFunction)              \
    [] {                                                                       \
        VqTypeDescriptor row = LifeAndExchange<T, vq::ScalarSlots<T, Text>>(); \
        row.store = StoreFunction;                                             \
        row.load = LoadFunction;                                               \
        row.nullSizeGet = Name##NullSizeGet;                                   \
        row.sizeGet = Name##SizeGet;                                           \
        row.sizeGetFromMemFile = Name##SizeGetFromMemFile;                     \
        row.compare = Name##Compare;                                           \
        row.evalAndBound = Name##EvalAndBound;                                 \
        row.hash = Name##Hash;                                                 \
        row.translate = vq::Translate<T, StoreFunction, LoadFunction>;         \
        row.print = Name##Print;                                               \
        row.scan = Name##Scan;                                                 \
        return row;                                                            \
    }()

constexpr VqTypeDescriptor charFamily = SCALAR_FAMILY(signed char, short, Char, CharStore, CharStore);
constexpr VqTypeDescriptor shortFamily = SCALAR_FAMILY(std::int16_t, short, Short, ShortStore, ShortStore);
constexpr VqTypeDescriptor longFamily = SCALAR_FAMILY(std::int32_t, long, Long, LongStore, LongStore);
constexpr VqTypeDescriptor intFamily = SCALAR_FAMILY(std::int32_t, int, Int, IntStore, IntLoad);
constexpr VqTypeDescriptor floatFamily = SCALAR_FAMILY(float, double, Float, FloatStore, FloatStore);
constexpr VqTypeDescriptor doubleFamily = SCALAR_FAMILY(double, double, Double, DoubleStore, DoubleStore);

#undef SCALAR_FAMILY

constexpr VqTypeDescriptor UnsignedFamily() {
    VqTypeDescriptor row = intFamily;
    row.store = UnsignedStore;
    row.load = UnsignedLoad;
    row.translate = vq::Translate<std::int32_t, UnsignedStore, UnsignedLoad>;
    return row;
}
constexpr VqTypeDescriptor unsignedFamily = UnsignedFamily();

constexpr VqTypeDescriptor StringFamily() {
    VqTypeDescriptor row = LifeAndExchange<VqString, vq::StringSlots>();
    row.store = StringStore;
    row.load = StringLoad;
    row.nullSizeGet = StringNullSizeGet;
    row.sizeGet = StringSizeGet;
    row.sizeGetFromMemFile = StringSizeGetFromMemFile;
    row.compare = StringCompare;
    row.evalAndBound = StringEvalAndBound;
    row.hash = StringHash;
    row.translate = vq::Translate<VqString, StringStore, StringLoad>;
    row.isNull = vq::StringSlots::IsNull;
    row.setNull = vq::StringSlots::SetNull;
    row.print = StringPrint;
    row.scan = StringScan;
    return row;
}
constexpr VqTypeDescriptor stringFamily = StringFamily();

// Slots is a class of functions that also has those of text, and of null where the class has one.
template <class T, class Slots>
constexpr VqTypeDescriptor LifeNullAndText() {
    VqTypeDescriptor row = LifeAndExchange<T, Slots>();
    if constexpr (requires(void* value) { Slots::SetNull(value); }) {
        row.isNull = Slots::IsNull;
        row.setNull = Slots::SetNull;
    }
    row.print = Slots::Print;
    row.scan = Slots::Scan;
    return row;
}

#define VALUE_FAMILY(Value, Name, Slots)                               \
    [] {                                                               \
        VqTypeDescriptor row = LifeNullAndText<Value, Slots>();        \
        row.store = Name##Store;                                       \
        row.load = Name##Load;                                         \
        row.nullSizeGet = Name##NullSizeGet;                           \
        row.sizeGet = Name##SizeGet;                                   \
        row.sizeGetFromMemFile = Name##SizeGetFromMemFile;             \
        row.compare = Name##Compare;                                   \
        row.evalAndBound = Name##EvalAndBound;                         \
        row.hash = Name##Hash;                                         \
        row.translate = vq::Translate<Value, Name##Store, Name##Load>; \
        return row;                                                    \
    }()

constexpr VqTypeDescriptor dateFamily = VALUE_FAMILY(VqDate, Date, vq::DateSlots);
constexpr VqTypeDescriptor timeFamily = VALUE_FAMILY(VqTime, Time, vq::TimeSlots);
constexpr VqTypeDescriptor dateTimeFamily = VALUE_FAMILY(VqDateTime, DaTime, vq::DateTimeSlots);
constexpr VqTypeDescriptor int64Family = VALUE_FAMILY(VqInt64, Int64, vq::Int64Slots);
constexpr VqTypeDescriptor blobFamily = VALUE_FAMILY(VqBlob, Blob, vq::BlobSlots);
constexpr VqTypeDescriptor booleanFamily = VALUE_FAMILY(VqBoolean, Boolean, vq::BooleanSlots);
constexpr VqTypeDescriptor sealFamily = VALUE_FAMILY(VqSeal, Seal, vq::SealSlots);

constexpr VqTypeDescriptor stdDateFamily = VALUE_FAMILY(d_Date, d_Date, vq::StdDateSlots<d_Date>);
constexpr VqTypeDescriptor stdTimeFamily = VALUE_FAMILY(d_Time, d_Time, vq::StdDateSlots<d_Time>);
constexpr VqTypeDescriptor stdTimestampFamily = VALUE_FAMILY(d_Timestamp, d_Timestamp, vq::StdDateSlots<d_Timestamp>);

constexpr VqTypeDescriptor istringFamily = VALUE_FAMILY(VqIString, VqIString, vq::IStringSlots<VqIString>);
constexpr VqTypeDescriptor caseIStringFamily =
    VALUE_FAMILY(VqCaseIString, VqCaseIString, vq::IStringSlots<VqCaseIString>);

#undef VALUE_FAMILY

// Own is a class whose static functions have the names of the slots that Slots does not fill.
template <class T, class Slots, class Own>
constexpr VqTypeDescriptor StaticFamily() {
    VqTypeDescriptor row = LifeNullAndText<T, Slots>();
    row.store = Own::Store;
    row.load = Own::Load;
    row.nullSizeGet = Own::NullSizeGet;
    row.sizeGet = Own::SizeGet;
    row.sizeGetFromMemFile = Own::SizeGetFromMemFile;
    row.compare = Own::Compare;
    row.evalAndBound = Own::EvalAndBound;
    row.hash = Own::Hash;
    row.translate = Own::Translate;
    return row;
}
template <class Id>
constexpr VqTypeDescriptor identifier = StaticFamily<Id, vq::IdSlots<Id>, Id>();
template <class Null>
constexpr VqTypeDescriptor nullable = StaticFamily<Null, VqNullSlots<Null>, VqNullSlots<Null>>();

// An interval is measured, ordered and translated as the float that it holds.
constexpr VqTypeDescriptor IntervalFamily() {
    VqTypeDescriptor row = LifeNullAndText<d_Interval, vq::StdDateSlots<d_Interval>>();
    row.store = d_IntervalStore;
    row.load = d_IntervalLoad;
    row.nullSizeGet = floatFamily.nullSizeGet;
    row.sizeGet = floatFamily.sizeGet;
    row.sizeGetFromMemFile = floatFamily.sizeGetFromMemFile;
    row.compare = floatFamily.compare;
    row.evalAndBound = floatFamily.evalAndBound;
    row.hash = floatFamily.hash;
    row.translate = floatFamily.translate;
    return row;
}
constexpr VqTypeDescriptor intervalFamily = IntervalFamily();

// --- Rows

// The key functions of a row that has another order than its family.
struct KeyFunctions {
    VqCompareFunc compare;
    VqEvalAndBoundFunc evalAndBound;
    VqHashFunc hash;
};

constexpr VqTypeDescriptor Row(const char* name, std::size_t memoryLength, std::uint16_t fixed, const char* format,
                               VqTypeDescriptor row, std::optional<KeyFunctions> own = {}) {
    row.name = name;
    row.format = format;
    row.fixed = fixed;
    if (row.memoryLength != memoryLength) throw "the family's values have another length";
    if (own) {
        row.compare = own->compare;
        row.evalAndBound = own->evalAndBound;
        row.hash = own->hash;
    }
    return row;
}

struct IdentifiedRow {
    VqTypeId id;
    VqTypeDescriptor row;
};

#define ROW(Name, ...) \
    IdentifiedRow { VqTypeId_##Name, Row(#Name, __VA_ARGS__) }
#define KEYS(Name) \
    KeyFunctions { Name##Compare, Name##EvalAndBound, Name##Hash }

// clang-format off
constexpr IdentifiedRow rowsById[] = {
    //  name             bytes in memory     fixed  format                       family, and what differs in it
    ROW(char,            1,                     1, "%c",                         charFamily),
    ROW(short,           2,                     1, "%hd",                        shortFamily),
    ROW(long,            4,                     1, "%ld",                        longFamily),
    ROW(double,          8,                     1, "%lf",                        doubleFamily),
    ROW(float,           4,                     1, "%f",                         floatFamily),
    ROW(VqWord,          2,                     1, "%hu",                        shortFamily, KEYS(Word)),
    ROW(VqDWord,         4,                     1, "%lu",                        longFamily, KEYS(Dword)),
    ROW(int,             4,                     1, "%d",                         intFamily),
    ROW(unsigned,        4,                     1, "%u",                         unsignedFamily, KEYS(Unsigned)),
    ROW(enum,            4,                     1, "%d",                         intFamily),
    ROW(VqByte,          1,                     1, "%c",                         charFamily, KEYS(Byte)),
    // texts, dates, identifiers
    ROW(VqString,        sizeof(VqString),      0, "%s",                         stringFamily),
    ROW(VqDate,          4,                     1, "%a %e.%b %Y",                dateFamily),
    ROW(VqTime,          3,                     1, "%I:%M:%S %p",                timeFamily),
    ROW(BlockId,         4,                     1, "#%lu",                       longFamily, KEYS(Dword)),
    ROW(VqObjId,         12,                    1, "(%H-%L#%B)",                 identifier<VqObjId>),
    ROW(VqClassId,       4,                     1, "(%Cv%V)",                    identifier<VqClassId>),
    ROW(VqRef,           20,                    1, "(%D:%H-%L#%B, %C)",          identifier<VqRef>),
    ROW(VqBlob,          sizeof(VqBlob),        0, "[BLOB,len=%L]",              blobFamily),
    ROW(VqDateTime,      8,                     1, "%a %e.%b %Y %I:%M:%S %p",    dateTimeFamily),
    ROW(VqIString,       sizeof(VqIString),     0, "%s",                         istringFamily),
    ROW(VqCaseIString,   sizeof(VqCaseIString), 0, "%s",                         caseIStringFamily),
    ROW(d_Date,          4,                     1, "%a %b %e",                   stdDateFamily),
    ROW(d_Time,          6,                     1, "%I:%M:%S %p",                stdTimeFamily),
    ROW(d_Timestamp,     10,                    1, "%a %b %e %I:%M:%S %p",       stdTimestampFamily),
    ROW(d_Interval,      4,                     1, "%e days, %I hours, %M minutes, %S seconds",
        intervalFamily),
    ROW(VqInt64,         8,                     1, "%S",                         int64Family),
    ROW(VqBoolean,       1,                     1, "noop",                       booleanFamily),
    // nullable scalars
    ROW(VqNull_char,     2,                     1, "%c",                         nullable<VqNull_char>),
    ROW(VqNull_uchar,    2,                     1, "%c",                         nullable<VqNull_uchar>),
    ROW(VqNull_short,    4,                     1, "%hd",                        nullable<VqNull_short>),
    ROW(VqNull_ushort,   4,                     1, "%hu",                        nullable<VqNull_ushort>),
    ROW(VqNull_int,      8,                     1, "%d",                         nullable<VqNull_int>),
    ROW(VqNull_unsigned, 8,                     1, "%u",                         nullable<VqNull_unsigned>),
    ROW(VqNull_long,     8,                     1, "%ld",                        nullable<VqNull_long>),
    ROW(VqNull_ulong,    8,                     1, "%lu",                        nullable<VqNull_ulong>),
    ROW(VqNull_float,    8,                     1, "%f",                         nullable<VqNull_float>),
    ROW(VqNull_double,   12,                    1, "%lf",                        nullable<VqNull_double>),
    ROW(VqNull_VqInt64,  12,                    1, "%S",                         nullable<VqNull_VqInt64>),

    ROW(VqSeal,          6,                     1, "noop",                       sealFamily),
    ROW(illegal,         0,                     1, "illegal",                    illegalFamily),
};
// clang-format on

#undef KEYS
#undef ROW

constexpr VqTypeDescriptor LegacyStringRow() {
    VqTypeDescriptor row = rowsById[VqTypeId_VqString].row;
    row.store = LegacyStringStore;
    row.sizeGet = LegacyStringSizeGet;
    row.sizeGetFromMemFile = LegacyStringSizeGetFromMemFile;
    row.compare = LegacyStringCompare;
    row.evalAndBound = LegacyStringEvalAndBound;
    row.hash = LegacyStringHash;
    row.translate = vq::Translate<VqString, LegacyStringStore, StringLoad>;
    row.isNull = nothing;
    row.setNull = nullptr;
    return row;
}

constexpr bool EveryRowIsInItsPlace() {
    for (int i = 0; i < VqTypeCount; ++i) {
        if (rowsById[i].id != i) return false;
    }
    return true;
}
static_assert(std::size(rowsById) == VqTypeCount && EveryRowIsInItsPlace());

// The rows as they are used; comparison, format, print and scan can be exchanged.
constexpr auto CurrentRows() {
    std::array<VqTypeDescriptor, VqTypeCount> rows = {};
    for (int i = 0; i < VqTypeCount; ++i) rows[static_cast<std::size_t>(i)] = rowsById[i].row;
    return rows;
}
constinit std::array<VqTypeDescriptor, VqTypeCount> rows = CurrentRows();
constinit VqTypeDescriptor legacyString = LegacyStringRow();

// --- Tables: both as long as there are types, so that the manager looks at no more than the identifier

using Table = std::array<VqTypeDescriptor*, VqTypeCount>;

constexpr Table CurrentTable() {
    Table table = {};
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = &rows[i];
    return table;
}

constexpr Table LegacyTable() {
    constexpr std::size_t Types = 28;
    Table table = CurrentTable();
    table[VqTypeId_VqString] = &legacyString;
    for (std::size_t i = Types; i < table.size(); ++i) table[i] = &rows[VqTypeId_illegal];
    return table;
}

constexpr Table currentTable = CurrentTable();
constexpr Table legacyTable = LegacyTable();

// Identifiers from here up stand for the illegal row.
constexpr int FirstIllegalAlias = 100;
constexpr std::uint16_t FirstCurrentLevel = 4;

}  // namespace

// --- Construction and factory

VqTypeMgr::VqTypeMgr(unsigned long version) { SetFactory(version); }

void VqTypeMgr::SetFactory(unsigned long version) {
    // Version 11 is older than its number: it stands for level 3.
    const unsigned long level = version >= 12 ? FirstCurrentLevel : version == 11 ? 3 : version;
    factoryLevel_ = static_cast<std::uint16_t>(level);
    table_ = level >= FirstCurrentLevel ? currentTable.data() : legacyTable.data();
}

int VqTypeMgr::IsValidType(char id) const { return id < VqTypeCount || id >= FirstIllegalAlias; }

// --- Life of values

void* VqTypeMgr::Create(char id, unsigned long count) const { return Row(id).create(count); }
void VqTypeMgr::Delete(char id, void* values, unsigned long count) const { Row(id).destroy(values, count); }
void* VqTypeMgr::DefaultValue(char id, unsigned long count, int asNull) const {
    return Row(id).defaultValue(count, asNull);
}

VqConstructorFunc VqTypeMgr::ConstructorPtrGet(char id) const { return Row(id).constructor; }
VqDestructorFunc VqTypeMgr::DestructorPtrGet(char id) const { return Row(id).destructor; }
VqAssignmentFunc VqTypeMgr::AssignmentPtrGet(char id) const { return Row(id).assignment; }
VqCopyFunc VqTypeMgr::CopyPtrGet(char id) const { return Row(id).copy; }
VqLoadFunc VqTypeMgr::LoadPtrGet(char id) const { return Row(id).load; }
VqStoreFunc VqTypeMgr::StorePtrGet(char id) const { return Row(id).store; }
VqIsNullFunc VqTypeMgr::IsNullPtrGet(char id) const { return Row(id).isNull; }
VqSetNullFunc VqTypeMgr::SetNullPtrGet(char id) const { return Row(id).setNull; }
VqCompareFunc VqTypeMgr::ComparePtrGet(char) const { return nullptr; }

void* VqTypeMgr::GetArrayElement(char id, void* values, unsigned long index, unsigned long count) const {
    if (values == nullptr || (count != 0 && index >= count)) return nullptr;
    return static_cast<char*>(values) + index * Row(id).memoryLength;
}

// --- Names and sizes

char* VqTypeMgr::NameGet(char id, char* buffer) const {
    const char* const name = Row(id).name;
    return buffer != nullptr ? std::strcpy(buffer, name) : const_cast<char*>(name);
}

int VqTypeMgr::Name2VqTypeId(const char* name, char& id) const {
    for (id = 0; IsValidType(id) != 0; ++id) {
        if (std::strcmp(name, Row(id).name) == 0) return 0;
    }
    return 1;
}

unsigned long VqTypeMgr::MemLenGet(char id, unsigned long count) const { return Row(id).memoryLength * count; }
unsigned short VqTypeMgr::IsFixed(char id) const { return Row(id).fixed; }

unsigned long VqTypeMgr::DiskLenGet(char id, const void* data, unsigned char format, unsigned long count,
                                    unsigned char dataFormat) const {
    return Row(id).sizeGet(data, dataFormat, format, count);
}
unsigned long VqTypeMgr::DiskLenGetFromMemFile(char id, MemFile* file, unsigned char format,
                                               unsigned long count) const {
    return Row(id).sizeGetFromMemFile(file, format, count);
}

// --- Disk form

unsigned long VqTypeMgr::Store(char id, void* dst, const void* src, unsigned char format, unsigned long count) const {
    return Row(id).store(dst, src, format, count);
}
unsigned long VqTypeMgr::Load(char id, void* dst, const void* src, unsigned char format, unsigned long count) const {
    return Row(id).load(dst, src, format, count);
}
unsigned long VqTypeMgr::Translate(char id, void* dst, unsigned char dstFormat, unsigned long dstLength,
                                   const void* src, unsigned char srcFormat, unsigned long srcLength,
                                   unsigned long count) const {
    return Row(id).translate(dst, dstFormat, dstLength, src, srcFormat, srcLength, count);
}

// --- Keys

VqCompareFunc VqTypeMgr::CmpFuncPtrGet(char id) const { return Row(id).compare; }

// --- Conversion

VqTypeConvertData* VqTypeMgr::ConvertTo(char id, void* values, unsigned long count) {
    VqTypeConvertData* const data = Row(id).convertTo(values, count);
    if (data != nullptr) data->manager = this;
    return data;
}

void* VqTypeMgr::ConvertFrom(char id, VqTypeConvertData* data, unsigned long count) {
    if (data != nullptr) data->manager = this;
    return Row(id).convertFrom(data, count);
}

// --- Text

VqString& VqTypeMgr::PrintToVqString(char id, VqString& out, void* values, const char* format,
                                     unsigned long count) const {
    const VqTypeDescriptor& row = Row(id);
    if (format == nullptr) format = row.format;
    // Bytes print as one piece, and where there is nothing to print there are no commas either.
    const bool whole = row.print == CharPrint || row.print == Nothing<VqPrintFunc>::Do || values == nullptr;
    if (whole || count <= 1) return row.print(out, values, format, count);
    vq::PrintElements(out, count, [&](unsigned long i) {
        VqString element(out.GetCodeSet(), out.GetLanguage());
        out += row.print(element, GetArrayElement(id, values, i, count), format, 1);
    });
    return out;
}

void* VqTypeMgr::ScanFromVqString(char id, void* values, VqString& text, const char* format,
                                  unsigned long count) const {
    const VqTypeDescriptor& row = Row(id);
    row.scan(values, text, format != nullptr ? format : row.format, count);
    return values;
}

VqString& VqTypeMgr::GetNullPrintString() { return VqNullPrintString(); }
void VqTypeMgr::SetNullPrintString(const VqString& text) { VqNullPrintString() = text; }

// --- Replacing row entries

namespace {

template <class Entry>
Entry Exchange(Entry& entry, Entry replacement) {
    return replacement != nullptr ? std::exchange(entry, replacement) : entry;
}

}  // namespace

const char* VqTypeMgr::ExchangeFormat(char id, const char* format) { return Exchange(Row(id).format, format); }
VqCompareFunc VqTypeMgr::ExchangeVqTypeCmpFunc(char id, VqCompareFunc compare) {
    return Exchange(Row(id).compare, compare);
}
VqPrintFunc VqTypeMgr::ExchangePrintToVqStringFunc(char id, VqPrintFunc print) {
    return Exchange(Row(id).print, print);
}
VqScanFunc VqTypeMgr::ExchangeScanFromVqStringFunc(char id, VqScanFunc scan) { return Exchange(Row(id).scan, scan); }

// --- Null values

unsigned short VqTypeMgr::SupportsNullValue(char id) const { return Row(id).setNull != nullptr; }
int VqTypeMgr::IsNullValue(char id, void* value) const { return Row(id).isNull(value); }

int VqTypeMgr::SetNullValue(char id, void* value) {
    const VqTypeDescriptor& row = Row(id);
    const int status = row.setNull != nullptr ? row.setNull(value) : VqStatus_NotSupported;
    if (status != VqStatus_NotSupported) return status;
    // What an empty text converts to.
    const auto release = [&row](void* made) { row.destroy(made, 1); };
    const std::unique_ptr<void, decltype(release)> empty(row.defaultValue(1, 0), release);
    if (empty != nullptr) row.assignment(value, empty.get(), 1, 1);
    return VqStatus_Ok;
}

int VqTypeMgr::DiskIsNullValue(char, const void*) const { return VqStatus_NotSupported; }
