#include "support/posix/PosixFileSystem.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/CommandLine.h"
#include "support/posix/TempFolder.h"

namespace railwright::support::posix {
namespace {

using testing::GetFile;
using testing::PutFile;
using testing::SameFile;
using testing::TempFolder;

class PosixFileSystemTest : public ::testing::Test {
protected:
    // The names in a folder, hidden ones included: what a failed write could leave behind.
    std::vector<std::string> Everything(const std::string& folder) {
        return files.ListFiles(folder, "*");
    }

    TempFolder temp;
    std::string aliasFolder = temp / "aliases";
    PosixFileSystem files{aliasFolder};
};

TEST_F(PosixFileSystemTest, CreateFolderMakesParentsAndAcceptsAnExistingFolder) {
    const std::string nested = temp / "a/b/c";
    EXPECT_TRUE(files.CreateFolder(nested));
    EXPECT_TRUE(files.FolderExists(nested));
    EXPECT_TRUE(files.CreateFolder(nested));

    PutFile(temp / "file", "x");
    EXPECT_FALSE(files.CreateFolder(temp / "file"));
    EXPECT_FALSE(files.CreateFolder(temp / "file/below"));
}

TEST_F(PosixFileSystemTest, ExistenceTellsFilesFromFolders) {
    PutFile(temp / "file", "x");
    EXPECT_TRUE(files.FileExists(temp / "file"));
    EXPECT_FALSE(files.FolderExists(temp / "file"));
    EXPECT_TRUE(files.FolderExists(temp.Path()));
    EXPECT_FALSE(files.FileExists(temp.Path()));
    EXPECT_FALSE(files.FileExists(temp / "missing"));
    EXPECT_FALSE(files.FolderExists(temp / "missing"));
}

TEST_F(PosixFileSystemTest, WriteFileReplacesTheWholeFileAndLeavesNothingElse) {
    const std::string path = temp / "engine.eng";
    const std::string binary("SIMISA\0\r\n\xFF\xFE", 11);
    ASSERT_TRUE(files.WriteFile(path, binary));
    EXPECT_EQ(files.ReadFile(path), binary);

    ASSERT_TRUE(files.WriteFile(path, "short"));
    EXPECT_EQ(GetFile(path), "short");
    ASSERT_TRUE(files.WriteFile(path, ""));
    EXPECT_EQ(files.ReadFile(path), "");
    EXPECT_EQ(Everything(temp.Path()), std::vector<std::string>{"engine.eng"});
}

TEST_F(PosixFileSystemTest, WriteFileFailsCleanly) {
    EXPECT_FALSE(files.WriteFile(temp / "missing/file.txt", "x"));

    ASSERT_TRUE(files.CreateFolder(temp / "folder"));
    PutFile(temp / "folder/inside", "kept");
    EXPECT_FALSE(files.WriteFile(temp / "folder", "x"));
    EXPECT_EQ(GetFile(temp / "folder/inside"), "kept");
    EXPECT_EQ(Everything(temp.Path()), std::vector<std::string>{});
}

TEST_F(PosixFileSystemTest, ReadFileGivesNothingForMissingFilesAndFolders) {
    EXPECT_EQ(files.ReadFile(temp / "missing"), std::nullopt);
    EXPECT_EQ(files.ReadFile(temp.Path()), std::nullopt);
}

TEST_F(PosixFileSystemTest, CopyFileOverwritesTheTarget) {
    PutFile(temp / "from.wav", "new sound");
    PutFile(temp / "to.wav", "an older and longer sound");
    EXPECT_TRUE(files.CopyFile(temp / "from.wav", temp / "to.wav"));
    EXPECT_EQ(GetFile(temp / "to.wav"), "new sound");
    EXPECT_EQ(GetFile(temp / "from.wav"), "new sound");

    EXPECT_FALSE(files.CopyFile(temp / "missing.wav", temp / "other.wav"));
    EXPECT_FALSE(files.FileExists(temp / "other.wav"));
}

TEST_F(PosixFileSystemTest, DeleteFileIgnoresFailure) {
    PutFile(temp / "old.sd", "x");
    files.DeleteFile(temp / "old.sd");
    EXPECT_FALSE(files.FileExists(temp / "old.sd"));
    files.DeleteFile(temp / "old.sd");
    ASSERT_TRUE(files.CreateFolder(temp / "folder"));
    files.DeleteFile(temp / "folder");
    EXPECT_TRUE(files.FolderExists(temp / "folder"));
}

TEST_F(PosixFileSystemTest, ListFilesMatchesWildcardsWithoutRegardToCase) {
    for (const char* name : {"Alpha.ACE", "beta.ace", "a.b.ace", "gamma.wav", "noext", "x1.tga",
                             "x22.tga", "ACECOMP.EXE", "ü.tga"}) {
        PutFile(temp / name, "x");
    }
    ASSERT_TRUE(files.CreateFolder(temp / "folder.ace"));
    ASSERT_EQ(symlink("Alpha.ACE", (temp / "linked.ace").c_str()), 0);
    ASSERT_EQ(symlink("missing.ace", (temp / "dangling.ace").c_str()), 0);

    const std::vector<std::string> all = {"a.b.ace",   "ACECOMP.EXE", "Alpha.ACE", "beta.ace",
                                          "gamma.wav", "linked.ace",  "noext",     "x1.tga",
                                          "x22.tga",   "ü.tga"};
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"*.ace", {"a.b.ace", "Alpha.ACE", "beta.ace", "linked.ace"}},
        {"*.ACE", {"a.b.ace", "Alpha.ACE", "beta.ace", "linked.ace"}},
        {"acecomp.exe", {"ACECOMP.EXE"}},
        {"x?.tga", {"x1.tga"}},
        {"x??.tga", {"x22.tga"}},
        {"?.tga", {"ü.tga"}},
        {"*.t?a", {"x1.tga", "x22.tga", "ü.tga"}},
        {"a*e", {"a.b.ace", "ACECOMP.EXE", "Alpha.ACE"}},
        {"*", all},
        {"*.*", all},
        {"*.bmp", {}},
        {"?", {}},
        {"", {}},
    };
    for (const auto& [pattern, expected] : cases) {
        EXPECT_EQ(files.ListFiles(temp.Path(), pattern), expected) << "pattern: " << pattern;
    }
    EXPECT_EQ(files.ListFiles(temp / "missing", "*"), std::vector<std::string>{});
}

