// The "Start" step's simulators: install tests, routes, group fields, texture options and the
// export-location notice.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/posix/TempFolder.h"
#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

const char* const kMstsMissing =
    "Railwright: critical: Unable to find Microsoft Train Simulator. This wizard requires that "
    "Microsoft Train Simulator be installed to export to Microsoft Train Simulator format.";

std::vector<std::string> GroupFields(WizardScenario& scenario) {
    return scenario.Scene().model->GroupFields().Names();
}

// An MSTS installation with these routes.
void InstallMsts(WizardScenario& scenario, const TempFolder& folder,
                 std::initializer_list<const char*> routes) {
    std::filesystem::create_directories(folder / "MSTS/ROUTES");
    for (const char* route : routes) {
        std::filesystem::create_directories(folder / ("MSTS/ROUTES/" + std::string(route)));
    }
    // A file beside the routes is not a route.
    PutFile(folder / "MSTS/ROUTES/readme.txt", "routes");
    scenario.Scene().application->SetSimulators({folder / "MSTS/train.exe", ""});
}

TEST(SimulatorSelection, MstsThatIsNotInstalledIsUncheckedWithOneStopBox) {
    WizardScenario scenario;
    scenario.RunEvents({Click("chkMSTS")});
    EXPECT_EQ(scenario.Messages(), std::vector<std::string>{kMstsMissing});
    EXPECT_EQ(scenario.Control("chkMSTS").Value(), 0);
    EXPECT_TRUE(scenario.Control("cboRoute").List().empty());
    EXPECT_EQ(GroupFields(scenario), std::vector<std::string>{});
}

TEST(SimulatorSelection, MstsListsItsRoutesAndEnsuresItsGroupField) {
    TempFolder folder;
    WizardScenario scenario;
    InstallMsts(scenario, folder, {"USA2", "EUROPE1", "JAPAN1"});
    scenario.RunEvents({Click("chkMSTS"), Click("chkMSTS"), Click("chkMSTS"), Click("cmdNext"),
                        Select("cboProjectType", "Scenery"), Click("cmdNext"), Click("cmdNext"),
                        Select("cboRoute", "JAPAN1")});
    EXPECT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
    EXPECT_TRUE(scenario.Messages().empty());
    EXPECT_EQ(scenario.Control("cboRoute").List(),
              (std::vector<std::string>{"EUROPE1", "JAPAN1", "USA2"}));
    EXPECT_EQ(scenario.Control("cboRoute").Text(), "JAPAN1");
    // Checked twice, one field.
    EXPECT_EQ(GroupFields(scenario), std::vector<std::string>{"MSTS"});
}

TEST(SimulatorSelection, AnEmptyRoutesFolderLeavesNoRoutes) {
    TempFolder folder;
    WizardScenario scenario;
    InstallMsts(scenario, folder, {});
    scenario.RunEvents({Click("chkMSTS")});
    EXPECT_EQ(scenario.Control("chkMSTS").Value(), 1);
    EXPECT_TRUE(scenario.Control("cboRoute").List().empty());
}

TEST(SimulatorSelection, RailWorksAndRailSimulatorShareOneField) {
    WizardScenario missing;
    missing.RunEvents({Click("chkRailWorks"), Click("chkRailSimulator")});
    EXPECT_EQ(missing.Messages(),
              (std::vector<std::string>{
                  "Railwright: critical: Unable to find RailWorks. This wizard requires that "
                  "RailWorks be installed to export to RailWorks format.",
                  "Railwright: critical: Unable to find Rail Simulator. This wizard requires that "
                  "Rail Simulator be installed to export to Rail Simulator format."}));
    EXPECT_EQ(missing.Control("chkRailWorks").Value(), 0);
    EXPECT_EQ(missing.Control("chkRailSimulator").Value(), 0);

    WizardScenario installed;
    installed.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    // Unchecking asks nothing; checking again finds the field made the first time.
    installed.RunEvents({Click("chkRailWorks"), Click("chkRailWorks"), Click("chkRailWorks"),
                         Click("chkRailSimulator")});
    EXPECT_TRUE(installed.Messages().empty());
    EXPECT_EQ(GroupFields(installed), std::vector<std::string>{"Rail Sim"});
    EXPECT_EQ(installed.Scene().application->LocatorCalls().size(), 3u);
}

TEST(SimulatorSelection, OtherSimulatorsEnsureTheirFieldOnEveryClick) {
    WizardScenario scenario;
    scenario.RunEvents(
        {Click("chkBVE"), Click("chkTrainz"), Click("chkTrainz"), Click("chkRail3D")});
    EXPECT_TRUE(scenario.Messages().empty());
    EXPECT_EQ(GroupFields(scenario), (std::vector<std::string>{"BVE", "Trainz", "Rail3D"}));
    EXPECT_EQ(scenario.Control("chkTrainz").Value(), 0);
}

