// The custom group fields that the wizard keeps in the model.
#pragma once

namespace railwright::wizard {

// The custom group field that marks a model's groups for each simulator; RailWorks and Rail
// Simulator share "Rail Sim".
inline constexpr const char* kMstsField = "MSTS";
inline constexpr const char* kRailSimField = "Rail Sim";
inline constexpr const char* kTrainzField = "Trainz";
inline constexpr const char* kRail3DField = "Rail3D";
inline constexpr const char* kBveField = "BVE";

}  // namespace railwright::wizard
