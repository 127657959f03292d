// modWarn and frmWarn: notices the user can switch off for good. The choice is kept per user in
// section "Tips" of the settings store, one key per notice: "1" (or nothing) shows it, "0" not.
#pragma once

#include <string>

#include "support/DialogModel.h"
#include "support/Platform.h"

namespace railwright::support {

class FontWiz;

class frmWarn : public DialogModel {
public:
    frmWarn(SettingsStore& settings, FontWiz& fonts);

    std::string sWarning;
    std::string sWarningRegistryEntry;
    std::string sApplicationRegistryKey;

    Control& lblWarning;
    Control& chkContinueToReceiveWarning;
    Control& cmdOK;

protected:
    void OnLoad() override;
    void OnUnload() override;

private:
    SettingsStore& settings_;
    FontWiz& fonts_;
};

// Shows the notice unless the user has switched it off.
void ShowWarning(Platform& platform, FontWiz& fonts, const std::string& applicationName,
                 const std::string& notice, const std::string& registryEntry);

}  // namespace railwright::support
