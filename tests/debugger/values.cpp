// Values of every class for a debugger to look at. Behind a declaration stands what GDB has to print of the value, when
// all are there; a comment of its own says it of an expression. tests/debugger_test.py reads these comments.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
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

template <class Value>
Value Null(Value value = Value()) {
    value.SetNullValue();
    return value;
}

d_Interval Seconds(float seconds) {
    d_Interval interval;
    interval.seconds = seconds;
    return interval;
}

// A value whose bytes are all alike, as in memory that nobody has written a value to.
template <class Value>
struct Raw {
    Raw() { std::memset(storage, 0x5A, sizeof storage); }
    alignas(Value) std::byte storage[sizeof(Value)];
};

// One of each nullable type.
struct Nullables {
    VqNull_char c = 'a';
    VqNull_uchar uc = 200;
    VqNull_short s = std::int16_t{-5};
    VqNull_ushort us = std::uint16_t{65535};
    VqNull_int i = -2147483647;
    VqNull_unsigned u = 4294967295U;
    VqNull_long l = 7;
    VqNull_ulong ul;
    VqNull_float f = 1.5F;
    VqNull_double d;
    VqNull_VqInt64 i64 = VqInt64(-9);
};

const unsigned short UnicodeUnits[] = {0x0141, 'x', 0xD83D, 0xDE00, 0xD800, 0};
const unsigned short JapaneseUnits[] = {0x93FA, 0x967B, 'a', 0xB1, 0xFFFF, 0};
const unsigned short GbkUnits[] = {0xD6D0, 0x80, 0}, Big5Units[] = {0xA4A4, 0xA3E1, 0}, KoreanUnits[] = {0xB0A1, 0};

