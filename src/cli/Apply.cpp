// `railwright apply`: one application of the plug-in to a glTF model, with the wizard driven by an
// event script.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "cli/Command.h"
#include "cli/Services.h"
#include "cli/TextureCache.h"
#include "document/Document.h"
#include "document/shape/ShapeWriter.h"
#include "plugin/ProductExports.h"
#include "plugin/Railwright.h"
#include "support/SupportingFunctions.h"
#include "support/Utf8Paths.h"
#include "support/WholeFile.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::cli {
namespace {

// The application name under which the command keeps its per-user settings.
constexpr const char* kApplicationName = "Railwright";

// The scripted front end, with progress on a terminal.
class CommandLineInterface : public ui::script::ScriptedUserInterface {
public:
    CommandLineInterface(ui::script::EventScript script, std::ostream& err, bool showProgress)
        : ScriptedUserInterface(std::move(script), &err), err_(err), showProgress_(showProgress) {}

    void Progress(std::string_view task, int done, int total, std::string_view item) override {
        if (!showProgress_) {
            return;
        }
        err_ << "\r\x1b[K" << task << " " << done << "/" << total << " " << item;
        if (done >= total) {
            err_ << '\n';
        }
        err_ << std::flush;
    }

    void Explain(std::string_view why) override { err_ << "railwright: " << why << '\n'; }

private:
    std::ostream& err_;
    bool showProgress_;
};

bool IsFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(railwright::support::PathFromUtf8(path), error);
}

}  // namespace

int Apply(const ApplyOptions& options, Console console) {
    std::ostream& err = console.err;

    // Everything the run needs is checked before anything is written.
    const std::optional<std::string> scriptText = support::ReadWholeFile(support::PathFromUtf8(options.script));
    if (!scriptText) {
        err << "railwright: cannot read the script \"" << options.script << "\"\n";
        return kExitUsage;
    }
    ui::script::ParseResult parsed = ui::script::ParseEventScript(*scriptText);
    if (!parsed.script) {
        err << "railwright: the script \"" << options.script << "\" is not usable: "
            << parsed.error << '\n';
        return kExitUsage;
    }
    for (const auto& [option, folder] :
         {std::pair{"--msts", options.msts}, std::pair{"--railworks", options.railWorks},
          std::pair{"--rail-simulator", options.railSimulator},
          std::pair{"--documents", options.documents}, std::pair{"--tools", options.tools}}) {
        if (!folder.empty() && !IsFolder(folder)) {
            err << "railwright: " << option << ": \"" << folder << "\" is not a folder\n";
            return kExitUsage;
        }
    }
    const std::string tools =
        options.tools.empty() ? DefaultToolsFolder(console.programFolder) : options.tools;
    if (tools.empty()) {
        err << "railwright: no tools folder beside the program; give one with --tools\n";
        return kExitUsage;
    }
    document::LoadResult loaded = document::Document::Load(options.model);
    if (!loaded.document) {
        err << "railwright: " << loaded.error << '\n';
        return kExitUsage;
    }
    document::Document& model = *loaded.document;
    for (const std::string& notice : model.Notices()) {
        err << "railwright: " << model.Path() << ": " << notice << '\n';
    }
    host::scene::Scene& scene = model.Scene();

    Services services(options.settings);
    const bool showProgress = console.errIsTerminal && !options.quiet;
    CommandLineInterface ui(std::move(*parsed.script), err, showProgress);
    ui.SetPicker([&scene](const support::GroupTarget& group) { return scene.PickGroup(group); });
    support::Platform platform = services.MakePlatform(ui);

    scene.application->SetRegistryName(kApplicationName);
    scene.application->SetModelFolder(
        support::Utf8FromPath(support::PathFromUtf8(model.Path()).parent_path()));
    // The tools' command lines name the tools folder unquoted: its short form has no blanks.
    const std::string toolsShort = platform.files.ShortPath(tools);
    const std::string toolsFolder = support::JoinPath(toolsShort.empty() ? tools : toolsShort, "");
    scene.application->SetToolsFolder(toolsFolder);
    scene.application->SetDocumentsFolder(options.documents.empty()
                                              ? platform.system.DocumentsFolder()
                                              : options.documents);
    scene.application->SetSimulators(
        {options.msts.empty() ? std::string{} : support::JoinPath(options.msts, "train.exe"),
         options.railWorks.empty() ? options.railSimulator : options.railWorks});
    host::scene::ExporterBehaviour exporters;
    exporters.exportShape = [&](host::SceneGroup& mainGroup, const std::string& file,
                                const host::ShapeExportOptions& shapeOptions) {
        const document::shape::ShapeWriteResult written = document::shape::WriteShapeFile(
            platform, mainGroup, file, shapeOptions);
        if (!written.Ok()) {
            err << "railwright: cannot write the shape: " << written.error << '\n';
            return false;
        }
        if (!options.quiet) {
            console.out << document::shape::ReportText(written.report) << std::flush;
        }
        return true;
    };
    exporters.exportIgs = exporters.exportIa = [&err](const std::string& file) {
        err << "railwright: cannot write \"" << file
            << "\": RailWorks intermediate files are not available in this version\n";
        return false;
    };
    scene.application->SetExporterBehaviour(exporters);
    // The exporters take TGA and BMP files, as the modeller's materials name them.
    const TextureCache cache(options.noCache);
    const document::TexturePreparation textures = model.PrepareTextures(cache.Folder());
    for (const std::string& notice : textures.notices) {
        err << "railwright: " << notice << '\n';
    }
    if (!options.quiet && textures.written + textures.reused > 0) {
        err << "railwright: textures: " << textures.written << " decoded, " << textures.reused
            << " taken from the cache \"" << cache.Folder() << "\"\n";
    }

    plugin::ProductExports exports(platform);
    plugin::Railwright plugin(platform, *scene.viewer, exports);
    plugin.Plugin_Apply(scene.scripting, scene.hostContext, 0, model.UserDataSingles(),
                        model.UserDataLongs(), model.UserDataString());
    const plugin::ApplyOutcome outcome = plugin.LastOutcome();

    if (!ui.Faults().empty()) {
        for (const std::string& fault : ui.Faults()) {
            err << "railwright: script \"" << options.script << "\": " << fault << '\n';
        }
        err << "railwright: the model was not saved\n";
        return kExitUsage;
    }
    if (!outcome.wizardFinished) {
        if (!options.quiet) {
            err << "railwright: the wizard was cancelled; the model was not saved\n";
        }
        return kExitFailed;
    }
    const document::SaveResult saved =
        options.output.empty() ? model.Save() : model.SaveAs(options.output);
    if (!saved.Ok()) {
        err << "railwright: " << saved.error << '\n';
        return kExitFailed;
    }
    if (!options.quiet) {
        err << "railwright: saved \"" << (options.output.empty() ? model.Path() : options.output)
            << "\"" << (outcome.exportsSucceeded ? "" : "; an export failed") << '\n';
    }
    return outcome.exportsSucceeded ? kExitSuccess : kExitFailed;
}

}  // namespace railwright::cli
