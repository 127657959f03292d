// The wizard's steps: loading and unloading, "Next >", "< Back", the step buttons, "Cancel", and
// the page set-up that every step change runs.
#include <array>
#include <cstdlib>

#include "support/SupportingFunctions.h"
#include "wizard/Layout.h"
#include "wizard/ProjectTypes.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr const char* kPositionSection = "Railwright";
constexpr const char* kLeftKey = "Left";
constexpr const char* kTopKey = "Top";

constexpr std::string_view kSimulatorRequired = "At least one simulator is required.";

constexpr std::array<std::string_view, kStepCount> kStepCaptions{
    "Start", "Type", "Title", "Attributes", "Part Identification", "Export Preferences", "Finish"};

constexpr std::array<std::string_view, kDistanceLevelCount> kDistanceLevelCaptions{
    "No Distance Levels", "Automatically Simplified Distance Levels", "Standard Distance Levels",
    "Custom Distance Levels"};

constexpr std::string_view kExampleRefFile = "Create Example Ref file";
constexpr std::string_view kEngFile =
    "Create ENG File (de-select to avoid writing over manual changes)";
constexpr std::string_view kWagFile =
    "Create WAG File (de-select to avoid writing over manual changes)";
constexpr std::string_view kHeadOutView = "Head Out View";
constexpr std::string_view kPassengerView = "Passenger View";

// Wheel row captions: a steam engine's arrangement, and the two rows of other vehicles.
constexpr std::array<std::string_view, kWheelGroupCount> kSteamWheelRows{
    "Wheels forward of the drive wheels", "Drive wheels", "Wheels behind the drive wheels."};
constexpr std::array<std::string_view, 2> kVehicleWheelRows{"Front wheels", "Rear wheels"};

// A stored window edge: text converted to a number; text that is not a number gives 0.
int32_t StoredEdge(const std::string& text) {
    return static_cast<int32_t>(std::strtod(text.c_str(), nullptr));
}

std::string Text(std::string_view text) {
    return std::string(text);
}

}  // namespace

void frmWizard::InitialiseSteps() {
    for (int step = 0; step < kStepCount; ++step) {
        Control& button = optSteps[static_cast<size_t>(step)];
        button.SetCaption(Text(kStepCaptions[static_cast<size_t>(step)]));
        fraStep[static_cast<size_t>(step)].SetVisible(false);
    }
    optSteps[kStepStart].SetValue(1);
    cmdPrevious.SetCaption("< Back");
    cmdNext.SetCaption("Next >");
    cmdFinish.SetCaption("Finish");
    cmdCancel.SetCaption("Cancel");

    lblStart.SetCaption(
        "This wizard prepares your model for export to railway simulators. Choose the simulators "
        "you want to export to, then click \"Next >\" to describe your project.");
    lblProjectTitle.SetCaption("Project Title");
    lblProjectName.SetCaption("Project Name");
    lblProjectDescription.SetCaption("Project Description");
    lblOperatingProcedures.SetCaption("Operating Procedures");
    lblPartIdentification.SetCaption("Click on the parts of your model in the view as prompted.");
    cmdReset.SetCaption("Reset");
    cmdSkip.SetCaption("Skip");
    lblFinish.SetCaption(
        "The wizard is complete. Click \"Finish\" to export your project, or \"< Back\" to "
        "review your choices.");

    fraDistanceLevels.SetCaption("Distance Levels");
    for (size_t i = 0; i < optDistanceLevels.size(); ++i) {
        optDistanceLevels[i].SetCaption(Text(kDistanceLevelCaptions[i]));
    }
    optDistanceLevels[0].SetValue(1);
    chkAnimation.SetCaption("Create Default Animation");
    chkCreateShape.SetCaption("Create Shape");
    fraMSTSExportPreferences.SetCaption("Microsoft Train Simulator");
    chkRetainSubObjects.SetCaption("Retain Sub-Objects");
    chkCreatexFile.SetCaption(Text(kWagFile));
    chkCreateShapeData.SetCaption("Create Shape Data");
    chkCabView.SetCaption("Create Default Cab View");
    chkSound.SetCaption("Create Default Sounds");

    for (size_t row = 0; row < lblDash.size(); ++row) {
        lblDash[row].SetCaption("-");
    }

    cmdNext.onClick = Handler([this] { cmdNext_Click(); });
    cmdPrevious.onClick = Handler([this] { cmdPrevious_Click(); });
    cmdCancel.onClick = Handler([this] { cmdCancel_Click(); });
    for (int step = 0; step < kStepCount; ++step) {
        optSteps[static_cast<size_t>(step)].onClick =
            Handler([this, step] { optSteps_Click(step); });
    }
}

