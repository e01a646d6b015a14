#include "place.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "command.h"
#include "error.h"
#include "store/columns.h"
#include "text.h"
#include "textrules.h"
#include "values.h"

namespace {

using Choices = std::vector<std::string>;

bool TypedType(const Typed& typed, VqTypeId& id) {
    char found = 0;
    if (Manager().Name2VqTypeId(typed.type.c_str(), found) != 0) return false;
    id = static_cast<VqTypeId>(found);
    return id != VqTypeId_illegal;
}

Choices Nothing(const Typed&) { return {}; }

Choices Types(const Typed&) {
    Choices names;
    for (int i = 0; i < VqTypeCount; ++i) {
        if (i != VqTypeId_illegal) names.push_back(TypeName(static_cast<VqTypeId>(i)));
    }
    return names;
}

// The texts that a type has words for.
Choices Values(const Typed& typed) {
    VqTypeId id;
    if (!TypedType(typed, id)) return {};
    Choices words;
    if (id == VqTypeId_VqBoolean) words = {"TRUE", "FALSE"};
    if (Manager().SupportsNullValue(id)) words.push_back(ToUtf8(Manager().GetNullPrintString()));
    return words;
}

Choices Formats(const Typed& typed) {
    VqTypeId id;
    return TypedType(typed, id) ? Choices{RowFormat(id)} : Choices{};
}

Choices Orders(const Typed&) { return {"little", "big"}; }

Choices Forms(const Typed&) { return {"memory", "little", "big"}; }

// Names, or numbers once a digit is typed.
Choices NamesOrNumbers(const Typed& typed, const std::vector<NamedCode>& codes) {
    const bool isNumber = !typed.part.empty() && typed.part[0] >= '0' && typed.part[0] <= '9';
    Choices choices;
    for (const auto& [number, name] : codes) choices.push_back(isNumber ? fmt::to_string(number) : name);
    return choices;
}

Choices CodeSets(const Typed& typed) { return NamesOrNumbers(typed, ::CodeSets()); }

Choices Languages(const Typed& typed) { return NamesOrNumbers(typed, ::Languages()); }

// Those that the list does not have already.
Choices Flags(const Typed& typed) {
    Choices flags;
    for (const std::string& name : ComparisonFlags()) {
        if (("," + typed.before).find("," + name + ",") == std::string::npos) flags.push_back(name);
    }
    return flags;
}

Choices Operators(const Typed&) { return ComparisonOperators(); }

// --- Places of the store

// The last character that is no blank; zero without one.
char LastOf(const std::string& text) {
    const std::size_t last = text.find_last_not_of(' ');
    return last == std::string::npos ? '\0' : text[last];
}

Choices StorableTypes(const Typed& typed) {
    Choices names = Types(typed);
    names.erase(
        std::remove_if(names.begin(), names.end(), [](const std::string& name) { return !CanEncode(ParseType(name)); }),
        names.end());
    return names;
}

// What the type of a string can have behind it in parentheses.
Choices StringOptions(const Typed& typed) {
    if (LastOf(typed.before) != '=') return {"language=", "codeset="};
    const bool isLanguage = typed.before.rfind("language") + 1 > typed.before.rfind("codeset") + 1;
    return isLanguage ? Languages(typed) : CodeSets(typed);
}

Choices SchemaParts(const Typed& typed) {
    if (LastOf(typed.before) == ':') return StorableTypes(typed);
    const bool isInside = typed.before.rfind('(') + 1 > typed.before.rfind(')') + 1;  // npos + 1 is 0
    return isInside ? StringOptions(typed) : Choices{};
}

Choices Columns(const Typed& typed) {
    Choices names;
    for (const store::Column& column : store::ColumnsOf(typed.store)) names.push_back(column.name);
    return names;
}

// A query begins with a column, if not with the order, whose columns have directions behind them.
Choices QueryWords(const Typed& typed) {
    const std::string before = Lowered(typed.before);
    const std::size_t order = before.rfind(" by ");
    if (order == before.npos) {
        Choices words = Columns(typed);
        words.insert(words.end(), {"order by", "limit"});
        if (!before.empty()) words.insert(words.end(), {"like", "not", "between", "and", "is", "null", "offset"});
        return words;
    }
    const bool isBehindColumn = before.size() > order + 4 && LastOf(before) != ',';
    return isBehindColumn ? Choices{"asc", "desc", "limit", "offset"} : Columns(typed);
}

// COLUMN=, and behind it the format of the column's type.
Choices ColumnFormats(const Typed& typed) {
    Choices choices;
    for (const store::Column& column : store::ColumnsOf(typed.store)) {
        if (typed.before.empty()) choices.push_back(column.name + '=');
        if (EqualIgnoringCase(typed.before, column.name + '=')) choices.push_back(RowFormat(column.type));
    }
    return choices;
}

struct Place {
    Takes takes;
    const char* name;
    Choices (*choices)(const Typed&);
    const char* breaks = "";  // behind each of these another part begins
    bool isClosed = false;    // nothing but the choices
};

constexpr Place Places[] = {
    {Takes::Type, "TYPE", Types},
    {Takes::Value, "VALUE", Values},
    {Takes::Text, "TEXT", Nothing},
    {Takes::Hex, "HEX", Nothing},
    {Takes::File, "FILE", Nothing},  // the shell knows them
    {Takes::Format, "FORMAT", Formats},
    {Takes::Order, "ORDER", Orders, "", true},
    {Takes::Form, "FORM", Forms, "", true},
    {Takes::CodeSet, "CODESET", CodeSets},
    {Takes::Language, "LANGUAGE", Languages},
    {Takes::Flags, "FLAGS", Flags, ","},
    {Takes::Operator, "OPERATOR", Operators},
    {Takes::Bytes, "BYTES", Nothing},
    {Takes::Rows, "ROWS", Nothing},
    {Takes::Store, "DB", Nothing},  // a file
    {Takes::Schema, "SCHEMA", SchemaParts, ":(,="},
    {Takes::Columns, "COLUMNS", Columns, ","},
    {Takes::Query, "QUERY", QueryWords, " =<>!,"},
    {Takes::ColumnFormat, "COLUMN=FORMAT", ColumnFormats, "="},
};

constexpr bool EveryPlaceIsInItsPlace() {
    for (std::size_t i = 0; i < std::size(Places); ++i) {
        if (static_cast<std::size_t>(Places[i].takes) != i) return false;
    }
    return std::size(Places) == static_cast<std::size_t>(Takes::ColumnFormat) + 1;
}
static_assert(EveryPlaceIsInItsPlace());

const Place& PlaceOf(Takes takes) { return Places[static_cast<std::size_t>(takes)]; }

// Null where no place has the name.
const Place* FindPlace(std::string_view name) {
    const auto* const found =
        std::find_if(std::begin(Places), std::end(Places), [&](const Place& known) { return known.name == name; });
    return found == std::end(Places) ? nullptr : found;
}

}  // namespace

const char* PlaceName(Takes takes) { return PlaceOf(takes).name; }

std::size_t PartStart(std::string_view place, std::string_view word) {
    const Place* const known = FindPlace(place);
    const std::size_t last = known ? word.find_last_of(known->breaks) : word.npos;
    return last == word.npos ? 0 : std::min(word.find_first_not_of(' ', last + 1), word.size());
}

bool ListChoices(std::string_view place, const Typed& typed, std::vector<std::string>& choices) {
    const Place* const known = FindPlace(place);
    if (known == nullptr) return false;
    choices = known->choices(typed);
    return true;
}

const std::string& CheckChoice(Takes takes, const std::string& name, const std::string& text) {
    const Place& place = PlaceOf(takes);
    if (!place.isClosed) return text;
    const Choices choices = place.choices({});
    if (std::find(choices.begin(), choices.end(), text) != choices.end()) return text;
    const auto last = choices.end() - 1;
    throw CommandError("{} {}: expected {} or {}", name, Echo(text), fmt::join(choices.begin(), last, ", "), *last);
}
