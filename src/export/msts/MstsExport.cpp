#include "export/msts/MstsExport.h"

#include <optional>

#include "export/msts/CommonBody.h"
#include "export/msts/DefaultCabAndSounds.h"
#include "export/msts/ShapeDataFiles.h"
#include "export/common/DriverSteps.h"
#include "export/textures/TextureCheck.h"
#include "export/textures/TextureConversion.h"
#include "settings/ProjectSettings.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

constexpr std::string_view kSimulatorName = "MSTS";

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
    int32_t Long(size_t index) const { return settings::Long(inputs_.userDataLongs, index); }
    bool Checked(size_t index) const { return settings::IsChecked(inputs_.userDataLongs, index); }
    bool IsRailVehicle() const {
        return settings::StoredProjectType(inputs_.userDataLongs) ==
               settings::ProjectType::RailVehicle;
    }

    std::string MstsInstallation();
    std::string Root();
    Layout CreateFolders();
    std::string ToolsFolder();

    void ConvertTextures(const exporttextures::TextureList& textures);
    void ExportShape(int32_t mainIndex);
    void WriteVehicleOrRefFiles(int32_t mainIndex);

    support::Platform& platform_;
    const MstsExportInputs& inputs_;
    support::UserInterface& ui_;
    Layout layout_;
    exportcommon::ExportSteps steps_;
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

std::string MstsExport::ToolsFolder() {
    if (!toolsFolder_) {
        toolsFolder_ = inputs_.application.ToolsFolder();
    }
    return *toolsFolder_;
}

void MstsExport::ConvertTextures(const exporttextures::TextureList& textures) {
    exporttextures::ConversionSettings conversion;
    conversion.toolsFolder = ToolsFolder();
    conversion.modelFolder = inputs_.application.ModelFolder();
    conversion.targetFolder = layout_.textureFolder;
    conversion.compression = Long(settings::kLongCompression);
    conversion.target = exporttextures::TextureTarget::Msts;
    exporttextures::ConvertTextures(platform_, textures, conversion);
}

void MstsExport::ExportShape(int32_t mainIndex) {
    const std::string shapeFile =
        support::JoinPath(layout_.shapeFolder, support::ToLower(inputs_.projectName) + ".s");
    std::shared_ptr<host::SceneGroup> mainGroup = inputs_.scripting.Group(mainIndex);
    const host::ShapeExportOptions options{Long(settings::kLongDistanceLevels),
                                           Long(settings::kLongRetainSubObjects) == 1};
    if (!inputs_.application.CreateExporter()->ExportShape(*mainGroup, shapeFile, options)) {
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
    WriteRefFile(platform_, ToolsFolder(), refName, Long(settings::kLongProjectType),
                 inputs_.description, layout_.exportFolder);
}

bool MstsExport::Run() {
    // The folders first: a project without "Main" still gets them.
    layout_ = CreateFolders();
    const std::optional<int32_t> mainIndex = exportcommon::FindMainGroup(inputs_.scripting);
    if (!mainIndex) {
        exportcommon::ShowNoMainGroup(ui_);
        return false;
    }
    // Every face must be textured; the check also lists the textures to convert.
    exporttextures::TextureList textures;
    if (!exporttextures::CheckTextures(ui_, inputs_.scripting, inputs_.sceneGraph, textures,
                                       kPlaceholderPrefix)) {
        exportcommon::ShowNotFullyTextured(ui_, kSimulatorName);
        return false;
    }
    // The files the options ask for; a failed step skips the ones after it.
    steps_.Run("converting the textures", [&] {
        if (Checked(settings::kLongConvertTextures)) {
            ConvertTextures(textures);
        }
    });
    steps_.Run("exporting the shape", [&] {
        if (Checked(settings::kLongCreateShape)) {
            ExportShape(*mainIndex);
        }
    });
    steps_.Run("writing the shape data file", [&] {
        if (Checked(settings::kLongCreateShapeData)) {
            WriteShapeDataFile(platform_, ToolsFolder(), inputs_.scripting, inputs_.projectName,
                               Long(settings::kLongProjectType), *mainIndex, layout_.shapeFolder);
        }
    });
    steps_.Run(IsRailVehicle() ? "writing the vehicle files, cab view and sounds"
                               : "writing the REF file",
               [&] {
        if (Checked(settings::kLongCreatexFile)) {
            WriteVehicleOrRefFiles(*mainIndex);
        }
    });
    // One box tells the outcome.
    return exportcommon::FinishExport(ui_, kSimulatorName, steps_, layout_.exportFolder);
}

}  // namespace

bool ExportToMsts(support::Platform& platform, const MstsExportInputs& inputs) noexcept {
    return exportcommon::RunExport(platform.ui, kSimulatorName, [&] {
        MstsExport run(platform, inputs);
        return run.Run();
    });
}

}  // namespace railwright::exportmsts
