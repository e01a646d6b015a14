// Keys of the value classes: their comparison against the classes' own, what stored dates match, stored blobs, hashes.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "rowvalues.h"
#include "testsupport.h"
#include "vqtm.h"

using namespace vqtest;

namespace {

constexpr unsigned char disk[] = {VqFormat_LittleEndian, VqFormat_BigEndian};
constexpr std::uint32_t Multiplier = 1103515245;

int Compared(VqCompareFunc compare, unsigned char format, const void* a, const void* b,
             unsigned short flags = VqCmp_Exact) {
    int error = 77;
    const int result = static_cast<int>(compare(format, 0, a, 0, b, flags, 1, error));
    EXPECT_EQ(error, VqStatus_Ok);
    return result;
}

unsigned long Hashed(VqHashFunc hash, unsigned char format, const void* values, unsigned long count = 1) {
    int error = 77;
    const unsigned long code = hash(format, 0, values, count, error);
    EXPECT_EQ(error, VqStatus_Ok);
    return code;
}

// Fields that are near each other, at the ends of their range, or the wildcard.
std::int8_t RandomField(std::mt19937_64& random, bool wildcards) {
    static const std::int8_t pool[] = {0, 1, 2, 12, 59, 127, -128, -2, -1};
    return pool[random() % (std::size(pool) - !wildcards)];
}

VqDate RandomDate(std::mt19937_64& random, bool wildcards) {
    static const std::int16_t years[] = {2005, 2006, 255, 0, -2, 32767, -32768, -1};
    return VqDate(years[random() % (std::size(years) - !wildcards)], RandomField(random, wildcards),
                  RandomField(random, wildcards));
}
VqTime RandomTime(std::mt19937_64& random) {
    return VqTime(RandomField(random, true), RandomField(random, true), RandomField(random, true));
}
d_Time RandomStdTime(std::mt19937_64& random) {
    d_Time time(0);
    for (std::int8_t* field : {&time.tz_hour, &time.tz_minute, &time.hour, &time.minute}) {
        *field = static_cast<std::int8_t>(random() % 2 != 0 ? RandomField(random, true) : 0);
    }
    time.second = RandomField(random, true);
    time.hundredths = static_cast<std::int8_t>(random());
    return time;
}

// --- Dates: what stored keys match

// The rules step by step, on stored dates.
int MatchReference(unsigned char format, const unsigned char* a, const unsigned char* b, unsigned short flags) {
    int error;
    const auto days = [&](unsigned long at, unsigned long count) {
        return CharCompare(format, 0, a + at, 0, b + at, flags, count, error);
    };
    const bool exact = (flags & 0x10) != 0;
    const int years = ShortCompare(format, 0, a, 0, b, flags, 1, error);
    if (years != 0 && (exact || b[0] != 0xFF || b[1] != 0xFF)) return years;
    if (exact) return days(2, 2);
    if (b[2] == 0xFF) return b[3] == 0xFF ? 0 : days(3, 1);
    return b[3] == 0xFF ? days(2, 1) : days(2, 2);
}

TEST(DateKeys, AreComparedByTheRulesStepByStep) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 100000; ++i) {
        const VqDate a = RandomDate(random, true), b = RandomDate(random, true);
        ASSERT_EQ(Compared(DateCompare, VqFormat_Memory, &a, &b), Sign(a != b));
        for (const unsigned char format : disk) {
            unsigned char storedA[4], storedB[4];
            DateStore(storedA, &a, format, 1);
            DateStore(storedB, &b, format, 1);
            for (const int flags : {0, +VqCmp_Exact, +VqCmp_KeyOnly, +VqCmp_Default}) {
                const auto bits = static_cast<unsigned short>(flags);
                ASSERT_EQ(Compared(DateCompare, format, storedA, storedB, bits),
                          MatchReference(format, storedA, storedB, bits))
                    << Hex(storedA, 4) << " and " << Hex(storedB, 4) << " under " << flags;
            }
        }
    }
}

