#include "document/StoredData.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace railwright::document {

namespace {

const std::string kKey(kExtrasKey);

// Our object inside `object`'s extras, or null when there is none. A fault when the extras or
// our entry have the wrong shape.
std::string FindOurs(const Json& object, const Json*& ours) {
    ours = nullptr;
    const auto extras = object.find("extras");
    if (extras == object.end() || !extras->is_object()) {
        return {};  // extras of another shape are the user's, and hold nothing of ours
    }
    const auto entry = extras->find(kKey);
    if (entry == extras->end()) {
        return {};
    }
    if (!entry->is_object()) {
        return "its extras \"" + kKey + "\" are not a JSON object.";
    }
    ours = &*entry;
    return {};
}

std::string ReadStrings(const Json& ours, const char* key, size_t limit,
                        std::vector<std::string>& strings) {
    strings.clear();
    const auto list = ours.find(key);
    if (list == ours.end()) {
        return {};
    }
    if (!list->is_array() || list->size() > limit) {
        return "its extras \"" + kKey + "." + key + "\" are not a list of at most " +
               std::to_string(limit) + " texts.";
    }
    for (const Json& item : *list) {
        if (!item.is_string()) {
            return "its extras \"" + kKey + "." + key + "\" hold something other than text.";
        }
        strings.push_back(item.get<std::string>());
    }
    return {};
}

std::string ReadValues(const Json& ours, const char* key, size_t fieldCount, FieldValues& values) {
    std::vector<std::string> strings;
    if (std::string fault = ReadStrings(ours, key, values.size(), strings); !fault.empty()) {
        return fault;
    }
    if (strings.size() > fieldCount) {
        return "its extras \"" + kKey + "." + key + "\" hold " + std::to_string(strings.size()) +
               " values, but only " + std::to_string(fieldCount) + " fields are defined.";
    }
    values = {};
    std::copy(strings.begin(), strings.end(), values.begin());
    return {};
}

// Our object inside `object`'s extras, made when missing; null when the extras are not an
// object.
Json* MakeOurs(Json& object) {
    Json& extras = object["extras"];
    if (extras.is_null()) {
        extras = Json::object();
    }
    if (!extras.is_object()) {
        return nullptr;
    }
    return &extras[kKey];
}

void RemoveOurs(Json& object) {
    const auto extras = object.find("extras");
    if (extras == object.end() || !extras->is_object() || !extras->contains(kKey)) {
        return;
    }
    extras->erase(kKey);
    if (extras->empty()) {
        object.erase("extras");
    }
}

Json StringList(const std::vector<std::string>& strings) {
    Json list = Json::array();
    for (const std::string& text : strings) {
        list.push_back(text);
    }
    return list;
}

const std::string kNotAnObject = "its extras are not a JSON object, so nothing can be kept there.";

}  // namespace

double ShortestDecimal(float value) {
    char text[32];
    const auto written = std::to_chars(text, text + sizeof text, value);
    double decimal = 0;
    std::from_chars(text, written.ptr, decimal);
    return decimal;
}

