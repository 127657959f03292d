// Numbers as the wizard's boxes hold them: text typed by the user, converted without ever
// failing, and written back in a fixed display form.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace railwright::wizard {

// The text of a real-valued box whose value is 0: the exporter uses its own default.
inline constexpr std::string_view kDefaultText = "Default";

// The text as a number. Leading and trailing blanks are allowed around an optional sign, digits
// with an optional decimal point and an optional exponent; any other text, an empty text and a
// number out of range all count as 0.
double RealValue(std::string_view text);
// The same, as single precision (0 when out of the single range).
float SingleValue(std::string_view text);
// The same, rounded to the nearest whole number with halves to the even neighbour (2.5 is 2,
// 3.5 is 4); 0 when the result is out of the 32-bit range.
int32_t WholeNumber(std::string_view text);
// Rounds halves to the even neighbour.
double RoundHalfEven(double value);

// Fixed-point text with at least minDecimals and at most maxDecimals decimals, rounded half away
// from zero on the value's shortest decimal form: (1, 2) is the form "0.0#", (1, 3) "0.0##",
// (1, 1) "0.0".
std::string DecimalText(float value, int minDecimals, int maxDecimals);

// A real-valued box's text: kDefaultText for 0, otherwise DecimalText.
std::string RealBoxText(float value, int minDecimals, int maxDecimals);

}  // namespace railwright::wizard
