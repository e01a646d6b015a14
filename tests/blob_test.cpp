#include "blob.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <optional>
#include <sstream>
#include <utility>

#include "../src/blobdisk.h"
#include "testsupport.h"
#include "vqbase.h"
#include "vqtypes.h"

using namespace vqtest;

namespace {

// A blob's bytes; none for null.
using Content = std::optional<std::string>;

VqBlob Make(const Content& content) {
    VqBlob blob(content ? content->data() : nullptr, content ? static_cast<long>(content->size()) : 0);
    if (!content) blob.SetNullValue();
    return blob;
}

Content ContentOf(const VqBlob& blob) {
    if (blob.IsNullValue()) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(blob.Data()), static_cast<std::size_t>(blob.Length()));
}

std::string Show(const Content& content) { return content ? Hex(content->data(), content->size()) : "null"; }
std::string Show(const VqBlob& blob) { return Show(ContentOf(blob)); }

// --- Construction and numbers

TEST(Blob, IsMadeFromEverythingThatHasBytes) {
    VqBlob prefixed("x"), negative("x"), reread;
    prefixed = "\3\0\0\0abcd";
    negative = "\xFF\xFF\xFF\xFF";
    reread.SetTo("\2\0\0\0ab", 6);
    reread = reinterpret_cast<const char*>(reread.Data());
    VqString unicode(static_cast<unsigned char>(253), static_cast<unsigned char>(0)), null;
    unicode += VqString("ab");
    null.SetNullValue();
    const struct {
        VqBlob blob;
        const char* bytes;
    } cases[] = {
        {VqBlob(), ""},
        {VqBlob(3L), "00 00 00"},
        {VqBlob(-3L), ""},
        {VqBlob("abc", 2), "61 62"},
        {VqBlob(nullptr, 2), "00 00"},
        {VqBlob("abc", -1), ""},
        {VqBlob("abc"), "61 62 63 00"},
        {VqBlob(static_cast<const char*>(nullptr)), "null"},
        {VqBlob(INT_MIN), "2d 32 31 34 37 34 38 33 36 34 38 00"},
        {VqBlob(static_cast<short>(-7)), "2d 37 00"},
        {VqBlob(4294967295UL), "34 32 39 34 39 36 37 32 39 35 00"},
        {VqBlob(-1.5), "2d 31 2e 35 30 30 30 30 30 00"},
        {VqBlob(HUGE_VAL), "69 6e 66 00"},
        {VqBlob(VqString("ab")), "61 62 00"},
        {VqBlob(unicode), "61 00 62 00 00 00"},
        {VqBlob(VqString()), ""},
        {VqBlob(null), "null"},
        {prefixed, "61 62 63"},
        {negative, "null"},
        {reread, "61 62"},
    };
    for (const auto& c : cases) EXPECT_EQ(Show(c.blob), c.bytes);
    EXPECT_EQ(VqBlob(-std::numeric_limits<double>::max()).Length(), 318);
}

