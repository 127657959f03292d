// The wizard's choices kept in the model: the load when the wizard opens (with the upgrade of
// projects stored before the settings version), and the save that Finish runs.
#include "settings/ProjectSettings.h"
#include "settings/SettingsText.h"
#include "support/SupportingFunctions.h"
#include "wizard/NumberText.h"
#include "wizard/ProjectTypes.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr std::string_view kParagraphBreak = "\r\r";
constexpr std::string_view kTutorialAdvice =
    "Microsoft Train Simulator requires that shape be positioned in a specific manner. Before "
    "using this wizard for the first time please complete the Microsoft Train Simulator "
    "tutorials.";

constexpr std::string_view kSubTypeDefaulted =
    "Please check your project sub-type. It has been defaulted to ";
constexpr std::string_view kCheckBogies =
    "New options have been added for identifying bogies. Please check that the bogie arrangement "
    "is correct.";

// The kinds of project of the layout before the settings version, all in one list.
enum OldProjectKind : int32_t {
    kOldScenery = 0,
    kOldRailNetwork = 1,
    kOldSteamEngine = 2,
    kOldDieselEngine = 3,
    kOldElectricEngine = 4,
    kOldFreightCar = 5,
};
// The old list had a fourth compression entry.
constexpr int32_t kOldFourthCompression = 3;
constexpr int32_t kLastCompression = 2;
// An old vehicle's wheel group with this many wheels or more was carried in a bogie.
constexpr int32_t kOldBogieWheels = 4;

// Display forms: "0.0#" for the mass and the velocity, "0.0##" for the radii. The velocity box's
// own rule shows one decimal; the load shows up to two. Kept on purpose.
constexpr int kMinDecimals = 1;
constexpr int kMassDecimals = 2;
constexpr int kVelocityDecimals = 2;
constexpr int kRadiusDecimals = 3;

// The toolkit's refusals of a stored value that no list entry or array element has.
constexpr int32_t kErrorInvalidPropertyValue = 380;
constexpr int32_t kErrorNoArrayElement = 340;

void SelectStored(Control& list, int32_t index) {
    if (index < -1 || index >= static_cast<int32_t>(list.List().size())) {
        throw support::RunTimeError(kErrorInvalidPropertyValue, "Invalid property value");
    }
    list.SetListIndex(index);
}

// A "+1" slot: 1 unchecked, 2 checked, and 0 (never stored) checked. A check box holds 0, 1 or
// 2 (greyed); the toolkit refuses any other state.
int32_t PlusOneState(int32_t stored) {
    if (stored < 0 || stored > 3) {
        throw support::RunTimeError(kErrorInvalidPropertyValue, "Invalid property value");
    }
    return stored == 0 ? 1 : stored - 1;
}
int32_t PlusOneSlot(const Control& box) {
    return box.Value() + 1;
}

float StoredBoxValue(const Control& box) {
    return box.Text() == kDefaultText ? 0.0f : SingleValue(box.Text());
}

int32_t StoredCount(const Control& box) {
    return WholeNumber(box.Text());
}

// A control and the settings slot that keeps it.
struct BoxSlot {
    Control* box;
    size_t slot;
};

}  // namespace

void frmWizard::LoadSettings(settings::ProjectSettings& settings) {
    try {
        // The material fields first: without room for them the wizard closes.
        if (!EnsureMaterialFields()) {
            return;
        }
        // Settings stored before versions were kept are brought to the current layout.
        if (settings.Long(settings::kLongSettingsVersion) == 0) {
            UpgradeSettings(settings);
        }
        // The simulators. Each runs its box's click handling, which may close the wizard.
        const BoxSlot simulators[] = {{&chkMSTS, settings::kLongMsts},
                                      {&chkRailSimulator, settings::kLongRailSimulator},
                                      {&chkRailWorks, settings::kLongRailWorks},
                                      {&chkTrainz, settings::kLongTrainz},
                                      {&chkRail3D, settings::kLongRail3D},
                                      {&chkBVE, settings::kLongBve}};
        for (const auto& [box, slot] : simulators) {
            box->SetValue(settings.Long(slot));
            if (!IsLoaded()) {
                return;
            }
        }
        LoadSettingsText(settings);
        // The real-valued boxes, then the wheel rows.
        txtMass.SetText(
            RealBoxText(settings.Single(settings::kSingleMass), kMinDecimals, kMassDecimals));
        txtMaximumVelocity.SetText(RealBoxText(settings.Single(settings::kSingleMaximumVelocity),
                                               kMinDecimals, kVelocityDecimals));
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            txtWheelRadius[group].SetText(
                RealBoxText(settings.Single(settings::kSingleWheelRadius + group), kMinDecimals,
                            kRadiusDecimals));
        }
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            txtWheels[group].SetText(std::to_string(settings.Long(settings::kLongWheels + group)));
            chkBogie[group].SetValue(settings.Long(settings::kLongBogie + group));
        }
        // Choosing the type refills the sub-types, so it comes first.
        SelectStored(cboProjectType, settings.Long(settings::kLongProjectType));
        SelectStored(cboProjectSubType, settings.Long(settings::kLongProjectSubType));
        LoadCounts(settings);
        // A new project gets the advice on where to start.
        if (settings.text.empty()) {
            lblStart.SetCaption(lblStart.Caption() + std::string(kParagraphBreak) +
                                std::string(kTutorialAdvice));
        }
    } catch (...) {
        ReportError();
    }
}

