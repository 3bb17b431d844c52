#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/variant.h"

namespace tamrin {

// A type of the browser's objects: its name for the trace, and the numbers (DISPID) of its members.
// All objects of one type in one page have the same numbers, so each name is looked up once.
class ObjectType {
public:
    ObjectType(ComCalls& calls, std::string name) : calls_(calls), name_(std::move(name)) {}

    ComCalls& calls() const { return calls_; }
    const std::string& name() const { return name_; }

    // The number of a member; nothing, with the reason in `error`, when the object has none.
    // `ask_again` looks it up anew.
    std::optional<DISPID> MemberOf(IDispatch& object, std::string_view member, HRESULT& error,
                                   bool ask_again = false);

private:
    ComCalls& calls_;
    const std::string name_;
    std::map<std::string, DISPID, std::less<>> members_;
};

// An object of the browser whose members are called by name (IDispatch). When it is null, every
// call fails. A failed call is noted in the trace.
class DispatchObject {
public:
    using Arguments = std::initializer_list<const VARIANT*>;

    DispatchObject() = default;
    DispatchObject(ComPtr<IDispatch> object, std::shared_ptr<ObjectType> type)
        : object_(std::move(object)), type_(std::move(type)) {}

    explicit operator bool() const { return static_cast<bool>(object_); }
    const ComPtr<IDispatch>& object() const { return object_; }
    const std::shared_ptr<ObjectType>& type() const { return type_; }

    // Reads a property; Failed() when it is missing or access is denied.
    Variant Get(std::string_view property) const;
    // Reads a property as text; "" when there is none.
    std::string Text(std::string_view property) const { return Get(property).Text().value_or(""); }
    // Sets a property. False when it is missing or access is denied.
    bool Put(std::string_view property, const Variant& value) const;
    // Calls a method; Failed() when it is missing or fails.
    template <typename... Values>
    Variant Call(std::string_view method, const Values&... arguments) const {
        return Invoke("call", method, DISPATCH_METHOD, {&arguments.get()...});
    }
    // Calls a method that makes the page act, such as a click. Answers whether the page has begun
    // to act; does not wait for the end when the page shows a dialog box meanwhile (CallAside).
    template <typename... Values>
    bool Act(std::string_view method, const Values&... arguments) const {
        return WasBegun(
            Invoke("call", method, DISPATCH_METHOD, {&arguments.get()...}, true).error());
    }

private:
    Variant Invoke(std::string_view kind, std::string_view member, WORD flags, Arguments arguments,
                   bool aside = false) const;
    HRESULT InvokeNumber(DISPID number, WORD flags, Arguments arguments, bool aside,
                         Variant& answer, std::string& detail) const;

    ComPtr<IDispatch> object_;
    std::shared_ptr<ObjectType> type_;
};

}  // namespace tamrin
