// A stand-in for an external tool: records the arguments it was started with, one per line, and
// ends with the exit code it is told.
//
//   record_args OUTPUT [--exit=N] [--sleep=MS] [arguments...]
//
// OUTPUT is the file to write, unless $RECORD_ARGS_FILE names one (then every argument, OUTPUT
// included, is just recorded). All of argv is written, argv[0] first, each followed by "\n".
// --sleep waits before writing; --exit gives the exit code (default 0).
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>

int main(int argc, char** argv) {
    const char* fromEnvironment = std::getenv("RECORD_ARGS_FILE");
    std::string output = fromEnvironment != nullptr ? fromEnvironment : "";
    if (output.empty() && argc > 1) {
        output = argv[1];
    }
    int exitCode = 0;
    int sleepMilliseconds = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.substr(0, 7) == "--exit=") {
            exitCode = std::atoi(argv[i] + 7);
        } else if (argument.substr(0, 8) == "--sleep=") {
            sleepMilliseconds = std::atoi(argv[i] + 8);
        }
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(sleepMilliseconds));
    if (!output.empty()) {
        std::ofstream file(output, std::ios::binary);
        for (int i = 0; i < argc; ++i) {
            file << argv[i] << '\n';
        }
        if (!file) {
            return 125;
        }
    }
    return exitCode;
}
