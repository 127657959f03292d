// The wizard's choices kept in the model: the load when the wizard opens (with the upgrade of
// projects stored before the settings version), and the save that Finish runs.
#include "wizard/ProjectSettings.h"

#include "support/SupportingFunctions.h"
#include "wizard/NumberText.h"
#include "wizard/ProjectTypes.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr std::string_view kTitleSeparator = "|";
constexpr std::string_view kNameSeparator = "||";
constexpr std::string_view kDescriptionSeparator = "|||";

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

// Stored type numbers: the current list, and the kinds of project of the old layout.
constexpr int32_t kTypeRailNetwork = 0;
constexpr int32_t kTypeRailVehicle = 1;
constexpr int32_t kTypeScenery = 2;
enum OldProjectKind : int32_t {
    kOldScenery = 0,
    kOldRailNetwork = 1,
    kOldSteamEngine = 2,
    kOldDieselEngine = 3,
    kOldElectricEngine = 4,
    kOldFreightCar = 5,
};
// Sub-type numbers, the positions in their type's list.
constexpr int32_t kSubTypeTunnel = 4;
constexpr int32_t kSubTypeDieselEngine = 0;
constexpr int32_t kSubTypeElectricEngine = 1;
constexpr int32_t kSubTypeFreightCar = 2;
constexpr int32_t kSubTypePassengerCar = 3;
constexpr int32_t kSubTypeSteamEngine = 4;
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

// Characters from a 1-based position, as many as `length`; nothing for a position before the
// text or a length below 1.
std::string Mid(const std::string& text, long long start, long long length) {
    if (start < 1 || start > static_cast<long long>(text.size()) || length < 1) {
        return {};
    }
    return text.substr(static_cast<size_t>(start - 1), static_cast<size_t>(length));
}

// The 1-based position of the first occurrence, 0 when there is none.
long long Position(const std::string& text, std::string_view what) {
    const size_t found = text.find(what);
    return found == std::string::npos ? 0 : static_cast<long long>(found) + 1;
}

void SelectStored(Control& list, int32_t index) {
    if (index < -1 || index >= static_cast<int32_t>(list.List().size())) {
        throw support::RunTimeError(kErrorInvalidPropertyValue, "Invalid property value");
    }
    list.SetListIndex(index);
}

// A "+1" slot: 1 unchecked, 2 checked, and 0 (never stored) checked.
int32_t PlusOneState(int32_t stored) {
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

void frmWizard::LoadSettings(ProjectSettings& settings) {
    try {
        // 1.
        if (!EnsureMaterialFields()) {
            return;
        }
        // 2.
        if (settings.Long(kLongSettingsVersion) == 0) {
            UpgradeSettings(settings);
        }
        // 3. Each runs its box's click handling, which may close the wizard.
        const BoxSlot simulators[] = {
            {&chkMSTS, kLongMsts},           {&chkRailSimulator, kLongRailSimulator},
            {&chkRailWorks, kLongRailWorks}, {&chkTrainz, kLongTrainz},
            {&chkRail3D, kLongRail3D},       {&chkBVE, kLongBve}};
        for (const auto& [box, slot] : simulators) {
            box->SetValue(settings.Long(slot));
            if (!IsLoaded()) {
                return;
            }
        }
        // 4.
        LoadSettingsText(settings);
        // 5.
        txtMass.SetText(RealBoxText(settings.Single(kSingleMass), kMinDecimals, kMassDecimals));
        txtMaximumVelocity.SetText(
            RealBoxText(settings.Single(kSingleMaximumVelocity), kMinDecimals, kVelocityDecimals));
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            txtWheelRadius[group].SetText(RealBoxText(settings.Single(kSingleWheelRadius + group),
                                                      kMinDecimals, kRadiusDecimals));
        }
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            txtWheels[group].SetText(std::to_string(settings.Long(kLongWheels + group)));
            chkBogie[group].SetValue(settings.Long(kLongBogie + group));
        }
        // 6. Choosing the type refills the sub-types, so it comes first.
        SelectStored(cboProjectType, settings.Long(kLongProjectType));
        SelectStored(cboProjectSubType, settings.Long(kLongProjectSubType));
        // 7.
        LoadCounts(settings);
        // 8.
        if (settings.text.empty()) {
            lblStart.SetCaption(lblStart.Caption() + std::string(kParagraphBreak) +
                                std::string(kTutorialAdvice));
        }
    } catch (...) {
        ReportError();
    }
}

