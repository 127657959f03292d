// The "Part Identification" step: the part catalogue of the project, the prompt, picks in the
// view, "Skip" and "Reset".
#include "identification/Identification.h"

#include "support/SupportingFunctions.h"
#include "wizard/NumberText.h"
#include "wizard/ProjectTypes.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr std::string_view kResetQuestion =
    "Reset all part identification? This will require re-identification of all parts";
// Reset names every group but the top one so, except groups of this name.
constexpr const char* kResetGroupName = "Group";
constexpr std::string_view kKeptOnReset = "Unavailable";

identification::VehicleType VehicleTypeOf(std::string_view subType) {
    using identification::VehicleType;
    struct Kind {
        std::string_view subType;
        VehicleType vehicle;
    };
    constexpr Kind kKinds[] = {
        {kSteamEngine, VehicleType::SteamEngine},
        {kTankEngine, VehicleType::TankEngine},
        {kDieselEngine, VehicleType::DieselEngine},
        {kElectricEngine, VehicleType::ElectricEngine},
        {kFreightCar, VehicleType::FreightCar},
        {kPassengerCar, VehicleType::PassengerCar},
        {kTender, VehicleType::Tender},
    };
    for (const Kind& kind : kKinds) {
        if (kind.subType == subType) {
            return kind.vehicle;
        }
    }
    return VehicleType::Other;
}

bool Checked(const Control& box) {
    return box.Value() == 1;
}

}  // namespace

void frmWizard::InitialiseIdentification() {
    cmdSkip.onClick = Handler([this] { cmdSkip_Click(); });
    cmdReset.onClick = Handler([this] { cmdReset_Click(); });
}

identification::CatalogueInputs frmWizard::CatalogueInputsFromControls() const {
    identification::CatalogueInputs inputs;
    inputs.subType = cboProjectSubType.Text();
    inputs.vehicle = VehicleTypeOf(inputs.subType);
    for (size_t row = 0; row < kWheelGroupCount; ++row) {
        inputs.wheels[row] = WholeNumber(txtWheels[row].Text());
        inputs.bogie[row] = Checked(chkBogie[row]);
    }
    inputs.rods = WholeNumber(txtRods.Text());
    inputs.pantographs = WholeNumber(txtPantographs.Text());
    inputs.armsPerPantograph = WholeNumber(txtArmsPerPantograph.Text());
    inputs.dieselExhaust = WholeNumber(txtDieselExhaust.Text());
    inputs.stacks = WholeNumber(txtStacks.Text());
    inputs.cylinders = WholeNumber(txtCylinders.Text());
    inputs.drainPipes = WholeNumber(txtDrainPipes.Text());
    inputs.whistles = WholeNumber(txtWhistles.Text());
    inputs.safetyValves = WholeNumber(txtSafetyValves.Text());
    inputs.wiperLeft = Checked(chkWiperLeft);
    inputs.wiperRight = Checked(chkWiperRight);
    inputs.mirrorLeft = Checked(chkMirrorLeft);
    inputs.mirrorRight = Checked(chkMirrorRight);
    inputs.viewPoint = Checked(chkViewPoint);
    inputs.intakePoint = Checked(chkIntakePoint);
    return inputs;
}

identification::IdentificationContext frmWizard::PartIdentification() {
    return {host_.scene, platform_.ui, moveWarningShown_};
}

// The catalogue follows the attributes: it is built afresh each time the identification step is
// set up (entered, or reset). Other steps leave it alone, since building names the top group and
// may send the user back to the attributes.
void frmWizard::RefreshPartIdentification() {
    if (currentStep_ != kStepPartIdentification) {
        return;
    }
    BuildPartCatalogue();
    AdvanceIdentification();
}

void frmWizard::BuildPartCatalogue() {
    catalogue_ = identification::BuildPartCatalogue(host_.scene, txtProjectTitle.Text(),
                                                    CatalogueInputsFromControls());
    if (catalogue_.missingDriveWheels) {
        platform_.ui.ShowMessage(identification::kSteamNeedsDriveWheels,
                                 support::MessageIcon::Exclamation, support::MessageButtons::Ok);
        // Back to the attributes: selecting the step's button sets its page up.
        if (currentStep_ > kStepStart) {
            optSteps[static_cast<size_t>(currentStep_ - 1)].SetValue(1);
        }
    }
}

void frmWizard::AdvanceIdentification() {
    const bool asking = identification::FindNextMissingPart(host_.scene, catalogue_);
    lblPartIdentification.SetCaption(identification::IdentificationPrompt(catalogue_, asking));
    cmdSkip.SetEnabled(asking);
}

void frmWizard::OnViewerSelection() {
    try {
        if (currentStep_ != kStepPartIdentification) {
            return;
        }
        const std::shared_ptr<host::Selection> pick = host_.viewer.Selection();
        if (!pick || catalogue_.position > catalogue_.Count() - 1) {
            return;
        }
        // Whether the entry is already identified is not asked: a pick after completion names
        // the group after the part asked for last. Kept so.
        const std::string groupName =
            catalogue_.entries[static_cast<size_t>(catalogue_.position)].GroupName;
        identification::IdentificationContext context = PartIdentification();
        identification::IdentifySelectedGroup(context, *pick, groupName, txtProjectTitle.Text());
        AdvanceIdentification();
    } catch (...) {
        // A failing host ends the pick quietly; the user can pick again.
    }
}

void frmWizard::cmdSkip_Click() {
    if (catalogue_.position < catalogue_.Count()) {
        catalogue_.entries[static_cast<size_t>(catalogue_.position)].Identified = true;
    }
    AdvanceIdentification();
}

void frmWizard::cmdReset_Click() {
    if (platform_.ui.ShowMessage(kResetQuestion, support::MessageIcon::None,
                                 support::MessageButtons::YesNo) != support::MessageAnswer::Yes) {
        return;
    }
    host::Scripting& scene = host_.scene;
    const std::shared_ptr<host::SceneGroup> top = scene.RootGroup();
    const int32_t count = scene.GroupCount();
    for (int32_t i = 0; i < count; ++i) {
        const std::shared_ptr<host::SceneGroup> group = scene.Group(i);
        if (!group->IsSameGroup(*top) && !support::EqualsIgnoreCase(group->Name(), kKeptOnReset)) {
            group->SetName(kResetGroupName);
        }
        // The step is set up again after every group, which rebuilds the catalogue each time.
        catalogue_.position = 0;
        SetUpPage();
    }
}

}  // namespace railwright::wizard
