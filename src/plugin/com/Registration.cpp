#include "plugin/com/Registration.h"

#include <olectl.h>

#include <vector>

#include "plugin/com/PluginInterface.h"

namespace railwright::plugin::com {
namespace {

HKEY ClassesRoot(RegistrationScope scope, REGSAM access) {
    HKEY root = nullptr;
    const HKEY hive = scope == RegistrationScope::AllUsers ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
    if (RegCreateKeyExW(hive, L"Software\\Classes", 0, nullptr, 0, access, nullptr, &root,
                        nullptr) != ERROR_SUCCESS) {
        return nullptr;
    }
    return root;
}

LSTATUS SetValue(HKEY root, const std::wstring& path, const wchar_t* name,
                 std::wstring_view value) {
    HKEY key = nullptr;
    LSTATUS status =
        RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) {
        return status;
    }
    const std::wstring text(value);
    status = RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    return status;
}

HRESULT FromStatus(LSTATUS status) {
    return status == ERROR_SUCCESS ? S_OK : HRESULT_FROM_WIN32(static_cast<DWORD>(status));
}

const std::wstring& ClassKey() {
    static const std::wstring key = L"CLSID\\" + std::wstring(kRailwrightClsidText);
    return key;
}

}  // namespace

std::wstring ModulePath() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&ModulePath), &module);
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length =
            GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

HRESULT Register(RegistrationScope scope, const std::wstring& modulePath) noexcept {
    try {
        HKEY root = ClassesRoot(scope, KEY_CREATE_SUB_KEY | KEY_SET_VALUE);
        if (root == nullptr) {
            return SELFREG_E_CLASS;
        }
        const std::wstring progId(kRailwrightProgId);
        LSTATUS status = ERROR_SUCCESS;
        struct Entry {
            std::wstring path;
            const wchar_t* name;  // null: the key's default value
            std::wstring_view value;
        };
        const std::vector<Entry> entries = {
            {ClassKey(), nullptr, kRailwrightClassName},
            {ClassKey() + L"\\InprocServer32", nullptr, modulePath},
            {ClassKey() + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
            {ClassKey() + L"\\ProgID", nullptr, kRailwrightProgId},
            {progId, nullptr, kRailwrightClassName},
            {progId + L"\\CLSID", nullptr, kRailwrightClsidText},
        };
        for (const Entry& entry : entries) {
            if (status == ERROR_SUCCESS) {
                status = SetValue(root, entry.path, entry.name, entry.value);
            }
        }
        RegCloseKey(root);
        if (status != ERROR_SUCCESS) {
            Unregister(scope);
            return SELFREG_E_CLASS;
        }
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

HRESULT Unregister(RegistrationScope scope) noexcept {
    try {
        HKEY root = ClassesRoot(scope, KEY_ALL_ACCESS);
        if (root == nullptr) {
            return SELFREG_E_CLASS;
        }
        HRESULT result = S_OK;
        for (const std::wstring& key : {ClassKey(), std::wstring(kRailwrightProgId)}) {
            const LSTATUS status = RegDeleteTreeW(root, key.c_str());
            if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND) {
                result = FromStatus(status);
            }
        }
        RegCloseKey(root);
        return result;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace railwright::plugin::com
