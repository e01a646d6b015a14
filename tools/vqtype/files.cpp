#include "files.h"

#ifdef _WIN32
// clang-format off
#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
// clang-format on
#endif

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <new>
#include <system_error>

#include "error.h"
#include "text.h"
#include "utf8.h"

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// The most that is read of one file: a source that never ends is told before it takes all memory.
constexpr std::size_t LargestFile = std::size_t{1} << 30;

std::string ReadAll(std::FILE* file, const std::string& name) {
    std::string bytes;
    char block[65536];
    while (const std::size_t read = std::fread(block, 1, sizeof block, file)) {
        if (read > LargestFile - bytes.size()) throw CommandError("{}: larger than 1 GiB", name);
        bytes.append(block, read);
    }
    if (std::ferror(file)) throw CommandError("{}: cannot be read: {}", name, std::strerror(errno));
    return bytes;
}

}  // namespace

#ifdef _WIN32

namespace {

std::u16string Units(const wchar_t* text) { return {text, text + std::wcslen(text)}; }

std::string FromWide(const wchar_t* text, int number) {
    const std::u16string units = Units(text);
    const std::string bytes = Utf16ToUtf8(units);
    if (Utf8ToUtf16(bytes) == units) return bytes;
    throw CommandError("argument {}: {}: half of a surrogate pair stands alone, which is no text", number, Echo(bytes));
}

struct FreeWide {
    void operator()(wchar_t** arguments) const { LocalFree(arguments); }
};

// The console of a stream, or null for a file or a pipe.
HANDLE ConsoleOf(std::FILE* stream) {
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode;
    return GetConsoleMode(handle, &mode) ? handle : nullptr;
}

// A console takes so many units at once, and a pair of them stays together.
std::size_t PieceOf(std::u16string_view units) {
    constexpr std::size_t Most = 8192;
    if (units.size() <= Most) return units.size();
    return (units[Most - 1] & 0xFC00) == 0xD800 ? Most - 1 : Most;
}

bool Show(HANDLE console, std::u16string_view units) {
    DWORD shown = 0;
    for (std::size_t piece; !units.empty(); units.remove_prefix(piece)) {
        piece = PieceOf(units);
        if (!WriteConsoleW(console, units.data(), static_cast<DWORD>(piece), &shown, nullptr)) return false;
    }
    return true;
}

}  // namespace

std::vector<std::string> Arguments(int, char**) {
    int count = 0;
    const std::unique_ptr<wchar_t*, FreeWide> wide(CommandLineToArgvW(GetCommandLineW(), &count));
    if (!wide) throw std::bad_alloc();
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) arguments.push_back(FromWide(wide.get()[i], i));
    return arguments;
}

void PrepareStreams() {
    for (std::FILE* stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

std::optional<std::string> EnvironmentVariable(const char* name) {
    const wchar_t* value = _wgetenv(std::wstring(name, name + std::strlen(name)).c_str());
    return value ? std::optional(Utf16ToUtf8(Units(value))) : std::nullopt;
}

std::filesystem::path PathOf(const std::string& name) {
    try {
        return std::filesystem::path(Utf8ToUtf16(name));
    } catch (const Utf8Fault&) {
        throw CommandError("{}: the file's name is not UTF-8", Printable(name));
    }
}

std::string NameOf(const std::filesystem::path& path) { return Utf16ToUtf8(path.u16string()); }

std::filesystem::path ProgramFolder() {
    wchar_t name[32768];
    const DWORD length = GetModuleFileNameW(nullptr, name, static_cast<DWORD>(std::size(name)));
    return std::filesystem::path(std::wstring(name, length)).parent_path();
}

namespace {

File Open(const std::string& name) { return File(_wfopen(PathOf(name).c_str(), L"rb")); }

// A console has one code page for all its programs, so that none may choose it: it is given UTF-16 instead.
bool Put(std::FILE* stream, std::string_view text) {
    const HANDLE console = ConsoleOf(stream);
    return console ? Show(console, Utf8ToUtf16(text)) : std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

}  // namespace

#else

std::vector<std::string> Arguments(int argc, char** argv) { return {argv + (argc > 0), argv + argc}; }

void PrepareStreams() {}

std::optional<std::string> EnvironmentVariable(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::filesystem::path PathOf(const std::string& name) { return name; }

std::string NameOf(const std::filesystem::path& path) { return path.string(); }

std::filesystem::path ProgramFolder() {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
}

namespace {

File Open(const std::string& name) { return File(std::fopen(name.c_str(), "rb")); }

bool Put(std::FILE* stream, std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

}  // namespace

#endif

std::string ReadFile(const std::string& name) {
    if (name == "-") return ReadAll(stdin, "standard input");
    const File file = Open(name);
    if (!file) throw CommandError("{}: cannot be opened: {}", Printable(name), std::strerror(errno));
    return ReadAll(file.get(), Printable(name));
}

void Write(std::string_view text) {
    if (!Put(stdout, text)) throw CommandError("standard output: cannot be written: {}", std::strerror(errno));
}

void WriteError(std::string_view text) noexcept {
    try {
        Put(stderr, text);
    } catch (const std::exception&) {
        return;
    }
}

void FlushOutput() {
    if (std::fflush(stdout) != 0) {
        throw CommandError("standard output: cannot be written: {}", std::strerror(errno));
    }
}
