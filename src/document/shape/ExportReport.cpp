#include "document/shape/ExportReport.h"

#include "support/FloatText.h"

namespace railwright::document::shape {

namespace {

// 1234567 as "1,234,567".
std::string Grouped(size_t value) {
    std::string digits = std::to_string(value);
    for (size_t at = digits.size(); at > 3; at -= 3) {
        digits.insert(at - 3, ",");
    }
    return digits;
}

std::string Counted(size_t count, std::string_view one, std::string_view many) {
    return Grouped(count) + " " + std::string(count == 1 ? one : many);
}

std::string Metres(float value) {
    return support::ShortestFixedText(value) + " m";
}

void List(std::string& text, std::string_view title, const std::vector<std::string>& names) {
    text += std::string(title) + " (" + std::to_string(names.size()) + "):";
    for (const std::string& name : names) {
        text += " " + name;
    }
    text += "\n";
}

}  // namespace

ShapeReport Summarize(const ShapeData& shape) {
    ShapeReport report;
    for (const MatrixRecord& matrix : shape.matrices) {
        report.matrices.push_back(matrix.name);
    }
    if (shape.animation) {
        for (const AnimNode& node : shape.animation->nodes) {
            report.animatedMatrices += node.rotations.empty() && node.positions.empty() ? 0 : 1;
        }
    }
    for (const DistanceLevel& level : shape.levels) {
        LevelSummary summary;
        summary.distance = level.distance;
        summary.subObjects = level.subObjects.size();
        for (const SubObject& sub : level.subObjects) {
            summary.vertices += sub.vertices.size();
            summary.drawCalls += sub.primitives.size();
            for (const Primitive& primitive : sub.primitives) {
                summary.triangles += primitive.TriangleCount();
            }
        }
        report.levels.push_back(summary);
    }
    report.textures = shape.images;
    return report;
}

std::string ReportText(const ShapeReport& report) {
    std::string text =
        "Shape \"" + report.shapeFile + "\": " + Grouped(report.textBytes) + " bytes of text\n";
    text += "Distance levels: " + report.distanceLevels + "\n";
    List(text, "Matrices", report.matrices);
    text += "Animated matrices: " + std::to_string(report.animatedMatrices) + "\n";
    for (size_t i = 0; i < report.levels.size(); ++i) {
        const LevelSummary& level = report.levels[i];
        text += "Level " + std::to_string(i + 1) + " (to " + Metres(level.distance) +
                "): " + Counted(level.subObjects, "sub-object", "sub-objects") + ", " +
                Counted(level.vertices, "vertex", "vertices") + ", " +
                Counted(level.triangles, "triangle", "triangles") + ", " +
                Counted(level.drawCalls, "draw call", "draw calls") + "\n";
    }
    List(text, "Textures", report.textures);
    return text;
}

}  // namespace railwright::document::shape
