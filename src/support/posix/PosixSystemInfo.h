// What the system asks of the operating system on POSIX: the documents folder and fonts.
#pragma once

#include <string>

#include "support/Platform.h"
#include "support/posix/Environment.h"

namespace railwright::support::posix {

class PosixSystemInfo : public SystemInfo {
public:
    explicit PosixSystemInfo(EnvironmentLookup environment = ProcessEnvironment());

    // $XDG_DOCUMENTS_DIR when set; otherwise XDG_DOCUMENTS_DIR as the desktop's user-dirs.dirs
    // (in $XDG_CONFIG_HOME or ~/.config) names it, "$HOME/..." or an absolute path; otherwise
    // ~/Documents. Not required to exist: callers create the folders they write to.
    std::string DocumentsFolder() override;
    // False: the notice for such systems speaks of Windows' protected program folders and walks
    // through its security dialog, neither of which exists here. Whether a simulator's folder is
    // writable is a matter of ordinary file permissions, and a failed write is reported anyway.
    bool RestrictsProgramFolders() override { return false; }
    // No system message font applies to the dialogs here: empty, so the caller uses its own.
    std::string MessageFontName() override { return {}; }
    Font DefaultFont() override { return {"MS Sans Serif", 8.25}; }

private:
    EnvironmentLookup environment_;
};

}  // namespace railwright::support::posix
