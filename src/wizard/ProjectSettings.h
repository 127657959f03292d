// The settings that the host keeps with the model for the wizard: 6 floats, 46 integers and one
// text, addressed by index. Every index the system uses is named here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace railwright::wizard {

inline constexpr size_t kSingleCount = 6;
inline constexpr size_t kLongCount = 46;

// The layout version written into every saved project; 0 means a project stored before it.
inline constexpr int32_t kSettingsVersion = 818;

// UserDataSingles.
inline constexpr size_t kSingleMass = 0;             // metric tonnes; 0 = "Default"
inline constexpr size_t kSingleOldWheelRadius = 1;   // metres; read only by the upgrade
inline constexpr size_t kSingleMaximumVelocity = 2;  // km/h
inline constexpr size_t kSingleWheelRadius = 3;      // metres; + wheel group 0 to 2

// UserDataLongs. "+1" marks a check box stored as its state + 1, so that 0 means never stored.
inline constexpr size_t kLongProjectType = 0;
inline constexpr size_t kLongCreateShape = 1;      // +1
inline constexpr size_t kLongCreateShapeData = 2;  // +1
inline constexpr size_t kLongCreatexFile = 3;      // +1
inline constexpr size_t kLongConvertTextures = 4;  // +1
inline constexpr size_t kLongWheels = 5;           // + wheel group 0 to 2
inline constexpr size_t kLongRods = 8;
inline constexpr size_t kLongCouplerType = 10;
inline constexpr size_t kLongStacks = 11;
inline constexpr size_t kLongCylinders = 12;
inline constexpr size_t kLongDieselExhaust = 13;
inline constexpr size_t kLongDrainPipes = 14;
inline constexpr size_t kLongWhistles = 15;
inline constexpr size_t kLongSafetyValves = 16;
inline constexpr size_t kLongMirrorLeft = 17;
inline constexpr size_t kLongMirrorRight = 18;
inline constexpr size_t kLongWiperLeft = 19;
inline constexpr size_t kLongWiperRight = 20;
inline constexpr size_t kLongPantographs = 21;
inline constexpr size_t kLongArmsPerPantograph = 22;
inline constexpr size_t kLongCompression = 23;
inline constexpr size_t kLongTenderRequired = 24;
inline constexpr size_t kLongSound = 25;    // +1
inline constexpr size_t kLongCabView = 26;  // +1
inline constexpr size_t kLongViewPoint = 27;
inline constexpr size_t kLongIntakePoint = 28;
inline constexpr size_t kLongAnimation = 29;  // +1
inline constexpr size_t kLongDistanceLevels = 30;
inline constexpr size_t kLongRetainSubObjects = 31;
inline constexpr size_t kLongProjectSubType = 32;
inline constexpr size_t kLongSettingsVersion = 33;
inline constexpr size_t kLongBogie = 34;  // + wheel group 0 to 2
inline constexpr size_t kLongMsts = 37;
inline constexpr size_t kLongRailSimulator = 38;
inline constexpr size_t kLongTrainz = 39;
inline constexpr size_t kLongRail3D = 40;
inline constexpr size_t kLongBve = 41;
inline constexpr size_t kLongExportToDocumentsFolder = 43;
inline constexpr size_t kLongRailWorks = 44;
inline constexpr size_t kLongDefaultGroupCustomFields = 45;  // +1

struct ProjectSettings {
    // Title "|" name "||" description "|||" operating procedures or route; empty when the
    // wizard never stored the project.
    std::string text;
    std::vector<float> singles;
    std::vector<int32_t> longs;

    // Bounds-checked element access: an index past the end raises "Subscript out of range".
    float& Single(size_t index);
    int32_t& Long(size_t index);

    bool operator==(const ProjectSettings&) const = default;
};

}  // namespace railwright::wizard
