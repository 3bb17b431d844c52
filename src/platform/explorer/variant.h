#pragma once

#include <windows.h>

#include <oaidl.h>
#include <oleauto.h>

#include <concepts>
#include <optional>
#include <string>
#include <string_view>

#include "platform/explorer/com_ptr.h"

namespace tamrin {

// Converts UTF-16, the text of COM, to the program's UTF-8. What is not valid becomes U+FFFD.
std::string TextOf(const OLECHAR* text, std::size_t length);

// A text of COM (UTF-16 with its length in front). COM takes a null pointer as the empty text.
class Bstr {
public:
    explicit Bstr(std::string_view utf8);
    ~Bstr() { SysFreeString(text_); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;

    BSTR get() const { return text_; }
    // Where a call writes its answer. To be used only once.
    BSTR* Out() { return &text_; }
    std::string Text() const { return TextOf(text_, SysStringLen(text_)); }

private:
    BSTR text_;
};

// A value of COM automation: text, number, boolean, object, Null, Empty, or the error of a failed
// call. It frees what it holds.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    explicit Variant(std::string_view utf8);
    explicit Variant(int number);
    // Takes only a bool: a string literal would convert to bool too.
    template <std::same_as<bool> T>
    explicit Variant(T truth) : Variant() {
        value_.vt = VT_BOOL;
        value_.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    // A null pointer becomes Null.
    explicit Variant(IDispatch* object);
    // A copy of an event's argument; a reference is replaced by what it refers to.
    explicit Variant(const VARIANT& value);
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant&& other) noexcept;
    ~Variant() { VariantClear(&value_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;

    static Variant Failure(HRESULT error);

    // Whether the call failed; also when the object has no such member.
    bool Failed() const { return value_.vt == VT_ERROR; }
    // The error of a failed call, otherwise S_OK.
    HRESULT error() const { return Failed() ? value_.scode : S_OK; }
    bool IsNull() const { return value_.vt == VT_NULL; }
    bool IsObject() const { return value_.vt == VT_DISPATCH || value_.vt == VT_UNKNOWN; }
    // Neither failed nor Null nor Empty.
    bool HasValue() const { return !Failed() && !IsNull() && value_.vt != VT_EMPTY; }

    // The value as text: a boolean is "True" or "False", whatever the system's language. Nothing
    // for an object and when there is no value.
    std::optional<std::string> Text() const;
    // Nothing for a value that is not a number and not the text of one.
    std::optional<double> Number() const;
    // False for everything but a boolean that is true.
    bool Truth() const;
    // Null for a value that is not an object.
    ComPtr<IDispatch> Object() const;

    const VARIANT& get() const { return value_; }
    // Where a call writes its answer.
    VARIANT* Out();

private:
    VARIANT value_;
};

// What an object says about an error of its own (DISP_E_EXCEPTION). It frees what it holds.
class ExceptionInfo {
public:
    ExceptionInfo() = default;
    ~ExceptionInfo();
    ExceptionInfo(const ExceptionInfo&) = delete;
    ExceptionInfo& operator=(const ExceptionInfo&) = delete;

    // Where a call writes it.
    EXCEPINFO* Out() { return &info_; }

    // The error behind it; DISP_E_EXCEPTION when the object names none.
    HRESULT Error();
    std::string Text() const;

private:
    EXCEPINFO info_{};
};

}  // namespace tamrin
