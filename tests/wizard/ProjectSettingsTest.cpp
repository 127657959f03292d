// The settings kept in the model: what a never-stored model opens as, the upgrade of old
// projects, the save index by index and the round trip through save and load.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <set>

#include "support/posix/TempFolder.h"
#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

using settings::kLongCount;
using settings::kSingleCount;

const std::string kCheckBogies = Exclamation(
    "New options have been added for identifying bogies. Please check that the bogie arrangement "
    "is correct.");

std::string Defaulted(const char* subType) {
    return Exclamation("Please check your project sub-type. It has been defaulted to \"" +
                       std::string(subType) + "\"");
}

// The names of the check boxes that are checked.
std::set<std::string> CheckedBoxes(wizard::frmWizard& wizard) {
    std::set<std::string> checked;
    for (support::Control* control : wizard.Controls()) {
        if (control->Kind() == support::ControlKind::CheckBox && control->Value() != 0) {
            checked.insert(control->Index() < 0
                               ? control->Name()
                               : control->Name() + "(" + std::to_string(control->Index()) + ")");
        }
    }
    return checked;
}

TEST(ProjectSettings, ANeverStoredModelOpensAsSceneryWithTheDefaultBoxes) {
    WizardScenario scenario;
    scenario.RunEvents({});
    EXPECT_TRUE(scenario.Messages().empty());
    EXPECT_EQ(scenario.Control("cboProjectType").Text(), "Scenery");
    EXPECT_EQ(scenario.Control("cboProjectSubType").Text(), "Building");
    EXPECT_EQ(
        CheckedBoxes(scenario.Wizard()),
        (std::set<std::string>{"chkExportToDocumentsFolder", "chkCreateShape", "chkCreateShapeData",
                               "chkCreatexFile", "chkConvertTextures", "chkSound", "chkCabView",
                               "chkAnimation", "chkDefaultGroupCustomFields"}));
    const std::string& start = scenario.Control("lblStart").Caption();
    const std::string tutorial =
        "\r\rMicrosoft Train Simulator requires that shape be positioned in a specific manner. "
        "Before using this wizard for the first time please complete the Microsoft Train "
        "Simulator tutorials.";
    ASSERT_GT(start.size(), tutorial.size());
    EXPECT_EQ(start.substr(start.size() - tutorial.size()), tutorial);
    for (const char* box : {"txtMass", "txtMaximumVelocity"}) {
        EXPECT_EQ(scenario.Control(box).Text(), "Default") << box;
    }
    for (int group = 0; group < wizard::kWheelGroupCount; ++group) {
        EXPECT_EQ(scenario.Control("txtWheelRadius", group).Text(), "Default");
        EXPECT_EQ(scenario.Control("txtWheels", group).Text(), "0");
    }
    EXPECT_EQ(scenario.Control("cboCompression").Text(), "Uncompressed");
    EXPECT_TRUE(scenario.Control("cboCompression").Enabled());
    EXPECT_EQ(scenario.Control("cboCouplerType").Text(), "Bar");
    EXPECT_EQ(scenario.Control("optDistanceLevels", 0).Value(), 1);
}

TEST(ProjectSettings, AStoredModelHasNoTutorialParagraph) {
    WizardScenario scenario;
    scenario.Settings() = CurrentSettings();
    scenario.Settings().text = "Title|name||description|||";
    scenario.RunEvents({});
    EXPECT_EQ(scenario.Control("lblStart").Caption().find('\r'), std::string::npos);
}

// An old project: its old kind, wheel counts and the single wheel radius of the old layout; what
// it opens as, whether it says the sub-type was defaulted and asks for the bogies to be checked.
struct OldProject {
    int32_t kind;
    std::array<int32_t, 3> wheels;
    const char* type;
    const char* subType;
    bool defaulted;
    bool checkBogies;
    std::array<int32_t, 3> bogies;
    std::array<const char*, 3> radii;
};

void PrintTo(const OldProject& project, std::ostream* out) {
    *out << "kind " << project.kind;
}

class Upgrade : public ::testing::TestWithParam<OldProject> {};