TEST(DateKeys, FieldsOfMinusOneMatchWhatIsSearched) {
    static const VqDate date(2005, 3, 7);
    static const struct {
        VqDate key;
        int inMemory, searched, exact;  // the date before the key, like it, behind it
        int reversed;                   // the key, stored, before the date
    } cases[] = {
        {{2005, 3, 7}, 0, 0, 0, 0},    {{2005, -1, -1}, 0, 0, 1, -1},  {{2005, -1, 7}, 0, 0, 1, -1},
        {{2005, 3, -1}, 0, 0, 1, -1},  {{2005, 4, -1}, -1, -1, -1, 1}, {{2005, -1, 8}, -1, -1, 1, -1},
        {{2004, -1, -1}, 1, 1, 1, -1}, {{-1, 3, 7}, 0, 0, 1, -1},      {{-1, -1, -1}, 0, 0, 1, -1},
        {{-1, 2, -1}, 1, 1, 1, -1},    {{-1, -1, 6}, 1, 1, 1, -1},     {{2006, -1, -1}, -1, -1, -1, 1},
        {{0x00FF, 3, 7}, 1, 1, 1, -1},  // half a wildcard is none
        {{-256, 3, 7}, 1, 1, 1, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.key.year << " " << int{c.key.month} << " " << int{c.key.day});
        EXPECT_EQ(Compared(DateCompare, VqFormat_Memory, &date, &c.key), c.inMemory);
        EXPECT_EQ(Compared(DateCompare, VqFormat_Memory, &c.key, &date), -c.inMemory);
        for (const unsigned char format : disk) {
            unsigned char storedDate[4], storedKey[4];
            DateStore(storedDate, &date, format, 1);
            DateStore(storedKey, &c.key, format, 1);
            EXPECT_EQ(Compared(DateCompare, format, storedDate, storedKey, 0), c.searched);
            EXPECT_EQ(Compared(DateCompare, format, storedDate, storedKey, VqCmp_Exact), c.exact);
            EXPECT_EQ(Compared(DateCompare, format, storedKey, storedDate, 0), c.reversed);
        }
    }
}

// --- All forms agree with the class

template <class Value>
struct Functions {
    VqCompareFunc compare;
    VqHashFunc hash;
    VqStoreFunc store;
};

// Random values in memory and stored: `expected` gives the order of two, `word` what a key's code is made of.
template <class Value, class Make, class Expected, class Word>
void FormsAgree(const Functions<Value>& row, Make make, Expected expected, Word word) {
    std::mt19937_64 random(11);
    for (int i = 0; i < 30000; ++i) {
        const Value a = make(random), b = random() % 8 != 0 ? make(random) : a;
        const int order = expected(a, b);
        const unsigned long code = word(a) * Multiplier;
        ASSERT_EQ(Sign(Compared(row.compare, VqFormat_Memory, &a, &b)), order) << i;
        ASSERT_EQ(Hashed(row.hash, VqFormat_Memory, &a), code) << i;
        for (const unsigned char format : disk) {
            unsigned char storedA[16], storedB[16];
            row.store(storedA, &a, format, 1);
            row.store(storedB, &b, format, 1);
            ASSERT_EQ(Sign(Compared(row.compare, format, storedA, storedB)), order)
                << Hex(storedA, 16) << " and " << Hex(storedB, 16);
            ASSERT_EQ(Hashed(row.hash, format, storedA), code) << Hex(storedA, 16);
        }
    }
}

const auto byOperator = [](const auto& a, const auto& b) { return Sign(a != b); };

std::uint32_t Word(const VqDate& date) {
    return static_cast<std::uint32_t>(date.year * 65536LL + date.month * 256 + date.day);
}
std::uint32_t Word(const VqTime& time) {
    return static_cast<std::uint32_t>(time.hour * 65536 + time.minute * 256 + time.second);
}