// Numbers are those of the C library, cut where the bytes end: in place, in 1-byte texts and in 2-byte ones.
TEST(Blob, NumbersAreReadWithinTheBytes) {
    const std::string zeros(400, '0');
    std::istringstream words(
        "123456 -31x - 99999999999 -2147483649 70000 1.5e3 0x1F inf -Infinityx 1e999 -1e999 1e-999 -1e-999 0x1p9999 "
        "0x1p-9999 -0x -0xg 0x.8p1 0x. 0x1.8p- 0x-1 --5 +-5 -+5 +5 1e+ 1e 1.e2.5 .5 . -.e1 -x -0 1_0 1) x p1 "
        "1e99999999999999999999 1e-99999999999999999999 0x0p9999 0e9999 +.5 1,5 0xinf 2.2250738585072011e-308 4.9e-324 "
        "179769313486231570e291 1000000e-400 0.0000001e-400");
    std::vector<std::string> texts = {"",        "   7", " -31x", "- 5",      "\t\n 2.5;", "0.Z1e401",
                                      "1Ze-400", "1Z",   "-0x1Z", "0x1Z;p-1", "0x1Zp-1600"};
    for (std::string& text : texts) {
        if (const std::size_t place = text.find('Z'); place != text.npos) text.replace(place, 1, zeros);
    }
    texts.insert(texts.end(), std::istream_iterator<std::string>(words), {});
    for (const std::string& whole : texts) {
        for (std::size_t length = whole.size() < 30 ? 0 : whole.size(); length <= whole.size(); ++length) {
            const std::string text(whole, 0, length);
            SCOPED_TRACE(text);
            char* end = nullptr;
            const double known = std::strtod(text.c_str(), &end);
            const double expected = end != text.c_str() ? known : 0.0;  // some C libraries keep the sign of nothing
            VqBlob blob(whole.c_str());
            blob.Resize(length);  // what follows stays in the storage
            const double read[] = {blob, VqString(text.c_str()), Wide({text.begin(), text.end()})};
            for (const double number : read) {
                EXPECT_EQ(number, expected);
                EXPECT_EQ(std::signbit(number), std::signbit(expected));
            }
            const auto whole32 = std::clamp<long long>(std::strtoll(text.c_str(), nullptr, 10), INT32_MIN, INT32_MAX);
            EXPECT_EQ(static_cast<long>(blob), whole32);
            EXPECT_EQ(static_cast<int>(blob), whole32);
            EXPECT_EQ(static_cast<short>(blob), static_cast<short>(whole32));
        }
    }
    EXPECT_TRUE(std::isnan(static_cast<double>(VqBlob("nan(1)"))) && std::isnan(static_cast<double>(VqString("nan"))));
    EXPECT_EQ(static_cast<long>(Make(std::nullopt)), 0);
    EXPECT_EQ(static_cast<double>(Make(std::nullopt)), 0);
}

// --- Storage

TEST(Blob, StorageIsReusedWithinTheSlack) {
    const struct {
        long before, after;
        bool reused;
    } cases[] = {{200, 100, true}, {228, 100, true}, {229, 100, false}, {300, 100, false},
                 {50, 100, false}, {128, 0, true},   {129, 0, false},   {0, 1, false}};
    for (const auto& c : cases) {
        const VqBlob source(c.after);
        VqBlob assigned(c.before), set(c.before);
        const unsigned char *const first = assigned.Data(), *const second = set.Data();
        assigned = source;
        set.SetTo(source.Data(), c.after);
        EXPECT_EQ(assigned.Data() == first, c.reused) << c.before << " to " << c.after;
        EXPECT_EQ(set.Data() == second, c.reused) << c.before << " to " << c.after;
    }
    VqBlob shrunk(200);
    const unsigned char* const storage = shrunk.Data();
    shrunk.Resize(1);
    EXPECT_EQ(shrunk.Data(), storage);
    shrunk.Expand(1);
    EXPECT_NE(shrunk.Data(), storage);
    shrunk.Resize(0);
    EXPECT_EQ(shrunk.Data(), nullptr);
    VqBlob::Record* const record = VqBlob::AllocData(4);
    EXPECT_EQ(record->length, 5);
    VqBlob::FreeData(record);
    VqBlob::FreeData(nullptr);
}

// --- Every member beside one on std::string

std::size_t Size(const Content& content) { return content ? content->size() : 0; }
bool Inside(const Content& content, long pos) { return pos >= 0 && pos <= static_cast<long>(Size(content)); }

// A part of `other`, which may be the same object, is what pointers lead to.
struct Operation {
    const char* name;
    void (*apply)(VqBlob& blob, VqBlob& other, long pos, long n);
    void (*model)(Content& blob, Content& other, long pos, long n);
};

long PartLength(const VqBlob& other, long pos, long n) { return other.Seek(pos, n) != nullptr ? n : 0; }
std::string Part(const Content& other, long pos, long n) {
    const bool within = Inside(other, pos) && n > 0 && n <= static_cast<long>(Size(other)) - pos;
    return within ? other->substr(static_cast<std::size_t>(pos), static_cast<std::size_t>(n)) : std::string();
}
void Lengthen(Content& content, long n) {
    content = content.value_or("");
    content->resize(static_cast<std::size_t>(std::clamp(n, 0L, 500L)));
}

