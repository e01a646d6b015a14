// Values of every class for a debugger to look at: tests/debugger_test.py says what it has to show of each.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <new>
#include <utility>
#include <vector>

#include "vqtm.h"

// Only the debugger reads them.
#pragma GCC diagnostic ignored "-Wunused-variable"
#pragma GCC diagnostic ignored "-Wunused-but-set-variable"

namespace {

// All values are there: the debugger stops here, one frame inside.
[[gnu::noinline]] void Ready() { asm volatile("" ::: "memory"); }

VqString Text(unsigned char codeSet, unsigned char language, const void* characters) {
    VqString text(codeSet, language);
    text.AssignChars(characters, codeSet, VqString::All);
    return text;
}

// A value whose bytes are all alike, as in memory that nobody has written a value to.
template <class Value>
struct Raw {
    explicit Raw(int byte) { std::memset(storage, byte, sizeof storage); }
    Value& Get() { return *std::launder(reinterpret_cast<Value*>(storage)); }
    alignas(Value) std::byte storage[sizeof(Value)];
};

VqRef Reference(std::uint16_t database, const VqObjId& object, const VqClassId& classId) {
    VqRef reference;
    reference.id = object;
    reference.database = database;
    reference.classId = classId;
    return reference;
}

VqObjId Object(std::uint16_t high, std::uint32_t low, std::uint32_t block) {
    VqObjId id;
    id.high = high;
    id.low = low;
    id.block = block;
    return id;
}

VqClassId Class(std::uint16_t number, std::uint16_t version) {
    VqClassId id;
    id.classNumber = number;
    id.version = version;
    return id;
}

void Run() {
    // Strings
    VqString city = Text(6, 13, "\xA3\xF3\x64\xBC");
    VqString native = Text(0, 0, "caf\xE9");
    VqString empty;
    VqString emptied("abc");
    emptied[0] = '\0';
    VqString nullString;
    nullString.SetNullValue();
    VqString namedNull("abc");
    namedNull.SetLanguage(254);
    VqString moved("abc");
    VqString taker(std::move(moved));
    VqString escaped = Text(1, 1, "\"a\\\n\x01\x81");
    VqString undefinedByte = Text(7, 0, "a");
    VqString unknownSet = Text(200, 99, "\x80");
    const unsigned short unicodeUnits[] = {0x0141, 'x', 0xD83D, 0xDE00, 0xD800, 0};
    VqString unicode = Text(253, 13, unicodeUnits);
    const unsigned short japaneseUnits[] = {0x93FA, 0x967B, 'a', 0xB1, 0xFFFF, 0};
    VqString japanese = Text(225, 20, japaneseUnits);
    const unsigned short gbkUnits[] = {0xD6D0, 0x80, 0};
    VqString chinese = Text(226, 21, gbkUnits);
    const unsigned short big5Units[] = {0xA4A4, 0xA3E1, 0};
    VqString traditional = Text(227, 22, big5Units);
    const unsigned short koreanUnits[] = {0xB0A1, 0};
    VqString korean = Text(228, 23, koreanUnits);
    VqString large;
    large.Fill(5000, 'x');
    const VqString& reference = city;
    VqString* pointer = &city;
    VqString* nobody = nullptr;
    std::vector<VqString> texts = {VqString("one"), VqString()};
    texts[1].SetNullValue();
    std::map<VqInt64, VqString> byNumber = {{VqInt64(7), VqString("seven")}};

    VqIString simple("Gro\xDF");
    VqIString nullSimple;
    VqIString emptySimple("x", 0);
    emptySimple = nullSimple;
    VqCaseIString flagged("Ab");
    flagged.SetFlags(VqIStringFlag_Accents | VqIStringFlag_Raw | 1);
    const vq::IStringText& base = simple;

    VqChar freeChar(0xE9, 1, 3);
    VqChar quote('\'');
    VqChar place = city[1];
    VqChar widePlace = japanese[1];
    VqChar outside = city[99];
    VqString shrinking("abcdef");
    VqChar gone = shrinking[5];
    shrinking = "a";

    // Numbers and truth
    VqInt64 int64(std::numeric_limits<std::int64_t>::min());
    VqInt64 minusOne(-1);
    VqBoolean truth(1), falsehood(0), nullTruth, oddTruth;
    nullTruth.SetNullValue();
    oddTruth.value = 200;
    VqSeal seal;
    seal.ConvertFrom(VqInt64(std::int64_t{0xFFFE'FFFD'FFFC}));
    VqNull_char nullChar, someChar('a');
    VqNull_uchar someUchar(200);
    VqNull_short someShort(std::int16_t{-5});
    VqNull_ushort someUshort(std::uint16_t{65535});
    VqNull_int nullInt, someInt(-2147483647);
    VqNull_unsigned someUnsigned(4294967295U);
    VqNull_long someLong(7);
    VqNull_ulong someUlong(8U);
    VqNull_float someFloat(1.5F);
    VqNull_double nullDouble, someDouble(-0.25);
    VqNull_VqInt64 nullInt64, someInt64(VqInt64(-9));

    // Dates and times
    VqDate date(2005, 3, 7), nullDate(0, 0, 0), anyMonth(2005, -1, 7), anyYear(-1, -1, -1), ancient(-44, 3, 15);
    nullDate.SetNullValue();
    VqTime time(0, 5, 9), nullTime(0, 0, 0), negativeTime(-1, 5, 0);
    nullTime.SetNullValue();
    VqDateTime dateTime(date, time), nullDateTime(nullDate, nullTime), halfNull(date, nullTime);
    d_Date stdDate(-44, 3, 15);
    d_Time stdTime(12, 5, 9.25F, 1, 0), westTime(12, 0, 0, -3, -30), oddTime(0, 0, 0, 0, -30);
    d_Time mixedZone(0, 0, 0, -3, 30);
    d_Timestamp timestamp(stdDate, stdTime);
    d_Interval interval, tenth, hugeInterval, dayInterval, infinite;
    interval.seconds = -93784.5F;
    tenth.seconds = 0.1F;
    hugeInterval.seconds = 1e10F;
    dayInterval.seconds = 16777216;
    infinite.seconds = std::numeric_limits<float>::infinity();

    // Bytes
    VqBlob blob("\x07\xFF", 2L), oneByte("a", 1L), emptyBlob, nullBlob, longBlob(40L);
    nullBlob.SetNullValue();
    unsigned char lowKey[] = {0, 1}, highKey[] = {255};
    VqIdxBounds bounds, openBounds;
    bounds.lowKey = lowKey;
    bounds.lowKeyLength = sizeof lowKey;
    bounds.highKey = highKey;
    bounds.highKeyLength = sizeof highKey;

    // Identifiers and references
    VqObjId objId = Object(1, 42, 7), nullObjId, blockOnly = Object(0, 0, 7);
    VqDBOId dbObjId, nullDbObjId;
    dbObjId.id = objId;
    dbObjId.database = 3;
    VqClassId classId = Class(12, 3), nullClassId;
    nullClassId.SetNullValue();
    VqRef ref = Reference(3, objId, classId), nullRef, unresolved = Reference(65535, VqObjId(), VqClassId());
    VqLocalRef localRef, nullLocalRef;
    localRef = ref;

    // Managers and what they make
    VqTypeMgr manager(5), legacyManager(3);
    VqTypeId typeId = VqTypeId_VqDate, noType = static_cast<VqTypeId>(57);
    VqBoolean truths[] = {truth, nullTruth};
    VqTypeConvertData* exchange = manager.ConvertTo(VqTypeId_VqBoolean, truths, 2);
    std::int32_t longs[] = {5, -6};
    VqTypeConvertData* scalars = VqTypeConvertData::Make(VqTypeId_long, 2, longs, nullptr);
    VqTypeConvertData* released = VqTypeConvertData::Make(VqTypeId_long, 2, longs, nullptr);
    released->type = VqTypeConvertData::Released;
    VqTypeDescriptor row = {};
    row.name = "VqDate";
    row.memoryLength = 4;
    row.fixed = 1;

    // What never was a value, and what points nowhere
    Raw<VqString> rawString(0x5A);
    Raw<VqBlob> rawBlob(0x5A);
    const VqBlob& blobNowhere = rawBlob.Get();
    Raw<VqIString> rawIString(0x5A);
    Raw<VqTypeMgr> rawManager(0x5A);
    VqTypeConvertData* wild = VqTypeConvertData::Make(VqTypeId_VqString, 3, &rawBlob, nullptr);
    wild->data = reinterpret_cast<void*>(16);
    VqIdxBounds wildBounds = bounds;
    wildBounds.highKey = reinterpret_cast<void*>(16);

    Ready();

    for (VqTypeConvertData* data : {exchange, scalars, released, wild}) delete data;
}

}  // namespace

int main() { Run(); }