std::string frmWizard::ApplicationName() {
    return host_.context.Application()->RegistryName();
}

void frmWizard::OnLoad() {
    try {
        fonts_.AdjustForm(*this);
        const std::string application = ApplicationName();
        const support::ScreenSize screen = platform_.ui.Screen();
        const std::string left = platform_.settings.GetSetting(
            application, kPositionSection, kLeftKey, std::to_string(screen.width / 4));
        const std::string top = platform_.settings.GetSetting(
            application, kPositionSection, kTopKey, std::to_string(screen.height / 4));
        Move(StoredEdge(left), StoredEdge(top));
        FillProjectTypes();
        FillCompressions();
        LoadSettings(settings_);
        // A custom field without room closes the wizard during the load.
        if (!IsLoaded()) {
            return;
        }
        SetUpPage();
        host_.viewer.OnPick([this] { OnViewerSelection(); });
    } catch (...) {
        ReportError();
    }
}

void frmWizard::OnUnload() {
    try {
        // The view outlives the dialog.
        host_.viewer.OnPick(nullptr);
    } catch (...) {
        ReportError();
    }
    try {
        const std::string application = ApplicationName();
        platform_.settings.SaveSetting(application, kPositionSection, kLeftKey,
                                       std::to_string(Left()));
        platform_.settings.SaveSetting(application, kPositionSection, kTopKey,
                                       std::to_string(Top()));
    } catch (...) {
        ReportError();
    }
    sceneGraph_.reset();
}

bool frmWizard::AnySimulatorChecked() const {
    for (const Control* box :
         {&chkMSTS, &chkRailSimulator, &chkRailWorks, &chkTrainz, &chkRail3D, &chkBVE}) {
        if (box->Value() == 1) {
            return true;
        }
    }
    return false;
}

void frmWizard::ShowSimulatorRequired() {
    platform_.ui.ShowMessage(kSimulatorRequired, support::MessageIcon::Exclamation,
                             support::MessageButtons::Ok);
}

void frmWizard::GoToStep(int step) {
    optSteps[static_cast<size_t>(currentStep_)].SetValue(0);
    currentStep_ = step;
    optSteps[static_cast<size_t>(currentStep_)].SetValue(1);
    SetUpPage();
}

void frmWizard::cmdNext_Click() {
    // Made on every step, not only on "Start".
    if (!AnySimulatorChecked()) {
        ShowSimulatorRequired();
        return;
    }
    // The button is disabled on the last step.
    if (currentStep_ + 1 < kStepCount) {
        GoToStep(currentStep_ + 1);
    }
}

void frmWizard::cmdPrevious_Click() {
    // The button is disabled on the first step.
    if (currentStep_ > kStepStart) {
        GoToStep(currentStep_ - 1);
    }
}

void frmWizard::cmdCancel_Click() {
    Unload();
}

void frmWizard::optSteps_Click(int index) {
    // Clearing a button in code reports no click.
    if (optSteps[static_cast<size_t>(index)].Value() == 0) {
        return;
    }
    if (AnySimulatorChecked()) {
        currentStep_ = index;
        SetUpPage();
        return;
    }
    if (index != kStepStart) {
        ShowSimulatorRequired();
        optSteps[static_cast<size_t>(index)].SetValue(0);
        currentStep_ = kStepStart;
        optSteps[kStepStart].SetValue(1);
    }
}