TEST_P(Upgrade, MapsTheOldKindAndSaysSoOnce) {
    const OldProject& old = GetParam();
    WizardScenario scenario;
    StoredSettings& settings = scenario.Settings();
    settings = {"Old|old||an old project|||", std::vector<float>(kSingleCount, 0.0f),
                std::vector<int32_t>(kLongCount, 0)};
    settings.longs[settings::kLongProjectType] = old.kind;
    for (size_t group = 0; group < 3; ++group) {
        settings.longs[settings::kLongWheels + group] = old.wheels[group];
    }
    settings.singles[settings::kSingleOldWheelRadius] = 0.6f;
    settings.longs[settings::kLongConvertTextures] = 2;
    settings.longs[settings::kLongCompression] = 3;  // the old fourth entry
    scenario.RunEvents({});

    std::vector<std::string> messages;
    if (old.defaulted) {
        messages.push_back(Defaulted(old.subType));
    }
    if (old.checkBogies) {
        messages.push_back(kCheckBogies);
    }
    EXPECT_EQ(scenario.Messages(), messages);
    EXPECT_EQ(scenario.Control("cboProjectType").Text(), old.type);
    EXPECT_EQ(scenario.Control("cboProjectSubType").Text(), old.subType);
    for (int group = 0; group < 3; ++group) {
        EXPECT_EQ(scenario.Control("chkBogie", group).Value(), old.bogies[group]) << group;
        EXPECT_EQ(scenario.Control("txtWheelRadius", group).Text(), old.radii[group]) << group;
    }
    EXPECT_EQ(scenario.Control("cboCompression").Text(), "Lossy Compression");
    EXPECT_EQ(scenario.Control("chkExportToDocumentsFolder").Value(), 1);
    // The upgrade is made in place: the plug-in would store it on Finish.
    StoredSettings after = settings;
    scenario.Wizard().GetOptions(after.text, after.singles, after.longs);
    EXPECT_EQ(after.longs[settings::kLongSettingsVersion], 0);
    EXPECT_EQ(after.longs[settings::kLongExportToDocumentsFolder], 1);
    EXPECT_EQ(after.longs[settings::kLongCompression], 2);
}

constexpr const char* kDef = "Default";
constexpr const char* kVehicle = "Rail Vehicle";

const OldProject kOldProjects[] = {
    {0, {4, 4, 4}, "Scenery", "Building", false, false, {0, 0, 0}, {kDef, kDef, kDef}},
    {1, {4, 4, 4}, "Rail Network", "Tunnel", true, false, {0, 0, 0}, {kDef, kDef, kDef}},
    {2, {4, 6, 2}, kVehicle, "Steam Engine", true, true, {1, 0, 0}, {kDef, "0.6", kDef}},
    {2, {2, 4, 8}, kVehicle, "Steam Engine", true, true, {0, 0, 1}, {kDef, "0.6", kDef}},
    {3, {4, 2, 8}, kVehicle, "Diesel Engine", false, true, {1, 0, 0}, {"0.6", "0.6", kDef}},
    {4, {6, 4, 0}, kVehicle, "Electric Engine", false, true, {1, 1, 0}, {"0.6", "0.6", kDef}},
    {5, {4, 4, 0}, kVehicle, "Freight Car", true, true, {1, 1, 0}, {"0.6", "0.6", kDef}},
    {6, {2, 2, 0}, kVehicle, "Passenger Car", false, true, {0, 0, 0}, {"0.6", "0.6", kDef}},
    {-1, {0, 0, 0}, kVehicle, "Passenger Car", false, true, {0, 0, 0}, {"0.6", "0.6", kDef}},
};

INSTANTIATE_TEST_SUITE_P(ProjectSettings, Upgrade, ::testing::ValuesIn(kOldProjects));

TEST(ProjectSettings, ACurrentProjectIsNeverUpgraded) {
    WizardScenario scenario;
    scenario.Settings() = CurrentSettings({{settings::kLongProjectType, 1},
                                           {settings::kLongProjectSubType, 2},
                                           {settings::kLongWheels, 4},
                                           {settings::kLongCompression, 2}});
    scenario.Settings().singles[settings::kSingleOldWheelRadius] = 0.6f;
    scenario.RunEvents({});
    EXPECT_TRUE(scenario.Messages().empty());
    EXPECT_EQ(scenario.Control("cboProjectSubType").Text(), "Freight Car");
    EXPECT_EQ(scenario.Control("chkBogie", 0).Value(), 0);
    EXPECT_EQ(scenario.Control("txtWheelRadius", 0).Text(), "Default");
    EXPECT_EQ(scenario.Control("chkExportToDocumentsFolder").Value(), 0);
    EXPECT_EQ(scenario.Control("cboCompression").Text(), "Lossy Compression");
}

