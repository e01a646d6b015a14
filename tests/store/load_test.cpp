// Reading CSV files and their fields: against a plain writer, against libcsv alone, and against the long way.
#include <gtest/gtest.h>

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "../../tools/vqtype/store/fieldreader.h"
#include "../../tools/vqtype/store/load.h"
#include "../../tools/vqtype/store/rowreader.h"

namespace store {

namespace {

using Rows = std::vector<std::string>;

// Gives the text in two pieces, or more where no more is asked for at once.
ByteSource Pieces(std::string_view text, std::size_t first) {
    return [text, first, at = std::size_t{0}](char* to, std::size_t size) mutable {
        const std::size_t end = at < first ? first : text.size(), count = std::min(size, end - at);
        std::copy_n(text.data() + at, count, to);
        at += count;
        return count;
    };
}

// A row in a line: where it begins, the fields with bars between, ~ for one that is absent. A bad one has '!', the line
// and the field of its fault, and why.
std::string Told(const CsvReader& csv) {
    std::string row = fmt::format("{}:", csv.Line());
    if (!csv.IsGood()) return row + fmt::format("! {} {} {}", csv.Fault().line, csv.Fault().field, csv.Fault().text);
    for (const CsvField& field : csv.Fields()) row += fmt::format("|{}", field.isAbsent ? "~" : field.text);
    return row;
}

Rows Read(std::string_view text, std::size_t first = 0, bool usesShortcut = true) {
    CsvReader csv(Pieces(text, first), usesShortcut);
    Rows rows;
    while (csv.Next()) rows.push_back(Told(csv));
    EXPECT_EQ(csv.Position(), text.size());
    return rows;
}

constexpr const char* Behind = "text stands behind a closing quote";
constexpr const char* Inside = "a quote stands in a field that does not begin with one";
constexpr const char* Return = "a carriage return stands outside of quotes";
constexpr const char* Unclosed = "the quote that opens here is not closed before the end of the file";

struct Torture {
    std::string text;
    Rows rows;
};

const Torture Tortures[] = {
    {"", {}},
    {"\xEF\xBB\xBF", {}},
    {"\n\r\n\n", {}},
    {"\xEF\xBB\xBF"
     "a,b\n",
     {"1:|a|b"}},
    {"a,b\r\nc,d", {"1:|a|b", "2:|c|d"}},
    {",\n\"\",\"\"\r\n", {"1:|~|~", "2:||"}},
    {"a,\n\n b ,\t", {"1:|a|~", "3:| b |\t"}},
    {"\"a\"\"b\",\"\"\"\"\n", {"1:|a\"b|\""}},
    {"\"x\r\ny\n\",z\nw,v\n", {"1:|x\r\ny\n|z", "4:|w|v"}},
    {"\"\n\n\n\"\nk\n", {"1:|\n\n\n", "5:|k"}},
    {"a\r", {"1:|a"}},
    {"\"a\"", {"1:|a"}},
    {std::string("a\0b,c\n", 6), {std::string("1:|a\0b|c", 8)}},
    {"\xFF,\"\xC3\"\n", {"1:|\xFF|\xC3"}},
    // What is no row.
    {"a\rb,c\nd\n", {std::string("1:! 1 0 ") + Return, "2:|d"}},
    {"a,b\"c\nd\n", {std::string("1:! 1 1 ") + Inside, "2:|d"}},
    {"a,\"b\"c\nd\n", {std::string("1:! 1 1 ") + Behind, "2:|d"}},
    {"\"a\" ,b\n \"a\",b\n", {std::string("1:! 1 0 ") + Behind, std::string("2:! 2 0 ") + Inside}},
    {"a\n\"b\nc\nd", {"1:|a", std::string("2:! 2 0 ") + Unclosed, "3:|c", "4:|d"}},
    {"a,\"\nb\n\"x\"\nc\n",
     {std::string("1:! 1 1 a quote opens here, and on line 3 ") + Behind, "2:|b", "3:|x", "4:|c"}},
    {"\"p\nq\",\"r\ns\nt", {std::string("1:! 2 1 ") + Unclosed, "3:|s", "4:|t"}},
};

TEST(CsvReader, ReadsWhatPeopleHaveWhereverItIsCut) {
    for (const Torture& torture : Tortures) {
        for (std::size_t first = 0; first <= torture.text.size(); ++first) {
            EXPECT_EQ(Read(torture.text, first), torture.rows) << torture.text << " cut at " << first;
        }
    }
}

TEST(CsvReader, BoundsFieldsAndRows) {
    const std::string field(CsvReader::FieldLimit, 'f'), huge(CsvReader::RowLimit * 2 + 7, 'h');
    EXPECT_EQ(Read(field + "," + field + "\na\n")[0], "1:|" + field + "|" + field);
    EXPECT_EQ(Read("a," + field + "f\nb\n"), (Rows{"1:! 1 1 the field is longer than 1 MiB", "2:|b"}));
    EXPECT_EQ(Read("\"" + field + "f\",a\nb\n"), (Rows{"1:! 1 0 the field is longer than 1 MiB", "2:|b"}));
    // Over lines: of a field that gets too long on its last line the row is told where it opens.
    EXPECT_EQ(Read("a,\"" + field.substr(9) + "\n0123456789\"\nb\n"),
              (Rows{"1:! 1 1 the field is longer than 1 MiB", std::string("2:! 2 0 ") + Inside, "3:|b"}));
    for (const std::string quote : {"", "\""}) {
        for (const std::string& row : {huge, huge.substr(0, CsvReader::RowLimit)}) {
            for (const std::size_t first : {std::size_t{0}, std::size_t{1}, row.size() + 1}) {
                EXPECT_EQ(Read(quote + row + "\nb\n", first), (Rows{"1:! 1 0 the row is longer than 16 MiB", "2:|b"}));
            }
        }
    }
}

class RandomText {
  public:
    std::size_t Below(std::size_t n) { return random_() % n; }
    std::string Next(std::string_view alphabet, std::size_t most) {
        std::string text(Below(most + 1), ' ');
        for (char& c : text) c = alphabet[Below(alphabet.size())];
        return text;
    }

