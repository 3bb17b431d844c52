// What the recorder watches: the focused element, in the page or in one of its frames.

#include "browser/element_keys.h"
#include "browser/element_types.h"
#include "platform/text.h"
#include "recorder/event_record.h"
#include "recorder/recorder.h"

namespace tamrin {
namespace {

// What a field holds when it gets the focus: the state of a check box, the chosen option of a
// select, the text of a text field. "" of an e-mail field, so that leaving one always counts as a
// change, and of everything else.
std::string GetCurrentValue(const Element& element) {
    switch (KindOf(GetElementType(element))) {
        case ElementKind::kCheck:
            return element.checked();
        case ElementKind::kSelect:
            return element.selectedIndex();
        case ElementKind::kText:
            return element.value();
        default:
            return "";
    }
}

}  // namespace

std::unique_ptr<PageLink> Recorder::Link(const Document& document, const Element& frame) {
    PageListener& listener = *this;
    return std::make_unique<PageLink>(listener, document, frame);
}

void Recorder::ConnectDocument() {
    frames_.clear();
    event_doc_.reset();
    const Document document = browser_->document();
    if (!document) return;
    address_ = document.url();
    event_doc_ = Link(document, Element());
    ConnectFrames();
    // The page may have given the focus to a field before this connection.
    watch_left_ = true;
    WatchActiveElement(*event_doc_);
}

// Connects to all frames at once: the user's first click into one may come before a connection on
// demand could be made.
void Recorder::ConnectFrames() {
    if (!event_doc_) return;
    std::vector<std::unique_ptr<PageLink>> links;
    for (const Frame& frame : event_doc_->document().frames()) {
        if (!frame.document) continue;
        std::unique_ptr<PageLink> link;
        for (auto& old : frames_) {
            // A page that has gone has no active element.
            const bool same = old && old->frame() == frame.element;
            if (same && old->document().activeElement()) link = std::move(old);
        }
        if (!link) link = Link(frame.document, frame.element);
        links.push_back(std::move(link));
    }
    frames_ = std::move(links);
}

PageLink* Recorder::FrameWith(const Element& frame) {
    for (const auto& link : frames_) {
        if (frame && link->frame() == frame) return link.get();
    }
    return nullptr;
}

void Recorder::WatchActiveElement(PageLink& page) {
    if (!browser_ || !Recording()) return;
    const Element active = page.document().activeElement();
    if (!active) return;
    if (!page.in_frame() && IsFrameElement(active)) {
        WatchFrame(active);
        return;
    }
    Watch(active);
    host_.SetStatus(IsPassword(active) ? std::string() : watch_value_);
}

void Recorder::WatchFrame(const Element& frame) {
    if (!FrameWith(frame)) ConnectFrames();
    const PageLink* const link = FrameWith(frame);
    watch_elm_ = link ? link->document().activeElement() : Element();
    watch_value_ = GetCurrentValue(watch_elm_);
    // The frame's own focus event follows and brings the value of that moment.
    watch_left_ = true;
}

// A field that is already watched keeps the value that it had when it got the focus, also when the
// user clicks into it again or comes back from another window: what was typed before counts.
void Recorder::Watch(Element element) {
    const bool again = !watch_left_ && element == watch_elm_;
    watch_elm_ = std::move(element);
    if (again) return;
    watch_left_ = false;
    sent_text_.reset();
    watch_value_ = GetCurrentValue(watch_elm_);
    watch_text_ = InputText(watch_elm_);
}

// What leaving the field now would record as its value.
std::string Recorder::InputText(const Element& field) {
    const auto input = ReadEvent("input", field, GetElementType(field), field);
    return input ? input->value : std::string();
}

// A click into a field watches it, also when it had the focus before this connection.
void Recorder::CheckClickedFrame(PageLink& page) {
    PageLink* target = &page;
    const Element active = page.document().activeElement();
    if (active.tagName() == "IFRAME") target = FrameWith(active);
    if (!target) return;
    const Element field = target == &page ? active : target->document().activeElement();
    const ElementKind kind = KindOf(GetElementType(field));
    if (kind == ElementKind::kText || kind == ElementKind::kUntyped) WatchActiveElement(*target);
}

// The submit button of the active field's form, which Enter presses.
std::optional<Recorder::DefaultButton> Recorder::FindDefaultButton(const PageLink& page) {
    const Element field = page.document().activeElement();
    if (!EqualsIgnoreCase(field.tagName(), "INPUT")) return std::nullopt;
    // Enter on a button presses that button, which has the focus: its click is recorded as such.
    if (IsButton(KindOf(GetElementType(field)))) return std::nullopt;
    const Element button = field.DefaultButton();
    const auto click = ReadEvent("click", button, GetElementType(button), button);
    if (!click) return std::nullopt;
    return DefaultButton{GetElementId(button), *click};
}

}  // namespace tamrin
