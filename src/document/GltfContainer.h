// The binary glTF container (.glb) and the checks made on a file's JSON before any parser sees
// it.
//
// A .glb file is a 12-byte header ("glTF", version 2, total length) followed by chunks, each an
// 8-byte header (length, type) and its data: first the JSON chunk, then optionally the BIN
// chunk (the data of buffer 0), then chunks of other types, which readers skip. All numbers are
// little-endian 32-bit; chunk data is padded to 4 bytes (JSON with spaces, BIN with zeros).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace railwright::document {

// Deeper JSON than this is refused: parsers that recurse would run out of stack.
inline constexpr int kMaxJsonDepth = 128;

// Whether the file starts with the .glb magic "glTF".
bool LooksLikeGlb(std::string_view file);

// The chunks of a .glb file; views into the file's bytes.
struct GlbChunks {
    std::string_view container;  // the bytes the header's length covers
    std::string_view json;
    std::optional<std::string_view> bin;
    // The chunks of other types that followed, header and data as they stood.
    std::string_view otherChunks;
};

// Splits a .glb file into its chunks. The error (empty on success) says what is wrong with the
// container.
[[nodiscard]] std::string SplitGlb(std::string_view file, GlbChunks& chunks);

// A .glb file of these chunks; nothing when it would not fit the 4 GiB the format can address.
std::optional<std::string> JoinGlb(std::string_view json, const std::string* bin,
                                   std::string_view otherChunks);

// Empty when the JSON text nests objects and arrays at most kMaxJsonDepth deep; otherwise the
// fault. Only the nesting is looked at: the JSON is not otherwise checked.
std::string JsonNestingFault(std::string_view json);

}  // namespace railwright::document