  private:
    std::mt19937 random_{7};
};

TEST(CsvReader, ReadsBackWhatIsWritten) {
    RandomText random;
    std::string text, line;
    Rows rows;
    std::size_t lines = 1;
    for (int i = 0; i < 20'000; ++i) {
        std::string row = fmt::format("{}:", lines);
        line.clear();
        for (std::size_t fields = 1 + random.Below(4), f = 0; f < fields; ++f) {
            const std::string field = random.Next("ab ,\"\n\r", 4);
            row += "|" + field;
            std::string doubled;
            for (const char c : field) doubled += c == '"' ? "\"\"" : std::string(1, c);
            const bool isPlain = !field.empty() && field.find_first_of(",\"\r\n") == field.npos;
            line += (f ? "," : "") + (isPlain ? field : '"' + doubled + '"');
        }
        line += random.Below(2) ? "\n" : "\r\n";
        lines += static_cast<std::size_t>(std::count(line.begin(), line.end(), '\n'));
        text += line;
        rows.push_back(row);
    }
    EXPECT_EQ(Read(text), rows);
}

TEST(CsvReader, CutsPlainLinesAsLibcsvDoes) {
    RandomText random;
    for (int i = 0; i < 10'000; ++i) {
        const std::string text = random.Next("aab,,\"\r\n\n", 24);
        ASSERT_EQ(Read(text), Read(text, 0, false)) << text;
    }
}

// --- Fields

Column ColumnOf(VqTypeId type) { return {"c", type, {static_cast<unsigned char>(1), 2, true}}; }

TEST(FieldReader, ReadsQuicklyWhatTheLongWayReads) {
    constexpr std::string_view alphabets[] = {"0123456789", "0119-.", "-0129.eE+x ", "2001-0:9T", "truefalsTRUE10"};
    RandomText random;
    for (int i = 0; i < VqTypeCount; ++i) {
        const auto type = static_cast<VqTypeId>(i);
        if (!CanEncode(type)) continue;
        for (const unsigned char format : {VqFormat_LittleEndian, VqFormat_BigEndian}) {
            const Column column = ColumnOf(type);
            FieldReader reader(column, format, std::nullopt);
            for (int n = 0; n < 4'000; ++n) {
                std::string text = random.Next(alphabets[random.Below(std::size(alphabets))], 20);
                if (random.Below(3) == 0) text = fmt::format("{:04}-{:02}-{:02}", n, 1 + n % 13, 1 + n % 32);
                if (random.Below(8) == 0) text += fmt::format("T{:02}:{:02}:{:02}", n % 25, n % 61, n % 7);
                Bytes quick, slow;
                if (!reader.ReadQuickly(text, quick)) continue;
                ASSERT_TRUE(reader.ReadText(text, slow)) << TypeName(type) << " " << text << ": " << reader.Fault();
                ASSERT_EQ(quick, slow) << TypeName(type) << " " << text;
            }
        }
    }
}

struct FieldCase {
    VqTypeId type;
    const char* text;
    std::optional<std::string> scan;
    const char* value;  ///< as the workbench prints it; null where the text is none
};

TEST(FieldReader, TakesTextsAsTheWorkbenchDoes) {
    const FieldCase cases[] = {
        {VqTypeId_VqInt64, "-9223372036854775808", {}, "-9223372036854775808"},
        {VqTypeId_VqInt64, "9223372036854775808", {}, nullptr},
        {VqTypeId_VqInt64, "{NULL}", {}, nullptr},
        {VqTypeId_VqInt64, " 1", {}, nullptr},
        {VqTypeId_double, "0.1", {}, "0.1"},
        {VqTypeId_VqDate, "2004-02-29", {}, "2004-02-29"},
        {VqTypeId_VqDate, "29.2.2004", {}, nullptr},
        {VqTypeId_VqDate, "{NULL}", {}, nullptr},
        {VqTypeId_VqDate, "29.02.2004", "%d.%m.%Y", "2004-02-29"},
        {VqTypeId_VqDate, "2004-02-29", "%d.%m.%Y", nullptr},
        {VqTypeId_VqDate, "31.04.2004", "%d.%m.%Y", nullptr},
        {VqTypeId_VqDate, "yesterday", "%d.%m.%Y", nullptr},
        {VqTypeId_VqDate, "31.12.99", "%d.%m.%Y", nullptr},
        {VqTypeId_VqBoolean, "0x7f", {}, nullptr},
        {VqTypeId_double, "0.1234567", "%lf", "0.1234567"},
        {VqTypeId_VqString, "{NULL}", {}, "{NULL}"},
        {VqTypeId_VqIString, "{NULL}", {}, "{NULL}"},
        {VqTypeId_VqString, "Stra\u00DFe", {}, "Stra\u00DFe"},
        {VqTypeId_VqString, "", {}, ""},
        {VqTypeId_VqString, "\u0436", {}, nullptr},
        {VqTypeId_VqString, "\xC3", {}, nullptr},
    };
    for (const FieldCase& c : cases) {
        const Column column = ColumnOf(c.type);
        FieldReader reader(column, VqFormat_BigEndian, std::nullopt, c.scan);
        Bytes bytes;
        ASSERT_EQ(reader.Read({c.text, false}, bytes), c.value != nullptr) << c.text << " " << reader.Fault();
        const ValueArray value(c.type, 1);
        if (c.value) value.Load(bytes, VqFormat_BigEndian);
        EXPECT_EQ(c.value ? value.PrintExact(0) : "", c.value ? c.value : "") << c.text;
    }
}

TEST(FieldReader, RefusesFormatsThatShowNoValue) {
    for (const VqTypeId type : {VqTypeId_double, VqTypeId_VqDate, VqTypeId_VqNull_VqInt64}) {
        for (const char* format : {"7", "", "%%", "%n", "%s"}) {
            const Column column = ColumnOf(type);
            EXPECT_THROW(FieldReader(column, VqFormat_LittleEndian, std::nullopt, format), CommandError)
                << TypeName(type) << " " << format;
        }
    }
}

TEST(FieldReader, TellsNullFromEmptyTexts) {
    const Column text = ColumnOf(VqTypeId_VqString), number = ColumnOf(VqTypeId_long);
    Bytes null, empty, other;
    FieldReader plain(text, VqFormat_LittleEndian, std::nullopt), named(text, VqFormat_LittleEndian, "-");
    EXPECT_TRUE(plain.Read({"", true}, null) && plain.Read({"", false}, empty) && named.Read({"", true}, other));
    EXPECT_NE(null, empty);
    EXPECT_EQ(empty, other);
    other.clear();
    EXPECT_TRUE(named.Read({"-", false}, other));
    EXPECT_EQ(null, other);
    FieldReader numbers(number, VqFormat_LittleEndian, std::nullopt);
    EXPECT_FALSE(numbers.Read({"", true}, other));
    EXPECT_EQ(numbers.Fault(), "column c: long has no null value");
}

}  // namespace

}  // namespace store
