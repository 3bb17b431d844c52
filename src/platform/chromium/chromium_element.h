#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chromium/tab.h"
#include "platform/document.h"

namespace tamrin {

class ChromiumDocument;
class ElementList;

// One row of an ElementList; it lives as long as its list.
class ChromiumElement : public ElementObject {
public:
    ChromiumElement(ElementList& list, std::size_t row) : list_(list), row_(row) {}

    std::string Get(std::string_view property) override;
    bool Put(std::string_view property, std::string_view value) override;
    bool Change(std::string_view property, std::string_view value) override;
    std::optional<std::string> getAttribute(std::string_view name) override;
    Element parentElement() override;
    Element form() override;
    Element DefaultButton() override;
    std::vector<std::string> OptionTexts() override;
    bool fireEvent(std::string_view event) override;
    bool click() override;
    void scrollIntoView() override;
    void Outline() override;
    std::optional<Rect> getBoundingClientRect() override;
    bool Same(const ElementObject& other) const override;

    ChromiumDocument& document() const;

    // The element's corner on the screen; nothing when it is gone or not displayed.
    std::optional<ScreenPoint> ToScreen();

    // Where the page that this element, a frame, holds begins: the viewport of this element's own
    // page, followed by two coordinates in it and how large it shows the frame's page.
    FieldBlock ContentCorner() const;

private:
    using Arguments = std::initializer_list<std::string_view>;

    int number() const;
    // The call of a function of the page agent on this element.
    std::string Expression(std::string_view function, Arguments arguments = {}) const;
    AgentAnswer Run(std::string_view function, Arguments arguments = {}) const;
    // Calls a function that acts on the page as the user does, and answers its word: "" when the
    // element is gone or did not take it. A dialog box that it opens holds the word back; then it
    // has acted all the same.
    std::string Act(std::string_view function, Arguments arguments);
    // Calls a function of the page agent that answers this element itself, and answers the
    // protocol's id of it, which is to be released. "" when the element is gone.
    std::string ObjectId(std::string_view function) const;
    bool PutFile(std::string_view property, std::string_view path);

    // Whether firing an event inside a handler is all done without the page: those who subscribed
    // are told, or the browser tells the page itself.
    bool FiredInMoment(std::string_view type) const;

    // Another element of the page: that of a row of the moment, when this one is the active element
    // of it, or else what a function of the page agent answers.
    Element Related(std::size_t row, std::string_view function);

    // Whether what the lookup told still holds: the keys, and what may change at any moment.
    bool KeysHold() const;
    bool StateHolds() const;
    // The field of a key or property that the lookup told; nothing when it did not or it may have
    // changed.
    std::optional<std::size_t> KnownField(std::string_view property) const;

    ElementList& list_;
    const std::size_t row_;
};

}  // namespace tamrin
