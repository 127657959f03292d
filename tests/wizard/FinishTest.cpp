// "Finish": the checks and the steps they send the user to, and what a successful Finish does to
// the model before the wizard closes for the exports.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/posix/TempFolder.h"
#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

using settings::kLongAnimation;
using settings::kLongBogie;
using settings::kLongDefaultGroupCustomFields;
using settings::kLongMsts;
using settings::kLongProjectSubType;
using settings::kLongProjectType;
using settings::kLongRailWorks;
using settings::kLongTrainz;
using settings::kLongWheels;

constexpr int32_t kDieselEngine = 0;
constexpr int32_t kFreightCar = 2;
constexpr int32_t kSteamEngine = 4;
constexpr int32_t kScenery = 2;
constexpr int32_t kUnchecked = 1;  // a "+1" check box slot

const std::string kGroupsMoved =
    "Railwright: information: Groups that contain shapes were moved to the \"Main\" group. This "
    "may not be the correct location in the hierarchy for these items, but this will ensure that "
    "they are exported to MSTS format.";
const std::string kParentMissing = Exclamation(
    "Unable to move group. The intended parent group does not exist. If you have skipped some of "
    "the part identification steps you will need to close this wizard and re-run it.");

// Simulators installed in a temp folder: MSTS without routes, and RailWorks.
class Installed {
  public:
    Installed() {
        std::filesystem::create_directories(folder_ / "MSTS/ROUTES");
        std::filesystem::create_directories(folder_ / "RailWorks");
    }
    void Into(WizardScenario& scenario) {
        scenario.InstallSimulators(folder_ / "MSTS", folder_ / "RailWorks");
    }

  private:
    TempFolder folder_;
};

struct Finished {
    std::unique_ptr<WizardScenario> scenario;
    StoredSettings saved;  // the settings as the wizard hands them back
};

Finished Finish(host::scene::Scene model, StoredSettings settings,
                std::vector<std::string> events = {}) {
    Installed simulators;
    auto scenario = std::make_unique<WizardScenario>(std::move(model));
    simulators.Into(*scenario);
    scenario->Settings() = settings;
    events.push_back(Click("cmdFinish"));
    scenario->RunEvents(events);
    EXPECT_TRUE(scenario->Faults().empty()) << scenario->Faults().front();
    StoredSettings saved = settings;
    scenario->Wizard().GetOptions(saved.text, saved.singles, saved.longs);
    return {std::move(scenario), saved};
}

std::string FieldOf(const host::scene::Scene& scene, const std::string& group,
                    const std::string& field) {
    const int32_t index = scene.model->GroupFields().IndexOf(field);
    EXPECT_GE(index, 0) << field;
    return index < 0 ? "" : scene.GroupNamed(group)->CustomFields()[static_cast<size_t>(index)];
}

TEST(WizardFinish, EachFailedCheckSaysWhyAndGoesToItsStep) {
    StoredSettings scenery =
        CurrentSettings({{kLongProjectType, kScenery}, {kLongProjectSubType, 0}, {kLongMsts, 1}});
    scenery.text = "Station|stn||||||";
    StoredSettings nothing = StoredVehicle(kFreightCar);
    nothing.longs[kLongTrainz] = 0;
    nothing.text.clear();  // no simulator, no title, no name: only the simulator is reported
    StoredSettings untitled = StoredVehicle(kFreightCar);
    untitled.text = "|loco|| ||| ";
    StoredSettings unnamed = StoredVehicle(kFreightCar);
    unnamed.text = "Loco||| ||| ";
    StoredSettings slashedMsts = StoredVehicle(kFreightCar, {{kLongMsts, 1}});
    slashedMsts.text = "Loco|lo/co|| ||| ";
    struct Case {
        StoredSettings settings;
        std::string message;
        int step;
    };
    const Case cases[] = {
        {nothing, "At least one simulator is required.", wizard::kStepStart},
        {untitled, "A project title is required.", wizard::kStepTitle},
        {unnamed, "A project name is required.", wizard::kStepTitle},
        {scenery, "A route is required.", wizard::kStepAttributes},
        {slashedMsts,
         "The project name \"lo/co\" cannot be used: it contains the character \"/\". Please "
         "choose another name.",
         wizard::kStepTitle},
    };
    for (const Case& c : cases) {
        // Finish twice: the wizard stays open after a refusal.
        Finished finished = Finish(ModelWithGroups({"Main"}), c.settings, {Click("cmdFinish")});
        WizardScenario& scenario = *finished.scenario;
        EXPECT_EQ(scenario.Messages(), std::vector<std::string>(2, Exclamation(c.message)));
        EXPECT_EQ(scenario.Wizard().CurrentStep(), c.step) << c.message;
        EXPECT_TRUE(scenario.Control("fraStep", c.step).Visible()) << c.message;
        EXPECT_EQ(scenario.Control("optSteps", c.step).Value(), 1) << c.message;
        EXPECT_FALSE(scenario.Wizard().FinishClicked()) << c.message;
        EXPECT_EQ(finished.saved.text, c.settings.text) << c.message;
        EXPECT_EQ(finished.saved.longs, c.settings.longs) << c.message;
    }
}

