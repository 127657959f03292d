// txt2uni on a 10 MB engine-file-like text: the whole tool as a child process, reading, converting
// and replacing the file.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

std::string TenMegabytesOfText() {
    const std::string line = "    MaxBrakeForce( 140kN )  \xE9\xE8 Adheasion ( 0.2 0.4 2 0 )\r\n";
    std::string text;
    text.reserve(10 * 1024 * 1024 + line.size());
    while (text.size() < 10 * 1024 * 1024) {
        text += line;
    }
    return text;
}

void Txt2UniTenMegabytes(benchmark::State& state) {
    const fs::path folder = fs::temp_directory_path() / ("railwright-bench-" + std::to_string(getpid()));
    fs::create_directories(folder);
    const fs::path file = folder / "big.eng";
    const std::string text = TenMegabytesOfText();
    const std::string program = RAILWRIGHT_TXT2UNI;
    const std::string fileName = file.string();
    for (auto _ : state) {
        state.PauseTiming();
        std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
        state.ResumeTiming();
        char* argv[] = {const_cast<char*>(program.c_str()), const_cast<char*>(fileName.c_str()),
                        nullptr};
        pid_t child = 0;
        if (posix_spawn(&child, program.c_str(), nullptr, nullptr, argv, environ) != 0) {
            state.SkipWithError("cannot start txt2uni");
            break;
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
            state.SkipWithError("txt2uni failed");
            break;
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
    fs::remove_all(folder);
}
BENCHMARK(Txt2UniTenMegabytes)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