constexpr Operation operations[] = {
    {"=", [](VqBlob& a, VqBlob& b, long, long) { a = static_cast<const VqBlob&>(b); },
     [](Content& a, Content& b, long, long) { a = Content(b); }},
    {"Destroy", [](VqBlob& a, VqBlob& b, long, long) { a.Destroy(b); },
     [](Content& a, Content& b, long, long) {
         if (&a == &b) return;
         a = b;
         if (b) b = "";
     }},
    {"move", [](VqBlob& a, VqBlob& b, long, long) { a = std::move(b); },
     [](Content& a, Content& b, long, long) {
         if (&a == &b) return;
         a = b;
         b = std::nullopt;
     }},
    {"SetTo", [](VqBlob& a, VqBlob& b, long pos, long n) { a.SetTo(b.Seek(pos, n), PartLength(b, pos, n)); },
     [](Content& a, Content& b, long pos, long n) { a = Part(b, pos, n); }},
    {"Append part", [](VqBlob& a, VqBlob& b, long pos, long n) { a.Append(b.Seek(pos, n), PartLength(b, pos, n)); },
     [](Content& a, Content& b, long pos, long n) {
         const std::string part = Part(b, pos, n);
         if (!part.empty()) a = a.value_or("") + part;
     }},
    {"+=", [](VqBlob& a, VqBlob& b, long, long) { a += b; },
     [](Content& a, Content& b, long, long) {
         if (Size(b) != 0) a = a.value_or("") + *b;
     }},
    {"Expand", [](VqBlob& a, VqBlob&, long, long n) { a.Expand(std::min(n, 500L)); },
     [](Content& a, Content&, long, long n) { Lengthen(a, n); }},
    {"Resize", [](VqBlob& a, VqBlob&, long, long n) { a.Resize(static_cast<unsigned long>(std::min(n, 500L))); },
     [](Content& a, Content&, long, long n) { Lengthen(a, n); }},
    {"Cut", [](VqBlob& a, VqBlob&, long pos, long n) { a.Cut(pos, n); },
     [](Content& a, Content&, long pos, long n) {
         if (a && Inside(a, pos) && n > 0) a->erase(static_cast<std::size_t>(pos), static_cast<std::size_t>(n));
     }},
    {"CopyFrom", [](VqBlob& a, VqBlob& b, long pos, long n) { a = b.CopyFrom(pos, n); },
     [](Content& a, Content& b, long pos, long n) {
         const bool none = !b || !Inside(b, pos) || n < 1;
         a = none ? std::string(1, '\0') : b->substr(static_cast<std::size_t>(pos), static_cast<std::size_t>(n));
     }},
    {"CopyTo", [](VqBlob& a, VqBlob& b, long pos, long n) { a.CopyTo(b, pos, n); },
     [](Content& a, Content& b, long pos, long n) {
         if (!a || !b || !Inside(a, pos) || n < 1) return;
         const std::size_t at = static_cast<std::size_t>(pos);
         const std::size_t count = std::min({static_cast<std::size_t>(n), a->size() - at, b->size()});
         a->replace(at, count, std::string(*b, 0, count));
     }},
    {"SetNullValue", [](VqBlob& a, VqBlob&, long, long) { a.SetNullValue(); },
     [](Content& a, Content&, long, long) { a = std::nullopt; }},
};

Content RandomContent(std::mt19937& random) {
    if (random() % 8 == 0) return std::nullopt;
    std::string bytes(random() % 8 == 0 ? random() % 300 : random() % 8, 0);
    for (char& byte : bytes) byte = static_cast<char>(random() % 3);
    return bytes;
}

long RandomNumber(std::mt19937& random, const Content& content) {
    static constexpr long ends[] = {LONG_MIN, INT_MIN, -1, INT_MAX, LONG_MAX, 0};
    if (random() % 6 == 0) return ends[random() % std::size(ends)];
    return static_cast<long>(random() % (Size(content) + 3)) - 1;
}

TEST(Blob, MembersDoWhatTheyDoToAString) {
    std::mt19937 random(128);
    for (int round = 0; round < 60000; ++round) {
        Content models[] = {RandomContent(random), RandomContent(random)};
        VqBlob blobs[] = {Make(models[0]), Make(models[1])};
        for (int step = 0; step < 3; ++step) {
            const Operation& operation = operations[random() % std::size(operations)];
            const std::size_t other = random() % 3 == 0 ? 0 : 1;
            const long pos = RandomNumber(random, models[other]), n = RandomNumber(random, models[other]);
            operation.apply(blobs[0], blobs[other], pos, n);
            operation.model(models[0], models[other], pos, n);
            for (std::size_t i : {0U, 1U}) {
                ASSERT_EQ(Show(blobs[i]), Show(models[i]))
                    << operation.name << " " << pos << " " << n << (other == 0 ? " itself" : "") << " round " << round;
            }
        }
    }
}

