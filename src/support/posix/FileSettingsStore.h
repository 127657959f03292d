// The per-user settings store kept in a text file, the POSIX stand-in for the registry.
//
// The file holds one section per (application name, section), headed by both joined with a
// backslash, then one line per key:
//
//     [Polyforge\Railwright]
//     Left=120
//     Top=80
//
//     [Polyforge\Tips]
//     ExportLocation=0
//
// Text is taken exactly as it stands: nothing is trimmed. Bytes that would break the layout are
// written as "%" and two upper-case hex digits: in names and keys "%", "\", "[", "]", "=", ";",
// "#" and control characters (line breaks among them); in values "%" and control characters.
// Names, sections and keys are compared without regard to case, as registry keys are. Empty
// lines and lines starting with ";" or "#" are comments. A line that is none of these, or whose
// escapes do not read, is ignored, and so are keys before the first readable header; saving
// rewrites the file without them. Every call reads the file afresh; nothing is kept between
// calls.
#pragma once

#include <string>

#include "support/Platform.h"
#include "support/posix/Environment.h"

namespace railwright::support::posix {

// $XDG_CONFIG_HOME/railwright/settings.ini, or ~/.config/railwright/settings.ini when
// $XDG_CONFIG_HOME is not set or not an absolute path.
std::string DefaultSettingsPath(const EnvironmentLookup& environment);

class FileSettingsStore : public SettingsStore {
public:
    explicit FileSettingsStore(std::string path);

    const std::string& Path() const { return path_; }

    // The stored value, or `defaultValue` when the file, the section or the key is missing.
    std::string GetSetting(const std::string& application, const std::string& section,
                           const std::string& key, const std::string& defaultValue) override;
    // Rewrites the whole file through a temporary file beside it, creating its folders. A failure
    // to save is ignored: the settings are a convenience, and no caller could do better than go
    // on without them.
    void SaveSetting(const std::string& application, const std::string& section,
                     const std::string& key, const std::string& value) override;

private:
    std::string path_;
};

}  // namespace railwright::support::posix
