#include "plugin/Railwright.h"

#include <optional>

#include "settings/ProjectSettings.h"
#include "support/SupportingFunctions.h"
#include "wizard/frmWizard.h"

namespace railwright::plugin {
namespace {

constexpr std::string_view kPluginName = "Railwright";
constexpr std::string_view kPluginAuthor = "The Railwright developers";

// Runs one step of the flow; a failure is reported and the flow goes on where it can.
template <typename Step>
bool Attempt(support::UserInterface& ui, Step&& step) noexcept {
    try {
        step();
        return true;
    } catch (...) {
        try {
            support::ReportCurrentError(ui);
        } catch (...) {
            // Nothing may reach the host, not even a failing report.
        }
        return false;
    }
}

}  // namespace

Railwright::Railwright(support::Platform& platform, host::Viewer& viewer, ExportDrivers& exports)
    : platform_(platform), fonts_(platform.system), viewer_(viewer), exports_(exports) {}

std::string Railwright::Plugin_Name() { return std::string(kPluginName); }

std::string Railwright::Plugin_Author() { return std::string(kPluginAuthor); }

int32_t Railwright::Plugin_PluginClass() { return 1; }

void Railwright::Plugin_GetValidation(Validation&) const {}

bool Railwright::Plugin_Apply(const std::shared_ptr<host::Scripting>& scene,
                              const std::shared_ptr<host::HostContext>& sceneGraph, int32_t,
                              std::vector<float>& userDataSingles,
                              std::vector<int32_t>& userDataLongs,
                              std::string& userDataString) noexcept {
    support::UserInterface& ui = platform_.ui;
    outcome_ = {};
    // The references the plug-in holds for the length of the call.
    scene_ = scene;
    sceneGraph_ = sceneGraph;
    if (scene_ && sceneGraph_) {
        Attempt(ui, [&] {
            wizard::frmWizard wizard(platform_, fonts_, {*scene_, *sceneGraph_, viewer_});
            // The settings into the wizard. A failure here leaves nothing to show: straight on to
            // the notifications.
            const bool ready = Attempt(ui, [&] {
                wizard.SetOptions(userDataString, userDataSingles, userDataLongs);
                wizard.SetFinishClicked(false);
                wizard.SetSceneGraph(scene_->RootGroup()->SceneGraph());
            });
            if (ready) {
                // A view that cannot be placed still opens the wizard.
                Attempt(ui, [&] { PlaceView(); });
                // The wizard, modally.
                Attempt(ui, [&] { ui.ShowModal(wizard); });
                // Finish: the settings back into the model's values, then the exports.
                if (wizard.FinishClicked()) {
                    outcome_.wizardFinished = true;
                    const bool ran = Attempt(ui, [&] {
                        wizard.GetOptions(userDataString, userDataSingles, userDataLongs);
                        RunExports(userDataSingles, userDataLongs, userDataString);
                    });
                    outcome_.exportsSucceeded = outcome_.exportsSucceeded && ran;
                }
            }
            // Whatever happened, the host redraws and the wizard is unloaded.
            NotifyHost();
            Attempt(ui, [&] { wizard.Unload(); });
        });
    }
    // The references are released.
    scene_.reset();
    sceneGraph_.reset();
    return true;
}

void Railwright::PlaceView() {
    const host::ViewArea area = scene_->GetViewArea();
    viewer_.Attach(*sceneGraph_, *scene_);
    const float centreX = area.x + area.size / 2;
    const float centreZ = area.z + area.size / 2;
    const auto pointAt = [this](float x, float y, float z) {
        viewer_.SetPointX(x);
        viewer_.SetPointY(y);
        viewer_.SetPointZ(z);
    };
    pointAt(centreX, area.y, centreZ);

    // The first group below the root that holds geometry.
    const int32_t count = scene_->GroupCount();
    int32_t i = 1;
    while (i < count && scene_->Group(i)->ShapeCount() < 1) {
        ++i;
    }
    // With no geometry there is nothing to look at: the view stays on the area's centre.
    if (i < count) {
        std::shared_ptr<host::SceneGroup> root = scene_->RootGroup();
        const host::Vector3 position = scene_->Group(i)->GetPosition(*root, host::kCurrentPose);
        pointAt(position.x, position.y, position.z);
        viewer_.LookAtPoint();
    }
    pointAt(centreX, area.y, centreZ);
}

void Railwright::RunExports(std::vector<float>& userDataSingles,
                            std::vector<int32_t>& userDataLongs,
                            const std::string& userDataString) {
    const settings::SettingsFields fields = settings::SplitSettingsText(userDataString);
    const bool toDocuments =
        settings::Long(userDataLongs, settings::kLongExportToDocumentsFolder) == 1;
    // The gate is a bitwise and of the previous result (all ones or 0) with the stored choice.
    int32_t ok = -1;
    const auto run = [&](auto&& driver) {
        std::shared_ptr<host::SceneGraph> graph = scene_->RootGroup()->SceneGraph();
        std::shared_ptr<host::Application> application = sceneGraph_->Application();
        const ExportArguments arguments{*scene_,        *graph, *application, userDataSingles,
                                        userDataLongs, fields, toDocuments};
        bool succeeded = false;
        Attempt(platform_.ui, [&] { succeeded = driver(arguments); });
        ok = succeeded ? -1 : 0;
        outcome_.exportsSucceeded = outcome_.exportsSucceeded && succeeded;
    };
    if (settings::Long(userDataLongs, settings::kLongMsts) != 0) {
        run([this](const ExportArguments& arguments) { return exports_.ExportToMsts(arguments); });
    }
    if ((ok & settings::Long(userDataLongs, settings::kLongRailSimulator)) != 0) {
        run([this](const ExportArguments& arguments) {
            return exports_.ExportRailWorks(arguments, false);
        });
    }
    if ((ok & settings::Long(userDataLongs, settings::kLongRailWorks)) != 0) {
        run([this](const ExportArguments& arguments) {
            return exports_.ExportRailWorks(arguments, true);
        });
    }
}

void Railwright::NotifyHost() {
    Attempt(platform_.ui, [&] {
        std::shared_ptr<host::Application> application = sceneGraph_->Application();
        application->Redraw(1);
        application->RefreshPanel("SysProperties");
        application->SetStatus(100);
    });
}

}  // namespace railwright::plugin
