#include "multibyte.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "../src/utf8kernel.h"
#include "multibytereference.h"
#include "testsupport.h"
#include "vqlanguagecontext.h"

namespace {

using vqtest::Hex;
using vqtest::In;
using vqtest::Wide;

// A copy without room around it, so that reading or writing outside is seen.
template <class T>
std::unique_ptr<T[]> Exact(const T* from, std::size_t n) {
    std::unique_ptr<T[]> copy(new T[n]);
    std::copy(from, from + n, copy.get());
    return copy;
}

std::string HexOf(const std::string& bytes) { return Hex(bytes.data(), bytes.size()); }

// --- Texts

enum Script { Ascii, Latin, Cjk, Mixed, Long, ScriptCount };

std::uint32_t RandomCharacter(std::mt19937& random, Script script) {
    const auto below = [&random](std::uint32_t n) { return static_cast<std::uint32_t>(random() % n); };
    switch (script) {
        case Ascii:
            return 1 + below(0x7F);
        case Latin:
            return below(4) == 0 ? 0x80 + below(0x780) : 1 + below(0x7F);
        case Cjk:
            return below(8) == 0 ? 1 + below(0x7F) : 0x800 + below(0xF800);
        case Mixed:
            return 1 + below(below(2) ? 0xFFFF : 0x900);
        default:
            return (1 + below(0x7FFFFFFF)) >> below(31);
    }
}

std::string RandomText(std::mt19937& random, Script script, std::size_t characters) {
    std::string text;
    while (characters-- != 0) text += vqtest::ReferenceEncode(std::max(RandomCharacter(random, script), 1u));
    return text;
}

void Mutate(std::mt19937& random, std::string& text) {
    if (text.empty()) return;
    constexpr unsigned char Tricky[] = {0x00, 0x7F, 0x80, 0xBF, 0xC0, 0xC1, 0xC2, 0xE0, 0xED, 0xEF, 0xF0, 0xFF};
    char& byte = text[random() % text.size()];
    byte = static_cast<char>(random() % 2 ? Tricky[random() % sizeof Tricky] : random());
}

// --- Kernels: each does what the table says, whatever the block boundaries

struct Result {
    std::size_t in, out;
    std::string bytes;
    bool operator==(const Result&) const = default;
};

Result ReferenceBlock(const std::string& text, std::size_t room) {
    Result result{};
    while (result.in != text.size() && result.out + 2 <= room) {
        unsigned short unit = 0;
        const int length = vqtest::ReferenceDecode(unit, text.data() + result.in, text.size() - result.in);
        if (length < 1 || length > 3 || unit == 0) break;
        result.bytes.append(reinterpret_cast<const char*>(&unit), sizeof unit);
        result.in += static_cast<std::size_t>(length);
        result.out += 2;
    }
    return result;
}

Result ReferenceBlock(const std::u16string& units, std::size_t room) {
    Result result{};
    for (const char16_t unit : units) {
        const std::string bytes = vqtest::ReferenceEncode(unit);
        if (unit == 0 || result.bytes.size() + bytes.size() > room) break;
        result.bytes += bytes;
        result.in += 2;
    }
    result.out = result.bytes.size();
    return result;
}

template <class Kernel, class Rest>
Result Run(Kernel kernel, Rest rest, const void* from, std::size_t size, std::size_t room) {
    const auto in = Exact(static_cast<const unsigned char*>(from), size);
    std::unique_ptr<unsigned char[]> out(new unsigned char[room]);
    vq::Utf8Cursor at = kernel({in.get(), out.get()}, in.get() + size, out.get() + room);
    at = rest(at, in.get() + size, out.get() + room);
    const auto written = static_cast<std::size_t>(at.out - out.get());
    return {static_cast<std::size_t>(at.in - in.get()), written, std::string(out.get(), out.get() + written)};
}

void ExpectDecodes(const vq::Utf8Kernel& kernel, const std::string& text, std::size_t room) {
    const Result got = Run(kernel.decode, vq::DecodePortable, text.data(), text.size(), room);
    ASSERT_EQ(got, ReferenceBlock(text, room)) << kernel.name << " room " << room << ": " << HexOf(text);
}

void ExpectEncodes(const vq::Utf8Kernel& kernel, const std::u16string& units, std::size_t room) {
    const Result got = Run(kernel.encode, vq::EncodePortable, units.data(), 2 * units.size(), room);
    ASSERT_EQ(got, ReferenceBlock(units, room))
        << kernel.name << " room " << room << ": " << Hex(units.data(), 2 * units.size());
}

void ExpectCounts(const vq::Utf8Kernel& kernel, const std::string& text, const std::u16string& units) {
    const auto bytes = Exact(reinterpret_cast<const unsigned char*>(text.data()), text.size());
    EXPECT_EQ(
        kernel.countStarts(bytes.get(), bytes.get() + text.size()),
        static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; })))
        << kernel.name << ": " << HexOf(text);
    const auto wide = Exact(reinterpret_cast<const unsigned char*>(units.data()), 2 * units.size());
    EXPECT_EQ(kernel.countBytes(wide.get(), wide.get() + 2 * units.size()), ReferenceBlock(units, 100000).out)
        << kernel.name << ": " << Hex(units.data(), 2 * units.size());
}