// A steam engine for every simulator but Rail3D, with every box of its pages set. The notice
// that unchecking the documents folder shows is closed with "OK".
std::vector<std::string> SteamEngineEvents() {
    return {Click("chkMSTS"),
            Click("chkRailSimulator"),
            Click("chkRailWorks"),
            Click("chkTrainz"),
            Click("chkBVE"),
            Click("cmdNext"),
            Select("cboProjectType", "Rail Vehicle"),
            Select("cboProjectSubType", "Steam Engine"),
            Click("cmdNext"),
            Type("txtProjectTitle", "Flying Scot"),
            Type("txtProjectName", "A3"),
            Type("txtProjectDescription", "Pacific"),
            Type("txtOperatingProcedures", "Drive carefully"),
            Click("cmdNext"),
            Type("txtMass", "96.25"),
            Type("txtMaximumVelocity", "100"),
            Select("cboCouplerType", "Chain"),
            Click("chkViewPoint"),
            Click("chkIntakePoint"),
            Type("txtWheels", 0, "4"),
            Type("txtWheelRadius", 0, "0.5"),
            Click("chkBogie", 0),
            Type("txtWheels", 1, "6"),
            Type("txtWheelRadius", 1, "1.016"),
            Type("txtWheels", 2, "2"),
            Click("chkWiperLeft"),
            Click("chkMirrorRight"),
            Type("txtRods", "2"),
            Type("txtStacks", "1"),
            Type("txtCylinders", "2"),
            Type("txtWhistles", "1"),
            Type("txtSafetyValves", "3"),
            Type("txtDrainPipes", "4"),
            Click("chkTenderRequired"),
            Click("optSteps", 5),
            Click("chkDefaultGroupCustomFields"),
            Select("cboCompression", "Lossless Compression"),
            Click("chkExportToDocumentsFolder"),
            Click("cmdOK"),
            Click("optDistanceLevels", 2),
            Click("chkAnimation"),
            Click("chkCreateShape"),
            Click("chkRetainSubObjects"),
            Click("chkCreatexFile"),
            Click("chkCabView")};
}

class SettingsRoundTrip : public ::testing::Test {
  protected:
    // A model whose simulators are all installed.
    void Install(WizardScenario& scenario) {
        std::filesystem::create_directories(folder_ / "MSTS/ROUTES/EUROPE1");
        std::filesystem::create_directories(folder_ / "MSTS/ROUTES/JAPAN1");
        scenario.Scene().application->SetSimulators({folder_ / "MSTS/train.exe", folder_.Path()});
    }

    // Opens a second wizard on what the first saved; every control the settings keep must come
    // back as it was.
    void ExpectRestored(WizardScenario& first, const StoredSettings& saved) {
        WizardScenario second(first.Scene());
        Install(second);
        second.Settings() = saved;
        second.RunEvents({});
        EXPECT_TRUE(second.Messages().empty()) << second.Messages().front();
        for (support::Control* control : first.Wizard().Controls()) {
            const support::ControlKind kind = control->Kind();
            if (control->Name() == "optSteps" ||
                (kind != support::ControlKind::TextBox && kind != support::ControlKind::CheckBox &&
                 kind != support::ControlKind::OptionButton &&
                 kind != support::ControlKind::ComboBox)) {
                continue;
            }
            const support::Control& restored = second.Control(control->Name(), control->Index());
            const std::string name = control->Name() + " " + std::to_string(control->Index());
            EXPECT_EQ(restored.Text(), control->Text()) << name;
            EXPECT_EQ(restored.Value(), control->Value()) << name;
            EXPECT_EQ(restored.ListIndex(), control->ListIndex()) << name;
            EXPECT_EQ(restored.List(), control->List()) << name;
        }
    }

    TempFolder folder_;
};

