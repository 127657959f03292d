#include "export/msts/DefaultCabAndSounds.h"

#include "export/msts/CommonBody.h"
#include "settings/ProjectSettings.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

constexpr int32_t kErrorPathNotFound = 76;

constexpr std::string_view kCabViewFolder = "CABVIEW";
constexpr std::string_view kSoundFolder = "SOUND";

// What an engine sub-type lends from its default train, and the writer it gets.
struct EngineFiles {
    settings::VehicleSubType subType;
    std::string_view cabView;      // in the train's CABVIEW folder
    std::string_view cabSound;     // in the train's SOUND folder
    std::string_view engineSound;  // in the train's SOUND folder
    VehicleFileKind writer;
};

constexpr EngineFiles kEngineFiles[] = {
    {settings::VehicleSubType::SteamEngine, "scotsman.cvf", "fscotcab.sms", "fscoteng.sms",
     VehicleFileKind::SteamEngine},
    {settings::VehicleSubType::DieselEngine, "dash9.cvf", "d9cab.sms", "d9eng.sms",
     VehicleFileKind::DieselEngine},
    {settings::VehicleSubType::ElectricEngine, "acela.cvf", "acelacab.sms", "acelaeng.sms",
     VehicleFileKind::ElectricEngine},
};

const EngineFiles* FindEngineFiles(settings::VehicleSubType subType) {
    for (const EngineFiles& files : kEngineFiles) {
        if (files.subType == subType) {
            return &files;
        }
    }
    return nullptr;
}

void Copy(support::FileSystem& files, const std::string& from, const std::string& to) {
    if (!files.FileExists(from)) {
        throw support::RunTimeError(support::kErrorFileNotFound,
                                    "File not found: \"" + from + "\"");
    }
    if (!files.CopyFile(from, to)) {
        throw support::RunTimeError(support::kErrorPathFileAccess,
                                    "Unable to copy \"" + from + "\" to \"" + to + "\"");
    }
}

// Creates `targetFolder` and copies every file of `sourceFolder` matching `pattern` into it under
// its own name.
void CopyMatching(support::FileSystem& files, const std::string& sourceFolder,
                  std::string_view pattern, const std::string& targetFolder) {
    files.CreateFolder(targetFolder);
    if (!files.FolderExists(sourceFolder)) {
        throw support::RunTimeError(kErrorPathNotFound, "Path not found: \"" + sourceFolder + "\"");
    }
    for (const std::string& name : files.ListFiles(sourceFolder, pattern)) {
        Copy(files, support::JoinPath(sourceFolder, name), support::JoinPath(targetFolder, name));
    }
}

}  // namespace

std::string_view DefaultTrain(settings::VehicleSubType subType) {
    using enum settings::VehicleSubType;
    if (subType == SteamEngine || subType == TankEngine) {
        return "SCOTSMAN";
    }
    return subType == DieselEngine ? "DASH9" : "ACELA";
}

void ExportVehicleFiles(support::Platform& platform, const std::string& toolsFolder,
                        const std::string& mstsFolder, const VehicleFileInputs& inputs) {
    support::FileSystem& files = platform.files;
    const auto subType = settings::StoredSubType<settings::VehicleSubType>(inputs.userDataLongs);
    const bool cabView = settings::IsChecked(inputs.userDataLongs, settings::kLongCabView);
    const bool sounds = settings::IsChecked(inputs.userDataLongs, settings::kLongSound);

    // The default train's cab textures and sounds, for every vehicle but a passenger car.
    const std::string train =
        support::JoinPath(support::JoinPath(support::JoinPath(mstsFolder, "TRAINS"), "TRAINSET"),
                          DefaultTrain(subType));
    const std::string trainCabView = support::JoinPath(train, kCabViewFolder);
    const std::string trainSound = support::JoinPath(train, kSoundFolder);
    const std::string cabViewFolder = support::JoinPath(inputs.vehicleFolder, kCabViewFolder);
    const std::string soundFolder = support::JoinPath(inputs.vehicleFolder, kSoundFolder);
    if (subType != settings::VehicleSubType::PassengerCar) {
        if (cabView) {
            CopyMatching(files, trainCabView, "*.ACE", cabViewFolder);
        }
        if (sounds) {
            CopyMatching(files, trainSound, "*.WAV", soundFolder);
        }
    }

    // An engine's cab view and sounds under the project's name, then its writer.
    const EngineFiles* engine = FindEngineFiles(subType);
    if (engine == nullptr) {
        WriteWagonFile(platform, toolsFolder, inputs);
        return;
    }
    const std::string lowerName = support::ToLower(inputs.projectName);
    if (cabView) {
        Copy(files, support::JoinPath(trainCabView, engine->cabView),
             support::JoinPath(cabViewFolder, lowerName + ".cvf"));
    }
    if (sounds) {
        Copy(files, support::JoinPath(trainSound, engine->cabSound),
             support::JoinPath(soundFolder, lowerName + "cab.sms"));
        Copy(files, support::JoinPath(trainSound, engine->engineSound),
             support::JoinPath(soundFolder, lowerName + "eng.sms"));
    }
    WriteVehicleFile(platform, toolsFolder, engine->writer, inputs);
}

}  // namespace railwright::exportmsts
