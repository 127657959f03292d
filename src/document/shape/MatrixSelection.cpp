#include "document/shape/MatrixSelection.h"

#include <algorithm>
#include <array>
#include <optional>

#include "export/common/DriverSteps.h"
#include "host/scene/PartNames.h"
#include "support/SupportingFunctions.h"

namespace railwright::document::shape {

namespace {

using host::scene::Affine;
using host::scene::Node;
using host::scene::Vec3;

// Parts the simulator turns about their own origin: wheelsets roll about their axle, bogies
// swivel about their centre, and the main wheel link is carried round with the drive wheel.
constexpr std::array<std::string_view, 3> kCentredStems{"WHEELS", "BOGIE", "MAIN_WHEEL_LINK"};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool IsCentred(std::string_view upperName) {
    return host::scene::IsNamedPart(upperName) &&
           std::any_of(kCentredStems.begin(), kCentredStems.end(),
                       [upperName](auto stem) { return upperName.substr(0, stem.size()) == stem; });
}

bool IsPlaceholder(const Node& group) {
    return support::StartsWithIgnoreCase(group.NameValue(), exportcommon::kPlaceholderPrefix);
}

// The rotation and translation of `pose`, without its scale or shear.
Affine Rigid(const Affine& pose) {
    Affine rigid;
    rigid.linear = host::scene::SplitRotation(pose.linear).rotation;
    rigid.translation = pose.translation;
    return rigid;
}

double LargestScale(const Affine& frame) {
    double largest = 0;
    for (int column = 0; column < 3; ++column) {
        largest = std::max(largest, host::scene::Length(frame.linear.Column(column)));
    }
    return largest > 0 ? largest : 1;
}

// A group of the tree as the walk meets it.
struct Visit {
    const Node* group = nullptr;
    Affine world;        // its frame in the root frame
    Affine parentWorld;  // its scene parent's frame in the root frame
    int32_t matrix = 0;  // the matrix its geometry goes into
};

// The centre of the geometry that goes into `matrix`, in the frame of the matrix's group.
Vec3 GeometryCentre(const std::vector<Visit>& visits, int32_t matrix, const Affine& groupWorld) {
    const std::optional<Affine> toGroup = groupWorld.Inverse();
    if (!toGroup) {
        return {};
    }
    host::scene::BoxAccumulator box;
    for (const Visit& visit : visits) {
        if (visit.matrix != matrix) {
            continue;
        }
        const Affine map = *toGroup * visit.world;
        for (const host::scene::Shape& shape : visit.group->Shapes()) {
            for (const host::Vector3& vertex : shape.vertices) {
                box.Add(map.ApplyToPoint(host::scene::ToVec3(vertex)));
            }
        }
    }
    if (box.Empty()) {
        return {};
    }
    const host::Bounds b = box.Result();
    return {(static_cast<double>(b.minX) + b.maxX) / 2, (static_cast<double>(b.minY) + b.maxY) / 2,
            (static_cast<double>(b.minZ) + b.maxZ) / 2};
}

}  // namespace

std::string MatrixName(std::string_view groupName) {
    std::string name = support::ToUpper(groupName);
    for (char& c : name) {
        if (!IsDigit(c) && !IsLetter(c) && c != '_' && c != '-' && c != '.') {
            c = '_';
        }
    }
    // A token that begins with '_' or '#' is a comment to the simulator's reader.
    if (name.empty() || name.front() == '_') {
        name.insert(0, "N");
    }
    return name;
}

MatrixPlan PlanMatrices(const Node& main, MatrixChoice choice) {
    MatrixPlan plan;
    std::vector<Visit> visits;
    std::vector<Affine> sceneParentWorlds;  // per matrix

    // Depth-first pre-order; each entry carries its parent's world frame and matrix.
    struct Pending {
        const Node* group;
        Affine parentWorld;
        int32_t parentMatrix;
    };
    const std::shared_ptr<Node> mainParent = main.ParentNode();
    std::vector<Pending> pending{
        {&main, mainParent ? mainParent->WorldAt(host::kCurrentPose) : Affine{}, -1}};
    while (!pending.empty()) {
        const Pending next = pending.back();
        pending.pop_back();
        const Node& group = *next.group;
        if (&group != &main && IsPlaceholder(group)) {
            continue;
        }
        Visit visit{&group, next.parentWorld * group.LocalTransform(), next.parentWorld,
                    next.parentMatrix};
        if (next.parentMatrix < 0 || choice == MatrixChoice::EveryGroup ||
            host::scene::IsNamedPart(group.NameValue()) || !group.Keys().empty()) {
            PlannedMatrix matrix;
            matrix.name = MatrixName(group.NameValue());
            matrix.parent = next.parentMatrix;
            matrix.group = &group;
            matrix.animated = !group.Keys().empty();
            visit.matrix = static_cast<int32_t>(plan.matrices.size());
            plan.matrices.push_back(std::move(matrix));
            sceneParentWorlds.push_back(next.parentWorld);
        }
        visits.push_back(visit);
        const auto& children = group.Children();
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            pending.push_back({child->get(), visit.world, visit.matrix});
        }
    }

    // Frames, parents before children.
    size_t visitIndex = 0;
    for (size_t m = 0; m < plan.matrices.size(); ++m) {
        PlannedMatrix& matrix = plan.matrices[m];
        while (visits[visitIndex].group != matrix.group) {
            ++visitIndex;
        }
        const Visit& visit = visits[visitIndex];
        const Affine parentFrame =
            matrix.parent < 0 ? Affine{} : plan.matrices[static_cast<size_t>(matrix.parent)].frame;
        const Affine toParent = *parentFrame.Inverse();  // frames are built invertible
        const Vec3 centre = IsCentred(matrix.name)
                                ? GeometryCentre(visits, static_cast<int32_t>(m), visit.world)
                                : Vec3{};
        if (matrix.animated) {
            matrix.keyBefore = toParent * sceneParentWorlds[m];
            matrix.keyAfter = Affine::Translation(centre);
            const Affine current = Rigid(matrix.group->LocalTransform());
            matrix.local = Rigid(matrix.keyBefore * current * matrix.keyAfter);
            matrix.frame = parentFrame * matrix.local;
        } else if (matrix.parent < 0) {
            // The simulator clears the translation of the top matrix: "Main" holds its geometry
            // in the root frame itself.
            matrix.frame = Affine{};
            matrix.local = Affine{};
        } else {
            matrix.frame = visit.world * Affine::Translation(centre);
            if (!matrix.frame.Inverse()) {
                // A group scaled to nothing: its origin alone.
                matrix.frame = Affine::Translation(matrix.frame.translation);
            }
            matrix.local = toParent * matrix.frame;
        }
        matrix.unitLength = LargestScale(matrix.frame);
    }

    for (const Visit& visit : visits) {
        const PlannedMatrix& matrix = plan.matrices[static_cast<size_t>(visit.matrix)];
        if (visit.group->Shapes().empty()) {
            continue;
        }
        plan.sources.push_back({visit.group, visit.matrix, *matrix.frame.Inverse() * visit.world});
    }
    return plan;
}

std::array<float, 12> MatrixRows(const Affine& local) {
    // Row vectors: row i is the image of axis i, column i of the scene's matrix.
    std::array<float, 12> rows{};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            rows[static_cast<size_t>(row * 3 + column)] =
                static_cast<float>(local.linear(column, row));
        }
    }
    rows[9] = static_cast<float>(local.translation.x);
    rows[10] = static_cast<float>(local.translation.y);
    rows[11] = static_cast<float>(local.translation.z);
    return rows;
}

}  // namespace railwright::document::shape