void frmWizard::UpgradeSettings(settings::ProjectSettings& settings) {
    const auto showWarning = [this](const std::string& text) {
        platform_.ui.ShowMessage(text, support::MessageIcon::Exclamation,
                                 support::MessageButtons::Ok);
    };
    const auto subTypeDefaulted = [&](std::string_view subType) {
        showWarning(std::string(kSubTypeDefaulted) + "\"" + std::string(subType) + "\"");
    };
    const int32_t oldKind = settings.Long(settings::kLongProjectType);
    if (oldKind == kOldScenery) {
        settings.Long(settings::kLongProjectType) =
            settings::Stored(settings::ProjectType::Scenery);
        settings.Long(settings::kLongProjectSubType) = 0;
    } else if (oldKind == kOldRailNetwork) {
        settings.Long(settings::kLongProjectType) =
            settings::Stored(settings::ProjectType::RailNetwork);
        settings.Long(settings::kLongProjectSubType) =
            settings::Stored(settings::NetworkSubType::Tunnel);
        subTypeDefaulted(kTunnel);
    } else {
        // A vehicle: wheel groups of four wheels or more were bogies.
        if (settings.Long(settings::kLongWheels) >= kOldBogieWheels) {
            settings.Long(settings::kLongBogie) = 1;
        }
        if (settings.Long(settings::kLongWheels + 1) >= kOldBogieWheels) {
            settings.Long(settings::kLongBogie + 1) = 1;
        }
        if (oldKind == kOldSteamEngine &&
            settings.Long(settings::kLongWheels + 2) >= kOldBogieWheels) {
            settings.Long(settings::kLongBogie + 2) = 1;
        }
        settings.Long(settings::kLongProjectType) =
            settings::Stored(settings::ProjectType::RailVehicle);
        const float oldRadius = settings.Single(settings::kSingleOldWheelRadius);
        if (oldKind == kOldSteamEngine) {
            settings.Long(settings::kLongProjectSubType) =
                settings::Stored(settings::VehicleSubType::SteamEngine);
            // The drive wheels are never in a bogie.
            settings.Long(settings::kLongBogie + 1) = 0;
            settings.Single(settings::kSingleWheelRadius + 1) = oldRadius;
            subTypeDefaulted(kSteamEngine);
        } else {
            switch (oldKind) {
                case kOldDieselEngine:
                    settings.Long(settings::kLongProjectSubType) =
                        settings::Stored(settings::VehicleSubType::DieselEngine);
                    break;
                case kOldElectricEngine:
                    settings.Long(settings::kLongProjectSubType) =
                        settings::Stored(settings::VehicleSubType::ElectricEngine);
                    break;
                case kOldFreightCar:
                    settings.Long(settings::kLongProjectSubType) =
                        settings::Stored(settings::VehicleSubType::FreightCar);
                    break;
                default:
                    settings.Long(settings::kLongProjectSubType) =
                        settings::Stored(settings::VehicleSubType::PassengerCar);
                    break;
            }
            settings.Single(settings::kSingleWheelRadius) = oldRadius;
            settings.Single(settings::kSingleWheelRadius + 1) = oldRadius;
            if (oldKind == kOldFreightCar) {
                subTypeDefaulted(kFreightCar);
            }
        }
        showWarning(std::string(kCheckBogies));
    }
    if (settings.Long(settings::kLongCompression) == kOldFourthCompression) {
        settings.Long(settings::kLongCompression) = kLastCompression;
    }
    SetDefaultMaterialFieldValues();
    settings.Long(settings::kLongExportToDocumentsFolder) = 1;
}

