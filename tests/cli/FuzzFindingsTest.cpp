// Every input on which a fuzz target once failed, kept under tests/fuzz-findings/<target>, runs
// cleanly through the target's own harness (under the sanitizers in the sanitize build).
#include <gtest/gtest.h>

#include <filesystem>

#include "ModelSettingsInput.h"
#include "cli/Command.h"
#include "support/posix/TempFolder.h"

namespace railwright::cli {
namespace {

namespace fs = std::filesystem;

TEST(FuzzFindings, StoredSettingsThatOnceFailedLoadAndSaveCleanly) {
    const fs::path folder = fs::path(RAILWRIGHT_SOURCE_DIR) / "tests" / "fuzz-findings" / "ModelSettings";
    size_t inputs = 0;
    for (const auto& entry : fs::directory_iterator(folder)) {
        SCOPED_TRACE(entry.path().filename().string());
        const std::string bytes = testing::GetFile(entry.path().string());
        const int status = fuzz::RunModelSettingsInput(
            reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
        EXPECT_TRUE(status == kExitSuccess || status == kExitFailed) << status;
        ++inputs;
    }
    EXPECT_GT(inputs, 0u);
}

}  // namespace
}  // namespace railwright::cli
