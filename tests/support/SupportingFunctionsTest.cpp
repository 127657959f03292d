#include <gtest/gtest.h>

#include "support/Fakes.h"
#include "support/SupportingFunctions.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::support {
namespace {

using namespace std::chrono_literals;

TEST(SplitExtension, SplitsAtTheLastDotOfTheFileName) {
    EXPECT_EQ(SplitExtension("texture.tga"), (SplitName{"texture", "tga"}));
    EXPECT_EQ(SplitExtension("folder.v2\\texture"), (SplitName{"folder.v2\\texture", ""}));
    EXPECT_EQ(SplitExtension("folder.v2/texture"), (SplitName{"folder.v2/texture", ""}));
    EXPECT_EQ(SplitExtension("a.b.ace"), (SplitName{"a.b", "ace"}));
    EXPECT_EQ(SplitExtension("noextension"), (SplitName{"noextension", ""}));
    EXPECT_EQ(SplitExtension("trailing."), (SplitName{"trailing", ""}));
}

TEST(JoinPath, AddsOneSeparatorOnlyWhereNeeded) {
    const std::string separator(1, kPathSeparator);
    EXPECT_EQ(JoinPath("tools", "txt2uni.exe"), "tools" + separator + "txt2uni.exe");
    EXPECT_EQ(JoinPath("tools" + separator, "txt2uni.exe"), "tools" + separator + "txt2uni.exe");
    EXPECT_EQ(JoinPath("", "txt2uni.exe"), "txt2uni.exe");
}

TEST(TextHelpers, CompareWithoutRegardToCase) {
    EXPECT_TRUE(EqualsIgnoreCase("acecomp.EXE", "ACECOMP.exe"));
    EXPECT_FALSE(EqualsIgnoreCase("acecomp.exe", "acecomp.ex"));
    EXPECT_TRUE(StartsWithIgnoreCase("RailwrightPlaceholder-stack1", "RAILWRIGHTPLACEHOLDER-"));
    EXPECT_FALSE(StartsWithIgnoreCase("Rail", "RailwrightPlaceholder-"));
    EXPECT_TRUE(EndsWithIgnoreCase("wood.Tga", "TGA"));
    EXPECT_FALSE(EndsWithIgnoreCase("ga", "TGA"));
}

// Runs RunAndWait against fake processes whose exit-code reads are scripted.
struct RunAndWaitCase {
    testing::NoFileSystem files;
    testing::FakeProcesses processes;
    testing::MemorySettingsStore settings;
    testing::FakeSystemInfo system;
    ui::script::ScriptedUserInterface ui{{}};
    Platform platform{files, processes, settings, system, ui};
};

TEST(RunAndWait, PollsEvery50MillisecondsUntilTheProcessHasEnded) {
    RunAndWaitCase quick;
    const RunResult ended = RunAndWait(quick.platform, "tool.exe a", false, WindowStyle::Hidden,
                                       nullptr);
    EXPECT_TRUE(ended.started);
    EXPECT_EQ(ended.taskId, 4242);
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(quick.processes.sleeps, std::vector<std::chrono::milliseconds>{50ms});
    EXPECT_EQ(quick.processes.launched, std::vector<std::string>{"tool.exe a"});

    RunAndWaitCase slow;
    slow.processes.exitCodes = {kStillActive, kStillActive, 3};
    const RunResult later = RunAndWait(slow.platform, "tool.exe", false, WindowStyle::Hidden,
                                       nullptr);
    EXPECT_EQ(later.exitCode, 3);
    EXPECT_EQ(slow.processes.sleeps.size(), 3u);
}

TEST(RunAndWait, EndsAtOnceWhenTheProcessCannotBeStartedOrOpened) {
    RunAndWaitCase missing;
    missing.processes.launchSucceeds = false;
    const RunResult notStarted =
        RunAndWait(missing.platform, "missing.exe", false, WindowStyle::Hidden, nullptr);
    EXPECT_FALSE(notStarted.started);
    EXPECT_TRUE(missing.processes.sleeps.empty());

    RunAndWaitCase unopened;
    unopened.processes.openSucceeds = false;
    unopened.processes.exitCodes = {kStillActive};
    const RunResult result =
        RunAndWait(unopened.platform, "tool.exe", false, WindowStyle::Hidden, nullptr);
    EXPECT_TRUE(result.started);
    EXPECT_FALSE(result.exitCode.has_value());
    EXPECT_EQ(unopened.processes.sleeps.size(), 1u);
}

TEST(RunAndWait, RepaintsTheFormOnceAndKeepsTheInterfaceAliveOnRequest) {
    class Form : public DialogModel {
    public:
        Form() : DialogModel("frmTest") {}
    } form;
    RunAndWaitCase run;
    run.processes.exitCodes = {kStillActive, 0};
    RunAndWait(run.platform, "tool.exe", true, WindowStyle::MinimizedNoFocus, &form);
    EXPECT_EQ(run.ui.Repaints(), 1);
}

TEST(ErrorReporter, ChoosesTheTextByErrorNumber) {
    const std::string forum = "https://forum.railwright.org/problem-reports";
    struct Case {
        ErrorInfo error;
        std::string expected;
    };
    const Case cases[] = {
        {{kErrorCancelledDialog, "Cancel"}, ""},
        {{host::kHostErrorFailed, "The group has no parent."},
         "The group has no parent. (#-2147221503)"},
        {{host::kHostErrorInvalidArgument, "Bad index."}, "Bad index. (#-2147221502)"},
        {{kErrorOutOfMemory, "Out of memory"},
         "Out of memory. Please close all programs and run Polyforge again. (#7)"},
        {{static_cast<int32_t>(0x80004005u), "Unspecified"},
         "An Unrecoverable error has occured. Often errors such as these can be resolved by "
         "updating the drivers for your display adapter (video card). If you continue to receive "
         "this message please let us know on the problem reports forum at " +
             forum + " (#-2147467259)"},
        {{kErrorSubscriptOutOfRange, "Subscript out of range"},
         "An Unrecoverable error has occured. If you continue to receive this message please let "
         "us know on the problem reports forum at " +
             forum + " (#9)"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ErrorMessage(c.error), c.expected) << c.error.number;
    }
}

TEST(ErrorReporter, ReportsTheErrorBeingHandledWithTheCriticalIcon) {
    ui::script::ScriptedUserInterface ui{{}};
    const auto report = [&ui](auto&& raise) {
        try {
            raise();
        } catch (...) {
            ReportCurrentError(ui);
        }
    };
    report([] { throw host::HostError(host::kHostErrorFailed, "No such group."); });
    report([] { throw std::bad_alloc(); });
    report([] { throw RunTimeError(kErrorCancelledDialog, "Cancelled"); });
    ASSERT_EQ(ui.Messages().size(), 2u);
    EXPECT_EQ(ui.Messages()[0].text, "No such group. (#-2147221503)");
    EXPECT_EQ(ui.Messages()[0].icon, MessageIcon::Critical);
    EXPECT_EQ(ui.Messages()[1].text,
              "Out of memory. Please close all programs and run Polyforge again. (#7)");
}

}  // namespace
}  // namespace railwright::support