void frmWizard::SetUpPage() {
    try {
        // One page at a time.
        for (Control* page : fraStep) {
            page->SetVisible(false);
        }
        Control& page = fraStep[static_cast<size_t>(currentStep_)];
        page.Move(layout::kPageLeft, layout::kPageTop);
        page.SetVisible(true);
        cmdPrevious.SetEnabled(currentStep_ != kStepStart);
        cmdNext.SetEnabled(currentStep_ != kStepFinish);
        SetDefaultButton(currentStep_ == kStepFinish ? cmdFinish : cmdNext);

        // Everything that depends on the type starts hidden.
        for (Control* control :
             {&fraGeneralNonEngineAttibutes, &fraGeneralEngineWagonAttibutes,
              &fraElectricEngineAttibutes, &fraSteamEngineAttibutes, &fraDieselEngineAttributes,
              &fraEngineAttributes, &fraMSTSExportPreferences, &fraMSTSRoute,
              &lblGeneralAttributesNoneAvailable, &fraTextures, &chkExportToDocumentsFolder,
              &chkAnimation, &chkSound, &chkCabView}) {
            control->SetVisible(false);
        }

        // Network objects and scenery.
        const std::string type = cboProjectType.Text();
        if (type == kRailNetwork || type == kScenery) {
            if (chkMSTS.Value() == 1) {
                fraMSTSRoute.SetVisible(true);
            } else {
                lblGeneralAttributesNoneAvailable.SetVisible(true);
            }
            for (Control* control : {&lblProjectDescription, &txtProjectDescription,
                                     &lblOperatingProcedures, &txtOperatingProcedures}) {
                control->SetVisible(false);
            }
            chkCreatexFile.SetCaption(Text(kExampleRefFile));
            fraGeneralNonEngineAttibutes.SetVisible(true);
        }

        // Vehicles.
        if (type == kRailVehicle) {
            SetUpVehiclePage(cboProjectSubType.Text());
        }

        // Texture and MSTS preferences follow the simulators.
        if (chkMSTS.Value() == 1 || chkRailSimulator.Value() == 1 || chkRailWorks.Value() == 1) {
            fraTextures.SetVisible(true);
            chkExportToDocumentsFolder.SetVisible(true);
        }
        if (chkMSTS.Value() == 1) {
            fraMSTSExportPreferences.SetVisible(true);
        }
        StackExportPreferences();

        // Clicks in the view identify parts only on their own step.
        if (currentStep_ != kStepPartIdentification) {
            host_.viewer.EndPicking();
        }

        // The parts to identify follow the type and the attributes.
        RefreshPartIdentification();
    } catch (...) {
        ReportError();
    }
}

void frmWizard::SetUpVehiclePage(const std::string& subType) {
    fraGeneralEngineWagonAttibutes.SetVisible(true);
    const bool engine = IsEngine(subType);
    for (Control* control : {&lblProjectDescription, &txtProjectDescription,
                             &lblOperatingProcedures, &txtOperatingProcedures}) {
        control->SetVisible(engine);
    }
    if (engine) {
        fraEngineAttributes.SetVisible(true);
        chkViewPoint.SetCaption(Text(kHeadOutView));
        chkViewPoint.SetVisible(true);
        chkIntakePoint.SetVisible(true);
    } else {
        chkIntakePoint.SetVisible(false);
        chkViewPoint.SetCaption(Text(kPassengerView));
        chkViewPoint.SetVisible(subType == kPassengerCar);
    }

    // A steam engine has three wheel rows around its drive wheels; other vehicles a front and a
    // rear row.
    const bool steam = IsSteam(subType);
    for (size_t row = 0; row < kVehicleWheelRows.size(); ++row) {
        lblWheels[row].SetCaption(Text(steam ? kSteamWheelRows[row] : kVehicleWheelRows[row]));
    }
    const size_t lastRow = kWheelGroupCount - 1;
    lblWheels[lastRow].SetCaption(Text(kSteamWheelRows[lastRow]));
    for (const ControlArray* rowControls :
         {&lblWheels, &txtWheels, &lblDash, &txtWheelRadius, &chkBogie}) {
        (*rowControls)[lastRow].SetVisible(steam);
    }

    if (steam) {
        fraSteamEngineAttibutes.SetVisible(true);
        chkAnimation.SetVisible(true);
    } else if (subType == kElectricEngine) {
        fraElectricEngineAttibutes.SetVisible(true);
    } else if (subType == kDieselEngine) {
        fraDieselEngineAttributes.SetVisible(true);
    }
    chkSound.SetVisible(true);

    if (engine) {
        chkCreatexFile.SetCaption(Text(kEngFile));
        chkCabView.SetVisible(true);
    } else {
        chkCreatexFile.SetCaption(Text(kWagFile));
    }
}

void frmWizard::StackExportPreferences() {
    int32_t top = layout::kStackTop;
    for (Control* item : {&fraTextures, &chkExportToDocumentsFolder, &fraMSTSExportPreferences}) {
        if (item->Visible()) {
            item->Move(layout::kStackLeft, top);
            top += item->Height();
        }
    }
}

}  // namespace railwright::wizard
