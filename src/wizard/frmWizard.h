// frmWizard: the stepped wizard, as a dialog model.
//
// The plug-in hands it the model's settings (SetOptions), the scene graph, and shows it modally;
// the wizard loads when it is shown, so that its load sees the settings and the scene graph.
// When it closes, FinishClicked tells whether Finish closed it and GetOptions returns the
// settings to store with the model.
//
// The class is defined across one file per concern: frmWizard.cpp (the controls and the
// plug-in's interface), Layout.cpp (where each control sits), Navigation.cpp (load, unload,
// steps and the page set-up), ProjectTypes.cpp, SimulatorSelection.cpp, CustomFields.cpp,
// AttributeRules.cpp, ProjectSettings.cpp, Identification.cpp (the part identification step) and
// Finish.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"
#include "identification/Identification.h"
#include "identification/PartCatalogue.h"
#include "settings/ProjectSettings.h"
#include "support/DialogModel.h"
#include "support/FontWiz.h"
#include "support/Platform.h"

namespace railwright::wizard {

using support::Control;
using support::ControlArray;

// What the wizard reaches of the host while it is open.
struct WizardHost {
    host::Scripting& scene;
    host::HostContext& context;
    host::Viewer& viewer;
};

// The steps, by their index in optSteps and fraStep.
inline constexpr int kStepStart = 0;
inline constexpr int kStepType = 1;
inline constexpr int kStepTitle = 2;
inline constexpr int kStepAttributes = 3;
inline constexpr int kStepPartIdentification = 4;
inline constexpr int kStepExportPreferences = 5;
inline constexpr int kStepFinish = 6;
inline constexpr int kStepCount = 7;

inline constexpr int kWheelGroupCount = static_cast<int>(settings::kWheelGroupCount);
inline constexpr int kDistanceLevelCount = 4;

// The host's custom material fields that the wizard ensures on every load, by index.
struct MaterialFieldIndices {
    int32_t railSim = -1;
    int32_t txAlpha = -1;
    int32_t alphaPr = -1;
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

    int CurrentStep() const { return currentStep_; }
    const MaterialFieldIndices& MaterialFields() const { return materialFields_; }
    // The parts of the project as the identification step last built them.
    const identification::PartCatalogue& Catalogue() const { return catalogue_; }

    // Fills the controls from stored settings, upgrading settings older than the current layout
    // in place. A settings array shorter than the layout ends the load with a reported run-time
    // error; the wizard may be closed when the host has no room for a custom field.
    void LoadSettings(settings::ProjectSettings& settings);
    // Stores the controls into the settings; false when a reported error ended the save early.
    [[nodiscard]] bool SaveSettings(settings::ProjectSettings& settings);
    // The same two on the settings that SetOptions handed in.
    void LoadSettings() { LoadSettings(settings_); }
    [[nodiscard]] bool SaveSettings() { return SaveSettings(settings_); }

    // Steps and buttons.
    Control& fraSteps;
    ControlArray optSteps;
    ControlArray fraStep;
    Control& fraButtons;
    Control& cmdPrevious;
    Control& cmdNext;
    Control& cmdFinish;
    Control& cmdCancel;
    Control& Viewer;

    // "Start".
    Control& lblStart;
    Control& fraSimulator;
    Control& chkMSTS;
    Control& chkRailSimulator;
    Control& chkRailWorks;
    Control& chkTrainz;
    Control& chkRail3D;
    Control& chkBVE;

    // "Type".
    Control& lblProjectType;
    Control& cboProjectType;
    Control& lblProjectSubType;
    Control& cboProjectSubType;
    Control& lblProjectTypeDescription;

    // "Title".
    Control& lblProjectTitle;
    Control& txtProjectTitle;
    Control& lblProjectName;
    Control& txtProjectName;
    Control& lblProjectDescription;
    Control& txtProjectDescription;
    Control& lblOperatingProcedures;
    Control& txtOperatingProcedures;

    // "Attributes": projects without attributes.
    Control& fraGeneralNonEngineAttibutes;
    Control& fraMSTSRoute;
    Control& lblRoute;
    Control& cboRoute;
    Control& lblGeneralAttributesNoneAvailable;
    // Engines and wagons.
    Control& fraGeneralEngineWagonAttibutes;
    Control& chkViewPoint;
    Control& chkIntakePoint;
    Control& lblMass;
    Control& txtMass;
    Control& lblMassUnit;
    Control& lblCouplerType;
    Control& cboCouplerType;
    Control& fraWheels;
    Control& lblArrangement;
    Control& lblRadius;
    Control& lblRadiusUnit;
    Control& lblBogie;
    ControlArray lblWheels;
    ControlArray txtWheels;
    ControlArray lblDash;
    ControlArray txtWheelRadius;
    ControlArray chkBogie;
    // Engines.
    Control& fraEngineAttributes;
    Control& lblMaximumVelocity;
    Control& txtMaximumVelocity;
    Control& lblMaximumVelocityUnit;
    Control& chkWiperLeft;
    Control& chkWiperRight;
    Control& chkMirrorLeft;
    Control& chkMirrorRight;
    // Steam engines.
    Control& fraSteamEngineAttibutes;
    Control& lblRods;
    Control& txtRods;
    Control& lblRodsNote;
    Control& lblStacks;
    Control& txtStacks;
    Control& lblCylinders;
    Control& txtCylinders;
    Control& lblWhistles;
    Control& txtWhistles;
    Control& lblSafetyValves;
    Control& txtSafetyValves;
    Control& lblDrainPipes;
    Control& txtDrainPipes;
    Control& chkTenderRequired;
    // Diesel engines.
    Control& fraDieselEngineAttributes;
    Control& lblDieselExhaust;
    Control& txtDieselExhaust;
    // Electric engines.
    Control& fraElectricEngineAttibutes;
    Control& lblPantographs;
    Control& txtPantographs;
    Control& lblArmsPerPantograph;
    Control& txtArmsPerPantograph;

