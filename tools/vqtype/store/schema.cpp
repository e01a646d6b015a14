#include "schema.h"

#include <algorithm>
#include <set>

#include "../error.h"
#include "../nearest.h"
#include "vqlanguagecontext.h"

namespace store {

namespace {

constexpr std::size_t MostColumns = 1000, LongestName = 200;
constexpr TextOptions ColumnText{253, 0, false};

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

bool IsName(std::string_view text) {
    return !text.empty() && IsLetter(text[0]) &&
           std::all_of(text.begin(), text.end(), [](char c) { return IsLetter(c) || IsDigit(c); });
}

// Walks a schema's text.
class Reader {
  public:
    Reader(std::string_view text, const std::string& place) : text_(text), place_(place) {}

    // "--schema, position 7", of the next character or of the one at `at`.
    std::string Place(std::size_t at) const {
        const std::string_view before = text_.substr(0, at);
        const auto characters = std::count_if(before.begin(), before.end(),
                                              [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
        return fmt::format("{}, position {}", place_, characters + 1);
    }
    [[noreturn]] void Fail(const char* expected) const {
        const std::string found = IsAtEnd() ? "the end" : Echo(text_.substr(at_));
        throw CommandError("{}: expected {}, and not {}", Place(at_), expected, found);
    }

    bool IsAtEnd() const { return at_ == text_.size(); }
    std::size_t At() const { return at_; }
    void SkipBlanks() {
        while (!IsAtEnd() && IsBlank(text_[at_])) ++at_;
    }
    bool Take(char c) {
        SkipBlanks();
        if (IsAtEnd() || text_[at_] != c) return false;
        ++at_;
        SkipBlanks();
        return true;
    }
    void Require(char c, const char* expected) {
        if (!Take(c)) Fail(expected);
    }
    std::string RequireName(const char* expected) {
        const std::string_view rest = text_.substr(at_);
        const auto end = std::find_if_not(rest.begin(), rest.end(), [](char c) { return IsLetter(c) || IsDigit(c); });
        const std::string_view name = rest.substr(0, static_cast<std::size_t>(end - rest.begin()));
        if (!IsName(name)) Fail(expected);
        at_ += name.size();
        return std::string(name);
    }
    // What stands in front of the next ',' or ')'.
    std::string RequireValue(const char* expected) {
        std::string_view value = text_.substr(at_);
        value = value.substr(0, value.find_first_of(",)"));
        while (!value.empty() && IsBlank(value.back())) value.remove_suffix(1);
        if (value.empty()) Fail(expected);
        at_ += value.size();
        return std::string(value);
    }

  private:
    std::string_view text_;
    const std::string& place_;
    std::size_t at_ = 0;
};

VqTypeId ReadType(Reader& reader) {
    const std::string place = reader.Place(reader.At()) + ":";
    const VqTypeId type = ParseType(reader.RequireName("a type, as `vqtype types` lists them"), place.c_str());
    if (CanEncode(type)) return type;
    throw CommandError("{} {} cannot be a column's type: its values cannot be stored or written as text", place,
                       TypeName(type));
}

// language=L or codeset=C
void ReadOption(Reader& reader, TextOptions& text, std::set<std::string>& seen) {
    const std::size_t at = reader.At();
    const std::string name = Lowered(reader.RequireName("language=… or codeset=…"));
    const bool isLanguage = name == "language";
    if (!isLanguage && name != "codeset") {
        NearestName nearest(name);
        nearest.Try("language");
        nearest.Try("codeset");
        throw CommandError("{}: {}: expected language=… or codeset=…{}", reader.Place(at), Echo(name),
                           nearest.Question());
    }
    if (!seen.insert(name).second) throw CommandError("{}: {} is there twice", reader.Place(at), name);
    reader.Require('=', "'='");
    const std::string place = reader.Place(reader.At()) + ":";
    if (isLanguage) {
        text.language = ParseLanguage(reader.RequireValue("a language"), place.c_str());
    } else {
        text.codeSet = ParseCodeSet(reader.RequireValue("a code set"), place.c_str());
    }
}

void ReadOptions(Reader& reader, Column& column) {
    const std::size_t at = reader.At();
    if (!reader.Take('(')) return;
    if (column.type != VqTypeId_VqString) {
        throw CommandError("{}: only VqString has a language and a code set, and not {}", reader.Place(at),
                           TypeName(column.type));
    }
    std::set<std::string> seen;
    do {
        ReadOption(reader, column.text, seen);
    } while (reader.Take(','));
    reader.Require(')', "',' or ')'");
}

Column ReadColumn(Reader& reader, const std::vector<Column>& others) {
    const std::size_t at = reader.At();
    Column column{reader.RequireName("a column's name: a letter or '_', then letters, digits, '_'"), {}, ColumnText};
    if (column.name.size() > LongestName) {
        throw CommandError("{}: a column's name has at most {} letters, and not {}", reader.Place(at), LongestName,
                           column.name.size());
    }
    for (const Column& other : others) {
        if (!EqualIgnoringCase(other.name, column.name)) continue;
        throw CommandError("{}: there is a column {} already; names differ in more than case", reader.Place(at),
                           other.name);
    }
    reader.Require(':', "':' and a type");
    column.type = ReadType(reader);
    ReadOptions(reader, column);
    return column;
}

std::string OptionsText(const TextOptions& text) {
    std::string options;
    if (text.language != ColumnText.language) {
        const char* name = VqLanguageContext::GetLanguageName(text.language);
        options += fmt::format("language={}", name ? name : fmt::to_string(text.language));
    }
    if (text.codeSet != ColumnText.codeSet) {
        options += fmt::format("{}codeset={}", options.empty() ? "" : ", ", CodeSetName(text.codeSet));
    }
    return options.empty() ? "" : "(" + options + ")";
}

}  // namespace

Schema Schema::Parse(std::string_view text, const std::string& place) {
    Schema schema;
    Reader reader(text, place);
    reader.SkipBlanks();
    do {
        if (schema.Count() == MostColumns) {
            throw CommandError("{}: a store has at most {} columns", reader.Place(reader.At()), MostColumns);
        }
        schema.columns_.push_back(ReadColumn(reader, schema.columns_));
    } while (reader.Take(','));
    if (!reader.IsAtEnd()) reader.Fail("',' and another column, or the end");
    return schema;
}

std::string Schema::Format() const {
    std::string text;
    for (const Column& column : columns_) {
        text += fmt::format("{}{}:{}{}", text.empty() ? "" : ", ", column.name, TypeName(column.type),
                            OptionsText(column.text));
    }
    return text;
}

std::size_t Schema::Find(std::string_view name, const std::string& place) const {
    NearestName nearest(name);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (EqualIgnoringCase(columns_[i].name, name)) return i;
        nearest.Try(columns_[i].name);
    }
    throw CommandError("{}: there is no column {}{}", place, Echo(name), nearest.Question());
}

std::vector<std::size_t> ParseColumnList(const Schema& schema, std::string_view names, const std::string& place) {
    std::vector<std::size_t> columns;
    for (;;) {
        const std::size_t end = names.find(',');
        std::string_view name = names.substr(0, end);
        while (!name.empty() && IsBlank(name.front())) name.remove_prefix(1);
        while (!name.empty() && IsBlank(name.back())) name.remove_suffix(1);
        if (name.empty()) throw CommandError("{}: expected columns' names with commas between", place);
        columns.push_back(schema.Find(name, place));
        if (std::count(columns.begin(), columns.end(), columns.back()) > 1) {
            throw CommandError("{}: column {} is there twice", place, schema[columns.back()].name);
        }
        if (end == names.npos) return columns;
        names.remove_prefix(end + 1);
    }
}

}  // namespace store
