/// \file
/// Files and standard streams as bytes, the same on every target.
#ifndef VQTYPE_FILES_H
#define VQTYPE_FILES_H

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The program's arguments in UTF-8, without the program's name. Throws CommandError for one that is no text.
std::vector<std::string> Arguments(int argc, char** argv);

/// Makes the standard streams carry bytes as they are.
void PrepareStreams();

/// The environment variable in UTF-8; none when it is not set.
std::optional<std::string> EnvironmentVariable(const char* name);

/// The file of that UTF-8 name.
std::filesystem::path PathOf(const std::string& name);
/// The path in UTF-8.
std::string NameOf(const std::filesystem::path& path);

/// The folder that this program stands in; empty when the system does not tell.
std::filesystem::path ProgramFolder();

/// The bytes of the file, or of standard input for "-". Throws CommandError when it cannot be read or is larger
/// than 1 GiB.
std::string ReadFile(const std::string& name);

/// Writes UTF-8 text, whole characters, to standard output; a Windows console shows it whatever its code page is.
/// Throws CommandError when that fails.
void Write(std::string_view text);
/// The same to standard error. One that is full or closed is no reason to end in another way than was to be told.
void WriteError(std::string_view text) noexcept;
/// Writes out what is still buffered. Throws CommandError when that fails.
void FlushOutput();

#endif
