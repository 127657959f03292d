// The part identification step driven as a user drives it: picks in the view, Skip and Reset,
// through event scripts on in-memory models.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "wizard/WizardScenario.h"

namespace railwright::testing {
namespace {

using host::scene::Scene;
using host::scene::SceneBuilder;
using settings::kLongArmsPerPantograph;
using settings::kLongBogie;
using settings::kLongMirrorRight;
using settings::kLongPantographs;
using settings::kLongRods;
using settings::kLongStacks;
using settings::kLongWheels;
using settings::kLongWiperLeft;
using settings::kLongWiperRight;

constexpr int32_t kDieselEngine = 0;
constexpr int32_t kElectricEngine = 1;
constexpr int32_t kFreightCar = 2;
constexpr int32_t kSteamEngine = 4;

const std::string kAskForMain =
    "Please select the primary part. This is the part of the model that best defines the basic "
    "shape of the model.";
const std::string kComplete = "Part identification complete.";
const std::string kParentMissing = Exclamation(
    "Unable to move group. The intended parent group does not exist. If you have skipped some of "
    "the part identification steps you will need to close this wizard and re-run it.");

const std::string kToIdentification = Click("optSteps", wizard::kStepPartIdentification);

std::unique_ptr<WizardScenario> RunScenario(Scene scene, StoredSettings settings,
                                            const std::vector<std::string>& events,
                                            const std::vector<std::string>& answers = {}) {
    auto scenario = std::make_unique<WizardScenario>(std::move(scene));
    scenario->Settings() = std::move(settings);
    scenario->RunEvents(events, answers);
    EXPECT_TRUE(scenario->Faults().empty()) << scenario->Faults().front();
    return scenario;
}

std::vector<std::string> Picks(std::initializer_list<const char*> groups) {
    std::vector<std::string> events{kToIdentification};
    for (const char* group : groups) {
        events.push_back(Pick(group));
    }
    return events;
}

TEST(PartIdentification, AnElectricEngineEndsWithTheHierarchyTheExportersExpect) {
    auto scenario = RunScenario(
        ModelWithGroups({"Body", "FrontTruck", "Axle1", "Axle2<Body", "RearTruck", "Axle3", "Axle4",
                         "Arm", "Blade<Arm", "Mirror", "Base1", "Mid1", "Head1", "Base2<Body",
                         "Mid2", "Head2<Mid1"}),
        StoredVehicle(kElectricEngine, {{kLongWheels, 4},
                                        {kLongWheels + 1, 4},
                                        {kLongBogie, 1},
                                        {kLongBogie + 1, 1},
                                        {kLongWiperLeft, 1},
                                        {kLongMirrorRight, 1},
                                        {kLongPantographs, 2},
                                        {kLongArmsPerPantograph, 3}}),
        Picks({"Body", "FrontTruck", "Axle1", "Axle2", "RearTruck", "Axle3", "Axle4", "Arm",
               "Blade", "Mirror", "Base1", "Mid1", "Head1", "Base2", "Mid2", "Head2"}));
    EXPECT_TRUE(scenario->Messages().empty()) << scenario->Messages().front();
    EXPECT_EQ(scenario->Scene().model->Root()->NameValue(), "Loco");
    EXPECT_EQ(Hierarchy(scenario->Scene()), (std::map<std::string, std::string>{
                                                {"Main", "Loco"},
                                                {"Bogie1", "Main"},
                                                {"Wheels11", "Bogie1"},
                                                {"Wheels12", "Bogie1"},
                                                {"Bogie2", "Main"},
                                                {"Wheels21", "Bogie2"},
                                                {"Wheels22", "Bogie2"},
                                                {"WiperArmLeft1", "Main"},
                                                {"WiperBladeLeft1", "WiperArmLeft1"},
                                                {"MirrorRight1", "Main"},
                                                {"PantographBottom1A", "Main"},
                                                {"PantographMiddle1A", "PantographBottom1A"},
                                                {"PantographTop1A", "PantographMiddle1A"},
                                                {"PantographBottom1B", "Main"},
                                                {"PantographMiddle1B", "PantographBottom1B"},
                                                {"PantographTop1B", "PantographMiddle1B"},
                                            }));
    EXPECT_EQ(scenario->Control("lblPartIdentification").Caption(), kComplete);
    EXPECT_FALSE(scenario->Control("cmdSkip").Enabled());
}

TEST(PartIdentification, ASteamEngineLeavesUnbogiedWheelsRodsAndPlaceholdersWhereTheyAre) {
    auto scenario = RunScenario(
        ModelWithGroups({"Boiler", "Pony", "Driver1", "Driver2<Pony", "Driver3", "Link", "Cylinder",
                         "Rod<Boiler", "Chimney<Boiler"}),
        StoredVehicle(kSteamEngine,
                      {{kLongWheels, 2}, {kLongWheels + 1, 6}, {kLongRods, 1}, {kLongStacks, 1}}),
        Picks({"Boiler", "Pony", "Driver1", "Driver2", "Driver3", "Link", "Cylinder", "Rod",
               "Chimney"}));
    // No "Bogie1" to go under, and none is needed: the wheelset stays without a word.
    EXPECT_TRUE(scenario->Messages().empty()) << scenario->Messages().front();
    EXPECT_EQ(Hierarchy(scenario->Scene()), (std::map<std::string, std::string>{
                                                {"Main", "Loco"},
                                                {"Wheels11", "Loco"},
                                                {"Wheels1", "Main"},
                                                {"Wheels2", "Main"},
                                                {"Wheels3", "Main"},
                                                {"Main_Wheel_Link", "Wheels1"},
                                                {"Piston", "Main"},
                                                {"Rod01", "Main"},
                                                {"RailwrightPlaceholder-stack1", "Main"},
                                            }));
}

TEST(PartIdentification, PromptsForEachPartInTurnWithTheBogiesTwoFullStops) {
    auto scenario = RunScenario(ModelWithGroups({"Body", "Truck"}),
                                StoredVehicle(kFreightCar, {{kLongWheels, 2}, {kLongBogie, 1}}),
                                Picks({"Body"}));
    EXPECT_EQ(scenario->Control("lblPartIdentification").Caption(),
              "Please select the front bogie..");
    EXPECT_TRUE(scenario->Control("cmdSkip").Enabled());
    EXPECT_EQ(scenario->Wizard().Catalogue().position, 1);
}

TEST(PartIdentification, SkippedArmsLeaveTheirBladesInPlaceWithOneMessage) {
    auto scenario =
        RunScenario(ModelWithGroups({"Body", "ArmL", "BladeL<ArmL", "ArmR", "BladeR"}),
                    StoredVehicle(kDieselEngine, {{kLongWiperLeft, 1}, {kLongWiperRight, 1}}),
                    {kToIdentification, Pick("Body"), Click("cmdSkip"), Pick("BladeL"),
                     Click("cmdSkip"), Pick("BladeR")});
    EXPECT_EQ(scenario->Messages(), std::vector<std::string>{kParentMissing});
    EXPECT_EQ(Hierarchy(scenario->Scene()), (std::map<std::string, std::string>{
                                                {"Main", "Loco"},
                                                {"ArmL", "Loco"},
                                                {"WiperBladeLeft1", "ArmL"},
                                                {"ArmR", "Loco"},
                                                {"WiperBladeRight1", "Loco"},
                                            }));
    EXPECT_EQ(scenario->Control("lblPartIdentification").Caption(), kComplete);
}

TEST(PartIdentification, PartsAlreadyInTheModelAreNeverAskedFor) {
    auto scenario =
        RunScenario(ModelWithGroups({"Main", "Bogie1<Main", "Axle", "Wheels11"}),
                    StoredVehicle(kFreightCar, {{kLongWheels, 6}, {kLongBogie, 1}}),
                    // The group named "Wheels11" is picked when "Wheels12" is asked for.
                    Picks({"Wheels11", "Axle"}));
    EXPECT_TRUE(scenario->Messages().empty()) << scenario->Messages().front();
    // "Wheels11" was found present, so once renamed it is not asked for again.
    EXPECT_EQ(Hierarchy(scenario->Scene()), (std::map<std::string, std::string>{
                                                {"Main", "Loco"},
                                                {"Bogie1", "Main"},
                                                {"Wheels12", "Bogie1"},
                                                {"Wheels13", "Bogie1"},
                                            }));
    EXPECT_EQ(scenario->Control("lblPartIdentification").Caption(), kComplete);
}

TEST(PartIdentification, PicksAfterCompletionNameGroupsAfterTheLastPartAskedFor) {
    auto scenario = RunScenario(ModelWithGroups({"Body", "Truck", "Axle", "Spare", "Outside"}),
                                StoredVehicle(kFreightCar, {{kLongWheels, 2}, {kLongBogie, 1}}),
                                Picks({"Body", "Truck", "Axle", "Spare"}));
    EXPECT_EQ(Hierarchy(scenario->Scene()), (std::map<std::string, std::string>{
                                                {"Main", "Loco"},
                                                {"Bogie1", "Main"},
                                                {"Wheels11", "Bogie1"},
                                                {"Outside", "Loco"},
                                            }));
    // Two groups now carry the last part's name, both under the bogie.
    const auto& groups = scenario->Scene().model->GroupOrder();
    EXPECT_EQ(std::count_if(groups.begin(), groups.end(),
                            [](const auto& group) {
                                return group->NameValue() == "Wheels11" &&
                                       group->ParentNode()->NameValue() == "Bogie1";
                            }),
              2);
    EXPECT_EQ(scenario->Control("lblPartIdentification").Caption(), kComplete);
}

TEST(PartIdentification, PicksOffTheIdentificationStepAreIgnored) {
    auto scenario =
        RunScenario(ModelWithGroups({"Body"}), StoredVehicle(kFreightCar),
                    {Pick("Body"), kToIdentification, Click("optSteps", 3), Pick("Body")});
    EXPECT_EQ(Hierarchy(scenario->Scene()), (std::map<std::string, std::string>{{"Body", "Loco"}}));
    EXPECT_EQ(scenario->Control("lblPartIdentification").Caption(), kAskForMain);
}

TEST(PartIdentification, ResetRenamesEveryGroupButTheTopAndUnavailableOnesAndStartsAgain) {
    const auto model = [] {
        return ModelWithGroups({"Body", "Truck", "Unavailable<Truck", "Axle<Truck"});
    };
    const StoredSettings settings = StoredVehicle(kFreightCar, {{kLongWheels, 2}, {kLongBogie, 1}});
    const std::vector<std::string> identifyAndReset = {kToIdentification, Pick("Body"),
                                                       Pick("Truck"), Click("cmdReset")};

    auto no = RunScenario(model(), settings, identifyAndReset, {"No"});
    EXPECT_EQ(no->Messages(),
              std::vector<std::string>{"Railwright: none: Reset all part identification? This "
                                       "will require re-identification of all parts"});
    EXPECT_EQ(no->Control("lblPartIdentification").Caption(),
              "Please select the wheelset for the front bogie.");
    EXPECT_EQ(Hierarchy(no->Scene()).at("Bogie1"), "Main");

    auto yes = RunScenario(model(), settings, identifyAndReset, {"Yes"});
    EXPECT_EQ(yes->Control("lblPartIdentification").Caption(), kAskForMain);
    EXPECT_TRUE(yes->Control("cmdSkip").Enabled());
    EXPECT_EQ(yes->Wizard().Catalogue().position, 0);
    std::vector<std::string> names;
    for (const auto& group : yes->Scene().model->GroupOrder()) {
        names.push_back(group->NameValue());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Loco", "Group", "Group", "Unavailable", "Group"}));
}

TEST(PartIdentification, ASteamEngineWithoutDriveWheelsIsSentBackToItsAttributesOnce) {
    for (const std::string& toIdentification : {Click("cmdNext"), kToIdentification}) {
        auto scenario = RunScenario(ModelWithGroups({"Boiler"}),
                                    StoredVehicle(kSteamEngine, {{kLongWheels, 2}}),
                                    {Click("optSteps", 3), toIdentification});
        EXPECT_EQ(scenario->Messages(), std::vector<std::string>{Exclamation(
                                            "Steam engines are required to have drive wheels.")})
            << toIdentification;
        EXPECT_EQ(scenario->Wizard().CurrentStep(), wizard::kStepAttributes);
        EXPECT_TRUE(scenario->Control("fraStep", wizard::kStepAttributes).Visible());
        EXPECT_FALSE(scenario->Control("fraStep", wizard::kStepPartIdentification).Visible());
        EXPECT_EQ(scenario->Control("optSteps", wizard::kStepAttributes).Value(), 1);
        EXPECT_EQ(scenario->Control("optSteps", wizard::kStepPartIdentification).Value(), 0);
    }
}

}  // namespace
}  // namespace railwright::testing
