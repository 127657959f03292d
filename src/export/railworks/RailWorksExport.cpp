#include "export/railworks/RailWorksExport.h"

#include <optional>

#include "export/common/DriverSteps.h"
#include "export/textures/TextureCheck.h"
#include "export/textures/TextureConversion.h"
#include "settings/ProjectSettings.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportrailworks {
namespace {

// No window owns the locator's dialogs once the wizard has closed.
constexpr intptr_t kNoOwnerWindow = 0;

std::string_view SimulatorNameOf(bool railWorks) {
    return railWorks ? "RailWorks" : "Rail Simulator";
}

bool IsAnimated(host::Scripting& scripting) {
    const int32_t count = scripting.GroupCount();
    for (int32_t i = 0; i < count; ++i) {
        if (scripting.Group(i)->KeyCount() >= 2) {
            return true;
        }
    }
    return false;
}

class RailWorksExport {
  public:
    RailWorksExport(support::Platform& platform, const RailWorksExportInputs& inputs)
        : platform_(platform), inputs_(inputs), ui_(platform.ui) {}

    bool Run();

  private:
    int32_t Long(size_t index) const { return settings::Long(inputs_.userDataLongs, index); }
    bool Checked(size_t index) const { return settings::IsChecked(inputs_.userDataLongs, index); }
    std::string_view SimulatorName() const { return SimulatorNameOf(inputs_.railWorks); }

    std::string Root();
    // Creates the source tree's levels and the project's folders; the project folder, ending in
    // the path separator.
    std::string CreateFolders();
    // Runs one step unless an earlier one failed. An error is reported through the host's error
    // reporting, its text prefixed with `context`, and marks the export failed.
    template <typename Body>
    void Step(std::string_view step, std::string_view context, Body&& body);
    void ExportFile(bool (host::Exporter::*operation)(const std::string&), const std::string& file);

    support::Platform& platform_;
    const RailWorksExportInputs& inputs_;
    support::UserInterface& ui_;
    exportcommon::ExportSteps steps_;
};

std::string RailWorksExport::Root() {
    std::string root;
    if (inputs_.exportToDocumentsFolder) {
        const std::string documents = inputs_.application.DocumentsFolder();
        root = documents.empty() ? std::string() : support::JoinPath(documents, SimulatorName());
    } else {
        root = support::RailWorksFolder(inputs_.application, kNoOwnerWindow);
    }
    if (root.empty()) {
        throw support::RunTimeError(support::kErrorFileNotFound,
                                    std::string(SimulatorName()) + " was not found");
    }
    return root;
}

std::string RailWorksExport::CreateFolders() {
    support::FileSystem& files = platform_.files;
    // Each level in turn; a level that exists already is the normal case, and a level that
    // cannot be made shows when a file cannot be written into it.
    std::string folder = Root();
    files.CreateFolder(folder);
    for (const std::string_view level : {"Source", "Developer", "Addon"}) {
        folder = support::JoinPath(folder, level);
        files.CreateFolder(folder);
    }
    const settings::ProjectType projectType = settings::StoredProjectType(inputs_.userDataLongs);
    const bool animated = projectType != settings::ProjectType::RailNetwork &&
                          projectType != settings::ProjectType::RailVehicle &&
                          IsAnimated(inputs_.scripting);
    for (const std::string& level :
         ProjectFolder(settings::Stored(projectType), Long(settings::kLongProjectSubType), animated,
                       inputs_.projectName)) {
        folder = support::JoinPath(folder, level);
        files.CreateFolder(folder);
    }
    files.CreateFolder(support::JoinPath(folder, "Textures"));
    return folder + support::kPathSeparator;
}

template <typename Body>
void RailWorksExport::Step(std::string_view step, std::string_view context, Body&& body) {
    steps_.Run(step, body, [&] {
        const support::ErrorInfo error = support::CurrentError();
        support::ReportError(
            ui_, {host::kHostErrorFailed,
                  std::string(context) + std::to_string(error.number) + "-" + error.description});
    });
}

void RailWorksExport::ExportFile(bool (host::Exporter::*operation)(const std::string&),
                                 const std::string& file) {
    std::shared_ptr<host::Exporter> exporter = inputs_.application.CreateExporter();
    if (!((*exporter).*operation)(file)) {
        throw host::HostError(host::kHostErrorFailed, "Unable to write \"" + file + "\"");
    }
}

bool RailWorksExport::Run() {
    // The folders first: a project without "Main" still gets them.
    const std::string projectFolder = CreateFolders();
    if (!exportcommon::FindMainGroup(inputs_.scripting)) {
        exportcommon::ShowNoMainGroup(ui_);
        return false;
    }
    // Every face must be textured; the check also lists the textures to convert.
    exporttextures::TextureList textures;
    if (!exporttextures::CheckTextures(ui_, inputs_.scripting, inputs_.sceneGraph, textures,
                                       exportcommon::kPlaceholderPrefix)) {
        exportcommon::ShowNotFullyTextured(ui_, SimulatorName());
        return false;
    }
    // The textures, then the intermediate files; a failed step skips the ones after it.
    Step("converting the textures", "pConvertTextures error: ", [&] {
        if (Checked(settings::kLongConvertTextures)) {
            exporttextures::ConversionSettings conversion;
            conversion.toolsFolder = inputs_.application.ToolsFolder();
            conversion.modelFolder = inputs_.application.ModelFolder();
            conversion.targetFolder = projectFolder + "Textures";
            conversion.compression = Long(settings::kLongCompression);
            conversion.target = inputs_.railWorks ? exporttextures::TextureTarget::RailWorks
                                                  : exporttextures::TextureTarget::RailSimulator;
            exporttextures::ConvertTextures(platform_, textures, conversion);
        }
    });
    if (Checked(settings::kLongCreateShape)) {
        Step("writing the .igs file", "CIE_ExportIGS error: ", [&] {
            ExportFile(&host::Exporter::ExportIGS, projectFolder + inputs_.projectName + ".igs");
        });
        Step("writing the .ia file", "CIE_ExportIA error: ", [&] {
            ExportFile(&host::Exporter::ExportIA, projectFolder + inputs_.projectName + ".ia");
        });
    }
    // One box tells the outcome.
    return exportcommon::FinishExport(ui_, SimulatorName(), steps_, projectFolder);
}

}  // namespace

