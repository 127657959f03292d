// The "Type" step: the project type, its sub-types and its description.
#include "wizard/ProjectTypes.h"

#include <array>
#include <string>

#include "wizard/frmWizard.h"

namespace railwright::wizard {
namespace {

constexpr std::string_view kParagraphBreak = "\r\r";

struct ProjectType {
    std::string_view type;
    std::string_view description;
    std::string_view secondParagraph;          // empty for a one-paragraph description
    std::array<std::string_view, 7> subTypes;  // in list order; unused entries empty
};

// In the order of cboProjectType's list, which is also the stored type number.
constexpr std::array<ProjectType, 3> kProjectTypes{{
    {kRailNetwork,
     "A rail network object may interact with a train in some way such as a station, a bridge, "
     "or a tunnel.",
     "This wizard will attempt to create boundaries for the rail network object to permit "
     "interaction with trains. But for this to work well it is necessary to design your structure "
     "so that when you hover over the object in Polyforge none of the bounding boxes displayed by "
     "Polyforge would constrain the movement of a train.",
     {"Bridge", "Buffer", kSignal, "Track", kTunnel}},
    {kRailVehicle,
     "It is important to select the correct rail vehicle type since different rail vehicles "
     "include different parts and use different naming conventions.",
     "Please note that many of the settings provided with this wizard are only exported to "
     "Microsoft Train Simulator. However, a report of these settings and other model details are "
     "provided to aid in setting up other simulators.",
     {kDieselEngine, kElectricEngine, kFreightCar, kPassengerCar, kSteamEngine, kTankEngine,
      kTender}},
    {kScenery,
     "A scenery object does not interact with trains in any way.",
     "",
     {"Building", "Vegetation", "Vehicle"}},
}};

}  // namespace

bool IsEngine(std::string_view subType) {
    return IsSteam(subType) || subType == kDieselEngine || subType == kElectricEngine;
}

bool IsSteam(std::string_view subType) {
    return subType == kSteamEngine || subType == kTankEngine;
}

void frmWizard::InitialiseProjectTypes() {
    lblProjectType.SetCaption("Project Type");
    lblProjectSubType.SetCaption("Project Sub-Type");
    cboProjectType.onClick = Handler([this] { cboProjectType_Click(); });
    cboProjectSubType.onClick = Handler([this] { cboProjectSubType_Click(); });
}

void frmWizard::FillProjectTypes() {
    for (const ProjectType& projectType : kProjectTypes) {
        cboProjectType.AddItem(std::string(projectType.type));
    }
}

void frmWizard::cboProjectType_Click() {
    cboProjectSubType.Clear();
    for (const ProjectType& projectType : kProjectTypes) {
        if (projectType.type != cboProjectType.Text()) {
            continue;
        }
        lblProjectTypeDescription.SetCaption(std::string(projectType.description));
        if (!projectType.secondParagraph.empty()) {
            lblProjectTypeDescription.SetCaption(lblProjectTypeDescription.Caption() +
                                                 std::string(kParagraphBreak) +
                                                 std::string(projectType.secondParagraph));
        }
        for (const std::string_view subType : projectType.subTypes) {
            if (!subType.empty()) {
                cboProjectSubType.AddItem(std::string(subType));
            }
        }
    }
    // Selecting runs the sub-type's handler; an empty list selects nothing.
    cboProjectSubType.SetListIndex(0);
}

void frmWizard::cboProjectSubType_Click() {
    chkRetainSubObjects.SetValue(cboProjectSubType.Text() == kSignal ? 1 : 0);
}

}  // namespace railwright::wizard
