// The POSIX platform services for one run of the command: one of each, owned together.
#pragma once

#include <string>

#include "support/posix/FileSettingsStore.h"
#include "support/posix/PosixFileSystem.h"
#include "support/posix/PosixProcesses.h"
#include "support/posix/PosixSystemInfo.h"

namespace railwright::support::posix {

struct PosixServices {
    // `settingsPath` is the settings file (the command's --settings); empty picks the user's
    // default file.
    explicit PosixServices(const std::string& settingsPath = {})
        : settings(settingsPath.empty() ? DefaultSettingsPath(ProcessEnvironment())
                                        : settingsPath) {}

    PosixFileSystem files;
    PosixProcesses processes{ExitWait::WakeOnExit};
    FileSettingsStore settings;
    PosixSystemInfo system;
};

}  // namespace railwright::support::posix
