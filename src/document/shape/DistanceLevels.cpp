#include "document/shape/DistanceLevels.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "document/shape/KeyTable.h"

namespace railwright::document::shape {

namespace {

constexpr int32_t kNoDistanceLevels = 0;
constexpr int32_t kAutomaticallySimplified = 1;
constexpr int32_t kStandard = 2;
constexpr int32_t kCustom = 3;

// The farthest a rolling stock shape is drawn.
constexpr float kFarthest = 2000;

// The cell of a coordinate on a grid, clamped to what a 32-bit word holds.
uint32_t Cell(float coordinate, double cellSize) {
    const double cell = std::floor(static_cast<double>(coordinate) / cellSize);
    const double clamped = std::clamp(cell, -2.0e9, 2.0e9);
    return static_cast<uint32_t>(static_cast<int64_t>(clamped));
}

}  // namespace

DistanceLevelChoice DistanceLevelsFor(int32_t setting) {
    switch (setting) {
        case kNoDistanceLevels:
            return {"none", {{kFarthest, 0, 0}}};
        case kAutomaticallySimplified:
            return {"automatically simplified",
                    {{200, 0, 0}, {600, 0.2f, 0}, {kFarthest, 0.6f, 0}}};
        case kStandard:
            return {"standard", {{200, 0, 0}, {600, 0, 0.3f}, {kFarthest, 0, 1}}};
        case kCustom:
            return {"custom",
                    {{100, 0, 0},
                     {250, 0.1f, 0},
                     {500, 0.25f, 0.1f},
                     {1000, 0.5f, 0.3f},
                     {kFarthest, 1, 1}}};
        default:
            return {"setting " + std::to_string(setting) + " is not known: none",
                    {{kFarthest, 0, 0}},
                    false};
    }
}

std::vector<float> PartSizes(const std::vector<Batch>& batches, const MatrixPlan& plan) {
    std::vector<float> sizes(plan.matrices.size(), 0);
    struct Box {
        float low[3] = {std::numeric_limits<float>::max(), std::numeric_limits<float>::max(),
                        std::numeric_limits<float>::max()};
        float high[3] = {std::numeric_limits<float>::lowest(), std::numeric_limits<float>::lowest(),
                         std::numeric_limits<float>::lowest()};
        bool empty = true;
    };
    std::vector<Box> boxes(plan.matrices.size());
    for (const Batch& batch : batches) {
        Box& box = boxes[static_cast<size_t>(batch.matrix)];
        for (const uint32_t corner : batch.corners) {
            const VertexRecord& record = batch.records[corner];
            for (int axis = 0; axis < 3; ++axis) {
                box.low[axis] = std::min(box.low[axis], record.position[axis]);
                box.high[axis] = std::max(box.high[axis], record.position[axis]);
            }
            box.empty = false;
        }
    }
    for (size_t m = 0; m < boxes.size(); ++m) {
        if (boxes[m].empty) {
            continue;
        }
        float longest = 0;
        for (int axis = 0; axis < 3; ++axis) {
            longest = std::max(longest, boxes[m].high[axis] - boxes[m].low[axis]);
        }
        sizes[m] = static_cast<float>(longest * plan.matrices[m].unitLength);
    }
    return sizes;
}

std::vector<Batch> ReduceForLevel(const std::vector<Batch>& full, const LevelPlan& level,
                                  const MatrixPlan& plan, const std::vector<float>& fullSizes) {
    std::vector<Batch> reduced;
    KeyTable cells(1024);
    std::vector<VertexRecord> representatives;  // per cell, where its vertices meet
    int32_t cellMatrix = -1;
    std::vector<uint32_t> cellOf;
    for (const Batch& batch : full) {
        const auto matrix = static_cast<size_t>(batch.matrix);
        if (level.smallestPart > 0 && fullSizes[matrix] < level.smallestPart) {
            continue;
        }
        if (level.cellSize <= 0) {
            reduced.push_back(batch);
            continue;
        }
        // One grid per matrix, shared by its materials, so that their seams stay closed.
        if (batch.matrix != cellMatrix) {
            cells.Clear();
            representatives.clear();
            cellMatrix = batch.matrix;
        }
        const double cellSize = level.cellSize / plan.matrices[matrix].unitLength;
        Batch out{batch.matrix, batch.material, batch.primState, batch.records, {}};
        cellOf.assign(batch.records.size(), std::numeric_limits<uint32_t>::max());
        for (size_t r = 0; r < batch.records.size(); ++r) {
            const float* p = batch.records[r].position;
            const Key3 key{Cell(p[0], cellSize), Cell(p[1], cellSize), Cell(p[2], cellSize)};
            const auto [cell, added] =
                cells.FindOrInsert(key, static_cast<uint32_t>(representatives.size()));
            if (added) {
                representatives.push_back(batch.records[r]);
            }
            cellOf[r] = cell;
            std::copy_n(representatives[cell].position, 3, out.records[r].position);
        }
        for (size_t t = 0; t + 2 < batch.corners.size(); t += 3) {
            const uint32_t a = cellOf[batch.corners[t]];
            const uint32_t b = cellOf[batch.corners[t + 1]];
            const uint32_t c = cellOf[batch.corners[t + 2]];
            if (a != b && b != c && a != c) {
                out.corners.insert(out.corners.end(),
                                   batch.corners.begin() + static_cast<std::ptrdiff_t>(t),
                                   batch.corners.begin() + static_cast<std::ptrdiff_t>(t + 3));
            }
        }
        if (!out.corners.empty()) {
            reduced.push_back(std::move(out));
        }
    }
    return reduced;
}

}  // namespace railwright::document::shape