TEST(SimulatorSelection, AFullGroupFieldTableClosesTheWizard) {
    host::scene::Scene scene = PreparedScene();
    scene.model->GroupFields().Add("A");
    scene.model->GroupFields().Add("B");
    scene.model->GroupFields().Add("C");
    scene.model->GroupFields().Add("D");
    scene.model->GroupFields().Add("Trainz");
    scene.model->GroupFields().Add("F");
    WizardScenario scenario(scene);
    // Trainz exists already; Rail3D has no room.
    scenario.RunEvents({Click("chkTrainz"), Click("chkRail3D"), Click("cmdNext")});
    EXPECT_EQ(scenario.Messages(),
              std::vector<std::string>{Exclamation(
                  "Too many custom group fields defined. Please create a custom group field called "
                  "\"Rail3D\" by selecting \"Properties\" from the \"File\" menu.")});
    EXPECT_FALSE(scenario.Wizard().IsLoaded());
    EXPECT_EQ(scenario.Ui().EventsLeft(), 1u);
    EXPECT_FALSE(scenario.Wizard().FinishClicked());
}

TEST(SimulatorSelection, UncheckingConvertTexturesResetsTheCompression) {
    WizardScenario scenario;
    scenario.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    scenario.RunEvents({Click("chkRailWorks"), Click("optSteps", 5),
                        Select("cboCompression", "Lossy Compression"),
                        Click("chkConvertTextures")});
    EXPECT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
    EXPECT_EQ(scenario.Control("cboCompression").Text(), "Uncompressed");
    EXPECT_FALSE(scenario.Control("cboCompression").Enabled());

    WizardScenario again;
    again.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    again.RunEvents({Click("chkRailWorks"), Click("optSteps", 5), Click("chkConvertTextures"),
                     Click("chkConvertTextures"),
                     Select("cboCompression", "Lossless Compression")});
    EXPECT_TRUE(again.Faults().empty()) << again.Faults().front();
    EXPECT_EQ(again.Control("cboCompression").Text(), "Lossless Compression");
}

constexpr const char* kNotice =
    "The Railwright will now export to the locations required by the simulator(s). ";

TEST(SimulatorSelection, LeavingTheDocumentsFolderShowsTheLocationNotice) {
    WizardScenario scenario;
    scenario.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    // A never-stored model starts with the documents folder checked, and opening says nothing.
    scenario.RunEvents({Click("chkRailWorks"), Click("optSteps", 5),
                        Click("chkExportToDocumentsFolder"), Click("cmdOK"),
                        Click("chkExportToDocumentsFolder")});
    EXPECT_TRUE(scenario.Faults().empty()) << scenario.Faults().front();
    EXPECT_EQ(scenario.Ui().warnings, std::vector<std::string>{kNotice});
    EXPECT_EQ(scenario.UserSettings().GetSetting("Polyforge", "Tips", "ExportLocations", ""), "1");
    EXPECT_EQ(scenario.Control("chkExportToDocumentsFolder").Value(), 1);
}

TEST(SimulatorSelection, RestrictedSystemsGetTheLongerNotice) {
    WizardScenario scenario;
    scenario.System().restrictsProgramFolders = true;
    scenario.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    scenario.RunEvents(
        {Click("chkRailWorks"), Click("optSteps", 5), Click("chkExportToDocumentsFolder")});
    EXPECT_EQ(scenario.Ui().warnings,
              std::vector<std::string>{
                  "The Railwright will now export to the locations required by the simulator(s). "
                  "Newer versions of Windows may not permit writing to the required folders. To "
                  "enable this:\ro) right click on the folder you need to provide access to.\ro) "
                  "click on the \"Security\" tab.\ro) click the \"Edit\" button beneath \"Group or "
                  "user names:\".\ro) choose \"Users (...)\" of the \"Group or user names:\" "
                  "list.\ro) check \"Full control\" beneath \"Allow\" in the \"Permissions for "
                  "users\" section.\ro) click \"OK\"."});
}

TEST(SimulatorSelection, LoadingAStoredProjectNeverShowsTheNotice) {
    WizardScenario scenario;
    scenario.Scene().application->SetSimulators({"", "/opt/RailWorks"});
    // Stored with the documents folder checked, then unchecked: neither load shows the notice.
    scenario.Settings() = CurrentSettings(
        {{settings::kLongRailWorks, 1}, {settings::kLongExportToDocumentsFolder, 1}});
    scenario.RunEvents({});
    EXPECT_EQ(scenario.Control("chkExportToDocumentsFolder").Value(), 1);
    scenario.Settings() = CurrentSettings({{settings::kLongRailWorks, 1}});
    scenario.RunEvents({});
    EXPECT_EQ(scenario.Control("chkExportToDocumentsFolder").Value(), 0);
    EXPECT_TRUE(scenario.Control("chkExportToDocumentsFolder").Enabled());
    EXPECT_TRUE(scenario.Ui().warnings.empty());
    EXPECT_TRUE(scenario.Messages().empty());
}

}  // namespace
}  // namespace railwright::testing
