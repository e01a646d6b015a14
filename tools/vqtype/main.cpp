// The workbench: what the library does with a value, from the command line.
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <new>

#include "command.h"
#include "error.h"
#include "files.h"
#include "text.h"
#include "vqbase.h"
#include "vqlanguagecontext.h"

namespace {

constexpr int Failure = 2;

bool assertionFailed = false;

// A broken invariant is reported and makes the run a failure, but it never ends the program on its own.
void ReportAssertion(const char* expression, const char* file, int line) {
    fmt::print(stderr, "vqtype: {}({}): assertion failed: {}\n", file, line, expression);
    assertionFailed = true;
}

int Fail(const CLI::App& program, const char* text) {
    const auto commands = program.get_subcommands();
    std::fflush(stdout);
    fmt::print(stderr, "vqtype{}: {}\n", commands.empty() ? "" : " " + commands[0]->get_name(), text);
    return Failure;
}

int FailToParse(const CLI::App& program, const CLI::ParseError& error) {
    const auto commands = program.get_subcommands();
    const std::string name = commands.empty() ? "" : " " + commands[0]->get_name();
    Fail(program, error.what());
    fmt::print(stderr, "Try `vqtype{} --help`.\n", name);
    return Failure;
}

void AddCommands(CLI::App& program) {
    program.require_subcommand(1);
    program.allow_windows_style_options(false);  // a value may begin with a slash, on every target
    program.set_version_flag("--version", "vqtype 9.5.23.262.0");
    program.footer("Errors name what is at fault and end with status 2. `vqtype COMMAND --help` explains a command.");
    AddTypesCommand(program);
    AddEncodeCommand(program);
    AddDecodeCommand(program);
    AddSortCommand(program);
    AddDemoCommand(program);
}

void CheckCommand(const CLI::App& program, const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments[0].rfind('-', 0) == 0) return;
    std::string names;
    for (const CLI::App* command : program.get_subcommands({})) {
        if (command->get_name() == arguments[0]) return;
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    throw CommandError("{}: there is no such command; expected one of {}", Quoted(arguments[0]), names);
}

int Run(CLI::App& program, std::vector<std::string> arguments) {
    try {
        AddCommands(program);
        CheckCommand(program, arguments);
        if (!arguments.empty() && arguments[0] == "encode") arguments = ShieldedValues(arguments);
        std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
        program.parse(std::move(arguments));
        FlushOutput();
        return assertionFailed ? Failure : 0;
    } catch (const CLI::ParseError& error) {
        return error.get_exit_code() == 0 ? program.exit(error) : FailToParse(program, error);
    } catch (const std::bad_alloc&) {
        return Fail(program, "out of memory");
    } catch (const std::exception& error) {
        return Fail(program, error.what());
    }
}

}  // namespace

int main(int argc, char** argv) {
    PrepareStreams();
    VqSetAssertHandler(ReportAssertion);
    CLI::App program("vqtype: looks at the types of the object database, and at values of them in memory and on disk",
                     "vqtype");
    return Run(program, Arguments(argc, argv));
}
