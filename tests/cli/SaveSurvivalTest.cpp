// The model survives what can happen to `railwright apply` while it saves: a kill at any moment
// leaves the old model or the new one, whole and loadable, and the next run gets past what the
// killed one left; a file system that takes no more bytes leaves the old model untouched and
// says which file was not saved. The program runs as a child process, as a user starts it.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <fcntl.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <optional>
#include <thread>

#include <nlohmann/json.hpp>

#include "document/Document.h"
#include "support/posix/TempFolder.h"

namespace railwright::cli {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

struct Limits {
    std::optional<std::chrono::microseconds> killAfter;
    std::optional<rlim_t> fileSize;  // RLIMIT_FSIZE: the largest file the run may write
};

struct ApplyRun {
    bool killed = false;
    int exitCode = -1;
    std::string errors;
    std::chrono::microseconds took{0};
};

// Runs `railwright apply MODEL --script SCRIPT --quiet` in `folder`, standard error to a file.
ApplyRun RunApply(const std::string& folder, const std::string& model, const Limits& limits) {
    const std::string errors = folder + "/stderr.txt";
    std::vector<std::string> argv = {RAILWRIGHT_PROGRAM, "apply", model, "--script",
                                     folder + "/script.json", "--documents", folder + "/documents",
                                     "--settings", folder + "/settings.ini", "--no-cache",
                                     "--quiet"};
    std::vector<char*> pointers;
    for (std::string& argument : argv) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    const Clock::time_point start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        const int err = open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        dup2(err, 2);
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        if (limits.fileSize) {
            // A write past the limit then fails with EFBIG, as on a full disk, instead of
            // ending the process.
            signal(SIGXFSZ, SIG_IGN);
            const rlimit size{*limits.fileSize, *limits.fileSize};
            setrlimit(RLIMIT_FSIZE, &size);
        }
        execv(pointers[0], pointers.data());
        _exit(127);
    }
    ApplyRun run;
    if (child < 0) {
        ADD_FAILURE() << "cannot start " << RAILWRIGHT_PROGRAM;
        return run;
    }
    if (limits.killAfter) {
        std::this_thread::sleep_for(*limits.killAfter);
        kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    run.took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
    run.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.errors = testing::GetFile(errors);
    return run;
}

// A copy of the sample in a temp folder with the sample's script for BVE, which renames and
// moves the model's groups and writes no file but the model: the run is mostly loading and
// saving. `large`
// makes the model a .glb carrying 16 MB more in its BIN chunk, which every save rewrites.
class SaveSurvival : public ::testing::Test {
  protected:
    std::string Prepare(bool large) {
        const fs::path sample = fs::path(RAILWRIGHT_SOURCE_DIR) / "examples" / "sample";
        for (const auto& entry : fs::directory_iterator(sample)) {
            fs::copy_file(entry.path(), fs::path(folder_.Path()) / entry.path().filename(),
                          fs::copy_options::overwrite_existing);
        }
        std::string script =
            testing::GetFile(std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json");
        script.replace(script.find("chkMSTS"), 7, "chkBVE");
        testing::PutFile(folder_ / "script.json", script);
        fs::create_directories(folder_ / "documents");
        if (!large) {
            return folder_ / "diesel.gltf";
        }
        nlohmann::json gltf = nlohmann::json::parse(testing::GetFile(folder_ / "diesel.gltf"));
        std::string bin = testing::GetFile(folder_ / "diesel.bin");
        bin.resize((bin.size() + 3) / 4 * 4, '\0');
        const size_t extra = 16 << 20;
        gltf["bufferViews"].push_back(
            {{"buffer", 0}, {"byteOffset", bin.size()}, {"byteLength", extra}});
        bin.append(extra, 'R');
        gltf["buffers"] = {{{"byteLength", bin.size()}}};
        std::string json = gltf.dump();
        json.resize((json.size() + 3) / 4 * 4, ' ');
        const auto word = [](size_t value) {
            std::string bytes(4, '\0');
            for (size_t i = 0; i < 4; ++i) {
                bytes[i] = static_cast<char>(value >> (8 * i) & 0xFF);
            }
            return bytes;
        };
        const std::string glb = "glTF" + word(2) + word(12 + 8 + json.size() + 8 + bin.size()) +
                                word(json.size()) + "JSON" + json + word(bin.size()) +
                                std::string("BIN\0", 4) + bin;
        testing::PutFile(folder_ / "large.glb", glb);
        return folder_ / "large.glb";
    }

    testing::TempFolder folder_;
};

TEST_F(SaveSurvival, AKillAtAnyMomentLeavesTheOldModelOrTheNewOneAndTheNextRunGoesOn) {
    constexpr int kRunsPerModel = 26;
    for (const bool large : {false, true}) {
        SCOPED_TRACE(large ? "large model" : "sample");
        const std::string model = Prepare(large);
        const std::string old = testing::GetFile(model);
        const ApplyRun whole = RunApply(folder_.Path(), model, {std::nullopt, std::nullopt});
        ASSERT_EQ(whole.exitCode, 0) << whole.errors;
        const std::string saved = testing::GetFile(model);
        ASSERT_NE(saved, old);
        const std::string temporary = model + ".railwright-save";

        int oldLeft = 0;
        int newLeft = 0;
        for (int i = 0; i < kRunsPerModel; ++i) {
            testing::PutFile(model, old);
            // From a third of a whole run to a little past its end, where the save is.
            const auto after = whole.took * (0.33 + 0.8 * i / kRunsPerModel);
            const ApplyRun run = RunApply(folder_.Path(), model,
                                     {std::chrono::duration_cast<std::chrono::microseconds>(after), std::nullopt});
            const std::string left = testing::GetFile(model);
            ASSERT_TRUE(left == old || left == saved)
                << "run " << i << " killed after " << after.count() << " us left " << left.size()
                << " bytes";
            (left == old ? oldLeft : newLeft)++;
            const document::LoadResult loaded = document::Document::Load(model);
            ASSERT_TRUE(loaded.document) << loaded.error;
        }
        std::cout << (large ? "large model" : "sample") << ": " << oldLeft << " runs left the old "
                  << "model, " << newLeft << " the new one\n";

        // A half-written temporary file of a killed run is written over and taken away.
        testing::PutFile(model, old);
        testing::PutFile(temporary, saved.substr(0, saved.size() / 2));
        const ApplyRun next = RunApply(folder_.Path(), model, {std::nullopt, std::nullopt});
        EXPECT_EQ(next.exitCode, 0) << next.errors;
        EXPECT_EQ(testing::GetFile(model), saved);
        EXPECT_FALSE(fs::exists(temporary));
        fs::remove(model);
    }
}

TEST_F(SaveSurvival, AFullFileSystemLeavesTheOldModelAndNamesIt) {
    // RLIMIT_FSIZE stands in for a full disk: the kernel refuses every byte past the limit with
    // EFBIG, as a full file system refuses them with ENOSPC, and mounting a small file system
    // needs rights a test does not have.
    const std::string model = Prepare(true);
    const std::string old = testing::GetFile(model);
    const ApplyRun run = RunApply(folder_.Path(), model, {std::nullopt, old.size() / 2});
    EXPECT_EQ(run.exitCode, 1) << run.errors;
    EXPECT_NE(run.errors.find(model + ": not saved: the new file could not be written completely"),
              std::string::npos)
        << run.errors;
    EXPECT_EQ(testing::GetFile(model), old);
    EXPECT_FALSE(fs::exists(model + ".railwright-save"));
}

}  // namespace
}  // namespace railwright::cli
