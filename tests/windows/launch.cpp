// vqtm_launch FILE [screen]: starts a program by a command line that is given as it stands, in UTF-16, which no Unix
// shell can pass on. Ends with the program's status, or with 100 when the console's code page was ever another than
// before. With `screen` the program writes to the console, and the first line that stands there is printed, in UTF-8.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

constexpr UINT CodePage = 850;
constexpr int Failed = 101;
constexpr DWORD Changed = 100;

std::wstring ReadLine(const char* name) {
    std::wstring line;
    std::FILE* file = std::fopen(name, "rb");
    wchar_t unit;
    while (file && std::fread(&unit, sizeof unit, 1, file) == 1) line += unit;
    if (file) std::fclose(file);
    return line;
}

int Run(std::wstring line, DWORD flags, HANDLE output) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdOutput = output;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr, &start, &process)) {
        return Failed;
    }
    bool isChanged = false;
    while (WaitForSingleObject(process.hProcess, 1) == WAIT_TIMEOUT) {
        isChanged = isChanged || (flags == 0 && GetConsoleOutputCP() != CodePage);
    }
    DWORD status = Failed;
    GetExitCodeProcess(process.hProcess, &status);
    return static_cast<int>(isChanged ? Changed : status);
}

void PrintFirstLine(HANDLE screen) {
    wchar_t line[40];
    DWORD length = 0;
    ReadConsoleOutputCharacterW(screen, line, static_cast<DWORD>(std::size(line)), {0, 0}, &length);
    char text[4 * std::size(line)];
    const int bytes =
        WideCharToMultiByte(CP_UTF8, 0, line, static_cast<int>(length), text, sizeof text, nullptr, nullptr);
    std::fwrite(text, 1, static_cast<std::size_t>(bytes), stdout);
}

int RunInConsole(const char* name, bool onScreen) {
    if (!SetConsoleOutputCP(CodePage)) {
        std::fputs("vqtm_launch: there is no console\n", stderr);
        return Failed;
    }
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const HANDLE screen = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      &inherited, OPEN_EXISTING, 0, nullptr);
    const int status = Run(ReadLine(name), 0, onScreen ? screen : GetStdHandle(STD_OUTPUT_HANDLE));
    if (onScreen) PrintFirstLine(screen);
    return GetConsoleOutputCP() == CodePage ? status : static_cast<int>(Changed);
}

}  // namespace

// A program without a window has a console of its own, also where there is no screen to show one.
int main(int argc, char** argv) {
    const bool isInner = argc > 2 && std::string(argv[argc - 1]) == "console";
    if (isInner) return RunInConsole(argv[1], argc == 4);
    return Run(std::wstring(GetCommandLineW()) + L" console", CREATE_NO_WINDOW, GetStdHandle(STD_OUTPUT_HANDLE));
}
