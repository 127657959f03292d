// The system's own data inside a glTF file: everything under one key of the `extras` objects,
// so that the rest of the user's extras stay as they are.
//
//   asset.extras.railwright = { "singles": [0, 0, 120.5, ...],     UserDataSingles
//                               "longs": [1, 2, ...],               UserDataLongs
//                               "string": "Title|Name||...",        UserDataString
//                               "groupFields": ["MSTS", ...],       custom group field names
//                               "materialFields": ["Rail Sim", ...],  and material field names,
//                                                                   by slot
//                               "defaultMaterialFields": [...] }    field values of primitives
//                                                                   that name no material
//   scenes[s].extras.railwright = { "fields": [...] }   the root group's field values
//   nodes[n].extras.railwright = { "fields": [...] }    a group's field values, by slot
//   materials[m].extras.railwright = { "fields": [...] }
//
// Singles are written as the shortest decimal that reads back as the same 32-bit float; longs
// as integers. Absent keys read as empty; the keys are removed again when all is empty.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "host/scene/Materials.h"

namespace railwright::document {

using Json = nlohmann::ordered_json;
using FieldValues = host::scene::FieldSlots::Values;

inline constexpr std::string_view kExtrasKey = "railwright";

struct ModelData {
    std::vector<float> singles;
    std::vector<int32_t> longs;
    std::string text;
    std::vector<std::string> groupFields;
    std::vector<std::string> materialFields;
    FieldValues defaultMaterialFields{};
};

// Each returns the fault (empty when sound), worded to follow the name of the object it was
// read from ("its extras...").
[[nodiscard]] std::string ReadModelData(const Json& asset, ModelData& data);
[[nodiscard]] std::string ReadFieldValues(const Json& object, size_t fieldCount,
                                          FieldValues& values);

// Each fails only when the object's extras exist but are not a JSON object.
[[nodiscard]] std::string WriteModelData(Json& asset, const ModelData& data);
[[nodiscard]] std::string WriteFieldValues(Json& object, const FieldValues& values,
                                           size_t fieldCount);

// The shortest decimal that reads back as `value`, as a JSON number ("0.1", not
// "0.10000000149011612").
double ShortestDecimal(float value);

}  // namespace railwright::document
