// What the simulator export drivers share around their own files: running their steps, finding
// the "Main" group, the prefix of the placeholder groups that no export textures or measures, and
// the messages that end an export, each formed from the simulator's name ("MSTS", "RailWorks",
// "Rail Simulator").
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/Host.h"
#include "support/Platform.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportcommon {

// Groups whose names begin with this (ignoring case) are placeholders: markers, not geometry.
using support::kPlaceholderPrefix;

// The index of the first group, in the host's order from index 0, whose name is "MAIN" in upper
// case; nothing when there is none.
std::optional<int32_t> FindMainGroup(host::Scripting& scripting);

// The exclamation box shown when there is no "Main" group.
void ShowNoMainGroup(support::UserInterface& ui);

// The critical box shown when the texture check found untextured shapes. It names Microsoft
// Train Simulator whatever the simulator; kept as it has always read.
void ShowNotFullyTextured(support::UserInterface& ui, std::string_view simulatorName);

// The critical box that ends a failed export, with the problem reports forum's address.
void ShowExportFailed(support::UserInterface& ui, std::string_view simulatorName);

// The information box that ends a successful export, naming the folder in double quotes.
void ShowExportedTo(support::UserInterface& ui, std::string_view simulatorName,
                    const std::string& folder);

// An export's steps in order: a step runs only while none before it has failed, and an error
// thrown by a step marks the export failed. `step` says what the step does ("writing the shape
// data file"), for the explanation of a failure.
class ExportSteps {
  public:
    template <typename Body>
    void Run(std::string_view step, Body&& body) {
        Run(step, body, [] {});
    }

    // As Run(step, body); `onError` runs inside the handler, so that it can read the current
    // error.
    template <typename Body, typename OnError>
    void Run(std::string_view step, Body&& body, OnError&& onError) {
        if (failed_) {
            return;
        }
        try {
            body();
        } catch (...) {
            failed_ = true;
            failure_ = std::string(step) + ": " + support::CurrentError().description;
            onError();
        }
    }

    bool Failed() const { return failed_; }
    // The failed step and its error's description; empty while no step has failed.
    const std::string& Failure() const { return failure_; }

  private:
    bool failed_ = false;
    std::string failure_;
};

// Runs a driver's export and returns its result. An error before the steps (the folders, the
// "Main" group) ends the export as a failed step does; nothing reaches the caller, not even a
// failing message box.
template <typename Export>
bool RunExport(support::UserInterface& ui, std::string_view simulatorName,
               Export&& runExport) noexcept {
    try {
        return runExport();
    } catch (...) {
        try {
            ui.Explain("The " + std::string(simulatorName) +
                       " export failed: " + support::CurrentError().description);
            ShowExportFailed(ui, simulatorName);
        } catch (...) {
            // Nothing may reach the host.
        }
        return false;
    }
}

// The box that ends an export once its steps have run: failed, or exported to `folder`. Whether
// the export succeeded.
bool FinishExport(support::UserInterface& ui, std::string_view simulatorName,
                  const ExportSteps& steps, const std::string& folder);

}  // namespace railwright::exportcommon
