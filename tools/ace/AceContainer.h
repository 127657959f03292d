// The two outer forms of an ACE file (AceFormat.h): the plain one and the zlib-compressed one.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "ace/Result.h"

namespace railwright::ace {

enum class Container { Plain, Compressed };

std::vector<uint8_t> WrapPlain(std::span<const uint8_t> body);

// The body deflated at zlib's default level, whose stream header (78 9C) is the one readers
// check for.
Result<std::vector<uint8_t>> WrapCompressed(std::span<const uint8_t> body);

// Which container a file is in; a fault when it is no ACE file at all.
Result<Container> IdentifyContainer(std::span<const uint8_t> file);

// A sanity check of a plain body's header: version, sizes and channel table. Empty when it looks
// like an ACE body, otherwise the fault.
std::string CheckBodyHeader(std::span<const uint8_t> body);

}  // namespace railwright::ace