TEST(Blob, OrderIsThatOfTheBytesAndNullIsFirst) {
    std::mt19937 random(2);
    for (int round = 0; round < 20000; ++round) {
        const Content a = RandomContent(random);
        Content b = random() % 2 ? a : RandomContent(random);
        if (b && random() % 2) b->push_back(static_cast<char>(random()));
        // Bytes are compared without sign, as char_traits<char> does.
        const int expected = !a || !b ? 2 * (a.has_value() - b.has_value()) : Sign(a->compare(*b));
        ASSERT_EQ(Make(a) != Make(b), expected) << Show(a) << " and " << Show(b);
        ASSERT_EQ(Make(a) == Make(b), expected == 0) << Show(a) << " and " << Show(b);
    }
}

// --- Search

TEST(Blob, SearchFindsTheFirstPlace) {
    std::mt19937 random(1991);
    for (int round = 0; round < 30000; ++round) {
        // Repetitions of a short word with a few faults, so that many places nearly fit.
        std::string word(1 + random() % 6, 'a'), text;
        for (char& c : word) c = static_cast<char>('a' + random() % 2);
        const std::size_t length = random() % (round % 100 == 0 ? 20000 : 400), faults = 1 + random() % 200;
        while (text.size() < length) text += word;
        for (char& c : text) {
            if (random() % faults == 0) c = static_cast<char>('a' + random() % 3);
        }
        std::string wanted = text.empty() ? word : text.substr(random() % text.size(), random() % 120);
        if (!wanted.empty() && random() % 3) wanted[random() % wanted.size()] ^= 1;
        const std::size_t place = text.find(wanted);
        const long expected = place != text.npos ? static_cast<long>(place) : VqBlob::NotFound;
        ASSERT_EQ(Make(text).Search(Make(wanted)), expected) << wanted << " in " << text;
    }
}

TEST(Blob, SearchTakesLinearTimeAndLongPatterns) {
    // Comparing at each place would look at 10^11 bytes.
    const std::string run(1 << 20, 'a');
    const std::string half(1 << 19, 'a');
    EXPECT_EQ(Make(run + "b").Search(Make(half + "b")), 1 << 19);
    EXPECT_EQ(Make(run).Search(Make("b" + half)), VqBlob::NotFound);
    EXPECT_EQ(Make(run).Search(Make(half + "b" + half)), VqBlob::NotFound);
    EXPECT_EQ(Make(run + "ba" + run).Search(Make(half + "ba" + half)), 1 << 19);
    EXPECT_EQ(Make("abc").Search(Make(std::nullopt)), 0);
    EXPECT_EQ(Make("").Search(Make("")), 0);
    EXPECT_EQ(Make(std::nullopt).Search(Make("")), VqBlob::NotFound);
}

// --- Lengths that cannot be had

std::vector<unsigned long> refused;

TEST(Blob, LengthsThatCannotBeHadAreToldToTheMemoryHandler) {
    const VqMemoryHandler before = VqSetMemoryHandler([](unsigned long size) {
        refused.push_back(size);
        return refused.size() < 6 ? 1 : 0;  // there may be more memory, but no larger blobs
    });
    VqBlob blob("abc", 3);
    blob.Append(nullptr, VqBlob::MaxLength);
    EXPECT_EQ(std::exchange(refused, {}), std::vector<unsigned long>(1, 2147483650UL));
    if (LONG_MAX > VqBlob::MaxLength) {
        constexpr unsigned long TooLong = 2147483648UL;
        const long tooLong = static_cast<long>(TooLong);
        EXPECT_TRUE(VqBlob(tooLong).IsNullValue());
        blob.SetTo("x", tooLong);
        blob.Expand(tooLong);
        blob.Resize(TooLong);
        EXPECT_EQ(std::exchange(refused, {}), std::vector<unsigned long>(4, TooLong));
        blob.Append(blob.Data(), LONG_MAX);
        EXPECT_EQ(refused, std::vector<unsigned long>(1, ULONG_MAX / 4 + 1 + 3));
    }
    EXPECT_EQ(Show(blob), "61 62 63");
    blob.Resize(ULONG_MAX);
    EXPECT_EQ(Show(blob), "");
    VqSetMemoryHandler(before);
}

