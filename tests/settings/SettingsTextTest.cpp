// The settings text: where the fields are cut, and that a joined text reads back as its fields.
#include "settings/SettingsText.h"

#include <gtest/gtest.h>

namespace railwright::settings {
namespace {

TEST(SplitSettingsText, SplitsAtOneTwoAndThreeBars) {
    struct Case {
        std::string text;
        SettingsFields expected;
    };
    const Case cases[] = {
        {"", {"", "", "", ""}},
        {"Whole title", {"Whole title", "", "", ""}},
        {"a|b||c|||d", {"a", "b", "c", "d"}},
        {"Title|name||description|||procedures", {"Title", "name", "description", "procedures"}},
        {"|||", {"", "", "", ""}},
        {"a|||d", {"a", "", "", "d"}},
        {"a|b", {"a", "", "", ""}},
        // A bar inside a field moves every later separator: the fields split where the first
        // run of each length stands.
        {"a|b|x||c|||d", {"a", "b|x", "c", "d"}},
        {"a||b|||c", {"a", "", "b", "c"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(SplitSettingsText(c.text), c.expected) << c.text;
    }
}

TEST(JoinSettingsText, ReadsBackAsItsFields) {
    const SettingsFields fields{"Title", "name", "two\r\nlines", "Route"};
    EXPECT_EQ(JoinSettingsText(fields), "Title|name||two\r\nlines|||Route");
    EXPECT_EQ(SplitSettingsText(JoinSettingsText(fields)), fields);
    EXPECT_FALSE(HasSeparators("Title only"));
}

}  // namespace
}  // namespace railwright::settings
