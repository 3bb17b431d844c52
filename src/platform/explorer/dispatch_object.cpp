#include "platform/explorer/dispatch_object.h"

#include <algorithm>
#include <array>

#include "platform/explorer/call_aside.h"
#include "platform/explorer/member_numbers.h"

namespace tamrin {
namespace {

// No member of the object model takes more.
constexpr std::size_t kMaxArguments = 8;

}  // namespace

std::optional<DISPID> ObjectType::MemberOf(IDispatch& object, std::string_view member,
                                           HRESULT& error, bool ask_again) {
    const auto known = members_.find(member);
    if (known != members_.end() && !ask_again) return known->second;
    const auto hideable = ask_again ? std::nullopt : HideableMember(name_, member);
    if (hideable) return hideable;
    const Bstr name(member);
    OLECHAR* names[] = {name.get()};
    DISPID number = DISPID_UNKNOWN;
    error = object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &number);
    if (FAILED(error)) return std::nullopt;
    members_.insert_or_assign(std::string(member), number);
    return number;
}

Variant DispatchObject::Get(std::string_view property) const {
    // Without DISPATCH_METHOD: some objects would try to call the property's text.
    return Invoke("get", property, DISPATCH_PROPERTYGET, {});
}

bool DispatchObject::Put(std::string_view property, const Variant& value) const {
    return !Invoke("put", property, DISPATCH_PROPERTYPUT, {&value.get()}).Failed();
}

Variant DispatchObject::Invoke(std::string_view kind, std::string_view member, WORD flags,
                               Arguments arguments, bool aside) const {
    if (!object_) return Variant::Failure(E_POINTER);
    const DispatchObject alive = *this;  // an event during the call may release this one
    Variant answer;
    std::string detail;
    HRESULT result = S_OK;
    // Scripts of the page can change its objects, so that an old number is no longer known.
    for (const bool again : {false, true}) {
        const auto number = alive.type_->MemberOf(*alive.object_.get(), member, result, again);
        if (!number) break;
        result = alive.InvokeNumber(*number, flags, arguments, aside, answer, detail);
        if (result != DISP_E_MEMBERNOTFOUND) break;
    }
    const ObjectType& type = *alive.type_;
    if (type.calls().Note(result, kind, type.name(), member, detail)) return answer;
    return Variant::Failure(result);
}

HRESULT DispatchObject::InvokeNumber(DISPID number, WORD flags, Arguments arguments, bool aside,
                                     Variant& answer, std::string& detail) const {
    // In reverse order. The values stay the caller's: the object copies what it keeps.
    std::array<VARIANT, kMaxArguments> reversed{};
    if (arguments.size() > reversed.size()) return DISP_E_BADPARAMCOUNT;
    std::transform(std::rbegin(arguments), std::rend(arguments), reversed.begin(),
                   [](const VARIANT* argument) { return *argument; });
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
    DISPID new_value = DISPID_PROPERTYPUT;
    const bool puts = flags == DISPATCH_PROPERTYPUT;
    if (puts) {
        parameters.rgdispidNamedArgs = &new_value;
        parameters.cNamedArgs = 1;
    }
    if (aside) return CallAside(type_->calls(), *object_.get(), number, parameters);
    ExceptionInfo exception;
    const HRESULT result =
        object_->Invoke(number, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                        puts ? nullptr : answer.Out(), exception.Out(), nullptr);
    if (result != DISP_E_EXCEPTION) return result;
    detail = exception.Text();
    return exception.Error();
}

}  // namespace tamrin
