// The COM object of the class Railwright: the PFKPlugin9 members, answered by name through
// IDispatch (GetIDsOfNames compares names without regard to case; Invoke accepts arguments by
// value or by reference and writes results back through the references).
//
//   Plugin_Name            -> "Railwright"
//   Plugin_Author          -> the author text
//   Plugin_PluginClass     -> 1 (VT_I4)
//   Plugin_Icon            -> no picture (an empty object reference)
//   Plugin_GetValidation   six longs by reference, left as they are
//   Plugin_Apply           Scene, SceneGraph (objects), DeviceID (long), UserDataSingles,
//                          UserDataLongs (arrays by reference), UserDataString (text by reference)
//
// Arguments that are not what a member takes are refused with DISP_E_TYPEMISMATCH (the position
// of the first such argument in puArgErr) or DISP_E_BADPARAMCOUNT, before anything runs.
// Plugin_Apply itself reports its failures to the user and always succeeds.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <atomic>

namespace railwright::plugin::com {

// Objects and server locks alive in this DLL; DllCanUnloadNow answers from them.
struct ServerCounts {
    std::atomic<long> objects{0};
    std::atomic<long> locks{0};
};
ServerCounts& Counts();

// A new Railwright object with one reference, or null when memory ran out.
IDispatch* CreateRailwrightObject() noexcept;

}  // namespace railwright::plugin::com
