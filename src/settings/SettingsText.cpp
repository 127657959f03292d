#include "settings/SettingsText.h"

namespace railwright::settings {
namespace {

// Characters from a 1-based position, as many as `length`; nothing for a position outside the
// text or a length below 1.
std::string Mid(const std::string& text, long long start, long long length) {
    if (start < 1 || start > static_cast<long long>(text.size()) || length < 1) {
        return {};
    }
    return text.substr(static_cast<size_t>(start - 1), static_cast<size_t>(length));
}

// The 1-based position of the first occurrence of `what`, 0 when there is none.
long long Position(const std::string& text, std::string_view what) {
    const size_t found = text.find(what);
    return found == std::string::npos ? 0 : static_cast<long long>(found) + 1;
}

}  // namespace

bool HasSeparators(const std::string& text) {
    return Position(text, kTitleSeparator) != 0;
}

SettingsFields SplitSettingsText(const std::string& text) {
    SettingsFields fields;
    const long long title = Position(text, kTitleSeparator);
    if (title == 0) {
        fields[kTitleField] = text;
        return fields;
    }
    // A separator missing from the text reads as position 0, which makes the lengths below
    // negative, and a negative length takes nothing.
    const long long name = Position(text, kNameSeparator);
    const long long description = Position(text, kDescriptionSeparator);
    fields[kTitleField] = text.substr(0, static_cast<size_t>(title - 1));
    fields[kNameField] = Mid(text, title + 1, name - title - 1);
    fields[kDescriptionField] = Mid(text, name + 2, description - name - 2);
    fields[kLastField] = description == 0
                             ? std::string{}
                             : Mid(text, description + 3, static_cast<long long>(text.size()));
    return fields;
}

std::string JoinSettingsText(const SettingsFields& fields) {
    return fields[kTitleField] + std::string(kTitleSeparator) + fields[kNameField] +
           std::string(kNameSeparator) + fields[kDescriptionField] +
           std::string(kDescriptionSeparator) + fields[kLastField];
}

}  // namespace railwright::settings
