#include "export/msts/MstsExport.h"

#include <optional>

#include "export/msts/CommonBody.h"
#include "export/msts/DefaultCabAndSounds.h"
#include "export/msts/ShapeDataFiles.h"
#include "export/textures/DriverSteps.h"
#include "export/textures/TextureCheck.h"
#include "export/textures/TextureConversion.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

constexpr std::string_view kSimulatorName = "MSTS";

// The settings this export reads (the model's longs); the options hold 2 when checked.
constexpr int32_t kProjectTypeLong = 0;
constexpr int32_t kCreateShapeLong = 1;
constexpr int32_t kCreateShapeDataLong = 2;
constexpr int32_t kCreateFilesLong = 3;  // the vehicle files or the REF file
constexpr int32_t kConvertTexturesLong = 4;
constexpr int32_t kCompressionLong = 23;
constexpr int32_t kChecked = 2;
constexpr int32_t kRailVehicleProject = 1;

constexpr int32_t kErrorShapeNotExported = 5;

// Where a project goes: the folder reported at the end, and where each kind of file lands.
struct Layout {
    std::string exportFolder;   // the vehicle folder or the route folder
    std::string shapeFolder;    // the shape and its shape data
    std::string textureFolder;  // the converted textures
};

class MstsExport {
  public:
    MstsExport(support::Platform& platform, const MstsExportInputs& inputs)
        : platform_(platform), inputs_(inputs), ui_(platform.ui) {}

    bool Run();

  private:
    int32_t Long(int32_t index) const { return support::ElementAt(inputs_.userDataLongs, index); }
    bool IsRailVehicle() const { return Long(kProjectTypeLong) == kRailVehicleProject; }

    std::string MstsInstallation();
    std::string Root();
    Layout CreateFolders();
    // Runs one step unless an earlier one failed; an error marks the export failed.
    template <typename Body>
    void Step(Body&& body);
    std::string ToolsFolder();

    void ConvertTextures(const exporttextures::TextureList& textures);
    void ExportShape(int32_t mainIndex);
    void WriteVehicleOrRefFiles(int32_t mainIndex);

    support::Platform& platform_;
    const MstsExportInputs& inputs_;
    support::UserInterface& ui_;
    Layout layout_;
    bool failed_ = false;
    std::optional<std::string> toolsFolder_;
};

std::string MstsExport::MstsInstallation() {
    const std::string folder = support::MstsFolder(inputs_.application, {});
    if (folder.empty()) {
        throw support::RunTimeError(support::kErrorFileNotFound,
                                    "Microsoft Train Simulator was not found");
    }
    return folder;
}

std::string MstsExport::Root() {
    if (inputs_.exportToDocumentsFolder) {
        const std::string documents = inputs_.application.DocumentsFolder();
        if (documents.empty()) {
            throw support::RunTimeError(support::kErrorFileNotFound,
                                        "The documents folder was not found");
        }
        return support::JoinPath(documents, "");
    }
    return MstsInstallation();
}

Layout MstsExport::CreateFolders() {
    const std::string root = Root();
    support::FileSystem& files = platform_.files;
    Layout layout;
    // Creating a folder that exists already is the normal case; any failure to create one shows
    // later, when a file cannot be written into it.
    if (IsRailVehicle()) {
        const std::string trains = support::JoinPath(root, "TRAINS");
        const std::string trainset = support::JoinPath(trains, "TRAINSET");
        const std::string vehicle =
            support::JoinPath(trainset, support::ToUpper(inputs_.projectName));
        for (const std::string& folder : {trains, trainset, vehicle}) {
            files.CreateFolder(folder);
        }
        layout = {vehicle, vehicle, vehicle};
    } else {
        const std::string route = support::JoinPath(support::JoinPath(root, "ROUTES"),
                                                    support::ToUpper(inputs_.routeName));
        const std::string shapes = support::JoinPath(route, "Shapes");
        const std::string textures = support::JoinPath(route, "Textures");
        for (const std::string& folder : {route, shapes, textures}) {
            files.CreateFolder(folder);
        }
        layout = {route, shapes, textures};
    }
    return layout;
}

template <typename Body>
void MstsExport::Step(Body&& body) {
    if (failed_) {
        return;
    }
    try {
        body();
    } catch (...) {
        failed_ = true;
    }
}

