#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "platform/document.h"
#include "platform/explorer/com_ptr.h"

namespace tamrin {

// An element as it was at an event.
struct ElementMoment {
    Element element;
    ComPtr<IUnknown> identity;
    std::map<std::string, std::string, std::less<>> properties;
    std::map<std::string, std::optional<std::string>, std::less<>> attributes;
};

// A page as it was at an event: its address, and the active element with its parent and its form.
struct PageMoment {
    enum Role : std::size_t { kActive, kParent, kForm, kDefaultButton };

    std::string url;
    std::array<std::optional<ElementMoment>, 4> elements;

    // The state of an element, null when the moment does not tell of it.
    ElementMoment* Find(IUnknown* identity);
    // What is written to it since has changed it.
    void Forget(IUnknown* identity);
};

}  // namespace tamrin