TEST_F(PosixFileSystemTest, ListFoldersGivesSubFoldersSorted) {
    for (const char* name : {"Zeta", "alpha", "Beta"}) {
        ASSERT_TRUE(files.CreateFolder(temp / name));
    }
    PutFile(temp / "file", "x");
    ASSERT_EQ(symlink("Zeta", (temp / "linked").c_str()), 0);
    EXPECT_EQ(files.ListFolders(temp.Path()),
              (std::vector<std::string>{"alpha", "Beta", "linked", "Zeta"}));
    EXPECT_EQ(files.ListFolders(temp / "missing"), std::vector<std::string>{});
}

// The contract of a short path: one argument on a command line, naming the same file.
void ExpectShortFormOf(const std::string& shortPath, const std::string& path) {
    EXPECT_FALSE(shortPath.empty()) << path;
    EXPECT_EQ(shortPath.find(' '), std::string::npos) << shortPath;
    EXPECT_EQ(SplitCommandLine(shortPath), std::vector<std::string>{shortPath});
    EXPECT_TRUE(SameFile(shortPath, path)) << shortPath << " is not " << path;
}

TEST_F(PosixFileSystemTest, ShortPathOfAPlainPathIsThePath) {
    PutFile(temp / "tex.tga", "x");
    EXPECT_EQ(files.ShortPath(temp / "tex.tga"), temp / "tex.tga");
    EXPECT_EQ(files.ShortPath(temp / "missing.tga"), "");
    EXPECT_EQ(files.ShortPath(temp / "my model/missing.tga"), "");
    EXPECT_FALSE(files.FolderExists(aliasFolder));
}

