// UTF-8 into strings and out of them, next to ICU's conversions between the caller's buffers. ToString makes and
// releases the string each time, where ICU has no allocation to pay for; ToNewBuffer makes and releases a buffer on
// both sides.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "multibyte.h"
#include "vqstring.h"

#ifdef VQTM_HAVE_ICU
#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#endif

namespace {

constexpr std::size_t Lengths[] = {16, 64, 1024, 30 * 1024};

constexpr const char* Samples[][2] = {
    {"Ascii", "The quick brown fox jumps over the lazy dog; 1234567890 times. "},
    {"Latin", "Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich. Él añoró la façade. "},
    {"Cjk", "色は匂へど散りぬるを我が世誰ぞ常ならむ有為の奥山今日越えて浅き夢見じ酔ひもせず。"},
};

// Whole characters of the sample over and over, `length` bytes or up to two less.
std::string TextOf(const std::string& sample, std::size_t length) {
    std::string text;
    while (text.size() <= length) text += sample;
    while ((text[length] & 0xC0) == 0x80) --length;
    return text.substr(0, length);
}

VqString StringOf(const std::string& text) {
    VqString s;
    if (VqMBS2VqString(text.data(), s, static_cast<long>(text.size())) != static_cast<long>(text.size())) std::abort();
    return s;
}

void CountBytes(benchmark::State& state, const std::string& text) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void ToString(benchmark::State& state, const std::string& text) {
    for (auto _ : state) {
        VqString s(static_cast<unsigned char>(253), static_cast<unsigned char>(0));
        benchmark::DoNotOptimize(VqMBS2VqString(text.data(), s, static_cast<long>(text.size())));
        benchmark::DoNotOptimize(s.StrGet());
    }
    CountBytes(state, text);
}

void ToBuffer(benchmark::State& state, const std::string& text) {
    const VqString s = StringOf(text);
    std::vector<char> out(text.size() + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(VqString2VqMBS(s, out.data(), static_cast<long>(out.size())));
        benchmark::ClobberMemory();
    }
    if (text != out.data()) state.SkipWithError("wrong bytes");
    CountBytes(state, text);
}

void ToNewBuffer(benchmark::State& state, const std::string& text) {
    const VqString s = StringOf(text);
    for (auto _ : state) {
        char* out;
        long length;
        benchmark::DoNotOptimize(VqString2MultiByteString(s, out, length));
        benchmark::DoNotOptimize(out);
        VqFreeMultiByteString(out);
    }
    CountBytes(state, text);
}

#ifdef VQTM_HAVE_ICU

std::vector<UChar> IcuUnits(const std::string& text) {
    std::vector<UChar> units(text.size() + 1);
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8(units.data(), static_cast<std::int32_t>(units.size()), &length, text.data(),
                  static_cast<std::int32_t>(text.size()), &status);
    if (U_FAILURE(status)) std::abort();
    units.resize(static_cast<std::size_t>(length));
    return units;
}

void IcuToUnits(benchmark::State& state, const std::string& text) {
    std::vector<UChar> out(text.size() + 1);
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t length;
        benchmark::DoNotOptimize(u_strFromUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, text.data(),
                                               static_cast<std::int32_t>(text.size()), &status));
        benchmark::ClobberMemory();
    }
    CountBytes(state, text);
}

void IcuToBuffer(benchmark::State& state, const std::string& text) {
    const std::vector<UChar> units = IcuUnits(text);
    std::vector<char> out(text.size() + 1);
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t length;
        benchmark::DoNotOptimize(u_strToUTF8(out.data(), static_cast<std::int32_t>(out.size()), &length, units.data(),
                                             static_cast<std::int32_t>(units.size()), &status));
        benchmark::ClobberMemory();
    }
    CountBytes(state, text);
}

// Into a buffer that is large enough for any text of so many units.
void IcuToNewBuffer(benchmark::State& state, const std::string& text) {
    const std::vector<UChar> units = IcuUnits(text);
    for (auto _ : state) {
        UErrorCode status = U_ZERO_ERROR;
        std::int32_t length;
        char* const out = new char[3 * units.size() + 1];
        benchmark::DoNotOptimize(u_strToUTF8(out, static_cast<std::int32_t>(3 * units.size() + 1), &length,
                                             units.data(), static_cast<std::int32_t>(units.size()), &status));
        benchmark::DoNotOptimize(out);
        delete[] out;
    }
    CountBytes(state, text);
}

#endif

// --- Mapping from a 1-byte set to Unicode

std::string Windows1252Text(std::size_t length) {
    VqString s = StringOf(TextOf(Samples[1][1], 4 * length));
    s.MapToCodeSet(1);
    return std::string(s.StrGet(), length);
}

void Map(benchmark::State& state, std::size_t length) {
    const std::string text = Windows1252Text(length);
    VqString s(static_cast<unsigned char>(1), static_cast<unsigned char>(0));
    s.AssignChars(text.data(), 1, static_cast<unsigned short>(length));
    for (auto _ : state) {
        VqString mapped(static_cast<unsigned char>(253), static_cast<unsigned char>(0));
        mapped.CopyMapped(s, 253);
        benchmark::DoNotOptimize(mapped.StrGet());
    }
    CountBytes(state, text);
}