template <class Test>
void ForEachKernel(Test test) {
    for (const vq::Utf8Kernel& kernel : vq::Utf8Kernels) {
        if (kernel.supported()) test(kernel);
    }
}

TEST(Utf8Kernels, JudgeEveryShortSequence) {
    ForEachKernel([](const vq::Utf8Kernel& kernel) {
        constexpr unsigned char Thirds[] = {0x00, 0x41, 0x7F, 0x80, 0xBF, 0xC0, 0xE1, 0xFF};
        for (unsigned pair = 0; pair < 0x10000; ++pair) {
            const std::string two{static_cast<char>(pair >> 8), static_cast<char>(pair)};
            ExpectDecodes(kernel, two, 6);
            if (pair >> 12 != 0xE) continue;
            for (const unsigned char third : Thirds) ExpectDecodes(kernel, two + static_cast<char>(third) + "x", 8);
        }
    });
}

TEST(Utf8Kernels, AgreeOnRandomTexts) {
    ForEachKernel([](const vq::Utf8Kernel& kernel) {
        std::mt19937 random(1);
        for (int round = 0; round < 5000; ++round) {
            const Script script = static_cast<Script>(random() % ScriptCount);
            std::string text = RandomText(random, script, random() % 150);
            for (std::size_t faults = random() % 3; faults != 0; --faults) Mutate(random, text);
            text.resize(random() % 4 ? text.size() : random() % (text.size() + 1));
            std::u16string units;
            for (std::size_t n = random() % 150; n != 0; --n) {
                units += static_cast<char16_t>(random() % 100 == 0 ? 0 : RandomCharacter(random, script));
            }
            ExpectDecodes(kernel, text, 2 * text.size());
            ExpectDecodes(kernel, text, random() % (2 * text.size() + 1) / 2 * 2);
            ExpectEncodes(kernel, units, 3 * units.size());
            ExpectEncodes(kernel, units, random() % (3 * units.size() + 1));
            ExpectCounts(kernel, text, units);
        }
    });
}

// --- Single characters and plain buffers

