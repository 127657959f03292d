// The wagon file (.wag) of a freight car, passenger car or tender.
#include "export/msts/EffectsAndLights.h"
#include "export/msts/VehicleTemplates.h"

namespace railwright::exportmsts {

// clang-format off
void WriteWagonTemplate(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    using enum settings::VehicleSubType;
    const settings::VehicleSubType subType = vehicle.SubType();
    const bool intakePoints = vehicle.Long(settings::kLongIntakePoint) == 1;

    file.Lines({kSignatureLine, kSpaceLine});                                           // 1, 2
    file.Line("Wagon ( " + vehicle.inputs.projectName);                                 // 3
    file.Line(subType == FreightCar     ? "    Type ( Freight )"                        // 4
              : subType == PassengerCar ? "    Type ( Carriage )"
                                        : "    Type ( Tender )");
    file.Line("    WagonShape ( " + vehicle.lowerName + ".s )");                        // 5
    WriteSizeLine(vehicle);                                                             // 6
    WriteCentreOfGravityLine(vehicle);                                                  // 7
    WriteValueLine(file, "Mass", "t", vehicle.Single(settings::kSingleMass), 27);       // 8
    WriteFrontOrRearWheelRadius(vehicle, settings::kLongWheels + 1,                     // 9
                                settings::kSingleWheelRadius + 1);
    WriteInertiaTensorLine(vehicle, "m ) )");                                           // 10
    WriteCouplingSection(file, vehicle.Long(settings::kLongCouplerType));               // 11
    WriteBuffers(file, kWagonBufferStiffness, kWagonBufferDamping);                     // 12-21
    file.Lines({
        kWagonAdheasion,                                                                // 22
        kDerailRailHeight,                                                              // 23
        "    DerailRailForce ( 2.5*27t )",                                              // 24: fixed, whatever the mass
        "    DerailBufferForce ( 400kN )",                                              // 25
    });
    WriteNumWheels(vehicle, settings::kLongWheels + 1);                                 // 26
    WriteFriction(file, kWagonFrictionLinear, kWagonFrictionRotational);                // 27-30

    if (subType == PassengerCar && vehicle.Long(settings::kLongViewPoint) == 1) {
        file.Lines({
            "    Inside (",                                                             // 31a
            "        PassengerCabinFile ( inside" + vehicle.lowerName + ".s )",         // 31b
        });
        WritePlaceholderPosition(file, "PassengerCabinHeadPos");                        // 31c
        file.Lines({
            "    RotationLimit ( 20 80 0 )",                                            // 31d
            "    StartDirection ( 0 0 0 )",                                             // 31e
            "    Sound ( \"genpasswagmodern.sms\" )",                                   // 31f
            "    )",                                                                    // 31g
        });
    } else if (subType == FreightCar && intakePoints) {
        WriteIntakePoint(file, "FreightGravel");                                        // 32
    } else if (subType == Tender && intakePoints) {
        WriteIntakePoint(file, "FuelCoal");                                             // 32
        WriteIntakePoint(file, "FuelWater");
    }

    file.Line(kSpaceLine);                                                              // 33
    WriteLights(file);                                                                  // 34
    // The Wagon block closes here, before the brake lines, as it always has.
    file.Lines({
        kSpaceLine,                                                                     // 35
        "    )",                                                                        // 36
        kSpaceLine,                                                                     // 37
        "    BrakeEquipmentType( \"Handbrake, Triple_valve, Auxilary_reservoir, Emergency_brake_reservoir\" )",  // 38
        "    BrakeSystemType( \"Air_single_pipe\" )",                                   // 39
        "    MaxBrakeForce( 50kN )",                                                    // 40
        kSpaceLine,                                                                     // 41
        "    MaxHandbrakeForce( 35kN )",                                                // 42
        "    NumberOfHandbrakeLeverSteps( 100 )",                                       // 43
        kSpaceLine,                                                                     // 44
        "    TripleValveRatio( 2.5 )",                                                  // 45
        "    MaxReleaseRate( 15 )",                                                     // 46
        "    MaxApplicationRate( 25 )",                                                 // 47
        "    MaxAuxilaryChargingRate( 5 )",                                             // 48
        "    EmergencyResCapacity( 7 )",                                                // 49
        "    EmergencyResChargingRate( 5 )",                                            // 50
        "    EmergencyBrakeResMaxPressure( 90 )",                                       // 51
        "    BrakeCylinderPressureForMaxBrakeBrakeForce( 50 )",                         // 52
        kSpaceLine,                                                                     // 53
    });
    file.Line(subType == PassengerCar                                                   // 54
                  ? "      Sound (    \"GenPassWagModern.sms\" )"
                  : "      Sound (    \"GenFreightWag2.sms\" )");
    file.Line(")");                                                                     // 55
}
// clang-format on

}  // namespace railwright::exportmsts