void MapBack(benchmark::State& state, std::size_t length) {
    const std::string text = Windows1252Text(length);
    VqString s(static_cast<unsigned char>(1), static_cast<unsigned char>(0));
    s.AssignChars(text.data(), 1, static_cast<unsigned short>(length));
    s.MapToCodeSet(253);
    for (auto _ : state) {
        VqString mapped(static_cast<unsigned char>(1), static_cast<unsigned char>(0));
        mapped.CopyMapped(s, 1);
        benchmark::DoNotOptimize(mapped.StrGet());
    }
    CountBytes(state, text);
}

void ByteTextToUtf8(benchmark::State& state, std::size_t length) {
    const std::string text = Windows1252Text(length);
    VqString s(static_cast<unsigned char>(1), static_cast<unsigned char>(0));
    s.AssignChars(text.data(), 1, static_cast<unsigned short>(length));
    std::vector<char> out(3 * length + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(VqString2VqMBS(s, out.data(), static_cast<long>(out.size())));
        benchmark::ClobberMemory();
    }
    CountBytes(state, text);
}

#ifdef VQTM_HAVE_ICU

void IcuMap(benchmark::State& state, std::size_t length) {
    const std::string text = Windows1252Text(length);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open("windows-1252", &status);
    std::vector<UChar> out(length + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ucnv_toUChars(converter, out.data(), static_cast<std::int32_t>(out.size()),
                                               text.data(), static_cast<std::int32_t>(length), &status));
        benchmark::ClobberMemory();
    }
    ucnv_close(converter);
    CountBytes(state, text);
}

void IcuMapBack(benchmark::State& state, std::size_t length) {
    const std::string text = Windows1252Text(length);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const converter = ucnv_open("windows-1252", &status);
    std::vector<UChar> units(length + 1);
    ucnv_toUChars(converter, units.data(), static_cast<std::int32_t>(units.size()), text.data(),
                  static_cast<std::int32_t>(length), &status);
    std::vector<char> out(length + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ucnv_fromUChars(converter, out.data(), static_cast<std::int32_t>(out.size()),
                                                 units.data(), static_cast<std::int32_t>(length), &status));
        benchmark::ClobberMemory();
    }
    ucnv_close(converter);
    CountBytes(state, text);
}

void IcuByteTextToUtf8(benchmark::State& state, std::size_t length) {
    const std::string text = Windows1252Text(length);
    std::vector<char> out(3 * length + 1);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const from = ucnv_open("windows-1252", &status);
    for (auto _ : state) {
        benchmark::DoNotOptimize(ucnv_toAlgorithmic(UCNV_UTF8, from, out.data(), static_cast<std::int32_t>(out.size()),
                                                    text.data(), static_cast<std::int32_t>(length), &status));
        benchmark::ClobberMemory();
    }
    ucnv_close(from);
    CountBytes(state, text);
}

#endif

template <class Function, class Argument>
void Register(const std::string& name, Function run, const Argument& argument) {
    benchmark::RegisterBenchmark(name.c_str(), run, argument);
}

const bool registered = [] {
    for (const auto& [script, sample] : Samples) {
        for (const std::size_t length : Lengths) {
            const std::string text = TextOf(sample, length),
                              end = std::string(script) + "/" + std::to_string(length) + "/";
            Register("Utf8/ToString/" + end + "ours", ToString, text);
            Register("Utf8/ToBuffer/" + end + "ours", ToBuffer, text);
            Register("Utf8/ToNewBuffer/" + end + "ours", ToNewBuffer, text);
#ifdef VQTM_HAVE_ICU
            Register("Utf8/ToString/" + end + "peer_icu", IcuToUnits, text);
            Register("Utf8/ToBuffer/" + end + "peer_icu", IcuToBuffer, text);
            Register("Utf8/ToNewBuffer/" + end + "peer_icu", IcuToNewBuffer, text);
#endif
        }
    }
    for (const std::size_t length : {std::size_t{16}, std::size_t{1024}}) {
        const std::string end = "/" + std::to_string(length) + "/";
        Register("Utf8/Windows1252ToUnicode" + end + "ours", Map, length);
        Register("Utf8/UnicodeToWindows1252" + end + "ours", MapBack, length);
        Register("Utf8/Windows1252ToBuffer" + end + "ours", ByteTextToUtf8, length);
#ifdef VQTM_HAVE_ICU
        Register("Utf8/Windows1252ToUnicode" + end + "peer_icu", IcuMap, length);
        Register("Utf8/UnicodeToWindows1252" + end + "peer_icu", IcuMapBack, length);
        Register("Utf8/Windows1252ToBuffer" + end + "peer_icu", IcuByteTextToUtf8, length);
#endif
    }
    return true;
}();

}  // namespace
