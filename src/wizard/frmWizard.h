// frmWizard: the stepped wizard, as a dialog model.
//
// The plug-in hands it the model's settings (SetOptions), the scene graph, and shows it modally;
// the wizard loads when it is shown, so that its load sees the settings and the scene graph.
// When it closes, FinishClicked tells whether Finish closed it and GetOptions returns the
// settings to store with the model.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/Host.h"
#include "support/DialogModel.h"
#include "support/FontWiz.h"
#include "support/Platform.h"

namespace railwright::wizard {

using support::Control;
using support::ControlArray;

inline constexpr size_t kSingleCount = 6;
inline constexpr size_t kLongCount = 46;

// What the wizard reaches of the host while it is open.
struct WizardHost {
    host::Scripting& scene;
    host::HostContext& context;
    host::Viewer& viewer;
};

class frmWizard : public support::DialogModel {
public:
    frmWizard(support::Platform& platform, support::FontWiz& fonts, WizardHost host);

    // Copies the settings in; resizes the caller's arrays to 6 and 46 elements, keeping values.
    void SetOptions(std::string& userDataString, std::vector<float>& userDataSingles,
                    std::vector<int32_t>& userDataLongs);
    // Copies the settings back, element by element.
    void GetOptions(std::string& userDataString, std::vector<float>& userDataSingles,
                    std::vector<int32_t>& userDataLongs) const;

    bool FinishClicked() const { return finishClicked_; }
    void SetFinishClicked(bool value) { finishClicked_ = value; }

    void SetSceneGraph(std::shared_ptr<host::SceneGraph> sceneGraph);
    const std::shared_ptr<host::SceneGraph>& SceneGraph() const { return sceneGraph_; }

    Control& cmdPrevious;
    Control& cmdNext;
    Control& cmdFinish;
    Control& cmdCancel;
    Control& Viewer;

protected:
    void OnLoad() override;
    void OnUnload() override;

    void cmdFinish_Click();
    void cmdCancel_Click();

    support::Platform& platform_;
    support::FontWiz& fonts_;
    WizardHost host_;
    std::string settingsText_;
    std::array<float, kSingleCount> settingsSingles_{};
    std::array<int32_t, kLongCount> settingsLongs_{};
    bool finishClicked_ = false;
    std::shared_ptr<host::SceneGraph> sceneGraph_;
};

}  // namespace railwright::wizard
