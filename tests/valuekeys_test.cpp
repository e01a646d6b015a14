// Keys of the value classes: their order against that of the classes, what stored dates match, stored blobs, hashes.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "rowvalues.h"
#include "testsupport.h"
#include "vqtm.h"

using namespace vqtest;

namespace {

constexpr unsigned char disk[] = {VqFormat_LittleEndian, VqFormat_BigEndian};
constexpr unsigned char forms[] = {VqFormat_Memory, VqFormat_LittleEndian, VqFormat_BigEndian};
constexpr std::uint32_t Multiplier = 1103515245;

const VqTypeMgr manager(5);

// A value in all forms.
class Key {
  public:
    Key(char id, const void* value) : id_(id), value_(value) {
        for (const unsigned char format : disk) {
            ByteVector& bytes = stored_[format - 1];
            bytes.resize(manager.DiskLenGet(id, value, format, 1, VqFormat_Memory));
            manager.Store(id, bytes.data(), value, format, 1);
        }
    }

    const unsigned char* In(unsigned char format) const {
        return format == VqFormat_Memory ? static_cast<const unsigned char*>(value_) : stored_[format - 1].data();
    }
    long Compare(const Key& other, unsigned char format, int flags = VqCmp_Exact) const {
        int error = 77;
        const long result =
            manager.Cmp(id_, 0, In(format), 0, other.In(format), static_cast<unsigned short>(flags), 1, format, error);
        EXPECT_EQ(error, VqStatus_Ok);
        return result;
    }
    unsigned long Hash(unsigned char format) const {
        int error = 77;
        const unsigned long code = manager.Hash(id_, 0, In(format), 1, format, error);
        EXPECT_EQ(error, VqStatus_Ok);
        return code;
    }
    friend std::ostream& operator<<(std::ostream& out, const Key& key) {
        return out << Hex(key.stored_[1].data(), key.stored_[1].size());
    }

  private:
    char id_;
    const void* value_;
    ByteVector stored_[2];
};

// --- Random values, near each other and at the ends of their range; -1 is the wildcard of dates

std::int8_t RandomField(std::mt19937_64& random, bool wildcards = true) {
    static const std::int8_t pool[] = {0, 1, 2, 12, 59, 127, -128, -2, -1};
    return pool[random() % (std::size(pool) - !wildcards)];
}

VqDate RandomDate(std::mt19937_64& random, bool wildcards) {
    static const std::int16_t years[] = {2005, 2006, 255, -256, 0, -2, 32767, -32768, -1};
    return VqDate(years[random() % (std::size(years) - !wildcards)], RandomField(random, wildcards),
                  RandomField(random, wildcards));
}
VqDate RandomPlainDate(std::mt19937_64& random) { return RandomDate(random, false); }

VqTime RandomTime(std::mt19937_64& random) {
    return VqTime(RandomField(random), RandomField(random), RandomField(random));
}
VqDateTime RandomDateTime(std::mt19937_64& random) { return VqDateTime(RandomPlainDate(random), RandomTime(random)); }

VqBoolean RandomBoolean(std::mt19937_64& random) {
    VqBoolean boolean(static_cast<long>(random() % 2));
    if (random() % 3 == 0) boolean.SetNullValue();
    return boolean;
}

VqSeal RandomSeal(std::mt19937_64& random) {
    static const std::uint16_t words[] = {0, 1, 0x00FF, 0x0100, 0x8000, 0xFFFF};
    VqSeal seal;
    for (std::uint16_t* word : {&seal.high, &seal.middle, &seal.low}) *word = words[random() % std::size(words)];
    return seal;
}

// In the years around the change of calendars, and no date at all as often as not.
d_Date RandomStdDate(std::mt19937_64& random) {
    d_Date date(static_cast<short>(1580 + random() % 6), 1, 1);
    date.month = static_cast<std::int8_t>(random() % 16);
    date.day = static_cast<std::int8_t>(random());
    return date;
}
d_Time RandomStdTime(std::mt19937_64& random) {
    d_Time time(0);
    for (std::int8_t* field : {&time.tz_hour, &time.tz_minute, &time.hour, &time.minute}) {
        *field = random() % 2 != 0 ? RandomField(random) : std::int8_t{0};
    }
    time.second = RandomField(random);
    time.hundredths = static_cast<std::int8_t>(random());
    return time;
}
d_Timestamp RandomTimestamp(std::mt19937_64& random) {
    static const std::int16_t years[] = {-32768, 1582, 2005, 32767};
    d_Timestamp timestamp(RandomStdDate(random));
    timestamp.date.year = years[random() % std::size(years)];
    timestamp.time = RandomStdTime(random);
    return timestamp;
}

VqBlob NullBlob() {
    VqBlob blob;
    blob.SetNullValue();
    return blob;
}
VqBlob RandomBlob(std::mt19937_64& random) {
    const std::string bytes(random() % 4, "\0a\x7F\x80"[random() % 4]);
    return random() % 8 == 0 ? NullBlob() : VqBlob(bytes.data(), static_cast<long>(bytes.size()));
}

// --- Dates: what stored keys match

// The rules step by step, on stored dates.
int MatchReference(unsigned char format, const unsigned char* a, const unsigned char* b, int flags) {
    int error;
    const auto days = [&](unsigned long at, unsigned long count) {
        return CharCompare(format, 0, a + at, 0, b + at, 0, count, error);
    };
    const bool exact = (flags & 0x10) != 0;
    const int years = ShortCompare(format, 0, a, 0, b, 0, 1, error);
    if (years != 0 && (exact || b[0] != 0xFF || b[1] != 0xFF)) return years;
    if (exact) return days(2, 2);
    if (b[2] == 0xFF) return b[3] == 0xFF ? 0 : days(3, 1);
    return b[3] == 0xFF ? days(2, 1) : days(2, 2);
}

TEST(DateKeys, AreComparedByTheRulesStepByStep) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 100000; ++i) {
        const VqDate dateA = RandomDate(random, true), dateB = RandomDate(random, true);
        const Key a(VqTypeId_VqDate, &dateA), b(VqTypeId_VqDate, &dateB);
        for (const int flags : {0, +VqCmp_Exact, +VqCmp_KeyOnly, +VqCmp_Default}) {
            ASSERT_EQ(a.Compare(b, VqFormat_Memory, flags), Sign(dateA != dateB)) << a << " and " << b;
            for (const unsigned char format : disk) {
                ASSERT_EQ(a.Compare(b, format, flags), MatchReference(format, a.In(format), b.In(format), flags))
                    << a << " and " << b << " under " << flags;
            }
        }
    }
}

