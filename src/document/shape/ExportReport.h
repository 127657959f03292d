// The export report of a shape: what went into it, per distance level, for the user to check
// at a glance (printed by `railwright apply` and written beside the shape as
// "<name>-report.txt"):
//
//   Shape "samplediesel.s": 2,604 bytes of text
//   Distance levels: none
//   Matrices (7): MAIN BOGIE1 WHEELS11 WHEELS12 BOGIE2 WHEELS21 WHEELS22
//   Animated matrices: 0
//   Level 1 (to 2000 m): 1 sub-object, 56 vertices, 84 triangles, 7 draw calls
//   Textures (3): body.ace bogie.ace wheel.ace
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "document/shape/ShapeData.h"

namespace railwright::document::shape {

struct LevelSummary {
    float distance = 0;
    size_t subObjects = 0;
    size_t vertices = 0;
    size_t triangles = 0;
    size_t drawCalls = 0;  // one per triangle list
};

struct ShapeReport {
    std::string shapeFile;       // the file name, without its folder
    size_t textBytes = 0;        // of the 8-bit text
    std::string distanceLevels;  // the choice, in words
    std::vector<std::string> matrices;
    size_t animatedMatrices = 0;
    std::vector<LevelSummary> levels;
    std::vector<std::string> textures;
};

// The counts of `shape`; the file name, text size and choice are the caller's.
ShapeReport Summarize(const ShapeData& shape);

std::string ReportText(const ShapeReport& report);

}  // namespace railwright::document::shape
