#include "export/msts/EffectsAndLights.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

#include "export/msts/CommonBody.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

// The angle computations of the lights use this value of pi.
constexpr float kPi = 3.141593f;

// Calls `visit` with every placeholder of `roleName`, in the host's group order.
void ForEachPlaceholder(host::Scripting& scripting, std::string_view roleName,
                        const std::function<void(host::SceneGroup&)>& visit) {
    const int32_t count = scripting.GroupCount();
    for (int32_t i = 0; i < count; ++i) {
        std::shared_ptr<host::SceneGroup> group = scripting.Group(i);
        if (IsPlaceholderFor(group->Name(), roleName)) {
            visit(*group);
        }
    }
}

std::shared_ptr<host::SceneGroup> FindPlaceholder(host::Scripting& scripting,
                                                  std::string_view roleName) {
    const int32_t count = scripting.GroupCount();
    for (int32_t i = 0; i < count; ++i) {
        std::shared_ptr<host::SceneGroup> group = scripting.Group(i);
        if (IsPlaceholderFor(group->Name(), roleName)) {
            return group;
        }
    }
    return nullptr;
}

std::string Lengths(MstsTextFile& file, host::Vector3 point) {
    return file.Length(point.x) + " " + file.Length(point.y) + " " + file.Length(point.z);
}

std::string Values(MstsTextFile& file, host::Vector3 vector) {
    return file.Value(vector.x) + " " + file.Value(vector.y) + " " + file.Value(vector.z);
}

host::Vector3 TowardsBoxCentre(host::Vector3 origin, const host::Bounds& box,
                               host::Vector3 fallback) {
    const host::Vector3 offset{(box.minX + box.maxX) / 2 - origin.x,
                               (box.minY + box.maxY) / 2 - origin.y,
                               (box.minZ + box.maxZ) / 2 - origin.z};
    const float length = std::sqrt(offset.x * offset.x + offset.y * offset.y + offset.z * offset.z);
    if (!(length > 0)) {
        return fallback;
    }
    return {offset.x / length, offset.y / length, offset.z / length};
}

// Each channel as two lower-case hexadecimal digits, rounded half to even and kept within 0-255.
std::string Channel(float component) {
    const float scaled = std::clamp(std::nearbyint(component * 255), 0.0f, 255.0f);
    const auto value = static_cast<unsigned>(scaled);
    constexpr std::string_view kDigits = "0123456789abcdef";
    return {kDigits[value >> 4], kDigits[value & 0xFu]};
}

// The azimuth of the light's direction in degrees about the up axis, from the length axis.
float AzimuthDegrees(host::Vector3 direction) {
    return std::atan2(direction.x, direction.z) * 180 / kPi;
}

void WriteLightEntry(MstsTextFile& file, const host::Light& light) {
    const bool glow = light.kind == host::LightKind::Glow;
    file.Line("        Light    (");
    file.Line(glow ? "            Type    ( 0 )" : "            Type    ( 1 )");
    file.Lines({
        "            Conditions    (",
        "                Headlight ( 3 )",
        "                Unit ( 2 )",
        "                )",
        "            FadeIn    ( 0.5 )",
        "            FadeOut   ( 0.5 )",
        "            Cycle     ( 0 )",
        "            States    (    1",
        "                State    (",
        "                    Duration ( 0.0 )",
    });
    // The glow is drawn half transparent (alpha 80), the ordinary light opaque (ff). The line
    // has no closing parenthesis: that is the layout this section has always had, kept on purpose.
    file.Line("                    LightColour ( " + std::string(glow ? "80" : "ff") +
              LightColourText(light));
    file.Line("                    Position ( " + Lengths(file, light.position) + " )");
    if (glow) {
        const std::string azimuth = file.Value(AzimuthDegrees(light.direction));
        file.Line("                    Azimuth ( " + azimuth + " " + azimuth + " " + azimuth +
                  " )");
    }
    file.Line("                    Transition ( 0 )");
    if (glow) {
        file.Lines(
            {"                    Radius ( .4 )", "                    Elevation ( 0 0 0 )"});
    } else {
        file.Lines({"                    Radius ( 100.0 )", "                    Angle ( 15.0 )"});
    }
    file.Lines({
        "                    )",
        "                )",
        "            )",
    });
}

}  // namespace

