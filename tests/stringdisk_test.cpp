#include <gtest/gtest.h>

#include <vector>

#include "testsupport.h"
#include "vqlanguagecontext.h"
#include "vqstring.h"

using namespace vqtest;

namespace {

constexpr unsigned char little = VqFormat_LittleEndian, big = VqFormat_BigEndian;

std::vector<unsigned char> Stored(const std::vector<VqString>& strings, unsigned char format) {
    std::vector<unsigned char> bytes(StringSizeGet(strings.data(), VqFormat_Memory, format, strings.size()));
    EXPECT_EQ(StringStore(bytes.data(), strings.data(), format, strings.size()), bytes.size());
    return bytes;
}

std::vector<unsigned char> StoredLegacy(const std::vector<VqString>& strings, unsigned char format) {
    std::vector<unsigned char> bytes(LegacyStringSizeGet(strings.data(), VqFormat_Memory, format, strings.size()));
    EXPECT_EQ(LegacyStringStore(bytes.data(), strings.data(), format, strings.size()), bytes.size());
    return bytes;
}

// Same code set, language and bytes.
void ExpectSame(const VqString& a, const VqString& b) {
    EXPECT_EQ(a.GetCodeSet(), b.GetCodeSet());
    EXPECT_EQ(a.GetLanguage(), b.GetLanguage());
    ASSERT_EQ(a.GetSize(), b.GetSize());
    EXPECT_EQ(Hex(a.StrGet(), a.GetSize()), Hex(b.StrGet(), b.GetSize()));
}

VqString Null() {
    VqString null;
    null.SetNullValue();
    return null;
}

TEST(StringDisk, RecordsHaveTheirGoldenBytes) {
    const struct {
        VqString string;
        unsigned char format;
        const char* bytes;
    } cases[] = {
        {In(1, "abc", 2), little, "07 00 01 02 61 62 63 00 ff"},
        {In(1, "abc", 2), big, "00 07 01 02 61 62 63 00 ff"},
        {Wide(u"\u20ACx"), little, "08 00 fd 00 ac 20 78 00 00 ff"},
        {Wide(u"\u20ACx"), big, "00 08 fd 00 20 ac 00 78 00 ff"},
    };
    for (const auto& c : cases) {
        const std::vector<unsigned char> bytes = Stored({c.string}, c.format);
        EXPECT_EQ(Hex(bytes.data(), bytes.size()), c.bytes);
    }
    EXPECT_EQ(StringNullSizeGet(3), 18u);
}

TEST(StringDisk, ArraysComeBackAsTheyWere) {
    const VqString embedded = In(2, std::string("a\0b", 3), 5);
    const std::vector<VqString> strings = {VqString("abc"), VqString(),      Wide(u"\u0416\u4E2D"), embedded,
                                           Null(),          In(0, "native"), VqString(254, 0)};
    for (const unsigned char format : {little, big, static_cast<unsigned char>(VqFormat_Memory)}) {
        const std::vector<unsigned char> bytes = Stored(strings, format);
        EXPECT_EQ(StringSizeGet(bytes.data(), 0, format, strings.size()), bytes.size());
        std::vector<VqString> loaded(strings.size(), VqString("before"));
        EXPECT_EQ(StringLoad(loaded.data(), bytes.data(), format, strings.size()), bytes.size());
        for (std::size_t i = 0; i < strings.size(); ++i) ExpectSame(loaded[i], strings[i]);
    }
}

TEST(StringDisk, LegacyAreasComeBackAsNativeTexts) {
    const std::vector<VqString> strings = {In(1, "caf\xE9"), VqString(), Wide(u"x\u20AC\u4E2D")};
    for (const unsigned char format : {little, big}) {
        const std::vector<unsigned char> bytes = StoredLegacy(strings, format);
        EXPECT_EQ(Hex(bytes.data() + 2, bytes.size() - 2), "63 61 66 e9 00 00 78 80 3f 00");
        EXPECT_EQ(bytes[format == big ? 1 : 0], bytes.size() - 2);
        EXPECT_EQ(StringSizeGet(bytes.data(), 0, format, 3), bytes.size());
        EXPECT_EQ(LegacyStringSizeGet(bytes.data(), 0, format, 3), bytes.size());
        std::vector<VqString> loaded(3, VqString("before"));
        EXPECT_EQ(StringLoad(loaded.data(), bytes.data(), format, 3), bytes.size());
        EXPECT_EQ(Bytes(loaded[0]), "caf\xE9");
        EXPECT_EQ(loaded[1].GetSize(), 0);
        EXPECT_EQ(Bytes(loaded[2]), "x\x80?");
    }
}

TEST(StringDisk, SizesFollowTheCodeSetBits) {
    const VqString native = In(0, "abc"), latin = In(1, "abc"), wide = Wide(u"abc");
    const struct {
        const VqString& string;
        unsigned char bits;
        unsigned long size;
    } cases[] = {
        {latin, 0, 9},
        {wide, 0, 12},
        {native, 0x80, 9},
        {latin, 0x80, 24},
        {wide, 0x80, 20},
        {latin, 0x20 | 0x80, 9},
        {wide, 0x20 | 0x80, 12},
        {native, 0x40 | 0x80, 24},
        {native, 0x20 | 0x80, 9},
        {latin, 0x40, 9},
    };
    for (const auto& c : cases) {
        const unsigned char format = static_cast<unsigned char>(big | c.bits);
        EXPECT_EQ(StringSizeGet(&c.string, VqFormat_Memory, format, 1), c.size) << int{c.bits};
        const std::vector<unsigned char> bytes = Stored({c.string}, big);
        EXPECT_EQ(StringSizeGet(bytes.data(), 0, format, 1), c.size) << int{c.bits};
        MemFile file(bytes.data(), static_cast<unsigned long>(bytes.size()));
        EXPECT_EQ(StringSizeGetFromMemFile(&file, format, 1), c.size) << int{c.bits};
    }
}

TEST(StringDisk, TextsAtTheLimitAreCutToWhatTheLengthCanCount) {
    const AssertRecorder recorder;
    for (const std::size_t n : {65528u, 65529u, 65530u, 65531u, 65532u}) {
        const VqString string(std::string(n, 'x').c_str());
        const std::vector<unsigned char> bytes = Stored({string}, big);
        EXPECT_EQ(bytes.size(), std::min<std::size_t>(n, 65531) + 6);
        VqString loaded;
        EXPECT_EQ(StringLoad(&loaded, bytes.data(), big, 1), bytes.size());
        EXPECT_EQ(loaded.Len(), std::min<std::size_t>(n, 65531));
    }
    const std::vector<VqString> many(3, VqString(std::string(30000, 'y').c_str()));
    const std::vector<unsigned char> legacy = StoredLegacy(many, little);
    EXPECT_EQ(legacy.size(), 65537u);
    std::vector<VqString> loaded(3);
    EXPECT_EQ(StringLoad(loaded.data(), legacy.data(), little, 3), legacy.size());
    EXPECT_EQ(loaded[2].Len(), 65535 - 60002 - 1);
    EXPECT_TRUE(recorder.Lines().empty());
}

TEST(StringDisk, MemoryFilesGuardEveryTruncation) {
    const std::vector<VqString> strings = {VqString("ab"), Wide(u"xyz"), VqString()};
    const std::vector<unsigned char> bytes = Stored(strings, big);
    const std::vector<unsigned char> legacy = StoredLegacy(strings, big);
    for (std::size_t n = 0; n <= bytes.size(); ++n) {
        const Block exact(bytes.data(), n);
        MemFile file(exact.Get(), static_cast<unsigned long>(n));
        // Whole records that stand before the cut count as they are.
        unsigned long expected = 0;
        for (const unsigned long end : {8ul, 20ul, 26ul}) expected = n >= end ? end : expected + 65535;
        EXPECT_EQ(StringSizeGetFromMemFile(&file, big, 3), expected) << n;
        EXPECT_EQ(file.Position(), 0u);
    }
    for (std::size_t n = 0; n <= legacy.size(); ++n) {
        const Block exact(legacy.data(), n);
        MemFile file(exact.Get(), static_cast<unsigned long>(n));
        const unsigned long expected = n == legacy.size() ? n : 3 * 65535ul;
        EXPECT_EQ(StringSizeGetFromMemFile(&file, big, 3), expected) << n;
        EXPECT_EQ(LegacyStringSizeGetFromMemFile(&file, big, 3), expected) << n;
    }
}

TEST(StringDisk, FittingIsToldApartFromRecordsOfTheSameNumber) {
    for (const unsigned length : {65533u, 65534u, 65535u}) {
        for (const unsigned missing : {0u, 1u, 2u}) {
            std::vector<unsigned char> bytes(length + 2, 0xFF);
            bytes[0] = static_cast<unsigned char>(length >> 8);
            bytes[1] = static_cast<unsigned char>(length);
            bytes[2] = 1;
            MemFile file(bytes.data(), static_cast<unsigned long>(bytes.size() - missing));
            EXPECT_EQ(StringsFitMemFile(&file, big, 1), missing == 0) << length;
            EXPECT_EQ(file.Position(), 0u);
        }
    }
}

TEST(StringDisk, DamagedBytesNeverLeadOutsideTheBlock) {
    std::mt19937 random(1361);
    const std::vector<VqString> strings = {VqString("ab"), Wide(u"xyz"), VqString()};
    for (const auto& golden : {Stored(strings, big), Stored(strings, little), StoredLegacy(strings, big)}) {
        for (std::size_t at = 0; at < golden.size(); ++at) {
            for (const int value : {0, 1, 2, 3, 4, 5, 6, 0x7F, 0x80, 0xFE, 0xFF}) {
                std::vector<unsigned char> damaged = golden;
                damaged[at] = static_cast<unsigned char>(value);
                const Block exact(damaged.data(), damaged.size());
                for (const unsigned char format : {little, big}) {
                    MemFile file(exact.Get(), static_cast<unsigned long>(golden.size()));
                    const unsigned long size = StringSizeGetFromMemFile(&file, format, 3);
                    EXPECT_EQ(StringsFitMemFile(&file, format, 3), size <= golden.size());
                    if (size > golden.size()) continue;
                    std::vector<VqString> loaded(3);
                    EXPECT_EQ(StringLoad(loaded.data(), exact.Get(), format, 3), size) << at << '=' << value;
                }
            }
        }
    }
}

}  // namespace