TEST(ValueKeys, AgreeWithTheirClassInEveryForm) {
    const auto date = [](auto& random) { return RandomDate(random, false); };
    FormsAgree<VqDate>({DateCompare, DateHash, DateStore}, date, byOperator, [](const VqDate& d) { return Word(d); });
    FormsAgree<VqTime>({TimeCompare, TimeHash, TimeStore}, RandomTime, byOperator,
                       [](const VqTime& t) { return Word(t); });
    FormsAgree<VqDateTime>(
        {DaTimeCompare, DaTimeHash, DaTimeStore},
        [&](auto& random) { return VqDateTime(date(random), RandomTime(random)); }, byOperator,
        [](const VqDateTime& t) { return Word(t.date) ^ Word(t.time); });
    FormsAgree<VqBoolean>(
        {BooleanCompare, BooleanHash, BooleanStore},
        [](auto& random) {
            VqBoolean boolean(static_cast<long>(random() % 2));
            if (random() % 3 == 0) boolean.SetNullValue();
            return boolean;
        },
        [](const VqBoolean& a, const VqBoolean& b) { return (a > b) - (a < b); },
        [](const VqBoolean& b) { return b.IsNullValue() ? 0xFFFFFFFFu : b.value; });
    FormsAgree<VqSeal>(
        {SealCompare, SealHash, SealStore},
        [](auto& random) {
            VqSeal seal;
            for (std::uint16_t* word : {&seal.high, &seal.middle, &seal.low}) {
                static const std::uint16_t words[] = {0, 1, 0x00FF, 0x0100, 0x8000, 0xFFFF};
                *word = words[random() % std::size(words)];
            }
            return seal;
        },
        byOperator, [](const VqSeal& s) { return std::uint32_t{s.high} ^ s.middle ^ s.low; });
}

// --- Standard types

const auto sameDay = [](const d_Date& a, const d_Date& b) { return Sign(a.getAbsDate() - b.getAbsDate()); };

TEST(StdDateKeys, GoByTheDay) {
    const auto nearDates = [](auto& random) {
        d_Date date(static_cast<short>(1580 + random() % 6), 1, 1);
        date.month = static_cast<std::int8_t>(random() % 16);
        date.day = static_cast<std::int8_t>(random());
        return date;
    };
    const auto word = [](d_Date date) {
        date.setAbsDate(date.getAbsDate() + 1);
        return Word(VqDate(date.year, date.month, date.day));
    };
    FormsAgree<d_Date>({d_DateCompare, d_DateHash, d_DateStore}, nearDates, sameDay, word);

    // The days of the calendar count as VqDate's.
    for (short year = 1; year <= 9999; ++year) {
        for (unsigned short month = 1; month <= 12; ++month) {
            const d_Date date(year, month, static_cast<unsigned short>(1 + (year + 7 * month) % 28));
            if (year == 1582 && month == 10) continue;
            ASSERT_EQ(Hashed(d_DateHash, VqFormat_Memory, &date), Hashed(DateHash, VqFormat_Memory, &date))
                << year << " " << month;
        }
    }
}

// Stored keys are told apart to the hundredth; where the operators tell two apart, both orders agree.
template <class Value, class Make>
void StoredOrderIsFiner(const Functions<Value>& row, unsigned long timeAt, Make make) {
    std::mt19937_64 random(3);
    int finer = 0;
    for (int i = 0; i < 60000; ++i) {
        const Value a = make(random);
        Value b = make(random);
        if (random() % 2 != 0) {
            std::memcpy(static_cast<void*>(&b), &a, sizeof b);
            reinterpret_cast<std::int8_t*>(&b)[timeAt + 4 + random() % 2] = RandomField(random, true);
        }
        const int order = Sign(a != b);
        ASSERT_EQ(Sign(Compared(row.compare, VqFormat_Memory, &a, &b)), order);
        if (order == 0) {
            ASSERT_EQ(Hashed(row.hash, VqFormat_Memory, &a), Hashed(row.hash, VqFormat_Memory, &b));
        }
        for (const unsigned char format : disk) {
            unsigned char storedA[10], storedB[10];
            row.store(storedA, &a, format, 1);
            row.store(storedB, &b, format, 1);
            const int stored = Sign(Compared(row.compare, format, storedA, storedB));
            const auto hundredths = [&](const unsigned char* at) {
                return static_cast<signed char>(at[timeAt + 4]) * 100 + static_cast<signed char>(at[timeAt + 5]);
            };
            ASSERT_EQ(stored, order != 0 ? order : Sign(hundredths(storedA) - hundredths(storedB)))
                << Hex(storedA, timeAt + 6) << " and " << Hex(storedB, timeAt + 6);
            ASSERT_EQ(Hashed(row.hash, format, storedA), Hashed(row.hash, VqFormat_Memory, &a));
            finer += order == 0 && stored != 0;
        }
    }
    EXPECT_GT(finer, 100);
}

