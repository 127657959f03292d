#include "support/posix/PosixProcesses.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/CommandLine.h"
#include "support/Fakes.h"
#include "support/SupportingFunctions.h"
#include "support/posix/PosixFileSystem.h"
#include "support/posix/TempFolder.h"

namespace railwright::support::posix {
namespace {

using testing::GetFile;
using testing::PutFile;
using testing::TempFolder;

constexpr const char* kRecordArgs = RAILWRIGHT_RECORD_ARGS;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

class PosixProcessesTest : public ::testing::Test {
protected:
    // Polls the child until it has ended; its exit code, or nothing when it cannot be read. Gives
    // up (failing the test) only after a minute, so that a broken child cannot hang the suite.
    std::optional<int32_t> WaitFor(int32_t taskId) {
        std::unique_ptr<ProcessHandle> handle = processes.Open(taskId);
        if (handle == nullptr) {
            ADD_FAILURE() << "cannot open task " << taskId;
            return std::nullopt;
        }
        for (int poll = 0; poll < 6000; ++poll) {
            const std::optional<int32_t> code = handle->ExitCode();
            if (code != kStillActive) {
                return code;
            }
            processes.Sleep(std::chrono::milliseconds(10));
        }
        ADD_FAILURE() << "task " << taskId << " did not end";
        return std::nullopt;
    }

    // Runs record_args with the given argument text after its output file; the exit code.
    std::optional<int32_t> RunRecorded(const std::string& arguments) {
        const std::optional<int32_t> taskId = processes.Launch(
            QuoteArgument(kRecordArgs) + " " + QuoteArgument(output) + " " + arguments,
            WindowStyle::Hidden);
        if (!taskId) {
            ADD_FAILURE() << "record_args did not start";
            return std::nullopt;
        }
        return WaitFor(*taskId);
    }

    TempFolder temp;
    std::string output = temp / "recorded args.txt";
    PosixProcesses processes;
};

TEST_F(PosixProcessesTest, ArgumentsArriveAsTheWindowsRulesSplitThem) {
    ASSERT_EQ(
        RunRecorded(R"("with space" back\slash "quote\"inside" trailing\\ "" "dir\\" a"b"" c)"), 0);
    EXPECT_EQ(
        Lines(GetFile(output)),
        (std::vector<std::string>{kRecordArgs, output, "with space", R"(back\slash)",
                                  R"(quote"inside)", R"(trailing\\)", "", R"(dir\)", R"(ab" c)"}));
}

TEST_F(PosixProcessesTest, QuotedArgumentsArriveUnchanged) {
    const std::vector<std::string> arguments = {
        "C:\\Program Files\\", "say \"hi\"", "\\\\\"", "", "ünï cödé", "-o"};
    std::string commandLine;
    for (const std::string& argument : arguments) {
        commandLine += QuoteArgument(argument) + " ";
    }
    ASSERT_EQ(RunRecorded(commandLine), 0);
    std::vector<std::string> expected = {kRecordArgs, output};
    expected.insert(expected.end(), arguments.begin(), arguments.end());
    EXPECT_EQ(Lines(GetFile(output)), expected);
}

TEST_F(PosixProcessesTest, ExitCodesComeThrough) {
    for (const int32_t code : {0, 1, 42, 255}) {
        EXPECT_EQ(RunRecorded("--exit=" + std::to_string(code)), code);
    }
}

TEST_F(PosixProcessesTest, AProgramInAFolderWithBlanksStartsWhenQuoted) {
    ASSERT_TRUE(PosixFileSystem(temp / "aliases").CreateFolder(temp / "tools folder"));
    const std::string program = temp / "tools folder/record args";
    std::filesystem::copy_file(kRecordArgs, program);
    const std::optional<int32_t> taskId = processes.Launch(
        "\"" + program + "\" " + QuoteArgument(output) + " --exit=3", WindowStyle::NormalFocus);
    ASSERT_TRUE(taskId);
    EXPECT_EQ(WaitFor(*taskId), 3);
    EXPECT_EQ(Lines(GetFile(output)), (std::vector<std::string>{program, output, "--exit=3"}));
}

TEST_F(PosixProcessesTest, AProgramNamedByItsPathIsFoundWithoutRegardToCase) {
    std::filesystem::copy_file(kRecordArgs, temp / "ACECOMP.EXE");
    const std::optional<int32_t> taskId = processes.Launch(
        QuoteArgument(temp / "acecomp.exe") + " " + QuoteArgument(output), WindowStyle::Hidden);
    ASSERT_TRUE(taskId);
    EXPECT_EQ(WaitFor(*taskId), 0);
    EXPECT_EQ(Lines(GetFile(output)).size(), 2u);
}

TEST_F(PosixProcessesTest, AProgramNameIsLookedUpInThePath) {
    const std::optional<int32_t> taskId =
        processes.Launch(R"(sh -c "exit 7")", WindowStyle::Hidden);
    ASSERT_TRUE(taskId);
    EXPECT_EQ(WaitFor(*taskId), 7);
}

TEST_F(PosixProcessesTest, WhatCannotBeStartedGivesNoTask) {
    PutFile(temp / "not executable", "#!/bin/sh\nexit 0\n");
    PutFile(temp / "no format", "neither a script nor a program");
    ASSERT_EQ(chmod((temp / "no format").c_str(), 0755), 0);
    const std::string commandLines[] = {
        "",
        "   ",
        QuoteArgument(temp / "missing program") + " x",
        "railwright-no-such-program-anywhere",
        QuoteArgument(temp / "not executable"),
        QuoteArgument(temp / "no format"),
        QuoteArgument(temp.Path()),
    };
    for (const std::string& commandLine : commandLines) {
        EXPECT_EQ(processes.Launch(commandLine, WindowStyle::Hidden), std::nullopt)
            << "command line: " << commandLine;
    }
}

TEST_F(PosixProcessesTest, ARunningChildIsStillActiveAndAKilledOneEndsWithItsSignal) {
    const std::optional<int32_t> taskId = processes.Launch(
        QuoteArgument(kRecordArgs) + " " + QuoteArgument(output) + " --sleep=60000",
        WindowStyle::Hidden);
    ASSERT_TRUE(taskId);
    std::unique_ptr<ProcessHandle> handle = processes.Open(*taskId);
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(handle->ExitCode(), kStillActive);

    ASSERT_EQ(kill(*taskId, SIGTERM), 0);
    EXPECT_EQ(WaitFor(*taskId), 128 + SIGTERM);
    // Once reaped, the code is still known to the handle and to handles opened later.
    EXPECT_EQ(handle->ExitCode(), 128 + SIGTERM);
    std::unique_ptr<ProcessHandle> later = processes.Open(*taskId);
    ASSERT_NE(later, nullptr);
    EXPECT_EQ(later->ExitCode(), 128 + SIGTERM);
}

TEST_F(PosixProcessesTest, OpenRefusesWhatIsNoProcessAndCannotReadOthersCodes) {
    EXPECT_EQ(processes.Open(0), nullptr);
    EXPECT_EQ(processes.Open(-1), nullptr);
    std::unique_ptr<ProcessHandle> parent = processes.Open(static_cast<int32_t>(getppid()));
    ASSERT_NE(parent, nullptr);
    EXPECT_EQ(parent->ExitCode(), std::nullopt);
}

// The user interface of a run without windows: counts what run-and-wait asks of it.
class CountingUserInterface : public UserInterface {
public:
    MessageAnswer ShowMessage(std::string_view, MessageIcon, MessageButtons) override {
        return MessageAnswer::Ok;
    }
    void ShowModal(DialogModel&) override {}
    void Repaint(DialogModel&) override {}
    void PumpMessages() override { ++pumps; }
    ScreenSize Screen() override { return {1024, 768}; }