    // "Part Identification".
    Control& lblPartIdentification;
    Control& cmdReset;
    Control& cmdSkip;

    // "Export Preferences".
    Control& chkDefaultGroupCustomFields;
    Control& fraTextures;
    Control& chkConvertTextures;
    Control& cboCompression;
    Control& chkExportToDocumentsFolder;
    Control& fraDistanceLevels;
    ControlArray optDistanceLevels;
    Control& chkAnimation;
    Control& chkCreateShape;
    Control& fraMSTSExportPreferences;
    Control& chkRetainSubObjects;
    Control& chkCreatexFile;
    Control& chkCreateShapeData;
    Control& chkCabView;
    Control& chkSound;

    // "Finish".
    Control& lblFinish;

  protected:
    void OnLoad() override;
    void OnUnload() override;

    void cmdFinish_Click();

  private:
    // Wraps an event handler so that an error it raises is reported, never passed on.
    std::function<void()> Handler(std::function<void()> body);
    // Reports the error being handled; call only inside a catch block.
    void ReportError() noexcept;

    // Construction, one part per concern.
    void InitialiseLayout();
    void InitialiseSteps();
    void InitialiseProjectTypes();
    void InitialiseSimulatorSelection();
    void InitialiseAttributes();
    void InitialiseIdentification();

    // Steps and navigation.
    bool AnySimulatorChecked() const;
    void ShowSimulatorRequired();
    void GoToStep(int step);
    void cmdNext_Click();
    void cmdPrevious_Click();
    void cmdCancel_Click();
    void optSteps_Click(int index);
    void SetUpPage();
    void SetUpVehiclePage(const std::string& subType);
    void StackExportPreferences();
    void RefreshPartIdentification();

    // Part identification.
    identification::CatalogueInputs CatalogueInputsFromControls() const;
    identification::IdentificationContext PartIdentification();
    void BuildPartCatalogue();
    void AdvanceIdentification();
    void OnViewerSelection();
    void cmdSkip_Click();
    void cmdReset_Click();

    // Finish.
    void RefuseFinish(std::string_view message, int step);
    std::string UnusableTextureName();
    bool GatherLooseGeometry();
    void SetDefaultGroupCustomFields();

    // Project types.
    void FillProjectTypes();
    void cboProjectType_Click();
    void cboProjectSubType_Click();

    // Simulators and textures.
    void FillCompressions();
    void chkMSTS_Click();
    void RailWorksOrRailSimulator_Click(Control& box, std::string_view missingMessage);
    void chkConvertTextures_Click();
    void chkExportToDocumentsFolder_Click();
    std::string ApplicationName();

    // Custom fields. Each returns false when the host had no room, after the wizard closed.
    host::SceneGraph& Graph();
    bool EnsureGroupField(const std::string& fieldName);
    bool EnsureMaterialFields();
    void SetDefaultMaterialFieldValues();

    // Attribute input rules, run when the user leaves a box.
    void RealBox_Leave(Control& box, int minDecimals, int maxDecimals);
    void WholeNumberBox_Leave(Control& box);
    void LimitedBox_Leave(Control& box, int32_t maximum, std::string_view message);
    void txtWheels_Leave(int index);
    void txtArmsPerPantograph_Leave();
    void chkBogie_Click(int index);

    // Settings.
    void UpgradeSettings(settings::ProjectSettings& settings);
    void LoadSettingsText(settings::ProjectSettings& settings);
    void LoadCounts(settings::ProjectSettings& settings);

    support::Platform& platform_;
    support::FontWiz& fonts_;
    WizardHost host_;
    settings::ProjectSettings settings_;
    bool finishClicked_ = false;
    std::shared_ptr<host::SceneGraph> sceneGraph_;
    int currentStep_ = kStepStart;
    MaterialFieldIndices materialFields_;
    identification::PartCatalogue catalogue_;
    bool moveWarningShown_ = false;  // MoveWarningShown: the move failure message, once per run
};

}  // namespace railwright::wizard