void frmWizard::UpgradeSettings(ProjectSettings& settings) {
    const auto showWarning = [this](const std::string& text) {
        platform_.ui.ShowMessage(text, support::MessageIcon::Exclamation,
                                 support::MessageButtons::Ok);
    };
    const auto subTypeDefaulted = [&](std::string_view subType) {
        showWarning(std::string(kSubTypeDefaulted) + "\"" + std::string(subType) + "\"");
    };
    const int32_t oldKind = settings.Long(kLongProjectType);
    if (oldKind == kOldScenery) {
        settings.Long(kLongProjectType) = kTypeScenery;
        settings.Long(kLongProjectSubType) = 0;
    } else if (oldKind == kOldRailNetwork) {
        settings.Long(kLongProjectType) = kTypeRailNetwork;
        settings.Long(kLongProjectSubType) = kSubTypeTunnel;
        subTypeDefaulted(kTunnel);
    } else {
        // A vehicle: wheel groups of four wheels or more were bogies.
        if (settings.Long(kLongWheels) >= kOldBogieWheels) {
            settings.Long(kLongBogie) = 1;
        }
        if (settings.Long(kLongWheels + 1) >= kOldBogieWheels) {
            settings.Long(kLongBogie + 1) = 1;
        }
        if (oldKind == kOldSteamEngine && settings.Long(kLongWheels + 2) >= kOldBogieWheels) {
            settings.Long(kLongBogie + 2) = 1;
        }
        settings.Long(kLongProjectType) = kTypeRailVehicle;
        const float oldRadius = settings.Single(kSingleOldWheelRadius);
        if (oldKind == kOldSteamEngine) {
            settings.Long(kLongProjectSubType) = kSubTypeSteamEngine;
            // The drive wheels are never in a bogie.
            settings.Long(kLongBogie + 1) = 0;
            settings.Single(kSingleWheelRadius + 1) = oldRadius;
            subTypeDefaulted(kSteamEngine);
        } else {
            switch (oldKind) {
                case kOldDieselEngine:
                    settings.Long(kLongProjectSubType) = kSubTypeDieselEngine;
                    break;
                case kOldElectricEngine:
                    settings.Long(kLongProjectSubType) = kSubTypeElectricEngine;
                    break;
                case kOldFreightCar:
                    settings.Long(kLongProjectSubType) = kSubTypeFreightCar;
                    break;
                default:
                    settings.Long(kLongProjectSubType) = kSubTypePassengerCar;
                    break;
            }
            settings.Single(kSingleWheelRadius) = oldRadius;
            settings.Single(kSingleWheelRadius + 1) = oldRadius;
            if (oldKind == kOldFreightCar) {
                subTypeDefaulted(kFreightCar);
            }
        }
        showWarning(std::string(kCheckBogies));
    }
    if (settings.Long(kLongCompression) == kOldFourthCompression) {
        settings.Long(kLongCompression) = kLastCompression;
    }
    SetDefaultMaterialFieldValues();
    settings.Long(kLongExportToDocumentsFolder) = 1;
}

void frmWizard::LoadSettingsText(ProjectSettings& settings) {
    const std::string& text = settings.text;
    if (text.empty()) {
        return;
    }
    // Each separator is searched from the start of the text, so a title or name that holds a bar
    // is cut at the wrong place; a negative length takes nothing.
    const long long title = Position(text, kTitleSeparator);
    if (title == 0) {
        return;
    }
    const long long name = Position(text, kNameSeparator);
    const long long description = Position(text, kDescriptionSeparator);
    txtProjectTitle.SetText(text.substr(0, static_cast<size_t>(title - 1)));
    txtProjectName.SetText(Mid(text, title + 1, name - title - 1));
    txtProjectDescription.SetText(Mid(text, name + 2, description - name - 2));
    const std::string last = description == 0
                                 ? std::string{}
                                 : Mid(text, description + 3, static_cast<long long>(text.size()));
    if (settings.Long(kLongProjectType) == kTypeRailVehicle) {
        txtOperatingProcedures.SetText(last);
    } else if (const int route = cboRoute.FindItem(last); route >= 0) {
        // A route that is no longer listed is passed over.
        cboRoute.SetListIndex(route);
    }
}

