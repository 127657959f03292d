// The platform services of the command: POSIX or Windows.
#pragma once

#include <string>

#include "support/Platform.h"

#ifdef _WIN32
#include "support/win32/Win32Services.h"
#else
#include "support/posix/PosixServices.h"
#endif

namespace railwright::cli {

#ifdef _WIN32
// FIXME: --settings is not honoured on Windows yet; the registry holds the user's settings.
struct Services {
    explicit Services(const std::string&) {}
    support::Platform MakePlatform(support::UserInterface& ui) {
        return {files, processes, settings, system, ui};
    }
    support::win32::Win32FileSystem files;
    support::win32::Win32Processes processes{support::ExitWait::WakeOnExit};
    support::win32::RegistrySettingsStore settings;
    support::win32::Win32SystemInfo system;
};
#else
struct Services {
    explicit Services(const std::string& settingsPath) : posix(settingsPath) {}
    support::Platform MakePlatform(support::UserInterface& ui) {
        return {posix.files, posix.processes, posix.settings, posix.system, ui};
    }
    support::posix::PosixServices posix;
};
#endif

}  // namespace railwright::cli
