// The MSTS shape writer of the model document: `Exporter.ExportShape` of the in-memory scene.
//
//     ShapeWriteResult written = WriteShapeFile(platform, *mainGroup, "…/loco.s", {2});
//     if (!written.Ok()) { report(written.error); }
//
// The pipeline, one stage per file: MatrixSelection (which groups become matrices, and their
// frames), SurfaceBatches (the triangles per matrix and material in the shape's axes),
// ShapeMaterials (shaders, images, states), DistanceLevels (the levels and their reductions),
// GeometryPacking (shared lists, sub-objects and primitives within the limits), ShapeAnimation
// (the keys), ShapeText (the file's text) and ExportReport (the counts).
//
// The file is written directly as the Unicode text (UTF-16LE) that txt2uni would make of the 8-bit
// text, streamed to the file as it is made; the report goes beside it as "<name>-report.txt".
#pragma once

#include <cstdint>
#include <string>

#include "document/shape/ExportReport.h"
#include "document/shape/ShapeData.h"
#include "host/Host.h"
#include "host/scene/Materials.h"
#include "host/scene/Node.h"
#include "support/Platform.h"

namespace railwright::document::shape {

// What the export driver hands Exporter.ExportShape.
using ShapeOptions = host::ShapeExportOptions;

struct [[nodiscard]] BuiltShape {
    ShapeData data;
    ShapeReport report;  // the counts and the distance-level choice
    std::string error;   // empty on success
};

// The shape of `main` and everything under it. `materialFields` are the model's custom
// material fields ("Tx Alpha" and "Alpha Pr" are read through them).
BuiltShape BuildShape(const host::scene::Node& main, const host::scene::FieldSlots& materialFields,
                      const ShapeOptions& options);

struct [[nodiscard]] ShapeWriteResult {
    std::string error;   // empty on success; otherwise names the file and the fault
    ShapeReport report;  // complete when the shape was written
    bool Ok() const { return error.empty(); }
};

// Builds the shape of `mainGroup` (a group of the in-memory scene) and writes it to
// `shapeFile` from scratch, replacing the file only once the new one is whole, then writes the
// report beside it. Nothing here throws.
ShapeWriteResult WriteShapeFile(support::Platform& platform, host::SceneGroup& mainGroup,
                                const std::string& shapeFile, const ShapeOptions& options) noexcept;

// "<folder>/<name>-report.txt" for "<folder>/<name>.s".
std::string ReportFileName(const std::string& shapeFile);

}  // namespace railwright::document::shape
