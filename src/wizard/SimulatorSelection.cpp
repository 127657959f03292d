// The simulators to export to, their install tests and custom group fields, the MSTS route list,
// and the texture and export-location options.
#include <array>

#include "support/SupportingFunctions.h"
#include "support/Warn.h"
#include "wizard/CustomFields.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr std::string_view kMstsMissing =
    "Unable to find Microsoft Train Simulator. This wizard requires that Microsoft Train "
    "Simulator be installed to export to Microsoft Train Simulator format.";
constexpr std::string_view kRailWorksMissing =
    "Unable to find RailWorks. This wizard requires that RailWorks be installed to export to "
    "RailWorks format.";
constexpr std::string_view kRailSimulatorMissing =
    "Unable to find Rail Simulator. This wizard requires that Rail Simulator be installed to "
    "export to Rail Simulator format.";

constexpr const char* kRoutesFolder = "ROUTES";

constexpr std::array<std::string_view, 3> kCompressions{"Uncompressed", "Lossless Compression",
                                                        "Lossy Compression"};

// The export-location notice, shown through the dismissible warnings under its own entry.
constexpr const char* kExportLocationsEntry = "ExportLocations";
constexpr std::string_view kExportLocations =
    "The Railwright will now export to the locations required by the simulator(s). ";
constexpr std::string_view kRestrictedFolders =
    "Newer versions of Windows may not permit writing to the required folders.";
constexpr std::string_view kToEnableThis = " To enable this:";
constexpr std::array<std::string_view, 6> kPermissionSteps{
    "o) right click on the folder you need to provide access to.",
    "o) click on the \"Security\" tab.",
    "o) click the \"Edit\" button beneath \"Group or user names:\".",
    "o) choose \"Users (...)\" of the \"Group or user names:\" list.",
    "o) check \"Full control\" beneath \"Allow\" in the \"Permissions for users\" section.",
    "o) click \"OK\"."};

// The RailWorks locator may show its own dialogs; the wizard has no native window to own them.
constexpr intptr_t kNoOwnerWindow = 0;

void ShowStop(support::UserInterface& ui, std::string_view text) {
    ui.ShowMessage(text, support::MessageIcon::Critical, support::MessageButtons::Ok);
}

}  // namespace

void frmWizard::InitialiseSimulatorSelection() {
    fraSimulator.SetCaption("Simulators");
    chkMSTS.SetCaption("Microsoft Train Simulator");
    chkRailSimulator.SetCaption("Rail Simulator");
    chkRailWorks.SetCaption("RailWorks");
    chkTrainz.SetCaption("Trainz Railroad Simulator (Available Soon)");
    chkRail3D.SetCaption("Rail3D (Available Soon)");
    chkBVE.SetCaption("BVE (Available Soon)");
    lblRoute.SetCaption("Add to Route:");
    fraTextures.SetCaption("Textures");
    chkConvertTextures.SetCaption("Convert Textures");
    chkConvertTextures.SetToolTipText("Convert textures as required by MSTS and Rail Simulator");
    cboCompression.SetToolTipText("Compression method to use for conversion of textures");
    chkExportToDocumentsFolder.SetCaption("Export To Documents Folder");
    chkDefaultGroupCustomFields.SetCaption("Set Default Custom Fields Values");

    chkMSTS.onClick = Handler([this] { chkMSTS_Click(); });
    chkRailWorks.onClick =
        Handler([this] { RailWorksOrRailSimulator_Click(chkRailWorks, kRailWorksMissing); });
    chkRailSimulator.onClick = Handler(
        [this] { RailWorksOrRailSimulator_Click(chkRailSimulator, kRailSimulatorMissing); });
    // No install test for these: their export is only reported.
    chkTrainz.onClick = Handler([this] { EnsureGroupField(kTrainzField); });
    chkRail3D.onClick = Handler([this] { EnsureGroupField(kRail3DField); });
    chkBVE.onClick = Handler([this] { EnsureGroupField(kBveField); });
    chkConvertTextures.onClick = Handler([this] { chkConvertTextures_Click(); });
    chkExportToDocumentsFolder.onClick = Handler([this] { chkExportToDocumentsFolder_Click(); });
}

void frmWizard::FillCompressions() {
    for (const std::string_view compression : kCompressions) {
        cboCompression.AddItem(std::string(compression));
    }
}

void frmWizard::chkMSTS_Click() {
    if (chkMSTS.Value() == 0) {
        return;
    }
    const std::string folder = support::MstsFolder(host_.context, {});
    if (folder.empty()) {
        ShowStop(platform_.ui, kMstsMissing);
        chkMSTS.SetValue(0);
        return;
    }
    // The routes are the sub-folders of the simulator's ROUTES folder, in the order listed.
    cboRoute.Clear();
    for (std::string& route :
         platform_.files.ListFolders(support::JoinPath(folder, kRoutesFolder))) {
        if (route != "." && route != "..") {
            cboRoute.AddItem(std::move(route));
        }
    }
    EnsureGroupField(kMstsField);
}

void frmWizard::RailWorksOrRailSimulator_Click(Control& box, std::string_view missingMessage) {
    if (box.Value() == 0) {
        return;
    }
    if (support::RailWorksFolder(host_.context, kNoOwnerWindow).empty()) {
        ShowStop(platform_.ui, missingMessage);
        box.SetValue(0);
        return;
    }
    EnsureGroupField(kRailSimField);
}

void frmWizard::chkConvertTextures_Click() {
    if (chkConvertTextures.Value() == 1) {
        cboCompression.SetEnabled(true);
    } else {
        cboCompression.SetEnabled(false);
        cboCompression.SetListIndex(0);
    }
}

void frmWizard::chkExportToDocumentsFolder_Click() {
    // The load disables the box while it sets the stored value, so that it never shows the
    // notice.
    if (chkExportToDocumentsFolder.Value() != 0 || !chkExportToDocumentsFolder.Enabled()) {
        return;
    }
    std::string notice(kExportLocations);
    if (platform_.system.RestrictsProgramFolders()) {
        notice += kRestrictedFolders;
        notice += kToEnableThis;
        for (const std::string_view step : kPermissionSteps) {
            notice += '\r';
            notice += step;
        }
    }
    support::ShowWarning(platform_, fonts_, ApplicationName(), notice, kExportLocationsEntry);
}

}  // namespace railwright::wizard