TEST(Multibyte, DecodesOneCharacter) {
    const struct {
        std::string bytes;
        int length;
        unsigned short unit;
    } cases[] = {
        {"\xC3\xA9", 2, 0x00E9},
        {std::string(1, '\0'), 1, 0},
        {"\xED\xA0\x80", 3, 0xD800},              // a surrogate by itself
        {"\xF0\x9F\x98\x80", 4, 0xF600},          // the low 16 bits of U+1F600
        {"\xF8\x88\x80\x80\x80", 5, 0},           // U+200000
        {"\xFD\xBF\xBF\xBF\xBF\xBF", 6, 0xFFFF},  // the largest value
        {"", -1, 0},
        {"\xE0\x9F\xBF", -1, 0},
        {"\xF0\x8F\xBF\xBF", -1, 0},
        {"\xF8\x87\xBF\xBF\xBF", -1, 0},
        {"\xFC\x83\xBF\xBF\xBF\xBF", -1, 0},
        {"\xFE\x80\x80\x80\x80\x80\x80", -1, 0},
    };
    for (const auto& [bytes, length, unit] : cases) {
        unsigned short out = 0xEEEE;
        const auto text = Exact(bytes.data(), bytes.size());
        EXPECT_EQ(VqMultiByte2WChar(&out, text.get(), static_cast<unsigned>(bytes.size())), length) << HexOf(bytes);
        EXPECT_EQ(out, length > 0 ? unit : 0xEEEE) << HexOf(bytes);
        EXPECT_EQ(VqMultiByte2WChar(nullptr, text.get(), static_cast<unsigned>(bytes.size())), length);
    }
    unsigned short out;
    EXPECT_EQ(VqMultiByte2WChar(&out, nullptr, 3), 0);
    EXPECT_EQ(VqMultiByte2WChar(&out, "a", ~0u), -1);
}

TEST(Multibyte, DecodesEveryLeadAsTheTableSays) {
    for (unsigned lead = 0; lead < 0x100; ++lead) {
        for (unsigned rest = 0; rest < 0x10000; ++rest) {
            const char bytes[] = {
                static_cast<char>(lead), static_cast<char>(rest >> 8), static_cast<char>(rest), '\x9A', '\xBF', '\x80'};
            const unsigned n = lead < 0xF0 ? 3 : 6;
            unsigned short got = 0, wanted = 0;
            const int length = vqtest::ReferenceDecode(wanted, bytes, n);
            ASSERT_EQ(VqMultiByte2WChar(&got, bytes, n), length) << Hex(bytes, n);
            ASSERT_EQ(got, wanted) << Hex(bytes, n);
        }
    }
}

TEST(Multibyte, EncodesEveryValue) {
    char bytes[6];
    for (std::uint32_t c = 0; c < 0x10000; ++c) {
        const std::string wanted = vqtest::ReferenceEncode(c);
        ASSERT_EQ(VqWChar2MultiByte(bytes, static_cast<wchar_t>(c)), static_cast<int>(wanted.size())) << c;
        ASSERT_EQ(Hex(bytes, wanted.size()), HexOf(wanted));
        unsigned short back = 0;
        ASSERT_EQ(VqMultiByte2WChar(&back, bytes, 6), static_cast<int>(wanted.size()));
        ASSERT_EQ(back, c);
    }
    EXPECT_EQ(VqWChar2MultiByte(nullptr, L'a'), 0);
    if constexpr (sizeof(wchar_t) == 4) {
        for (const std::uint32_t c : {0x10000u, 0x1FFFFFu, 0x200000u, 0x3FFFFFFu, 0x4000000u, 0x7FFFFFFFu}) {
            const std::string wanted = vqtest::ReferenceEncode(c);
            ASSERT_EQ(VqWChar2MultiByte(bytes, static_cast<wchar_t>(c)), static_cast<int>(wanted.size())) << c;
            EXPECT_EQ(Hex(bytes, wanted.size()), HexOf(wanted));
        }
        EXPECT_EQ(VqWChar2MultiByte(bytes, static_cast<wchar_t>(0x80000000u)), -1);
    }
}

