#include "platform/explorer/variant.h"

namespace tamrin {
namespace {

// Numbers are written as scripts write them, whatever the user's country.
constexpr LCID kAnyCountry = LOCALE_INVARIANT;

// A copy that shares what the value holds, for functions that only read it and yet take a pointer
// to a writable one.
bool Convert(VARIANT from, VARTYPE type, VARIANT* into) {
    return SUCCEEDED(VariantChangeTypeEx(into, &from, kAnyCountry, 0, type));
}

}  // namespace

std::string TextOf(const OLECHAR* text, std::size_t length) {
    const int units = static_cast<int>(length);
    // A unit takes up to three bytes; a pair of surrogates takes four.
    std::string utf8(3 * length, '\0');
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, units, utf8.data(),
                                         static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(size));
    return utf8;
}

Bstr::Bstr(std::string_view utf8) : text_(nullptr) {
    const int size = static_cast<int>(utf8.size());
    // NOLINTBEGIN(bugprone-suspicious-stringview-data-usage): its size goes along
    const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0);
    text_ = SysAllocStringLen(nullptr, static_cast<UINT>(units));
    if (text_) MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, text_, units);
    // NOLINTEND(bugprone-suspicious-stringview-data-usage)
}

Variant::Variant(std::string_view utf8) : Variant() {
    Bstr text(utf8);
    value_.vt = VT_BSTR;
    std::swap(value_.bstrVal, *text.Out());
}

Variant::Variant(int number) : Variant() {
    value_.vt = VT_I4;
    value_.lVal = number;
}

Variant::Variant(IDispatch* object) : Variant() {
    value_.vt = object ? VT_DISPATCH : VT_NULL;
    value_.pdispVal = object;
    if (object) object->AddRef();
}

Variant::Variant(const VARIANT& value) : Variant() {
    VARIANT shared = value;
    VariantCopyInd(&value_, &shared);
}

Variant::Variant(Variant&& other) noexcept : Variant() { std::swap(value_, other.value_); }

Variant& Variant::operator=(Variant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
}

Variant Variant::Failure(HRESULT error) {
    Variant failure;
    failure.value_.vt = VT_ERROR;
    failure.value_.scode = error;
    return failure;
}

std::optional<std::string> Variant::Text() const {
    if (!HasValue() || IsObject()) return std::nullopt;
    if (value_.vt == VT_BOOL) return Truth() ? "True" : "False";
    if (value_.vt == VT_BSTR) return TextOf(value_.bstrVal, SysStringLen(value_.bstrVal));
    Variant text;
    return Convert(value_, VT_BSTR, &text.value_) ? text.Text() : std::nullopt;
}

std::optional<double> Variant::Number() const {
    if (!HasValue() || IsObject()) return std::nullopt;
    Variant number;
    if (!Convert(value_, VT_R8, &number.value_)) return std::nullopt;
    return number.value_.dblVal;
}

bool Variant::Truth() const { return value_.vt == VT_BOOL && value_.boolVal != VARIANT_FALSE; }

ComPtr<IDispatch> Variant::Object() const {
    if (value_.vt == VT_DISPATCH) return ComPtr<IDispatch>(value_.pdispVal);
    if (value_.vt == VT_UNKNOWN) return ComPtr<IUnknown>(value_.punkVal).As<IDispatch>();
    return nullptr;
}

VARIANT* Variant::Out() {
    VariantClear(&value_);
    return &value_;
}

ExceptionInfo::~ExceptionInfo() {
    SysFreeString(info_.bstrSource);
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
}

HRESULT ExceptionInfo::Error() {
    if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
    return FAILED(info_.scode) ? info_.scode : DISP_E_EXCEPTION;
}

std::string ExceptionInfo::Text() const {
    return TextOf(info_.bstrDescription, SysStringLen(info_.bstrDescription));
}

}  // namespace tamrin
