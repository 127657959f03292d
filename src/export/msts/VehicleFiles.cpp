#include "export/msts/VehicleFiles.h"

#include "export/msts/VehicleTemplates.h"
#include "export/textures/UnicodeConversion.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

void WriteVehicleFile(support::Platform& platform, const std::string& toolsFolder,
                      VehicleFileKind kind, const VehicleFileInputs& inputs) {
    const std::string text = VehicleFileText(kind, inputs);
    const std::string fileName = VehicleFileName(kind, inputs);
    platform.files.DeleteFile(fileName);
    if (!platform.files.WriteFile(fileName, text)) {
        throw support::RunTimeError(support::kErrorPathFileAccess,
                                    "Unable to write \"" + fileName + "\"");
    }
    // The exit code is not examined: a file the tool could not convert stays 8-bit text.
    (void)exporttextures::ConvertToUnicode(platform, toolsFolder, fileName);
}

}  // namespace

std::string VehicleFileText(VehicleFileKind kind, const VehicleFileInputs& inputs) {
    VehicleText vehicle(inputs);
    switch (kind) {
        case VehicleFileKind::Wagon:
            WriteWagonTemplate(vehicle);
            break;
        case VehicleFileKind::SteamEngine:
            WriteEngineWagonBlock(vehicle, Traction::Steam);
            WriteSteamEngineBlock(vehicle);
            break;
        case VehicleFileKind::DieselEngine:
            WriteEngineWagonBlock(vehicle, Traction::Diesel);
            WriteDieselEngineBlock(vehicle);
            break;
        case VehicleFileKind::ElectricEngine:
            WriteEngineWagonBlock(vehicle, Traction::Electric);
            WriteElectricEngineBlock(vehicle);
            break;
    }
    return vehicle.file.Bytes();
}

std::string VehicleFileName(VehicleFileKind kind, const VehicleFileInputs& inputs) {
    const char* extension = kind == VehicleFileKind::Wagon ? ".wag" : ".eng";
    return support::JoinPath(inputs.vehicleFolder,
                             support::ToLower(inputs.projectName) + extension);
}

void WriteWagonFile(support::Platform& platform, const std::string& toolsFolder,
                    const VehicleFileInputs& inputs) {
    WriteVehicleFile(platform, toolsFolder, VehicleFileKind::Wagon, inputs);
}

void WriteSteamEngineFile(support::Platform& platform, const std::string& toolsFolder,
                          const VehicleFileInputs& inputs) {
    WriteVehicleFile(platform, toolsFolder, VehicleFileKind::SteamEngine, inputs);
}

void WriteDieselEngineFile(support::Platform& platform, const std::string& toolsFolder,
                           const VehicleFileInputs& inputs) {
    WriteVehicleFile(platform, toolsFolder, VehicleFileKind::DieselEngine, inputs);
}

void WriteElectricEngineFile(support::Platform& platform, const std::string& toolsFolder,
                             const VehicleFileInputs& inputs) {
    WriteVehicleFile(platform, toolsFolder, VehicleFileKind::ElectricEngine, inputs);
}

}  // namespace railwright::exportmsts
