#include "host/scene/PartNames.h"

#include <algorithm>
#include <array>
#include <string>

namespace railwright::host::scene {
namespace {

// What may follow a part name's stem.
enum class Tail {
    None,             // the stem is the whole name
    Number,           // one or more digits
    NumberAndLetter,  // digits, then at most one letter (pantographs of three arms)
};

struct PartName {
    std::string_view stem;  // upper case
    Tail tail;
};

constexpr PartName kWheelset{"WHEELS", Tail::Number};

constexpr std::array<PartName, 15> kNamedParts{{
    {"MAIN", Tail::None},
    {"BOGIE", Tail::Number},
    kWheelset,
    {"MAIN_WHEEL_LINK", Tail::None},
    {"PISTON", Tail::None},
    {"ROD", Tail::Number},
    {"WIPERARMLEFT", Tail::Number},
    {"WIPERBLADELEFT", Tail::Number},
    {"WIPERARMRIGHT", Tail::Number},
    {"WIPERBLADERIGHT", Tail::Number},
    {"MIRRORLEFT", Tail::Number},
    {"MIRRORRIGHT", Tail::Number},
    {"PANTOGRAPHBOTTOM", Tail::NumberAndLetter},
    {"PANTOGRAPHMIDDLE", Tail::NumberAndLetter},
    {"PANTOGRAPHTOP", Tail::NumberAndLetter},
}};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

std::string Upper(std::string_view name) {
    std::string upper(name);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return upper;
}

bool TailMatches(std::string_view tail, Tail rule) {
    if (rule == Tail::None) {
        return tail.empty();
    }
    size_t digits = 0;
    while (digits < tail.size() && IsDigit(tail[digits])) {
        ++digits;
    }
    if (digits == 0) {
        return false;
    }
    const std::string_view rest = tail.substr(digits);
    return rest.empty() || (rule == Tail::NumberAndLetter && rest.size() == 1 && IsLetter(rest[0]));
}

bool Matches(std::string_view upperName, const PartName& part) {
    return upperName.substr(0, part.stem.size()) == part.stem &&
           TailMatches(upperName.substr(std::min(part.stem.size(), upperName.size())), part.tail);
}

}  // namespace

bool IsNamedPart(std::string_view name) {
    const std::string upper = Upper(name);
    return std::any_of(kNamedParts.begin(), kNamedParts.end(),
                       [&upper](const PartName& part) { return Matches(upper, part); });
}

bool IsWheelset(std::string_view name) { return Matches(Upper(name), kWheelset); }

}  // namespace railwright::host::scene