void frmWizard::LoadCounts(ProjectSettings& settings) {
    const BoxSlot plusOneBoxes[] = {{&chkCreateShape, kLongCreateShape},
                                    {&chkCreateShapeData, kLongCreateShapeData},
                                    {&chkCreatexFile, kLongCreatexFile},
                                    {&chkConvertTextures, kLongConvertTextures},
                                    {&chkSound, kLongSound},
                                    {&chkCabView, kLongCabView},
                                    {&chkAnimation, kLongAnimation},
                                    {&chkDefaultGroupCustomFields, kLongDefaultGroupCustomFields}};
    for (const auto& [box, slot] : plusOneBoxes) {
        box->SetValue(PlusOneState(settings.Long(slot)));
    }
    SelectStored(cboCompression, settings.Long(kLongCompression));
    if (chkConvertTextures.Value() == 0) {
        cboCompression.SetEnabled(false);
        cboCompression.SetListIndex(0);
    } else {
        cboCompression.SetEnabled(true);
    }
    txtRods.SetText(std::to_string(settings.Long(kLongRods)));
    const int32_t distanceLevel = settings.Long(kLongDistanceLevels);
    if (distanceLevel < 0 || distanceLevel >= kDistanceLevelCount) {
        throw support::RunTimeError(
            kErrorNoArrayElement,
            "Control array element '" + std::to_string(distanceLevel) + "' doesn't exist");
    }
    optDistanceLevels[static_cast<size_t>(distanceLevel)].SetValue(1);
    SelectStored(cboCouplerType, settings.Long(kLongCouplerType));
    const BoxSlot counts[] = {{&txtStacks, kLongStacks},
                              {&txtCylinders, kLongCylinders},
                              {&txtDieselExhaust, kLongDieselExhaust},
                              {&txtDrainPipes, kLongDrainPipes},
                              {&txtWhistles, kLongWhistles},
                              {&txtSafetyValves, kLongSafetyValves},
                              {&txtPantographs, kLongPantographs},
                              {&txtArmsPerPantograph, kLongArmsPerPantograph}};
    for (const auto& [box, slot] : counts) {
        box->SetText(std::to_string(settings.Long(slot)));
    }
    const BoxSlot checkBoxes[] = {
        {&chkMirrorLeft, kLongMirrorLeft},         {&chkMirrorRight, kLongMirrorRight},
        {&chkWiperLeft, kLongWiperLeft},           {&chkWiperRight, kLongWiperRight},
        {&chkTenderRequired, kLongTenderRequired}, {&chkViewPoint, kLongViewPoint},
        {&chkIntakePoint, kLongIntakePoint},       {&chkRetainSubObjects, kLongRetainSubObjects}};
    for (const auto& [box, slot] : checkBoxes) {
        box->SetValue(settings.Long(slot));
    }
    // Disabled while it is set, so that the export-location notice stays away.
    chkExportToDocumentsFolder.SetEnabled(false);
    chkExportToDocumentsFolder.SetValue(settings.Long(kLongExportToDocumentsFolder));
    chkExportToDocumentsFolder.SetEnabled(true);
}