TEST(WizardFinish, AMissingRouteAlsoRebuildsThePartCatalogue) {
    StoredSettings scenery =
        CurrentSettings({{kLongProjectType, kScenery}, {kLongProjectSubType, 0}, {kLongMsts, 1}});
    scenery.text = "Station|stn||||||";
    Finished finished = Finish(ModelWithGroups({"Hall"}), scenery);
    EXPECT_EQ(finished.scenario->Scene().model->Root()->NameValue(), "Station");
    EXPECT_EQ(finished.scenario->Wizard().Catalogue().Count(), 1);
}

TEST(WizardFinish, ProjectsThatPassItsChecksCloseFinished) {
    StoredSettings spaceTitle = StoredVehicle(kFreightCar);
    spaceTitle.text = " |loco|| ||| ";
    StoredSettings railWorksScenery = CurrentSettings(
        {{kLongProjectType, kScenery}, {kLongProjectSubType, 0}, {kLongRailWorks, 1}});
    railWorksScenery.text = "Station|stn|| |||";
    StoredSettings slashedTrainz = StoredVehicle(kFreightCar);
    slashedTrainz.text = "Loco|lo/co|| ||| ";
    const std::vector<std::string> clearTexts = {Click("optSteps", wizard::kStepTitle),
                                                 Type("txtProjectDescription", ""),
                                                 Type("txtOperatingProcedures", "")};
    struct Case {
        const char* what;
        StoredSettings settings;
        std::vector<std::string> events;
        std::string savedText;
    };
    const Case cases[] = {
        {"a title of one space", spaceTitle, {}, " |loco|| ||| "},
        {"an MSTS vehicle without a route",
         StoredVehicle(kFreightCar, {{kLongMsts, 1}}),
         {},
         "Loco|loco|| ||| "},
        {"RailWorks scenery without a route", railWorksScenery, {}, "Station|stn|| |||"},
        // Trainz writes no file, so its project name needs no file name's characters.
        {"a Trainz name with a slash", slashedTrainz, {}, "Loco|lo/co|| ||| "},
        // An empty description or procedure is never stored: each becomes one space.
        {"empty texts", StoredVehicle(kDieselEngine), clearTexts, "Loco|loco|| ||| "},
    };
    for (const Case& c : cases) {
        Finished finished = Finish(ModelWithGroups({"Main"}), c.settings, c.events);
        WizardScenario& scenario = *finished.scenario;
        EXPECT_TRUE(scenario.Messages().empty()) << c.what << ": " << scenario.Messages().front();
        EXPECT_TRUE(scenario.Wizard().FinishClicked()) << c.what;
        EXPECT_FALSE(scenario.Wizard().IsLoaded()) << c.what;
        EXPECT_EQ(finished.saved.text, c.savedText) << c.what;
        EXPECT_EQ(scenario.Control("txtProjectDescription").Text(), " ") << c.what;
    }
}

