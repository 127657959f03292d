#include "export/common/UnicodeConversion.h"

#include <gtest/gtest.h>

#include "support/Fakes.h"
#include "support/SupportingFunctions.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::exportcommon {
namespace {

// A file system whose short paths are the long ones upper-cased, so that a test can see which
// form reached the command line.
class ShortPathFiles : public ::railwright::testing::NoFileSystem {
  public:
    std::string ShortPath(const std::string& path) override { return support::ToUpper(path); }
};

struct ConversionRun {
    ShortPathFiles files;
    ::railwright::testing::FakeProcesses processes;
    ::railwright::testing::MemorySettingsStore settings;
    ::railwright::testing::FakeSystemInfo system;
    ui::script::ScriptedUserInterface ui{ui::script::EventScript{}};
    support::Platform platform{files, processes, settings, system, ui};
};

TEST(ConvertToUnicode, RunsTxt2UniOnTheShortFormOfTheFileAndWaits) {
    ConversionRun run;
    run.processes.exitCodes = {support::kStillActive, support::kStillActive, 3};
    const std::string tools = support::JoinPath("tools", "");

    const support::RunResult result =
        ConvertToUnicode(run.platform, tools, support::JoinPath("trains", "my loco.eng"));

    EXPECT_EQ(run.processes.launched,
              (std::vector<std::string>{support::JoinPath("tools", "txt2uni.exe") + " " +
                                        support::JoinPath("TRAINS", "MY LOCO.ENG")}));
    EXPECT_EQ(run.processes.sleeps.size(), 3u);
    // The exit code is reported, not judged.
    EXPECT_EQ(result.exitCode, 3);
}

TEST(ConvertToUnicode, RaisesFileNotFoundWhenTheToolCannotBeStarted) {
    ConversionRun run;
    run.processes.launchSucceeds = false;
    try {
        (void)ConvertToUnicode(run.platform, "tools", "file.eng");
        ADD_FAILURE() << "no error for a tool that did not start";
    } catch (const support::RunTimeError& error) {
        EXPECT_EQ(error.Number(), support::kErrorFileNotFound);
        EXPECT_NE(std::string(error.what()).find("txt2uni.exe"), std::string::npos);
    }
}

TEST(Txt2UniCommandLine, IsTheToolsFolderTheToolAndTheFile) {
    EXPECT_EQ(
        Txt2UniCommandLine(support::JoinPath("C", "TOOLS") + support::kPathSeparator, "F.ENG"),
        support::JoinPath(support::JoinPath("C", "TOOLS"), "txt2uni.exe") + " F.ENG");
}

}  // namespace
}  // namespace railwright::exportcommon
