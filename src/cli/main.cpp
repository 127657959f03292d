// The railwright command's entry point: arguments in, exit status out.
#include <filesystem>
#include <iostream>

#include "cli/Command.h"
#include "support/Utf8Paths.h"

#ifdef _WIN32
#include <io.h>
#include <windows.h>
#include <shellapi.h>
#else
#include <unistd.h>
#endif

namespace {

std::string ProgramFolder(const char* argv0) {
    std::error_code error;
#ifdef _WIN32
    wchar_t buffer[32768];
    const DWORD length = GetModuleFileNameW(nullptr, buffer, 32768);
    if (length > 0 && length < 32768) {
        return railwright::support::Utf8FromPath(std::filesystem::path(std::wstring(buffer, length)).parent_path());
    }
#else
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        return railwright::support::Utf8FromPath(self.parent_path());
    }
#endif
    return railwright::support::Utf8FromPath(std::filesystem::absolute(railwright::support::PathFromUtf8(argv0), error).parent_path());
}

// The arguments as UTF-8. On Windows argv is in the ANSI code page, which cannot hold every
// name: they are read again from the wide command line.
std::vector<std::string> Arguments(int argc, char** argv) {
#ifdef _WIN32
    int count = 0;
    if (wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count)) {
        std::vector<std::string> arguments;
        for (int i = 0; i < count; ++i) {
            arguments.push_back(railwright::support::Utf8FromPath(std::filesystem::path(wide[i])));
        }
        LocalFree(wide);
        return arguments;
    }
#endif
    return {argv, argv + argc};
}

bool ErrorIsTerminal() {
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::vector<std::string> arguments = Arguments(argc, argv);
        return railwright::cli::RunCommand(
            arguments, {std::cout, std::cerr, ErrorIsTerminal(), ProgramFolder(argv[0])});
    } catch (const std::exception& error) {
        std::cerr << "railwright: internal error: " << error.what() << '\n';
        return railwright::cli::kExitFailed;
    }
}
