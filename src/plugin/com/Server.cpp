// The DLL's COM server entry points: the class factory of Railwright, server locks, and
// self-registration for all users (DllRegisterServer) or for the current user (DllInstall with
// the command line "user", as `regsvr32 /n /i:user` calls it).
//
// Every entry point is a barrier: nothing is thrown out of it.
#include <windows.h>
#include <olectl.h>

#include <string>

#include "plugin/com/PluginInterface.h"
#include "plugin/com/RailwrightObject.h"
#include "plugin/com/Registration.h"

namespace railwright::plugin::com {
namespace {

class ClassFactory final : public IClassFactory {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory)) {
            *object = static_cast<IClassFactory*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    // The factory is static: while the host holds it, it counts as a lock on the server.
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++Counts().locks; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return --Counts().locks; }

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                             void** object) noexcept override {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        IDispatch* created = CreateRailwrightObject();
        if (created == nullptr) {
            return E_OUTOFMEMORY;
        }
        const HRESULT result = created->QueryInterface(iid, object);
        created->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
        if (lock) {
            ++Counts().locks;
        } else {
            --Counts().locks;
        }
        return S_OK;
    }
};

ClassFactory factory;

HRESULT RegisterFor(RegistrationScope scope) noexcept {
    try {
        return Register(scope, ModulePath());
    } catch (...) {
        return SELFREG_E_CLASS;
    }
}

}  // namespace
}  // namespace railwright::plugin::com

using railwright::plugin::com::RegistrationScope;

extern "C" {

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (!IsEqualCLSID(clsid, railwright::plugin::com::kRailwrightClsid)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    return railwright::plugin::com::factory.QueryInterface(iid, object);
}

HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    const auto& counts = railwright::plugin::com::Counts();
    return counts.objects == 0 && counts.locks == 0 ? S_OK : S_FALSE;
}

HRESULT STDAPICALLTYPE DllRegisterServer() {
    return railwright::plugin::com::RegisterFor(RegistrationScope::AllUsers);
}

HRESULT STDAPICALLTYPE DllUnregisterServer() {
    return railwright::plugin::com::Unregister(RegistrationScope::AllUsers);
}

// regsvr32 /n /i:user registers for the current user, /u /n /i:user unregisters; any other
// command line means all users.
HRESULT STDAPICALLTYPE DllInstall(BOOL install, LPCWSTR commandLine) {
    const RegistrationScope scope = commandLine != nullptr && lstrcmpiW(commandLine, L"user") == 0
                                        ? RegistrationScope::CurrentUser
                                        : RegistrationScope::AllUsers;
    return install ? railwright::plugin::com::RegisterFor(scope)
                   : railwright::plugin::com::Unregister(scope);
}

}  // extern "C"
