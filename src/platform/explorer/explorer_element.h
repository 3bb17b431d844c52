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

namespace tamrin {

// One element of a page. Its tag is read once, everything else when it is asked for.
class ExplorerElement : public ElementObject {
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

    // Everything that an event brings of an element.
    ElementMoment TakeMoment();

private:
    std::string Live(std::string_view property);
    std::optional<std::string> LiveAttribute(std::string_view name);
    // A property that a control of a form may hide by its name.
    std::string TextMember(std::string_view property);
    std::optional<std::string> Written(std::string_view name);
    // The element of the event that is being told, when this is its active element.
    const ElementMoment* RelatedInMoment(std::size_t role, bool& told) const;

    // Whether it still was in its page a moment ago.
    bool IsThere();
    bool Is(std::string_view type);
    bool CanAct() const;
    bool PutText(std::string_view value);
    bool PutSelect(std::string_view value);
    bool PutOption(std::string_view index);
    bool PutChecked(bool want);
    bool Fire(std::string_view type);
    bool Dispatch(std::string_view type);
    // Tells the page of a click that nobody makes.
    void FireClick();
    // Whether the browser itself does something for a click on it, or what it stands in.
    bool HasOwnAction();

    std::shared_ptr<ExplorerDocument> page_;
    std::string tag_;
    DispatchObject object_;
    ComPtr<IUnknown> identity_;
    std::uint64_t seen_at_;
};

}  // namespace tamrin
