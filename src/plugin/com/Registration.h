// The registry entries of the COM class, for all users (HKEY_LOCAL_MACHINE\Software\Classes,
// which needs administrator rights) or for the current user (HKEY_CURRENT_USER\Software\Classes):
//
//   CLSID\{clsid}                  (default) "Railwright"
//   CLSID\{clsid}\InprocServer32   (default) the DLL's path, ThreadingModel "Apartment"
//   CLSID\{clsid}\ProgID           (default) "Railwright.Railwright"
//   Railwright.Railwright          (default) "Railwright"
//   Railwright.Railwright\CLSID    (default) "{clsid}"
//
// Unregistering removes exactly these keys, so that registering and unregistering leaves the
// registry as it was.
#pragma once

#include <windows.h>

#include <string>

namespace railwright::plugin::com {

enum class RegistrationScope { AllUsers, CurrentUser };

// The full path of this DLL.
std::wstring ModulePath();

HRESULT Register(RegistrationScope scope, const std::wstring& modulePath) noexcept;
HRESULT Unregister(RegistrationScope scope) noexcept;

}  // namespace railwright::plugin::com
