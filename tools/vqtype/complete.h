/// \file
/// What can stand at the cursor while a command line is being typed: what the shells' completion asks for.
#ifndef VQTYPE_COMPLETE_H
#define VQTYPE_COMPLETE_H

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// Answers `vqtype --complete WORD...`, where the words are those behind the program's name, without the shell's
/// quotes, and the last one is that at the cursor, up to there; it may be empty.
///
/// The first line says what stands there: COMMAND, OPTION, NOTHING where no argument can follow, or the place's name as
/// in the help (TYPE, VALUE, FILE...). Each line behind it is a word that the last one can be replaced by; files, a
/// store's too, are left to the shell. A word that names begin with in another case is taken for them, and so is a
/// type's without the Vq in front.
std::string Complete(const CLI::App& program, const std::vector<std::string>& words);

#endif