std::string ReadModelData(const Json& asset, ModelData& data) {
    data = {};
    const Json* ours = nullptr;
    if (std::string fault = FindOurs(asset, ours); !fault.empty() || ours == nullptr) {
        return fault;
    }
    if (const auto singles = ours->find("singles"); singles != ours->end()) {
        const bool isList = singles->is_array();
        for (size_t i = 0; isList && i < singles->size(); ++i) {
            const Json& item = (*singles)[i];
            const double value = item.is_number() ? item.get<double>() : NAN;
            if (!std::isfinite(value) || std::abs(value) > std::numeric_limits<float>::max()) {
                return "its extras \"" + kKey +
                       ".singles\" hold something other than a 32-bit "
                       "number at index " +
                       std::to_string(i) + ".";
            }
            data.singles.push_back(static_cast<float>(value));
        }
        if (!isList) {
            return "its extras \"" + kKey + ".singles\" are not a list of numbers.";
        }
    }
    if (const auto longs = ours->find("longs"); longs != ours->end()) {
        if (!longs->is_array()) {
            return "its extras \"" + kKey + ".longs\" are not a list of whole numbers.";
        }
        for (size_t i = 0; i < longs->size(); ++i) {
            const Json& item = (*longs)[i];
            const bool fits =
                (item.is_number_unsigned() &&
                 item.get<uint64_t>() <= static_cast<uint64_t>(INT32_MAX)) ||
                (item.is_number_integer() && !item.is_number_unsigned() &&
                 item.get<int64_t>() >= INT32_MIN && item.get<int64_t>() <= INT32_MAX);
            if (!fits) {
                return "its extras \"" + kKey +
                       ".longs\" hold something other than a 32-bit "
                       "whole number at index " +
                       std::to_string(i) + ".";
            }
            data.longs.push_back(static_cast<int32_t>(item.get<int64_t>()));
        }
    }
    if (const auto text = ours->find("string"); text != ours->end()) {
        if (!text->is_string()) {
            return "its extras \"" + kKey + ".string\" are not text.";
        }
        data.text = text->get<std::string>();
    }
    const size_t slots = host::scene::FieldSlots::kSlotCount;
    if (std::string fault = ReadStrings(*ours, "groupFields", slots, data.groupFields);
        !fault.empty()) {
        return fault;
    }
    if (std::string fault = ReadStrings(*ours, "materialFields", slots, data.materialFields);
        !fault.empty()) {
        return fault;
    }
    return ReadValues(*ours, "defaultMaterialFields", data.materialFields.size(),
                      data.defaultMaterialFields);
}

std::string ReadFieldValues(const Json& object, size_t fieldCount, FieldValues& values) {
    values = {};
    const Json* ours = nullptr;
    if (std::string fault = FindOurs(object, ours); !fault.empty() || ours == nullptr) {
        return fault;
    }
    return ReadValues(*ours, "fields", fieldCount, values);
}

std::string WriteModelData(Json& asset, const ModelData& data) {
    const bool anyDefault =
        std::any_of(data.defaultMaterialFields.begin(), data.defaultMaterialFields.end(),
                    [](const std::string& value) { return !value.empty(); });
    if (data.singles.empty() && data.longs.empty() && data.text.empty() &&
        data.groupFields.empty() && data.materialFields.empty() && !anyDefault) {
        RemoveOurs(asset);
        return {};
    }
    Json* ours = MakeOurs(asset);
    if (ours == nullptr) {
        return kNotAnObject;
    }
    Json singles = Json::array();
    for (const float value : data.singles) {
        singles.push_back(ShortestDecimal(value));
    }
    Json longs = Json::array();
    for (const int32_t value : data.longs) {
        longs.push_back(value);
    }
    *ours = Json::object();
    (*ours)["singles"] = std::move(singles);
    (*ours)["longs"] = std::move(longs);
    (*ours)["string"] = data.text;
    (*ours)["groupFields"] = StringList(data.groupFields);
    (*ours)["materialFields"] = StringList(data.materialFields);
    if (anyDefault) {
        (*ours)["defaultMaterialFields"] = StringList(
            std::vector<std::string>(data.defaultMaterialFields.begin(),
                                     data.defaultMaterialFields.begin() +
                                         static_cast<std::ptrdiff_t>(data.materialFields.size())));
    }
    return {};
}

std::string WriteFieldValues(Json& object, const FieldValues& values, size_t fieldCount) {
    const auto end = values.begin() + static_cast<std::ptrdiff_t>(fieldCount);
    if (std::all_of(values.begin(), end, [](const std::string& value) { return value.empty(); })) {
        RemoveOurs(object);
        return {};
    }
    Json* ours = MakeOurs(object);
    if (ours == nullptr) {
        return kNotAnObject;
    }
    *ours = Json::object();
    (*ours)["fields"] = StringList(std::vector<std::string>(values.begin(), end));
    return {};
}

}  // namespace railwright::document
