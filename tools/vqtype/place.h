/// \file
/// What can stand at each place of the command line: every argument and every option's value is one of these.
#ifndef VQTYPE_PLACE_H
#define VQTYPE_PLACE_H

#include <string>
#include <string_view>
#include <vector>

/// What a place takes. Help names the place after it, and completion offers what it takes.
enum class Takes {
    Type,
    Value,
    Text,
    Hex,
    File,
    Format,
    Order,
    Form,
    CodeSet,
    Language,
    Flags,
    Operator,
    Bytes,
    Rows,
    Store,
    Schema,
    Columns,
    Query,
    ColumnFormat,
};

/// The place's name in help and errors, in capitals: "TYPE".
const char* PlaceName(Takes takes);

/// What has been typed when a place is asked for its choices.
struct Typed {
    std::string type;    ///< the first type on the command line, empty without one
    std::string store;   ///< the same of a store
    std::string before;  ///< what stands at the place itself, in front of `part`
    std::string part;    ///< the rest up to the cursor
};

/// Where the part of `word` begins that can be completed at the place of that name: behind the last comma of a list.
std::size_t PartStart(std::string_view place, std::string_view word);

/// All that the place of that name can take for the part, or nothing when only the user knows. False when no place has
/// the name.
bool ListChoices(std::string_view place, const Typed& typed, std::vector<std::string>& choices);

/// The text again. Throws CommandError, its text starting with `name`, when the place takes only its choices and the
/// text is none of them.
const std::string& CheckChoice(Takes takes, const std::string& name, const std::string& text);

#endif