// --- All forms agree with the class

// `expected` gives the order of two values, `word` what a value's code is made of.
template <class Value, class Expected, class Word>
void FormsAgree(char id, Value (*make)(std::mt19937_64&), Expected expected, Word word) {
    std::mt19937_64 random(11);
    for (int i = 0; i < 30000; ++i) {
        const Value valueA = make(random), valueB = random() % 8 != 0 ? make(random) : valueA;
        const Key a(id, &valueA), b(id, &valueB);
        for (const unsigned char format : forms) {
            ASSERT_EQ(Sign(a.Compare(b, format)), expected(valueA, valueB)) << a << " and " << b;
            ASSERT_EQ(a.Hash(format), word(valueA) * Multiplier) << a;
        }
    }
}

const auto byOperator = [](const auto& a, const auto& b) { return Sign(a != b); };

std::uint32_t DateWord(const VqDate& date) {
    return static_cast<std::uint32_t>(date.year * 65536LL + date.month * 256 + date.day);
}
std::uint32_t TimeWord(const VqTime& time) {
    return static_cast<std::uint32_t>(time.hour * 65536 + time.minute * 256 + time.second);
}

TEST(ValueKeys, AgreeWithTheirClassInEveryForm) {
    FormsAgree(VqTypeId_VqDate, RandomPlainDate, byOperator, DateWord);
    FormsAgree(VqTypeId_VqTime, RandomTime, byOperator, TimeWord);
    FormsAgree(VqTypeId_VqDateTime, RandomDateTime, byOperator,
               [](const VqDateTime& t) { return DateWord(t.date) ^ TimeWord(t.time); });
    FormsAgree(
        VqTypeId_VqBoolean, RandomBoolean, [](const VqBoolean& a, const VqBoolean& b) { return (a > b) - (a < b); },
        [](const VqBoolean& b) { return b.IsNullValue() ? 0xFFFFFFFFu : b.value; });
    FormsAgree(VqTypeId_VqSeal, RandomSeal, byOperator,
               [](const VqSeal& s) { return std::uint32_t{s.high} ^ s.middle ^ s.low; });
    FormsAgree(VqTypeId_d_Date, RandomStdDate, byOperator, [](d_Date date) {
        date.setAbsDate(date.getAbsDate() + 1);
        return DateWord(VqDate(date.year, date.month, date.day));
    });
    FormsAgree(VqTypeId_VqBlob, RandomBlob, byOperator,
               [](const VqBlob& blob) { return static_cast<std::uint32_t>(blob.Length()); });
}