TEST(WizardFinish, GathersGroupsWithShapesUnderMainSayingSoOnce) {
    host::scene::Scene model =
        ModelWithGroups({"Main", "Loose", "Inner<Loose", "MainBody", "Trim<MainBody", "Stray"});
    model.model->AddGroup("Empty", *model.model->Root());  // no shapes: stays
    model.model->AddGroup("Nested", *model.GroupNamed("Empty"))->AddShape({{{0, 0, 0}}, nullptr});
    Finished finished = Finish(std::move(model), StoredVehicle(kFreightCar));
    EXPECT_EQ(finished.scenario->Messages(), std::vector<std::string>{kGroupsMoved});
    EXPECT_EQ(Hierarchy(finished.scenario->Scene()), (std::map<std::string, std::string>{
                                                         {"Main", "Scene"},
                                                         {"Loose", "Main"},
                                                         {"Inner", "Loose"},
                                                         {"MainBody", "Scene"},
                                                         {"Trim", "MainBody"},
                                                         {"Stray", "Main"},
                                                         {"Empty", "Scene"},
                                                         {"Nested", "Main"},
                                                     }));
    EXPECT_TRUE(finished.scenario->Wizard().FinishClicked());
}

TEST(WizardFinish, WithoutMainTheGroupsStayAndBothMessagesAreShown) {
    Finished finished = Finish(ModelWithGroups({"Body", "Roof"}), StoredVehicle(kFreightCar));
    EXPECT_EQ(finished.scenario->Messages(),
              (std::vector<std::string>{kParentMissing, kGroupsMoved}));
    EXPECT_EQ(Hierarchy(finished.scenario->Scene()),
              (std::map<std::string, std::string>{{"Body", "Scene"}, {"Roof", "Scene"}}));
    EXPECT_FALSE(finished.scenario->Wizard().IsLoaded());
}

TEST(WizardFinish, AGroupThatCannotBeCountedIsLeftWhereItIs) {
    host::scene::Scene model = ModelWithGroups({"Main", "Loose"});
    model.failures->FailOperation("SceneGroup.ShapeCount");
    Finished finished = Finish(std::move(model), StoredVehicle(kFreightCar));
    EXPECT_TRUE(finished.scenario->Messages().empty()) << finished.scenario->Messages().front();
    EXPECT_EQ(Hierarchy(finished.scenario->Scene()).at("Loose"), "Scene");
    EXPECT_FALSE(finished.scenario->Wizard().IsLoaded());
}

// An engine whose drive wheels are identified.
host::scene::Scene Engine() {
    return ModelWithGroups({"Main", "Wheels1<Main", "Wheels2<Main", "Wheels11<Main"});
}

TEST(WizardFinish, AnimatedSteamEnginesGetTheirWheelsTurnedAfterFlagsAndMode) {
    Finished finished = Finish(Engine(), StoredVehicle(kSteamEngine, {{kLongWheels + 1, 4}}));
    host::scene::Scene& scene = finished.scenario->Scene();
    EXPECT_EQ(scene.scripting->Calls(), (std::vector<std::string>{"SetFlags 8", "SetMode 1"}));
    EXPECT_EQ(scene.GroupNamed("Wheels1")->Keys().size(), 9u);
    EXPECT_EQ(scene.GroupNamed("Wheels2")->Keys().size(), 9u);
    EXPECT_TRUE(scene.GroupNamed("Wheels11")->Keys().empty());
    // A quarter turn about the box's centre (0.5, 0.5, 0.5) takes the origin to (0, 1, 0).
    const host::scene::Key quarter = scene.GroupNamed("Wheels1")->Keys()[2];
    EXPECT_NEAR(quarter.position.y, 1, 1e-5);
    EXPECT_NEAR(quarter.position.z, 0, 1e-5);
    EXPECT_NEAR(quarter.rotation.x, 3.141593f / 2, 1e-6);
    EXPECT_TRUE(finished.scenario->Messages().empty()) << finished.scenario->Messages().front();
}

TEST(WizardFinish, NoWheelsTurnWithoutAnimationOrForOtherEngines) {
    const StoredSettings cases[] = {
        StoredVehicle(kDieselEngine, {{kLongWheels + 1, 4}}),
        StoredVehicle(kSteamEngine, {{kLongWheels + 1, 4}, {kLongAnimation, kUnchecked}}),
    };
    for (const StoredSettings& settings : cases) {
        Finished finished = Finish(Engine(), settings);
        host::scene::Scene& scene = finished.scenario->Scene();
        EXPECT_TRUE(scene.scripting->Calls().empty());
        EXPECT_TRUE(scene.GroupNamed("Wheels1")->Keys().empty());
        EXPECT_TRUE(finished.scenario->Wizard().FinishClicked());
    }
}

