// The Railwright plug-in class: its identity for the host and one application to a model.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/Host.h"
#include "settings/SettingsText.h"
#include "support/FontWiz.h"
#include "support/Platform.h"

namespace railwright::plugin {

// What every export driver is given.
struct ExportArguments {
    host::Scripting& scripting;
    host::SceneGraph& sceneGraph;
    host::Application& application;
    std::vector<float>& userDataSingles;
    std::vector<int32_t>& userDataLongs;
    const settings::SettingsFields& fields;
    bool exportToDocumentsFolder = false;
};

// The export drivers, each returning true when the export succeeded and later exports may run.
class ExportDrivers {
public:
    virtual ~ExportDrivers() = default;
    virtual bool ExportToMsts(const ExportArguments& arguments) = 0;
    // railWorks: false for Rail Simulator, true for RailWorks.
    virtual bool ExportRailWorks(const ExportArguments& arguments, bool railWorks) = 0;
};

struct Validation {
    int32_t componentType = 0;
    int32_t selectionType = 0;
    int32_t validMinComponents = 0;
    int32_t validMaxComponents = 0;
    int32_t validMinShapeSubSelection = 0;
    int32_t validMaxShapeSubSelection = 0;
    bool operator==(const Validation&) const = default;
};

// How the last application ended, for a front end that reports it (the command's exit status).
struct ApplyOutcome {
    bool wizardFinished = false;  // closed by Finish after its checks passed
    bool exportsSucceeded = true; // every export that ran succeeded
};

class Railwright {
public:
    // The viewer is the wizard's embedded view, owned by the front end.
    Railwright(support::Platform& platform, host::Viewer& viewer, ExportDrivers& exports);

    // The identity needs no host: the COM class answers it without an application.
    static std::string Plugin_Name();
    static std::string Plugin_Author();
    static int32_t Plugin_PluginClass();
    // No picture: the host shows its default icon.
    std::nullptr_t Plugin_Icon() const { return nullptr; }
    // Accepts whatever the host passes in: changes none of the arguments.
    void Plugin_GetValidation(Validation& validation) const;

    // One application of the plug-in. Never throws; always succeeds for the host.
    bool Plugin_Apply(const std::shared_ptr<host::Scripting>& scene,
                      const std::shared_ptr<host::HostContext>& sceneGraph, int32_t deviceId,
                      std::vector<float>& userDataSingles, std::vector<int32_t>& userDataLongs,
                      std::string& userDataString) noexcept;

    const ApplyOutcome& LastOutcome() const { return outcome_; }

private:
    void PlaceView();
    void RunExports(std::vector<float>& userDataSingles, std::vector<int32_t>& userDataLongs,
                    const std::string& userDataString);
    void NotifyHost();

    support::Platform& platform_;
    support::FontWiz fonts_;
    host::Viewer& viewer_;
    ExportDrivers& exports_;
    // The module-wide host references, held for the duration of one application.
    std::shared_ptr<host::Scripting> scene_;
    std::shared_ptr<host::HostContext> sceneGraph_;
    ApplyOutcome outcome_;
};

}  // namespace railwright::plugin