// Stored keys are told apart to the hundredth; where the operators tell two apart, both orders agree.
template <class Value>
void StoredOrderIsFiner(char id, Value (*make)(std::mt19937_64&), d_Time& (*timeOf)(Value&)) {
    std::mt19937_64 random(3);
    int finer = 0;
    for (int i = 0; i < 60000; ++i) {
        Value valueA = make(random), valueB = random() % 2 != 0 ? make(random) : valueA;
        d_Time &timeA = timeOf(valueA), &timeB = timeOf(valueB);
        const std::int8_t near = static_cast<std::int8_t>(timeA.second / 2 + static_cast<int>(random() % 3));
        timeB.second = random() % 4 != 0 ? near : RandomField(random);
        timeB.hundredths = RandomField(random);
        const Key a(id, &valueA), b(id, &valueB);
        const int order = Sign(valueA != valueB);
        const int hundredths = Sign(timeA.second * 100 + timeA.hundredths - timeB.second * 100 - timeB.hundredths);
        ASSERT_EQ(Sign(a.Compare(b, VqFormat_Memory)), order) << a << " and " << b;
        for (const unsigned char format : disk) {
            ASSERT_EQ(Sign(a.Compare(b, format)), order != 0 ? order : hundredths) << a << " and " << b;
            ASSERT_EQ(a.Hash(format), a.Hash(VqFormat_Memory)) << a;
        }
        if (order != 0) continue;
        ASSERT_EQ(a.Hash(VqFormat_Memory), b.Hash(VqFormat_Memory)) << a << " and " << b;
        finer += hundredths != 0;
    }
    EXPECT_GT(finer, 100);
}

TEST(StdTimeKeys, AreFinerStored) {
    StoredOrderIsFiner<d_Time>(VqTypeId_d_Time, RandomStdTime, [](d_Time& time) -> d_Time& { return time; });
    StoredOrderIsFiner<d_Timestamp>(VqTypeId_d_Timestamp, RandomTimestamp,
                                    [](d_Timestamp& timestamp) -> d_Time& { return timestamp.time; });
}

