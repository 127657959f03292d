// Effects, placeholder-driven lines and lights of the engine and wagon files.
//
// The placeholder writers look for their marker groups ("RailwrightPlaceholder-" + a role name)
// with a name test that never succeeds (IsPlaceholderFor), so the effects sections are written
// as bare skeletons and no position or intake point line comes from a placeholder.
#pragma once

#include <string>
#include <string_view>

#include "export/msts/MstsTextFile.h"
#include "host/Host.h"

namespace railwright::exportmsts {

// The placeholder name test of the writers below: the first (role length + 15) characters of the
// group's name against the whole placeholder name, ignoring case. The placeholder name is longer
// than the part of the group's name that is compared, so this never matches; kept on purpose.
bool IsPlaceholderFor(std::string_view groupName, std::string_view roleName);

// How an emitter entry's direction line is found.
enum class EmitterDirection {
    Given,             // the direction passed by the caller
    AlongPlaceholder,  // from the placeholder's origin towards the centre of its box
};

struct EmitterOptions {
    std::string_view nameSuffix;  // appended to the effect name ("StackFX")
    host::Vector3 direction;
    bool numbered = false;  // a running number from 1 after the suffix ("Exhaust1")
    EmitterDirection directionSource = EmitterDirection::Given;
};

// The steam and diesel effects sections; electric engines have none.
void WriteSteamEffects(MstsTextFile& file);
void WriteDieselEffects(MstsTextFile& file);

// One entry for every placeholder of the effect.
void WriteEffectEmitters(MstsTextFile& file, std::string_view effectName,
                         const EmitterOptions& options);

// "    <role> ( x y z )" at the placeholder of the role.
void WritePlaceholderPosition(MstsTextFile& file, std::string_view roleName);

// "    IntakePoint ( <z of the placeholder> <its box's extent along z> <role> )" at the
// placeholder: where along the vehicle the intake is, and how long it is.
void WriteIntakePoint(MstsTextFile& file, std::string_view roleName);

// The lights section for the host's lights; nothing when the model has none. Positions are
// lengths; a glow (the second kind) also gets its azimuth, the angle in degrees of its direction
// about the up axis measured from the length axis, written as the angle and its two limits.
void WriteLights(MstsTextFile& file);

// The light's colour as red, green and blue, two lower-case hexadecimal digits each.
std::string LightColourText(const host::Light& light);

}  // namespace railwright::exportmsts
