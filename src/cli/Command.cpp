#include "cli/Command.h"
#include "support/Utf8Paths.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace railwright::cli {
namespace {

#ifndef RAILWRIGHT_VERSION
#define RAILWRIGHT_VERSION "0.0.0"
#endif

constexpr const char* kDescription =
    "Railwright: turns a glTF model into content for railway simulators (MSTS / Open Rails "
    "engine and wagon files, shape data, REF files, .ace textures; RailWorks and Rail "
    "Simulator).";

}  // namespace

std::string DefaultToolsFolder(const std::string& programFolder) {
    namespace fs = std::filesystem;
    const fs::path folder = support::PathFromUtf8(programFolder);
    for (const fs::path& candidate :
         {folder / "tools", folder / ".." / "tools-bin",
          folder / ".." / "lib" / "railwright" / "tools"}) {
        std::error_code error;
        if (fs::is_directory(candidate, error)) {
            return support::Utf8FromPath(fs::weakly_canonical(candidate, error));
        }
    }
    return {};
}

int RunCommand(const std::vector<std::string>& arguments, Console console) {
    CLI::App app(kDescription, "railwright");
    app.set_version_flag("--version", std::string("railwright ") + RAILWRIGHT_VERSION);
    app.require_subcommand(1);
    app.fallthrough(false);

    ApplyOptions apply;
    CLI::App* applyCommand = app.add_subcommand(
        "apply", "Run the wizard on MODEL under an event script, then the chosen exports, and "
                 "save the model (unless the wizard was cancelled).");
    applyCommand->add_option("MODEL", apply.model, "The glTF model (.gltf or .glb)")->required();
#ifdef _WIN32
    // On Windows the wizard can also be shown in its own windows, for a person to use.
    applyCommand->add_option("--script", apply.script,
                             "The event script (JSON) the wizard replays (absent: the wizard is "
                             "shown in its windows)");
#else
    applyCommand->add_option("--script", apply.script, "The event script (JSON) the wizard replays")
        ->required();
#endif
    applyCommand->add_option("--msts", apply.msts,
                             "Where MSTS is installed (absent: not installed). For a rail vehicle "
                             "it must hold the default trains TRAINS/TRAINSET/DASH9, SCOTSMAN and "
                             "ACELA, whose cab views and sounds are copied; train.exe is not "
                             "needed");
    applyCommand->add_option("--railworks", apply.railWorks, "Where RailWorks is installed");
    applyCommand->add_option("--rail-simulator", apply.railSimulator,
                             "Where Rail Simulator is installed");
    applyCommand->add_option("--documents", apply.documents,
                             "The documents folder (default: the user's)");
    applyCommand->add_option("--tools", apply.tools,
                             "The tools folder (default: the tools installed with the program)");
    applyCommand->add_option("--settings", apply.settings,
                             "The per-user settings file (default: the user's)");
    applyCommand->add_option("--output", apply.output,
                             "Save the model here instead of over MODEL");
    applyCommand->add_flag("--quiet", apply.quiet, "No progress and no summary");
    applyCommand->add_flag("--no-cache", apply.noCache,
                           "Make the TGA pictures of the model's PNG, JPEG and embedded textures "
                           "in a temporary folder removed at exit, not in the user's cache");

    WizardOptions wizard;
    CLI::App* wizardCommand = app.add_subcommand(
        "wizard", "Show the wizard for MODEL in the browser, then run the chosen exports and save "
                  "the model (unless the wizard was cancelled).");
    wizardCommand->add_option("MODEL", wizard.model, "The glTF model (.gltf or .glb)")->required();
    wizardCommand->add_option("--msts", wizard.msts, "Where MSTS is installed (absent: not installed)");
    wizardCommand->add_option("--railworks", wizard.railWorks, "Where RailWorks is installed");
    wizardCommand->add_option("--rail-simulator", wizard.railSimulator,
                              "Where Rail Simulator is installed");
    wizardCommand->add_option("--documents", wizard.documents,
                              "The documents folder (default: the user's)");
    wizardCommand->add_option("--tools", wizard.tools,
                              "The tools folder (default: the tools installed with the program)");
    wizardCommand->add_option("--settings", wizard.settings,
                              "The per-user settings file (default: the user's)");
    wizardCommand->add_option("--output", wizard.output, "Save the model here instead of over MODEL");
    wizardCommand->add_option("--port", wizard.port, "The port on 127.0.0.1 (default: a free one)")
        ->check(CLI::Range(1, 65535));
    wizardCommand->add_flag("--no-cache", wizard.noCache,
                            "Make the TGA pictures of the model's textures in a temporary folder");
    wizardCommand->add_flag("--no-browser", wizard.noBrowser,
                            "Only print the page's address; do not open a browser");

    std::string inspectModel;
    bool json = false;
    CLI::App* inspectCommand =
        app.add_subcommand("inspect", "Show the groups, materials, fields and settings of MODEL.");
    inspectCommand->add_option("MODEL", inspectModel, "The glTF model (.gltf or .glb)")
        ->required();
    inspectCommand->add_flag("--json", json, "Print one JSON object");

    std::vector<const char*> argv;
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    try {
        app.parse(static_cast<int>(argv.size()), argv.data());
    } catch (const CLI::CallForHelp&) {
        console.out << app.help();
        return kExitSuccess;
    } catch (const CLI::CallForAllHelp&) {
        console.out << app.help("", CLI::AppFormatMode::All);
        return kExitSuccess;
    } catch (const CLI::CallForVersion& version) {
        console.out << version.what() << '\n';
        return kExitSuccess;
    } catch (const CLI::ParseError& error) {
        console.err << "railwright: " << error.what() << "\nRun 'railwright --help' for usage.\n";
        return kExitUsage;
    }
    if (applyCommand->parsed()) {
        return Apply(apply, console);
    }
    if (wizardCommand->parsed()) {
        return Wizard(wizard, console);
    }
    return Inspect(inspectModel, json, console);
}

}  // namespace railwright::cli