std::vector<std::string> ProjectFolder(int32_t projectType, int32_t subType, bool animated,
                                       const std::string& projectName) {
    if (projectType == settings::Stored(settings::ProjectType::RailVehicle)) {
        const auto vehicle = [&projectName](const char* kind, const char* role) {
            return std::vector<std::string>{"RailVehicles", kind, projectName, "Default", role};
        };
        switch (static_cast<settings::VehicleSubType>(subType)) {
            case settings::VehicleSubType::DieselEngine:
                return vehicle("Diesel", "Engine");
            case settings::VehicleSubType::ElectricEngine:
                return vehicle("Electric", "Engine");
            case settings::VehicleSubType::FreightCar:
                return vehicle("Freight", "Wagon");
            case settings::VehicleSubType::PassengerCar:
                return vehicle("Passenger", "Coach");
            default:
                // Steam and tank engines, and a tender too: filed with the steam engines.
                return vehicle("Steam", "Engine");
        }
    }
    if (projectType == settings::Stored(settings::ProjectType::RailNetwork)) {
        // Bridges, buffers, signals and track in the sub-types' order; everything else is filed
        // with the tunnels.
        static constexpr const char* kNetworkKinds[] = {"Bridges", "Buffers", "Signals", "Track"};
        const bool listed =
            subType >= 0 && subType < settings::Stored(settings::NetworkSubType::Tunnel);
        return {"RailNetwork", listed ? kNetworkKinds[subType] : "Tunnels"};
    }
    if (animated) {
        return {"Scenery", "Animated"};
    }
    switch (static_cast<settings::ScenerySubType>(subType)) {
        case settings::ScenerySubType::Vegetation:
            return {"Scenery", "Vegetation"};
        case settings::ScenerySubType::Vehicle:
            return {"Scenery", "Vehicles"};
        default:
            return {"Scenery", "Buildings"};
    }
}

bool ExportRailWorks(support::Platform& platform, const RailWorksExportInputs& inputs) noexcept {
    return exportcommon::RunExport(platform.ui, SimulatorNameOf(inputs.railWorks), [&] {
        RailWorksExport run(platform, inputs);
        return run.Run();
    });
}

}  // namespace railwright::exportrailworks