    int pumps = 0;
};

TEST_F(PosixProcessesTest, RunAndWaitReturnsAfterTheChildEndedWithItsCode) {
    PosixFileSystem files(temp / "aliases");
    ::railwright::testing::MemorySettingsStore settings;
    ::railwright::testing::FakeSystemInfo system;
    CountingUserInterface ui;
    Platform platform{files, processes, settings, system, ui};

    const RunResult result = RunAndWait(
        platform,
        QuoteArgument(kRecordArgs) + " " + QuoteArgument(output) + " --sleep=200 --exit=5", true,
        WindowStyle::Hidden, nullptr);
    EXPECT_TRUE(result.started);
    EXPECT_GT(result.taskId, 0);
    EXPECT_EQ(result.exitCode, 5);
    // The child writes its record just before it ends.
    EXPECT_EQ(Lines(GetFile(output)).size(), 4u);
    EXPECT_GE(ui.pumps, 1);

    const RunResult missing = RunAndWait(platform, QuoteArgument(temp / "missing tool"), true,
                                         WindowStyle::Hidden, nullptr);
    EXPECT_FALSE(missing.started);
}

TEST_F(PosixProcessesTest, AHandleThatWakesOnExitWaitsForTheChildsEndOnly) {
    PosixProcesses waking(ExitWait::WakeOnExit);
    const std::optional<int32_t> taskId = waking.Launch(
        QuoteArgument(kRecordArgs) + " " + QuoteArgument(output) + " --sleep=300 --exit=3",
        WindowStyle::Hidden);
    ASSERT_TRUE(taskId);
    const std::unique_ptr<ProcessHandle> handle = waking.Open(*taskId);
    ASSERT_NE(handle, nullptr);
    // The child sleeps first: a short wait ends while it still runs.
    EXPECT_TRUE(handle->AwaitExit(std::chrono::milliseconds(1)));
    EXPECT_EQ(handle->ExitCode(), kStillActive);
    // A wait that did not wake at the child's end would outlast the test's time limit.
    EXPECT_TRUE(handle->AwaitExit(std::chrono::hours(1)));
    EXPECT_EQ(handle->ExitCode(), 3);
    EXPECT_TRUE(handle->AwaitExit(std::chrono::hours(1)));

    // The plug-in's processes do not wait: the caller sleeps instead.
    const std::optional<int32_t> polled = processes.Launch(QuoteArgument(kRecordArgs) + " " +
                                                               QuoteArgument(output) + " --exit=0",
                                                           WindowStyle::Hidden);
    ASSERT_TRUE(polled);
    EXPECT_FALSE(processes.Open(*polled)->AwaitExit(std::chrono::hours(1)));
    EXPECT_EQ(WaitFor(*polled), 0);
}

}  // namespace
}  // namespace railwright::support::posix