// --- Disk form

using Blobs = std::vector<VqBlob>;

std::string ShowAll(const Blobs& blobs) {
    std::string text;
    for (const VqBlob& blob : blobs) text += "(" + Show(blob) + ")";
    return text;
}

TEST(BlobDiskForm, DamagedAreasStayWithinTheirTotal) {
    const struct {
        std::string bytes;
        const char* loaded;  // null: a total past the end
    } cases[] = {
        {{"\0\0\0\x0A\0\0\0\1a\0\0\0\1b", 14}, "(61)(62)"},
        {{"\0\0\0\x08\377\377\377\377\0\0\0\0", 12}, "(null)()"},
        {{"\0\0\0\0", 4}, "(null)(null)"},                  // no blob at all
        {{"\0\0\0\x03\0\0\0", 7}, "(null)(null)"},          // half a length
        {{"\0\0\0\x06\0\0\0\1ab", 10}, "(61)(null)"},       // bytes that nobody owns
        {{"\0\0\0\x06\0\0\0\377ab", 10}, "(61 62)(null)"},  // a length past the total
        {{"\0\0\0\x06\x7F\377\377\377ab", 10}, "(61 62)(null)"},
        {{"\0\0\0\x0A\x80\0\0\0\0\0\0\1a\0", 14}, "(null)(61)"},  // a negative length
        {{"\0\0\0\x0B\0\0\0\1a\0\0\0\1b", 14}, nullptr},
        {{"\377\377\377\377\0\0\0\1a", 9}, nullptr},
        {{"\377\377\377\374\0\0\0\1a", 9}, nullptr},
        {{"\0\0\0", 3}, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(Hex(c.bytes.data(), c.bytes.size()));
        const std::vector<char> exact(c.bytes.begin(), c.bytes.end());
        const auto size = static_cast<unsigned long>(exact.size());
        MemFile file(exact.data(), size);
        EXPECT_EQ(BlobSizeGetFromMemFile(&file, VqFormat_BigEndian, 2), c.loaded != nullptr ? size : 4294967295UL);
        EXPECT_EQ(file.Position(), 0u);
        if (c.loaded == nullptr) continue;
        EXPECT_EQ(BlobSizeGet(exact.data(), 0, VqFormat_BigEndian, 2), size);
        Blobs loaded(2, VqBlob("old"));
        EXPECT_EQ(BlobLoad(loaded.data(), exact.data(), VqFormat_BigEndian, 2), size);
        EXPECT_EQ(ShowAll(loaded), c.loaded);
    }
    EXPECT_EQ(BlobStore(nullptr, nullptr, 1, 0) + BlobLoad(nullptr, nullptr, 1, 0) + BlobNullSizeGet(0), 0u);
    EXPECT_EQ(BlobNullSizeGet(3), 16u);
}

// Zero bytes that nobody looks at take no memory where addresses are many.
TEST(BlobDiskForm, WhatTheTotalCannotCountIsLeftOut) {
    if (sizeof(void*) == 4) GTEST_SKIP() << "no room for such blobs";
    Blobs blobs;
    for (int i = 0; i < 3; ++i) blobs.emplace_back(VqBlob::MaxLength);
    ASSERT_FALSE(blobs[2].IsNullValue());
    EXPECT_EQ(BlobSizeGet(blobs.data(), VqFormat_Memory, 1, 1), 2147483655UL);
    EXPECT_EQ(BlobSizeGet(blobs.data(), VqFormat_Memory, 1, 3), 4294967294UL);
}

// What is cut for want of room is the same whatever the room is.
TEST(BlobDiskForm, CutsAtTheLargestTotal) {
    const Blobs blobs = {Make("abc"), Make(""), Make(std::nullopt), Make("defgh")};
    const struct {
        std::uint32_t most, total;
        const char* loaded;
    } cases[] = {
        {24, 24, "(61 62 63)()(null)(64 65 66 67 68)"},
        {23, 23, "(61 62 63)()(null)(64 65 66 67)"},
        {19, 19, "(61 62 63)()(null)()"},
        {18, 15, "(61 62 63)()(null)(null)"},
        {14, 11, "(61 62 63)()(null)(null)"},
        {10, 7, "(61 62 63)(null)(null)(null)"},
        {6, 6, "(61 62)(null)(null)(null)"},
        {4, 4, "()(null)(null)(null)"},
        {3, 0, "(null)(null)(null)(null)"},
    };
    for (const auto& c : cases) {
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            std::vector<unsigned char> bytes(c.total + 5, 0xA5);
            SCOPED_TRACE(c.most);
            EXPECT_EQ(vq::TotalOfBlobs(blobs.data(), 4, c.most), c.total);
            EXPECT_EQ(vq::StoreBlobs(bytes.data(), blobs.data(), format, 4, c.most), c.total + 4);
            EXPECT_EQ(bytes.back(), 0xA5);
            EXPECT_EQ(BlobSizeGet(bytes.data(), format, format, 4), c.total + 4);
            Blobs loaded(4, VqBlob("old"));
            EXPECT_EQ(BlobLoad(loaded.data(), bytes.data(), format, 4), c.total + 4);
            EXPECT_EQ(ShowAll(loaded), c.loaded);
        }
    }
}

