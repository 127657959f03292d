#include "identification/RunningGear.h"

#include <span>
#include <string_view>

namespace railwright::identification {
namespace {

// The Trainz, Rail3D and BVE names of a bogie.
constexpr std::string_view kNotSure = "notsure";

// The words that tell the wheelsets of a group apart, by the group's wheel count: one wheelset
// for 2 wheels, two for 4, three for 6, and four for any other count.
constexpr std::string_view kOneWheelset[] = {""};
constexpr std::string_view kTwoWheelsets[] = {"forward ", "rear "};
constexpr std::string_view kThreeWheelsets[] = {"forward ", "center ", "rear "};
constexpr std::string_view kFourWheelsets[] = {"forward ", "second ", "third ", "rear "};

std::span<const std::string_view> WheelsetWords(int32_t wheelCount) {
    switch (wheelCount) {
        case 2:
            return kOneWheelset;
        case 4:
            return kTwoWheelsets;
        case 6:
            return kThreeWheelsets;
        default:
            return kFourWheelsets;
    }
}

std::string Text(std::string_view text) {
    return std::string(text);
}

}  // namespace

int32_t HalfRoundedToEven(int32_t wheelCount) {
    const int32_t half = wheelCount / 2;  // toward zero
    if (wheelCount % 2 == 0) {
        return half;
    }
    // Exactly between half and its neighbour away from zero: take the even one.
    const int32_t away = wheelCount > 0 ? half + 1 : half - 1;
    return half % 2 == 0 ? half : away;
}

void AddRunningGear(PartCatalogue& catalogue, const CatalogueInputs& inputs, int positionIndex,
                    int bogieNumber, const std::string& positionWord, int64_t& wheelsetCounter) {
    const auto position = static_cast<size_t>(positionIndex);
    const int32_t wheels = inputs.wheels[position];
    const std::string bogieName = "Bogie" + std::to_string(bogieNumber);

    std::string carrier;
    std::string prefix;
    int64_t firstNumber = 1;
    if (inputs.bogie[position]) {
        // The full stop makes the prompt end in two; kept as users know it.
        AddPart(catalogue, "the " + positionWord + " bogie.", bogieName, bogieName,
                "bo" + TwoDigits(bogieNumber), Text(kNotSure), Text(kNotSure), Text(kNotSure));
        carrier = "bogie";
        prefix = "bo" + TwoDigits(bogieNumber) + "wh";
    } else {
        carrier = "wheel group";
        prefix = "wh";
        firstNumber = wheelsetCounter;
        // By half the wheels, whatever number of wheelsets was named (four for an odd count), so
        // numbers may repeat further back; kept, the names are known by these numbers.
        wheelsetCounter += HalfRoundedToEven(wheels);
    }

    const std::span<const std::string_view> words = WheelsetWords(wheels);
    for (size_t k = 0; k < words.size(); ++k) {
        const std::string groupName =
            "Wheels" + std::to_string(bogieNumber) + std::to_string(k + 1);
        AddPart(catalogue,
                "the " + Text(words[k]) + "wheelset for the " + positionWord + " " + carrier,
                groupName, groupName, prefix + TwoDigits(firstNumber + static_cast<int64_t>(k)),
                Text(kNoName), Text(kNoName), Text(kNoName));
    }
}

void AddDriveWheels(PartCatalogue& catalogue, int32_t driveWheels, int64_t& wheelsetCounter) {
    const std::span<const std::string_view> words = WheelsetWords(driveWheels);
    for (size_t k = 0; k < words.size(); ++k) {
        const std::string groupName = "Wheels" + std::to_string(k + 1);
        AddPart(catalogue, "the " + Text(words[k]) + "drive wheelset", groupName, groupName,
                "wh" + TwoDigits(wheelsetCounter + static_cast<int64_t>(k)), Text(kNoName),
                Text(kNoName), Text(kNoName));
    }
    wheelsetCounter += HalfRoundedToEven(driveWheels);
}

}  // namespace railwright::identification