TEST(WizardFinish, AHostThatRefusesTheModeEndsFinishBeforeAnyKey) {
    host::scene::Scene model = Engine();
    model.failures->FailOperation("Scripting.SetMode");
    Finished finished =
        Finish(std::move(model), StoredVehicle(kSteamEngine, {{kLongWheels + 1, 4}}));
    host::scene::Scene& scene = finished.scenario->Scene();
    EXPECT_EQ(scene.scripting->Calls(), std::vector<std::string>{"SetFlags 8"});
    EXPECT_TRUE(scene.GroupNamed("Wheels1")->Keys().empty());
    ASSERT_EQ(finished.scenario->Ui().Messages().size(), 1u);
    EXPECT_EQ(finished.scenario->Ui().Messages()[0].icon, support::MessageIcon::Critical);
    // The settings were saved before the model was changed.
    EXPECT_EQ(finished.saved.text, "Loco|loco|| ||| ");
}

TEST(WizardFinish, IdentifiedPartsGetTheirSimulatorNamesInTheFieldsTheModelHas) {
    const auto model = [] {
        host::scene::Scene scene =
            ModelWithGroups({"Main", "Bogie1<Main", "Wheels11<Bogie1", "Wheels12<Bogie1",
                             "Wheels21<Main", "Cargo<Main"});
        scene.model->GroupFields().Add("MSTS");
        scene.model->GroupFields().Add("Rail Sim");
        scene.model->GroupFields().Add("BVE");
        scene.GroupNamed("Cargo")->CustomFields()[0] = "keep";
        return scene;
    };
    // A freight car: four front wheels in a bogie, four rear ones without; "Wheels22" skipped.
    const std::vector<std::pair<size_t, int32_t>> freightCar = {
        {kLongWheels, 4}, {kLongWheels + 1, 4}, {kLongBogie, 1}};

    Finished finished = Finish(model(), StoredVehicle(kFreightCar, freightCar));
    const host::scene::Scene& scene = finished.scenario->Scene();
    struct Expected {
        const char* group;
        const char* field;
        const char* value;
    };
    const Expected expected[] = {
        {"Main", "MSTS", "Main"},
        {"Main", "Rail Sim", "wagon"},
        {"Main", "Trainz", "Main"},
        {"Main", "BVE", "Main"},
        {"Bogie1", "MSTS", "Bogie1"},
        {"Bogie1", "Rail Sim", "bo01"},
        {"Bogie1", "Trainz", "notsure"},
        {"Bogie1", "BVE", "notsure"},
        {"Wheels11", "MSTS", "Wheels11"},
        {"Wheels11", "Rail Sim", "bo01wh01"},
        {"Wheels11", "Trainz", ""},
        {"Wheels11", "BVE", ""},
        {"Wheels12", "Rail Sim", "bo01wh02"},
        {"Wheels21", "Rail Sim", "wh01"},
        {"Cargo", "MSTS", "keep"},
        {"Cargo", "Rail Sim", ""},
    };
    for (const Expected& e : expected) {
        EXPECT_EQ(FieldOf(scene, e.group, e.field), e.value) << e.group << " " << e.field;
    }
    EXPECT_EQ(scene.model->GroupFields().IndexOf("Rail3D"), -1);  // no field is made

    Finished unchecked =
        Finish(model(), StoredVehicle(kFreightCar, {{kLongWheels, 4},
                                                    {kLongBogie, 1},
                                                    {kLongDefaultGroupCustomFields, kUnchecked}}));
    EXPECT_EQ(FieldOf(unchecked.scenario->Scene(), "Main", "MSTS"), "");
    EXPECT_EQ(FieldOf(unchecked.scenario->Scene(), "Bogie1", "Rail Sim"), "");
}

}  // namespace
}  // namespace railwright::testing