TEST(Multibyte, DecodesPlainBuffers) {
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round) {
        std::string text = RandomText(random, static_cast<Script>(random() % ScriptCount), random() % 80);
        if (random() % 2) text += std::string(3, '\0') + text;
        if (random() % 3 == 0) Mutate(random, text);
        std::vector<unsigned short> wanted;
        int result = 0;
        for (std::size_t at = 0; at != text.size() && result >= 0;) {
            unsigned short unit = 0;
            const int length = vqtest::ReferenceDecode(unit, text.data() + at, text.size() - at);
            if (length > 0) wanted.push_back(unit);
            result = length < 0 ? -1 : result + 1;
            at += static_cast<std::size_t>(std::max(length, 0));
        }
        const std::size_t room = random() % 2 ? wanted.size() : random() % (wanted.size() + 3);
        const auto exact = Exact(text.data(), text.size());
        const std::unique_ptr<unsigned short[]> out(new unsigned short[room]);
        ASSERT_EQ(
            VqMultiByteStr2WCharStr(out.get(), static_cast<int>(room), exact.get(), static_cast<unsigned>(text.size())),
            result)
            << HexOf(text);
        ASSERT_TRUE(std::equal(out.get(), out.get() + std::min(room, wanted.size()), wanted.begin())) << HexOf(text);
    }
    unsigned short unit;
    EXPECT_EQ(VqMultiByteStr2WCharStr(&unit, 1, "abc", 0), 0);
    EXPECT_EQ(VqMultiByteStr2WCharStr(&unit, 1, nullptr, 3), 0);
    EXPECT_EQ(VqMultiByteStr2WCharStr(nullptr, 1, "abc", 3), 3);
    EXPECT_EQ(VqMultiByteStr2WCharStr(&unit, -1, "abc", 3), 3);
}

// --- Strings

void ExpectString(const std::string& text, long n) {
    const auto exact = Exact(text.data(), text.size());
    VqString got(static_cast<unsigned char>(1), static_cast<unsigned char>(7)), wanted(got);
    std::size_t reports;
    {
        vqtest::AssertRecorder recorder;
        ASSERT_EQ(VqMBS2VqString(exact.get(), got, n), vqtest::ReferenceToString(exact.get(), wanted, n))
            << n << ": " << HexOf(text.substr(0, 300));
        reports = recorder.Lines().size();
    }
    EXPECT_EQ(reports % 2, 0u) << "reported once each";
    ASSERT_EQ(got.GetSize(), wanted.GetSize()) << n;
    EXPECT_EQ(got.GetCodeSet(), 253);
    EXPECT_EQ(got.GetLanguage(), 7);
    EXPECT_EQ(std::memcmp(got.StrGet(), wanted.StrGet(), got.GetSize()), 0) << n << ": " << HexOf(text.substr(0, 300));
}

TEST(Multibyte, MakesTheStringOfTheSlowWay) {
    std::mt19937 random(4);
    for (int round = 0; round < 2000; ++round) {
        std::string text = RandomText(random, static_cast<Script>(random() % ScriptCount), random() % 300);
        if (random() % 3 == 0) Mutate(random, text);
        ExpectString(text, static_cast<long>(text.size()));
    }
    ExpectString("abc", 0);
    ExpectString("abc", -1);
    ExpectString(std::string("ab\0c", 4), 4);
    ExpectString("\xF0\x90\x80\x80z", 5);  // U+10000 has no bit left: a zero character
    ExpectString("\x80", 1);
}

