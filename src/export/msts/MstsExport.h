// The MSTS export: the single entry point that lays out the project's folders in the MSTS tree,
// checks and converts the textures, has the host write the shape, and writes the shape data
// file, then the REF file of a route project or the cab view, sounds and engine or wagon file of
// a rail vehicle. It ends with one message box telling the user the outcome.
//
//   rail vehicle    <root>/TRAINS/TRAINSET/<NAME>/          <name>.s, .sd, .eng or .wag,
//                                                           textures, CABVIEW/, SOUND/
//   any other       <root>/ROUTES/<ROUTE>/Shapes/           <name>.s, <name>.sd
//                   <root>/ROUTES/<ROUTE>/Textures/         textures
//                   <root>/ROUTES/<ROUTE>/                  <name>.ref, or ~<name>.ref when the
//                                                           project is named like its route
//
// The root is the MSTS installation, or the user's documents folder when the project exports
// there. The default cab views and sounds always come from the MSTS installation.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::exportmsts {

struct MstsExportInputs {
    host::Scripting& scripting;
    host::SceneGraph& sceneGraph;  // the model's: its material field definitions
    host::Application& application;
    std::string title;
    std::string projectName;  // as typed
    std::string description;
    std::string routeName;            // of a route project
    std::string operatingProcedures;  // of a rail vehicle
    const std::vector<float>& userDataSingles;
    const std::vector<int32_t>& userDataLongs;
    bool exportToDocumentsFolder = false;
};

// Runs the export; true when it succeeded. Every failure is shown to the user and none escapes.
bool ExportToMsts(support::Platform& platform, const MstsExportInputs& inputs) noexcept;

}  // namespace railwright::exportmsts
