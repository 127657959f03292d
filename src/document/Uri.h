// URIs of a glTF file's buffers and images, and the file paths they stand for.
//
// A glTF URI is either a data: URI (the bytes themselves), a URI with a scheme of its own
// (http:, file:...; never read), or a relative reference: a path relative to the model's folder
// with "/" as separator and reserved bytes percent-encoded ("my%20texture.png").
// Paths are UTF-8 text.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace railwright::document {

bool IsDataUri(std::string_view uri);
// Whether the URI names its own scheme ("http:", "file:"). A single letter before the colon is
// taken for a Windows drive, not a scheme.
bool HasScheme(std::string_view uri);
// A relative reference: neither a data: URI nor one with a scheme nor an absolute path.
bool IsRelativeReference(std::string_view uri);

// %XX sequences become their bytes; a "%" not followed by two hexadecimal digits stays as it
// is. "+" is kept: in a path it is a plus sign, not a space.
std::string PercentDecode(std::string_view uri);
// Encodes every byte that a path segment cannot hold as it is (space, "%", "#", "?", ":",
// control and non-ASCII bytes); "/" separates segments and stays.
std::string PercentEncodePath(std::string_view path);

// The file that a relative reference names, resolved against `folder`, in the platform's form.
std::string ResolveReference(const std::filesystem::path& folder, std::string_view uri);
// The relative reference that names, from `toFolder`, the file that `uri` names from
// `fromFolder`; nothing when no relative path joins the two (another drive).
std::optional<std::string> RebaseReference(std::string_view uri,
                                           const std::filesystem::path& fromFolder,
                                           const std::filesystem::path& toFolder);

// Base64 with padding, as data: URIs carry it.
std::string Base64Encode(std::string_view bytes);

}  // namespace railwright::document