void frmWizard::LoadSettingsText(settings::ProjectSettings& settings) {
    const std::string& text = settings.text;
    if (!settings::HasSeparators(text)) {
        return;
    }
    const settings::SettingsFields fields = settings::SplitSettingsText(text);
    txtProjectTitle.SetText(fields[settings::kTitleField]);
    txtProjectName.SetText(fields[settings::kNameField]);
    txtProjectDescription.SetText(fields[settings::kDescriptionField]);
    const std::string& last = fields[settings::kLastField];
    if (settings.Long(settings::kLongProjectType) ==
        settings::Stored(settings::ProjectType::RailVehicle)) {
        txtOperatingProcedures.SetText(last);
    } else if (const int route = cboRoute.FindItem(last); route >= 0) {
        // A route that is no longer listed is passed over.
        cboRoute.SetListIndex(route);
    }
}

void frmWizard::LoadCounts(settings::ProjectSettings& settings) {
    const BoxSlot plusOneBoxes[] = {
        {&chkCreateShape, settings::kLongCreateShape},
        {&chkCreateShapeData, settings::kLongCreateShapeData},
        {&chkCreatexFile, settings::kLongCreatexFile},
        {&chkConvertTextures, settings::kLongConvertTextures},
        {&chkSound, settings::kLongSound},
        {&chkCabView, settings::kLongCabView},
        {&chkAnimation, settings::kLongAnimation},
        {&chkDefaultGroupCustomFields, settings::kLongDefaultGroupCustomFields}};
    for (const auto& [box, slot] : plusOneBoxes) {
        box->SetValue(PlusOneState(settings.Long(slot)));
    }
    SelectStored(cboCompression, settings.Long(settings::kLongCompression));
    if (chkConvertTextures.Value() == 0) {
        cboCompression.SetEnabled(false);
        cboCompression.SetListIndex(0);
    } else {
        cboCompression.SetEnabled(true);
    }
    txtRods.SetText(std::to_string(settings.Long(settings::kLongRods)));
    const int32_t distanceLevel = settings.Long(settings::kLongDistanceLevels);
    if (distanceLevel < 0 || distanceLevel >= kDistanceLevelCount) {
        throw support::RunTimeError(
            kErrorNoArrayElement,
            "Control array element '" + std::to_string(distanceLevel) + "' doesn't exist");
    }
    optDistanceLevels[static_cast<size_t>(distanceLevel)].SetValue(1);
    SelectStored(cboCouplerType, settings.Long(settings::kLongCouplerType));
    const BoxSlot counts[] = {{&txtStacks, settings::kLongStacks},
                              {&txtCylinders, settings::kLongCylinders},
                              {&txtDieselExhaust, settings::kLongDieselExhaust},
                              {&txtDrainPipes, settings::kLongDrainPipes},
                              {&txtWhistles, settings::kLongWhistles},
                              {&txtSafetyValves, settings::kLongSafetyValves},
                              {&txtPantographs, settings::kLongPantographs},
                              {&txtArmsPerPantograph, settings::kLongArmsPerPantograph}};
    for (const auto& [box, slot] : counts) {
        box->SetText(std::to_string(settings.Long(slot)));
    }
    const BoxSlot checkBoxes[] = {{&chkMirrorLeft, settings::kLongMirrorLeft},
                                  {&chkMirrorRight, settings::kLongMirrorRight},
                                  {&chkWiperLeft, settings::kLongWiperLeft},
                                  {&chkWiperRight, settings::kLongWiperRight},
                                  {&chkTenderRequired, settings::kLongTenderRequired},
                                  {&chkViewPoint, settings::kLongViewPoint},
                                  {&chkIntakePoint, settings::kLongIntakePoint},
                                  {&chkRetainSubObjects, settings::kLongRetainSubObjects}};
    for (const auto& [box, slot] : checkBoxes) {
        box->SetValue(settings.Long(slot));
    }
    // Disabled while it is set, so that the export-location notice stays away.
    chkExportToDocumentsFolder.SetEnabled(false);
    chkExportToDocumentsFolder.SetValue(settings.Long(settings::kLongExportToDocumentsFolder));
    chkExportToDocumentsFolder.SetEnabled(true);
}

