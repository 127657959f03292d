#include "wizard/frmWizard.h"

#include <algorithm>

#include "support/SupportingFunctions.h"

namespace railwright::wizard {
namespace {

using support::ControlKind;

// Adds a control array to a frame, element by element.
void PlaceArray(const ControlArray& array, Control& frame) {
    for (Control* element : array) {
        element->SetContainer(frame);
    }
}

}  // namespace

frmWizard::frmWizard(support::Platform& platform, support::FontWiz& fonts, WizardHost host)
    : DialogModel("frmWizard"),
      fraSteps(Add(ControlKind::Frame, "fraSteps")),
      optSteps(AddArray(ControlKind::OptionButton, "optSteps", kStepCount)),
      fraStep(AddArray(ControlKind::Frame, "fraStep", kStepCount)),
      fraButtons(Add(ControlKind::Frame, "fraButtons")),
      cmdPrevious(Add(ControlKind::CommandButton, "cmdPrevious")),
      cmdNext(Add(ControlKind::CommandButton, "cmdNext")),
      cmdFinish(Add(ControlKind::CommandButton, "cmdFinish")),
      cmdCancel(Add(ControlKind::CommandButton, "cmdCancel")),
      Viewer(Add(ControlKind::View, "Viewer")),
      lblStart(Add(ControlKind::Label, "lblStart")),
      fraSimulator(Add(ControlKind::Frame, "fraSimulator")),
      chkMSTS(Add(ControlKind::CheckBox, "chkMSTS")),
      chkRailSimulator(Add(ControlKind::CheckBox, "chkRailSimulator")),
      chkRailWorks(Add(ControlKind::CheckBox, "chkRailWorks")),
      chkTrainz(Add(ControlKind::CheckBox, "chkTrainz")),
      chkRail3D(Add(ControlKind::CheckBox, "chkRail3D")),
      chkBVE(Add(ControlKind::CheckBox, "chkBVE")),
      lblProjectType(Add(ControlKind::Label, "lblProjectType")),
      cboProjectType(Add(ControlKind::ComboBox, "cboProjectType")),
      lblProjectSubType(Add(ControlKind::Label, "lblProjectSubType")),
      cboProjectSubType(Add(ControlKind::ComboBox, "cboProjectSubType")),
      lblProjectTypeDescription(Add(ControlKind::Label, "lblProjectTypeDescription")),
      lblProjectTitle(Add(ControlKind::Label, "lblProjectTitle")),
      txtProjectTitle(Add(ControlKind::TextBox, "txtProjectTitle")),
      lblProjectName(Add(ControlKind::Label, "lblProjectName")),
      txtProjectName(Add(ControlKind::TextBox, "txtProjectName")),
      lblProjectDescription(Add(ControlKind::Label, "lblProjectDescription")),
      txtProjectDescription(Add(ControlKind::TextBox, "txtProjectDescription")),
      lblOperatingProcedures(Add(ControlKind::Label, "lblOperatingProcedures")),
      txtOperatingProcedures(Add(ControlKind::TextBox, "txtOperatingProcedures")),
      fraGeneralNonEngineAttibutes(Add(ControlKind::Frame, "fraGeneralNonEngineAttibutes")),
      fraMSTSRoute(Add(ControlKind::Frame, "fraMSTSRoute")),
      lblRoute(Add(ControlKind::Label, "lblRoute")),
      cboRoute(Add(ControlKind::ComboBox, "cboRoute")),
      lblGeneralAttributesNoneAvailable(
          Add(ControlKind::Label, "lblGeneralAttributesNoneAvailable")),
      fraGeneralEngineWagonAttibutes(Add(ControlKind::Frame, "fraGeneralEngineWagonAttibutes")),
      chkViewPoint(Add(ControlKind::CheckBox, "chkViewPoint")),
      chkIntakePoint(Add(ControlKind::CheckBox, "chkIntakePoint")),
      lblMass(Add(ControlKind::Label, "lblMass")),
      txtMass(Add(ControlKind::TextBox, "txtMass")),
      lblMassUnit(Add(ControlKind::Label, "lblMassUnit")),
      lblCouplerType(Add(ControlKind::Label, "lblCouplerType")),
      cboCouplerType(Add(ControlKind::ComboBox, "cboCouplerType")),
      fraWheels(Add(ControlKind::Frame, "fraWheels")),
      lblArrangement(Add(ControlKind::Label, "lblArrangement")),
      lblRadius(Add(ControlKind::Label, "lblRadius")),
      lblRadiusUnit(Add(ControlKind::Label, "lblRadiusUnit")),
      lblBogie(Add(ControlKind::Label, "lblBogie")),
      lblWheels(AddArray(ControlKind::Label, "lblWheels", kWheelGroupCount)),
      txtWheels(AddArray(ControlKind::TextBox, "txtWheels", kWheelGroupCount)),
      lblDash(AddArray(ControlKind::Label, "lblDash", kWheelGroupCount)),
      txtWheelRadius(AddArray(ControlKind::TextBox, "txtWheelRadius", kWheelGroupCount)),
      chkBogie(AddArray(ControlKind::CheckBox, "chkBogie", kWheelGroupCount)),
      fraEngineAttributes(Add(ControlKind::Frame, "fraEngineAttributes")),
      lblMaximumVelocity(Add(ControlKind::Label, "lblMaximumVelocity")),
      txtMaximumVelocity(Add(ControlKind::TextBox, "txtMaximumVelocity")),
      lblMaximumVelocityUnit(Add(ControlKind::Label, "lblMaximumVelocityUnit")),
      chkWiperLeft(Add(ControlKind::CheckBox, "chkWiperLeft")),
      chkWiperRight(Add(ControlKind::CheckBox, "chkWiperRight")),
      chkMirrorLeft(Add(ControlKind::CheckBox, "chkMirrorLeft")),
      chkMirrorRight(Add(ControlKind::CheckBox, "chkMirrorRight")),
      fraSteamEngineAttibutes(Add(ControlKind::Frame, "fraSteamEngineAttibutes")),
      lblRods(Add(ControlKind::Label, "lblRods")),
      txtRods(Add(ControlKind::TextBox, "txtRods")),
      lblRodsNote(Add(ControlKind::Label, "lblRodsNote")),
      lblStacks(Add(ControlKind::Label, "lblStacks")),
      txtStacks(Add(ControlKind::TextBox, "txtStacks")),
      lblCylinders(Add(ControlKind::Label, "lblCylinders")),
      txtCylinders(Add(ControlKind::TextBox, "txtCylinders")),
      lblWhistles(Add(ControlKind::Label, "lblWhistles")),
      txtWhistles(Add(ControlKind::TextBox, "txtWhistles")),
      lblSafetyValves(Add(ControlKind::Label, "lblSafetyValves")),
      txtSafetyValves(Add(ControlKind::TextBox, "txtSafetyValves")),
      lblDrainPipes(Add(ControlKind::Label, "lblDrainPipes")),
      txtDrainPipes(Add(ControlKind::TextBox, "txtDrainPipes")),
      chkTenderRequired(Add(ControlKind::CheckBox, "chkTenderRequired")),
      fraDieselEngineAttributes(Add(ControlKind::Frame, "fraDieselEngineAttributes")),
      lblDieselExhaust(Add(ControlKind::Label, "lblDieselExhaust")),
      txtDieselExhaust(Add(ControlKind::TextBox, "txtDieselExhaust")),
      fraElectricEngineAttibutes(Add(ControlKind::Frame, "fraElectricEngineAttibutes")),
      lblPantographs(Add(ControlKind::Label, "lblPantographs")),
      txtPantographs(Add(ControlKind::TextBox, "txtPantographs")),
      lblArmsPerPantograph(Add(ControlKind::Label, "lblArmsPerPantograph")),
      txtArmsPerPantograph(Add(ControlKind::TextBox, "txtArmsPerPantograph")),
      lblPartIdentification(Add(ControlKind::Label, "lblPartIdentification")),
      cmdReset(Add(ControlKind::CommandButton, "cmdReset")),
      cmdSkip(Add(ControlKind::CommandButton, "cmdSkip")),
      chkDefaultGroupCustomFields(Add(ControlKind::CheckBox, "chkDefaultGroupCustomFields")),
      fraTextures(Add(ControlKind::Frame, "fraTextures")),
      chkConvertTextures(Add(ControlKind::CheckBox, "chkConvertTextures")),
      cboCompression(Add(ControlKind::ComboBox, "cboCompression")),
      chkExportToDocumentsFolder(Add(ControlKind::CheckBox, "chkExportToDocumentsFolder")),
      fraDistanceLevels(Add(ControlKind::Frame, "fraDistanceLevels")),
      optDistanceLevels(
          AddArray(ControlKind::OptionButton, "optDistanceLevels", kDistanceLevelCount)),
      chkAnimation(Add(ControlKind::CheckBox, "chkAnimation")),
      chkCreateShape(Add(ControlKind::CheckBox, "chkCreateShape")),
      fraMSTSExportPreferences(Add(ControlKind::Frame, "fraMSTSExportPreferences")),
      chkRetainSubObjects(Add(ControlKind::CheckBox, "chkRetainSubObjects")),
      chkCreatexFile(Add(ControlKind::CheckBox, "chkCreatexFile")),
      chkCreateShapeData(Add(ControlKind::CheckBox, "chkCreateShapeData")),
      chkCabView(Add(ControlKind::CheckBox, "chkCabView")),
      chkSound(Add(ControlKind::CheckBox, "chkSound")),
      lblFinish(Add(ControlKind::Label, "lblFinish")),
      platform_(platform),
      fonts_(fonts),
      host_(host) {
    // Which frame holds which control: a control is usable only while its frames are shown.
    PlaceArray(optSteps, fraSteps);
    for (Control* button : {&cmdPrevious, &cmdNext, &cmdFinish, &cmdCancel}) {
        button->SetContainer(fraButtons);
    }
    Control& startPage = fraStep[kStepStart];
    lblStart.SetContainer(startPage);
    fraSimulator.SetContainer(startPage);
    for (Control* box :
         {&chkMSTS, &chkRailSimulator, &chkRailWorks, &chkTrainz, &chkRail3D, &chkBVE}) {
        box->SetContainer(fraSimulator);
    }
    for (Control* control : {&lblProjectType, &cboProjectType, &lblProjectSubType,
                             &cboProjectSubType, &lblProjectTypeDescription}) {
        control->SetContainer(fraStep[kStepType]);
    }
    for (Control* control : {&lblProjectTitle, &txtProjectTitle, &lblProjectName, &txtProjectName,
                             &lblProjectDescription, &txtProjectDescription,
                             &lblOperatingProcedures, &txtOperatingProcedures}) {
        control->SetContainer(fraStep[kStepTitle]);
    }
    Control& attributesPage = fraStep[kStepAttributes];
    for (Control* frame :
         {&fraGeneralNonEngineAttibutes, &fraGeneralEngineWagonAttibutes, &fraEngineAttributes,
          &fraSteamEngineAttibutes, &fraDieselEngineAttributes, &fraElectricEngineAttibutes}) {
        frame->SetContainer(attributesPage);
    }
    fraMSTSRoute.SetContainer(fraGeneralNonEngineAttibutes);
    lblGeneralAttributesNoneAvailable.SetContainer(fraGeneralNonEngineAttibutes);
    lblRoute.SetContainer(fraMSTSRoute);
    cboRoute.SetContainer(fraMSTSRoute);
    for (Control* control : {&chkViewPoint, &chkIntakePoint, &lblMass, &txtMass, &lblMassUnit,
                             &lblCouplerType, &cboCouplerType, &fraWheels}) {
        control->SetContainer(fraGeneralEngineWagonAttibutes);
    }
    for (Control* label : {&lblArrangement, &lblRadius, &lblRadiusUnit, &lblBogie}) {
        label->SetContainer(fraWheels);
    }
    for (const ControlArray* row : {&lblWheels, &txtWheels, &lblDash, &txtWheelRadius, &chkBogie}) {
        PlaceArray(*row, fraWheels);
    }
    for (Control* control : {&lblMaximumVelocity, &txtMaximumVelocity, &lblMaximumVelocityUnit,
                             &chkWiperLeft, &chkWiperRight, &chkMirrorLeft, &chkMirrorRight}) {
        control->SetContainer(fraEngineAttributes);
    }
    for (Control* control :
         {&lblRods, &txtRods, &lblRodsNote, &lblStacks, &txtStacks, &lblCylinders, &txtCylinders,
          &lblWhistles, &txtWhistles, &lblSafetyValves, &txtSafetyValves, &lblDrainPipes,
          &txtDrainPipes, &chkTenderRequired}) {
        control->SetContainer(fraSteamEngineAttibutes);
    }
    lblDieselExhaust.SetContainer(fraDieselEngineAttributes);
    txtDieselExhaust.SetContainer(fraDieselEngineAttributes);
    for (Control* control :
         {&lblPantographs, &txtPantographs, &lblArmsPerPantograph, &txtArmsPerPantograph}) {
        control->SetContainer(fraElectricEngineAttibutes);
    }
    for (Control* control : {&lblPartIdentification, &cmdReset, &cmdSkip}) {
        control->SetContainer(fraStep[kStepPartIdentification]);
    }
    Control& exportPage = fraStep[kStepExportPreferences];
    for (Control* control :
         {&chkDefaultGroupCustomFields, &fraTextures, &chkExportToDocumentsFolder,
          &fraDistanceLevels, &chkAnimation, &chkCreateShape, &fraMSTSExportPreferences}) {
        control->SetContainer(exportPage);
    }
    chkConvertTextures.SetContainer(fraTextures);
    cboCompression.SetContainer(fraTextures);
    PlaceArray(optDistanceLevels, fraDistanceLevels);
    for (Control* box :
         {&chkRetainSubObjects, &chkCreatexFile, &chkCreateShapeData, &chkCabView, &chkSound}) {
        box->SetContainer(fraMSTSExportPreferences);
    }
    lblFinish.SetContainer(fraStep[kStepFinish]);

    InitialiseLayout();
    InitialiseSteps();
    InitialiseProjectTypes();
    InitialiseSimulatorSelection();
    InitialiseAttributes();
    InitialiseIdentification();
    cmdFinish.onClick = Handler([this] { cmdFinish_Click(); });
}

void frmWizard::SetOptions(std::string& userDataString, std::vector<float>& userDataSingles,
                           std::vector<int32_t>& userDataLongs) {
    userDataSingles.resize(settings::kSingleCount, 0.0f);
    userDataLongs.resize(settings::kLongCount, 0);
    settings_.text = userDataString;
    settings_.singles = userDataSingles;
    settings_.longs = userDataLongs;
}

void frmWizard::GetOptions(std::string& userDataString, std::vector<float>& userDataSingles,
                           std::vector<int32_t>& userDataLongs) const {
    userDataString = settings_.text;
    std::copy_n(settings_.singles.begin(),
                std::min(settings_.singles.size(), userDataSingles.size()),
                userDataSingles.begin());
    std::copy_n(settings_.longs.begin(), std::min(settings_.longs.size(), userDataLongs.size()),
                userDataLongs.begin());
}

void frmWizard::SetSceneGraph(std::shared_ptr<host::SceneGraph> sceneGraph) {
    sceneGraph_ = std::move(sceneGraph);
}

void frmWizard::ReportError() noexcept {
    try {
        support::ReportCurrentError(platform_.ui);
    } catch (...) {
        // A report that fails has nowhere left to go; nothing may reach the front end.
    }
}

std::function<void()> frmWizard::Handler(std::function<void()> body) {
    return [this, body = std::move(body)] {
        try {
            body();
        } catch (...) {
            ReportError();
        }
    };
}

}  // namespace railwright::wizard
