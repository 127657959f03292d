#include <gtest/gtest.h>

#include "support/Fakes.h"
#include "support/FontWiz.h"
#include "support/Warn.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::support {
namespace {

using ui::script::EventKind;
using ui::script::EventScript;
using ui::script::ScriptedUserInterface;
using ui::script::ScriptEvent;

constexpr const char* kApplication = "Polyforge";
constexpr const char* kEntry = "ExportToDocuments";

// Shows the notice once with the user's actions in the dialog; true when the dialog appeared.
bool ShowWith(testing::MemorySettingsStore& settings, std::vector<ScriptEvent> events) {
    testing::NoFileSystem files;
    testing::FakeProcesses processes;
    testing::FakeSystemInfo system;
    ScriptedUserInterface ui(EventScript{std::move(events), {}});
    Platform platform{files, processes, settings, system, ui};
    FontWiz fonts(system);
    ShowWarning(platform, fonts, kApplication, "Mind the gap.", kEntry);
    return ui.EventsLeft() == 0 && settings.values.count({kApplication, "Tips", kEntry}) == 1;
}

ScriptEvent Click(std::string control) {
    ScriptEvent event;
    event.kind = EventKind::Click;
    event.control = std::move(control);
    return event;
}

std::string Stored(testing::MemorySettingsStore& settings) {
    return settings.GetSetting(kApplication, "Tips", kEntry, "(none)");
}

TEST(ShowWarning, KeepsShowingTheNoticeWhileTheBoxStaysChecked) {
    testing::MemorySettingsStore settings;
    EXPECT_TRUE(ShowWith(settings, {Click("cmdOK")}));
    EXPECT_EQ(Stored(settings), "1");
    settings.values.clear();
    // Closed with the close box: the box's state is stored all the same.
    EXPECT_TRUE(ShowWith(settings, {}));
    EXPECT_EQ(Stored(settings), "1");
    EXPECT_TRUE(ShowWith(settings, {Click("cmdOK")}));
}

TEST(ShowWarning, StopsShowingTheNoticeOnceTheBoxIsCleared) {
    testing::MemorySettingsStore settings;
    EXPECT_TRUE(ShowWith(settings, {Click("chkContinueToReceiveWarning"), Click("cmdOK")}));
    EXPECT_EQ(Stored(settings), "0");
    // The dialog does not appear, so the click meant for it is never used.
    EXPECT_FALSE(ShowWith(settings, {Click("cmdOK")}));
}

TEST(ShowWarning, ShowsNothingForAStoredValueOtherThanOne) {
    for (const char* stored : {"0", "2", "yes"}) {
        testing::MemorySettingsStore settings;
        settings.values[{kApplication, "Tips", kEntry}] = stored;
        EXPECT_FALSE(ShowWith(settings, {Click("cmdOK")})) << stored;
    }
}

TEST(frmWarn, ShowsTheNoticeWithTheBoxCheckedInTheSystemFont) {
    testing::MemorySettingsStore settings;
    testing::FakeSystemInfo system;
    FontWiz fonts(system);
    frmWarn warning(settings, fonts);
    warning.sWarning = "Mind the gap.";
    warning.Load();
    EXPECT_EQ(warning.lblWarning.Caption(), "Mind the gap.");
    EXPECT_EQ(warning.chkContinueToReceiveWarning.Value(), 1);
    EXPECT_EQ(warning.chkContinueToReceiveWarning.Caption(), "Continue to receive this message");
    EXPECT_EQ(warning.cmdOK.GetFont(), (Font{"Segoe UI", 9}));
}

}  // namespace
}  // namespace railwright::support
