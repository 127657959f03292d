#include "host/com/Dispatch.h"

#include <vector>

#include "host/Host.h"

namespace railwright::host::com {
namespace {

// How the host's members are called: a method or a property read, as a script calls them.
constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

std::string MemberText(std::wstring_view member) { return Narrow(member); }

std::string TypeName(VARTYPE type) {
    switch (type & VT_TYPEMASK) {
        case VT_EMPTY: return "nothing";
        case VT_NULL: return "Null";
        case VT_BSTR: return "a text";
        case VT_DISPATCH:
        case VT_UNKNOWN: return "an object";
        case VT_ERROR: return "an error value";
        default: return "a value of type " + std::to_string(type);
    }
}

[[noreturn]] void ThrowWrongType(std::wstring_view member, const VARIANT& value,
                                 std::string_view wanted) {
    throw HostError(static_cast<int32_t>(DISP_E_TYPEMISMATCH),
                    "The host's \"" + MemberText(member) + "\" returned " + TypeName(value.vt) +
                        " where " + std::string(wanted) + " was expected.");
}

// The value converted to `type`, or a HostError naming the member.
void Convert(std::wstring_view member, VARIANT& value, VARTYPE type, std::string_view wanted) {
    if (value.vt == type) {
        return;
    }
    if (value.vt == VT_EMPTY || (value.vt & VT_TYPEMASK) == VT_DISPATCH ||
        (value.vt & VT_TYPEMASK) == VT_UNKNOWN ||
        FAILED(VariantChangeType(&value, &value, 0, type))) {
        ThrowWrongType(member, value, wanted);
    }
}

}  // namespace

std::wstring Widen(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                           nullptr, 0);
    std::wstring wide(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                        length);
    return wide;
}

std::string Narrow(std::wstring_view text) {
    if (text.empty()) {
        return {};
    }
    const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                           nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), narrow.data(),
                        length, nullptr, nullptr);
    return narrow;
}

Variant Variant::Long(int32_t value) {
    Variant result;
    result.value_.vt = VT_I4;
    result.value_.lVal = value;
    return result;
}

Variant Variant::Float(float value) {
    Variant result;
    result.value_.vt = VT_R4;
    result.value_.fltVal = value;
    return result;
}

Variant Variant::Text(std::string_view utf8) {
    Variant result;
    const std::wstring wide = Widen(utf8);
    result.value_.vt = VT_BSTR;
    result.value_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (result.value_.bstrVal == nullptr) {
        result.value_.vt = VT_EMPTY;
        throw std::bad_alloc();
    }
    return result;
}

Variant Variant::Object(IDispatch* object) {
    Variant result;
    result.value_.vt = VT_DISPATCH;
    result.value_.pdispVal = object;
    if (object) {
        object->AddRef();
    }
    return result;
}

Variant::Variant(Variant&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }

Argument::Argument(float* result) {
    VARIANT& slot = *value_.Get();
    slot.vt = VT_R4 | VT_BYREF;
    slot.pfltVal = result;
}

Argument::Argument(int32_t* result) {
    VARIANT& slot = *value_.Get();
    slot.vt = VT_I4 | VT_BYREF;
    slot.plVal = reinterpret_cast<LONG*>(result);
}

void ThrowCallFailure(std::wstring_view member, HRESULT result, EXCEPINFO* exception) {
    int32_t number = static_cast<int32_t>(result);
    std::string description;
    if (result == DISP_E_EXCEPTION && exception != nullptr) {
        if (exception->pfnDeferredFillIn != nullptr) {
            exception->pfnDeferredFillIn(exception);
        }
        if (exception->scode != 0) {
            number = static_cast<int32_t>(exception->scode);
        } else if (exception->wCode != 0) {
            number = static_cast<int32_t>(0x80040000u + exception->wCode);
        }
        if (exception->bstrDescription != nullptr) {
            description = Narrow(exception->bstrDescription);
        }
    }
    if (exception != nullptr) {
        SysFreeString(exception->bstrSource);
        SysFreeString(exception->bstrDescription);
        SysFreeString(exception->bstrHelpFile);
    }
    if (description.empty()) {
        description = "The host's \"" + MemberText(member) + "\" failed.";
    }
    throw HostError(number, std::move(description));
}

