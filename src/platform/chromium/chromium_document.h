#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/chromium/chromium_element.h"
#include "platform/chromium/field_block.h"
#include "platform/chromium/tab.h"
#include "platform/document.h"

namespace tamrin {

// One page of a tab, known by the context of its page agent. When the page goes, so does the
// context, and every answer is empty from then on.
class ChromiumDocument : public DocumentObject,
                         public std::enable_shared_from_this<ChromiumDocument> {
public:
    // `position` is the page's place among the frames, "" for the top page and ".0.2" for the third
    // frame of the first frame; `holder` is the element that holds the frame.
    ChromiumDocument(std::shared_ptr<Tab> tab, std::string agent, std::string position = {},
                     std::shared_ptr<ChromiumElement> holder = nullptr);

    std::string url() override;
    bool hasFocus() override;
    Element activeElement() override;
    std::vector<Element> getElementsByTagName(std::string_view tag) override;
    NamedElements Named(std::string_view name) override;
    std::vector<Element> links() override;
    std::vector<Frame> frames() override;
    std::unique_ptr<Connection> Connect(DocumentEvents& events) override;

    // For the elements of this page.

    Tab& tab() const { return *tab_; }
    const std::string& agent() const { return agent_; }

    // Whether the page is still there.
    bool Exists() const;

    AgentAnswer Run(std::string expression, bool gesture = false) const;

    // The element that a call of the agent answers, null when there is none.
    Element One(std::string expression);

    // The snapshot of this page that the event being delivered brings; null when it brings none.
    const PageSnapshot* Snapshot() const { return tab_->watcher().SnapshotOf(agent_); }
    // Which of its elements (see PageSnapshot::Row) has that number; nothing when none has.
    std::optional<std::size_t> SnapshotElement(int number) const;
    Element InSnapshot(std::size_t element);

    // The element under the pointer behind the frames that lead there, as Browser::UnderPointer.
    std::vector<Element> UnderPointer();

    // Notes a write to an element, and whether there was one since a moment of the tab.
    void NoteWrite(int number);
    bool WrittenSince(int number, std::uint64_t moment) const;

    // The place of an element as the agent has just answered it, kept until something may have
    // changed it. Null when there is none.
    void KeepPlace(int number, FieldBlock place);
    const FieldBlock* KeptPlace(int number) const;

    // The screen point of a point of this page's viewport, whose own place stands in `fields` from
    // `viewport` on.
    std::optional<ScreenPoint> ToScreen(const FieldBlock& fields, std::size_t viewport, double x,
                                        double y) const;

private:
    // A page and its answer about the pointer.
    struct Hovered {
        std::shared_ptr<ChromiumDocument> page;
        FieldBlock fields;
    };
    Hovered HoveredIn(std::shared_ptr<ChromiumElement> holder, const std::string& position) const;

    std::vector<Element> Collection(std::string expression, ElementList::Kind kind);

    std::shared_ptr<Tab> tab_;
    const std::string agent_;
    const std::string position_;
    const std::shared_ptr<ChromiumElement> holder_;
    std::unordered_map<int, std::uint64_t> written_;
    FieldBlock place_;
    int place_number_ = -1;
    std::uint64_t place_moment_ = 0;
};

}  // namespace tamrin
