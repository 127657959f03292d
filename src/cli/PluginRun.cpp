#include "cli/PluginRun.h"

#include <algorithm>
#include <set>

#include "cli/TextureCache.h"
#include "document/shape/ShapeWriter.h"
#include "plugin/ProductExports.h"
#include "support/SupportingFunctions.h"
#include "support/Utf8Paths.h"

namespace railwright::cli {
namespace {

namespace fs = std::filesystem;

// The application name under which the command keeps its per-user settings.
constexpr const char* kApplicationName = "Railwright";

bool IsFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(support::PathFromUtf8(path), error);
}

}  // namespace

// The platform's files, noting the folders that are written to, so that the outcome can list
// what the exports wrote (the external tools' files included, which land in the same folders).
class PluginRun::RecordingFiles final : public support::FileSystem {
public:
    explicit RecordingFiles(support::FileSystem& files) : files_(files) {}

    bool CreateFolder(const std::string& path) override {
        folders_.insert(path);
        return files_.CreateFolder(path);
    }
    void DeleteFile(const std::string& path) noexcept override { files_.DeleteFile(path); }
    bool CopyFile(const std::string& from, const std::string& to) override {
        NoteFile(to);
        return files_.CopyFile(from, to);
    }
    bool FileExists(const std::string& path) override { return files_.FileExists(path); }
    bool FolderExists(const std::string& path) override { return files_.FolderExists(path); }
    std::vector<std::string> ListFiles(const std::string& folder,
                                       std::string_view pattern) override {
        return files_.ListFiles(folder, pattern);
    }
    std::vector<std::string> ListFolders(const std::string& folder) override {
        return files_.ListFolders(folder);
    }
    bool WriteFile(const std::string& path, std::string_view bytes) override {
        NoteFile(path);
        return files_.WriteFile(path, bytes);
    }
    std::optional<std::string> ReadFile(const std::string& path) override {
        return files_.ReadFile(path);
    }
    std::string ShortPath(const std::string& path) override { return files_.ShortPath(path); }

    const std::set<std::string>& Folders() const { return folders_; }

private:
    void NoteFile(const std::string& path) {
        folders_.insert(support::Utf8FromPath(support::PathFromUtf8(path).parent_path()));
    }

    support::FileSystem& files_;
    std::set<std::string> folders_;
};

PluginRun::PluginRun(const RunOptions& options, Console console)
    : options_(options), console_(console) {}

PluginRun::~PluginRun() = default;

int PluginRun::Open() {
    std::ostream& err = console_.err;
    for (const auto& [option, folder] :
         {std::pair{"--msts", options_.msts}, std::pair{"--railworks", options_.railWorks},
          std::pair{"--rail-simulator", options_.railSimulator},
          std::pair{"--documents", options_.documents}, std::pair{"--tools", options_.tools}}) {
        if (!folder.empty() && !IsFolder(folder)) {
            err << "railwright: " << option << ": \"" << folder << "\" is not a folder\n";
            return kExitUsage;
        }
    }
    tools_ = options_.tools.empty() ? DefaultToolsFolder(console_.programFolder) : options_.tools;
    if (tools_.empty()) {
        err << "railwright: no tools folder beside the program; give one with --tools\n";
        return kExitUsage;
    }
    document::LoadResult loaded = document::Document::Load(options_.model);
    if (!loaded.document) {
        err << "railwright: " << loaded.error << '\n';
        return kExitUsage;
    }
    model_ = std::move(loaded.document);
    for (const std::string& notice : model_->Notices()) {
        err << "railwright: " << model_->Path() << ": " << notice << '\n';
    }
    // The exporters take TGA and BMP files, as the modeller's materials name them.
    cache_ = std::make_unique<TextureCache>(options_.noCache);
    const document::TexturePreparation textures = model_->PrepareTextures(cache_->Folder());
    for (const std::string& notice : textures.notices) {
        err << "railwright: " << notice << '\n';
    }
    if (!options_.quiet && textures.written + textures.reused > 0) {
        err << "railwright: textures: " << textures.written << " decoded, " << textures.reused
            << " taken from the cache \"" << cache_->Folder() << "\"\n";
    }
    return kExitSuccess;
}

