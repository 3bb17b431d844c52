#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chromium/field_block.h"
#include "platform/chromium/page_agents.h"
#include "platform/document.h"

namespace tamrin {

class ChromiumDocument;
class ElementList;

// An element, as one row of an ElementList; it lives as long as its list.
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

    // Of a frame: where the page that it holds begins (see kFrameX in fields.inc).
    FieldBlock ContentCorner() const;

private:
    using Arguments = std::initializer_list<std::string_view>;

    int number() const;
    // The call of a function of the page agent on this element.
    std::string Expression(std::string_view function, Arguments arguments = {}) const;
    AgentAnswer Run(std::string_view function, Arguments arguments = {}) const;
    // Calls a function that acts on the page as the user does, and answers its result: "" when the
    // element is gone or did not take it. A dialog box that it opens keeps the result back; then it
    // has acted all the same.
    std::string Act(std::string_view function, Arguments arguments);
    // The protocol's object id of what a function of the page agent answers for this element; the
    // caller releases it. "" when the element is gone.
    std::string ObjectId(std::string_view function) const;
    // What Get answers, before the place of a chosen file is looked up.
    std::string Read(std::string_view property);
    // The path of the file that is chosen in this field; "" when the browser does not tell it.
    std::string ChosenFile() const;
    bool PutFile(std::string_view property, std::string_view path);

    // Fires an event inside a handler without the page, where the subscribers alone are to know it
    // or the browser sends it anyway; false when the page must be asked.
    bool FireInHandler(std::string_view type) const;

    // Another element of the page: from the current snapshot when this is its active element, or
    // else what a function of the page agent answers.
    Element Related(std::size_t snapshot_element, std::string_view function);

    // Whether the fields of the lookup still hold: the keys, and the state, which may change at any
    // moment.
    bool KeysHold() const;
    bool StateHolds() const;
    // The field of a key or property in the lookup's answer; nothing when it is not there or may
    // have changed.
    std::optional<std::size_t> KnownField(std::string_view property) const;

    ElementList& list_;
    const std::size_t row_;
};

// The elements that one lookup found, with all the fields that it brought. The elements share the
// list, so a lookup of many allocates once for all of them.
class ElementList : public std::enable_shared_from_this<ElementList> {
public:
    // Which call of the page agent the rows come from; rows of an event come from a snapshot.
    enum class Kind { kPlain, kNamed, kLinks, kFrames, kEvent };

    // `fields` holds `count` rows from the field `first` on.
    ElementList(std::shared_ptr<ChromiumDocument> document, FieldBlock fields, Kind kind,
                std::size_t first, std::size_t count);

    ElementList(const ElementList&) = delete;
    ElementList& operator=(const ElementList&) = delete;

    std::shared_ptr<ChromiumElement> At(std::size_t row);
    // The rows from `from` up to but without `to`.
    std::vector<Element> Elements(std::size_t from, std::size_t to);
    std::vector<Element> Elements() { return Elements(0, rows_.size()); }
    std::size_t size() const { return rows_.size(); }

    ChromiumDocument& document() const { return *document_; }
    const FieldBlock& fields() const { return fields_; }
    std::size_t Field(std::size_t row, std::size_t key) const {
        return first_ + row * row_length_ + key;
    }
    Kind kind() const { return kind_; }
    // Tab::moment when the list was made.
    std::uint64_t moment() const { return moment_; }

private:
    const std::shared_ptr<ChromiumDocument> document_;
    const FieldBlock fields_;
    const Kind kind_;
    const std::size_t first_;
    const std::size_t row_length_;
    const std::uint64_t moment_;
    std::vector<ChromiumElement> rows_;
};

}  // namespace tamrin