// clang-format off
void Run() {
    // Strings
    VqString city = Text(6, 13, "\xA3\xF3\x64\xBC");  //= "Łódź" (ISO 8859-2, polish)
    const VqString& reference = city;                   //= "Łódź" (ISO 8859-2, polish)
    VqString native = Text(0, 0, "caf\xE9");            //= "café" (native, neutral)
    VqString empty;                                     //= "" (Windows-1252, neutral)
    VqString emptied("abc");                            //= "" (Windows-1252, neutral)
    emptied[0] = '\0';
    VqString nullString = Null<VqString>();             //= {NULL}
    VqString namedNull("abc");                          //= {NULL} "abc" (Windows-1252, language 254)
    namedNull.SetLanguage(254);
    VqString moved("abc");                              //= "" (Windows-1252, neutral)
    VqString taker(std::move(moved));                   //= "abc" (Windows-1252, neutral)
    VqString escaped = Text(1, 1, "\"a\\\n\x01\x81");    //= "\"a\\\n\001\201" (Windows-1252, english)
    VqString unknownSet = Text(200, 99, "\x80");        //= "€" (code set 200, language 99)
    VqString unicode = Text(253, 13, UnicodeUnits);     //= "Łx😀\xD800" (Unicode, polish)
    VqString japanese = Text(225, 20, JapaneseUnits);   //= "日本aｱ\xFFFF" (Shift_JIS, japanese)
    VqString chinese = Text(226, 21, GbkUnits);         //= "中€" (GBK, chinese simplified)
    VqString traditional = Text(227, 22, Big5Units);    //= "中€" (Big5, chinese traditional)
    VqString korean = Text(228, 23, KoreanUnits);       //= "가" (Unified Hangul, korean)
    VqString large;
    large.Fill(5000, 'x');
    std::vector<VqString> texts = {"one", Null<VqString>()};  //= std::vector of length 2, capacity 2 = {"one" (Windows-1252, neutral), {NULL}}
    std::map<VqInt64, VqString> byNumber = {{VqInt64(7), "seven"}};  //= std::map with 1 element = {[7] = "seven" (Windows-1252, neutral)}
    VqIString simple("Gro\xDF");                        //= "Groß"
    VqIString nullSimple;                               //= null text
    VqIString emptySimple("x", 0);                      //= ""
    emptySimple = nullSimple;
    VqCaseIString flagged("Ab");                        //= "Ab" (accents, raw, flags 0x01)
    flagged.SetFlags(VqIStringFlag_Accents | VqIStringFlag_Raw | 1);
    const vq::IStringText& base = simple;               //= "Groß"

    VqChar freeChar(0xE9, 1, 3);                        //= 'é' (Windows-1252, french)
    VqChar quote('\'');                                 //= '\'' (Windows-1252, neutral)
    VqChar place = city[1];                             //= 'ó' at 1 (ISO 8859-2, polish)
    VqChar widePlace = japanese[1];                     //= '本' at 1 (Shift_JIS, japanese)
    VqChar outside = city[99];                          //= no character
    VqString shrinking("abcdef");
    VqChar gone = shrinking[5];                         //= no character any more at byte 5
    shrinking = "a";

    // Numbers and truth
    VqInt64 numbers[] = {VqInt64(std::numeric_limits<std::int64_t>::min()), -1};  //= {-9223372036854775808, -1}
    VqBoolean truths[] = {1, 0, Null<VqBoolean>(), 1};  //= {TRUE, FALSE, {NULL}, byte 200}
    truths[3].value = 200;
    VqSeal seal;                                        //= 281470681612284
    seal.ConvertFrom(VqInt64(std::int64_t{0xFFFE'FFFD'FFFC}));
    Nullables nullables;                                //= {c = 97 'a', uc = 200 '\310', s = -5, us = 65535, i = -2147483647, u = 4294967295, l = 7, ul = {NULL}, f = 1.5, d = {NULL}, i64 = -9}

    // Dates and times
    VqDate date(2005, 3, 7);                            //= 2005-03-07
    VqDate dates[] = {Null<VqDate>(), {2005, -1, 7}, {-1, -1, -1}, {-44, 3, 15}};  //= {{NULL}, 2005-*-07, *-*-*, -0044-03-15}
    VqTime times[] = {{0, 5, 9}, Null<VqTime>(), {-1, 5, 0}};  //= {00:05:09, {NULL}, -01:05:00}
    VqDateTime moments[] = {{date, times[0]}, {dates[0], times[1]}, {date, times[1]}};  //= {2005-03-07T00:05:09, {NULL}, 2005-03-07T{NULL}}
    d_Date stdDate(-44, 3, 15);                         //= -0044-03-15
    d_Time stdTime(12, 5, 9.25F, 1, 0);                 //= 13:05:09.25+01:00
    d_Time westTime(12, 0, 0, -3, -30);                 //= 09:-30:00.00-03:30
    d_Time oddTime(0, 0, 0, 0, -30);                    //= 00:-30:00.00-00:30
    d_Time mixedZone(0, 0, 0, -3, 30);                  //= -03:30:00.00-03:+30
    d_Timestamp timestamp(stdDate, stdTime);            //= -0044-03-15T13:05:09.25+01:00
    d_Interval intervals[] = {Seconds(-93784.5F), Seconds(0.1F), Seconds(1e10F), Seconds(16777216)};  //= {-93784.5, 0.1, 1e+10, 16777216}
    d_Interval infinite = Seconds(std::numeric_limits<float>::infinity());  //= inf

    // Bytes
    VqBlob blobs[] = {{"\x07\xFF", 2L}, {"a", 1L}, {}, Null<VqBlob>()};  //= {2 bytes: 07 ff, 1 byte: 61, 0 bytes, {NULL}}
    VqBlob longBlob(40L);                               //= 40 bytes: 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00...
    unsigned char lowKey[] = {0, 1}, highKey[] = {255};
    VqIdxBounds bounds;                                 //= from 2 bytes: 00 01 to 1 byte: ff
    bounds.lowKey = lowKey;
    bounds.lowKeyLength = sizeof lowKey;
    bounds.highKey = highKey;
    bounds.highKeyLength = sizeof highKey;
    VqIdxBounds openBounds;                             //= from the first key to the last key

    // Identifiers and references
    VqObjId objIds[] = {{{}, 7, 42, 1}, {}, {{}, 7, 0, 0}};  //= {(1-42#7), {NULL}, {NULL} (0-0#7)}
    VqDBOId dbObjIds[] = {{objIds[0], 3}, {}};          //= {(3:1-42#7), {NULL}}
    VqClassId classIds[] = {{{}, 12, 3}, Null<VqClassId>()};  //= {(12v3), {NULL}}
    VqRef refs[3];                                      //= {(3:1-42#7,12v3), {NULL}, {NULL} (65535:0-0#0,0v0)}
    refs[0] = dbObjIds[0];
    refs[0] = classIds[0];
    refs[2].database = VqRef::UnresolvedDatabase;
    VqLocalRef localRefs[2];                            //= {(1-42#7,12v3), {NULL}}
    localRefs[0] = refs[0];

    // Managers and what they make
    VqTypeMgr manager(5);                               //= current table, level 5
    VqTypeMgr legacyManager(3);                         //= legacy table, level 3
    //= *manager.table_[11]: VqString, 16 bytes in memory, varying size on disk
    VqTypeId typeId = VqTypeId_VqDate;                  //= VqTypeId_VqDate (12)
    VqTypeId noType = static_cast<VqTypeId>(57);        //= no type (57)
    VqTypeConvertData& exchange = *manager.ConvertTo(VqTypeId_VqBoolean, truths + 1, 2);  //= 2 values of VqString = {"0" (Windows-1252, neutral), {NULL}}
    std::int32_t longs[] = {5, -6};
    VqTypeConvertData& scalars = *VqTypeConvertData::Make(VqTypeId_long, 2, longs, nullptr);  //= 2 values of long, not owned = {5, -6}
    VqTypeConvertData& released = *VqTypeConvertData::Make(VqTypeId_long, 2, longs, nullptr);  //= released
    released.type = VqTypeConvertData::Released;
    VqTypeDescriptor row = {};                          //= VqDate, 4 bytes in memory, fixed size on disk
    row.name = "VqDate";
    row.memoryLength = 4;
    row.fixed = 1;

    // What never was a value, and what points nowhere
    Raw<VqString> rawString;
    //= *(VqString*)rawString.storage: unreadable text at 0x5a5a5a5a5a5a5a5a (code set 90, language 90)
    Raw<VqIString> rawIString;
    //= *(VqIString*)rawIString.storage: unreadable text at 0x5a5a5a5a5a5a5a5a (flags 0x5a)
    Raw<VqBlob> rawBlob;
    //= *(VqBlob*)rawBlob.storage: unreadable
    Raw<VqTypeMgr> rawManager;
    //= *(VqTypeMgr*)rawManager.storage: unreadable
    VqTypeConvertData& wild = *VqTypeConvertData::Make(VqTypeId_VqString, 3, &rawBlob, nullptr);  //= 3 values of VqString, not owned = {unreadable}
    wild.data = reinterpret_cast<void*>(16);
    VqIdxBounds wildBounds = bounds;                    //= from 2 bytes: 00 01 to 1 byte: unreadable at 0x10
    wildBounds.highKey = reinterpret_cast<void*>(16);

    Ready();

    for (VqTypeConvertData* data : {&exchange, &scalars, &released, &wild}) delete data;
}
// clang-format on

}  // namespace

int main() { Run(); }
