// The identity of the plug-in class and of the host's plug-in interface.
//
// The host reaches the plug-in's PFKPlugin9 members by name through IDispatch. The interface
// identifier of PFKPlugin9 itself is the host's and is not known to us: this is the one place to
// declare it, so that the class can answer QueryInterface for it with a vtable binding once it is.
#pragma once

#include <windows.h>

#include <optional>
#include <string_view>

namespace railwright::plugin::com {

// The class Railwright: {FE4764CC-2D1A-418C-8E49-25C99A6F1DFD}.
inline constexpr CLSID kRailwrightClsid = {
    0xfe4764cc, 0x2d1a, 0x418c, {0x8e, 0x49, 0x25, 0xc9, 0x9a, 0x6f, 0x1d, 0xfd}};
inline constexpr std::wstring_view kRailwrightClsidText = L"{FE4764CC-2D1A-418C-8E49-25C99A6F1DFD}";
// The name under which the host creates the plug-in.
inline constexpr std::wstring_view kRailwrightProgId = L"Railwright.Railwright";
inline constexpr std::wstring_view kRailwrightClassName = L"Railwright";

// FIXME: the host's interface identifier of PFKPlugin9, once known.
inline constexpr std::optional<IID> kPFKPlugin9Iid = std::nullopt;

}  // namespace railwright::plugin::com
