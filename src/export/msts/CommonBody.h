// The pieces shared by the engine and wagon files: the settings they read, the model box, and the
// value, wheel radius, coupling, buffers and friction lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "export/msts/MstsTextFile.h"
#include "export/msts/VehicleFiles.h"
#include "export/common/DriverSteps.h"
#include "settings/ProjectSettings.h"

namespace railwright::exportmsts {

// Lines the wagon file has and some engine files repeat.
inline constexpr std::string_view kSignatureLine = "SIMISA@@@@@@@@@@JINX0D0t______";
inline constexpr std::string_view kWagonBufferStiffness = "            Stiffness ( 1e6N/m 5e6N/m )";
inline constexpr std::string_view kWagonBufferDamping = "            Damping ( 1e6N/m/s 1e6N/m/s )";
inline constexpr std::string_view kWagonAdheasion = "    Adheasion ( 0.2 0.4 2 0 )";
inline constexpr std::string_view kDerailRailHeight = "    DerailRailHeight ( 4cm )";
inline constexpr std::string_view kWagonFrictionLinear =
    "        100N/m/s        1        -1mph        0        1";
inline constexpr std::string_view kWagonFrictionRotational =
    "        5.1N/rad/s        1        -1rad/s        0        1";

using exportcommon::kPlaceholderPrefix;

// The model's box without its placeholders, in metres: x across, y up, z along the vehicle.
struct ModelBox {
    float width = 0;         // max x - min x
    float height = 0;        // max y - min y
    float length = 0;        // max z - min z
    float centreHeight = 0;  // (max y + min y) / 2
};

// Asks the scene graph of the group at `mainIndex` for its box, placeholders left out. A box
// whose sizes overflow raises support::RunTimeError (overflow).
ModelBox MeasureModelBox(host::Scripting& scripting, int32_t mainIndex);

// One file being written, with what every template reads.
struct VehicleText {
    explicit VehicleText(const VehicleFileInputs& inputs);

    // A setting by index; an index past the end of the array raises support::RunTimeError
    // (subscript out of range).
    float Single(size_t index) const;
    int32_t Long(size_t index) const;
    settings::VehicleSubType SubType() const;

    const VehicleFileInputs& inputs;
    MstsTextFile file;
    ModelBox box;
    std::string lowerName;  // the project name in lower case
};

// "    <name> ( <value><unit> )", the default written when the value is exactly 0.
void WriteValueLine(MstsTextFile& file, std::string_view name, std::string_view unit, float value,
                    float defaultValue);

// "    WheelRadius ( <radius>m )". A radius of 0 is measured as half the height of the first group
// named `wheelGroupName` (ignoring case); the line is left out when there is no such group or
// the radius is not above 0.
void WriteWheelRadius(MstsTextFile& file, std::string_view wheelGroupName, float radius);

// The wheel radius of the front wheels ("Wheels11", wheel group 0) when there are any, else that
// of the wheels counted by `otherWheelsLong` ("Wheels21", radius `otherRadiusSingle`) when there
// are any, else nothing.
void WriteFrontOrRearWheelRadius(VehicleText& vehicle, size_t otherWheelsLong,
                                 size_t otherRadiusSingle);

// "    NumWheels ( <front wheels + the wheels counted by otherWheelsLong> )".
void WriteNumWheels(VehicleText& vehicle, size_t otherWheelsLong);

// The lines that repeat the model box.
void WriteSizeLine(VehicleText& vehicle);
void WriteCentreOfGravityLine(VehicleText& vehicle);
// "    InertiaTensor ( Box ( Wm Hm L" + ending; the ending is "m ) )" except in the diesel file.
void WriteInertiaTensorLine(VehicleText& vehicle, std::string_view ending);

void WriteCouplingSection(MstsTextFile& file, int32_t couplingType);

// The ten buffer lines, with the two spring lines that differ between the files.
void WriteBuffers(MstsTextFile& file, std::string_view stiffnessLine, std::string_view dampingLine);

// The friction block around its two rows.
void WriteFriction(MstsTextFile& file, std::string_view linearRow, std::string_view rotationalRow);

}  // namespace railwright::exportmsts
