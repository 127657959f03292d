#include "export/common/DriverSteps.h"

#include "support/SupportingFunctions.h"

namespace railwright::exportcommon {

std::optional<int32_t> FindMainGroup(host::Scripting& scripting) {
    const int32_t count = scripting.GroupCount();
    for (int32_t i = 0; i < count; ++i) {
        if (support::ToUpper(scripting.Group(i)->Name()) == "MAIN") {
            return i;
        }
    }
    return std::nullopt;
}

void ShowNoMainGroup(support::UserInterface& ui) {
    ui.ShowMessage(
        "No \"Main\" group found. Unable to export project. Re-run the wizard to identify your "
        "\"Main\" group.",
        support::MessageIcon::Exclamation, support::MessageButtons::Ok);
}

void ShowNotFullyTextured(support::UserInterface& ui, std::string_view simulatorName) {
    ui.ShowMessage("The export of your " + std::string(simulatorName) +
                       " project failed due to shapes not being fully textured. Microsoft Train "
                       "Simulator requires objects to be fully textured.",
                   support::MessageIcon::Critical, support::MessageButtons::Ok);
}

void ShowExportFailed(support::UserInterface& ui, std::string_view simulatorName) {
    ui.ShowMessage("The export of your " + std::string(simulatorName) +
                       " project failed. Please let us know on the problem reports forum at " +
                       std::string(support::kForumAddress),
                   support::MessageIcon::Critical, support::MessageButtons::Ok);
}

void ShowExportedTo(support::UserInterface& ui, std::string_view simulatorName,
                    const std::string& folder) {
    ui.ShowMessage(
        "Your " + std::string(simulatorName) + " project has been exported to: \"" + folder + "\"",
        support::MessageIcon::Information, support::MessageButtons::Ok);
}

bool FinishExport(support::UserInterface& ui, std::string_view simulatorName,
                  const ExportSteps& steps, const std::string& folder) {
    if (steps.Failed()) {
        ui.Explain("The " + std::string(simulatorName) + " export failed while " +
                   steps.Failure());
        ShowExportFailed(ui, simulatorName);
        return false;
    }
    ShowExportedTo(ui, simulatorName, folder);
    return true;
}

}  // namespace railwright::exportcommon