bool frmWizard::SaveSettings(ProjectSettings& settings) {
    try {
        // 1. Network objects and scenery end with their route, vehicles with the procedures.
        const std::string& last =
            cboProjectType.Text() == kRailVehicle ? txtOperatingProcedures.Text() : cboRoute.Text();
        settings.text = txtProjectTitle.Text() + std::string(kTitleSeparator) +
                        txtProjectName.Text() + std::string(kNameSeparator) +
                        txtProjectDescription.Text() + std::string(kDescriptionSeparator) + last;
        // 2.
        settings.Single(kSingleMass) = StoredBoxValue(txtMass);
        settings.Single(kSingleMaximumVelocity) = StoredBoxValue(txtMaximumVelocity);
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            settings.Single(kSingleWheelRadius + group) = StoredBoxValue(txtWheelRadius[group]);
        }
        // 3. In this order, so that a short array ends the save at the same slot every time.
        for (size_t group = 0; group < kWheelGroupCount; ++group) {
            settings.Long(kLongWheels + group) = StoredCount(txtWheels[group]);
            settings.Long(kLongBogie + group) = chkBogie[group].Value();
        }
        settings.Long(kLongProjectType) = cboProjectType.ListIndex();
        settings.Long(kLongCreateShape) = PlusOneSlot(chkCreateShape);
        settings.Long(kLongCreateShapeData) = PlusOneSlot(chkCreateShapeData);
        settings.Long(kLongAnimation) = PlusOneSlot(chkAnimation);
        settings.Long(kLongDefaultGroupCustomFields) = PlusOneSlot(chkDefaultGroupCustomFields);
        settings.Long(kLongCreatexFile) = PlusOneSlot(chkCreatexFile);
        settings.Long(kLongConvertTextures) = PlusOneSlot(chkConvertTextures);
        settings.Long(kLongSound) = PlusOneSlot(chkSound);
        settings.Long(kLongCabView) = PlusOneSlot(chkCabView);
        settings.Long(kLongCompression) = cboCompression.ListIndex();
        settings.Long(kLongRods) = StoredCount(txtRods);
        settings.Long(kLongRetainSubObjects) = chkRetainSubObjects.Value();
        settings.Long(kLongExportToDocumentsFolder) = chkExportToDocumentsFolder.Value();
        int32_t& distanceLevel = settings.Long(kLongDistanceLevels);
        for (size_t level = 0; level < optDistanceLevels.size(); ++level) {
            if (optDistanceLevels[level].Value() != 0) {
                distanceLevel = static_cast<int32_t>(level);
            }
        }
        settings.Long(kLongCouplerType) = cboCouplerType.ListIndex();
        settings.Long(kLongStacks) = StoredCount(txtStacks);
        settings.Long(kLongCylinders) = StoredCount(txtCylinders);
        settings.Long(kLongDieselExhaust) = StoredCount(txtDieselExhaust);
        settings.Long(kLongDrainPipes) = StoredCount(txtDrainPipes);
        settings.Long(kLongWhistles) = StoredCount(txtWhistles);
        settings.Long(kLongSafetyValves) = StoredCount(txtSafetyValves);
        settings.Long(kLongMirrorLeft) = chkMirrorLeft.Value();
        settings.Long(kLongMirrorRight) = chkMirrorRight.Value();
        settings.Long(kLongWiperLeft) = chkWiperLeft.Value();
        settings.Long(kLongWiperRight) = chkWiperRight.Value();
        settings.Long(kLongPantographs) = StoredCount(txtPantographs);
        settings.Long(kLongArmsPerPantograph) = StoredCount(txtArmsPerPantograph);
        settings.Long(kLongTenderRequired) = chkTenderRequired.Value();
        settings.Long(kLongViewPoint) = chkViewPoint.Value();
        settings.Long(kLongIntakePoint) = chkIntakePoint.Value();
        settings.Long(kLongProjectSubType) = cboProjectSubType.ListIndex();
        settings.Long(kLongSettingsVersion) = kSettingsVersion;
        settings.Long(kLongMsts) = chkMSTS.Value();
        settings.Long(kLongRailSimulator) = chkRailSimulator.Value();
        settings.Long(kLongRailWorks) = chkRailWorks.Value();
        settings.Long(kLongTrainz) = chkTrainz.Value();
        settings.Long(kLongRail3D) = chkRail3D.Value();
        settings.Long(kLongBve) = chkBVE.Value();
        return true;
    } catch (...) {
        ReportError();
        return false;
    }
}

}  // namespace railwright::wizard