std::string MstsExport::ToolsFolder() {
    if (!toolsFolder_) {
        toolsFolder_ = inputs_.application.ToolsFolder();
    }
    return *toolsFolder_;
}

void MstsExport::ConvertTextures(const exporttextures::TextureList& textures) {
    exporttextures::ConversionSettings settings;
    settings.toolsFolder = ToolsFolder();
    settings.modelFolder = inputs_.application.ModelFolder();
    settings.targetFolder = layout_.textureFolder;
    settings.compression = Long(kCompressionLong);
    settings.target = exporttextures::TextureTarget::Msts;
    exporttextures::ConvertTextures(platform_, textures, settings);
}

void MstsExport::ExportShape(int32_t mainIndex) {
    const std::string shapeFile =
        support::JoinPath(layout_.shapeFolder, support::ToLower(inputs_.projectName) + ".s");
    std::shared_ptr<host::SceneGroup> mainGroup = inputs_.scripting.Group(mainIndex);
    if (!inputs_.application.CreateExporter()->ExportShape(*mainGroup, shapeFile)) {
        throw support::RunTimeError(kErrorShapeNotExported,
                                    "The shape \"" + shapeFile + "\" was not exported");
    }
}

void MstsExport::WriteVehicleOrRefFiles(int32_t mainIndex) {
    if (IsRailVehicle()) {
        const VehicleFileInputs vehicle{
            inputs_.scripting, inputs_.projectName,     layout_.exportFolder,
            mainIndex,         inputs_.userDataSingles, inputs_.userDataLongs,
            inputs_.title,     inputs_.description,     inputs_.operatingProcedures};
        ExportVehicleFiles(platform_, ToolsFolder(), MstsInstallation(), vehicle);
        return;
    }
    std::string refName = inputs_.projectName;
    if (support::EqualsIgnoreCase(inputs_.projectName, inputs_.routeName)) {
        ui_.ShowMessage(
            "The project name you selected is the same as your route name. The created REF file "
            "will be proceeded with a '~' so as to not overwrite the route's REF file.",
            support::MessageIcon::Information, support::MessageButtons::Ok);
        refName = "~" + inputs_.projectName;
    }
    WriteRefFile(platform_, ToolsFolder(), refName, Long(kProjectTypeLong), inputs_.description,
                 layout_.exportFolder);
}

bool MstsExport::Run() {
    // 1.
    layout_ = CreateFolders();
    // 2.
    const std::optional<int32_t> mainIndex = exporttextures::FindMainGroup(inputs_.scripting);
    if (!mainIndex) {
        exporttextures::ShowNoMainGroup(ui_);
        return false;
    }
    // 3.
    exporttextures::TextureList textures;
    if (!exporttextures::CheckTextures(ui_, inputs_.scripting, inputs_.sceneGraph, textures,
                                       kPlaceholderPrefix)) {
        exporttextures::ShowNotFullyTextured(ui_, kSimulatorName);
        return false;
    }
    // 4 to 7.
    Step([&] {
        if (Long(kConvertTexturesLong) == kChecked) {
            ConvertTextures(textures);
        }
    });
    Step([&] {
        if (Long(kCreateShapeLong) == kChecked) {
            ExportShape(*mainIndex);
        }
    });
    Step([&] {
        if (Long(kCreateShapeDataLong) == kChecked) {
            WriteShapeDataFile(platform_, ToolsFolder(), inputs_.scripting, inputs_.projectName,
                               Long(kProjectTypeLong), *mainIndex, layout_.shapeFolder);
        }
    });
    Step([&] {
        if (Long(kCreateFilesLong) == kChecked) {
            WriteVehicleOrRefFiles(*mainIndex);
        }
    });
    // 8.
    if (failed_) {
        exporttextures::ShowExportFailed(ui_, kSimulatorName);
        return false;
    }
    exporttextures::ShowExportedTo(ui_, kSimulatorName, layout_.exportFolder);
    return true;
}

}  // namespace

bool ExportToMsts(support::Platform& platform, const MstsExportInputs& inputs) noexcept {
    try {
        MstsExport run(platform, inputs);
        return run.Run();
    } catch (...) {
        // An error before the steps (the folders, the "Main" group) ends the export the same way.
        try {
            exporttextures::ShowExportFailed(platform.ui, kSimulatorName);
        } catch (...) {
            // Nothing may reach the host, not even a failing message box.
        }
        return false;
    }
}

}  // namespace railwright::exportmsts
