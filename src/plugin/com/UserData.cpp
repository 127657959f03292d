#include "plugin/com/UserData.h"

#include "host/com/Dispatch.h"

namespace railwright::plugin::com {
namespace {

// A by-reference VARIANT holding the value: the VARIANT it points at.
VARIANT* Unwrap(VARIANT& argument) {
    if (argument.vt == (VT_VARIANT | VT_BYREF) && argument.pvarVal != nullptr) {
        return argument.pvarVal;
    }
    return &argument;
}

template <typename Element>
HRESULT Read(const ArraySlot& slot, std::vector<Element>& values) {
    values.clear();
    if (slot.array == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    SAFEARRAY* array = *slot.array;
    if (array == nullptr) {
        return S_OK;
    }
    if (SafeArrayGetDim(array) != 1 || array->cbElements != sizeof(Element)) {
        return DISP_E_TYPEMISMATCH;
    }
    LONG lower = 0;
    LONG upper = -1;
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    if (upper < lower) {
        return S_OK;
    }
    void* data = nullptr;
    if (const HRESULT result = SafeArrayAccessData(array, &data); FAILED(result)) {
        return result;
    }
    const auto* elements = static_cast<const Element*>(data);
    values.assign(elements, elements + (static_cast<size_t>(upper - lower) + 1));
    SafeArrayUnaccessData(array);
    return S_OK;
}

template <typename Element>
HRESULT Write(const ArraySlot& slot, const std::vector<Element>& values) {
    if (slot.array == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    SAFEARRAY*& array = *slot.array;
    HRESULT resized = S_OK;
    if (array == nullptr) {
        array = SafeArrayCreateVector(slot.elementType, 0, static_cast<ULONG>(values.size()));
        if (array == nullptr) {
            return E_OUTOFMEMORY;
        }
    } else {
        LONG lower = 0;
        SafeArrayGetLBound(array, 1, &lower);
        SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), lower};
        resized = SafeArrayRedim(array, &bound);
    }
    // Whatever its extent now is, nothing is written beyond it.
    LONG lower = 0;
    LONG upper = -1;
    SafeArrayGetLBound(array, 1, &lower);
    SafeArrayGetUBound(array, 1, &upper);
    const size_t extent = upper < lower ? 0 : static_cast<size_t>(upper - lower) + 1;
    void* data = nullptr;
    if (const HRESULT result = SafeArrayAccessData(array, &data); FAILED(result)) {
        return result;
    }
    auto* elements = static_cast<Element*>(data);
    for (size_t i = 0; i < values.size() && i < extent; ++i) {
        elements[i] = values[i];
    }
    SafeArrayUnaccessData(array);
    return resized;
}

}  // namespace

ArraySlot ArrayArgument(VARIANT& argument, VARTYPE elementType) {
    VARIANT* value = Unwrap(argument);
    const VARTYPE wanted = VT_ARRAY | elementType;
    if (value->vt == (wanted | VT_BYREF) && value->pparray != nullptr) {
        return {value->pparray, elementType};
    }
    // An array held in a VARIANT that is itself passed by reference: resized in that VARIANT.
    if (value != &argument && value->vt == wanted) {
        return {&value->parray, elementType};
    }
    return {};
}

TextSlot TextArgument(VARIANT& argument) {
    VARIANT* value = Unwrap(argument);
    if (value->vt == (VT_BSTR | VT_BYREF) && value->pbstrVal != nullptr) {
        return {value->pbstrVal};
    }
    if (value != &argument && value->vt == VT_BSTR) {
        return {&value->bstrVal};
    }
    return {};
}

HRESULT ReadArray(const ArraySlot& slot, std::vector<float>& values) { return Read(slot, values); }
HRESULT ReadArray(const ArraySlot& slot, std::vector<int32_t>& values) {
    return Read(slot, values);
}
HRESULT WriteArray(const ArraySlot& slot, const std::vector<float>& values) {
    return Write(slot, values);
}
HRESULT WriteArray(const ArraySlot& slot, const std::vector<int32_t>& values) {
    return Write(slot, values);
}

std::string ReadText(const TextSlot& slot) {
    if (slot.text == nullptr || *slot.text == nullptr) {
        return {};
    }
    return host::com::Narrow({*slot.text, SysStringLen(*slot.text)});
}

HRESULT WriteText(const TextSlot& slot, const std::string& text) {
    if (slot.text == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    const std::wstring wide = host::com::Widen(text);
    if (!SysReAllocStringLen(slot.text, wide.data(), static_cast<UINT>(wide.size()))) {
        return E_OUTOFMEMORY;
    }
    return S_OK;
}

}  // namespace railwright::plugin::com
