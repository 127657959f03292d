// The settings that the host keeps with every model for Railwright: 6 floats (UserDataSingles),
// 46 integers (UserDataLongs) and one text (UserDataString, see SettingsText.h). This file is the
// one place that names their slots; the wizard fills them, the plug-in and the exporters read
// them, always by these names.
#pragma once

#include <cstddef>
#include <cstdint>

namespace railwright::settings {

inline constexpr size_t kSingleCount = 6;
inline constexpr size_t kLongCount = 46;

// The wheel groups: 0 forward of the drive wheels (the front wheels of a vehicle without drive
// wheels), 1 a steam engine's drive wheels or another vehicle's rear wheels, 2 behind the drive
// wheels. The slots marked "+ group" hold group 0, and groups 1 and 2 in the two slots after it.
inline constexpr size_t kWheelGroupCount = 3;

// UserDataSingles. Real values of 0 mean "Default": the exporters use their own.
inline constexpr size_t kSingleMass = 0;             // metric tonnes
inline constexpr size_t kSingleOldWheelRadius = 1;   // metres; projects stored before the version
inline constexpr size_t kSingleMaximumVelocity = 2;  // km/h
inline constexpr size_t kSingleWheelRadius = 3;      // metres, + group; 0 measures the wheels

// UserDataLongs. A check box is stored as its state (0 or 1); those marked "+1" as their state +
// 1, so that 0 means never stored (and reads as checked). Lists are stored as the entry's index.
inline constexpr size_t kLongProjectType = 0;      // ProjectType
inline constexpr size_t kLongCreateShape = 1;      // +1: write the shape
inline constexpr size_t kLongCreateShapeData = 2;  // +1: write the shape data file
inline constexpr size_t kLongCreatexFile = 3;      // +1: write the vehicle files or the REF file
inline constexpr size_t kLongConvertTextures = 4;  // +1: convert the textures
inline constexpr size_t kLongWheels = 5;           // wheel count, + group
inline constexpr size_t kLongRods = 8;             // connecting rods
// 9 is not used.
inline constexpr size_t kLongCouplerType = 10;        // 0 "Bar", 1 "Automatic", 2 "Chain"
inline constexpr size_t kLongStacks = 11;             // smoke stacks (count)
inline constexpr size_t kLongCylinders = 12;          // steam cylinders (count)
inline constexpr size_t kLongDieselExhaust = 13;      // diesel exhaust sources (count)
inline constexpr size_t kLongDrainPipes = 14;         // cylinder drain pipes (count)
inline constexpr size_t kLongWhistles = 15;           // whistles (count)
inline constexpr size_t kLongSafetyValves = 16;       // safety valves (count)
inline constexpr size_t kLongMirrorLeft = 17;         // a left mirror
inline constexpr size_t kLongMirrorRight = 18;        // a right mirror
inline constexpr size_t kLongWiperLeft = 19;          // a left wiper
inline constexpr size_t kLongWiperRight = 20;         // a right wiper
inline constexpr size_t kLongPantographs = 21;        // pantographs (count)
inline constexpr size_t kLongArmsPerPantograph = 22;  // arms of each pantograph (count)
inline constexpr size_t kLongCompression = 23;        // 0 uncompressed, 1 lossless, 2 lossy
inline constexpr size_t kLongTenderRequired = 24;     // the engine needs a tender
inline constexpr size_t kLongSound = 25;              // +1: copy the default sounds
inline constexpr size_t kLongCabView = 26;            // +1: copy the default cab view
inline constexpr size_t kLongViewPoint = 27;          // passenger and head-out view points
inline constexpr size_t kLongIntakePoint = 28;        // intake points from placeholders
inline constexpr size_t kLongAnimation = 29;          // +1: build the drive-wheel animation
inline constexpr size_t kLongDistanceLevels = 30;     // 0 none, 1 simplified, 2 standard, 3 custom
inline constexpr size_t kLongRetainSubObjects = 31;   // keep the model's sub-objects in the shape
inline constexpr size_t kLongProjectSubType = 32;     // the index in the type's sub-type list
inline constexpr size_t kLongSettingsVersion = 33;    // kSettingsVersion; 0 before it existed
inline constexpr size_t kLongBogie = 34;              // the wheel group is a bogie, + group
inline constexpr size_t kLongMsts = 37;               // export to Microsoft Train Simulator
inline constexpr size_t kLongRailSimulator = 38;      // export to Rail Simulator
inline constexpr size_t kLongTrainz = 39;             // prepare for Trainz
inline constexpr size_t kLongRail3D = 40;             // prepare for Rail3D
inline constexpr size_t kLongBve = 41;                // prepare for BVE
// 42 is not used.
inline constexpr size_t kLongExportToDocumentsFolder =
    43;  // export under the documents folder, not the simulator
inline constexpr size_t kLongRailWorks = 44;                 // export to RailWorks
inline constexpr size_t kLongDefaultGroupCustomFields = 45;  // +1: set default custom fields

// The layout version written into every saved project.
inline constexpr int32_t kSettingsVersion = 818;

// What a "+1" slot holds when its box is checked.
inline constexpr int32_t kChecked = 2;

// The project types, as stored in kLongProjectType (the order of the wizard's type list).
enum class ProjectType : int32_t { RailNetwork = 0, RailVehicle = 1, Scenery = 2 };

// The sub-types, as stored in kLongProjectSubType: each type numbers its own list.
enum class NetworkSubType : int32_t { Bridge = 0, Buffer = 1, Signal = 2, Track = 3, Tunnel = 4 };
enum class VehicleSubType : int32_t {
    DieselEngine = 0,
    ElectricEngine = 1,
    FreightCar = 2,
    PassengerCar = 3,
    SteamEngine = 4,
    TankEngine = 5,
    Tender = 6,
};
enum class ScenerySubType : int32_t { Building = 0, Vegetation = 1, Vehicle = 2 };

// The stored number of a type or sub-type.
template <typename Enum>
constexpr int32_t Stored(Enum value) {
    return static_cast<int32_t>(value);
}

}  // namespace railwright::settings
