// The "Attributes" step: a vehicle's attributes, and the rules that correct what the user typed
// when a box is left. The rules never refuse: they correct the value, say so once and write the
// corrected text back.
#include "support/SupportingFunctions.h"
#include "wizard/NumberText.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr std::string_view kMaximumWheels = "The maximum number of wheels per group is 8.";
constexpr std::string_view kWheelsInPairs =
    "Wheels must be in multiples of 2. Changing to the next highest multiple of 2.";
constexpr std::string_view kMaximumStacks =
    "Train Simulator is currently limited to a maximum of 1 stack. Changing Stacks to 1.";
constexpr std::string_view kMaximumCylinders =
    "Train Simulator is currently limited to a maximum of 2 cylinders. Changing Cyliners to 2.";
constexpr std::string_view kMaximumWhistles =
    "Train Simulator is currently limited to a maximum of 1 whistle. Changing Wistles to 1.";
constexpr std::string_view kMaximumPantographs =
    "This wizard support a maximum of two pantographs. Changing to 2.";
constexpr std::string_view kMinimumArms =
    "There must be a minimum of 2 arms per pantograph. Changing to 2.";
constexpr std::string_view kMaximumArms =
    "There must be a maximum of 3 arms per pantograph. Changing to 3.";
constexpr std::string_view kBogieWithoutWheels =
    "Bogies require wheels. Please enter a number of wheels for this bogie.";

constexpr int32_t kMaximumWheelCount = 8;
constexpr int32_t kMaximumStackCount = 1;
constexpr int32_t kMaximumCylinderCount = 2;
constexpr int32_t kMaximumWhistleCount = 1;
constexpr int32_t kMaximumPantographCount = 2;
constexpr int32_t kMinimumArmCount = 2;
constexpr int32_t kMaximumArmCount = 3;

}  // namespace

void frmWizard::InitialiseAttributes() {
    fraGeneralNonEngineAttibutes.SetCaption("General Attributes");
    lblGeneralAttributesNoneAvailable.SetCaption("None available for this export.");
    fraGeneralEngineWagonAttibutes.SetCaption("General Attributes");
    lblMass.SetCaption("Mass");
    lblMassUnit.SetCaption("(metric tonnes)");
    lblCouplerType.SetCaption("Coupler Type");
    for (const char* coupler : {"Bar", "Automatic", "Chain"}) {
        cboCouplerType.AddItem(coupler);
    }
    chkIntakePoint.SetCaption("Intake Point(s)");
    fraWheels.SetCaption("Wheels/Bogies");
    lblArrangement.SetCaption("Arrangement");
    lblRadius.SetCaption("Radius");
    lblRadiusUnit.SetCaption("(meters)");
    lblBogie.SetCaption("Bogie");
    fraEngineAttributes.SetCaption("Engine Attributes");
    lblMaximumVelocity.SetCaption("Maximum Velocity");
    lblMaximumVelocityUnit.SetCaption("(km/h)");
    chkWiperLeft.SetCaption("Wiper - Left");
    chkWiperRight.SetCaption("Wiper - Right");
    chkMirrorLeft.SetCaption("Mirror - Left");
    chkMirrorRight.SetCaption("Mirror - Right");
    fraSteamEngineAttibutes.SetCaption("Steam Engine Attributes");
    lblRods.SetCaption("Rods");
    lblRodsNote.SetCaption("(excluding link between wheels)");
    lblStacks.SetCaption("Stacks");
    lblCylinders.SetCaption("Cylinders");
    lblWhistles.SetCaption("Whistles");
    lblSafetyValves.SetCaption("Safety Valves");
    lblDrainPipes.SetCaption("Drain Pipes");
    chkTenderRequired.SetCaption("Tender Required");
    fraDieselEngineAttributes.SetCaption("Diesel Engine Attributes");
    lblDieselExhaust.SetCaption("Exhaust Sources");
    fraElectricEngineAttibutes.SetCaption("Electric Engine Attributes");
    lblPantographs.SetCaption("Pantographs");
    lblArmsPerPantograph.SetCaption("Arms/Pantograph");

    // Display forms: "0.0#" for the mass, "0.0" for the velocity, "0.0##" for the radii.
    txtMass.onLeave = Handler([this] { RealBox_Leave(txtMass, 1, 2); });
    txtMaximumVelocity.onLeave = Handler([this] { RealBox_Leave(txtMaximumVelocity, 1, 1); });
    for (int row = 0; row < kWheelGroupCount; ++row) {
        Control& radius = txtWheelRadius[static_cast<size_t>(row)];
        radius.onLeave = Handler([this, &radius] { RealBox_Leave(radius, 1, 3); });
        txtWheels[static_cast<size_t>(row)].onLeave =
            Handler([this, row] { txtWheels_Leave(row); });
        chkBogie[static_cast<size_t>(row)].onClick = Handler([this, row] { chkBogie_Click(row); });
    }
    for (Control* box : {&txtRods, &txtSafetyValves, &txtDrainPipes, &txtDieselExhaust}) {
        box->onLeave = Handler([this, box] { WholeNumberBox_Leave(*box); });
    }
    txtStacks.onLeave =
        Handler([this] { LimitedBox_Leave(txtStacks, kMaximumStackCount, kMaximumStacks); });
    txtCylinders.onLeave = Handler(
        [this] { LimitedBox_Leave(txtCylinders, kMaximumCylinderCount, kMaximumCylinders); });
    txtWhistles.onLeave =
        Handler([this] { LimitedBox_Leave(txtWhistles, kMaximumWhistleCount, kMaximumWhistles); });
    txtPantographs.onLeave = Handler(
        [this] { LimitedBox_Leave(txtPantographs, kMaximumPantographCount, kMaximumPantographs); });
    txtArmsPerPantograph.onLeave = Handler([this] { txtArmsPerPantograph_Leave(); });
}

