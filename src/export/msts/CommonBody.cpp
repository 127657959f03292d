#include "export/msts/CommonBody.h"

#include <cmath>

#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

constexpr int32_t kErrorOverflow = 6;
// The bounding-box request of the model box: every kind of geometry, as the host numbers it.
constexpr int32_t kBoundingBoxFlags = 11;

}  // namespace

ModelBox MeasureModelBox(host::Scripting& scripting, int32_t mainIndex) {
    const host::Bounds bounds = scripting.Group(mainIndex)->SceneGraph()->BoundingBox(
        host::kCurrentPose, kBoundingBoxFlags, std::string(kPlaceholderPrefix), 0, 0);
    const ModelBox box{bounds.maxX - bounds.minX, bounds.maxY - bounds.minY,
                       bounds.maxZ - bounds.minZ, (bounds.maxY + bounds.minY) / 2};
    if (!std::isfinite(box.width) || !std::isfinite(box.height) || !std::isfinite(box.length) ||
        !std::isfinite(box.centreHeight)) {
        throw support::RunTimeError(kErrorOverflow, "Overflow");
    }
    return box;
}

VehicleText::VehicleText(const VehicleFileInputs& vehicleInputs)
    : inputs(vehicleInputs),
      file(vehicleInputs.scripting),
      box(MeasureModelBox(vehicleInputs.scripting, vehicleInputs.mainIndex)),
      lowerName(support::ToLower(vehicleInputs.projectName)) {}

float VehicleText::Single(size_t index) const {
    return settings::Single(inputs.userDataSingles, index);
}

int32_t VehicleText::Long(size_t index) const {
    return settings::Long(inputs.userDataLongs, index);
}

settings::VehicleSubType VehicleText::SubType() const {
    return settings::StoredSubType<settings::VehicleSubType>(inputs.userDataLongs);
}

void WriteValueLine(MstsTextFile& file, std::string_view name, std::string_view unit, float value,
                    float defaultValue) {
    const float written = value == 0 ? defaultValue : value;
    file.Line("    " + std::string(name) + " ( " + file.Value(written) + std::string(unit) + " )");
}

void WriteWheelRadius(MstsTextFile& file, std::string_view wheelGroupName, float radius) {
    if (radius == 0) {
        host::Scripting& scripting = file.Scripting();
        const int32_t count = scripting.GroupCount();
        for (int32_t i = 0; i < count; ++i) {
            std::shared_ptr<host::SceneGroup> group = scripting.Group(i);
            if (support::EqualsIgnoreCase(group->Name(), wheelGroupName)) {
                const host::Bounds bounds =
                    group->GetBounds(*scripting.RootGroup(), host::kCurrentPose);
                radius = (bounds.maxY - bounds.minY) / 2;
                break;
            }
        }
    }
    if (radius > 0) {
        file.Line("    WheelRadius ( " + file.Length(radius) + "m )");
    }
}

void WriteFrontOrRearWheelRadius(VehicleText& vehicle, size_t otherWheelsLong,
                                 size_t otherRadiusSingle) {
    if (vehicle.Long(settings::kLongWheels) > 0) {
        WriteWheelRadius(vehicle.file, "Wheels11", vehicle.Single(settings::kSingleWheelRadius));
    } else if (vehicle.Long(otherWheelsLong) > 0) {
        WriteWheelRadius(vehicle.file, "Wheels21", vehicle.Single(otherRadiusSingle));
    }
}

void WriteNumWheels(VehicleText& vehicle, size_t otherWheelsLong) {
    const int64_t wheels =
        int64_t{vehicle.Long(settings::kLongWheels)} + int64_t{vehicle.Long(otherWheelsLong)};
    vehicle.file.Line("    NumWheels ( " + std::to_string(wheels) + " )");
}

void WriteSizeLine(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    file.Line("    Size  ( " + file.Length(vehicle.box.width) + "m " +
              file.Length(vehicle.box.height) + "m " + file.Length(vehicle.box.length) + "m )");
}

void WriteCentreOfGravityLine(VehicleText& vehicle) {
    MstsTextFile& file = vehicle.file;
    file.Line("    CentreOfGravity ( 0m " + file.Length(vehicle.box.centreHeight) + "m 0m )");
}

void WriteInertiaTensorLine(VehicleText& vehicle, std::string_view ending) {
    MstsTextFile& file = vehicle.file;
    file.Line("    InertiaTensor ( Box ( " + file.Length(vehicle.box.width) + "m " +
              file.Length(vehicle.box.height) + "m " + file.Length(vehicle.box.length) +
              std::string(ending));
}

void WriteCouplingSection(MstsTextFile& file, int32_t couplingType) {
    file.Line("    Coupling (");
    file.Line(couplingType == 0   ? "        Type ( Bar )"
              : couplingType == 1 ? "        Type ( Automatic )"
                                  : "        Type ( Chain )");
    file.Lines({
        "        Spring (",
        "            Stiffness ( 1e6N/m 2e6N/m )",
        "            Damping ( 1e6N/m 1e6N/m )",
        "            Break ( 3.2e6N 3.2e6N )",
        "            r0 ( 20cm 40cm )",
        "        )",
        "    )",
    });
}

void WriteBuffers(MstsTextFile& file, std::string_view stiffnessLine,
                  std::string_view dampingLine) {
    file.Lines({
        "    Buffers (",
        "        Spring (",
        stiffnessLine,
        dampingLine,
        "            r0 ( 0m 1e9 )",
        "        )",
        "        Centre ( 0.5 )",
        "        Radius ( 1 )",
        "        Angle ( 0.5deg )",
        "    )",
    });
}

void WriteFriction(MstsTextFile& file, std::string_view linearRow, std::string_view rotationalRow) {
    file.Lines({"    Friction (", linearRow, rotationalRow, "    )"});
}

}  // namespace railwright::exportmsts
