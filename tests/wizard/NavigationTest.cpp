// Steps, navigation, the page set-up and the window position, driven as a user drives them.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "support/posix/TempFolder.h"
#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

const std::string kNoSimulator = Exclamation("At least one simulator is required.");

// The pages shown, by step index.
std::vector<int> ShownPages(WizardScenario& scenario) {
    std::vector<int> shown;
    for (int step = 0; step < wizard::kStepCount; ++step) {
        if (scenario.Control("fraStep", step).Visible()) {
            shown.push_back(step);
        }
    }
    return shown;
}

// The names of the controls that a user can reach among these.
std::set<std::string> Reachable(WizardScenario& scenario,
                                std::initializer_list<const char*> names) {
    std::set<std::string> reachable;
    for (const char* name : names) {
        if (scenario.Control(name).Reachable()) {
            reachable.insert(name);
        }
    }
    return reachable;
}

TEST(WizardSteps, WithoutASimulatorNoWayLeadsOffTheStartPage) {
    WizardScenario scenario;
    scenario.RunEvents({Click("cmdNext"), Click("optSteps", 3), Click("optSteps", 6),
                        Click("optSteps", 0), Click("cmdNext")});
    EXPECT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
    EXPECT_EQ(scenario.Messages(),
              std::vector<std::string>(4, kNoSimulator));  // step 0 itself says nothing
    EXPECT_EQ(scenario.Wizard().CurrentStep(), 0);
    EXPECT_EQ(ShownPages(scenario), std::vector<int>{0});
    for (int step = 0; step < wizard::kStepCount; ++step) {
        EXPECT_EQ(scenario.Control("optSteps", step).Value(), step == 0 ? 1 : 0) << step;
    }
}

TEST(WizardSteps, NextBackAndStepButtonsShowOnePageAtATime) {
    WizardScenario scenario;
    scenario.RunEvents({Click("chkTrainz"), Click("cmdNext"), Click("cmdNext"), Click("cmdNext"),
                        Click("cmdPrevious"), Click("optSteps", 5)});
    EXPECT_TRUE(scenario.Messages().empty());
    EXPECT_EQ(scenario.Wizard().CurrentStep(), 5);
    EXPECT_EQ(ShownPages(scenario), std::vector<int>{5});
    EXPECT_EQ(scenario.Control("optSteps", 5).Value(), 1);
    EXPECT_EQ(scenario.Control("optSteps", 2).Value(), 0);
}

TEST(WizardSteps, BackIsDisabledOnStartAndNextOnFinish) {
    WizardScenario scenario;
    scenario.RunEvents({Click("chkTrainz")});
    EXPECT_FALSE(scenario.Control("cmdPrevious").Enabled());
    EXPECT_TRUE(scenario.Control("cmdNext").Enabled());

    WizardScenario toTheEnd;
    std::vector<std::string> events{Click("chkTrainz")};
    for (int step = 0; step < wizard::kStepCount; ++step) {
        events.push_back(Click("cmdNext"));  // the last click finds the button disabled
    }
    toTheEnd.RunEvents(events);
    EXPECT_EQ(toTheEnd.Wizard().CurrentStep(), wizard::kStepFinish);
    EXPECT_FALSE(toTheEnd.Control("cmdNext").Enabled());
    EXPECT_TRUE(toTheEnd.Control("cmdPrevious").Enabled());
    ASSERT_EQ(toTheEnd.Faults().size(), 1u);
    EXPECT_EQ(toTheEnd.Faults()[0], "event 8 (click \"cmdNext\"): \"cmdNext\" is disabled");
}

TEST(WizardSteps, ControlsOfOtherPagesCannotBeUsed) {
    WizardScenario scenario;
    scenario.RunEvents({Click("chkTrainz"), Type("txtProjectTitle", "Too early")});
    ASSERT_EQ(scenario.Faults().size(), 1u);
    EXPECT_EQ(scenario.Faults()[0],
              "event 2 (type \"txtProjectTitle\" \"Too early\"): the frame \"fraStep\" 2 around "
              "\"txtProjectTitle\" is hidden");
    EXPECT_EQ(scenario.Control("txtProjectTitle").Text(), "");
}

TEST(WizardSteps, CancelClosesTheWizardUnfinished) {
    WizardScenario scenario;
    scenario.RunEvents({Click("chkTrainz"), Click("cmdCancel"), Click("cmdNext")});
    EXPECT_FALSE(scenario.Wizard().IsLoaded());
    EXPECT_FALSE(scenario.Wizard().FinishClicked());
    EXPECT_EQ(scenario.Ui().EventsLeft(), 1u);
    EXPECT_EQ(scenario.Wizard().SceneGraph(), nullptr);
}