// --- Text

TEST(BlobText, PrintsLengthAndPairs) {
    const struct {
        Content content;
        const char *format, *text;
    } cases[] = {
        {"a\xFF", nullptr, "[BLOB,len=2]"},        {"", nullptr, "[BLOB,len=0]"},   {std::nullopt, "%X", "{NULL}"},
        {"a\xFFz", "%X/%x %L", "61FF7A/61ff7a 3"}, {"a", "%%L%s%d%%%", "%L%s%d%%"}, {"", "<%X>", "<>"},
    };
    for (const auto& c : cases) {
        VqString text(">");
        Make(c.content).PrintToVqString(text, c.format);
        EXPECT_EQ(Bytes(text), std::string(">") + c.text);
    }
    AssertRecorder recorder;
    for (const bool wide : {false, true}) {
        VqString longText = wide ? Wide(u"abc") : VqString("abc");
        VqBlob(40000L).PrintToVqString(longText, ".%X");
        EXPECT_EQ(longText.Len(), wide ? 32764 : 65532);
        // What stands behind the pairs has its place, whether a character is left over or not.
        for (const std::string before : {"", "-"}) {
            for (const std::string after : {">", " 40000>"}) {
                VqString text(longText.GetCodeSet(), longText.GetLanguage());
                VqBlob(40000L).PrintToVqString(text, (before + (after == ">" ? "%X>" : "%X %L%x>")).c_str());
                const std::size_t most = VqString::MaxSize / (wide ? 2 : 1) - 1;
                const std::size_t pairs = (most - before.size() - after.size()) / 2;
                text.MapToCodeSet(1);
                EXPECT_TRUE(Bytes(text) == before + std::string(2 * pairs, '0') + after) << text.Len();
            }
        }
    }
    EXPECT_TRUE(recorder.Lines().empty());
}

TEST(BlobText, ScansPairsAndPassesOverLengths) {
    const char* const old = "6f 6c 64";
    const struct {
        const char *text, *format, *content;
    } cases[] = {
        {"00fF7a", "%X", "00 ff 7a"},
        {"2:0102", "%L:%x", "01 02"},
        {"07;08;09", "%X;%x", "08"},
        {"", "%x", ""},
        {"<>", "<%X>", ""},
        {"077", "%X", "07"},
        {"<07>", "<%X>", "07"},
        {"%%01", "%%%%%x", "01"},
        {"{NULL}", "%X", "null"},
        {"7", "%X", old},
        {"zz", "%X", old},
        {"(07>", "<%X>", old},
        {"<07)", "<%X>", old},
        {"<077>", "<%X>", old},
        {"07;08,", "%X;%x;", old},
        {"[BLOB,len=9]", nullptr, old},
    };
    for (const auto& c : cases) {
        for (const bool wide : {false, true}) {
            const std::string bytes(c.text);
            VqString text = wide ? Wide({bytes.begin(), bytes.end()}) : VqString(c.text);
            VqBlob blob("old", 3);
            blob.ScanFromVqString(text, c.format);
            EXPECT_EQ(Show(blob), c.content) << c.text << " under " << (c.format != nullptr ? c.format : "its own");
        }
    }
}

}  // namespace
