#include "export/msts/ShapeDataFiles.h"

#include "export/msts/CommonBody.h"
#include "export/msts/MstsTextFile.h"
#include "export/common/Windows1252.h"
#include "settings/Slots.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {
namespace {

// The scene graph's flags for the box of the model's geometry.
constexpr int32_t kBoundingBoxFlags = 11;

constexpr std::string_view kShapeDataSignature = "SIMISA@@@@@@@@@@JINX0t1t______";

bool IsRailNetwork(int32_t projectType) {
    return projectType == settings::Stored(settings::ProjectType::RailNetwork);
}

// The host's texts of `values`, separated by single spaces.
template <size_t N>
std::string Lengths(MstsTextFile& file, const float (&values)[N]) {
    std::string text;
    for (size_t i = 0; i < N; ++i) {
        text += (i == 0 ? "" : " ") + file.Length(values[i]);
    }
    return text;
}

void WriteCollisionBox(MstsTextFile& file, const host::CollisionBox& collision) {
    const host::Vector3& p = collision.referencePoint;
    const host::Vector3& q = collision.groupOrigin;
    const host::Bounds& box = collision.box;
    const float offset[] = {p.x - q.x, p.y - q.y, p.z - q.z};
    const float corners[] = {box.minX - p.x, box.minY - p.y, box.minZ - p.z,
                             box.maxX - p.x, box.maxY - p.y, box.maxZ - p.z};
    file.Lines({"        ESD_Complex_Box ( ", "            0 0 0"});  // 9a, 9b
    file.Line("            " + Lengths(file, offset));                // 9c
    file.Line("            " + Lengths(file, corners));               // 9d
    file.Line("        )");                                           // 9e
}

}  // namespace

// clang-format off
std::string ShapeDataFileText(host::Scripting& scripting, const std::string& projectName,
                              int32_t projectType, int32_t mainIndex) {
    MstsTextFile file(scripting);
    file.Lines({kShapeDataSignature, kSpaceLine});                      // 1, 2
    file.Line("shape ( " + support::ToLower(projectName) + ".s");       // 3
    file.Lines({
        "    ESD_Detail_Level (0)",                                     // 4
        "    ESD_Software_DLev (0)",                                    // 5
        "    ESD_Alternative_Texture (0)",                              // 6
    });
    if (!IsRailNetwork(projectType)) {                           // 7
        const host::Bounds box = scripting.Group(mainIndex)->SceneGraph()->BoundingBox(
            host::kCurrentPose, kBoundingBoxFlags, std::string(kPlaceholderPrefix), 0, 0);
        const float corners[] = {box.minX, box.minY, box.minZ, box.maxX, box.maxY, box.maxZ};
        file.Line("    ESD_Bounding_Box ( " + Lengths(file, corners) + " )");
    }
    const int32_t boxCount = scripting.CollisionBoxCount();
    file.Line("    ESD_Complex (" + std::to_string(boxCount));         // 8
    for (int32_t i = 0; i < boxCount; ++i) {                            // 9
        WriteCollisionBox(file, scripting.GetCollisionBox(i));
    }
    file.Lines({"    )", ")"});                                         // 10, 11
    return file.Bytes();
}
// clang-format on

void WriteShapeDataFile(support::Platform& platform, const std::string& toolsFolder,
                        host::Scripting& scripting, const std::string& projectName,
                        int32_t projectType, int32_t mainIndex, const std::string& targetFolder) {
    const std::string fileName =
        support::JoinPath(targetFolder, support::ToLower(projectName) + ".sd");
    SaveMstsTextFile(platform, toolsFolder, fileName,
                     ShapeDataFileText(scripting, projectName, projectType, mainIndex));
}

// clang-format off
std::string RefFileText(const std::string& refName, int32_t projectType,
                        const std::string& description) {
    // The text needs no numbers, so no host formats any.
    std::string bytes;
    const auto line = [&bytes](std::string_view text) {
        bytes += exportcommon::ToWindows1252(text);
        bytes += "\r\n";
    };
    line("Static (");                                                   // 1
    line(!IsRailNetwork(projectType)                            // 2
             ? "    Class       ( \"Polyforge Scenery\" )"
             : "    Class       ( \"Polyforge Structures\" )");
    line("    Description ( \"" + description + "\" )");                // 3
    // The REF name, not the shape's: a "~" name points at a shape of that name.
    line("    FileName    ( \"" + support::ToLower(refName) + ".s\" )");  // 4
    line(")");                                                          // 5
    return bytes;
}
// clang-format on

void WriteRefFile(support::Platform& platform, const std::string& toolsFolder,
                  const std::string& refName, int32_t projectType, const std::string& description,
                  const std::string& routeFolder) {
    const std::string fileName = support::JoinPath(routeFolder, support::ToLower(refName) + ".ref");
    SaveMstsTextFile(platform, toolsFolder, fileName,
                     RefFileText(refName, projectType, description));
}

}  // namespace railwright::exportmsts
