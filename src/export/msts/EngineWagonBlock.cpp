// The header and Wagon block of the engine files. The three tractions share one sequence of rows;
// what differs between them is the table below, and the rows after the brakes (37 to 41), which
// are written per traction at the end.
#include <optional>
#include <span>

#include "export/msts/EffectsAndLights.h"
#include "export/msts/VehicleTemplates.h"

namespace railwright::exportmsts {
namespace {

struct EngineWagonRows {
    std::string_view afterHeader{};                     // 2
    bool spacerAfterShape = false;                      // 6: "    "
    bool centreLine = false;                            // 9: "    Centre ( 0m 0m 0m )"
    float defaultMass = 0;                              // 10
    bool wheelRadiusAfterMass = false;                  // 11, else at 21
    std::string_view inertiaEnding{};                   // 12
    std::optional<std::string_view> bufferStiffness{};  // 14, with bufferDamping; none for steam
    std::string_view bufferDamping{};
    std::string_view afterBuffers{};                  // 15
    std::optional<std::string_view> maxBrakeForce{};  // 16
    std::string_view adheasion{};                     // 17
    std::string_view derailRailForce{};               // 19
    std::string_view derailBufferForce{};             // 20
    size_t otherWheelsLong = 0;                  // 21, 22: the wheels counted with the front ones
    size_t otherRadiusSingle = 0;                // 21, 11
    std::string_view frictionLinear{};           // 24
    std::string_view frictionRotational{};       // 25
    std::span<const std::string_view> brakes{};  // 27 to 36
};

// clang-format off
constexpr std::string_view kSteamBrakes[] = {
    "    ",                                                                         // 27
    "    BrakeEquipmentType( \"Vacuum_brake, Handbrake, Auxilary_reservoir\" )",    // 28
    "    BrakeSystemType( \"Vacuum_single_pipe\" )",                                // 29
    "    MaxBrakeForce( 90kN )",                                                    // 30
    kSpaceLine,
    "    MaxHandbrakeForce( 80kN )",                                                // 31
    "    NumberOfHandbrakeLeverSteps ( 100 )",
    kSpaceLine,
    "        MaxReleaseRate ( 10 )",                                                // 32
    "        MaxApplicationRate ( 10 )",                                            // 33
    "        MaxAuxilaryChargingRate ( 10 )",                                       // 34
    "        BrakeCylinderPressureForMaxBrakeBrakeForce ( 21 )",                    // 35
};                                                                                  // 36: none

constexpr std::string_view kDieselBrakes[] = {
    kEmptyLine,                                                                     // 27
    "    AntiSlip ()",
    kEmptyLine,
    "    BrakeEquipmentType( \"Triple_valve, Auxilary_reservoir, Emergency_brake_reservoir\" )",  // 28
    kEmptyLine,
    "    BrakeSystemType( \"Air_single_pipe\" )",                                   // 29
    "    MaxBrakeForce( 140kN )",                                                   // 30
    kEmptyLine,
    "    EmergencyBrakeResMaxPressure( 110 )",                                      // 32
    "    TripleValveRatio( 2.5 )",
    "    MaxReleaseRate( 40 )",
    "    MaxApplicationRate( 40 )",                                                 // 33
    "    MaxAuxilaryChargingRate( 35 )",                                            // 34
    "    EmergencyResCapacity( 10 )",
    "    EmergencyResChargingRate( 30 )",
    "    BrakeCylinderPressureForMaxBrakeBrakeForce( 70 )",                         // 35
    kEmptyLine,
};                                                                                  // 36: none

constexpr std::string_view kElectricBrakes[] = {
    "    AntiSlip ()",                                                              // 27
    "    ",
    "    BrakeEquipmentType( \"Air_twin_pipe, Distributor\" )",                     // 28
    kEmptyLine,
    "    BrakeSystemType( \"Air_twin_pipe\" )",                                     // 29
    "    ",
    "    MaxBrakeForce( 180kN )",                                                   // 30
    kEmptyLine,
    "    EmergencyBrakeResMaxPressure( 110 )",                                      // 32
    "    TripleValveRatio( 2.5 )",
    "    MaxReleaseRate( 20 )",
    "    MaxApplicationRate( 20 )",                                                 // 33
    "    MaxAuxilaryChargingRate( 30 )",                                            // 34
    "    EmergencyResCapacity( 10 )",
    "    EmergencyResChargingRate( 30 )",
    "    BrakeCylinderPressureForMaxBrakeBrakeForce( 70 )",                         // 35
    kEmptyLine,
    "    BrakeDistributorFullServicePressure( 82 )",                                // 36
    "    BrakeDistributorMaxAuxilaryResPressure( 110 )",
    "    BrakeDistributorEmergencyResPressure( 110 )",
    "    BrakeDistributorReleaseRate( 10 )",
    "    BrakeDistributorApplicationRate( 15 )",
    "    BrakeDistributorTrainPipeControlRatio( 2.03 )",
    "    BrakeDistributorNormalFullReleasePressure( 110 )",
    "    ",
};
// clang-format on

const EngineWagonRows kSteamRows{
    .afterHeader = kSpaceLine,
    .centreLine = true,
    .defaultMass = 96.25f,
    .inertiaEnding = "m ) )",
    .afterBuffers = kSpaceLine,
    .adheasion = "    Adheasion ( 0.15 0.3 2 0.5 )",
    .derailRailForce = "    DerailRailForce ( 240kN )",
    .derailBufferForce = "    DerailBufferForce ( 400kN )",
    .otherWheelsLong = settings::kLongWheels + 2,
    .otherRadiusSingle = settings::kSingleWheelRadius + 2,
    .frictionLinear = "        50N/m/s         1       -1mph       0       1",
    .frictionRotational = "        5.1N/rad/s      1       -1rad/s     0       1",
    .brakes = kSteamBrakes,
};

const EngineWagonRows kDieselRows{
    .afterHeader = kEmptyLine,
    .spacerAfterShape = true,
    .defaultMass = 155,
    .wheelRadiusAfterMass = true,
    .inertiaEnding = "m  ) )",
    .bufferStiffness = kWagonBufferStiffness,
    .bufferDamping = kWagonBufferDamping,
    .afterBuffers = kEmptyLine,
    .adheasion = kWagonAdheasion,
    .derailRailForce = "    DerailRailForce ( 2.5*155t )",
    .derailBufferForce = "    DerailBufferForce ( 500kN )",
    .otherWheelsLong = settings::kLongWheels + 1,
    .otherRadiusSingle = settings::kSingleWheelRadius + 1,
    .frictionLinear = kWagonFrictionLinear,
    .frictionRotational = kWagonFrictionRotational,
    .brakes = kDieselBrakes,
};

const EngineWagonRows kElectricRows{
    .afterHeader = kEmptyLine,
    .defaultMass = 90.7f,
    .wheelRadiusAfterMass = true,
    .inertiaEnding = "m ) )",
    .bufferStiffness = "            Stiffness ( 1e7N/m 0 )",
    .bufferDamping = "            Damping ( 1e6N/m/s 0 )",
    .afterBuffers = kEmptyLine,
    .maxBrakeForce = "    MaxBrakeForce ( 150kN )",
    .adheasion = kWagonAdheasion,
    .derailRailForce = "    DerailRailForce ( 230kN )",
    .derailBufferForce = "    DerailBufferForce ( 200kN )",
    .otherWheelsLong = settings::kLongWheels + 1,
    .otherRadiusSingle = settings::kSingleWheelRadius + 1,
    .frictionLinear = "        150N/m/s        1        -1mph        0        1",
    .frictionRotational = kWagonFrictionRotational,
    .brakes = kElectricBrakes,
};

const EngineWagonRows& RowsOf(Traction traction) {
    switch (traction) {
        case Traction::Steam:
            return kSteamRows;
        case Traction::Diesel:
            return kDieselRows;
        case Traction::Electric:
            break;
    }
    return kElectricRows;
}

std::string EngineSoundLine(const VehicleText& vehicle, std::string_view opening) {
    return std::string(opening) + vehicle.lowerName + "eng.sms\" )";
}

// Rows 37 to 41: intake points, the engine sound, the lights and the end of the Wagon block.
void WriteSteamEnding(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    if (vehicle.Long(settings::kLongIntakePoint) == 1) {  // 37
        WriteIntakePoint(file, "FuelCoal");
        WriteIntakePoint(file, "FuelWater");
    }
    file.Lines({kSpaceLine, EngineSoundLine(vehicle, "        Sound ( \""), kSpaceLine});  // 38
    WriteLights(file);                                                                     // 39
    file.Lines({"    )", kSpaceLine, kSpaceLine});                                         // 41
}

void WriteDieselEnding(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    if (vehicle.Long(settings::kLongIntakePoint) == 1) {  // 37
        WriteIntakePoint(file, "FuelDiesel");
    } else {
        file.Line("    IntakePoint ( 3.33 0.4 FuelDiesel )");
    }
    file.Line(kEmptyLine);
    WriteLights(file);                                         // 39
    file.Line(EngineSoundLine(vehicle, "    Sound (    \""));  // 40
    file.Lines({")", kEmptyLine});                             // 41
}

void WriteElectricEnding(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    file.Line(EngineSoundLine(vehicle, "        Sound (    \""));  // 38
    WriteLights(file);                                             // 39
    file.Lines({"    )", kEmptyLine});                             // 41
}

}  // namespace

void WriteEngineWagonBlock(VehicleText& vehicle, Traction traction) {
    const EngineWagonRows& rows = RowsOf(traction);
    MstsTextFile& file = vehicle.file;

    file.Lines({kSignatureLine, rows.afterHeader});                  // 1, 2
    file.Line("Wagon ( " + vehicle.inputs.projectName);              // 3
    file.Lines({"    Type ( Engine )",                               // 4
                "    WagonShape ( " + vehicle.lowerName + ".s )"});  // 5
    if (rows.spacerAfterShape) {
        file.Line("    ");  // 6
    }
    WriteSizeLine(vehicle);             // 7
    WriteCentreOfGravityLine(vehicle);  // 8
    if (rows.centreLine) {
        file.Line("    Centre ( 0m 0m 0m )");  // 9
    }
    WriteValueLine(file, "Mass", "t", vehicle.Single(settings::kSingleMass),  // 10
                   rows.defaultMass);
    if (rows.wheelRadiusAfterMass) {
        WriteFrontOrRearWheelRadius(vehicle, rows.otherWheelsLong, rows.otherRadiusSingle);  // 11
    }
    WriteInertiaTensorLine(vehicle, rows.inertiaEnding);                   // 12
    WriteCouplingSection(file, vehicle.Long(settings::kLongCouplerType));  // 13
    if (rows.bufferStiffness) {
        WriteBuffers(file, *rows.bufferStiffness, rows.bufferDamping);  // 14
    }
    file.Line(rows.afterBuffers);  // 15
    if (rows.maxBrakeForce) {
        file.Line(*rows.maxBrakeForce);  // 16
    }
    file.Lines({rows.adheasion, kDerailRailHeight, rows.derailRailForce,  // 17-20
                rows.derailBufferForce});
    if (!rows.wheelRadiusAfterMass) {
        WriteFrontOrRearWheelRadius(vehicle, rows.otherWheelsLong, rows.otherRadiusSingle);  // 21
    }
    WriteNumWheels(vehicle, rows.otherWheelsLong);                      // 22
    WriteFriction(file, rows.frictionLinear, rows.frictionRotational);  // 23-26
    for (const std::string_view line : rows.brakes) {                   // 27-36
        file.Line(line);
    }
    switch (traction) {  // 37-41
        case Traction::Steam:
            WriteSteamEnding(vehicle);
            break;
        case Traction::Diesel:
            WriteDieselEnding(vehicle);
            break;
        case Traction::Electric:
            WriteElectricEnding(vehicle);
            break;
    }
}

}  // namespace railwright::exportmsts
