// UserDataString: the project's free texts joined with separators of growing length,
//   title "|" name "||" description "|||" last
// where last is the operating procedures of a rail vehicle or the MSTS route of any other project.
// Each separator is looked for from the start of the text, so a title or name that itself holds a
// bar is cut at the wrong place; older projects were stored so, and are read the same way.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace railwright::settings {

inline constexpr std::string_view kTitleSeparator = "|";
inline constexpr std::string_view kNameSeparator = "||";
inline constexpr std::string_view kDescriptionSeparator = "|||";

// The four fields, in order.
using SettingsFields = std::array<std::string, 4>;
inline constexpr size_t kTitleField = 0;
inline constexpr size_t kNameField = 1;
inline constexpr size_t kDescriptionField = 2;
inline constexpr size_t kLastField = 3;

// Whether the text holds any separator: one that does not carries only a title, if anything.
bool HasSeparators(const std::string& text);

// The fields of a stored text. A text without separators is all title; a separator missing after
// the first leaves the fields from it on empty.
SettingsFields SplitSettingsText(const std::string& text);

// The stored text of four fields.
std::string JoinSettingsText(const SettingsFields& fields);

}  // namespace railwright::settings
