#include "support/FloatText.h"

#include <charconv>

namespace railwright::support {

std::string ShortestFixedText(float value) {
    if (value == 0) {
        return "0";
    }
    // The longest fixed text of a float is the smallest subnormal: "-0." and 45 decimals.
    char buffer[64];
    const std::to_chars_result written =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return std::string(buffer, written.ptr);
}

}  // namespace railwright::support
