// `railwright wizard`: one application of the plug-in to a glTF model, with the wizard shown in
// the user's browser by a server on this machine. The dialogs run on a thread of their own; the
// run ends when the wizard closes, and then goes on as `apply` does (exports, save, exit status).
#include <chrono>
#include <iostream>
#include <thread>

#include "cli/Command.h"
#include "cli/PluginRun.h"
#include "support/Utf8Paths.h"
#include "ui/web/WebServer.h"

#ifdef _WIN32
#include <windows.h>
#include <shellapi.h>
#else
#include <spawn.h>
#include <sys/wait.h>
extern char** environ;
#endif

namespace railwright::cli {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

// How long the command waits, after the run, for the page to fetch the outcome.
constexpr std::chrono::seconds kOutcomeWait{10};

// The page's files: installed in ../share/railwright/web beside the program, and so in the
// build tree.
fs::path PageFolder(const std::string& programFolder) {
    return support::PathFromUtf8(programFolder) / ".." / "share" / "railwright" / "web";
}

// Opens the address in the desktop's browser; false when that could not be started.
bool OpenBrowser(const std::string& address) {
#ifdef _WIN32
    const std::wstring wide = support::PathFromUtf8(address).wstring();
    return reinterpret_cast<INT_PTR>(ShellExecuteW(nullptr, L"open", wide.c_str(), nullptr,
                                                   nullptr, SW_SHOWNORMAL)) > 32;
#else
    std::string program = "xdg-open";
    std::string argument = address;
    char* argv[] = {program.data(), argument.data(), nullptr};
    pid_t child = 0;
    if (posix_spawnp(&child, "xdg-open", nullptr, nullptr, argv, environ) != 0) {
        return false;
    }
    // xdg-open hands the address to the browser and ends.
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
#endif
}

// The model's groups in Scripting.Group order, for the page's tree and its picks.
json Groups(document::Document& model) {
    json groups = json::array();
    const nlohmann::ordered_json inspection = model.Inspect();
    for (const auto& group : inspection["groups"]) {
        groups.push_back({{"index", group["index"]}, {"name", group["name"]},
                          {"parent", group["parent"]}});
    }
    return groups;
}

}  // namespace

int Wizard(const WizardOptions& options, Console console) {
    std::ostream& err = console.err;
    PluginRun run(options, console);
    if (const int status = run.Open(); status != kExitSuccess) {
        return status;
    }
    document::Document& model = run.Model();
    const fs::path modelPath = support::PathFromUtf8(model.Path());
    const json modelFile = {{"file", "model/" + support::Utf8FromPath(modelPath.filename())},
                            {"name", support::Utf8FromPath(modelPath.filename())}};
    ui::web::WebUserInterface ui(
        [&model, &modelFile] { return json{{"model", modelFile}, {"groups", Groups(model)}}; },
        &err);

    ui::web::ServerOptions serverOptions;
    serverOptions.pageFolder = PageFolder(console.programFolder);
    serverOptions.modelFolder = modelPath.parent_path();
    for (const std::string& file : model.ReferencedFiles()) {
        serverOptions.modelFiles.insert(file);
    }
    serverOptions.port = options.port;
    ui::web::WebServer server(ui, serverOptions);
    if (const std::string error = server.Start(); !error.empty()) {
        err << "railwright: cannot serve the wizard: " << error << '\n';
        return kExitUsage;
    }
    console.out << "The wizard is at " << server.Address() << '\n' << std::flush;
    if (!options.noBrowser && !OpenBrowser(server.Address())) {
        err << "railwright: no browser could be opened; open the address above in one\n";
    }

    SaveOutcome saved;
    std::thread dialogs([&] {
        json reports = json::array();
        const plugin::ApplyOutcome outcome =
            run.Run(ui, [&reports](const std::string& report) { reports.push_back(report); });
        saved = run.Save(outcome);
        json files = json::array();
        for (const WrittenFile& file : run.WrittenFiles()) {
            files.push_back({{"path", file.path}, {"bytes", file.bytes}});
        }
        ui.Finish({{"outcome",
                    {{"finished", outcome.wizardFinished},
                     {"exportsSucceeded", outcome.exportsSucceeded},
                     {"status", saved.status},
                     {"saved", saved.text},
                     {"files", std::move(files)},
                     {"reports", std::move(reports)}}}});
    });
    dialogs.join();

    // The page shows the outcome once it has fetched it; a closed page needs nothing more.
    const auto deadline = std::chrono::steady_clock::now() + kOutcomeWait;
    while (!ui.DoneDelivered() && !ui.IsClosed() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    server.Stop();
    return saved.status;
}

}  // namespace railwright::cli