bool frmWizard::SaveSettings(settings::ProjectSettings& settings) {
    try {
        // The texts. Network objects and scenery end with their route, vehicles with the
        // procedures.
        const std::string& last =
            cboProjectType.Text() == kRailVehicle ? txtOperatingProcedures.Text() : cboRoute.Text();
        settings.text = settings::JoinSettingsText(
            {txtProjectTitle.Text(), txtProjectName.Text(), txtProjectDescription.Text(), last});
        // The real values.
        settings.Single(settings::kSingleMass) = StoredBoxValue(txtMass);
        settings.Single(settings::kSingleMaximumVelocity) = StoredBoxValue(txtMaximumVelocity);
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            settings.Single(settings::kSingleWheelRadius + group) =
                StoredBoxValue(txtWheelRadius[group]);
        }
        // The whole numbers, in this order, so that a short array ends the save at the same slot
        // every time.
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            settings.Long(settings::kLongWheels + group) = StoredCount(txtWheels[group]);
            settings.Long(settings::kLongBogie + group) = chkBogie[group].Value();
        }
        settings.Long(settings::kLongProjectType) = cboProjectType.ListIndex();
        settings.Long(settings::kLongCreateShape) = PlusOneSlot(chkCreateShape);
        settings.Long(settings::kLongCreateShapeData) = PlusOneSlot(chkCreateShapeData);
        settings.Long(settings::kLongAnimation) = PlusOneSlot(chkAnimation);
        settings.Long(settings::kLongDefaultGroupCustomFields) =
            PlusOneSlot(chkDefaultGroupCustomFields);
        settings.Long(settings::kLongCreatexFile) = PlusOneSlot(chkCreatexFile);
        settings.Long(settings::kLongConvertTextures) = PlusOneSlot(chkConvertTextures);
        settings.Long(settings::kLongSound) = PlusOneSlot(chkSound);
        settings.Long(settings::kLongCabView) = PlusOneSlot(chkCabView);
        settings.Long(settings::kLongCompression) = cboCompression.ListIndex();
        settings.Long(settings::kLongRods) = StoredCount(txtRods);
        settings.Long(settings::kLongRetainSubObjects) = chkRetainSubObjects.Value();
        settings.Long(settings::kLongExportToDocumentsFolder) = chkExportToDocumentsFolder.Value();
        int32_t& distanceLevel = settings.Long(settings::kLongDistanceLevels);
        for (size_t level = 0; level < optDistanceLevels.size(); ++level) {
            if (optDistanceLevels[level].Value() != 0) {
                distanceLevel = static_cast<int32_t>(level);
            }
        }
        settings.Long(settings::kLongCouplerType) = cboCouplerType.ListIndex();
        settings.Long(settings::kLongStacks) = StoredCount(txtStacks);
        settings.Long(settings::kLongCylinders) = StoredCount(txtCylinders);
        settings.Long(settings::kLongDieselExhaust) = StoredCount(txtDieselExhaust);
        settings.Long(settings::kLongDrainPipes) = StoredCount(txtDrainPipes);
        settings.Long(settings::kLongWhistles) = StoredCount(txtWhistles);
        settings.Long(settings::kLongSafetyValves) = StoredCount(txtSafetyValves);
        settings.Long(settings::kLongMirrorLeft) = chkMirrorLeft.Value();
        settings.Long(settings::kLongMirrorRight) = chkMirrorRight.Value();
        settings.Long(settings::kLongWiperLeft) = chkWiperLeft.Value();
        settings.Long(settings::kLongWiperRight) = chkWiperRight.Value();
        settings.Long(settings::kLongPantographs) = StoredCount(txtPantographs);
        settings.Long(settings::kLongArmsPerPantograph) = StoredCount(txtArmsPerPantograph);
        settings.Long(settings::kLongTenderRequired) = chkTenderRequired.Value();
        settings.Long(settings::kLongViewPoint) = chkViewPoint.Value();
        settings.Long(settings::kLongIntakePoint) = chkIntakePoint.Value();
        settings.Long(settings::kLongProjectSubType) = cboProjectSubType.ListIndex();
        settings.Long(settings::kLongSettingsVersion) = settings::kSettingsVersion;
        settings.Long(settings::kLongMsts) = chkMSTS.Value();
        settings.Long(settings::kLongRailSimulator) = chkRailSimulator.Value();
        settings.Long(settings::kLongRailWorks) = chkRailWorks.Value();
        settings.Long(settings::kLongTrainz) = chkTrainz.Value();
        settings.Long(settings::kLongRail3D) = chkRail3D.Value();
        settings.Long(settings::kLongBve) = chkBVE.Value();
        return true;
    } catch (...) {
        ReportError();
        return false;
    }
}

}  // namespace railwright::wizard
