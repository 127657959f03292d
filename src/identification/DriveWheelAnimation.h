// The drive wheel animation of a steam engine: one full turn of each drive wheelset, with the main
// wheel link carried round by "Wheels1" while keeping its attitude.
#pragma once

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::identification {

// Keys at times 0 to 8 for every group named "Wheels1" to "Wheels4" or "Main_Wheel_Link" (case
// ignored), relative to the group's parent: at time t the group's starting pose turned by
// t x 45 degrees about the centre of its bounds, about the parent's X axis for a wheelset and
// against it for the link; time 8 is the starting pose again.
//
// The turn is written as the key's rotation, so a group's own axes are taken to be its parent's,
// as they are for wheels modelled in place. A host error is reported and ends the animation;
// keys already set stay.
void AnimateDriveWheels(host::Scripting& scene, support::UserInterface& ui);

}  // namespace railwright::identification