TEST_F(SettingsRoundTrip, AVehicleComesBackAsItWasSaved) {
    WizardScenario first;
    Install(first);
    first.RunEvents(SteamEngineEvents());
    ASSERT_TRUE(first.Faults().empty()) << first.Faults().front();
    ASSERT_TRUE(first.Messages().empty()) << first.Messages().front();
    const StoredSettings saved = first.Save();
    ExpectRestored(first, saved);
    // Shown as typed, or in the box's own form.
    EXPECT_EQ(first.Control("txtMaximumVelocity").Text(), "100.0");
    EXPECT_EQ(first.Control("txtWheelRadius", 2).Text(), "Default");
}

TEST_F(SettingsRoundTrip, SceneryKeepsItsRoute) {
    WizardScenario first;
    Install(first);
    first.RunEvents({Click("chkMSTS"), Click("optSteps", 2), Type("txtProjectTitle", "Station"),
                     Type("txtProjectName", "stn"), Click("cmdNext"), Select("cboRoute", "JAPAN1"),
                     Click("optSteps", 5), Click("optDistanceLevels", 3)});
    ASSERT_TRUE(first.Faults().empty()) << first.Faults().front();
    // Finish stores an empty description as one space, so that the separators stay apart.
    first.Control("txtProjectDescription").SetText(" ");
    const StoredSettings saved = first.Save();
    EXPECT_EQ(saved.text, "Station|stn|| |||JAPAN1");
    ExpectRestored(first, saved);
}

TEST_F(SettingsRoundTrip, TheSaveFillsEverySlotOfTheLayout) {
    WizardScenario scenario;
    Install(scenario);
    // Never stored, with values in the slots that the save leaves alone.
    scenario.Settings() = {"", std::vector<float>(kSingleCount, 0.0f),
                           std::vector<int32_t>(kLongCount, 0)};
    scenario.Settings().longs[9] = 77;
    scenario.Settings().longs[42] = 88;
    scenario.Settings().singles[1] = 0.75f;
    scenario.RunEvents(SteamEngineEvents());
    ASSERT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
    const StoredSettings saved = scenario.Save();

    EXPECT_EQ(saved.text, "Flying Scot|A3||Pacific|||Drive carefully");
    EXPECT_EQ(saved.singles, (std::vector<float>{96.25f, 0.75f, 100.0f, 0.5f, 1.016f, 0.0f}));
    const std::vector<int32_t> expected{
        1,    // 0 type: Rail Vehicle
        1,    // 1 create shape, unchecked + 1
        2,    // 2 create shape data, checked + 1
        1,    // 3 create x file, unchecked + 1
        2,    // 4 convert textures, checked + 1
        4,    // 5 wheels forward of the drive wheels
        6,    // 6 drive wheels
        2,    // 7 wheels behind
        2,    // 8 rods
        77,   // 9 not used
        2,    // 10 coupler: Chain
        1,    // 11 stacks
        2,    // 12 cylinders
        0,    // 13 exhaust sources
        4,    // 14 drain pipes
        1,    // 15 whistles
        3,    // 16 safety valves
        0,    // 17 left mirror
        1,    // 18 right mirror
        1,    // 19 left wiper
        0,    // 20 right wiper
        0,    // 21 pantographs
        0,    // 22 arms per pantograph
        1,    // 23 compression: Lossless Compression
        1,    // 24 tender required
        2,    // 25 sounds, checked + 1
        1,    // 26 cab view, unchecked + 1
        1,    // 27 head-out view point
        1,    // 28 intake points
        1,    // 29 animation, unchecked + 1
        2,    // 30 distance levels: Standard Distance Levels
        1,    // 31 retain sub-objects
        4,    // 32 sub-type: Steam Engine
        818,  // 33 settings version
        1,    // 34 front bogie
        0,    // 35 drive wheels bogie
        0,    // 36 rear bogie
        1,    // 37 MSTS
        1,    // 38 Rail Simulator
        1,    // 39 Trainz
        0,    // 40 Rail3D
        1,    // 41 BVE
        88,   // 42 not used
        0,    // 43 documents folder
        1,    // 44 RailWorks
        1,    // 45 default custom field values, unchecked + 1
    };
    ASSERT_EQ(saved.longs.size(), expected.size());
    for (size_t index = 0; index < expected.size(); ++index) {
        EXPECT_EQ(saved.longs[index], expected[index]) << "long " << index;
    }
}

