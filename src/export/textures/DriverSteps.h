// What the simulator export drivers share around their own files: finding the "Main" group, the
// prefix of the placeholder groups that no export textures or measures, and the messages that
// end an export, each formed from the simulator's name ("MSTS", "RailWorks", "Rail Simulator").
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::exporttextures {

// Groups whose names begin with this (ignoring case) are placeholders: markers, not geometry.
inline constexpr std::string_view kPlaceholderPrefix = "RailwrightPlaceholder-";

// The index of the first group, in the host's order from index 0, whose name is "MAIN" in upper
// case; nothing when there is none.
std::optional<int32_t> FindMainGroup(host::Scripting& scripting);

// The exclamation box shown when there is no "Main" group.
void ShowNoMainGroup(support::UserInterface& ui);

// The critical box shown when the texture check found untextured shapes. It names Microsoft
// Train Simulator whatever the simulator; kept as it has always read.
void ShowNotFullyTextured(support::UserInterface& ui, std::string_view simulatorName);

// The critical box that ends a failed export, with the problem reports forum's address.
void ShowExportFailed(support::UserInterface& ui, std::string_view simulatorName);

// The information box that ends a successful export, naming the folder in double quotes.
void ShowExportedTo(support::UserInterface& ui, std::string_view simulatorName,
                    const std::string& folder);

}  // namespace railwright::exporttextures
