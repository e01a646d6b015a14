// Formats that mean harm, or nothing: what every row makes of them, the same on every target.
//
// Set VQTM_UPDATE_GOLDEN to write the file anew, and read the difference before committing it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "rowtest.h"
#include "vqbase.h"

using namespace vqtest;

namespace {

const char* const oddFormats[] = {
    "%n|%hhn|%s|%*d|%1$d|%[^x]|%%|100%",
    "%ld|%lu|%+#08x|%5.1e|%c",
    "%Y,%p|%I|%q|%L|%X|%S|%B|%a",
};

std::string Readable(const VqString& text) {
    std::string readable;
    for (const char c : Bytes(text)) {
        const auto byte = static_cast<unsigned char>(c);
        readable += byte >= 32 && byte < 127 ? std::string(1, c) : "\\" + Hex(&byte, 1);
    }
    return readable;
}

std::string TextsUnderOddFormats() {
    std::ostringstream out;
    out << "# Three samples of each row printed under odd formats, and two values scanned from "
           "\"12x-7,0x1F|{NULL}\".\n";
    VqTypeMgr manager(5);
    for (const Subject& subject : Subjects(true)) {
        if (subject.version < 4) continue;
        const char id = subject.id;
        const Samples& own = SamplesOf(id);
        const RowValues values(manager, id, {own.texts[0], own.texts[1], "{NULL}"}, own.format);
        out << '\n' << subject.Name() << '\n';
        for (const char* const format : oddFormats) {
            VqString printed, text("12x-7,0x1F|{NULL}"), shown;
            manager.PrintToVqString(id, printed, values.Get(), format, 3);
            const RowValues scanned(manager, id, {own.texts[0], own.texts[1]}, own.format);
            manager.ScanFromVqString(id, scanned.Get(), text, format, 2);
            manager.PrintToVqString(id, shown, scanned.Get(), own.format, 2);
            out << "  " << format << "  <" << Readable(printed) << ">  <" << Readable(shown) << ">\n";
        }
    }
    return out.str();
}

TEST(OddFormats, GiveTheSameTextsEverywhere) {
    const FixedClock clock({2024, 2, 29}, {13, 14, 15, 0});
    const std::string path = VQTM_SOURCE_DIR "/tests/golden/oddformats.txt", texts = TextsUnderOddFormats();
    if (std::getenv("VQTM_UPDATE_GOLDEN") != nullptr) std::ofstream(path, std::ios::binary) << texts;
    std::ifstream file(path, std::ios::binary);
    std::string golden(std::istreambuf_iterator<char>(file), {});
    std::erase(golden, '\r');
    EXPECT_EQ(texts, golden);
}

// Widths and formats beyond any text: nothing is written past a string's largest size, nor does it take forever.
TEST(OddFormats, OfAnyLengthStayWithinAString) {
    const FixedClock clock({2024, 2, 29}, {13, 14, 15, 0});
    const AssertRecorder asserts;
    std::string repeated;
    for (int i = 0; i < 5000; ++i) repeated += "%Y %d %H%S %c%s%L";
    VqTypeMgr manager(5);
    for (const Subject& subject : Subjects(true)) {
        SCOPED_TRACE(subject.Name());
        const char id = subject.id;
        const RowValues values(manager, id, SamplesOf(id).texts, SamplesOf(id).format);
        for (const std::string& format : {std::string("%2147483647d%99999999999999999999c|"),
                                          std::string("%.2147483647f"), std::string("%-4294967297s"), repeated}) {
            VqString out;
            manager.PrintToVqString(id, out, values.Get(), format.c_str(), 2);
            EXPECT_LE(out.GetSize(), unsigned{VqString::MaxSize});
            VqString text(repeated.substr(0, 40000).c_str());
            manager.ScanFromVqString(id, values.Get(), text, format.c_str(), 2);
            manager.PrintToVqString(id, out, values.Get(), nullptr, 2);
        }
    }
}

}  // namespace
