#include "document/shape/ShapeWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <filesystem>
#include <fstream>
#include <memory>

#include "document/shape/DistanceLevels.h"
#include "document/shape/GeometryPacking.h"
#include "document/shape/MatrixSelection.h"
#include "document/shape/ShapeAnimation.h"
#include "document/shape/ShapeMaterials.h"
#include "document/shape/ShapeText.h"
#include "document/shape/SurfaceBatches.h"
#include "export/common/Windows1252.h"
#include "host/scene/Model.h"
#include "support/SupportingFunctions.h"
#include "support/Utf8Paths.h"

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

// The shape's file as the simulator reads it: UTF-16LE with a byte order mark, each byte of the
// 8-bit text one character, as txt2uni makes of it. The text goes, block by block as it is
// made, to a file beside the shape that then replaces it, so that a failed write leaves no
// half-written shape.
class Utf16ShapeFile {
  public:
    explicit Utf16ShapeFile(const std::string& file)
        : target_(support::PathFromUtf8(file)), temporary_(support::PathFromUtf8(file + ".new")) {
        out_.open(temporary_, std::ios::binary | std::ios::trunc);
        out_.write("\xFF\xFE", 2);
    }
    ~Utf16ShapeFile() {
        if (!committed_) {
            out_.close();
            std::error_code ignored;
            std::filesystem::remove(temporary_, ignored);
        }
    }
    Utf16ShapeFile(const Utf16ShapeFile&) = delete;
    Utf16ShapeFile& operator=(const Utf16ShapeFile&) = delete;

    void Write(std::string_view bytes) {
        static const std::array<char16_t, 256> units = [] {
            std::array<char16_t, 256> table{};
            for (size_t byte = 0; byte < table.size(); ++byte) {
                table[byte] = exportcommon::FromWindows1252(static_cast<uint8_t>(byte));
            }
            return table;
        }();
        wide_.resize(2 * bytes.size());
        char* out = wide_.data();
        for (const char byte : bytes) {
            const char16_t unit = units[static_cast<uint8_t>(byte)];
            out[0] = static_cast<char>(unit & 0xFFu);
            out[1] = static_cast<char>(unit >> 8);
            out += 2;
        }
        out_.write(wide_.data(), static_cast<std::streamsize>(wide_.size()));
    }

    // Closes the file and puts it in the shape's place; empty on success, else the fault.
    std::string Commit() {
        out_.close();
        if (!out_) {
            return "the file cannot be written";
        }
        std::error_code error;
        std::filesystem::rename(temporary_, target_, error);
        if (error) {
            // Where renaming over a file is refused, the old file goes first.
            std::filesystem::remove(target_, error);
            std::filesystem::rename(temporary_, target_, error);
        }
        if (error) {
            return "the file cannot be replaced: " + error.message();
        }
        committed_ = true;
        return {};
    }

  private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
    std::ofstream out_;
    std::string wide_;
    bool committed_ = false;
};

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

ShapeWriteResult WriteShapeFile(support::Platform& platform, host::SceneGroup& mainGroup,
                                const std::string& shapeFile,
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
        Utf16ShapeFile file(shapeFile);
        const size_t textBytes =
            StreamShapeText(built.data, [&file](std::string_view bytes) { file.Write(bytes); });
        if (const std::string fault = file.Commit(); !fault.empty()) {
            result.error = shapeFile + ": " + fault;
            return result;
        }

        result.report = std::move(built.report);
        result.report.shapeFile = FilePart(shapeFile);
        result.report.textBytes = textBytes;
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