TEST(StdTimeKeys, AreFinerStored) {
    StoredOrderIsFiner<d_Time>({d_TimeCompare, d_TimeHash, d_TimeStore}, 0, RandomStdTime);
    StoredOrderIsFiner<d_Timestamp>({d_TimestampCompare, d_TimestampHash, d_TimestampStore}, 4, [](auto& random) {
        static const short years[] = {-32768, 1582, 2005, 32767};
        d_Timestamp timestamp(d_Date(years[random() % 4], 1, 1));
        timestamp.date.month = RandomField(random, true);
        timestamp.date.day = RandomField(random, true);
        timestamp.time = RandomStdTime(random);
        return timestamp;
    });
}

// --- Arrays of a fixed element length

TEST(ValueKeys, EndWithTheirBuffer) {
    static const struct {
        const char* name;
        VqCompareFunc compare;
        VqHashFunc hash;
        unsigned long inMemory, stored;
    } rows[] = {
        {"date", DateCompare, DateHash, 4, 4},          {"time", TimeCompare, TimeHash, 3, 3},
        {"date-time", DaTimeCompare, DaTimeHash, 8, 7}, {"d_Date", d_DateCompare, d_DateHash, 4, 4},
        {"d_Time", d_TimeCompare, d_TimeHash, 6, 6},    {"d_Timestamp", d_TimestampCompare, d_TimestampHash, 10, 10},
        {"boolean", BooleanCompare, BooleanHash, 1, 1}, {"seal", SealCompare, SealHash, 6, 6},
    };
    const ByteVector zeros(30, 0);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian, VqFormat_Memory}) {
            const unsigned long size = format == VqFormat_Memory ? row.inMemory : row.stored;
            for (unsigned long length = 1; length <= 3 * size; ++length) {
                const Block block(zeros.data(), length);
                const int expected = length < 3 * size ? VqStatus_BufferEnd : VqStatus_Ok;
                int error = 77;
                EXPECT_EQ(row.compare(format, length, block.Get(), 0, zeros.data(), VqCmp_Exact, 3, error), 0);
                EXPECT_EQ(error, expected) << length;
                error = 77;
                EXPECT_EQ(row.compare(format, 0, zeros.data(), length, block.Get(), 0, 3, error), 0);
                EXPECT_EQ(error, expected) << length;
                error = 77;
                row.hash(format, length, block.Get(), 3, error);
                EXPECT_EQ(error, expected) << length;
            }
        }
    }
}

// --- Blobs

ByteVector StoredBlobs(const std::vector<VqBlob>& blobs, unsigned char format) {
    const auto count = static_cast<unsigned long>(blobs.size());
    ByteVector bytes(BlobSizeGet(blobs.data(), VqFormat_Memory, format, count));
    BlobStore(bytes.data(), blobs.data(), format, count);
    return bytes;
}

std::vector<VqBlob> SomeBlobs() {
    std::vector<VqBlob> blobs = {VqBlob(),       VqBlob("\0", 1), VqBlob("\x7F", 1), VqBlob("\x80", 1),
                                 VqBlob("a", 1), VqBlob("ab", 2), VqBlob("abc", 3),  VqBlob(300L)};
    blobs.emplace_back().SetNullValue();
    return blobs;
}

TEST(BlobKeys, AgreeWithTheClassInEveryForm) {
    const std::vector<VqBlob> blobs = SomeBlobs();
    for (const VqBlob& a : blobs) {
        const unsigned long code = static_cast<std::uint32_t>(a.Length()) * Multiplier;
        EXPECT_EQ(Hashed(BlobHash, VqFormat_Memory, &a), code);
        for (const unsigned char format : disk)
            EXPECT_EQ(Hashed(BlobHash, format, StoredBlobs({a}, format).data()), code);
        for (const VqBlob& b : blobs) {
            EXPECT_EQ(Compared(BlobCompare, VqFormat_Memory, &a, &b), a != b);
            for (const unsigned char format : disk) {
                EXPECT_EQ(
                    Compared(BlobCompare, format, StoredBlobs({a}, format).data(), StoredBlobs({b}, format).data()),
                    a != b);
            }
        }
    }
}

// What can be read of an array: its whole blobs, as the lengths tell.
std::vector<VqBlob> ReadableBlobs(const ByteVector& bytes, unsigned char format) {
    std::vector<VqBlob> blobs;
    if (bytes.size() < 4) return blobs;
    std::int32_t field;
    LongStore(&field, bytes.data(), format, 1);
    const std::size_t end = std::min<std::size_t>(bytes.size(), std::size_t{4} + static_cast<std::uint32_t>(field));
    for (std::size_t at = 4; at + 4 <= end; at += static_cast<std::size_t>(std::max(field, 0))) {
        LongStore(&field, bytes.data() + at, format, 1);
        at += 4;
        if (field > 0 && static_cast<std::size_t>(field) > end - at) break;
        blobs.emplace_back(bytes.data() + at, static_cast<long>(field));
        if (field < 0) blobs.back().SetNullValue();
    }
    return blobs;
}

