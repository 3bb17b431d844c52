#pragma once

#include <functional>
#include <utility>

#include "platform/explorer/com_ptr.h"

namespace tamrin {

// An "onclick" that was fired at an element and that its page has not seen yet. A record fires it
// and then clicks, by method or mouse, and a person's click runs the page's handlers once: so it
// waits for what the program does next. A click of the same element takes its place; before
// anything else it is told to the page.
class FiredClick {
public:
    void Set(ComPtr<IUnknown> element, std::function<void()> fire) {
        element_ = std::move(element);
        fire_ = std::move(fire);
    }

    // An element is about to be clicked.
    void ReplaceBy(IUnknown* element) {
        if (element_.get() == element) Drop();
        Settle();
    }

    // Something else is about to be done.
    void Settle() {
        if (!element_) return;
        element_ = nullptr;
        const auto fire = std::exchange(fire_, nullptr);
        fire();
    }
    void SettleBefore(IUnknown* element) {
        if (element_.get() != element) Settle();
    }

    // Its page is gone.
    void Drop() {
        element_ = nullptr;
        fire_ = nullptr;
    }

private:
    ComPtr<IUnknown> element_;
    std::function<void()> fire_;
};

}  // namespace tamrin
