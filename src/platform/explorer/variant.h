#pragma once

#include <windows.h>

#include <oleauto.h>

#include <concepts>
#include <optional>
#include <string>
#include <string_view>

#include "platform/explorer/com_ptr.h"

namespace tamrin {

// The program's text is UTF-8, that of the component model UTF-16 with its length before it. What
// is no valid text on one side becomes U+FFFD on the other.
std::string TextOf(const OLECHAR* text, std::size_t length);

// A text for a call; null for none at all is the component model's empty text.
class Bstr {
public:
    explicit Bstr(std::string_view utf8);
    ~Bstr() { SysFreeString(text_); }
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;

    BSTR get() const { return text_; }
    // For a call that writes its answer; only once.
    BSTR* Out() { return &text_; }
    std::string Text() const { return TextOf(text_, SysStringLen(text_)); }

private:
    BSTR text_;
};

// A value of the automation model: a text, a number, a truth, an object, Null, Empty, or the error
// by which a call failed. It frees what it holds.
class Variant {
public:
    Variant() { VariantInit(&value_); }
    explicit Variant(std::string_view utf8);
    explicit Variant(int number);
    // Takes nothing but a truth: a literal text would become one too.
    template <std::same_as<bool> T>
    explicit Variant(T truth) : Variant() {
        value_.vt = VT_BOOL;
        value_.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    }
    // Null for no object.
    explicit Variant(IDispatch* object);
    // A copy of what an event brings; what is given by reference is followed.
    explicit Variant(const VARIANT& value);
    Variant(Variant&& other) noexcept;
    Variant& operator=(Variant&& other) noexcept;
    ~Variant() { VariantClear(&value_); }
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;

    static Variant Failure(HRESULT error);

    // The call failed, or there is no such member.
    bool Failed() const { return value_.vt == VT_ERROR; }
    // By which error; S_OK for none.
    HRESULT error() const { return Failed() ? value_.scode : S_OK; }
    bool IsNull() const { return value_.vt == VT_NULL; }
    bool IsObject() const { return value_.vt == VT_DISPATCH || value_.vt == VT_UNKNOWN; }
    // Neither failed nor Null nor Empty.
    bool HasValue() const { return !Failed() && !IsNull() && value_.vt != VT_EMPTY; }

    // As text: a truth is "True" or "False", whatever the system's language. Nothing where there is
    // no value and for an object.
    std::optional<std::string> Text() const;
    // Nothing for what is no number, also not as text.
    std::optional<double> Number() const;
    bool Truth() const;
    // Null for what is no object.
    ComPtr<IDispatch> Object() const;

    const VARIANT& get() const { return value_; }
    // Where a call writes its answer.
    VARIANT* Out();

private:
    VARIANT value_;
};

}  // namespace tamrin
