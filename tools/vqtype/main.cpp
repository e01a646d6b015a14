// The workbench: what the library does with a value, from the command line.
#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <sstream>

#include "command.h"
#include "error.h"
#include "files.h"
#include "text.h"
#include "vqbase.h"
#include "vqlanguagecontext.h"

namespace {

constexpr int Failure = 2;

bool assertionFailed = false;

// A standard error that is full or closed is no reason to end in another way than the one that was to be told.
void Say(const std::string& text) noexcept { std::fwrite(text.data(), 1, text.size(), stderr); }

// A broken invariant is reported and makes the run a failure, but it never ends the program on its own.
void ReportAssertion(const char* expression, const char* file, int line) {
    Say(fmt::format("vqtype: {}({}): assertion failed: {}\n", file, line, expression));
    assertionFailed = true;
}

// The program and its command, as the user calls them.
std::string CalledName(const CLI::App& program) {
    const auto commands = program.get_subcommands();
    return "vqtype" + (commands.empty() ? "" : " " + commands[0]->get_name());
}

int Fail(const CLI::App& program, const std::string& text) {
    std::fflush(stdout);
    Say(fmt::format("{}: {}\n", CalledName(program), text));
    return Failure;
}

int FailToParse(const CLI::App& program, const CLI::ParseError& error) {
    std::string text = error.what();
    text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());  // that shielded an argument
    Fail(program, Printable(Shortened(text, 200)));
    Say(fmt::format("Try `{} --help`.\n", CalledName(program)));
    return Failure;
}

void AddCommands(CLI::App& program) {
    program.require_subcommand(1);
    program.allow_windows_style_options(false);  // a value may begin with a slash, on every target
    program.set_version_flag("--version", fmt::format("vqtype {}.{}.{}.{}.{}", VqVersionMajor, VqVersionMinor,
                                                      VqVersionRelease, VqVersionBuild, VqVersionPatch));
    program.footer("Errors name what is at fault and end with status 2. `vqtype COMMAND --help` explains a command.");
    AddTypesCommand(program);
    AddEncodeCommand(program);
    AddDecodeCommand(program);
    AddShowCommand(program);
    AddPrintCommand(program);
    AddScanCommand(program);
    AddConvertCommand(program);
    AddCompareCommand(program);
    AddHashCommand(program);
    AddEstimateCommand(program);
    AddSortCommand(program);
    AddCollateCommand(program);
    AddCodeSetsCommand(program);
    AddLanguagesCommand(program);
    AddDemoCommand(program);
}

void CheckCommand(const CLI::App& program, const std::vector<std::string>& arguments) {
    if (arguments.empty() || arguments[0].rfind('-', 0) == 0) return;
    std::string names;
    for (const CLI::App* command : program.get_subcommands({})) {
        if (command->get_name() == arguments[0]) return;
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    throw CommandError("{}: there is no such command; expected one of {}", Echo(arguments[0]), names);
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

int Run(CLI::App& program, std::vector<std::string> arguments) {
    try {
        AddCommands(program);
        CheckCommand(program, arguments);
        arguments = ShieldedArguments(program, arguments);
        std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
        Parse(program, std::move(arguments));
        FlushOutput();
        return assertionFailed ? Failure : 0;
    } catch (const CLI::ParseError& error) {
        return FailToParse(program, error);
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