void frmWizard::RealBox_Leave(Control& box, int minDecimals, int maxDecimals) {
    // A negative number is not refused; it is only formatted.
    box.SetText(RealBoxText(SingleValue(box.Text()), minDecimals, maxDecimals));
}

void frmWizard::WholeNumberBox_Leave(Control& box) {
    box.SetText(std::to_string(WholeNumber(box.Text())));
}

void frmWizard::LimitedBox_Leave(Control& box, int32_t maximum, std::string_view message) {
    int32_t number = WholeNumber(box.Text());
    if (number > maximum) {
        platform_.ui.ShowMessage(message, support::MessageIcon::Exclamation,
                                 support::MessageButtons::Ok);
        number = maximum;
    }
    box.SetText(std::to_string(number));
}

void frmWizard::txtWheels_Leave(int index) {
    Control& box = txtWheels[static_cast<size_t>(index)];
    int32_t wheels = WholeNumber(box.Text());
    if (wheels > kMaximumWheelCount) {
        platform_.ui.ShowMessage(kMaximumWheels, support::MessageIcon::Exclamation,
                                 support::MessageButtons::Ok);
        wheels = kMaximumWheelCount;
    } else if (wheels % 2 != 0) {
        // Negative odd counts too: -3 becomes -2.
        platform_.ui.ShowMessage(kWheelsInPairs, support::MessageIcon::Exclamation,
                                 support::MessageButtons::Ok);
        wheels += 1;
    }
    box.SetText(std::to_string(wheels));
}

void frmWizard::txtArmsPerPantograph_Leave() {
    int32_t arms = WholeNumber(txtArmsPerPantograph.Text());
    // Without pantographs any count of arms stands.
    if (RealValue(txtPantographs.Text()) > 0) {
        std::string_view correction;
        if (arms < kMinimumArmCount) {
            correction = kMinimumArms;
            arms = kMinimumArmCount;
        } else if (arms > kMaximumArmCount) {
            correction = kMaximumArms;
            arms = kMaximumArmCount;
        }
        if (!correction.empty()) {
            platform_.ui.ShowMessage(correction, support::MessageIcon::Exclamation,
                                     support::MessageButtons::Ok);
        }
    }
    txtArmsPerPantograph.SetText(std::to_string(arms));
}

void frmWizard::chkBogie_Click(int index) {
    Control& bogie = chkBogie[static_cast<size_t>(index)];
    // Unchecking needs no test.
    if (bogie.Value() != 1) {
        return;
    }
    if (WholeNumber(txtWheels[static_cast<size_t>(index)].Text()) == 0) {
        platform_.ui.ShowMessage(kBogieWithoutWheels, support::MessageIcon::Exclamation,
                                 support::MessageButtons::Ok);
        bogie.SetValue(0);
    }
}

}  // namespace railwright::wizard
