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

int Run(std::wstring line) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
        return Failed;
    DWORD status = Failed;
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &status);
    return static_cast<int>(status);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return Failed;
    const bool hasConsole = GetConsoleOutputCP() != 0 || AllocConsole();
    if (!hasConsole || !SetConsoleOutputCP(CodePage)) {
        std::fputs("vqtm_launch: there is no console\n", stderr);
        return Failed;
    }
    const int status = Run(ReadLine(argv[1]));
    return GetConsoleOutputCP() == CodePage ? status : 100;
}
