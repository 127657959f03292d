#include "support/FileNames.h"

#include <array>

#include "support/SupportingFunctions.h"

namespace railwright::support {
namespace {

// Device names that Windows opens instead of a file, whatever the extension.
constexpr std::array<std::string_view, 22> kDeviceNames = {
    "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",
    "COM8", "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9"};

constexpr std::string_view kForbiddenCharacters = "/\\:*?\"<>|";

}  // namespace

std::string FileNameFault(std::string_view name) {
    if (name.empty()) {
        return "it is empty";
    }
    for (const char c : name) {
        if (static_cast<unsigned char>(c) < 32) {
            return "it contains a control character";
        }
        if (kForbiddenCharacters.find(c) != std::string_view::npos) {
            return std::string("it contains the character \"") + c + "\"";
        }
    }
    if (name == "." || name == "..") {
        return "it names a folder, not a file";
    }
    if (name.back() == '.' || name.back() == ' ') {
        return "it ends in a dot or a space, which Windows drops";
    }
    const std::string_view stem = name.substr(0, name.find('.'));
    for (const std::string_view device : kDeviceNames) {
        if (EqualsIgnoreCase(stem, device)) {
            return "Windows reserves \"" + std::string(device) + "\" for a device";
        }
    }
    return {};
}

}  // namespace railwright::support
