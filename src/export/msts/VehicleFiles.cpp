#include "export/msts/VehicleFiles.h"

#include "export/msts/VehicleTemplates.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {

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

void WriteVehicleFile(support::Platform& platform, const std::string& toolsFolder,
                      VehicleFileKind kind, const VehicleFileInputs& inputs) {
    SaveMstsTextFile(platform, toolsFolder, VehicleFileName(kind, inputs),
                     VehicleFileText(kind, inputs));
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
