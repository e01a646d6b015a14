#include "keynotes.h"

#include <iterator>

namespace {

constexpr char Number[] = "by number";
constexpr char NullThenNumber[] = "null first, then by number";
constexpr char Floating[] = "by number; 0 and -0 are equal, nan sorts before whatever it is compared with";
constexpr char NullThenFloating[] = "null first, then by number as the plain type";

constexpr char SignedBits[] = "its bits, with its sign";
constexpr char Bits[] = "its bits";
constexpr char Halves[] = "both halves of its bits";
constexpr char FloatBits[] = "its bits, so that 0 and -0 differ";
constexpr char NullBits[] = "a number of its own for null, else as the plain type";

constexpr char AtNumber[] = "at its number";
constexpr char AtFloat[] = "at its number; what selects anything is at least 1.2e-7";
constexpr char NullAtNumber[] = "at its number, null a step below the least";

constexpr char Letters[] = "at the part of all texts below it, by how often letters follow each other";

constexpr KeyNotes Notes[] = {
    {VqTypeId_char, "by number: 0x80 to 0xff before 0x00", SignedBits, AtNumber},
    {VqTypeId_short, Number, SignedBits, AtNumber},
    {VqTypeId_long, Number, Bits, AtNumber},
    {VqTypeId_double, Floating, "both halves of its bits, so that 0 and -0 differ", AtFloat},
    {VqTypeId_float, Floating, FloatBits, AtFloat},
    {VqTypeId_VqWord, Number, Bits, AtNumber},
    {VqTypeId_VqDWord, Number, Bits, AtNumber},
    {VqTypeId_int, Number, Bits, AtNumber},
    {VqTypeId_unsigned, Number, Bits, AtNumber},
    {VqTypeId_enum, Number, Bits, AtNumber},
    {VqTypeId_VqByte, Number, Bits, AtNumber},
    {VqTypeId_VqString, "null first, then by the language's alphabet; as a pattern without exact and key-only",
     "its collation orders", Letters},
    {VqTypeId_VqDate, "by fields; -1 is any in memory, and in the second of two stored ones without exact",
     "its fields", "at its day number; a field of -1 covers all of the year, the month, everything"},
    {VqTypeId_VqTime, "by fields", "its fields", "at its seconds since midnight"},
    {VqTypeId_BlockId, Number, Bits, AtNumber},
    {VqTypeId_VqObjId, "by high, then low; the block does not count. Stored big-endian the bytes decide as they lie",
     "high and low; stored, as if little-endian", "at high times 65535 plus low"},
    {VqTypeId_VqClassId, "null first, then by class, then version. Stored big-endian the bytes decide as they lie",
     "class and version; stored, as if little-endian", "1 for every key"},
    {VqTypeId_VqRef,
     "in memory by object, then database; stored by database, then object, and big-endian as the bytes lie",
     "database, high and low; stored, as if little-endian", "at its place among all references that there could be"},
    {VqTypeId_VqBlob, "null first, then by bytes, then by length", "its length, which for null is 0",
     "at the number that its first six bytes make"},
    {VqTypeId_VqDateTime, "by fields; in memory -1 in the date is any", "the fields of both",
     "at its seconds since day 0"},
    {VqTypeId_VqIString, "by weights: a before A, accents do not count; as a pattern without exact and key-only",
     "0 for every key", Letters},
    {VqTypeId_VqCaseIString, "by weights without case; as a pattern without exact and key-only", "0 for every key",
     Letters},
    {VqTypeId_d_Date, "by day number", "its fields, or those of the day that it counts as", "at its day number"},
    {VqTypeId_d_Time, "by the clock of its zone; in memory less than a second apart is equal",
     "hour and minute on the clock of its zone", "at its seconds since midnight, hundredths included"},
    {VqTypeId_d_Timestamp, "by day, then by the clock of its zone; in memory less than a second apart is equal",
     "those of date and time", "at its seconds since day 0, hundredths included"},
    {VqTypeId_d_Interval, Floating, FloatBits, "at its seconds; what selects anything is at least 1.2e-7"},
    {VqTypeId_VqInt64, Number, Halves, AtNumber},
    {VqTypeId_VqBoolean, "null, FALSE, TRUE", "its byte, with its sign", "FALSE at 0, TRUE at 1, null at -1"},
    {VqTypeId_VqNull_char, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_uchar, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_short, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_ushort, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_int, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_unsigned, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_long, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_ulong, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqNull_float, NullThenFloating, NullBits, NullAtNumber},
    {VqTypeId_VqNull_double, NullThenFloating, NullBits, NullAtNumber},
    {VqTypeId_VqNull_VqInt64, NullThenNumber, NullBits, NullAtNumber},
    {VqTypeId_VqSeal, Number, "its three words", AtNumber},
};

constexpr bool EveryRowIsInItsPlace() {
    for (int i = 0; i < VqTypeId_illegal; ++i) {
        if (Notes[i].id != i) return false;
    }
    return std::size(Notes) == VqTypeId_illegal;
}
static_assert(EveryRowIsInItsPlace());

}  // namespace

const KeyNotes& KeyNotesOf(VqTypeId id) { return Notes[id]; }