TEST(WizardSteps, TheViewStopsPickingOnEveryStepButPartIdentification) {
    WizardScenario scenario;
    scenario.RunEvents({Click("chkTrainz"), Click("optSteps", 4)});
    const int32_t beforeIdentification = scenario.Scene().viewer->EndPickingCount();
    EXPECT_GE(beforeIdentification, 1);  // the load's page set-up on "Start"

    WizardScenario further;
    further.RunEvents({Click("chkTrainz"), Click("optSteps", 4), Click("optSteps", 5)});
    EXPECT_EQ(further.Scene().viewer->EndPickingCount(), beforeIdentification + 1);
}

TEST(WizardWindow, OpensAtAQuarterOfTheScreenAndThenWhereItWasLeft) {
    WizardScenario first;
    first.RunEvents({});
    EXPECT_EQ(first.Wizard().Left(), 1024 / 4);
    EXPECT_EQ(first.Wizard().Top(), 768 / 4);
    EXPECT_EQ(first.UserSettings().GetSetting("Polyforge", "Railwright", "Left", ""), "256");
    EXPECT_EQ(first.UserSettings().GetSetting("Polyforge", "Railwright", "Top", ""), "192");

    WizardScenario later;
    later.UserSettings().SaveSetting("Polyforge", "Railwright", "Left", "300");
    later.UserSettings().SaveSetting("Polyforge", "Railwright", "Top", "120.6");
    later.RunEvents({});
    EXPECT_EQ(later.Wizard().Left(), 300);
    EXPECT_EQ(later.Wizard().Top(), 120);
}

// What the "Attributes" and "Export Preferences" pages show for one sub-type (MSTS not chosen).
struct SubTypePage {
    const char* type;
    const char* subType;
    std::set<std::string> attributeFrames;
    const char* createFileCaption;
    const char* viewPointCaption;  // null: the view point is not shown
    bool intakePoint;
    bool steamWheelRows;
    std::set<std::string> exportOptions;
};

const char* const kEng = "Create ENG File (de-select to avoid writing over manual changes)";
const char* const kWag = "Create WAG File (de-select to avoid writing over manual changes)";
const char* const kRef = "Create Example Ref file";

void PrintTo(const SubTypePage& page, std::ostream* out) {
    *out << page.subType;
}

class SubTypePages : public ::testing::TestWithParam<SubTypePage> {};

TEST_P(SubTypePages, ShowExactlyTheFramesOfTheSubType) {
    const SubTypePage& page = GetParam();
    // A steam engine first, so that its frames must be hidden again.
    WizardScenario installed;
    installed.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    installed.RunEvents(
        {Click("chkRailWorks"), Click("cmdNext"), Select("cboProjectType", "Rail Vehicle"),
         Select("cboProjectSubType", "Steam Engine"), Click("cmdNext"), Click("cmdNext"),
         Click("cmdPrevious"), Click("cmdPrevious"), Select("cboProjectType", page.type),
         Select("cboProjectSubType", page.subType), Click("optSteps", 3)});
    ASSERT_TRUE(installed.Faults().empty()) << installed.Faults().front();
    EXPECT_TRUE(installed.Messages().empty());

    const std::set<std::string> frames =
        Reachable(installed, {"fraGeneralNonEngineAttibutes", "fraGeneralEngineWagonAttibutes",
                              "fraEngineAttributes", "fraSteamEngineAttibutes",
                              "fraDieselEngineAttributes", "fraElectricEngineAttibutes",
                              "fraMSTSRoute", "lblGeneralAttributesNoneAvailable"});
    EXPECT_EQ(frames, page.attributeFrames);
    EXPECT_EQ(installed.Control("chkCreatexFile").Caption(), page.createFileCaption);
    if (page.viewPointCaption != nullptr) {
        EXPECT_TRUE(installed.Control("chkViewPoint").Reachable());
        EXPECT_EQ(installed.Control("chkViewPoint").Caption(), page.viewPointCaption);
    } else {
        EXPECT_FALSE(installed.Control("chkViewPoint").Reachable());
    }
    EXPECT_EQ(installed.Control("chkIntakePoint").Reachable(), page.intakePoint);
    EXPECT_EQ(installed.Control("txtWheels", 2).Reachable(), page.steamWheelRows);
    EXPECT_EQ(installed.Control("chkBogie", 2).Reachable(), page.steamWheelRows);
    if (std::string(page.type) == "Rail Vehicle") {
        EXPECT_EQ(installed.Control("lblWheels", 0).Caption(),
                  page.steamWheelRows ? "Wheels forward of the drive wheels" : "Front wheels");
        EXPECT_EQ(installed.Control("lblWheels", 1).Caption(),
                  page.steamWheelRows ? "Drive wheels" : "Rear wheels");
    }
    // The title page shows description and procedures for engines only.
    const bool engine = page.createFileCaption == kEng;
    EXPECT_EQ(installed.Control("txtProjectDescription").Visible(), engine);
    EXPECT_EQ(installed.Control("txtOperatingProcedures").Visible(), engine);

    WizardScenario preferences;
    preferences.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    preferences.RunEvents({Click("chkRailWorks"), Click("cmdNext"),
                           Select("cboProjectType", page.type),
                           Select("cboProjectSubType", page.subType), Click("optSteps", 5)});
    // Sound and cab view sit in the MSTS frame, so their own state is what tells.
    std::set<std::string> options;
    for (const char* name : {"chkAnimation", "chkSound", "chkCabView", "fraTextures",
                             "chkExportToDocumentsFolder", "fraMSTSExportPreferences"}) {
        if (preferences.Control(name).Visible()) {
            options.insert(name);
        }
    }
    EXPECT_EQ(options, page.exportOptions);
}