DISPID DispatchObject::Id(Member member) {
    const auto key = static_cast<uint8_t>(member);
    if (const auto found = ids_.find(key); found != ids_.end()) {
        return found->second;
    }
    const std::wstring_view name = MemberName(member);
    if (!object_) {
        throw HostError(static_cast<int32_t>(E_POINTER),
                        "No host object to call \"" + MemberText(name) + "\" on.");
    }
    std::wstring copy(name);
    LPOLESTR names[] = {copy.data()};
    DISPID id = DISPID_UNKNOWN;
    const HRESULT result =
        object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(result)) {
        throw HostError(static_cast<int32_t>(result),
                        "The host object has no member \"" + MemberText(name) + "\".");
    }
    ids_.emplace(key, id);
    return id;
}

void DispatchObject::Invoke(Member member, WORD flags, DISPPARAMS& parameters, VARIANT* result) {
    const DISPID id = Id(member);
    EXCEPINFO exception{};
    UINT argumentError = 0;
    const HRESULT status = object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                           result, &exception, &argumentError);
    if (FAILED(status)) {
        ThrowCallFailure(MemberName(member), status, &exception);
    }
}

void DispatchObject::Call(Member member, std::initializer_list<Argument> arguments,
                          Variant* result) {
    // IDispatch takes the arguments last first. The slots are shallow copies: the arguments
    // keep owning what they hold.
    std::vector<VARIANTARG> slots(arguments.size());
    size_t i = arguments.size();
    for (const Argument& argument : arguments) {
        slots[--i] = argument.Slot();
    }
    DISPPARAMS parameters{slots.data(), nullptr, static_cast<UINT>(slots.size()), 0};
    Variant ignored;
    Invoke(member, kRead, parameters, result != nullptr ? result->Get() : ignored.Get());
}

void DispatchObject::Put(Member member, float value) {
    Variant argument = Variant::Float(value);
    DISPID named = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{argument.Get(), &named, 1, 1};
    Invoke(member, DISPATCH_PROPERTYPUT, parameters, nullptr);
}

int32_t DispatchObject::CallLong(Member member, std::initializer_list<Argument> arguments) {
    Variant result;
    Call(member, arguments, &result);
    Convert(MemberName(member), *result.Get(), VT_I4, "a whole number");
    return result.Value().lVal;
}

float DispatchObject::CallFloat(Member member, std::initializer_list<Argument> arguments) {
    Variant result;
    Call(member, arguments, &result);
    Convert(MemberName(member), *result.Get(), VT_R4, "a number");
    return result.Value().fltVal;
}

bool DispatchObject::CallBool(Member member, std::initializer_list<Argument> arguments) {
    Variant result;
    Call(member, arguments, &result);
    Convert(MemberName(member), *result.Get(), VT_BOOL, "True or False");
    return result.Value().boolVal != VARIANT_FALSE;
}

std::string DispatchObject::CallText(Member member, std::initializer_list<Argument> arguments) {
    Variant result;
    Call(member, arguments, &result);
    Convert(MemberName(member), *result.Get(), VT_BSTR, "a text");
    const BSTR text = result.Value().bstrVal;
    return text == nullptr ? std::string() : Narrow({text, SysStringLen(text)});
}

ComPtr<IDispatch> DispatchObject::CallObject(Member member,
                                             std::initializer_list<Argument> arguments) {
    Variant result;
    Call(member, arguments, &result);
    const VARIANT& value = result.Value();
    if (value.vt == VT_EMPTY || value.vt == VT_NULL) {
        return {};
    }
    if (value.vt == VT_DISPATCH) {
        return ComPtr<IDispatch>(value.pdispVal);
    }
    if (value.vt == VT_UNKNOWN && value.punkVal != nullptr) {
        ComPtr<IDispatch> object;
        if (SUCCEEDED(value.punkVal->QueryInterface(IID_IDispatch,
                                                    reinterpret_cast<void**>(object.Put())))) {
            return object;
        }
    }
    ThrowWrongType(MemberName(member), value, "an object");
}

bool DispatchObject::SameObject(const DispatchObject& other) const {
    if (!object_ || !other.object_) {
        return object_.Get() == other.object_.Get();
    }
    ComPtr<IUnknown> mine;
    ComPtr<IUnknown> theirs;
    if (FAILED(object_->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(mine.Put()))) ||
        FAILED(other.object_->QueryInterface(IID_IUnknown,
                                             reinterpret_cast<void**>(theirs.Put())))) {
        return false;
    }
    return mine.Get() == theirs.Get();
}

}  // namespace railwright::host::com
