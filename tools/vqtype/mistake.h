/// \file
/// What is wrong with a command line.
#ifndef VQTYPE_MISTAKE_H
#define VQTYPE_MISTAKE_H

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// Throws UsageError when a command should be named, of the program or of one of its groups of commands, and there
/// stands neither one nor an option.
void CheckCommand(const CLI::App& program, const std::vector<std::string>& arguments);

/// What the parser's error says, with the argument at fault, and the option that may have been meant.
std::string DescribeMistake(const CLI::App& program, const CLI::ParseError& error,
                            const std::vector<std::string>& arguments);

#endif
