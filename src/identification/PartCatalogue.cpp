#include "identification/PartCatalogue.h"

#include "identification/RunningGear.h"
#include "support/SupportingFunctions.h"

namespace railwright::identification {
namespace {

constexpr std::string_view kMainDescription =
    "the primary part. This is the part of the model that best defines the basic shape of the "
    "model";
constexpr std::string_view kMainWheelLink = "Main_Wheel_Link";
constexpr std::string_view kPiston = "Piston";

// The primary part's RailWorks name for engines, wagons and coaches.
constexpr std::string_view kLocomotive = "locomotive";
constexpr std::string_view kWagon = "wagon";
constexpr std::string_view kCoach = "coach";

// A pantograph letter past the characters that the names can hold.
constexpr int32_t kErrorInvalidProcedureCall = 5;
constexpr int32_t kLastLetterCode = 127;

std::string Text(std::string_view text) {
    return std::string(text);
}

std::string Number(int32_t number) {
    return std::to_string(number);
}

// A part that only MSTS and possibly RailWorks know by name.
void AddMstsPart(PartCatalogue& catalogue, std::string description, const std::string& groupName,
                 std::string_view railWorksName = kNoName) {
    AddPart(catalogue, std::move(description), groupName, groupName, Text(railWorksName),
            Text(kNoName), Text(kNoName), Text(kNoName));
}

// A placeholder: an empty group whose position the exporters read; no simulator names it.
void AddPlaceholder(PartCatalogue& catalogue, std::string description, std::string_view suffix) {
    AddPart(catalogue, std::move(description), Text(support::kPlaceholderPrefix) + Text(suffix),
            Text(kNoName), Text(kNoName), Text(kNoName), Text(kNoName), Text(kNoName));
}

void AddNumberedPlaceholders(PartCatalogue& catalogue, int32_t count,
                             std::string_view descriptionStem, std::string_view suffix) {
    for (int32_t n = 1; n <= count; ++n) {
        AddPlaceholder(catalogue, Text(descriptionStem) + Number(n), Text(suffix) + Number(n));
    }
}

// The letter of a three-arm pantograph: "A" for the first, "B" for the second and so on.
std::string PantographLetter(int32_t pantograph) {
    const int32_t code = 'A' + pantograph - 1;
    if (code > kLastLetterCode) {
        throw support::RunTimeError(kErrorInvalidProcedureCall,
                                    "Invalid procedure call or argument");
    }
    return std::string(1, static_cast<char>(code));
}

void AddSteamParts(PartCatalogue& catalogue, const CatalogueInputs& inputs,
                   int64_t& wheelsetCounter) {
    const int32_t driveWheels = inputs.wheels[1];
    AddDriveWheels(catalogue, driveWheels, wheelsetCounter);
    if (driveWheels > 2) {
        AddMstsPart(catalogue, "the main wheel link", Text(kMainWheelLink));
    }
    AddMstsPart(catalogue, "the piston", Text(kPiston));
    for (int32_t n = 1; n <= inputs.rods; ++n) {
        // "Rod0" + n reads "Rod010" past nine; the exporters know the rods by these names.
        AddMstsPart(catalogue, "rod " + Number(n), "Rod0" + Number(n));
    }
}

void AddEngineFittings(PartCatalogue& catalogue, const CatalogueInputs& inputs) {
    if (inputs.wiperLeft) {
        AddMstsPart(catalogue, "the left wiper arm", "WiperArmLeft1", "wiper01_l");
        AddMstsPart(catalogue, "the left wiper blade", "WiperBladeLeft1");
    }
    if (inputs.wiperRight) {
        AddMstsPart(catalogue, "the right wiper arm", "WiperArmRight1", "wiper01_r");
        AddMstsPart(catalogue, "the right wiper blade", "WiperBladeRight1");
    }
    if (inputs.mirrorLeft) {
        AddMstsPart(catalogue, "the left mirror", "MirrorLeft1");
    }
    if (inputs.mirrorRight) {
        AddMstsPart(catalogue, "the right mirror", "MirrorRight1");
    }
}

void AddPantographs(PartCatalogue& catalogue, const CatalogueInputs& inputs) {
    for (int32_t p = 1; p <= inputs.pantographs; ++p) {
        const std::string railWorksName = "panto" + TwoDigits(p);
        const std::string bottom = "the bottom of pantograph " + Number(p);
        // Two spaces before the number, as the prompt has always read.
        const std::string top = "the top of pantograph  " + Number(p);
        if (inputs.armsPerPantograph == 2) {
            AddMstsPart(catalogue, bottom, "PantographBottom" + Number(p), railWorksName);
            AddMstsPart(catalogue, top, "PantographTop" + Number(p), railWorksName);
        } else if (inputs.armsPerPantograph == 3) {
            // The digit stays 1: the letter tells the pantographs apart.
            const std::string suffix = "1" + PantographLetter(p);
            AddMstsPart(catalogue, bottom, "PantographBottom" + suffix, railWorksName);
            AddMstsPart(catalogue, "the middle of pantograph " + Number(p),
                        "PantographMiddle" + suffix, railWorksName);
            AddMstsPart(catalogue, top, "PantographTop" + suffix, railWorksName);
        }
    }
}

void AddSteamPlaceholders(PartCatalogue& catalogue, const CatalogueInputs& inputs) {
    AddNumberedPlaceholders(catalogue, inputs.stacks, "the placeholder for stack smoke source ",
                            "stack");
    AddNumberedPlaceholders(catalogue, inputs.cylinders,
                            "the placeholder for cylinder steam source ", "cylinders");
    AddNumberedPlaceholders(catalogue, inputs.drainPipes, "the placeholder for drain pipe source ",
                            "drainpipe");
    AddNumberedPlaceholders(catalogue, inputs.whistles, "the placeholder for whistle source ",
                            "whistle");
    AddNumberedPlaceholders(catalogue, inputs.safetyValves, "the placeholder for safety valve ",
                            "safetyvalves");
}

void AddViewPoint(PartCatalogue& catalogue, VehicleType vehicle) {
    if (IsEngine(vehicle)) {
        AddPlaceholder(catalogue, "the placeholder for head out position", "headout");
    } else if (vehicle == VehicleType::PassengerCar) {
        AddPlaceholder(catalogue, "the placeholder for passenger head position",
                       "PassengerCabinHeadPos");
    }
}

void AddIntakePoints(PartCatalogue& catalogue, VehicleType vehicle) {
    constexpr std::string_view kWaterIntake = "the placeholder for the water intake";
    if (IsSteam(vehicle)) {
        AddPlaceholder(catalogue, "the placeholder for the fuel intake", "fuelcoal");
        AddPlaceholder(catalogue, Text(kWaterIntake), "fuelwater");
    } else if (vehicle == VehicleType::DieselEngine) {
        AddPlaceholder(catalogue, "the placeholder for the fuel intake", "fueldiesel");
    } else if (vehicle == VehicleType::FreightCar) {
        AddPlaceholder(catalogue, "the placeholder for the freight intake", "freightgravel");
    } else if (vehicle == VehicleType::Tender) {
        AddPlaceholder(catalogue, "the placeholder for the coal intake", "fuelcoal");
        AddPlaceholder(catalogue, Text(kWaterIntake), "fuelwater");
    }
}

std::string VehicleWord(const CatalogueInputs& inputs) {
    if (IsEngine(inputs.vehicle)) {
        return Text(kLocomotive);
    }
    if (inputs.vehicle == VehicleType::FreightCar) {
        return Text(kWagon);
    }
    if (inputs.vehicle == VehicleType::PassengerCar) {
        return Text(kCoach);
    }
    return support::ToLower(inputs.subType);
}

}  // namespace

std::string TwoDigits(int64_t number) {
    if (number < 0) {
        return "-" + TwoDigits(-number);
    }
    return (number < 10 ? "0" : "") + std::to_string(number);
}

bool IsEngine(VehicleType vehicle) {
    return IsSteam(vehicle) || vehicle == VehicleType::DieselEngine ||
           vehicle == VehicleType::ElectricEngine;
}

bool IsSteam(VehicleType vehicle) {
    return vehicle == VehicleType::SteamEngine || vehicle == VehicleType::TankEngine;
}

void AddPart(PartCatalogue& catalogue, std::string Description, std::string GroupName,
             std::string MstsName, std::string RailWorksName, std::string TrainzName,
             std::string Rail3DName, std::string BveName) {
    catalogue.entries.push_back({std::move(Description), std::move(GroupName), false,
                                 std::move(MstsName), std::move(RailWorksName),
                                 std::move(TrainzName), std::move(Rail3DName), std::move(BveName)});
}

PartCatalogue ListParts(const CatalogueInputs& inputs) {
    PartCatalogue catalogue;
    int64_t wheelsetCounter = 1;
    const VehicleType vehicle = inputs.vehicle;
    const bool railVehicle = vehicle != VehicleType::Other;

    AddPart(catalogue, Text(kMainDescription), Text(kMainGroupName), Text(kMainGroupName),
            VehicleWord(inputs), Text(kMainGroupName), Text(kMainGroupName), Text(kMainGroupName));

    if (railVehicle && inputs.wheels[0] != 0) {
        AddRunningGear(catalogue, inputs, 0, 1, "front", wheelsetCounter);
    }
    if (IsSteam(vehicle)) {
        if (inputs.wheels[1] == 0) {
            catalogue.missingDriveWheels = true;
        } else {
            AddSteamParts(catalogue, inputs, wheelsetCounter);
        }
        if (inputs.wheels[2] != 0) {
            AddRunningGear(catalogue, inputs, 2, 2, "rear", wheelsetCounter);
        }
    } else if (railVehicle && inputs.wheels[1] != 0) {
        AddRunningGear(catalogue, inputs, 1, 2, "rear", wheelsetCounter);
    }

    if (IsEngine(vehicle)) {
        AddEngineFittings(catalogue, inputs);
    }
    if (vehicle == VehicleType::ElectricEngine) {
        AddPantographs(catalogue, inputs);
    } else if (vehicle == VehicleType::DieselEngine) {
        AddNumberedPlaceholders(catalogue, inputs.dieselExhaust,
                                "the placeholder for exhaust source ", "exhaustsource");
    } else if (IsSteam(vehicle)) {
        AddSteamPlaceholders(catalogue, inputs);
    }
    if (inputs.viewPoint) {
        AddViewPoint(catalogue, vehicle);
    }
    if (inputs.intakePoint) {
        AddIntakePoints(catalogue, vehicle);
    }
    catalogue.position = 0;
    return catalogue;
}

PartCatalogue BuildPartCatalogue(host::Scripting& scene, const std::string& projectTitle,
                                 const CatalogueInputs& inputs) {
    scene.RootGroup()->SetName(projectTitle);
    return ListParts(inputs);
}

}  // namespace railwright::identification
