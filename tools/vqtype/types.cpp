#include <fmt/format.h>

#include <cstring>
#include <memory>

#include "command.h"
#include "files.h"
#include "operations.h"
#include "table.h"
#include "values.h"

namespace {

const char* YesOrDash(bool yes) { return yes ? "yes" : "-"; }

bool DoesColumn(VqTypeId id, const char* column) {
    for (const Operation* operation = FirstOperation(); operation != EndOfOperations(); ++operation) {
        if (std::strcmp(operation->column, column) == 0 && !operation->isDone(id)) return false;
    }
    return true;
}

void PrintTable() {
    constexpr const char* Abilities[] = {"make", "default", "disk", "order", "bounds", "hash", "convert", "text"};
    Table table{{"id", true}, {"name"}, {"bytes", true}, {"fixed"},  {"null"}, {"format"},  {"make"},
                {"default"},  {"disk"}, {"order"},       {"bounds"}, {"hash"}, {"convert"}, {"text"}};
    for (int i = 0; i < VqTypeCount; ++i) {
        const auto id = static_cast<VqTypeId>(i);
        std::vector<std::string> cells{fmt::to_string(i),
                                       TypeName(id),
                                       fmt::to_string(Manager().MemLenGet(id, 1)),
                                       YesOrDash(Manager().IsFixed(id) != 0),
                                       YesOrDash(Manager().SupportsNullValue(id) != 0),
                                       Manager().ExchangeFormat(id, nullptr)};
        for (const char* ability : Abilities) cells.push_back(YesOrDash(DoesColumn(id, ability)));
        table.AddRow(std::move(cells));
    }
    Write(table.Format());
}

std::string JsonOperations(VqTypeId id) {
    std::string list;
    for (const Operation* operation = FirstOperation(); operation != EndOfOperations(); ++operation) {
        if (operation->isDone(id)) list += (list.empty() ? "" : ", ") + Quoted(operation->name);
    }
    return list;
}

void PrintJson() {
    for (int i = 0; i < VqTypeCount; ++i) {
        const auto id = static_cast<VqTypeId>(i);
        Write(fmt::format(
            "{}\n  {{\"id\": {}, \"name\": {}, \"bytes\": {}, \"fixed\": {}, \"null\": {}, \"format\": {}, "
            "\"does\": [{}]}}",
            i ? "," : "[", i, Quoted(TypeName(id)), Manager().MemLenGet(id, 1), Manager().IsFixed(id) != 0,
            Manager().SupportsNullValue(id) != 0, Quoted(Manager().ExchangeFormat(id, nullptr)), JsonOperations(id)));
    }
    Write("\n]\n");
}

}  // namespace

void AddTypesCommand(CLI::App& program) {
    const auto json = std::make_shared<bool>(false);
    CLI::App* command = program.add_subcommand("types", "List the types and what each of them does");
    command->add_flag("--json", *json, "As JSON, with every operation by name");
    command->footer(
        "The columns of the table:\n\n"
        "  bytes    the size of one value in memory\n"
        "  fixed    every value takes the same bytes on disk\n"
        "  null     the type has a null value of its own\n"
        "  format   how values print and scan\n"
        "  make     arrays of values: create, construct, destroy, assign, copy\n"
        "  default  what an empty text converts to\n"
        "  disk     store, load, size, translate\n"
        "  order    compare keys\n"
        "  bounds   estimate how much of an index a key selects\n"
        "  hash     hash keys\n"
        "  convert  to and from the exchange texts of other types\n"
        "  text     print and scan");
    command->callback([json] { *json ? PrintJson() : PrintTable(); });
}
