/// \file
/// Configuration: numbers by section and key, from an INI file or set by the program.
///
///     ; a comment fills a line, or follows a value after a blank
///     [debug]
///     stringOverflow = 1      # decimal
///     mask           = 0x7F   ; hexadecimal
///     title          = "quotes keep ; and # and blanks"
///
/// - Texts are UTF-8, with or without a byte order mark; lines end in LF or CR LF, the last one may lack its end.
/// - Sections and keys compare without regard to ASCII case. A section may be continued further down, and of two values
///   for one key the later counts.
/// - Blanks and tabs around names and values do not count. There is no continuation of lines and no escape sequence.
/// - Whole numbers are [+|-] and decimal digits, or [+|-]0x and hexadecimal digits; leading zeros are not octal.
/// - A text that breaks these rules is refused as a whole, and so is one of more than 1 MiB.
#ifndef VQCONFIG_H
#define VQCONFIG_H

#include "vqbasedefs.h"

namespace vq {
struct ConfigState;  // keeps the standard containers out of the library's interface
}

/// A set of values. Any number of threads may read one; whoever changes it must be alone with it. A null section or key
/// counts as the empty text. Nothing throws.
class VQBASE_API VqConfig {
  public:
    VqConfig() = default;
    ~VqConfig();
    VqConfig(const VqConfig&) = delete;
    VqConfig& operator=(const VqConfig&) = delete;

    /// The value of a key; `defaultValue` where it is missing, is not a whole number, or does not fit an int.
    int GetInt(const char* section, const char* key, int defaultValue) const;

    /// Sets the value of a key. Without memory for it, tells the memory handler and leaves all as it was.
    void SetInt(const char* section, const char* key, int value);

    /// Replaces all values by those of a file, whose name is passed to the C library as it is. When that fails returns
    /// false, leaves the values as they were, and ErrorText says why. A lack of memory is told to the memory handler.
    bool Load(const char* iniFile);

    /// The same from `length` bytes of memory; `name` stands for the file name in messages.
    bool LoadText(const char* text, unsigned long length, const char* name);

    /// What was wrong with the last text, where, and what would be right: `debug.ini:3: …`, one line, UTF-8. Empty when
    /// it was loaded. Valid until the next load.
    const char* ErrorText() const;

  private:
    vq::ConfigState* state_ = nullptr;  // null: no values yet
    const char* errorText_ = "";        // constant, or within the state
};

/// The process's configuration: the one that was set last; else what the INI file named by the environment variable
/// VQ_CONFIG holds, which is read once, at the first call that needs it; else null. A file that cannot be loaded is
/// reported on the standard error stream and counts as none. `which` is reserved: every number, -1 for "the default"
/// among them, answers the same. May be called from several threads at once.
VQBASE_API VqConfig* DefaultConfig(int which);

/// Makes `config` the process's configuration; null goes back to the environment's. The caller keeps owning it, and
/// keeps it alive while it is in use. Returns the one that was set before, null when none was.
VQBASE_API VqConfig* VqSetDefaultConfig(VqConfig* config);

#endif
