/// \file
/// The help texts, laid out for a terminal and so that help2man makes a manual page of them.
#ifndef VQTYPE_HELP_H
#define VQTYPE_HELP_H

#include <CLI/CLI.hpp>

/// Lays out the help of the program, of a command, and of all commands one after the other. Lines of a footer are
/// wrapped; those that begin with two blanks are examples, or a name and behind two more blanks what it means.
class HelpFormatter : public CLI::FormatterBase {
  public:
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
};

#endif