TEST(ValueKeys, EndWithTheirBuffer) {
    ByteVector bytes(60);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
    for (const char id :
         {VqTypeId_VqDate, VqTypeId_VqTime, VqTypeId_VqDateTime, VqTypeId_d_Date, VqTypeId_d_Time, VqTypeId_d_Timestamp,
          VqTypeId_VqBoolean, VqTypeId_VqSeal, VqTypeId_VqObjId, VqTypeId_VqClassId, VqTypeId_VqRef}) {
        for (const unsigned char format : forms) {
            const unsigned long size = format == VqFormat_Memory
                                           ? manager.MemLenGet(id, 1)
                                           : manager.DiskLenGet(id, bytes.data(), format, 1, VqFormat_Memory);
            for (unsigned long length = 1; length <= 3 * size; ++length) {
                SCOPED_TRACE(testing::Message() << manager.NameGet(id, nullptr) << " " << length);
                const Block block(bytes.data(), length);
                int errors[] = {77, 77, 77}, status;
                EXPECT_EQ(manager.Cmp(id, length, block.Get(), 0, bytes.data(), VqCmp_Exact, 3, format, errors[0]), 0);
                EXPECT_EQ(manager.Cmp(id, 0, bytes.data(), length, block.Get(), 0, 3, format, errors[1]), 0);
                EXPECT_EQ(manager.Hash(id, length, block.Get(), 3, format, errors[2]),
                          manager.Hash(id, 0, bytes.data(), length / size, format, status));
                for (const int error : errors) EXPECT_EQ(error, length < 3 * size ? VqStatus_BufferEnd : VqStatus_Ok);
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

// Where an array ends, as its total and its bytes tell.
std::size_t EndOf(const ByteVector& bytes, unsigned char format) {
    if (bytes.size() < 4) return 4;
    std::int32_t field;
    LongStore(&field, bytes.data(), format, 1);
    return static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), 4ull + static_cast<std::uint32_t>(field)));
}

// What can be read of an array: its whole blobs, as the lengths tell.
std::vector<VqBlob> ReadableBlobs(const ByteVector& bytes, unsigned char format) {
    std::vector<VqBlob> blobs;
    const std::size_t end = EndOf(bytes, format);
    std::int32_t field;
    for (std::size_t at = 4; at + 4 <= end; at += static_cast<std::size_t>(std::max(field, 0))) {
        LongStore(&field, bytes.data() + at, format, 1);
        at += 4;
        if (field > 0 && static_cast<std::size_t>(field) > end - at) break;
        blobs.push_back(field < 0 ? NullBlob() : VqBlob(bytes.data() + at, static_cast<long>(field)));
    }
    return blobs;
}

// So many of these blobs are all that the array has.
bool AreAll(const std::vector<VqBlob>& blobs, std::size_t n, const ByteVector& bytes, unsigned char format) {
    std::size_t at = 4;
    for (std::size_t i = 0; i < n; ++i) at += 4 + static_cast<std::size_t>(blobs[i].Length());
    return at == EndOf(bytes, format);
}

void ExpectWholeBlobs(const ByteVector& a, const ByteVector& b, unsigned char format, unsigned long count,
                      bool lengths = true) {
    const std::vector<VqBlob> blobsA = ReadableBlobs(a, format), blobsB = ReadableBlobs(b, format);
    const Block blockA(a.data(), a.size()), blockB(b.data(), b.size());
    const auto lengthA = static_cast<unsigned long>(lengths ? a.size() : 0);
    const auto lengthB = static_cast<unsigned long>(lengths ? b.size() : 0);
    const std::string trace = Hex(a.data(), a.size()) + " and " + Hex(b.data(), b.size());
    const auto status = [&](std::size_t readable) { return readable < count ? VqStatus_BufferEnd : VqStatus_Ok; };

    const std::size_t pairs = std::min(blobsA.size(), blobsB.size());
    std::size_t compared = 0;
    int expected = 0, error = 77;
    while (compared < std::min<std::size_t>(pairs, count) && expected == 0) {
        expected = blobsA[compared] != blobsB[compared];
        ++compared;
    }
    ASSERT_EQ(BlobCompare(format, lengthA, blockA.Get(), lengthB, blockB.Get(), 0, count, error), expected) << trace;
    const bool ended = AreAll(blobsA, compared, a, format) || AreAll(blobsB, compared, b, format);
    ASSERT_EQ(error, status(expected == 0 || ended ? compared : count)) << trace;

    std::uint32_t word = 0;
    for (std::size_t i = 0; i < std::min<std::size_t>(blobsA.size(), count); ++i) {
        word ^= static_cast<std::uint32_t>(blobsA[i].Length());
    }
    ASSERT_EQ(BlobHash(format, lengthA, blockA.Get(), count, error), word * Multiplier) << trace;
    ASSERT_EQ(error, status(blobsA.size())) << trace;
}

// Every truncation, and every change of one byte, on either side.
TEST(BlobKeys, OfDamagedArraysAreThoseThatAreWhole) {
    for (const unsigned char format : disk) {
        const ByteVector whole = StoredBlobs({VqBlob("abc", 3), NullBlob(), VqBlob(), VqBlob("de", 2)}, format);
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
            for (unsigned long count = 0; count <= 5; ++count) {
                ExpectWholeBlobs(bytes, whole, format, count);
                ExpectWholeBlobs(whole, bytes, format, count);
            }
        }
    }
}

// Without lengths the totals tell where the arrays end, behind a difference as well.
TEST(BlobKeys, EndWithTheirTotal) {
    const ByteVector two = StoredBlobs({VqBlob("a", 1), VqBlob("b", 1)}, VqFormat_BigEndian);
    const ByteVector three = StoredBlobs({VqBlob("a", 1), VqBlob("c", 1), VqBlob("d", 1)}, VqFormat_BigEndian);
    for (unsigned long count = 0; count <= 3; ++count) {
        ExpectWholeBlobs(two, three, VqFormat_BigEndian, count, false);
        ExpectWholeBlobs(three, two, VqFormat_BigEndian, count, false);
    }
}

}  // namespace
