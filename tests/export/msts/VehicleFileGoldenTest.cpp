// Every engine and wagon file variant against its golden file, byte for byte.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "export/GoldenFile.h"
#include "export/msts/VehicleFiles.h"
#include "export/msts/VehicleScene.h"

namespace railwright::exportmsts {
namespace {

using testing::VehicleScene;
using testing::VehicleSettings;

const host::Light kOrdinaryLight{host::LightKind::Ordinary, 1, 0.05f, 0.5f, {0, 3.5f, 10.25f},
                                 {0, 0, 1}};
const host::Light kGlowLight{host::LightKind::Glow, 0.25f, 1, 0, {-1.25f, 3.5f, -10}, {0, 0, 1}};

struct GoldenCase {
    std::string testName;
    std::string golden;  // under tests/golden/msts/
    VehicleFileKind kind;
    std::string projectName;
    std::string title;
    std::string description;
    std::string procedures;
    VehicleSettings settings;
    VehicleScene scene;
};

// Mass 0 and velocity 0 ask for the defaults; radii of 0 are measured from the wheel groups.
const std::vector<GoldenCase> kCases = {
    {"FreightCar", "freight_car.wag", VehicleFileKind::Wagon, "Box Van", "", "", "",
     {.subType = 2, .wheelRadii = {0.5f, 0, 0}, .wheelCounts = {4, 4, 0}, .coupling = 0}, {}},
    // Intake points come from placeholders, which the name test never finds.
    {"FreightCarAskingForIntakePoints", "freight_car.wag", VehicleFileKind::Wagon, "Box Van", "",
     "", "",
     {.subType = 2, .wheelRadii = {0.5f, 0, 0}, .wheelCounts = {4, 4, 0}, .intakePoints = 1},
     {}},
    {"PassengerCarWithPassengerView", "passenger_car_view.wag", VehicleFileKind::Wagon,
     "Coach Mk2", "", "", "",
     {.subType = 3, .massTonnes = 42.5f, .wheelCounts = {4, 4, 0}, .coupling = 1,
      .viewPoint = 1, .intakePoints = 1},
     {.lights = {kOrdinaryLight}}},
    {"PassengerCarWithoutPassengerView", "passenger_car.wag", VehicleFileKind::Wagon,
     "Coach Mk2", "", "", "",
     {.subType = 3, .massTonnes = 42.5f, .wheelCounts = {4, 4, 0}, .coupling = 1},
     {.lights = {kOrdinaryLight}}},
    {"TenderMeasuringLowerCaseWheelGroup", "tender.wag", VehicleFileKind::Wagon, "Tender", "",
     "", "", {.subType = 6, .wheelCounts = {4, 4, 0}, .coupling = 2, .intakePoints = 1},
     {.frontWheels = "wheels11", .lights = {kGlowLight}}},
    {"RadiusToMeasureWithoutWheelGroup", "no_wheel_group.wag", VehicleFileKind::Wagon,
     "Box Van", "", "", "", {.subType = 2, .wheelCounts = {4, 0, 0}, .coupling = 7},
     {.frontWheels = ""}},
    {"RearWheelsOnly", "rear_wheels.wag", VehicleFileKind::Wagon, "Box Van", "", "", "",
     {.subType = 2, .wheelRadii = {0.5f, 0.45f, 0}, .wheelCounts = {0, 4, 0}}, {}},
    {"NoWheels", "no_wheels.wag", VehicleFileKind::Wagon, "Box Van", "", "", "",
     {.subType = 2, .wheelRadii = {0.5f, 0.5f, 0}, .wheelCounts = {0, 0, 0}}, {}},

    {"SteamEngineWithDefaults", "steam.eng", VehicleFileKind::SteamEngine, "Flyer", "The Flyer",
     "", "", {.subType = 4, .wheelRadii = {0.5f, 0.875f, 0.625f}, .wheelCounts = {2, 4, 2}},
     {.driveWheels = true}},
    // The title holds a character outside the 8-bit code page (the arrow), written as '?'.
    {"SteamEngineWithEverythingSet", "steam_set.eng", VehicleFileKind::SteamEngine, "My Loco",
     "Flyer \u20AC \u2192 ok", "A fast engine.", "Open the regulator.\r\nWatch the water.",
     {.subType = 4, .massTonnes = 120.5f, .velocityKmh = 160, .wheelRadii = {0, 0, 0.625f},
      .wheelCounts = {0, 6, 2}, .coupling = 1, .tenderRequired = 1, .viewPoint = 1,
      .intakePoints = 1},
     {.frontWheels = "", .driveWheels = true, .lights = {kOrdinaryLight}}},

    {"DieselEngineWithDefaults", "diesel.eng", VehicleFileKind::DieselEngine, "Class 47",
     "Class 47", "Fast\r\nSlow", "",
     {.subType = 0, .wheelRadii = {0.5f, 0, 0}, .wheelCounts = {4, 4, 0}, .coupling = 1}, {}},
    {"DieselEngineWithEverythingSet", "diesel_set.eng", VehicleFileKind::DieselEngine,
     "Class 47", "Class 47", "One line only", "",
     {.subType = 0, .massTonnes = 130, .velocityKmh = 160, .wheelCounts = {4, 6, 0},
      .viewPoint = 1, .intakePoints = 1},
     {.lights = {kGlowLight}}},

    {"ElectricEngineWithDefaults", "electric.eng", VehicleFileKind::ElectricEngine,
     "Acela Test", "Electric", "", "",
     {.subType = 1, .wheelRadii = {0.5f, 0, 0}, .wheelCounts = {4, 4, 0}, .coupling = 2}, {}},
    {"ElectricEngineWithBothKindsOfLight", "electric_lights.eng",
     VehicleFileKind::ElectricEngine, "Acela Test", "Electric", "Line one\r\nLine two\r\n", "",
     {.subType = 1, .massTonnes = 88, .velocityKmh = 160, .wheelRadii = {0.5f, 0, 0},
      .wheelCounts = {4, 4, 0}, .viewPoint = 1},
     {.lights = {kOrdinaryLight, kGlowLight}}},
};

// Test names show the golden file instead of the case's bytes.
void PrintTo(const GoldenCase& golden, std::ostream* out) { *out << golden.golden; }

class VehicleFileGoldenTest : public ::testing::TestWithParam<GoldenCase> {};

TEST_P(VehicleFileGoldenTest, MatchesItsGoldenFile) {
    const GoldenCase& golden = GetParam();
    host::scene::Scene scene = testing::BuildVehicleScene(golden.scene);
    const std::vector<float> singles = golden.settings.Singles();
    const std::vector<int32_t> longs = golden.settings.Longs();
    const VehicleFileInputs inputs{*scene.scripting,
                                   golden.projectName,
                                   "/trains/trainset/VEHICLE",
                                   testing::MainIndex(*scene.scripting),
                                   singles,
                                   longs,
                                   golden.title,
                                   golden.description,
                                   golden.procedures};

    EXPECT_TRUE(::railwright::testing::MatchesGolden(VehicleFileText(golden.kind, inputs),
                                                     "msts/" + golden.golden));
}

INSTANTIATE_TEST_SUITE_P(Variants, VehicleFileGoldenTest, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<GoldenCase>& variant) {
                             return variant.param.testName;
                         });

}  // namespace
}  // namespace railwright::exportmsts