TEST(ProjectSettings, ShortArraysEndTheLoadAndTheSaveWithAReportedError) {
    const std::string subscript =
        "Railwright: critical: An Unrecoverable error has occured. If you continue to receive "
        "this message please let us know on the problem reports forum at "
        "https://forum.railwright.org/problem-reports (#9)";
    WizardScenario scenario;
    scenario.RunEvents({});
    ASSERT_TRUE(scenario.Messages().empty());

    // The closed wizard let go of the scene graph; the load needs it for the material fields.
    scenario.Wizard().SetSceneGraph(scenario.Scene().model);
    settings::ProjectSettings shortLongs{"", std::vector<float>(kSingleCount, 0.0f),
                                         std::vector<int32_t>(40, 0)};
    scenario.Wizard().LoadSettings(shortLongs);
    settings::ProjectSettings shortSingles{"", std::vector<float>(3, 0.0f),
                                           std::vector<int32_t>(kLongCount, 0)};
    EXPECT_FALSE(scenario.Wizard().SaveSettings(shortSingles));
    EXPECT_EQ(scenario.Messages(), (std::vector<std::string>{subscript, subscript}));
    // The save ended at the first single past the end; the text was already built.
    EXPECT_EQ(shortSingles.text, "||||||");
    EXPECT_EQ(shortSingles.longs, std::vector<int32_t>(kLongCount, 0));
}

// A stored text and the four boxes it fills.
struct StoredText {
    const char* text;
    const char* title;
    const char* name;
    const char* description;
    const char* procedures;
};

TEST(ProjectSettings, TheTextIsCutAtTheFirstOfEachSeparator) {
    for (const StoredText& stored : {
             StoredText{"a|b||c|||d", "a", "b", "c", "d"},
             StoredText{"x|y|n||d|||o", "x", "y|n", "d", "o"},
             StoredText{"t|a||b||d|||o", "t", "a", "b||d", "o"},
             StoredText{"a||b|c|||d", "a", "", "b|c", "d"},
             StoredText{"a|b", "a", "", "", ""},
             StoredText{"plain title", "", "", "", ""},
         }) {
        WizardScenario scenario;
        scenario.Settings() = CurrentSettings({{settings::kLongProjectType, 1}});
        scenario.Settings().text = stored.text;
        scenario.RunEvents({});
        EXPECT_TRUE(scenario.Messages().empty()) << stored.text;
        EXPECT_EQ(scenario.Control("txtProjectTitle").Text(), stored.title) << stored.text;
        EXPECT_EQ(scenario.Control("txtProjectName").Text(), stored.name) << stored.text;
        EXPECT_EQ(scenario.Control("txtProjectDescription").Text(), stored.description)
            << stored.text;
        EXPECT_EQ(scenario.Control("txtOperatingProcedures").Text(), stored.procedures)
            << stored.text;
    }
}

TEST(ProjectSettings, ARouteNoLongerListedIsPassedOver) {
    TempFolder folder;
    std::filesystem::create_directories(folder / "MSTS/ROUTES/EUROPE1");
    WizardScenario scenario;
    scenario.Scene().application->SetSimulators({folder / "MSTS/train.exe", ""});
    scenario.Settings() =
        CurrentSettings({{settings::kLongProjectType, 2}, {settings::kLongMsts, 1}});
    scenario.Settings().text = "Station|stn|| |||GONE";
    scenario.RunEvents({});
    EXPECT_TRUE(scenario.Messages().empty());
    EXPECT_EQ(scenario.Control("cboRoute").List(), std::vector<std::string>{"EUROPE1"});
    EXPECT_EQ(scenario.Control("cboRoute").ListIndex(), -1);
    EXPECT_EQ(scenario.Control("txtOperatingProcedures").Text(), "");
}

TEST(ProjectSettings, StoredValuesNoListHoldsEndTheLoadWithAReportedError) {
    WizardScenario scenario;
    scenario.Settings() = CurrentSettings({{settings::kLongProjectType, 7}});
    scenario.RunEvents({});
    ASSERT_EQ(scenario.Messages().size(), 1u);
    EXPECT_NE(scenario.Messages()[0].find("(#380)"), std::string::npos);
    // The page set-up still ran; the wizard stays usable.
    EXPECT_TRUE(scenario.Control("fraStep", 0).Visible());
}

}  // namespace
}  // namespace railwright::testing
