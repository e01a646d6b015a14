// The workbench: what the library does with a value, from the command line.
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <sstream>

#include "command.h"
#include "complete.h"
#include "error.h"
#include "files.h"
#include "help.h"
#include "identity.h"
#include "mistake.h"
#include "text.h"
#include "vqbase.h"
#include "vqlanguagecontext.h"

namespace {

constexpr int Failure = 2;

bool assertionFailed = false;

// A broken invariant is reported and makes the run a failure, but it never ends the program on its own.
void ReportAssertion(const char* expression, const char* file, int line) {
    WriteError(fmt::format("vqtype: {}({}): assertion failed: {}\n", file, line, expression));
    assertionFailed = true;
}

// The program and its command, as the user calls them.
std::string CalledName(const CLI::App& program, const std::vector<std::string>& arguments) {
    std::string called = "vqtype";
    for (std::size_t i = 0; i < FindCall(program, arguments).names; ++i) called += ' ' + arguments[i];
    return called;
}

int Fail(const std::string& called, const std::string& text) {
    std::fflush(stdout);
    WriteError(fmt::format("{}: {}\n", called, text));
    return Failure;
}

int FailToParse(const std::string& called, const std::string& text) {
    Fail(called, Printable(Shortened(text, 300)));
    WriteError(fmt::format("Try `{} --help`.\n", called));
    return Failure;
}

using AddCommand = void (*)(CLI::App& program);

struct CommandGroup {
    const char* title;
    std::vector<AddCommand> commands;
};

const CommandGroup Groups[] = {
    {"What there is", {AddTypesCommand, AddShowCommand, AddCodeSetsCommand, AddLanguagesCommand}},
    {"Values, as bytes and as text",
     {AddEncodeCommand, AddDecodeCommand, AddPrintCommand, AddScanCommand, AddConvertCommand}},
    {"Orders and keys", {AddCompareCommand, AddCollateCommand, AddSortCommand, AddHashCommand, AddEstimateCommand}},
    {"All together", {AddStoreCommands, AddDemoCommand}},
};

void AddCommands(CLI::App& program) {
    for (const CommandGroup& group : Groups) {
        for (const AddCommand add : group.commands) {
            add(program);
            program.get_subcommands({}).back()->group(group.title);
        }
    }
}

// A command takes over the flag that its group has when it is added: this is behind them all.
void AddHelpOfAll(CLI::App& group) {
    for (CLI::App* command : group.get_subcommands({})) {
        if (HasCommands(*command)) AddHelpOfAll(*command);
    }
    group.set_help_all_flag("--help-all", "Print the help of all commands and exit");
}

void Describe(CLI::App& program) {
    program.formatter(std::make_shared<HelpFormatter>());
    program.require_subcommand(1);
    program.allow_windows_style_options(false);  // a value may begin with a slash, on every target
    program.set_help_flag("-h,--help", "Print this help and exit");
    AddCommands(program);
    AddHelpOfAll(program);
    program.set_version_flag("--version", Identity(), "Print the version and exit");
    program.footer(
        "`vqtype COMMAND --help` explains a command. Texts are UTF-8. A value that begins with '-' and is no number "
        "stands behind `--`, which ends the options. Errors name what is at fault and end with status 2.");
}

// Who types wants no errors in between: where there is no answer, nothing can follow.
int Answer(const CLI::App& program, std::vector<std::string> words) {
    words.erase(words.begin());
    try {
        Write(Complete(program, words));
        FlushOutput();
    } catch (const std::exception&) {
        return 0;
    }
    return 0;
}

// Help and version end the parsing early; their text is output like any other.
void Parse(CLI::App& program, std::vector<std::string> arguments) {
    try {
        program.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) throw;
        std::ostringstream text;
        program.exit(error, text);
        Write(text.str());
    }
}

void RunCommand(CLI::App& program, std::vector<std::string> arguments) {
    CheckCommand(program, arguments);
    arguments = ShieldedArguments(program, arguments);
    std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
    Parse(program, std::move(arguments));
    FlushOutput();
}

int Run(CLI::App& program, int argc, char** argv) {
    std::vector<std::string> arguments;
    try {
        Describe(program);
        arguments = Arguments(argc, argv);
        if (!arguments.empty() && arguments[0] == "--complete") return Answer(program, arguments);
        RunCommand(program, arguments);
        return assertionFailed ? Failure : 0;
    } catch (const CLI::ParseError& error) {
        return FailToParse(CalledName(program, arguments), DescribeMistake(program, error, arguments));
    } catch (const UsageError& error) {
        return FailToParse(CalledName(program, arguments), error.what());
    } catch (const std::bad_alloc&) {
        return Fail(CalledName(program, arguments), "out of memory");
    } catch (const std::exception& error) {
        return Fail(CalledName(program, arguments), error.what());
    }
}

}  // namespace

int main(int argc, char** argv) {
    PrepareStreams();
    VqSetAssertHandler(ReportAssertion);
    CLI::App program("Looks at the types of the object database, and at values of them in memory and on disk",
                     "vqtype");
    return Run(program, argc, argv);
}
