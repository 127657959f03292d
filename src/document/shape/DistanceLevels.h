// The shape's distance levels, by the model's distance-level setting (long 30):
//
//   0 none                      one level to 2000 m with every triangle
//   1 automatically simplified  200 m every triangle; 600 m on a 0.2 m grid; 2000 m on a 0.6 m
//                               grid
//   2 standard                  200 m every triangle; 600 m without parts under 0.3 m;
//                               2000 m without parts under 1 m
//   3 custom                    a finer chain for detailed models: 100 m every triangle; 250 m
//                               on a 0.1 m grid; 500 m on a 0.25 m grid and without parts under
//                               0.1 m; 1000 m on a 0.5 m grid and without parts under 0.3 m;
//                               2000 m on a 1 m grid and without parts under 1 m
//
// "On a grid" is vertex clustering: the vertices of a matrix that fall into one cell of a grid
// of that size (in metres, whatever the matrix's scale) meet at the first of them, and the
// triangles left without area are dropped. At the level's near distance a cell spans a pixel or
// two of a full-HD screen. A "part" is a matrix's geometry, measured by the longest side of its
// box: wipers, mirrors, rods and links go first. Any other setting writes one level, as 0 does.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "document/shape/MatrixSelection.h"
#include "document/shape/SurfaceBatches.h"

namespace railwright::document::shape {

struct LevelPlan {
    float distance = 0;      // metres: the level is drawn up to this viewing distance
    float cellSize = 0;      // metres; 0 keeps every triangle
    float smallestPart = 0;  // metres; a matrix whose geometry is smaller is left out
};

struct DistanceLevelChoice {
    std::string name;  // for the export report
    std::vector<LevelPlan> levels;
    bool known = true;  // false: the setting named no choice and one level is written
};

DistanceLevelChoice DistanceLevelsFor(int32_t setting);

// The batches of one level from the full ones. `fullSizes` holds, per matrix, the longest side
// of the box of its full geometry in metres (PartSizes).
std::vector<Batch> ReduceForLevel(const std::vector<Batch>& full, const LevelPlan& level,
                                  const MatrixPlan& plan, const std::vector<float>& fullSizes);

// Per matrix, the longest side of its geometry's box in metres (0 without geometry).
std::vector<float> PartSizes(const std::vector<Batch>& batches, const MatrixPlan& plan);

// Whether a level keeps every triangle of every part.
inline bool KeepsEverything(const LevelPlan& level) {
    return level.cellSize <= 0 && level.smallestPart <= 0;
}

}  // namespace railwright::document::shape
