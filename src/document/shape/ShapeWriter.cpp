#include "document/shape/ShapeWriter.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>

#include "document/shape/DistanceLevels.h"
#include "document/shape/GeometryPacking.h"
#include "document/shape/MatrixSelection.h"
#include "document/shape/ShapeAnimation.h"
#include "document/shape/ShapeMaterials.h"
#include "document/shape/ShapeText.h"
#include "document/shape/SurfaceBatches.h"
#include "export/msts/MstsTextFile.h"
#include "host/scene/Model.h"
#include "support/SupportingFunctions.h"

namespace railwright::document::shape {

namespace {

// The radius of the sphere about the shape's origin that holds every triangle's corners.
float Radius(const std::vector<Batch>& batches, const MatrixPlan& plan) {
    double largest = 0;
    for (const Batch& batch : batches) {
        const host::scene::Affine& frame = plan.matrices[static_cast<size_t>(batch.matrix)].frame;
        for (const uint32_t corner : batch.corners) {
            const float* p = batch.records[corner].position;
            const host::scene::Vec3 world = frame.ApplyToPoint({p[0], p[1], p[2]});
            largest = std::max(largest, host::scene::Length(world));
        }
    }
    return static_cast<float>(largest);
}

std::string FilePart(const std::string& path) {
    const size_t slash = path.find_last_of("\\/");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

BuiltShape BuildShape(const host::scene::Node& main, const host::scene::FieldSlots& materialFields,
                      const ShapeOptions& options) {
    BuiltShape built;
    ShapeData& shape = built.data;

    const MatrixPlan plan = PlanMatrices(main, options.retainSubObjects
                                                   ? MatrixChoice::EveryGroup
                                                   : MatrixChoice::NamedAndAnimated);
    for (const PlannedMatrix& matrix : plan.matrices) {
        shape.matrices.push_back({matrix.name, MatrixRows(matrix.local)});
        shape.hierarchy.push_back(matrix.parent);
    }

    GatherResult gathered = GatherBatches(plan);
    if (!gathered.error.empty()) {
        built.error = gathered.error;
        return built;
    }
    std::vector<Batch>& batches = gathered.batches;
    AssignMaterials(materialFields, plan.matrices.size(), batches, shape);
    shape.radius = Radius(batches, plan);

    const DistanceLevelChoice choice = DistanceLevelsFor(options.distanceLevels);
    const std::vector<float> sizes = PartSizes(batches, plan);
    GeometryPacker packer(shape);
    for (const LevelPlan& level : choice.levels) {
        DistanceLevel& written = shape.levels.emplace_back();
        written.distance = level.distance;
        written.subObjects = KeepsEverything(level)
                                 ? packer.Pack(batches)
                                 : packer.Pack(ReduceForLevel(batches, level, plan, sizes));
    }
    shape.animation = BuildAnimation(plan);

    built.report = Summarize(shape);
    built.report.distanceLevels = choice.name;
    return built;
}

std::string ReportFileName(const std::string& shapeFile) {
    const std::string file = FilePart(shapeFile);
    const std::string folder = shapeFile.substr(0, shapeFile.size() - file.size());
    return folder + support::SplitExtension(file).baseName + "-report.txt";
}

ShapeWriteResult WriteShapeFile(support::Platform& platform, const std::string& toolsFolder,
                                host::SceneGroup& mainGroup, const std::string& shapeFile,
                                const ShapeOptions& options) noexcept {
    ShapeWriteResult result;
    try {
        auto* main = dynamic_cast<host::scene::Node*>(&mainGroup);
        const auto model = main == nullptr
                               ? nullptr
                               : std::dynamic_pointer_cast<host::scene::Model>(main->SceneGraph());
        if (main == nullptr || model == nullptr) {
            result.error = shapeFile + ": the group is not one of the model document's";
            return result;
        }
        BuiltShape built = BuildShape(*main, model->MaterialFields(), options);
        if (!built.error.empty()) {
            result.error = shapeFile + ": " + built.error;
            return result;
        }
        const std::string text = ShapeText(built.data);
        built.data = {};  // the text holds it all now
        exportmsts::SaveMstsTextFile(platform, toolsFolder, shapeFile, text);

        result.report = std::move(built.report);
        result.report.shapeFile = FilePart(shapeFile);
        result.report.textBytes = text.size();
        const std::string reportFile = ReportFileName(shapeFile);
        platform.files.DeleteFile(reportFile);
        if (!platform.files.WriteFile(reportFile, ReportText(result.report))) {
            result.error = reportFile + ": the report cannot be written";
        }
    } catch (const std::bad_alloc&) {
        result.error = shapeFile + ": there is not enough memory for the shape";
    } catch (const std::exception& error) {
        result.error = shapeFile + ": " + error.what();
    } catch (...) {
        result.error = shapeFile + ": the shape could not be written";
    }
    return result;
}

}  // namespace railwright::document::shape
