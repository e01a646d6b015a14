#include "place.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "command.h"
#include "error.h"
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
    const bool isNumber = !typed.word.empty() && typed.word[0] >= '0' && typed.word[0] <= '9';
    Choices choices;
    for (const auto& [number, name] : codes) choices.push_back(isNumber ? fmt::to_string(number) : name);
    return choices;
}

Choices CodeSets(const Typed& typed) { return NamesOrNumbers(typed, ::CodeSets()); }

Choices Languages(const Typed& typed) { return NamesOrNumbers(typed, ::Languages()); }

// Flags behind those that the list has already.
Choices FlagLists(const Typed& typed) {
    const std::string start = typed.word.substr(0, typed.word.rfind(',') + 1);
    Choices lists;
    for (const std::string& name : ComparisonFlags()) {
        if (("," + start).find("," + name + ",") == std::string::npos) lists.push_back(start + name);
    }
    return lists;
}

Choices Operators(const Typed&) { return ComparisonOperators(); }

struct Place {
    Takes takes;
    const char* name;
    Choices (*choices)(const Typed&);
    bool isClosed = false;  // nothing but the choices
};

constexpr Place Places[] = {
    {Takes::Type, "TYPE", Types},
    {Takes::Value, "VALUE", Values},
    {Takes::Text, "TEXT", Nothing},
    {Takes::Hex, "HEX", Nothing},
    {Takes::File, "FILE", Nothing},  // the shell knows them
    {Takes::Format, "FORMAT", Formats},
    {Takes::Order, "ORDER", Orders, true},
    {Takes::Form, "FORM", Forms, true},
    {Takes::CodeSet, "CODESET", CodeSets},
    {Takes::Language, "LANGUAGE", Languages},
    {Takes::Flags, "FLAGS", FlagLists},
    {Takes::Operator, "OPERATOR", Operators},
    {Takes::Bytes, "BYTES", Nothing},
};

constexpr bool EveryPlaceIsInItsPlace() {
    for (std::size_t i = 0; i < std::size(Places); ++i) {
        if (static_cast<std::size_t>(Places[i].takes) != i) return false;
    }
    return std::size(Places) == static_cast<std::size_t>(Takes::Bytes) + 1;
}
static_assert(EveryPlaceIsInItsPlace());

const Place& PlaceOf(Takes takes) { return Places[static_cast<std::size_t>(takes)]; }

}  // namespace

const char* PlaceName(Takes takes) { return PlaceOf(takes).name; }

bool ListChoices(std::string_view place, const Typed& typed, std::vector<std::string>& choices) {
    const auto* const found =
        std::find_if(std::begin(Places), std::end(Places), [&](const Place& known) { return known.name == place; });
    if (found == std::end(Places)) return false;
    choices = found->choices(typed);
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
