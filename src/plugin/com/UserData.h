// The three settings values that the host passes to Plugin_Apply by reference, read into the
// plug-in's own containers and written back into the host's in place.
//
// UserDataSingles and UserDataLongs are SAFEARRAYs of 32-bit floats and integers, passed as
// VT_ARRAY | VT_R4 | VT_BYREF (VT_I4), or inside a VARIANT passed by reference. A null array (a
// dynamic array never sized) reads as empty. Element 0 is the array's lower bound. Writing back
// resizes the array in place with SafeArrayRedim to the container's extent, keeping its lower
// bound, then stores every element; an array that cannot be resized is written as far as it
// reaches and never beyond. UserDataString is a BSTR by reference (or in a VARIANT by reference);
// it crosses as UTF-16, so no character is lost to a code page.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <string>
#include <vector>

namespace railwright::plugin::com {

// Where one argument lives in the host's memory; null slots when the argument was not usable.
struct ArraySlot {
    SAFEARRAY** array = nullptr;
    VARTYPE elementType = VT_EMPTY;
};

struct TextSlot {
    BSTR* text = nullptr;
};

// The slot of a by-reference array argument of element type `elementType`; empty when the
// argument is not one (not by reference, not an array, or of another element type).
ArraySlot ArrayArgument(VARIANT& argument, VARTYPE elementType);
TextSlot TextArgument(VARIANT& argument);

[[nodiscard]] HRESULT ReadArray(const ArraySlot& slot, std::vector<float>& values);
[[nodiscard]] HRESULT ReadArray(const ArraySlot& slot, std::vector<int32_t>& values);
[[nodiscard]] HRESULT WriteArray(const ArraySlot& slot, const std::vector<float>& values);
[[nodiscard]] HRESULT WriteArray(const ArraySlot& slot, const std::vector<int32_t>& values);

std::string ReadText(const TextSlot& slot);
[[nodiscard]] HRESULT WriteText(const TextSlot& slot, const std::string& text);

}  // namespace railwright::plugin::com
