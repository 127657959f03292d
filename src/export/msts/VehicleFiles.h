// The MSTS engine (.eng) and wagon (.wag) files of a rail vehicle project.
//
// Each writer builds the whole file in memory (VehicleFileText), then writes it into the vehicle
// folder as "<project name in lower case>.eng" or ".wag" (an old file of that name is deleted
// first, a failure to delete ignored) and has the tools folder's txt2uni.exe convert it to
// Unicode. Host failures propagate as host::HostError, file and tool failures as
// support::RunTimeError; the writers show no message themselves. When building the text fails,
// nothing is written and an earlier file stays as it was.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::exportmsts {

// What every engine and wagon writer is given. Texts are UTF-8.
struct VehicleFileInputs {
    host::Scripting& scripting;
    std::string projectName;    // as typed; lower-cased for file names and shape references
    std::string vehicleFolder;  // the trainset folder of the project, no trailing separator
    int32_t mainIndex = 0;      // index of the "Main" group among Scripting.Group
    const std::vector<float>& userDataSingles;  // the model's settings, read by index
    const std::vector<int32_t>& userDataLongs;
    std::string title;                // the engine's Name line
    std::string description;          // lines separated by CR LF
    std::string operatingProcedures;  // lines separated by CR LF
};

enum class VehicleFileKind { Wagon, SteamEngine, DieselEngine, ElectricEngine };

// The file's 8-bit text (Windows-1252, CR LF line ends) as the writer of that kind writes it.
std::string VehicleFileText(VehicleFileKind kind, const VehicleFileInputs& inputs);

// The full name of the file the writer of that kind writes.
std::string VehicleFileName(VehicleFileKind kind, const VehicleFileInputs& inputs);

// The writer of that kind. `toolsFolder` holds txt2uni.exe.
void WriteVehicleFile(support::Platform& platform, const std::string& toolsFolder,
                      VehicleFileKind kind, const VehicleFileInputs& inputs);

// The four writers, each WriteVehicleFile for its kind.
void WriteWagonFile(support::Platform& platform, const std::string& toolsFolder,
                    const VehicleFileInputs& inputs);
void WriteSteamEngineFile(support::Platform& platform, const std::string& toolsFolder,
                          const VehicleFileInputs& inputs);
void WriteDieselEngineFile(support::Platform& platform, const std::string& toolsFolder,
                           const VehicleFileInputs& inputs);
void WriteElectricEngineFile(support::Platform& platform, const std::string& toolsFolder,
                             const VehicleFileInputs& inputs);

}  // namespace railwright::exportmsts