TEST(Multibyte, StopsAtTheLimit) {
    const std::string ascii(33000, 'a'), zero = std::string(32767, 'a') + '\0' + "bcd";
    for (const long n : {32764L, 32765L, 32766L, 32767L, 32768L, 32769L, 33000L}) ExpectString(ascii, n);
    ExpectString(zero, static_cast<long>(zero.size()));
    for (const char* character : {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xFD\xBF\xBF\xBF\xBF\xBF", "\xE2"}) {
        std::string text;
        while (text.size() < 32900) text += character;
        for (std::size_t skip = 0; skip < 7; ++skip) {
            const std::string shifted = std::string(skip, 'a') + text;
            ExpectString(shifted, 32900);
            for (const long n : {32766L, 32767L, 32768L}) ExpectString(shifted, n);
            // Texts that end just behind the limit, with a character that leads past it.
            for (std::size_t size = 32768; size < 32774; ++size) {
                ExpectString(shifted.substr(0, size), static_cast<long>(size));
            }
        }
    }
}

TEST(Multibyte, TakesTextFromTheStringItself) {
    VqString s = In(1, "\xC3\xA9t\xC3\xA9", 3);
    EXPECT_EQ(VqMultiByteString2VqString(s, s), 5);
    EXPECT_EQ(vqtest::Units(s), u"\u00E9t\u00E9");
    EXPECT_EQ(s.GetLanguage(), 3);
    EXPECT_EQ(VqMultiByteString2VqString("xyz", s, 2), 2);
    EXPECT_EQ(vqtest::Units(s), u"xy");
    EXPECT_EQ(VqMBS2VqString(nullptr, s, 2), 0);
    EXPECT_EQ(s.GetSize(), 0);
    EXPECT_EQ(s.GetCodeSet(), 253);
}

// All sizes around the text's, and what each leaves in and around the buffer.
void ExpectBytes(const VqString& text) {
    const long whole = vqtest::ReferenceFromString(text, std::make_unique<char[]>(200000).get(), 200000);
    for (long size = 0; size <= whole + 3; size += whole > 300 && size == 100 ? whole - 200 : 1) {
        const auto room = static_cast<std::size_t>(size);
        std::string got(room, '\x11'), wanted(room, '\x11');
        const auto out = Exact(got.data(), room);
        const long result = vqtest::ReferenceFromString(text, wanted.data(), size);
        ASSERT_EQ(VqString2VqMBS(text, out.get(), size), result) << size << " of " << whole;
        const long written = result < 0 ? -result : std::min(result + 1, size);
        const bool filled = text.GetCodeSet() < 6 && result >= 0 &&
                            wanted.find_first_not_of('\0', static_cast<std::size_t>(written)) == std::string::npos;
        const std::size_t same = filled ? room : static_cast<std::size_t>(written);
        ASSERT_EQ(Hex(out.get(), same), Hex(wanted.data(), same)) << size << " of " << whole;
    }
    char* buffer = nullptr;
    long length = -1;
    EXPECT_EQ(VqString2MultiByteString(text, buffer, length), whole);
    ASSERT_EQ(length, whole);
    std::string wanted(static_cast<std::size_t>(whole) + 1, 0);
    vqtest::ReferenceFromString(text, wanted.data(), whole + 1);
    EXPECT_EQ(Hex(buffer, wanted.size()), HexOf(wanted));
    VqFreeMultiByteString(buffer);
    for (const unsigned n : {0u, 1u, 2u, 7u, 40u, 65535u}) {
        const auto characters = static_cast<unsigned short>(n);
        EXPECT_EQ(VqMBSLength(text, characters), vqtest::ReferenceLength(text, characters)) << n;
    }
}

TEST(Multibyte, WritesTheBytesOfTheSlowWay) {
    std::mt19937 random(5);
    constexpr unsigned char CodeSets[] = {0, 1, 2, 3, 5, 6, 13, 253, 255};
    for (const unsigned char codeSet : CodeSets) {
        SCOPED_TRACE(int{codeSet});
        for (int round = 0; round < 40; ++round) {
            VqString text(codeSet, 2);
            std::u16string units;
            for (std::size_t n = random() % 60; n != 0; --n) {
                const unsigned range = codeSet < 225 ? 255 : round % 2 ? 0xFFFF : 0x900;
                units += static_cast<char16_t>(1 + random() % (round % 3 ? range : 0x7F));
            }
            const std::string bytes(units.begin(), units.end());
            if (codeSet < 225)
                text = In(codeSet, bytes, 2);
            else
                text.AssignChars(units.c_str(), codeSet, VqString::All);
            ExpectBytes(text);
        }
    }
    ExpectBytes(VqString(static_cast<unsigned char>(253), static_cast<unsigned char>(0)));
    ExpectBytes(In(1, std::string(65532, 'x')));
    ExpectBytes(Wide(std::u16string(32765, u'\u20AC')));
    char byte;
    EXPECT_EQ(VqString2VqMBS(VqString("a"), nullptr, 4), 0);
    EXPECT_EQ(VqString2VqMBS(VqString("a"), &byte, -1), 0);
    VqFreeMultiByteString(nullptr);
}

}  // namespace
