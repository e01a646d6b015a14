// vqtm_launch FILE: starts a program by a command line that is given as it stands, in UTF-16, which no Unix shell can
// pass on. Ends with the program's status, or with 100 when the console's code page is another than before.
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

constexpr UINT CodePage = 850;
constexpr int Failed = 101;

std::wstring ReadLine(const char* name) {
    std::wstring line;
    std::FILE* file = std::fopen(name, "rb");
    wchar_t unit;
    while (file && std::fread(&unit, sizeof unit, 1, file) == 1) line += unit;
    if (file) std::fclose(file);
    return line;
}

int Run(std::wstring line, DWORD flags) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    start.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, flags, nullptr, nullptr, &start, &process)) {
        return Failed;
    }
    DWORD status = Failed;
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &status);
    return static_cast<int>(status);
}

int RunInConsole(const char* name) {
    if (!SetConsoleOutputCP(CodePage)) {
        std::fputs("vqtm_launch: there is no console\n", stderr);
        return Failed;
    }
    const int status = Run(ReadLine(name), 0);
    return GetConsoleOutputCP() == CodePage ? status : 100;
}

}  // namespace

// A program without a window has a console of its own, also where there is no screen to show one.
int main(int argc, char** argv) {
    if (argc == 2) return Run(std::wstring(GetCommandLineW()) + L" console", CREATE_NO_WINDOW);
    return argc == 3 ? RunInConsole(argv[1]) : Failed;
}
