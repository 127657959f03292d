// The Engine blocks of the steam, diesel and electric engine files. The three have little in
// common beyond their first line and the name, sound and text lines, so each is written out in
// full, row by row; the comments number the rows.
#include <string>

#include "export/msts/EffectsAndLights.h"
#include "export/msts/VehicleTemplates.h"

namespace railwright::exportmsts {
namespace {

// The maximum velocity is kept in km/h and written in mph.
void WriteMaxVelocity(VehicleText& vehicle, float defaultMph) {
    const float mph = vehicle.Single(settings::kSingleMaximumVelocity) / 8 * 5;
    WriteValueLine(vehicle.file, "MaxVelocity", "mph", mph, defaultMph);
}

// Diesel and electric engines have a head-out line only from its placeholder.
void WriteHeadOut(VehicleText& vehicle) {
    if (vehicle.Long(settings::kLongViewPoint) == 1) {
        WritePlaceholderPosition(vehicle.file, "HeadOut");
    }
}

void WriteTextBlocks(VehicleText& vehicle) {
    WriteTextBlock(vehicle.file, "Description", vehicle.inputs.description);
    WriteTextBlock(vehicle.file, "EngineOperatingProcedures", vehicle.inputs.operatingProcedures);
}

}  // namespace

void WriteTextBlock(MstsTextFile& file, std::string_view blockName, std::string_view text) {
    file.Line("    " + std::string(blockName) + " (");
    std::string line;
    for (const char character : text) {
        if (character == '\r') {
            file.Line("        \"" + line + "\\n\"+");
            line.clear();
        } else if (character != '\n') {
            line += character;
        }
    }
    file.Line(line.empty() ? "        \" \\n\"" : "        \"" + line + "\\n\"");
    file.Line("    )");
}

// clang-format off
void WriteSteamEngineBlock(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    file.Line("Engine ( " + vehicle.inputs.projectName);                                  // 1
    WriteSteamEffects(file);                                                              // 2
    file.Line(kSpaceLine);                                                                // 3
    file.Line("    Wagon (" + vehicle.lowerName + ")");                                   // 4
    file.Line(vehicle.Long(settings::kLongTenderRequired) == 1 ? "    IsTenderRequired ( 1 )"  // 5
                                                                : "    IsTenderRequired ( 0 )");
    file.Lines({
        "    Type ( Steam )",                                                             // 6
        "    MaxPower ( 1500kW )",                                                        // 7
        "    MaxForce ( 26927lbf )",                                                      // 8
    });
    WriteMaxVelocity(vehicle, 130);                                                       // 9
    WriteWheelRadius(file, "Wheels1", vehicle.Single(settings::kSingleWheelRadius + 1));  // 10
    file.Line("    Sanding ( 1e9mph )");                                                  // 11
    file.Line("    NumWheels ( " + std::to_string(vehicle.Long(settings::kLongWheels + 1)) + " )");  // 12
    file.Lines({
        "    BoilerLength ( 6.2m )",                                                      // 13
        "    BoilerVolume ( \"160*(ft^3)\" )",                                            // 14
        "    BoilerEffectivity ( 1.26 )",                                                 // 15
        "    DraftingEffect ( 0.8 )",                                                     // 16
        "    BoilerResponsiveness ( 1.22 )",                                              // 17
        "    CoalBurnage ( 3.6lb/hp/h )",                                                 // 18
        "    MaxBoilerOutput ( 32500lb/h )",                                              // 19
        "    NumCylinders ( 3 )",                                                         // 20
        "    CylinderStroke ( 26in )",                                                    // 21
        "    CylinderDiameter ( 19in )",                                                  // 22
        "    CylinderVolume ( \"12.8*(ft^3)\" )",                                         // 23
        "    CylinderEffectivity ( 1 )",                                                  // 24
        "    InjectorSizes ( 11mm 12mm )",                                                // 25
        "    ExhaustLimit ( 36000lb/h )",                                                 // 26
        "    PrimingFactor ( 1 )",                                                        // 27
        "    BlastExponent ( 0.9 )",                                                      // 28
        "    MaxBoilerPressure ( 180psi )",                                               // 29
        "    MaxFireMass ( 2500lb )",                                                     // 30
        "    IdealFireMass ( 1800lb )",                                                   // 31
        "    MaxWaterMass ( 4000lb )",                                                    // 32
        "    SafetyValvesSteamUsage ( 8000lb/h )",                                        // 33
        "    ShovelCoalMass ( 1lb )",                                                     // 34
        "    SmokeCombustion ( 1 )",                                                      // 35
        "    MaxTenderCoalMass ( 18000lb )",                                              // 36
        "    MaxTenderWaterMass ( 50000lb )",                                             // 37
        "    InjectorTypes( 0 1 )",                                                       // 38
        "    SuperHeater ( 1.23 )",                                                       // 39
        "    SteamSmokeUnitsPerPoundOfFuel( 1 )",                                         // 40
        "    SteamMaxSmokeUnitsReleaseRate( 10 )",                                        // 41
        "    MaxSteamHeatingPressure( 80 )",                                              // 42
        "    SafetyValvePressureDifference( 5 )",                                         // 43
        "    SteamGaugeGlassHeight( 10 )",                                                // 44
        kSpaceLine,                                                                       // 45
        "    BasicSteamUsage ( 1000lb/h )",                                               // 46
        "    BasicCoalUsage ( 850lb/h )",                                                 // 47
        "    InjectorLimits1 ( 50psi 0.6 1 )",                                            // 48
        "    InjectorLimits2 ( 60psi 0 1 )",                                              // 49
        "    CylinderCocksPowerEfficiency ( 0.9 )",                                       // 50
        "    SteamCylinderCocksOperation ( Manual )",                                     // 51
        kSpaceLine,                                                                       // 52
        "    VacuumBrakesSmallEjectorPowerRating ( 3.5 )",                                // 53
        "    VacuumBrakesMinBoilerPressureMaxVacuum ( 110 )",                             // 54
        "    VacuumBrakesSmallEjectorUsageRate ( 500 )",                                  // 55
        "    VacuumBrakesLargeEjectorUsageRate ( 2400 )",                                 // 56
        "    VacuumBrakesHasVacuumPump ( 0 )",                                            // 57
        kSpaceLine,                                                                       // 58
        "    TrainBrakesControllerMaxReleaseRate ( 12 )",                                 // 59
        "    TrainBrakesControllerMinSystemPressure ( 0 )",                               // 60
        "    TrainBrakesControllerMaxSystemPressure ( 21 )",                              // 61
        kSpaceLine,                                                                       // 62
        "    EngineBrakesControllerHasProportionalBrake ( 1 )",                           // 63
        "    EngineBrakesProportionalBrakeLag ( 0.9 )",                                   // 64
        kSpaceLine,                                                                       // 65
        "    BrakesEngineBrakeType( \"Vacuum_single_pipe\"  )",                           // 66
        "    BrakesTrainBrakeType( \"Vacuum_single_pipe\" )",                             // 67
        "    BrakesEngineControllers( \"Hand, Train\" )",                                 // 68
        kSpaceLine,                                                                       // 69
        "    SteamSmallestCutoff ( 8 )",                                                  // 70
        "    NumberOfDamperSteps ( 4 )",                                                  // 71
        kSpaceLine,                                                                       // 72
        "    RegulatorValveType ( Twin_port )",                                           // 73
        "    RegulatorSecondValveStartPosition ( 0.5 )",                                  // 74
        "    RegulatorPilotValveExponent ( 1.7 )",                                        // 75
        "    RegulatorSecondValveExponent ( 1.7 )",                                       // 76
        "    RegulatorPilotValveFullOpenning ( 0.3 )",                                    // 77
        "    RegulatorMainValveInitialOpenning ( 0.4 )",                                  // 78
        kSpaceLine,                                                                       // 79
        "    SteamBlowerEffectExponent ( 0.9 )",                                          // 80
        "    SteamBlowerEfficiencyExponent ( 1.1 )",                                      // 81
        "    SteamBlowerMaxSteamUsageRate( 500 ) comment( lbs/h )",                       // 82
        "    SteamBlowerMaxProportionOfBlastEffect ( 0.15 )",                             // 83
        kSpaceLine,                                                                       // 84
        "    SteamWaterScoopMinPickupSpeed( 25 ) comment( mph )",                         // 85
        "    SteamWaterScoopMaxPickupSpeed( 60 ) comment( mph )",                         // 86
        "    SteamWaterScoopResistance( 8500N )",                                         // 87
        "    SteamWaterScoopMaxPickupRate ( 1000 )",                                      // 88
        kSpaceLine,                                                                       // 89
        "    SteamSmokeUnitsPerPoundOfFuel ( 6.3 )",                                      // 90
        kEmptyLine,                                                                       // 91
    });
    file.Line("    CabView (" + vehicle.lowerName + ".cvf)");                             // 92
    if (vehicle.Long(settings::kLongViewPoint) == 1) {                                    // 93
        WritePlaceholderPosition(file, "HeadOut");
    } else {
        file.Line("    HeadOut (  1.7 3.1 -5.5 )");
    }
    file.Lines({
        kEmptyLine,                                                                       // 94
        "        EngineControllers (",                                                    // 95
        kEmptyLine,                                                                       // 96
        "            Regulator ( 0 1 0.025 0",                                            // 97
        "                NumNotches ( 0 )",                                               // 98
        "            )",                                                                  // 99
        "            Cutoff    ( -0.55 0.75 0.01 0",                                      // 100
        "                NumNotches ( 0 )",                                               // 101
        "            )",                                                                  // 102
        "            Brake_Train ( 0 1 0.01 0.65",                                        // 103
        "                NumNotches( 3",                                                  // 104
        "                    Notch( 0     1 TrainBrakesControllerReleaseStart )",         // 105
        "                    Notch( 0.4   1 TrainBrakesControllerRunningStart )",         // 106
        "                    Notch( 0.5   1 TrainBrakesControllerApplyStart )",           // 107
        "                )",                                                              // 108
        "            )",                                                                  // 109
        "            Brake_Hand ( 0 1 0.0125 0",                                          // 110
        "                NumNotches ( 0 )",                                               // 111
        "            )",                                                                  // 112
        "            FireDoor ( 0 1 0.1 0",                                               // 113
        "                NumNotches ( 0 )",                                               // 114
        "            )",                                                                  // 115
        "            Sanding( 0 1 0 )",                                                   // 116
        "            Blower ( 0 1 0.025 0.2",                                             // 117
        "                NumNotches ( 0 )",                                               // 118
        "            )",                                                                  // 119
        "            HeatingTap ( 0 1 0.025 0",                                           // 120
        "                NumNotches ( 0 )",                                               // 121
        "            )",                                                                  // 122
        "            Shovel ( 0 1 0.1 0",                                                 // 123
        "                NumNotches ( 0 )",                                               // 124
        "            )",                                                                  // 125
        "            DampersFront ( 0 1 0.1 1",                                           // 126
        "                NumNotches ( 0 )",                                               // 127
        "            )",                                                                  // 128
        "            DampersBack ( 0 1 0.1 0",                                            // 129
        "                NumNotches ( 0 )",                                               // 130
        "            )",                                                                  // 131
        "            Injector1Steam ( 0 1 0 )",                                           // 132
        "            Injector2Steam ( 0 1 0 )",                                           // 133
        "            Injector1Water ( 0 1 0.1 0",                                         // 134
        "                NumNotches ( 0 )",                                               // 135
        "            )",                                                                  // 136
        "            Injector2Water ( 0 1 0.1 0",                                         // 137
        "                NumNotches ( 0 )",                                               // 138
        "            )",                                                                  // 139
        "            CylinderCocks ( 0 1 1 )",                                            // 140
        "            Whistle ( 0 1 0 )",                                                  // 141
        "            WaterScoop ( 0 1 0 )",                                               // 142
        "            SmallEjectorOrCompressor( 0 1 1 )",                                  // 143
        "            Headlights( 0 1 0 )",                                                // 144
        "        )",                                                                      // 145
        kSpaceLine,                                                                       // 146
        "    EngineVariables( 775 1650 3000 160 0.5 35000 11200 350 1 1 )",               // 147
    });
    file.Line("        Sound ( \"" + vehicle.lowerName + "cab.sms\" )");                  // 148
    file.Line("        Name ( \"" + vehicle.inputs.title + "\" )");                       // 149
    WriteTextBlocks(vehicle);                                                             // 150, 151
    file.Line(")");                                                                       // 152
}

void WriteDieselEngineBlock(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    file.Line("Engine ( " + vehicle.inputs.projectName);                                  // 1
    file.Line(kEmptyLine);                                                                // 2
    WriteDieselEffects(file);                                                             // 3
    file.Line(kEmptyLine);                                                                // 4
    file.Line("    Wagon ( " + vehicle.inputs.projectName + " )");                        // 5
    file.Lines({
        "    Type ( Diesel )",                                                            // 6
        "    MaxPower ( 3263kW )",                                                        // 7
        "    MaxForce ( 650.65kN )",                                                      // 8
        "    MaxContinuousForce ( 550kN )",                                               // 9
        "    RunUpTimeToMaxForce ( 30.0 )",                                               // 10
        "    MaxDieselLevel( 4720gal ) ",                                                 // 11
    });
    WriteMaxVelocity(vehicle, 74);                                                        // 12
    file.Line("    MaxCurrent ( 1800A )");                                                // 13
    WriteFrontOrRearWheelRadius(vehicle, settings::kLongWheels + 1, settings::kSingleWheelRadius + 1);  // 14
    file.Line("    Sanding ( 6mph )");                                                    // 15
    WriteNumWheels(vehicle, settings::kLongWheels + 1);                                   // 16
    file.Lines({
        "    MaxTemperature ( 120 )",                                                     // 17
        "    MaxOilPressure ( 90 )",                                                      // 18
        kEmptyLine,                                                                       // 19
        "    AirBrakesAirCompressorPowerRating( 1.7 )",                                   // 20
        "    AirBrakesMainMinResAirPressure( 0 )",                                        // 21
        "    AirBrakesMainMaxAirPressure( 130 )",                                         // 22
        "    AirBrakesMainResVolume( 8 )",                                                // 23
        "    AirBrakesAirCompressorWattage( 19000 )",                                     // 24
        "    AirBrakesCompressorRestartPressure( 125 )",                                  // 25
        "    AirBrakesAirUsedPerPoundsOfBrakePipePressure( 0.27 )",                       // 26
        "    AirBrakesHasLowPressureTest( 1 )",                                           // 27
        "    AirBrakesIsCompressorElectricOrMechanical( 1 )",                             // 28
        kEmptyLine,                                                                       // 29
        "    EngineBrakesControllerMinPressureReduction( 6 )",                            // 30
        "    TrainBrakesControllerMinPressureReduction( 6 )",                             // 31
        "    EngineBrakesControllerHasProportionalBrake( 1 )",                            // 32
        "    EngineBrakesProportionalBrakeLag( 0.9 )",                                    // 33
        "    EngineBrakesControllerMaxApplicationRate( 20 )",                             // 34
        "    TrainBrakesControllerMaxApplicationRate( 10 )",                              // 35
        "    EngineBrakesControllerMaxReleaseRate( 20 )",                                 // 36
        "    TrainBrakesControllerMaxReleaseRate( 4 )",                                   // 37
        "    EngineBrakesControllerEmergencyApplicationRate( 50 )",                       // 38
        "    TrainBrakesControllerEmergencyApplicationRate( 50 )",                        // 39
        "    EngineBrakesControllerMinSystemPressure( 0 )",                               // 40
        "    TrainBrakesControllerMinSystemPressure( 0 )",                                // 41
        "    EngineBrakesControllerMaxSystemPressure( 90 )",                              // 42
        "    TrainBrakesControllerMaxSystemPressure( 90 )",                               // 43
        "    EngineBrakesControllerEmergencyBrakeTimePenalty( 0 )",                       // 44
        "    TrainBrakesControllerEmergencyBrakeTimePenalty( 0 )",                        // 45
        "    EngineBrakesControllerFullServicePressureDrop( 26 )",                        // 46
        "    TrainBrakesControllerFullServicePressureDrop( 26 )",                         // 47
        kEmptyLine,                                                                       // 48
        "    DynamicBrakesMinUsableSpeed( 5 )",                                           // 49
        "    DynamicBrakesMaximumEffectiveSpeed( 25 )",                                   // 50
        "    DynamicBrakesMaximumForce( 100kN )",                                         // 51
        "    DynamicBrakesResistorCurrentLimit ( 700 )",                                  // 52
        "    DynamicBrakesCutInSpeed( 8 )",                                               // 53
        "    DynamicBrakesMaxAirBrakePressure ( 15 )",                                    // 54
        "    DynamicBrakesFadingSpeed( 25 )",                                             // 55
        "    DynamicBrakesDelayTimeBeforeEngaging ( 10 )",                                // 56
        "    DynamicBrakesMaximumSpeedForFadeOut ( 65 )",                                 // 57
        "    DynamicBrakesEffectAtMaximumFadeOut( 0 )",                                   // 58
        "    DynamicBrakesHigherSpeedCurveExponent( 1 )",                                 // 59
        "    DynamicBrakesLowerSpeedCurveExponent( 1 )",                                  // 60
        "    DynamicBrakesNumberOfControllerNotches( 8 )",                                // 61
        "    DynamicBrakeHasAutoBailOff( 1 )",                                            // 62
        kEmptyLine,                                                                       // 63
        "    BrakesEngineBrakeType( \"Air_single_pipe\"  )",                              // 64
        "    BrakesTrainBrakeType( \"Air_single_pipe\" )",                                // 65
        "      BrakesEngineControllers( \"Independent, Train, Dynamic\" )",               // 66
        kEmptyLine,                                                                       // 67
        "    EngineBrakesControllerDirectControlExponent( 1 )",                           // 68
        "    ",                                                                           // 69
    });
    file.Line("    CabView ( " + vehicle.lowerName + ".cvf )");                           // 70
    WriteHeadOut(vehicle);                                                                // 71
    file.Lines({
        "    MaxDieselLevel ( 5300gal )",                                                 // 72
        "    DieselUsedPerHourAtMaxPower ( 60gal )",                                      // 73
        "    DieselUsedPerHourAtIdle ( 10gal )",                                          // 74
        kEmptyLine,                                                                       // 75
        "    DieselSmokeEffectInitialMagnitude( 2.2 )",                                   // 76
        "    DieselSmokeEffectMaxMagnitude( 2.2 )",                                       // 77
        "    DieselSmokeEffectInitialSmokeRate( 0.2 )",                                   // 78
        "    DieselSmokeEffectMaxSmokeRate( 10 )",                                        // 79
        kEmptyLine,                                                                       // 80
        "    DieselEngineIdleRPM( 315 )",                                                 // 81
        "    DieselEngineMaxRPM( 900 )",                                                  // 82
        "    DieselEngineSpeedOfMaxTractiveEffort( 13mph )",                              // 83
        "    DieselEngineMaxRPMChangeRate( 40 )",                                         // 84
        kEmptyLine,                                                                       // 85
        "    DoesHornTriggerBell( 1 )",                                                   // 86
        "    ",                                                                           // 87
        "    MaxSandingTime( -1 )",                                                       // 88
        kEmptyLine,                                                                       // 89
        "    EmergencyStopMonitor(",                                                      // 90
        "            MonitoringDeviceMonitorTimeLimit( 0 )",                              // 91
        "            MonitoringDeviceAlarmTimeLimit( 0 )",                                // 92
        "            MonitoringDevicePenaltyTimeLimit( 0 )",                              // 93
        "            MonitoringDeviceCriticalLevel( 0 )",                                 // 94
        "            MonitoringDeviceResetLevel( 0 )",                                    // 95
        "            MonitoringDeviceAppliesFullBrake( 0 )",                              // 96
        "            MonitoringDeviceAppliesEmergencyBrake( 1 )",                         // 97
        "            MonitoringDeviceAppliesCutsPower( 1 )",                              // 98
        "            MonitoringDeviceAppliesShutsDownEngine( 0 )",                        // 99
        "            )",                                                                  // 100
        kEmptyLine,                                                                       // 101
        "    VigilanceMonitor(",                                                          // 102
        "        MonitoringDeviceMonitorTimeLimit( 25 )",                                 // 103
        "        MonitoringDeviceAlarmTimeLimit( 17 )",                                   // 104
        "        MonitoringDevicePenaltyTimeLimit( 0 )",                                  // 105
        "        MonitoringDeviceCriticalLevel( 0 )",                                     // 106
        "        MonitoringDeviceResetLevel( 0 )",                                        // 107
        "        MonitoringDeviceAppliesFullBrake( 1 )",                                  // 108
        "        MonitoringDeviceAppliesEmergencyBrake( 0 )",                             // 109
        "        MonitoringDeviceAppliesCutsPower( 0 )",                                  // 110
        "        MonitoringDeviceAppliesShutsDownEngine( 0 )",                            // 111
        "        )",                                                                      // 112
        "        ",                                                                       // 113
        "    OverspeedMonitor(",                                                          // 114
        "        MonitoringDeviceMonitorTimeLimit( 0 )",                                  // 115
        "        MonitoringDeviceAlarmTimeLimit( 0 )",                                    // 116
        "        MonitoringDevicePenaltyTimeLimit( 0 )",                                  // 117
        "        MonitoringDeviceCriticalLevel( 76 )",                                    // 118
        "        MonitoringDeviceResetLevel( 0.1 )",                                      // 119
        "        MonitoringDeviceAppliesFullBrake( 1 )",                                  // 120
        "        MonitoringDeviceAppliesEmergencyBrake( 1 )",                             // 121
        "        MonitoringDeviceAppliesCutsPower( 1 )",                                  // 122
        "        MonitoringDeviceAppliesShutsDownEngine( 0 )",                            // 123
        "        MonitoringDeviceAlarmTimeBeforeOverSpeed( 5 )",                          // 124
        "        MonitoringDeviceDoesSuppressionReset( 0 )",                              // 125
        "        MonitoringDeviceTriggerOnOverspeed( 74 )",                               // 126
        "        MonitoringDeviceResetOnZeroSpeed( 1 )",                                  // 127
        "        MonitoringDeviceResetOnResetButton( 0 )",                                // 128
        "        )",                                                                      // 129
        kSpaceLine,                                                                       // 130
        "     EngineControllers (",                                                       // 131
        "        Throttle ( 0 1 0.125 0 ",                                                // 132
        "            NumNotches ( 9",                                                     // 133
        "              Notch ( 0     0 Dummy )",                                          // 134
        "              Notch ( 0.125   0 Dummy )",                                        // 135
        "              Notch ( 0.25    0 Dummy )",                                        // 136
        "              Notch ( 0.375   0 Dummy )",                                        // 137
        "              Notch ( 0.5     0 Dummy )",                                        // 138
        "              Notch ( 0.625   0 Dummy )",                                        // 139
        "              Notch ( 0.75    0 Dummy )",                                        // 140
        "              Notch ( 0.875   0 Dummy )",                                        // 141
        "              Notch ( 1     0 Dummy )",                                          // 142
        "            )",                                                                  // 143
        "        )",                                                                      // 144
        "        Brake_Engine ( 0 1 0.0125 0 ",                                           // 145
        "            NumNotches ( 1",                                                     // 146
        "              Notch ( 0     1 Dummy )              ",                            // 147
        "            )",                                                                  // 148
        "        )",                                                                      // 149
        "        Brake_Train ( 0 1 0.0125 0.75 ",                                         // 150
        "            NumNotches ( 5",                                                     // 151
        "              Notch ( 0    0 TrainBrakesControllerReleaseStart )",               // 152
        "              Notch ( 0.3  1 TrainBrakesControllerGraduatedSelfLapLimitedStart )",  // 153
        "              Notch ( 0.85 0 TrainBrakesControllerSuppressionStart )",           // 154
        "              Notch ( 0.9  0 TrainBrakesControllerContinuousServiceStart )",     // 155
        "              Notch ( 0.95 0 TrainBrakesControllerEmergencyStart )",             // 156
        "            )",                                                                  // 157
        "        )",                                                                      // 158
        "        Brake_Dynamic ( 0 1 0.1111 0 ",                                          // 159
        "            NumNotches ( 10",                                                    // 160
        "              Notch ( 0     0 Dummy )",                                          // 161
        "              Notch ( 0.1111  0 Dummy )",                                        // 162
        "              Notch ( 0.2222  0 Dummy )",                                        // 163
        "              Notch ( 0.3333  0 Dummy )",                                        // 164
        "              Notch ( 0.4444  0 Dummy )",                                        // 165
        "              Notch ( 0.5555  0 Dummy )",                                        // 166
        "              Notch ( 0.6666  0 Dummy )",                                        // 167
        "              Notch ( 0.7777  0 Dummy )",                                        // 168
        "              Notch ( 0.8888  0 Dummy )",                                        // 169
        "              Notch ( 0.9999  0 Dummy )",                                        // 170
        "            )",                                                                  // 171
        "        )",                                                                      // 172
        "        Combined_Control( 0 1 0.5 0.5 throttle dynamic )",                       // 173
        "        DirControl ( -1 0 1 1 )",                                                // 174
        "        BellToggle( 0 1 0 )",                                                    // 175
        "        AWS ( 0 1 0 )",                                                          // 176
        "        Sanding ( 0 1 0 )",                                                      // 177
        "        Horn ( 0 1 0 )",                                                         // 178
        "        Wipers ( 0 1 0 )",                                                       // 179
        "        EmergencyStopToggle( 0 1 0 )",                                           // 180
        "        Vigilance ( 0 1 0 )",                                                    // 181
        "        Headlights ( 0 0.25 1 0 )",                                              // 182
        "        BailOffButton( 0 1 0 )",                                                 // 183
        "      )",                                                                        // 184
        kEmptyLine,                                                                       // 185
        "    EngineVariables ( 5300 )",                                                   // 186
    });
    file.Line("     Sound (    \"" + vehicle.lowerName + "cab.sms\" )");                  // 187
    file.Line("     Name ( \"" + vehicle.inputs.title + "\" )");                          // 188
    WriteTextBlocks(vehicle);                                                             // 189, 190
    file.Lines({
        kEmptyLine,                                                                       // 191
        ")",                                                                              // 192
    });
}

void WriteElectricEngineBlock(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    file.Line("Engine ( " + vehicle.inputs.projectName);                                  // 1
    file.Line("    Wagon ( " + vehicle.inputs.projectName + " )");                        // 2
    file.Lines({
        "    Type ( Electric )",                                                          // 3
        "    MaxPower ( 9200kW )",                                                        // 4
        "    MaxForce ( 220kN#est )",                                                     // 5
        "    MaxContinuousForce ( 200kN )",                                               // 6
    });
    WriteMaxVelocity(vehicle, 165);                                                       // 7
    file.Line("    MaxCurrent ( 2000A )");                                                // 8
    WriteFrontOrRearWheelRadius(vehicle, settings::kLongWheels + 1, settings::kSingleWheelRadius + 1);  // 9
    file.Line("    Sanding ( 1e9mph )");                                                  // 10
    WriteNumWheels(vehicle, settings::kLongWheels + 1);                                   // 11
    file.Line(kEmptyLine);                                                                // 12
    file.Line("    CabView ( " + vehicle.lowerName + ".cvf )");                           // 13
    WriteHeadOut(vehicle);                                                                // 14
    file.Lines({
        kEmptyLine,                                                                       // 15
        "    AirBrakesAirCompressorPowerRating( 3.5 )",                                   // 16
        "    AirBrakesMainMinResAirPressure( 0 )",                                        // 17
        "    AirBrakesMainMaxAirPressure( 140 )",                                         // 18
        "    AirBrakesMainResVolume( 10 )",                                               // 19
        "    AirBrakesAirCompressorWattage( 19000 )",                                     // 20
        "    AirBrakesCompressorRestartPressure( 130 )",                                  // 21
        "    AirBrakesAirUsedPerPoundsOfBrakePipePressure( 0.5 )",                        // 22
        "    AirBrakesHasLowPressureTest( 1 )",                                           // 23
        "    AirBrakesIsCompressorElectricOrMechanical( 1 )",                             // 24
        kEmptyLine,                                                                       // 25
        "    EngineBrakesControllerHasProportionalBrake( 1 )",                            // 26
        "    EngineBrakesProportionalBrakeLag( 1 )",                                      // 27
        kEmptyLine,                                                                       // 28
        "    TrainBrakesControllerMinPressureReduction( 6 )",                             // 29
        "    TrainBrakesControllerMaxApplicationRate( 10 )",                              // 30
        "    TrainBrakesControllerMaxReleaseRate( 2 )",                                   // 31
        "    TrainBrakesControllerEmergencyApplicationRate( 40 )",                        // 32
        "    TrainBrakesControllerMinSystemPressure( 0 )",                                // 33
        "    TrainBrakesControllerMaxSystemPressure( 110 )",                              // 34
        "    TrainBrakesControllerEmergencyBrakeTimePenalty( 60 )",                       // 35
        "    TrainBrakesControllerFullServicePressureDrop( 26 )",                         // 36
        kEmptyLine,                                                                       // 37
        "    DynamicBrakesMinUsableSpeed( 5 )",                                           // 38
        "    DynamicBrakesMaximumEffectiveSpeed( 25 )",                                   // 39
        "    DynamicBrakesMaximumForce( 20000 )",                                         // 40
        "    DynamicBrakesResistorCurrentLimit ( 5000 )",                                 // 41
        "    DynamicBrakesCutInSpeed( 8 )",                                               // 42
        "    DynamicBrakesMaxAirBrakePressure ( 15 )",                                    // 43
        "    DynamicBrakesFadingSpeed( 25 )",                                             // 44
        "    DynamicBrakesDelayTimeBeforeEngaging ( 10 )",                                // 45
        "    DynamicBrakesMaximumSpeedForFadeOut ( 65 )",                                 // 46
        "    DynamicBrakesEffectAtMaximumFadeOut( 0 )",                                   // 47
        "    DynamicBrakesHigherSpeedCurveExponent( 1 )",                                 // 48
        "    DynamicBrakesLowerSpeedCurveExponent( 1 )",                                  // 49
        "    DynamicBrakesNumberOfControllerNotches( 8 )",                                // 50
        kEmptyLine,                                                                       // 51
        "    BrakesEngineBrakeType( \"Air_twin_pipe\"  )",                                // 52
        "    BrakesTrainBrakeType( \"Air_twin_pipe\" )",                                  // 53
        "    BrakesEngineControllers( \"Train, Dynamic, Blended\" )",                     // 54
        "    ",                                                                           // 55
        "    DoesBrakeCutPower( 1 )",                                                     // 56
        "    DoesHornTriggerBell( 1 )",                                                   // 57
        "    BrakeCutsPowerAtBrakeCylinderPressure( 15 )",                                // 58
        "    ",                                                                           // 59
        "    EmergencyStopMonitor(",                                                      // 60
        "        MonitoringDeviceMonitorTimeLimit( 0 )",                                  // 61
        "        MonitoringDeviceAlarmTimeLimit( 0 )",                                    // 62
        "        MonitoringDevicePenaltyTimeLimit( 0 )",                                  // 63
        "        MonitoringDeviceCriticalLevel( 0 )",                                     // 64
        "        MonitoringDeviceResetLevel( 0 )",                                        // 65
        "        MonitoringDeviceAppliesFullBrake( 0 )",                                  // 66
        "        MonitoringDeviceAppliesEmergencyBrake( 1 )",                             // 67
        "        MonitoringDeviceAppliesCutsPower( 1 )",                                  // 68
        "        MonitoringDeviceAppliesShutsDownEngine( 0 )",                            // 69
        "        )",                                                                      // 70
        kEmptyLine,                                                                       // 71
        "    VigilanceMonitor(",                                                          // 72
        "        MonitoringDeviceMonitorTimeLimit( 45 )",                                 // 73
        "        MonitoringDeviceAlarmTimeLimit( 37 )",                                   // 74
        "        MonitoringDevicePenaltyTimeLimit( 0 )",                                  // 75
        "        MonitoringDeviceCriticalLevel( 0 )",                                     // 76
        "        MonitoringDeviceResetLevel( 0 )",                                        // 77
        "        MonitoringDeviceAppliesFullBrake( 1 )",                                  // 78
        "        MonitoringDeviceAppliesEmergencyBrake( 0 )",                             // 79
        "        MonitoringDeviceAppliesCutsPower( 0 )",                                  // 80
        "        MonitoringDeviceAppliesShutsDownEngine( 0 )",                            // 81
        "        )",                                                                      // 82
        kEmptyLine,                                                                       // 83
        "    OverspeedMonitor(",                                                          // 84
        "        MonitoringDeviceMonitorTimeLimit( 0 )",                                  // 85
        "        MonitoringDeviceAlarmTimeLimit( 5 )",                                    // 86
        "        MonitoringDevicePenaltyTimeLimit( 0 )",                                  // 87
        "        MonitoringDeviceCriticalLevel( 151 )",                                   // 88
        "        MonitoringDeviceResetLevel( 0 )",                                        // 89
        "        MonitoringDeviceAppliesFullBrake( 1 )",                                  // 90
        "        MonitoringDeviceAppliesEmergencyBrake( 1 )",                             // 91
        "        MonitoringDeviceAppliesCutsPower( 1 )",                                  // 92
        "        MonitoringDeviceAppliesShutsDownEngine( 0 )",                            // 93
        "        MonitoringDeviceTriggerOnTrackOverspeed( 1 )",                           // 94
        "        MonitoringDeviceTriggerOnTrackOverspeedMargin( 2 )",                     // 95
        "        MonitoringDeviceResetOnZeroSpeed( 1 ) ",                                 // 96
        "        MonitoringDeviceResetOnResetButton( 0 )",                                // 97
        "        )",                                                                      // 98
        kEmptyLine,                                                                       // 99
        kEmptyLine,                                                                       // 100
    });
    file.Line("    Sound ( \"" + vehicle.lowerName + "cab.sms\" )");                      // 101
    file.Line("    Name ( \"" + vehicle.inputs.title + "\" )");                           // 102
    WriteTextBlocks(vehicle);                                                             // 103, 104
    file.Lines({
        "    ",                                                                           // 105
        "    EngineControllers (",                                                        // 106
        "      Throttle ( 0 1 0.025 0",                                                   // 107
        "        NumNotches ( 0 )",                                                       // 108
        "      )",                                                                        // 109
        "      Brake_Train ( 0 1 0.0125 0.5 ",                                            // 110
        "        NumNotches ( 6",                                                         // 111
        "            Notch ( 0     0 TrainBrakesControllerReleaseStart )",                // 112
        "            Notch ( 0.2    0 TrainBrakesControllerHoldLappedStart )",            // 113
        "            Notch ( 0.25    1 TrainBrakesControllerGraduatedSelfLapLimitedHoldingStart )",  // 114
        "            Notch ( 0.85    0 TrainBrakesControllerSuppressionStart )",          // 115
        "            Notch ( 0.9     0 TrainBrakesControllerContinuousServiceStart )",    // 116
        "            Notch ( 0.95    0 TrainBrakesControllerEmergencyStart )",            // 117
        "        )",                                                                      // 118
        "      )",                                                                        // 119
        "      Brake_Dynamic ( 0 1 0.0125 0 ",                                            // 120
        "        NumNotches( 0 )",                                                        // 121
        "      )",                                                                        // 122
        "      DirControl ( -1 0 1 1 )",                                                  // 123
        "      EmergencyStopResetToggle( 0 1 0 )",                                        // 124
        "      EmergencyStopToggle( 0 1 0 )",                                             // 125
        "      AWS ( 0 1 0 )",                                                            // 126
        "      Sanding ( 0 1 0 )",                                                        // 127
        "      Horn ( 0 1 0 )",                                                           // 128
        "      Vigilance ( 0 1 0 )",                                                      // 129
        "      PantographToggle1 ( 0 1 1 )",                                              // 130
        "      Headlights ( 0 0.25 1 0 )",                                                // 131
        "      Wipers ( 0 1 0 )",                                                         // 132
        "      BellToggle( 0 1 0 )",                                                      // 133
        "    )",                                                                          // 134
        ")",                                                                              // 135
    });
}

// clang-format on

}  // namespace railwright::exportmsts
