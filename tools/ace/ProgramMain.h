// What both ACE programs' entry points share: the arguments as paths (each program's Windows
// entry point is wmain, so that any file name arrives intact), and no exception ever leaving the
// program.
#pragma once

#include <exception>
#include <filesystem>
#include <iostream>
#include <new>
#include <string_view>
#include <vector>

namespace railwright::ace {

using Arguments = std::vector<std::filesystem::path>;

// Runs `run` with the arguments (the program first); an exception becomes a message and exit
// status 1.
template <class Run>
int RunProgram(std::string_view programName, const Arguments& arguments, Run run) {
    try {
        return run(arguments);
    } catch (const std::bad_alloc&) {
        std::cerr << programName << ": out of memory\n";
    } catch (const std::exception& error) {
        std::cerr << programName << ": " << error.what() << "\n";
    } catch (...) {
        std::cerr << programName << ": an unexpected failure\n";
    }
    return 1;
}

}  // namespace railwright::ace
