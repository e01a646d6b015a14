/// \file
/// The workbench's one kind of failure: an argument or a byte that is not what was expected.
#ifndef VQTYPE_ERROR_H
#define VQTYPE_ERROR_H

#include <fmt/format.h>

#include <stdexcept>
#include <utility>

/// Ends the command with status 2. The text names the argument or the place, and what was expected there.
class CommandError : public std::runtime_error {
  public:
    template <class... Args>
    explicit CommandError(fmt::format_string<Args...> format, Args&&... args)
        : std::runtime_error(fmt::format(format, std::forward<Args>(args)...)) {}
};

/// The same for a command line that is not what the command takes; the user is sent to the command's help.
class UsageError : public CommandError {
  public:
    using CommandError::CommandError;
};

#endif