bool IsPlaceholderFor(std::string_view groupName, std::string_view roleName) {
    const std::string placeholderName = std::string(kPlaceholderPrefix) + std::string(roleName);
    return support::EqualsIgnoreCase(groupName.substr(0, roleName.size() + 15), placeholderName);
}

void WriteSteamEffects(MstsTextFile& file) {
    const EmitterOptions steam{"FX", {0, 1, 0}, false, EmitterDirection::Given};
    file.Lines({"    Effects", "    (", "        SteamSpecialEffects", "        ("});
    for (const std::string_view effect :
         {"SafetyValves", "Whistle", "Stack", "Drainpipe", "Cylinders"}) {
        WriteEffectEmitters(file, effect, steam);
    }
    file.Lines({"        )", "    )"});
}

void WriteDieselEffects(MstsTextFile& file) {
    const EmitterOptions diesel{"", {0, 1, 0}, true, EmitterDirection::AlongPlaceholder};
    file.Lines({"    Effects", "    (", "        DieselSpecialEffects", "        ("});
    WriteEffectEmitters(file, "Exhaust", diesel);
    file.Lines({"        )", "    )"});
}

void WriteEffectEmitters(MstsTextFile& file, std::string_view effectName,
                         const EmitterOptions& options) {
    host::Scripting& scripting = file.Scripting();
    int32_t number = 0;
    ForEachPlaceholder(scripting, effectName, [&](host::SceneGroup& placeholder) {
        std::shared_ptr<host::SceneGroup> root = scripting.RootGroup();
        const host::Vector3 position = placeholder.GetPosition(*root, host::kCurrentPose);
        const host::Bounds box = placeholder.GetBounds(*root, host::kCurrentPose);
        const host::Vector3 direction = options.directionSource == EmitterDirection::Given
                                            ? options.direction
                                            : TowardsBoxCentre(position, box, options.direction);
        const float size =
            ((box.maxX - box.minX) + (box.maxY - box.minY) + (box.maxZ - box.minZ)) / 3;
        ++number;
        file.Line("            " + std::string(effectName) + std::string(options.nameSuffix) +
                  (options.numbered ? std::to_string(number) : std::string()));
        file.Line("            (");
        file.Line("                " + Lengths(file, position));
        file.Line("                " + Values(file, direction));
        file.Line("                " + file.Length(size));
        file.Line("            )");
    });
}

void WritePlaceholderPosition(MstsTextFile& file, std::string_view roleName) {
    host::Scripting& scripting = file.Scripting();
    std::shared_ptr<host::SceneGroup> placeholder = FindPlaceholder(scripting, roleName);
    if (placeholder) {
        const host::Vector3 position =
            placeholder->GetPosition(*scripting.RootGroup(), host::kCurrentPose);
        file.Line("    " + std::string(roleName) + " ( " + Lengths(file, position) + " )");
    }
}

void WriteIntakePoint(MstsTextFile& file, std::string_view roleName) {
    host::Scripting& scripting = file.Scripting();
    std::shared_ptr<host::SceneGroup> placeholder = FindPlaceholder(scripting, roleName);
    if (placeholder) {
        std::shared_ptr<host::SceneGroup> root = scripting.RootGroup();
        const host::Vector3 position = placeholder->GetPosition(*root, host::kCurrentPose);
        const host::Bounds box = placeholder->GetBounds(*root, host::kCurrentPose);
        file.Line("    IntakePoint ( " + file.Length(position.z) + " " +
                  file.Length(box.maxZ - box.minZ) + " " + std::string(roleName) + " )");
    }
}

void WriteLights(MstsTextFile& file) {
    host::Scripting& scripting = file.Scripting();
    const int32_t count = scripting.LightCount();
    if (count <= 0) {
        return;
    }
    file.Line("    Lights    ( " + std::to_string(count));
    for (int32_t i = 0; i < count; ++i) {
        WriteLightEntry(file, scripting.GetLight(i));
    }
    file.Line("    )");
}

std::string LightColourText(const host::Light& light) {
    return Channel(light.red) + Channel(light.green) + Channel(light.blue);
}

}  // namespace railwright::exportmsts
