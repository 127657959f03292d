// One application of the plug-in to a glTF model from the command line: what `apply` and
// `wizard` share. Only the front end differs (an event script, or the page in a browser).
//
//     PluginRun run(options, console);
//     if (const int status = run.Open(); status != kExitSuccess) return status;   // nothing written
//     const plugin::ApplyOutcome outcome = run.Run(ui);   // the wizard, then the chosen exports
//     return run.Save(outcome).status;                    // saved unless cancelled
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/Command.h"
#include "cli/Services.h"
#include "document/Document.h"
#include "plugin/Railwright.h"
#include "support/ModalStack.h"

namespace railwright::cli {

class TextureCache;

// A file an export wrote, with its size in bytes.
struct WrittenFile {
    std::string path;
    uintmax_t bytes = 0;
};

struct SaveOutcome {
    int status = kExitSuccess;
    std::string text;  // what became of the model, for the user
};

class PluginRun {
public:
    PluginRun(const RunOptions& options, Console console);
    ~PluginRun();

    // Checks the folders and the tools, loads the model and makes the TGA pictures of its
    // textures; kExitSuccess, or kExitUsage with the fault written to the console.
    [[nodiscard]] int Open();
    document::Document& Model() { return *model_; }

    // Runs the wizard with `ui` as its front end, then the chosen exports, on this thread.
    // Every export report of a shape goes to `onReport` as well as to the console.
    plugin::ApplyOutcome Run(support::ModalUserInterface& ui,
                             std::function<void(const std::string& report)> onReport = {});
    // The files in the folders the exports wrote to that changed during Run, sorted by path.
    std::vector<WrittenFile> WrittenFiles() const;

    // Saves the model as the command does (unless the wizard was cancelled) and tells the user.
    SaveOutcome Save(const plugin::ApplyOutcome& outcome);

private:
    class RecordingFiles;

    RunOptions options_;
    Console console_;
    std::string tools_;
    std::unique_ptr<document::Document> model_;
    std::unique_ptr<RecordingFiles> recording_;
    std::unique_ptr<TextureCache> cache_;  // lives as long as the run: a temporary one is removed
    std::filesystem::file_time_type started_;
};

}  // namespace railwright::cli
