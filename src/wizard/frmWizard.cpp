#include "wizard/frmWizard.h"

#include <algorithm>
#include <cstdlib>

namespace railwright::wizard {
namespace {

constexpr const char* kPositionSection = "Railwright";

// A stored edge as the settings store keeps it: text converted to a number.
int32_t StoredEdge(const std::string& text) {
    return static_cast<int32_t>(std::strtod(text.c_str(), nullptr));
}

}  // namespace

frmWizard::frmWizard(support::Platform& platform, support::FontWiz& fonts, WizardHost host)
    : DialogModel("frmWizard"),
      cmdPrevious(Add(support::ControlKind::CommandButton, "cmdPrevious", "< Back")),
      cmdNext(Add(support::ControlKind::CommandButton, "cmdNext", "Next >")),
      cmdFinish(Add(support::ControlKind::CommandButton, "cmdFinish", "Finish")),
      cmdCancel(Add(support::ControlKind::CommandButton, "cmdCancel", "Cancel")),
      Viewer(Add(support::ControlKind::View, "Viewer")),
      platform_(platform),
      fonts_(fonts),
      host_(host) {
    cmdFinish.onClick = [this] { cmdFinish_Click(); };
    cmdCancel.onClick = [this] { cmdCancel_Click(); };
}

void frmWizard::SetOptions(std::string& userDataString, std::vector<float>& userDataSingles,
                           std::vector<int32_t>& userDataLongs) {
    settingsText_ = userDataString;
    userDataSingles.resize(kSingleCount, 0.0f);
    userDataLongs.resize(kLongCount, 0);
    std::copy_n(userDataSingles.begin(), kSingleCount, settingsSingles_.begin());
    std::copy_n(userDataLongs.begin(), kLongCount, settingsLongs_.begin());
}

void frmWizard::GetOptions(std::string& userDataString, std::vector<float>& userDataSingles,
                           std::vector<int32_t>& userDataLongs) const {
    userDataString = settingsText_;
    for (size_t i = 0; i < kSingleCount && i < userDataSingles.size(); ++i) {
        userDataSingles[i] = settingsSingles_[i];
    }
    for (size_t i = 0; i < kLongCount && i < userDataLongs.size(); ++i) {
        userDataLongs[i] = settingsLongs_[i];
    }
}

void frmWizard::SetSceneGraph(std::shared_ptr<host::SceneGraph> sceneGraph) {
    sceneGraph_ = std::move(sceneGraph);
}

void frmWizard::OnLoad() {
    fonts_.AdjustForm(*this);
    const std::string application = host_.context.Application()->RegistryName();
    const support::ScreenSize screen = platform_.ui.Screen();
    const std::string left = platform_.settings.GetSetting(application, kPositionSection, "Left",
                                                           std::to_string(screen.width / 4));
    const std::string top = platform_.settings.GetSetting(application, kPositionSection, "Top",
                                                          std::to_string(screen.height / 4));
    Move(StoredEdge(left), StoredEdge(top));
}

void frmWizard::OnUnload() {
    const std::string application = host_.context.Application()->RegistryName();
    platform_.settings.SaveSetting(application, kPositionSection, "Left", std::to_string(Left()));
    platform_.settings.SaveSetting(application, kPositionSection, "Top", std::to_string(Top()));
    sceneGraph_.reset();
}

// FIXME: Finish's checks, save and model changes come with the identification work; until then
// Finish closes the wizard as finished.
void frmWizard::cmdFinish_Click() {
    finishClicked_ = true;
    Unload();
}

void frmWizard::cmdCancel_Click() { Unload(); }

}  // namespace railwright::wizard
