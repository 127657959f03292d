#include "wizard/NumberText.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "support/FloatText.h"

namespace railwright::wizard {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

// The number's text without blanks and without a leading "+", or empty when the text is not a
// number of the accepted form.
std::string NumberSyntax(std::string_view text) {
    size_t begin = 0;
    size_t end = text.size();
    while (begin < end && IsBlank(text[begin])) {
        ++begin;
    }
    while (end > begin && IsBlank(text[end - 1])) {
        --end;
    }
    std::string_view number = text.substr(begin, end - begin);
    std::string result;
    size_t i = 0;
    if (i < number.size() && (number[i] == '+' || number[i] == '-')) {
        if (number[i] == '-') {
            result += '-';
        }
        ++i;
    }
    size_t digits = 0;
    while (i < number.size() && IsDigit(number[i])) {
        result += number[i++];
        ++digits;
    }
    if (i < number.size() && number[i] == '.') {
        result += number[i++];
        while (i < number.size() && IsDigit(number[i])) {
            result += number[i++];
            ++digits;
        }
    }
    if (digits == 0) {
        return {};
    }
    if (i < number.size() && (number[i] == 'e' || number[i] == 'E')) {
        result += 'e';
        ++i;
        if (i < number.size() && (number[i] == '+' || number[i] == '-')) {
            result += number[i++];
        }
        size_t exponentDigits = 0;
        while (i < number.size() && IsDigit(number[i])) {
            result += number[i++];
            ++exponentDigits;
        }
        if (exponentDigits == 0) {
            return {};
        }
    }
    return i == number.size() ? result : std::string{};
}

// Adds one unit in the last place of a string of decimal digits; true when it carried out of the
// first digit.
bool IncrementDigits(std::string& digits) {
    for (size_t i = digits.size(); i-- > 0;) {
        if (digits[i] == '9') {
            digits[i] = '0';
        } else {
            ++digits[i];
            return false;
        }
    }
    return true;
}

}  // namespace

double RealValue(std::string_view text) {
    const std::string number = NumberSyntax(text);
    if (number.empty()) {
        return 0;
    }
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error != std::errc{} || end != number.data() + number.size() || !std::isfinite(value)) {
        return 0;
    }
    return value;
}

float SingleValue(std::string_view text) {
    const double value = RealValue(text);
    if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
        return 0;
    }
    return static_cast<float>(value);
}

double RoundHalfEven(double value) {
    const double lower = std::floor(value);
    const double fraction = value - lower;
    if (fraction > 0.5) {
        return lower + 1;
    }
    if (fraction < 0.5) {
        return lower;
    }
    return std::fmod(lower, 2.0) == 0 ? lower : lower + 1;
}

int32_t WholeNumber(std::string_view text) {
    const double rounded = RoundHalfEven(RealValue(text));
    if (rounded < static_cast<double>(std::numeric_limits<int32_t>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<int32_t>::max())) {
        return 0;
    }
    return static_cast<int32_t>(rounded);
}

std::string DecimalText(float value, int minDecimals, int maxDecimals) {
    // The shortest fixed text that reads back as the same single: what the user typed, in the
    // usual case, so that 2.675 rounds to 2.68 rather than by its binary neighbour.
    const std::string text = support::ShortestFixedText(std::fabs(value));
    const size_t point = text.find('.');
    std::string whole = text.substr(0, point);
    std::string fraction = point == std::string::npos ? std::string{} : text.substr(point + 1);

    const size_t keep = static_cast<size_t>(maxDecimals);
    if (fraction.size() > keep) {
        const bool roundUp = fraction[keep] >= '5';
        fraction.resize(keep);
        if (roundUp && IncrementDigits(fraction)) {
            if (IncrementDigits(whole)) {
                whole.insert(whole.begin(), '1');
            }
        }
    }
    while (fraction.size() > static_cast<size_t>(minDecimals) && fraction.back() == '0') {
        fraction.pop_back();
    }
    while (fraction.size() < static_cast<size_t>(minDecimals)) {
        fraction += '0';
    }
    const bool zero = whole.find_first_not_of('0') == std::string::npos &&
                      fraction.find_first_not_of('0') == std::string::npos;
    std::string result = (value < 0 && !zero) ? "-" : "";
    result += whole;
    if (!fraction.empty()) {
        result += '.' + fraction;
    }
    return result;
}

std::string RealBoxText(float value, int minDecimals, int maxDecimals) {
    if (value == 0) {
        return std::string(kDefaultText);
    }
    return DecimalText(value, minDecimals, maxDecimals);
}

}  // namespace railwright::wizard
