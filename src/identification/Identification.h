// Identification of the catalogue's parts in the model: renaming a picked group to its part's
// group name, moving it under the group that the exporters expect as its parent, and finding the
// next part that the model still lacks.
//
// Target hierarchy (names compared without regard to case): "Main" under the scene's top group;
// bogies, drive wheelsets, wiper arms, mirrors, pantograph bottoms and the piston under "Main";
// front wheelsets under "Bogie1", rear ones under "Bogie2"; "Main_Wheel_Link" under "Wheels1";
// wiper blades under their arms; pantograph middles under their bottoms, tops under their middles
// (three arms) or bottoms (two arms). Rods and placeholders stay where they are.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "host/Host.h"
#include "identification/PartCatalogue.h"
#include "support/Platform.h"

namespace railwright::identification {

// What identification works with: the model, the user interface for the move failure message,
// and the flag (MoveWarningShown, owned by the wizard for its whole run) that limits that message
// to once per run.
struct IdentificationContext {
    host::Scripting& scene;
    support::UserInterface& ui;
    bool& moveWarningShown;
};

// The first group in scene order whose name equals `name` without regard to case, or null.
std::shared_ptr<host::SceneGroup> FindGroupNamed(host::Scripting& scene, std::string_view name);

// Moves the picked group under the first group named `parentName`. A missing parent leaves the
// group where it is and says so once per run, except for a missing bogie: wheels without a bogie
// have none.
void MoveSelectedGroupUnder(IdentificationContext& context, host::Selection& pick,
                            const std::string& parentName);
// The same for any group, and any missing parent is reported (once per run).
void MoveGroupUnder(IdentificationContext& context, host::SceneGroup& group,
                    const std::string& parentName);

// Renames the picked group to `groupName`, shows the name in the view, and moves the group under
// the parent that the name calls for. "Main" belongs under the top group, which the catalogue
// named after `projectTitle`.
void IdentifySelectedGroup(IdentificationContext& context, host::Selection& pick,
                           const std::string& groupName, const std::string& projectTitle);

// Moves the catalogue's position on to the first entry, from the position on, that is neither
// identified nor present in the model; entries found present become identified. False when none
// is left, the position then staying where it was.
bool FindNextMissingPart(host::Scripting& scene, PartCatalogue& catalogue);

// The prompt of the identification step: the part at the position while `asking`, otherwise
// the news that identification is complete.
std::string IdentificationPrompt(const PartCatalogue& catalogue, bool asking);

}  // namespace railwright::identification