// The frames and export options the sub-types share.
const std::set<std::string> kNoAttributes{"fraGeneralNonEngineAttibutes",
                                          "lblGeneralAttributesNoneAvailable"};
const std::set<std::string> kWagonFrames{"fraGeneralEngineWagonAttibutes"};
const std::set<std::string> kTextureOptions{"fraTextures", "chkExportToDocumentsFolder"};
const std::set<std::string> kWagonOptions{"chkSound", "fraTextures", "chkExportToDocumentsFolder"};
const std::set<std::string> kEngineOptions{"chkSound", "chkCabView", "fraTextures",
                                           "chkExportToDocumentsFolder"};
const std::set<std::string> kSteamOptions{"chkAnimation", "chkSound", "chkCabView", "fraTextures",
                                          "chkExportToDocumentsFolder"};

std::set<std::string> EngineFrames(const char* own) {
    return {"fraGeneralEngineWagonAttibutes", "fraEngineAttributes", own};
}

const char* const kVehicle = "Rail Vehicle";
const char* const kHeadOut = "Head Out View";

const SubTypePage kSubTypePages[] = {
    {"Scenery", "Building", kNoAttributes, kRef, nullptr, false, false, kTextureOptions},
    {"Rail Network", "Signal", kNoAttributes, kRef, nullptr, false, false, kTextureOptions},
    {kVehicle, "Tank Engine", EngineFrames("fraSteamEngineAttibutes"), kEng, kHeadOut, true, true,
     kSteamOptions},
    {kVehicle, "Diesel Engine", EngineFrames("fraDieselEngineAttributes"), kEng, kHeadOut, true,
     false, kEngineOptions},
    {kVehicle, "Electric Engine", EngineFrames("fraElectricEngineAttibutes"), kEng, kHeadOut, true,
     false, kEngineOptions},
    {kVehicle, "Passenger Car", kWagonFrames, kWag, "Passenger View", false, false, kWagonOptions},
    {kVehicle, "Tender", kWagonFrames, kWag, nullptr, false, false, kWagonOptions},
};

INSTANTIATE_TEST_SUITE_P(WizardSteps, SubTypePages, ::testing::ValuesIn(kSubTypePages));

TEST(WizardSteps, ExportPreferencesStackWithoutGaps) {
    TempFolder folder;
    std::filesystem::create_directories(folder / "MSTS/ROUTES");
    WizardScenario scenario;
    scenario.Scene().application->SetSimulators({folder / "MSTS/train.exe", ""});
    scenario.RunEvents({Click("chkMSTS"), Click("optSteps", 5)});
    ASSERT_TRUE(scenario.Messages().empty()) << scenario.Messages().front();
    support::Control& textures = scenario.Control("fraTextures");
    support::Control& documents = scenario.Control("chkExportToDocumentsFolder");
    support::Control& msts = scenario.Control("fraMSTSExportPreferences");
    ASSERT_TRUE(textures.Visible() && documents.Visible() && msts.Visible());
    EXPECT_EQ(documents.Top(), textures.Top() + textures.Height());
    EXPECT_EQ(msts.Top(), documents.Top() + documents.Height());
    EXPECT_EQ(msts.Left(), textures.Left());
}

}  // namespace
}  // namespace railwright::testing
