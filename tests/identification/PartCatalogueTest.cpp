// The part catalogue, entry by entry: prompts, group names and the five simulator names, for the
// sub-types and attribute combinations whose naming the exporters rely on.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "identification/PartCatalogue.h"

namespace railwright::identification {
namespace {

// One entry as a line: group name, "description", then the MSTS, RailWorks, Trainz, Rail3D and
// BVE names.
std::string Row(const PartEntry& entry) {
    return entry.GroupName + " \"" + entry.Description + "\" " + entry.MstsName + " " +
           entry.RailWorksName + " " + entry.TrainzName + " " + entry.Rail3DName + " " +
           entry.BveName;
}

std::vector<std::string> Rows(const CatalogueInputs& inputs) {
    const PartCatalogue catalogue = ListParts(inputs);
    EXPECT_EQ(catalogue.position, 0);
    EXPECT_FALSE(catalogue.missingDriveWheels);
    std::vector<std::string> rows;
    for (const PartEntry& entry : catalogue.entries) {
        EXPECT_FALSE(entry.Identified) << entry.GroupName;
        rows.push_back(Row(entry));
    }
    return rows;
}

std::vector<std::string> GroupNames(const PartCatalogue& catalogue) {
    std::vector<std::string> names;
    for (const PartEntry& entry : catalogue.entries) {
        names.push_back(entry.GroupName);
    }
    return names;
}

std::string MainRow(const std::string& railWorksName) {
    return "Main \"the primary part. This is the part of the model that best defines the basic "
           "shape of the model\" Main " +
           railWorksName + " Main Main Main";
}

TEST(PartCatalogue, FreightCarWithAFrontBogieAndPlainRearWheels) {
    CatalogueInputs inputs;
    inputs.vehicle = VehicleType::FreightCar;
    inputs.subType = "Freight Car";
    inputs.wheels = {4, 4, 0};
    inputs.bogie = {true, false, false};
    inputs.viewPoint = true;  // a wagon has no view point
    inputs.intakePoint = true;
    EXPECT_EQ(Rows(inputs),
              (std::vector<std::string>{
                  MainRow("wagon"),
                  "Bogie1 \"the front bogie.\" Bogie1 bo01 notsure notsure notsure",
                  "Wheels11 \"the forward wheelset for the front bogie\" Wheels11 bo01wh01 - - -",
                  "Wheels12 \"the rear wheelset for the front bogie\" Wheels12 bo01wh02 - - -",
                  "Wheels21 \"the forward wheelset for the rear wheel group\" Wheels21 wh01 - - -",
                  "Wheels22 \"the rear wheelset for the rear wheel group\" Wheels22 wh02 - - -",
                  "RailwrightPlaceholder-freightgravel \"the placeholder for the freight intake\" "
                  "- - - - -",
              }));
}

TEST(PartCatalogue, SteamEngineWithTwoFrontWheelsSixDriveWheelsAndTwoRods) {
    CatalogueInputs inputs;
    inputs.vehicle = VehicleType::SteamEngine;
    inputs.subType = "Steam Engine";
    inputs.wheels = {2, 6, 0};
    inputs.rods = 2;
    inputs.wiperLeft = true;
    inputs.mirrorRight = true;
    inputs.stacks = 1;
    inputs.cylinders = 2;
    inputs.drainPipes = 1;
    inputs.whistles = 1;
    inputs.safetyValves = 1;
    inputs.dieselExhaust = 3;  // not a diesel: no exhaust
    inputs.pantographs = 2;    // not electric: no pantographs
    inputs.armsPerPantograph = 2;
    inputs.viewPoint = true;
    inputs.intakePoint = true;
    EXPECT_EQ(
        Rows(inputs),
        (std::vector<std::string>{
            MainRow("locomotive"),
            "Wheels11 \"the wheelset for the front wheel group\" Wheels11 wh01 - - -",
            "Wheels1 \"the forward drive wheelset\" Wheels1 wh02 - - -",
            "Wheels2 \"the center drive wheelset\" Wheels2 wh03 - - -",
            "Wheels3 \"the rear drive wheelset\" Wheels3 wh04 - - -",
            "Main_Wheel_Link \"the main wheel link\" Main_Wheel_Link - - - -",
            "Piston \"the piston\" Piston - - - -",
            "Rod01 \"rod 1\" Rod01 - - - -",
            "Rod02 \"rod 2\" Rod02 - - - -",
            "WiperArmLeft1 \"the left wiper arm\" WiperArmLeft1 wiper01_l - - -",
            "WiperBladeLeft1 \"the left wiper blade\" WiperBladeLeft1 - - - -",
            "MirrorRight1 \"the right mirror\" MirrorRight1 - - - -",
            "RailwrightPlaceholder-stack1 \"the placeholder for stack smoke source 1\" - - - - -",
            "RailwrightPlaceholder-cylinders1 \"the placeholder for cylinder steam source 1\" "
            "- - - - -",
            "RailwrightPlaceholder-cylinders2 \"the placeholder for cylinder steam source 2\" "
            "- - - - -",
            "RailwrightPlaceholder-drainpipe1 \"the placeholder for drain pipe source 1\" "
            "- - - - -",
            "RailwrightPlaceholder-whistle1 \"the placeholder for whistle source 1\" - - - - -",
            "RailwrightPlaceholder-safetyvalves1 \"the placeholder for safety valve 1\" - - - - -",
            "RailwrightPlaceholder-headout \"the placeholder for head out position\" - - - - -",
            "RailwrightPlaceholder-fuelcoal \"the placeholder for the fuel intake\" - - - - -",
            "RailwrightPlaceholder-fuelwater \"the placeholder for the water intake\" - - - - -",
        }));
}

TEST(PartCatalogue, AnyDriveCountButTwoFourAndSixGivesFourDriveWheelsets) {
    struct Case {
        int32_t driveWheels;
        std::vector<std::string> drive;  // descriptions of Wheels1, Wheels2...
        // The plain rear wheelset's running number, after the drive wheels moved it on by half
        // their count, halves rounded to even.
        std::string rearRailWorksName;
    };
    const std::vector<std::string> four = {"the forward drive wheelset",
                                           "the second drive wheelset", "the third drive wheelset",
                                           "the rear drive wheelset"};
    const Case cases[] = {
        {2, {"the drive wheelset"}, "wh02"},
        {4, {"the forward drive wheelset", "the rear drive wheelset"}, "wh03"},
        {3, four, "wh03"},  // 1.5 rounds to 2
        {5, four, "wh03"},  // 2.5 rounds to 2
        {7, four, "wh05"},  // 3.5 rounds to 4
        {8, four, "wh05"},
        {10, four, "wh06"},
    };
    for (const Case& c : cases) {
        CatalogueInputs inputs;
        inputs.vehicle = VehicleType::TankEngine;
        inputs.wheels = {0, c.driveWheels, 2};
        const PartCatalogue catalogue = ListParts(inputs);
        std::vector<std::string> expected{"Main"};
        for (size_t k = 0; k < c.drive.size(); ++k) {
            expected.push_back("Wheels" + std::to_string(k + 1));
        }
        if (c.driveWheels > 2) {
            expected.push_back("Main_Wheel_Link");
        }
        expected.insert(expected.end(), {"Piston", "Wheels21"});
        ASSERT_EQ(GroupNames(catalogue), expected) << c.driveWheels;
        for (size_t k = 0; k < c.drive.size(); ++k) {
            const PartEntry& wheelset = catalogue.entries[k + 1];
            EXPECT_EQ(wheelset.Description, c.drive[k]) << c.driveWheels;
            EXPECT_EQ(wheelset.RailWorksName, "wh0" + std::to_string(k + 1)) << c.driveWheels;
        }
        const PartEntry& rear = catalogue.entries.back();
        EXPECT_EQ(rear.Description, "the wheelset for the rear wheel group");
        EXPECT_EQ(rear.RailWorksName, c.rearRailWorksName) << c.driveWheels;
    }
}

TEST(PartCatalogue, SteamEngineWithoutDriveWheelsKeepsItsOtherParts) {
    CatalogueInputs inputs;
    inputs.vehicle = VehicleType::SteamEngine;
    inputs.wheels = {2, 0, 4};
    inputs.bogie = {false, false, true};
    inputs.rods = 2;
    inputs.stacks = 1;
    const PartCatalogue catalogue = ListParts(inputs);
    EXPECT_TRUE(catalogue.missingDriveWheels);
    EXPECT_EQ(GroupNames(catalogue),
              (std::vector<std::string>{"Main", "Wheels11", "Bogie2", "Wheels21", "Wheels22",
                                        "RailwrightPlaceholder-stack1"}));
    EXPECT_EQ(catalogue.entries[2].Description, "the rear bogie.");
    EXPECT_EQ(catalogue.entries[4].RailWorksName, "bo02wh02");
}

TEST(PartCatalogue, RodsPastNineKeepTheirLeadingZero) {
    CatalogueInputs inputs;
    inputs.vehicle = VehicleType::SteamEngine;
    inputs.wheels = {0, 2, 0};
    inputs.rods = 10;
    const PartCatalogue catalogue = ListParts(inputs);
    ASSERT_EQ(catalogue.Count(), 13);
    EXPECT_EQ(Row(catalogue.entries[11]), "Rod09 \"rod 9\" Rod09 - - - -");
    EXPECT_EQ(Row(catalogue.entries[12]), "Rod010 \"rod 10\" Rod010 - - - -");
}

TEST(PartCatalogue, ElectricEngineWithTwoThreeArmPantographsTellsThemByLetter) {
    CatalogueInputs inputs;
    inputs.vehicle = VehicleType::ElectricEngine;
    inputs.subType = "Electric Engine";
    inputs.pantographs = 2;
    inputs.armsPerPantograph = 3;
    EXPECT_EQ(
        Rows(inputs),
        (std::vector<std::string>{
            MainRow("locomotive"),
            "PantographBottom1A \"the bottom of pantograph 1\" PantographBottom1A panto01 - - -",
            "PantographMiddle1A \"the middle of pantograph 1\" PantographMiddle1A panto01 - - -",
            "PantographTop1A \"the top of pantograph  1\" PantographTop1A panto01 - - -",
            "PantographBottom1B \"the bottom of pantograph 2\" PantographBottom1B panto02 - - -",
            "PantographMiddle1B \"the middle of pantograph 2\" PantographMiddle1B panto02 - - -",
            "PantographTop1B \"the top of pantograph  2\" PantographTop1B panto02 - - -",
        }));
}

TEST(PartCatalogue, PantographsNeedTwoOrThreeArms) {
    struct Case {
        int32_t arms;
        std::vector<std::string> names;
    };
    const Case cases[] = {
        {2, {"Main", "PantographBottom1", "PantographTop1", "PantographBottom2", "PantographTop2"}},
        {1, {"Main"}},
        {4, {"Main"}},
        {0, {"Main"}},
    };
    for (const Case& c : cases) {
        CatalogueInputs inputs;
        inputs.vehicle = VehicleType::ElectricEngine;
        inputs.pantographs = 2;
        inputs.armsPerPantograph = c.arms;
        EXPECT_EQ(GroupNames(ListParts(inputs)), c.names) << c.arms;
    }
}

TEST(PartCatalogue, TenderHasNoViewPointButCoalAndWaterIntakes) {
    CatalogueInputs inputs;
    inputs.vehicle = VehicleType::Tender;
    inputs.subType = "Tender";
    inputs.wheels = {4, 4, 0};
    inputs.bogie = {true, true, false};
    inputs.wiperLeft = true;  // not an engine: no fittings
    inputs.viewPoint = true;
    inputs.intakePoint = true;
    EXPECT_EQ(
        Rows(inputs),
        (std::vector<std::string>{
            MainRow("tender"),
            "Bogie1 \"the front bogie.\" Bogie1 bo01 notsure notsure notsure",
            "Wheels11 \"the forward wheelset for the front bogie\" Wheels11 bo01wh01 - - -",
            "Wheels12 \"the rear wheelset for the front bogie\" Wheels12 bo01wh02 - - -",
            "Bogie2 \"the rear bogie.\" Bogie2 bo02 notsure notsure notsure",
            "Wheels21 \"the forward wheelset for the rear bogie\" Wheels21 bo02wh01 - - -",
            "Wheels22 \"the rear wheelset for the rear bogie\" Wheels22 bo02wh02 - - -",
            "RailwrightPlaceholder-fuelcoal \"the placeholder for the coal intake\" - - - - -",
            "RailwrightPlaceholder-fuelwater \"the placeholder for the water intake\" - - - - -",
        }));
}

TEST(PartCatalogue, DieselAndPassengerCarPlaceholders) {
    CatalogueInputs diesel;
    diesel.vehicle = VehicleType::DieselEngine;
    diesel.wheels = {6, 8, 0};
    diesel.dieselExhaust = 2;
    diesel.wiperRight = true;
    diesel.mirrorLeft = true;
    diesel.viewPoint = true;
    diesel.intakePoint = true;
    EXPECT_EQ(
        Rows(diesel),
        (std::vector<std::string>{
            MainRow("locomotive"),
            "Wheels11 \"the forward wheelset for the front wheel group\" Wheels11 wh01 - - -",
            "Wheels12 \"the center wheelset for the front wheel group\" Wheels12 wh02 - - -",
            "Wheels13 \"the rear wheelset for the front wheel group\" Wheels13 wh03 - - -",
            "Wheels21 \"the forward wheelset for the rear wheel group\" Wheels21 wh04 - - -",
            "Wheels22 \"the second wheelset for the rear wheel group\" Wheels22 wh05 - - -",
            "Wheels23 \"the third wheelset for the rear wheel group\" Wheels23 wh06 - - -",
            "Wheels24 \"the rear wheelset for the rear wheel group\" Wheels24 wh07 - - -",
            "WiperArmRight1 \"the right wiper arm\" WiperArmRight1 wiper01_r - - -",
            "WiperBladeRight1 \"the right wiper blade\" WiperBladeRight1 - - - -",
            "MirrorLeft1 \"the left mirror\" MirrorLeft1 - - - -",
            "RailwrightPlaceholder-exhaustsource1 \"the placeholder for exhaust source 1\" "
            "- - - - -",
            "RailwrightPlaceholder-exhaustsource2 \"the placeholder for exhaust source 2\" "
            "- - - - -",
            "RailwrightPlaceholder-headout \"the placeholder for head out position\" - - - - -",
            "RailwrightPlaceholder-fueldiesel \"the placeholder for the fuel intake\" - - - - -",
        }));

    CatalogueInputs coach;
    coach.vehicle = VehicleType::PassengerCar;
    coach.subType = "Passenger Car";
    coach.viewPoint = true;
    coach.intakePoint = true;  // a coach takes nothing in
    EXPECT_EQ(Rows(coach),
              (std::vector<std::string>{
                  MainRow("coach"),
                  "RailwrightPlaceholder-PassengerCabinHeadPos \"the placeholder for passenger "
                  "head position\" - - - - -",
              }));
}

TEST(PartCatalogue, ProjectsThatAreNotRailVehiclesHaveOnlyTheirMainPart) {
    CatalogueInputs inputs;
    inputs.subType = "Vehicle";  // the scenery sub-type, not a rail vehicle
    inputs.wheels = {4, 4, 4};
    inputs.bogie = {true, true, true};
    inputs.viewPoint = true;
    inputs.intakePoint = true;
    EXPECT_EQ(Rows(inputs), std::vector<std::string>{MainRow("vehicle")});
}

}  // namespace
}  // namespace railwright::identification
