// The three settings values of a model as one record, and the bounds-checked reading of the arrays
// that every reader of a slot goes through.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "settings/Slots.h"
#include "support/SupportingFunctions.h"

namespace railwright::settings {

// The element at `index` of a settings array: an index past the end raises support::RunTimeError
// "Subscript out of range" (9), as reading past a stored array always has.
template <typename Values>
auto& ElementAt(Values& values, size_t index) {
    if (index >= values.size()) {
        throw support::RunTimeError(support::kErrorSubscriptOutOfRange, "Subscript out of range");
    }
    return values[index];
}

inline float Single(const std::vector<float>& singles, size_t index) {
    return ElementAt(singles, index);
}
inline int32_t Long(const std::vector<int32_t>& longs, size_t index) {
    return ElementAt(longs, index);
}

inline ProjectType StoredProjectType(const std::vector<int32_t>& longs) {
    return static_cast<ProjectType>(Long(longs, kLongProjectType));
}

// The stored sub-type, as the enum of the project's type (NetworkSubType, VehicleSubType or
// ScenerySubType).
template <typename SubType>
SubType StoredSubType(const std::vector<int32_t>& longs) {
    return static_cast<SubType>(Long(longs, kLongProjectSubType));
}

// Whether a "+1" slot holds a checked box. A slot never stored (0) reads as unchecked here: the
// exporters only act on what the wizard saved.
inline bool IsChecked(const std::vector<int32_t>& longs, size_t index) {
    return Long(longs, index) == kChecked;
}

struct ProjectSettings {
    // The free texts (SettingsText.h); empty when the wizard never stored the project.
    std::string text;
    std::vector<float> singles;
    std::vector<int32_t> longs;

    float& Single(size_t index) { return ElementAt(singles, index); }
    int32_t& Long(size_t index) { return ElementAt(longs, index); }

    bool operator==(const ProjectSettings&) const = default;
};

}  // namespace railwright::settings
