#include "support/posix/FileSettingsStore.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "support/posix/TempFolder.h"

namespace railwright::support::posix {
namespace {

using testing::GetFile;
using testing::PutFile;
using testing::TempFolder;

class PosixSettingsTest : public ::testing::Test {
protected:
    TempFolder temp;
    std::string path = temp / "config/railwright/settings.ini";
    FileSettingsStore store{path};
};

TEST_F(PosixSettingsTest, AMissingFileGivesTheDefault) {
    EXPECT_EQ(store.GetSetting("Polyforge", "Railwright", "Left", "-1"), "-1");
}

TEST_F(PosixSettingsTest, SavedValuesAreWrittenAsSectionsPerApplication) {
    store.SaveSetting("Polyforge", "Railwright", "Left", "120");
    store.SaveSetting("Polyforge", "Railwright", "Top", "80");
    store.SaveSetting("Polyforge", "Tips", "Left", "0");
    store.SaveSetting("Other", "Railwright", "Left", "7");
    store.SaveSetting("Polyforge", "Railwright", "Left", "130");

    EXPECT_EQ(GetFile(path),
              "[Polyforge\\Railwright]\nLeft=130\nTop=80\n\n"
              "[Polyforge\\Tips]\nLeft=0\n\n"
              "[Other\\Railwright]\nLeft=7\n");
    EXPECT_EQ(store.GetSetting("Polyforge", "Railwright", "Left", ""), "130");
    EXPECT_EQ(store.GetSetting("Polyforge", "Tips", "Left", ""), "0");
    EXPECT_EQ(store.GetSetting("Other", "Railwright", "Left", ""), "7");
    EXPECT_EQ(store.GetSetting("Other", "Railwright", "Top", "none"), "none");
    // As in the registry, case does not matter.
    EXPECT_EQ(store.GetSetting("POLYFORGE", "railwright", "TOP", ""), "80");
}

TEST_F(PosixSettingsTest, AnyTextRoundTrips) {
    const std::map<std::string, std::string> entries = {
        {"key=with=equals", "value=with=equals"},
        {"line\nbreak", "two\nlines\r\nand CRLF"},
        {"[looks like a section]", "[App\\Section]"},
        {";comment-like", "#also"},
        {" padded key ", "  padded value  "},
        {"percent %41", "100% %zz"},
        {"empty value", ""},
        {"", "empty key"},
        {"ünïcödé", std::string("nul\0inside", 10)},
    };
    for (const auto& [key, value] : entries) {
        store.SaveSetting("Polyforge", "Tips", key, value);
    }
    // Names holding the separator are kept apart.
    store.SaveSetting("A\\B", "C", "k", "first");
    store.SaveSetting("A", "B\\C", "k", "second");

    FileSettingsStore again(path);
    for (const auto& [key, value] : entries) {
        EXPECT_EQ(again.GetSetting("Polyforge", "Tips", key, "missing"), value) << key;
    }
    EXPECT_EQ(again.GetSetting("A\\B", "C", "k", ""), "first");
    EXPECT_EQ(again.GetSetting("A", "B\\C", "k", ""), "second");
}

TEST_F(PosixSettingsTest, ADamagedFileKeepsWhatCanBeRead) {
    ASSERT_TRUE(std::filesystem::create_directories(temp / "config/railwright"));
    PutFile(path, std::string("\xEF\xBB\xBF"
                              "Orphan=1\n"
                              "\x01\xFF garbage without equals\n"
                              "[Polyforge\\Railwright]\r\n"
                              "Left=120\r\n"
                              "Bad%zz=1\n"
                              "Top=%4\n"
                              "[unterminated\n"
                              "Lost=1\n"
                              "[NoSeparator]\n"
                              "Lost=2\n"
                              "[Polyforge\\Railwright]\n"
                              "Top=80\n"
                              "[Polyforge\\Tips"));
    EXPECT_EQ(store.GetSetting("Polyforge", "Railwright", "Left", ""), "120");
    EXPECT_EQ(store.GetSetting("Polyforge", "Railwright", "Top", ""), "80");
    EXPECT_EQ(store.GetSetting("Polyforge", "Railwright", "Lost", "none"), "none");
    EXPECT_EQ(store.GetSetting("Polyforge", "Railwright", "Orphan", "none"), "none");

    store.SaveSetting("Polyforge", "Tips", "Notice", "0");
    EXPECT_EQ(GetFile(path),
              "[Polyforge\\Railwright]\nLeft=120\nTop=80\n\n[Polyforge\\Tips]\nNotice=0\n");
}

TEST_F(PosixSettingsTest, AnUnwritableLocationIsIgnored) {
    PutFile(temp / "blocker", "a file where the folder should be");
    FileSettingsStore blocked(temp / "blocker/settings.ini");
    blocked.SaveSetting("Polyforge", "Railwright", "Left", "1");
    EXPECT_EQ(blocked.GetSetting("Polyforge", "Railwright", "Left", "default"), "default");
}

TEST(PosixSettingsPath, FollowsTheConfigurationFolderConvention) {
    const auto environment = [](std::map<std::string, std::string> values) -> EnvironmentLookup {
        return [values](const std::string& name) -> std::optional<std::string> {
            const auto found = values.find(name);
            if (found == values.end()) {
                return std::nullopt;
            }
            return found->second;
        };
    };
    EXPECT_EQ(DefaultSettingsPath(environment({{"XDG_CONFIG_HOME", "/cfg"}, {"HOME", "/home/u"}})),
              "/cfg/railwright/settings.ini");
    EXPECT_EQ(DefaultSettingsPath(environment({{"HOME", "/home/u"}})),
              "/home/u/.config/railwright/settings.ini");
    EXPECT_EQ(DefaultSettingsPath(environment({{"XDG_CONFIG_HOME", "relative"}, {"HOME", "/h"}})),
              "/h/.config/railwright/settings.ini");
}

}  // namespace
}  // namespace railwright::support::posix
