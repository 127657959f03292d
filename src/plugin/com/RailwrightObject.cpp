#include "plugin/com/RailwrightObject.h"

#include <array>
#include <string>
#include <vector>

#include "host/com/ComHost.h"
#include "plugin/ProductExports.h"
#include "plugin/Railwright.h"
#include "plugin/com/FrontEnd.h"
#include "plugin/com/PluginInterface.h"
#include "plugin/com/Registration.h"
#include "plugin/com/UserData.h"
#include "support/SupportingFunctions.h"
#include "support/win32/Win32Services.h"

namespace railwright::plugin::com {
namespace {

enum Dispid : DISPID {
    kPluginName = 1,
    kPluginAuthor,
    kPluginClass,
    kPluginIcon,
    kPluginGetValidation,
    kPluginApply,
};

struct MemberEntry {
    const wchar_t* name;
    DISPID id;
};

constexpr std::array kMembers = {
    MemberEntry{L"Plugin_Name", kPluginName},
    MemberEntry{L"Plugin_Author", kPluginAuthor},
    MemberEntry{L"Plugin_PluginClass", kPluginClass},
    MemberEntry{L"Plugin_Icon", kPluginIcon},
    MemberEntry{L"Plugin_GetValidation", kPluginGetValidation},
    MemberEntry{L"Plugin_Apply", kPluginApply},
};

HRESULT SetText(VARIANT* result, std::string_view text) {
    if (result == nullptr) {
        return S_OK;
    }
    const std::wstring wide = host::com::Widen(text);
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    return result->bstrVal != nullptr ? S_OK : E_OUTOFMEMORY;
}

// An object argument, by value or by reference.
IDispatch* ObjectArgument(VARIANT& argument, bool& usable) {
    VARIANT* value = &argument;
    if (argument.vt == (VT_VARIANT | VT_BYREF) && argument.pvarVal != nullptr) {
        value = argument.pvarVal;
    }
    usable = true;
    switch (value->vt) {
        case VT_DISPATCH: return value->pdispVal;
        case VT_DISPATCH | VT_BYREF: return value->ppdispVal ? *value->ppdispVal : nullptr;
        default: usable = false; return nullptr;
    }
}

// The release's "tools" folder beside the DLL.
std::string ToolsFolderBeside(const std::wstring& modulePath) {
    return host::com::Narrow(modulePath.substr(0, modulePath.find_last_of(L"\\/") + 1)) + "tools";
}

// One application of the plug-in, with the platform's services and the chosen front end.
void RunApplication(IDispatch* scene, IDispatch* context, int32_t deviceId,
                    std::vector<float>& singles, std::vector<int32_t>& longs, std::string& text) {
    const std::unique_ptr<FrontEnd> frontEnd = MakeFrontEnd();
    support::win32::Win32FileSystem files;
    support::win32::Win32Processes processes;
    support::win32::RegistrySettingsStore settings;
    support::win32::Win32SystemInfo system;
    support::Platform platform{files, processes, settings, system, frontEnd->Ui()};
    // The tools' command lines name the tools folder unquoted: its short form has no blanks.
    const std::string tools = ToolsFolderBeside(ModulePath());
    const std::string toolsShort = files.ShortPath(tools);
    const host::com::PluginFolders folders{
        support::JoinPath(toolsShort.empty() ? tools : toolsShort, ""), system.DocumentsFolder()};

    ProductExports exports(platform);
    plugin::Railwright plugin(platform, frontEnd->View(), exports);
    plugin.Plugin_Apply(host::com::MakeScripting(host::com::ComPtr<IDispatch>(scene)),
                        host::com::MakeHostContext(host::com::ComPtr<IDispatch>(context), folders),
                        deviceId, singles, longs, text);
}

class RailwrightObject final : public IDispatch {
public:
    RailwrightObject() { ++Counts().objects; }
    ~RailwrightObject() { --Counts().objects; }
    RailwrightObject(const RailwrightObject&) = delete;
    RailwrightObject& operator=(const RailwrightObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
        if (object == nullptr) {
            return E_POINTER;
        }
        // A vtable binding of PFKPlugin9 is answered here once its identifier is known.
        if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
            (kPFKPlugin9Iid && IsEqualIID(iid, *kPFKPlugin9Iid))) {
            *object = static_cast<IDispatch*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
        if (count == nullptr) {
            return E_POINTER;
        }
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
        if (info != nullptr) {
            *info = nullptr;
        }
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) noexcept override {
        if (names == nullptr || ids == nullptr) {
            return E_POINTER;
        }
        HRESULT result = S_OK;
        for (UINT i = 0; i < count; ++i) {
            ids[i] = DISPID_UNKNOWN;
            // Only the member itself has a name; its arguments are passed by position.
            if (i > 0) {
                result = DISP_E_UNKNOWNNAME;
                continue;
            }
            for (const MemberEntry& member : kMembers) {
                if (names[i] != nullptr && lstrcmpiW(names[i], member.name) == 0) {
                    ids[i] = member.id;
                }
            }
            if (ids[i] == DISPID_UNKNOWN) {
                result = DISP_E_UNKNOWNNAME;
            }
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*,
                                     UINT* argumentError) noexcept override {
        try {
            if ((flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) {
                return DISP_E_MEMBERNOTFOUND;
            }
            DISPPARAMS none{nullptr, nullptr, 0, 0};
            DISPPARAMS& arguments = parameters != nullptr ? *parameters : none;
            if (arguments.cNamedArgs != 0) {
                return DISP_E_NONAMEDARGS;
            }
            if (result != nullptr) {
                VariantInit(result);
            }
            return Call(id, arguments, result, argumentError);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_UNEXPECTED;
        }
    }

private:
    HRESULT Call(DISPID id, DISPPARAMS& arguments, VARIANT* result, UINT* argumentError) {
        const UINT count = arguments.cArgs;
        switch (id) {
            case kPluginName:
            case kPluginAuthor:
            case kPluginClass:
            case kPluginIcon:
                if (count != 0) {
                    return DISP_E_BADPARAMCOUNT;
                }
                break;
            case kPluginGetValidation:
                if (count != 6) {
                    return DISP_E_BADPARAMCOUNT;
                }
                // The plug-in accepts whatever is selected: nothing changes.
                return S_OK;
            case kPluginApply:
                if (count != 6) {
                    return DISP_E_BADPARAMCOUNT;
                }
                return Apply(arguments, argumentError);
            default:
                return DISP_E_MEMBERNOTFOUND;
        }
        switch (id) {
            case kPluginName: return SetText(result, plugin::Railwright::Plugin_Name());
            case kPluginAuthor: return SetText(result, plugin::Railwright::Plugin_Author());
            case kPluginClass:
                if (result != nullptr) {
                    result->vt = VT_I4;
                    result->lVal = plugin::Railwright::Plugin_PluginClass();
                }
                return S_OK;
            default:  // kPluginIcon: no picture.
                if (result != nullptr) {
                    result->vt = VT_DISPATCH;
                    result->pdispVal = nullptr;
                }
                return S_OK;
        }
    }

    HRESULT Apply(DISPPARAMS& arguments, UINT* argumentError);

    std::atomic<ULONG> references_{1};
};

HRESULT RailwrightObject::Apply(DISPPARAMS& arguments, UINT* argumentError) {
    // rgvarg holds the arguments last first: Scene is 5, UserDataString 0.
    VARIANT* argument = arguments.rgvarg;
    const auto refuse = [argumentError](UINT position) {
        if (argumentError != nullptr) {
            *argumentError = position;
        }
        return DISP_E_TYPEMISMATCH;
    };
    bool usable = false;
    IDispatch* scene = ObjectArgument(argument[5], usable);
    if (!usable || scene == nullptr) {
        return refuse(5);
    }
    IDispatch* context = ObjectArgument(argument[4], usable);
    if (!usable || context == nullptr) {
        return refuse(4);
    }
    host::com::Variant device;
    if (FAILED(VariantChangeType(device.Get(), &argument[3], 0, VT_I4))) {
        return refuse(3);
    }
    const ArraySlot singlesSlot = ArrayArgument(argument[2], VT_R4);
    const ArraySlot longsSlot = ArrayArgument(argument[1], VT_I4);
    const TextSlot textSlot = TextArgument(argument[0]);
    std::vector<float> singles;
    std::vector<int32_t> longs;
    if (FAILED(ReadArray(singlesSlot, singles))) {
        return refuse(2);
    }
    if (FAILED(ReadArray(longsSlot, longs))) {
        return refuse(1);
    }
    if (textSlot.text == nullptr) {
        return refuse(0);
    }
    std::string text = ReadText(textSlot);

    RunApplication(scene, context, device.Value().lVal, singles, longs, text);

    // SetOptions has resized the settings to their extents; after a Finish, GetOptions has
    // filled them. Either way the host's own containers now take them, in place.
    (void)WriteArray(singlesSlot, singles);
    (void)WriteArray(longsSlot, longs);
    (void)WriteText(textSlot, text);
    return S_OK;
}

}  // namespace

ServerCounts& Counts() {
    static ServerCounts counts;
    return counts;
}

IDispatch* CreateRailwrightObject() noexcept {
    try {
        return new RailwrightObject();
    } catch (...) {
        return nullptr;
    }
}

}  // namespace railwright::plugin::com
