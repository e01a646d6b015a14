// The commands of the store as users type them.
#include <charconv>
#include <memory>

#include "command.h"
#include "error.h"
#include "store/commands.h"
#include "text.h"

namespace {

template <class Options>
void AddStore(CLI::App& command, Options& options, const std::string& description = "The store's file") {
    AddText(command, "DB", Takes::Store, options.store, description)->required();
}

void AddNull(CLI::App& command, std::optional<std::string>& null, const std::string& description) {
    AddText(command, "--null", Takes::Text, null, description);
}

void AddJson(CLI::App& command, bool& json) { command.add_flag("--json", json, "As JSON"); }

// Adds a command that begins with the store's file.
template <class Options>
CLI::App& AddStoreCommand(CLI::App& group, const char* name, const char* description,
                          const std::shared_ptr<Options>& options, void (*run)(const Options&)) {
    CLI::App& command = *group.add_subcommand(name, description);
    command.callback([options, run] { run(*options); });
    return command;
}

// --- What fills a store

void AddCreateCommand(CLI::App& group) {
    const auto options = std::make_shared<store::CreateOptions>();
    CLI::App& command = AddStoreCommand(group, "create", "Make the file of a new store", options, store::RunCreate);
    AddStore(command, *options, "The file, which is not there yet");
    AddText(command, "--schema", Takes::Schema, options->schema, "The columns and their types")->required();
    AddText(command, "--order", Takes::Order, options->order,
            "Byte order of records and keys: little or big (default little)");
    command.add_flag("--ignore-case", options->ignoreCase, "Queries do not distinguish case");
    command.add_flag("--ignore-accents", options->ignoreAccents, "Queries do not distinguish accents");
    command.footer(
        "A schema is columns with commas between, each a name, ':' and a type of `vqtype types` that can be encoded. A "
        "name "
        "is ASCII letters, digits and '_', and begins with no digit. "
        "The type of a string can have (language=L, codeset=C) behind it: a number, a name or an ISO 639 code of "
        "`vqtype languages`, by which it sorts, and a number or a name of `vqtype codesets`. Without them strings are "
        "Unicode and of no language.\n\n"
        "All this is a part of the file, and so are the library's settings that its order depends on. A library that "
        "would sort otherwise refuses the store and says why.\n\n"
        "  $ vqtype store create places.db "
        "--schema 'name:VqString(language=de), people:long, founded:VqDate'");
}

// `text` is empty where the option is not given.
std::uint64_t ParseRows(const std::optional<std::string>& text) {
    if (!text) return 0;
    std::uint64_t rows = 0;
    const char* const end = text->data() + text->size();
    const auto result = std::from_chars(text->data(), end, rows);
    if (result.ec == std::errc() && result.ptr == end && rows > 0) return rows;
    throw CommandError("--batch {}: expected a number of rows from 1", Echo(*text));
}

void AddLoadCommand(CLI::App& group) {
    const auto options = std::make_shared<store::LoadOptions>();
    const auto batch = std::make_shared<std::optional<std::string>>();
    CLI::App& command = AddStoreCommand(group, "load", "Add the rows of a CSV file", options, store::RunLoad);
    AddStore(command, *options);
    AddText(command, "FILE", Takes::File, options->file, "A UTF-8 CSV file; - reads standard input")->required();
    AddNull(command, options->null, "The text of null fields (default: a field that is empty and not quoted)");
    AddTexts(command, "--scan", Takes::ColumnFormat, options->scan,
             "The format of a column's texts; can be given for each column");
    AddText(command, "--reject", Takes::File, options->reject, "Writes the rows that do not fit, as CSV");
    AddText(command, "--batch", Takes::Rows, *batch, "Rows of a transaction (default: as memory allows)");
    command.add_flag("--batches", options->batches, "Prints a line for each batch once it is on the disk");
    command.add_flag("--quiet", options->quiet, "Shows no progress");
    command.callback([options, batch] {
        options->batch = ParseRows(*batch);
        store::RunLoad(*options);
    });
    command.footer(
        "The first line names the columns, in any sequence; those that it leaves out become null. Fields are quoted as "
        "usual: a quoted field may hold commas, line breaks, and quotes, each written twice. A field has at most 1 "
        "MiB. Under a format of --scan a text must print again as it is: a year has four digits, a day and a month "
        "two.\n\n"
        "A row that does not fit is reported with its line, column and text, and with what was expected. It neither "
        "stops the load nor takes another row with it; the status is 2 in the end.\n\n"
        "Batches are there as a whole or not at all, and stay once they were reported, whatever happens to the "
        "program. On a terminal a load that takes longer than a second shows how far it is.\n\n"
        "  $ vqtype store load places.db places.csv --scan founded=%d.%m.%Y --reject bad.csv");
}

void AddIndexCommand(CLI::App& group) {
    const auto options = std::make_shared<store::IndexOptions>();
    CLI::App& command = AddStoreCommand(group, "index", "Make indexes on columns", options, store::RunIndex);
    AddStore(command, *options);
    AddText(command, "COLUMNS", Takes::Columns, options->columns, "Names with commas between, an index for each");
    command.add_flag("--rebuild", options->rebuild,
                     "Makes these indexes, or all that there are, anew from the records in this library's order");
    command.callback([options] {
        if (options->columns.empty() && !options->rebuild) throw UsageError("COLUMNS is required");
        store::RunIndex(*options);
    });
    command.footer(
        "Loads keep the indexes. Null is a key, too, the first of all. A column can be indexed where its type has an "
        "order (`vqtype types` tells).\n\n"
        "  $ vqtype store index places.db name,people");
}

// --- What looks into it

void AddQueryCommand(CLI::App& group) {
    const auto options = std::make_shared<store::QueryOptions>();
    CLI::App& command = AddStoreCommand(group, "query", "Find records", options, store::RunQuery);
    AddStore(command, *options);
    AddText(command, "QUERY", Takes::Query, options->query, "What to find, as one argument (default: all records)");
    AddText(command, "--columns", Takes::Columns, options->columns, "Only these, names with commas between");
    command.add_flag("--explain", options->explain, "Shows first how the records are found, estimates and true counts");
    AddJson(command, options->json);
    command.add_flag("--csv", options->csv, "As CSV, which `vqtype store load` reads");
    command.add_flag("--no-index", options->noIndex, "Looks at every record");
    command.callback([options] {
        if (options->json && options->csv) throw UsageError("--json and --csv exclude each other");
        store::RunQuery(*options);
    });
    command.footer(
        "A query is [CONDITION [and CONDITION]...] [order by COLUMN [asc|desc], ...] [limit N [offset N]], and a "
        "condition one of these:\n\n"
        "  COLUMN = LITERAL             also != <> < <= > >=\n"
        "  COLUMN like 'PATTERN'        * stands for any characters, ? for any one; also not like\n"
        "  COLUMN between LOW and HIGH  with both ends; also not between\n"
        "  COLUMN is null               also is not null; no other condition finds null\n"
        "\n"
        "A literal is a value's text as `vqtype encode` takes it, in single quotes (two for one inside) or, without "
        "blanks, as it is. Texts compare as the store was created to. Order is the library's exact one, in which null "
        "is first. A column whose name is a word of the query, such as order, is written in double quotes.\n\n"
        "  $ vqtype store query places.db \"name like 'S*' and people >= 100000 order by name limit 20\"\n"
        "  $ vqtype store query places.db \"founded < 1300-01-01\" --explain");
}

void AddDumpCommand(CLI::App& group) {
    const auto options = std::make_shared<store::DumpOptions>();
    CLI::App& command =
        AddStoreCommand(group, "dump", "Print all records as CSV that loses nothing", options, store::RunDump);
    AddStore(command, *options);
    AddNull(command, options->null, "The text of null fields, which no value may have (default: empty, not quoted)");
    command.add_flag("--schema", options->schema, "Instead the commands that make the store without its records");
    command.footer(
        "A store goes to another machine, or to another version of the library, as these two texts.\n\n"
        "  $ vqtype store dump places.db --schema\n"
        "  $ vqtype store dump places.db | sort");
}

void AddCheckCommand(CLI::App& group) {
    const auto options = std::make_shared<store::CheckOptions>();
    CLI::App& command = AddStoreCommand(group, "check", "See whether a store is sound", options, store::RunCheck);
    AddStore(command, *options);
    AddJson(command, options->json);
    command.footer(
        "Every page of the file is looked at, every record is decoded and compared with its checksum, and every index "
        "must hold exactly the records' keys in the library's order. What is wrong is listed; the status is 2 then. "
        "Nothing is changed.\n\n"
        "  $ vqtype store check places.db");
}

void AddStatsCommand(CLI::App& group) {
    const auto options = std::make_shared<store::StatsOptions>();
    CLI::App& command =
        AddStoreCommand(group, "stats", "Print what a store holds and what it takes", options, store::RunStats);
    AddStore(command, *options);
    AddJson(command, options->json);
    command.footer("  $ vqtype store stats places.db");
}

}  // namespace

void AddStoreCommands(CLI::App& program) {
    CLI::App& group = *program.add_subcommand("store", "Keep typed records in a file, index and query them");
    group.require_subcommand(1);
    for (const auto add : {AddCreateCommand, AddLoadCommand, AddIndexCommand, AddQueryCommand, AddDumpCommand,
                           AddCheckCommand, AddStatsCommand}) {
        add(group);
        group.get_subcommands({}).back()->group("Commands");
    }
    group.footer(
        "A store is one file of LMDB. Records are values' disk forms, and the trees of its indexes are in the "
        "library's order. `vqtype store COMMAND --help` explains a command.");
}
