#include <gtest/gtest.h>

#include "support/FileNames.h"

namespace railwright::support {
namespace {

TEST(FileNameFault, RefusesNamesThatWouldLeaveTheirFolderOrOpenADevice) {
    struct Case {
        std::string name;
        std::string fault;
    };
    const Case cases[] = {
        {"Class 47", ""},
        {"depot.v2", ""},
        {"Console", ""},
        {"", "it is empty"},
        {"..", "it names a folder, not a file"},
        {".", "it names a folder, not a file"},
        {"../escape", "it contains the character \"/\""},
        {"a\\b", "it contains the character \"\\\""},
        {"C:name", "it contains the character \":\""},
        {"tab\there", "it contains a control character"},
        {"CON", "Windows reserves \"CON\" for a device"},
        {"nul.txt", "Windows reserves \"NUL\" for a device"},
        {"Lpt9", "Windows reserves \"LPT9\" for a device"},
        {"name.", "it ends in a dot or a space, which Windows drops"},
        {"name ", "it ends in a dot or a space, which Windows drops"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FileNameFault(c.name), c.fault) << c.name;
    }
}

}  // namespace
}  // namespace railwright::support
