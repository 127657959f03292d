// A guard to run before parsing JSON from outside: the parsers recurse once per level of
// nesting, so a hostile file could otherwise exhaust the stack.
#pragma once

#include <cstddef>
#include <string_view>

namespace railwright::support {

// The deepest nesting of objects and arrays in the text; brackets inside strings do not count.
// Only the nesting is looked at: the JSON is not otherwise checked.
size_t JsonNestingDepth(std::string_view json);

}  // namespace railwright::support
