#pragma once

#include <string>
#include <string_view>

#include "platform/document.h"

namespace tamrin {

// What a record keeps of an element. Every reader answers an empty text for what is absent, Null,
// refused or gone.

// The element's id, or its name when it has no id.
std::string GetElementId(const Element& element);

// The attribute "type"; without one "href" for an element with a non-empty href, else empty.
std::string GetElementType(const Element& element);

// The element's value, or its attribute "alt" when the value is empty.
std::string GetValue(const Element& element);

bool IsPassword(const Element& element);

// The value of an element of that type as it may be shown to the user: dots in place of a password.
// Always the same number, so that its length does not show.
inline constexpr const char* kDots = "●●●●●●●●";
std::string ShownValue(std::string_view type, std::string value);

// Whether the input data of a link's record is a script to run instead of an address or a text.
bool IsScript(std::string_view indt);

std::string GetAttr(const Element& element, std::string_view attribute);
std::string GetHref(const Element& element);
std::string GetElementName(const Element& element);
std::string GetTagName(const Element& element);

// The name of the element's form. Where that is empty and the element stands directly in a FORM,
// that form's id.
std::string GetFormName(const Element& element);

// Whether the element is an IFRAME or FRAME.
bool IsFrameElement(const Element& element);

}  // namespace tamrin
