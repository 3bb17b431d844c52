#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/document.h"
#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/explorer_document.h"
#include "platform/explorer/page_events.h"

namespace tamrin {

// One element of a page. Its tag is read once, everything else at each call.
class ExplorerElement : public ElementObject, public std::enable_shared_from_this<ExplorerElement> {
public:
    ExplorerElement(std::shared_ptr<ExplorerDocument> page, const ComPtr<IDispatch>& object,
                    std::string tag);

    static Element Make(std::shared_ptr<ExplorerDocument> page, const ComPtr<IDispatch>& object,
                        std::string_view tag);
    // The object of an element of this back end, null for a null handle.
    static ExplorerElement* Of(const Element& element) {
        return static_cast<ExplorerElement*>(element.object().get());
    }

    std::string Get(std::string_view property) override;
    bool Put(std::string_view property, std::string_view value) override;
    std::optional<std::string> getAttribute(std::string_view name) override;
    Element parentElement() override;
    Element form() override;
    Element DefaultButton() override;
    std::vector<std::string> OptionTexts() override;
    bool fireEvent(std::string_view event) override;
    bool click() override;
    void scrollIntoView() override;
    std::optional<Rect> getBoundingClientRect() override;
    bool Same(const ElementObject& other) const override;

    // The element's own object; null once its page is gone.
    const DispatchObject& object() const;
    ExplorerDocument& page() const { return *page_; }
    IUnknown* identity() const { return identity_.get(); }

    // What the snapshot of an event holds of an element.
    ElementSnapshot TakeSnapshot();

private:
    // Reads from the page itself, whatever a snapshot says.
    std::string Live(std::string_view property);
    std::optional<std::string> LiveAttribute(std::string_view name);
    // A property that a control can hide when the element is a form.
    std::string TextMember(std::string_view property);
    // An attribute as written in the page.
    std::optional<std::string> Written(std::string_view name);
    // The snapshot, when a handler is running and this was the active element; otherwise null.
    const EventSnapshot* SnapshotAsActive() const;
    static Element InSnapshot(const EventSnapshot& snapshot, EventSnapshot::Role role);

    // Whether it is still in its page, as far as known from the last second.
    bool IsThere();
    bool Is(std::string_view type);
    bool CanAct() const;
    bool PutText(std::string_view value);
    bool PutSelect(std::string_view value);
    bool PutOption(std::string_view index);
    bool PutChecked(bool want);
    bool Fire(std::string_view type);
    bool Dispatch(std::string_view type);
    // Runs the page's click handlers without a click.
    bool FireClick();
    // Whether the browser has an action of its own for a click on it or on an element around it.
    bool HasOwnAction();

    std::shared_ptr<ExplorerDocument> page_;
    std::string tag_;
    DispatchObject object_;
    ComPtr<IUnknown> identity_;
    std::uint64_t seen_at_;
};

}  // namespace tamrin