void ExpectArrays(const ByteVector& a, const ByteVector& b, unsigned char format, unsigned long count) {
    const std::vector<VqBlob> blobsA = ReadableBlobs(a, format), blobsB = ReadableBlobs(b, format);
    const std::size_t readable = std::min({blobsA.size(), blobsB.size(), static_cast<std::size_t>(count)});
    int result = 0;
    for (std::size_t i = 0; i < readable && result == 0; ++i) result = blobsA[i] != blobsB[i];

    const Block blockA(a.data(), a.size()), blockB(b.data(), b.size());
    const auto lengthA = static_cast<unsigned long>(a.size()), lengthB = static_cast<unsigned long>(b.size());
    int error = 77;
    ASSERT_EQ(BlobCompare(format, lengthA, blockA.Get(), lengthB, blockB.Get(), 0, count, error), result)
        << Hex(a.data(), a.size()) << " and " << Hex(b.data(), b.size());
    if (result == 0) {
        ASSERT_EQ(error, readable < count ? VqStatus_BufferEnd : VqStatus_Ok) << Hex(a.data(), a.size());
    }

    std::uint32_t word = 0;
    const std::size_t hashed = std::min(blobsA.size(), static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < hashed; ++i) word ^= static_cast<std::uint32_t>(blobsA[i].Length());
    ASSERT_EQ(BlobHash(format, lengthA, blockA.Get(), count, error), word * Multiplier);
    ASSERT_EQ(error, hashed < count ? VqStatus_BufferEnd : VqStatus_Ok);
}

// Every truncation, and every change of one byte, on either side.
TEST(BlobKeys, OfDamagedArraysAreThoseThatAreWhole) {
    for (const unsigned char format : disk) {
        std::vector<VqBlob> blobs = {VqBlob("abc", 3), VqBlob(), VqBlob("de", 2)};
        blobs.emplace(blobs.begin() + 1)->SetNullValue();
        const ByteVector whole = StoredBlobs(blobs, format);
        std::vector<ByteVector> damaged;
        for (std::size_t size = 1; size <= whole.size(); ++size) {
            damaged.emplace_back(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        }
        for (std::size_t at = 0; at < whole.size(); ++at) {
            for (const int byte : {0, 1, 4, 0x7F, 0x80, 0xFF, whole[at] - 1, whole[at] + 1}) {
                damaged.push_back(whole);
                damaged.back()[at] = static_cast<unsigned char>(byte);
            }
        }
        for (const ByteVector& bytes : damaged) {
            for (unsigned long count = 1; count <= blobs.size() + 1; ++count) {
                ExpectArrays(bytes, whole, format, count);
                ExpectArrays(whole, bytes, format, count);
            }
        }
    }
}

TEST(BlobKeys, TellTheEndBehindADifference) {
    const ByteVector a = StoredBlobs({VqBlob("a", 1), VqBlob("b", 1)}, VqFormat_BigEndian);
    const ByteVector b = StoredBlobs({VqBlob("a", 1), VqBlob("c", 1)}, VqFormat_BigEndian);
    for (unsigned long count = 0; count <= 3; ++count) {
        int error = 77;
        // Without lengths the totals tell where the arrays end.
        EXPECT_EQ(BlobCompare(VqFormat_BigEndian, 0, a.data(), 0, b.data(), 0, count, error), count < 2 ? 0 : -1);
        EXPECT_EQ(error, count < 3 ? VqStatus_Ok : VqStatus_BufferEnd) << count;
        BlobHash(VqFormat_BigEndian, 0, a.data(), count, error);
        EXPECT_EQ(error, count < 3 ? VqStatus_Ok : VqStatus_BufferEnd) << count;
    }
    int error = 77;
    EXPECT_EQ(BlobCompare(VqFormat_BigEndian, 0, nullptr, 0, nullptr, 0, 0, error), 0);
    EXPECT_EQ(error, VqStatus_Ok);
}

}  // namespace
