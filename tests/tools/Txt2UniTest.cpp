// The txt2uni tool, run as a child process the way the exporters run it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/posix/TempFolder.h"

namespace railwright::tools {
namespace {

using ::railwright::testing::GetFile;
using ::railwright::testing::PutFile;
using ::railwright::testing::TempFolder;

extern "C" char** environ;

struct ToolRun {
    int exitCode = -1;
    std::string errors;  // what it wrote on standard error
};

// Runs txt2uni with these arguments, its standard error going to a file in `temp`.
ToolRun RunTxt2Uni(const TempFolder& temp, const std::vector<std::string>& arguments) {
    const std::string errorsFile = temp / "stderr.txt";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, errorsFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    std::vector<std::string> argv = {RAILWRIGHT_TXT2UNI};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& argument : argv) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    pid_t child = 0;
    ToolRun run;
    if (posix_spawn(&child, RAILWRIGHT_TXT2UNI, &actions, nullptr, pointers.data(), environ) != 0) {
        ADD_FAILURE() << "cannot start " << RAILWRIGHT_TXT2UNI;
    } else {
        int status = 0;
        waitpid(child, &status, 0);
        run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        run.errors = GetFile(errorsFile);
    }
    posix_spawn_file_actions_destroy(&actions);
    return run;
}

// UTF-16LE bytes with the byte order mark, for characters given as code units.
std::string Utf16(std::u16string_view text) {
    std::string bytes = "\xFF\xFE";
    for (const char16_t unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

TEST(Txt2Uni, RewritesWindows1252TextAsUtf16WithAByteOrderMark) {
    TempFolder temp;
    const std::string file = temp / "my loco.eng";
    PutFile(file, "SIMISA\r\n \r\nName ( \"\x80 caf\xE9\x81\" )\r\n");

    const ToolRun run = RunTxt2Uni(temp, {file});

    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(GetFile(file), Utf16(u"SIMISA\r\n \r\nName ( \"\u20AC caf\u00E9\u0081\" )\r\n"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(temp.Path()), {}), 2)
        << "only the file and the captured errors should be left";
}

TEST(Txt2Uni, LeavesAFileThatIsAlreadyUnicodeAsItIs) {
    TempFolder temp;
    const std::string file = temp / "done.eng";
    const std::string converted = Utf16(u"SIMISA\r\n");
    PutFile(file, converted);
    EXPECT_EQ(RunTxt2Uni(temp, {file}).exitCode, 0);
    EXPECT_EQ(GetFile(file), converted);

    const std::string empty = temp / "empty.eng";
    PutFile(empty, "");
    EXPECT_EQ(RunTxt2Uni(temp, {empty}).exitCode, 0);
    EXPECT_EQ(GetFile(empty), "\xFF\xFE");
}

TEST(Txt2Uni, RewritesTheFileALinkPointsAt) {
    TempFolder temp;
    const std::string file = temp / "class 47.eng";
    const std::string link = temp / "C47~1.ENG";
    PutFile(file, "Wagon\r\n");
    std::filesystem::create_symlink(file, link);

    EXPECT_EQ(RunTxt2Uni(temp, {link}).exitCode, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(GetFile(file), Utf16(u"Wagon\r\n"));
}

TEST(Txt2Uni, NamesTheFileAndTheFaultWhenItFails) {
    TempFolder temp;
    const std::string missing = temp / "missing.eng";
    ToolRun run = RunTxt2Uni(temp, {missing});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.errors.find("\"" + missing + "\": no such file"), std::string::npos)
        << run.errors;

    run = RunTxt2Uni(temp, {temp.Path()});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.errors.find("is not a file"), std::string::npos) << run.errors;

    // The new text cannot be written: a folder stands where it would go. The file is untouched.
    const std::string file = temp / "locked.eng";
    PutFile(file, "Wagon\r\n");
    std::filesystem::create_directory(file + ".txt2uni-new");
    run = RunTxt2Uni(temp, {file});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.errors.find("\"" + file + "\": cannot write"), std::string::npos) << run.errors;
    EXPECT_EQ(GetFile(file), "Wagon\r\n");

    run = RunTxt2Uni(temp, {});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.errors.find("usage"), std::string::npos) << run.errors;
}

}  // namespace
}  // namespace railwright::tools