TEST_F(PosixFileSystemTest, ShortPathAliasesPathsThatNeedQuoting) {
    ASSERT_TRUE(files.CreateFolder(temp / "my model \"v2\""));
    const std::string inFolder = temp / "my model \"v2\"/tex.tga";
    const std::string spacedName = temp / "my model \"v2\"/body paint.tga";
    PutFile(inFolder, "in folder");
    PutFile(spacedName, "spaced name");

    const std::string shortInFolder = files.ShortPath(inFolder);
    ExpectShortFormOf(shortInFolder, inFolder);
    EXPECT_TRUE(shortInFolder.ends_with("/tex.tga")) << shortInFolder;
    const std::string shortSpacedName = files.ShortPath(spacedName);
    ExpectShortFormOf(shortSpacedName, spacedName);
    EXPECT_TRUE(shortSpacedName.ends_with(".tga")) << shortSpacedName;
    ExpectShortFormOf(files.ShortPath(temp / "my model \"v2\""), temp / "my model \"v2\"");

    // Asked again, the same aliases; kept in a folder nobody else may enter.
    EXPECT_EQ(files.ShortPath(inFolder), shortInFolder);
    EXPECT_EQ(files.ShortPath(spacedName), shortSpacedName);
    struct stat status {};
    ASSERT_EQ(stat(aliasFolder.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(PosixFileSystemTest, ShortPathOfARelativePathPointsAtTheSameFile) {
    ASSERT_TRUE(files.CreateFolder(temp / "a folder"));
    PutFile(temp / "a folder/tex.bmp", "x");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(temp.Path());
    const std::string shortPath = files.ShortPath("a folder/tex.bmp");
    std::filesystem::current_path(before);
    ExpectShortFormOf(shortPath, temp / "a folder/tex.bmp");
}

TEST_F(PosixFileSystemTest, ShortPathReplacesAnAliasThatPointsElsewhere) {
    ASSERT_TRUE(files.CreateFolder(temp / "first folder"));
    PutFile(temp / "first folder/tex.tga", "first");
    PutFile(temp / "other.tga", "other");
    const std::string shortPath = files.ShortPath(temp / "first folder/tex.tga");
    const std::string link = shortPath.substr(0, shortPath.rfind('/'));
    ASSERT_EQ(unlink(link.c_str()), 0);
    ASSERT_EQ(symlink(temp.Path().c_str(), link.c_str()), 0);

    EXPECT_EQ(files.ShortPath(temp / "first folder/tex.tga"), shortPath);
    EXPECT_EQ(GetFile(shortPath), "first");
}

TEST_F(PosixFileSystemTest, ShortPathTightensAnAliasFolderOthersCouldEnter) {
    ASSERT_EQ(mkdir(aliasFolder.c_str(), 0755), 0);
    ASSERT_EQ(chmod(aliasFolder.c_str(), 0755), 0);
    ASSERT_TRUE(files.CreateFolder(temp / "a folder"));
    PutFile(temp / "a folder/tex.tga", "x");
    ExpectShortFormOf(files.ShortPath(temp / "a folder/tex.tga"), temp / "a folder/tex.tga");
    struct stat status {};
    ASSERT_EQ(stat(aliasFolder.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(PosixFileSystemTest, AFileRewrittenThroughAnAliasedFolderChangesInPlace) {
    // A tool converting a file in place writes a new file beside it and renames it over.
    ASSERT_TRUE(files.CreateFolder(temp / "export folder"));
    const std::string path = temp / "export folder/loco.eng";
    PutFile(path, "8-bit text");
    const std::string shortPath = files.ShortPath(path);
    ASSERT_TRUE(ReplaceFile(shortPath, "unicode text"));
    EXPECT_EQ(GetFile(path), "unicode text");
}

}  // namespace
}  // namespace railwright::support::posix