plugin::ApplyOutcome PluginRun::Run(support::ModalUserInterface& ui,
                                    std::function<void(const std::string& report)> onReport) {
    std::ostream& err = console_.err;
    document::Document& model = *model_;
    host::scene::Scene& scene = model.Scene();
    started_ = fs::file_time_type::clock::now();

    Services services(options_.settings);
    ui.SetPicker([&scene](const support::GroupTarget& group) { return scene.PickGroup(group); });
    support::Platform servicesPlatform = services.MakePlatform(ui);
    recording_ = std::make_unique<RecordingFiles>(servicesPlatform.files);
    support::Platform platform{*recording_, servicesPlatform.processes,
                               servicesPlatform.settings, servicesPlatform.system, ui};

    scene.application->SetRegistryName(kApplicationName);
    scene.application->SetModelFolder(
        support::Utf8FromPath(support::PathFromUtf8(model.Path()).parent_path()));
    // The tools' command lines name the tools folder unquoted: its short form has no blanks.
    const std::string toolsShort = platform.files.ShortPath(tools_);
    const std::string toolsFolder =
        support::JoinPath(toolsShort.empty() ? tools_ : toolsShort, "");
    scene.application->SetToolsFolder(toolsFolder);
    scene.application->SetDocumentsFolder(options_.documents.empty()
                                              ? platform.system.DocumentsFolder()
                                              : options_.documents);
    scene.application->SetSimulators(
        {options_.msts.empty() ? std::string{} : support::JoinPath(options_.msts, "train.exe"),
         options_.railWorks.empty() ? options_.railSimulator : options_.railWorks});
    host::scene::ExporterBehaviour exporters;
    exporters.exportShape = [&](host::SceneGroup& mainGroup, const std::string& file,
                                const host::ShapeExportOptions& shapeOptions) {
        const document::shape::ShapeWriteResult written = document::shape::WriteShapeFile(
            platform, mainGroup, file, shapeOptions);
        if (!written.Ok()) {
            err << "railwright: cannot write the shape: " << written.error << '\n';
            return false;
        }
        const std::string report = document::shape::ReportText(written.report);
        if (!options_.quiet) {
            console_.out << report << std::flush;
        }
        if (onReport) {
            onReport(report);
        }
        return true;
    };
    exporters.exportIgs = exporters.exportIa = [&err](const std::string& file) {
        err << "railwright: cannot write \"" << file
            << "\": RailWorks intermediate files are not available in this version\n";
        return false;
    };
    scene.application->SetExporterBehaviour(exporters);

    plugin::ProductExports exports(platform);
    plugin::Railwright plugin(platform, *scene.viewer, exports);
    plugin.Plugin_Apply(scene.scripting, scene.hostContext, 0, model.UserDataSingles(),
                        model.UserDataLongs(), model.UserDataString());
    return plugin.LastOutcome();
}

std::vector<WrittenFile> PluginRun::WrittenFiles() const {
    std::vector<WrittenFile> files;
    if (!recording_) {
        return files;
    }
    for (const std::string& folder : recording_->Folders()) {
        std::error_code error;
        for (const fs::directory_entry& entry :
             fs::directory_iterator(support::PathFromUtf8(folder), error)) {
            std::error_code entryError;
            if (entry.is_regular_file(entryError) &&
                entry.last_write_time(entryError) >= started_ - std::chrono::seconds(2)) {
                files.push_back({support::Utf8FromPath(entry.path()), entry.file_size(entryError)});
            }
        }
    }
    std::sort(files.begin(), files.end(),
              [](const WrittenFile& a, const WrittenFile& b) { return a.path < b.path; });
    files.erase(std::unique(files.begin(), files.end(),
                            [](const WrittenFile& a, const WrittenFile& b) {
                                return a.path == b.path;
                            }),
                files.end());
    return files;
}

SaveOutcome PluginRun::Save(const plugin::ApplyOutcome& outcome) {
    std::ostream& err = console_.err;
    if (!outcome.wizardFinished) {
        SaveOutcome cancelled{kExitFailed, "the wizard was cancelled; the model was not saved"};
        if (!options_.quiet) {
            err << "railwright: " << cancelled.text << '\n';
        }
        return cancelled;
    }
    const document::SaveResult saved =
        options_.output.empty() ? model_->Save() : model_->SaveAs(options_.output);
    if (!saved.Ok()) {
        err << "railwright: " << saved.error << '\n';
        return {kExitFailed, saved.error};
    }
    SaveOutcome done{outcome.exportsSucceeded ? kExitSuccess : kExitFailed,
                     "saved \"" + (options_.output.empty() ? model_->Path() : options_.output) +
                         "\"" + (outcome.exportsSucceeded ? "" : "; an export failed")};
    if (!options_.quiet) {
        err << "railwright: " << done.text << '\n';
    }
    return done;
}

}  // namespace railwright::cli
