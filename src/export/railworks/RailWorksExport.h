// The RailWorks and Rail Simulator export: one driver for both simulators, which differ only in
// the folder root, the name in messages and the texture converter. It lays out the project's
// folders in the simulator's source tree, checks and converts the textures, and has the host
// write the shape as an .igs and an .ia file:
//
//   <root>/Source/Developer/Addon/<project folder>/<name>.igs, <name>.ia
//   <root>/Source/Developer/Addon/<project folder>/Textures/   the converted textures
//
// The root is the simulator's installation, or <documents>/RailWorks or <documents>/Rail
// Simulator when the project exports to the documents folder. The project folder depends on the
// project's type and sub-type (ProjectFolder).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::exportrailworks {

struct RailWorksExportInputs {
    host::Scripting& scripting;
    host::SceneGraph& sceneGraph;  // the model's: its material field definitions
    host::Application& application;
    std::string projectName;  // as typed
    const std::vector<int32_t>& userDataLongs;
    bool exportToDocumentsFolder = false;
    bool railWorks = false;  // true for RailWorks, false for Rail Simulator
};

// The folders of a project under the source tree's Addon folder, outermost first.
// `projectType` and `subType` are the stored settings::ProjectType and sub-type; `animated` tells
// whether any group of the model has two or more animation keys (it matters to scenery only).
std::vector<std::string> ProjectFolder(int32_t projectType, int32_t subType, bool animated,
                                       const std::string& projectName);

// Runs the export; true when it succeeded. Every failure is shown to the user and none escapes.
bool ExportRailWorks(support::Platform& platform, const RailWorksExportInputs& inputs) noexcept;

}  // namespace railwright::exportrailworks
