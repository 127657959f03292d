// Numbers as text, the way the model document and the wizard write them.
#pragma once

#include <string>

namespace railwright::support {

// The shortest text in fixed notation that reads back as the same single-precision value: "."
// as the decimal separator, no exponent, no grouping, no trailing zeros ("27", "96.25", "0.5",
// "1000000"). Zero is "0", whatever its sign.
std::string ShortestFixedText(float value);

}  // namespace railwright::support
