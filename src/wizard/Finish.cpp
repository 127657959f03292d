// "Finish": the checks that send the user back to the step that needs attention, the save, and
// the changes to the model that the exports rely on (everything with geometry under "Main", the
// drive wheel animation, the default custom group fields). The exports themselves run after the
// dialog has closed.
#include <memory>
#include <vector>

#include "identification/DriveWheelAnimation.h"
#include "identification/Identification.h"
#include "support/FileNames.h"
#include "support/SupportingFunctions.h"
#include "wizard/ProjectTypes.h"
#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr std::string_view kTitleRequired = "A project title is required.";
constexpr std::string_view kNameRequired = "A project name is required.";
constexpr std::string_view kRouteRequired = "A route is required.";
constexpr std::string_view kGroupsMoved =
    "Groups that contain shapes were moved to the \"Main\" group. This may not be the correct "
    "location in the hierarchy for these items, but this will ensure that they are exported to "
    "MSTS format.";

// An empty description is never stored.
constexpr const char* kBlankText = " ";

// Asked of the host before animated wheel groups are built.
constexpr int32_t kAnimationFlags = 8;
constexpr int32_t kAnimationMode = 1;

// The names that become file and folder names of the exports must stay inside the folders they
// are written to; these refusals come after the checks above and before anything is saved.
std::string UnusableName(std::string_view what, std::string_view name, const std::string& fault) {
    return "The " + std::string(what) + " \"" + std::string(name) + "\" cannot be used: " + fault +
           ". Please choose another name.";
}

}  // namespace

// The first texture whose converted file could not be named after it, with the reason; empty
// when every texture can be converted.
std::string frmWizard::UnusableTextureName() {
    host::Scripting& scene = host_.scene;
    for (int32_t i = 0; i < scene.MaterialListCount(); ++i) {
        std::shared_ptr<host::Selection> holder = scene.MaterialList(i);
        for (int32_t j = 0; j < holder->MaterialCount(); ++j) {
            const std::string texture = holder->Material(j)->TextureFile();
            const size_t slash = texture.find_last_of("\\/");
            const std::string file = slash == std::string::npos ? texture : texture.substr(slash + 1);
            if (file.size() < 3) {
                continue;  // no texture: the texture check reports it
            }
            const std::string base = support::SplitExtension(file).baseName;
            if (const std::string fault = support::FileNameFault(base); !fault.empty()) {
                return "The texture \"" + file + "\" cannot be converted: " + fault +
                       ". Please rename the texture file.";
            }
        }
    }
    return {};
}

void frmWizard::RefuseFinish(std::string_view message, int step) {
    platform_.ui.ShowMessage(message, support::MessageIcon::Exclamation,
                             support::MessageButtons::Ok);
    GoToStep(step);
}

void frmWizard::cmdFinish_Click() {
    if (!AnySimulatorChecked()) {
        ShowSimulatorRequired();
        GoToStep(kStepStart);
        return;
    }
    if (txtProjectTitle.Text().empty()) {
        RefuseFinish(kTitleRequired, kStepTitle);
        return;
    }
    if (txtProjectName.Text().empty()) {
        RefuseFinish(kNameRequired, kStepTitle);
        return;
    }
    const std::string type = cboProjectType.Text();
    if (chkMSTS.Value() == 1 && (type == kScenery || type == kRailNetwork) &&
        cboRoute.Text().empty()) {
        RefuseFinish(kRouteRequired, kStepAttributes);
        BuildPartCatalogue();
        return;
    }
    // Only these exports name files after the project; Trainz, Rail3D and BVE write none.
    const bool writesFiles =
        chkMSTS.Value() == 1 || chkRailSimulator.Value() == 1 || chkRailWorks.Value() == 1;
    if (writesFiles) {
        if (const std::string fault = support::FileNameFault(txtProjectName.Text());
            !fault.empty()) {
            RefuseFinish(UnusableName("project name", txtProjectName.Text(), fault), kStepTitle);
            return;
        }
    }
    if (chkMSTS.Value() == 1 && (type == kScenery || type == kRailNetwork)) {
        if (const std::string fault = support::FileNameFault(cboRoute.Text()); !fault.empty()) {
            RefuseFinish(UnusableName("route name", cboRoute.Text(), fault), kStepAttributes);
            return;
        }
    }
    if (writesFiles && chkConvertTextures.Value() == 1) {
        if (const std::string refusal = UnusableTextureName(); !refusal.empty()) {
            RefuseFinish(refusal, CurrentStep());
            return;
        }
    }
    for (Control* box : {&txtProjectDescription, &txtOperatingProcedures}) {
        if (box->Text().empty()) {
            box->SetText(kBlankText);
        }
    }

    finishClicked_ = true;
    // A save that fails has reported why; the model is then left alone and the dialog open.
    if (!SaveSettings()) {
        return;
    }
    if (GatherLooseGeometry()) {
        platform_.ui.ShowMessage(kGroupsMoved, support::MessageIcon::Information,
                                 support::MessageButtons::Ok);
    }
    if (chkAnimation.Value() == 1 && IsSteam(cboProjectSubType.Text())) {
        host_.scene.SetFlags(kAnimationFlags);
        host_.scene.SetMode(kAnimationMode);
        identification::AnimateDriveWheels(host_.scene, platform_.ui);
    }
    if (chkDefaultGroupCustomFields.Value() == 1) {
        SetDefaultGroupCustomFields();
    }
    Unload();
}

// Moves every group that holds shapes, and whose top-level group is not "Main" (only the first
// four letters count, so "MainBody" is "Main" too), into "Main". True when a move was made.
bool frmWizard::GatherLooseGeometry() {
    host::Scripting& scene = host_.scene;
    // The groups as they stand before the first move, which changes the scene order. The top
    // group (index 0) is never examined.
    std::vector<std::shared_ptr<host::SceneGroup>> groups;
    const int32_t count = scene.GroupCount();
    for (int32_t i = 1; i < count; ++i) {
        try {
            groups.push_back(scene.Group(i));
        } catch (...) {
            // A group that cannot be reached is left where it is.
        }
    }

    identification::IdentificationContext context = PartIdentification();
    const std::string main(identification::kMainGroupName);
    bool moved = false;
    for (const std::shared_ptr<host::SceneGroup>& group : groups) {
        try {
            if (group->ShapeCount() == 0) {
                continue;
            }
            const std::string top = support::TopLevelAncestorName(scene, *group);
            if (!support::StartsWithIgnoreCase(top, main)) {
                identification::MoveGroupUnder(context, *group, main);
                // Counted as moved even when "Main" was missing and the move was refused.
                moved = true;
            }
        } catch (...) {
            // One group's failure leaves it where it is; the others are still gathered.
        }
    }
    return moved;
}

}  // namespace railwright::wizard
