#include "support/JsonNesting.h"

#include <algorithm>

namespace railwright::support {

size_t JsonNestingDepth(std::string_view json) {
    size_t depth = 0;
    size_t deepest = 0;
    bool inString = false;
    for (size_t i = 0; i < json.size(); ++i) {
        const char c = json[i];
        if (inString) {
            if (c == '\\') {
                ++i;  // the escaped character cannot end the string
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '{' || c == '[') {
            deepest = std::max(deepest, ++depth);
        } else if ((c == '}' || c == ']') && depth > 0) {
            --depth;
        }
    }
    return deepest;
}

}  // namespace railwright::support
