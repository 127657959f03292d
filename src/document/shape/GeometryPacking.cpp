#include "document/shape/GeometryPacking.h"

#include <limits>

namespace railwright::document::shape {

namespace {

constexpr uint32_t kNone = std::numeric_limits<uint32_t>::max();

// The index of `value` in `list`, looked up in `table` by `key`; a value not seen before is
// appended.
template <typename Value>
uint32_t Intern(KeyTable& table, std::vector<Value>& list, const Key3& key, const Value& value) {
    const auto [index, added] = table.FindOrInsert(key, static_cast<uint32_t>(list.size()));
    if (added) {
        list.push_back(value);
    }
    return index;
}

}  // namespace

GeometryPacker::GeometryPacker(ShapeData& shape) : shape_(shape) {}

uint32_t GeometryPacker::PointIndex(const float* p) {
    return Intern(points_, shape_.points, FloatKey(p[0], p[1], p[2]), Float3{p[0], p[1], p[2]});
}

uint32_t GeometryPacker::NormalIndex(const float* n) {
    return Intern(normals_, shape_.normals, FloatKey(n[0], n[1], n[2]), Float3{n[0], n[1], n[2]});
}

uint32_t GeometryPacker::UvPointIndex(float u, float v) {
    return Intern(uvPoints_, shape_.uvPoints, FloatKey(u, v, 0), UvPoint{u, v});
}

std::vector<SubObject> GeometryPacker::Pack(const std::vector<Batch>& batches) {
    std::vector<SubObject> subObjects;
    SubObject* sub = nullptr;
    Primitive* primitive = nullptr;
    int32_t runMatrix = -1;
    uint32_t runSerial = 0;  // counts runs; a record's local vertex holds within its run only

    std::vector<uint32_t> localOf;  // per record of the batch: its vertex in the run
    std::vector<uint32_t> runOf;    // per record: the run that localOf belongs to

    const auto closeRun = [&] {
        if (sub != nullptr && !sub->vertexSets.empty()) {
            VertexSet& set = sub->vertexSets.back();
            set.count = static_cast<uint32_t>(sub->vertices.size()) - set.start;
        }
    };
    const auto startRun = [&](int32_t matrix) {
        closeRun();
        sub->vertexSets.push_back({matrix, static_cast<uint32_t>(sub->vertices.size()), 0});
        run_.Clear();
        runMatrix = matrix;
        ++runSerial;
    };
    const auto startSubObject = [&](int32_t matrix) {
        closeRun();
        subObjects.emplace_back();
        sub = &subObjects.back();
        primitive = nullptr;
        startRun(matrix);
    };

    for (const Batch& batch : batches) {
        if (batch.corners.size() < 3) {
            continue;
        }
        localOf.assign(batch.records.size(), kNone);
        runOf.assign(batch.records.size(), 0);
        for (size_t t = 0; t + 2 < batch.corners.size(); t += 3) {
            const uint32_t* corners = &batch.corners[t];
            if (sub == nullptr) {
                startSubObject(batch.matrix);
            } else if (batch.matrix != runMatrix) {
                startRun(batch.matrix);
                primitive = nullptr;
            }
            uint32_t fresh = 0;  // an upper bound: equal vertices may still be shared
            for (int c = 0; c < 3; ++c) {
                fresh += runOf[corners[c]] == runSerial ? 0 : 1;
            }
            if (sub->vertices.size() + fresh >= kSubObjectVertexLimit) {
                startSubObject(batch.matrix);
            }
            if (primitive == nullptr || primitive->primState != batch.primState ||
                primitive->TriangleCount() + 1 >= kPrimitiveTriangleLimit) {
                sub->primitives.push_back({batch.primState, {}, {}});
                primitive = &sub->primitives.back();
            }
            for (int c = 0; c < 3; ++c) {
                const uint32_t record = corners[c];
                if (runOf[record] != runSerial) {
                    const VertexRecord& r = batch.records[record];
                    const Vertex vertex{PointIndex(r.position), NormalIndex(r.normal),
                                        UvPointIndex(r.u, r.v)};
                    const auto [local, added] =
                        run_.FindOrInsert({vertex.point, vertex.normal, vertex.uvPoint},
                                          static_cast<uint32_t>(sub->vertices.size()));
                    if (added) {
                        sub->vertices.push_back(vertex);
                    }
                    localOf[record] = local;
                    runOf[record] = runSerial;
                }
                primitive->corners.push_back(localOf[record]);
            }
            float face[3];
            FaceNormal(batch.records[corners[0]].position, batch.records[corners[1]].position,
                       batch.records[corners[2]].position, face);
            primitive->faceNormals.push_back(NormalIndex(face));
        }
    }
    closeRun();
    return subObjects;
}

}  // namespace railwright::document::shape
