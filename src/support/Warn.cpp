#include "support/Warn.h"

#include <cstdlib>

#include "support/FontWiz.h"

namespace railwright::support {
namespace {

constexpr const char* kTipsSection = "Tips";

// The stored text as a number, the way the settings were always read: leading digits count,
// anything else is 0.
long StoredNumber(const std::string& text) { return std::strtol(text.c_str(), nullptr, 10); }

}  // namespace

frmWarn::frmWarn(SettingsStore& settings, FontWiz& fonts)
    : DialogModel("frmWarn"),
      lblWarning(Add(ControlKind::Label, "lblWarning")),
      chkContinueToReceiveWarning(Add(ControlKind::CheckBox, "chkContinueToReceiveWarning",
                                      "Continue to receive this message")),
      cmdOK(Add(ControlKind::CommandButton, "cmdOK", "OK")),
      settings_(settings),
      fonts_(fonts) {
    SetCaption(std::string(kMessageCaption));
    Resize(360, 152);
    // Tab order as listed; Enter and Escape both close the notice.
    lblWarning.Place(12, 12, 336, 72);
    chkContinueToReceiveWarning.Place(12, 92, 240, 20);
    cmdOK.Place(264, 116, 84, 28);
    SetDefaultButton(cmdOK);
    SetCancelButton(cmdOK);
    cmdOK.onClick = [this] { Unload(); };
}

void frmWarn::OnLoad() {
    fonts_.AdjustForm(*this);
    lblWarning.SetCaption(sWarning);
    chkContinueToReceiveWarning.SetValue(1);
}

void frmWarn::OnUnload() {
    settings_.SaveSetting(sApplicationRegistryKey, kTipsSection, sWarningRegistryEntry,
                          std::to_string(chkContinueToReceiveWarning.Value()));
}

void ShowWarning(Platform& platform, FontWiz& fonts, const std::string& applicationName,
                 const std::string& notice, const std::string& registryEntry) {
    const std::string stored =
        platform.settings.GetSetting(applicationName, kTipsSection, registryEntry, "1");
    if (StoredNumber(stored) != 1) {
        return;
    }
    frmWarn warning(platform.settings, fonts);
    warning.sWarning = notice;
    warning.sWarningRegistryEntry = registryEntry;
    warning.sApplicationRegistryKey = applicationName;
    platform.ui.ShowModal(warning);
}

}  // namespace railwright::support
