// The names that identification gives the parts a simulator moves or looks for by name ("Main",
// "Bogie1", "Wheels11", "Main_Wheel_Link", "Rod1", "PantographBottom1A"...), as the scene and the
// shape writer recognise them: letters without regard to case.
#pragma once

#include <string_view>

namespace railwright::host::scene {

// Whether a group of this name is one of the named parts.
bool IsNamedPart(std::string_view name);

// Whether a group of this name is a wheelset: "Wheels" followed by a number ("Wheels1" to
// "Wheels4" drive wheels, "Wheels11" and on in the bogies).
bool IsWheelset(std::string_view name);

}  // namespace railwright::host::scene
