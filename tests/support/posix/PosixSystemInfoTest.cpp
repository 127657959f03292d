#include "support/posix/PosixSystemInfo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "support/posix/TempFolder.h"

namespace railwright::support::posix {
namespace {

using testing::PutFile;
using testing::TempFolder;

class PosixSystemInfoTest : public ::testing::Test {
protected:
    // The documents folder seen with these environment variables, HOME being the temp folder.
    std::string DocumentsWith(std::map<std::string, std::string> variables) {
        variables.emplace("HOME", temp.Path());
        PosixSystemInfo system([variables](const std::string& name) -> std::optional<std::string> {
            const auto found = variables.find(name);
            if (found == variables.end()) {
                return std::nullopt;
            }
            return found->second;
        });
        return system.DocumentsFolder();
    }

    void WriteUserDirs(const std::string& configFolder, const std::string& text) {
        std::filesystem::create_directories(configFolder);
        PutFile(configFolder + "/user-dirs.dirs", text);
    }

    TempFolder temp;
};

TEST_F(PosixSystemInfoTest, DocumentsFolderFallsBackToTheHomeFolder) {
    EXPECT_EQ(DocumentsWith({}), temp / "Documents");
    EXPECT_EQ(DocumentsWith({{"XDG_DOCUMENTS_DIR", ""}}), temp / "Documents");
}

TEST_F(PosixSystemInfoTest, DocumentsFolderFromTheEnvironmentComesFirst) {
    WriteUserDirs(temp / ".config", "XDG_DOCUMENTS_DIR=\"$HOME/Papers\"\n");
    EXPECT_EQ(DocumentsWith({{"XDG_DOCUMENTS_DIR", "/data/docs/"}}), "/data/docs");
}

TEST_F(PosixSystemInfoTest, DocumentsFolderIsReadFromTheUserDirectoriesFile) {
    const std::pair<std::string, std::string> cases[] = {
        {"# written by the desktop\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\n"
         "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n",
         temp / "Dokumente"},
        {"XDG_DOCUMENTS_DIR=\"/srv/My \\\"Docs\\\"/\"\n", "/srv/My \"Docs\""},
        {"XDG_DOCUMENTS_DIR=\"$HOME/First\"\n  XDG_DOCUMENTS_DIR=\"$HOME/Second\"",
         temp / "Second"},
        // Forms the file never takes are passed over.
        {"XDG_DOCUMENTS_DIR=relative/path\nXDG_DOCUMENTS_DIR=\"$HOMEWORK/x\"\n"
         "XDG_DOCUMENTS_DIR=\"unclosed\n",
         temp / "Documents"},
    };
    for (const auto& [text, expected] : cases) {
        WriteUserDirs(temp / ".config", text);
        EXPECT_EQ(DocumentsWith({}), expected) << text;
    }
}

TEST_F(PosixSystemInfoTest, TheUserDirectoriesFileFollowsTheConfigurationFolder) {
    WriteUserDirs(temp / "elsewhere", "XDG_DOCUMENTS_DIR=\"$HOME/Elsewhere\"\n");
    EXPECT_EQ(DocumentsWith({{"XDG_CONFIG_HOME", temp / "elsewhere"}}), temp / "Elsewhere");
}

}  // namespace
}  // namespace railwright::support::posix
