// Late-bound calls on the host's IDispatch objects, and the few COM value types they need.
//
// A call names its member through the member table (Members.h); the dispatch identifier is asked
// for once per object and member. Arguments go by value or, for the results a member leaves in
// its arguments (GetViewArea's five floats, GetBounds' six...), by reference to our own
// variables, which are read back when the call returns. Every failure becomes a HostError:
//   - a member the object does not have: DISP_E_UNKNOWNNAME, naming the member;
//   - a failing HRESULT: that number, with the host's EXCEPINFO description when it gave one
//     (its scode, or its wCode as 0x80040000 + wCode, is then the number);
//   - a result of the wrong type: DISP_E_TYPEMISMATCH, naming the member and what came back.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/com/Members.h"

namespace railwright::host::com {

// UTF-8 and UTF-16 at the edge of COM.
std::wstring Widen(std::string_view text);
std::string Narrow(std::wstring_view text);

// A counted reference to a COM interface.
template <typename Interface>
class ComPtr {
public:
    ComPtr() = default;
    // Adds a reference of its own.
    explicit ComPtr(Interface* pointer) : pointer_(pointer) {
        if (pointer_) pointer_->AddRef();
    }
    ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
    ComPtr(ComPtr&& other) noexcept : pointer_(other.pointer_) { other.pointer_ = nullptr; }
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() {
        if (pointer_) pointer_->Release();
    }
    // Takes over a reference the caller already holds.
    static ComPtr Adopt(Interface* pointer) {
        ComPtr result;
        result.pointer_ = pointer;
        return result;
    }
    Interface* Get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }
    // For out-parameters: releases what is held and returns the slot.
    Interface** Put() {
        *this = ComPtr();
        return &pointer_;
    }

private:
    Interface* pointer_ = nullptr;
};

// An owned VARIANT.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    ~Variant() { VariantClear(&value_); }
    Variant(Variant&& other) noexcept;
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;

    static Variant Long(int32_t value);
    static Variant Float(float value);
    static Variant Text(std::string_view utf8);
    // A reference of its own to the object (null gives an empty object reference).
    static Variant Object(IDispatch* object);

    VARIANT* Get() { return &value_; }
    const VARIANT& Value() const { return value_; }

private:
    VARIANT value_;
};

// One argument of a call: a value, or a variable of ours that the host may write a result into.
class Argument {
public:
    Argument(int32_t value) : value_(Variant::Long(value)) {}
    Argument(float value) : value_(Variant::Float(value)) {}
    Argument(std::string_view text) : value_(Variant::Text(text)) {}
    Argument(const std::string& text) : value_(Variant::Text(text)) {}
    Argument(IDispatch* object) : value_(Variant::Object(object)) {}
    Argument(float* result);
    Argument(int32_t* result);

    const VARIANT& Slot() const { return value_.Value(); }

private:
    Variant value_;
};

// An IDispatch object of the host, called by member name.
class DispatchObject {
public:
    DispatchObject() = default;
    explicit DispatchObject(ComPtr<IDispatch> object) : object_(std::move(object)) {}

    IDispatch* Get() const { return object_.Get(); }
    explicit operator bool() const { return static_cast<bool>(object_); }

    // A method or a property read (DISPATCH_METHOD | DISPATCH_PROPERTYGET), arguments in the
    // member's own order; the result as the host returned it.
    void Call(Member member, std::initializer_list<Argument> arguments, Variant* result = nullptr);
    void Put(Member member, float value);

    // Calls with the result converted, or a HostError naming the member.
    int32_t CallLong(Member member, std::initializer_list<Argument> arguments = {});
    float CallFloat(Member member, std::initializer_list<Argument> arguments = {});
    bool CallBool(Member member, std::initializer_list<Argument> arguments = {});
    std::string CallText(Member member, std::initializer_list<Argument> arguments = {});
    // Null when the host returned no object (Nothing).
    ComPtr<IDispatch> CallObject(Member member, std::initializer_list<Argument> arguments = {});

    // True when both are the same COM object (compared by their IUnknown).
    bool SameObject(const DispatchObject& other) const;

private:
    DISPID Id(Member member);
    void Invoke(Member member, WORD flags, DISPPARAMS& parameters, VARIANT* result);

    ComPtr<IDispatch> object_;
    std::unordered_map<uint8_t, DISPID> ids_;
};

// The HostError of a failed call of `member` (the failing HRESULT and the EXCEPINFO the host
// filled in, if any).
[[noreturn]] void ThrowCallFailure(std::wstring_view member, HRESULT result,
                                   EXCEPINFO* exception);

}  // namespace railwright::host::com
