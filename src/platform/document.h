#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"

namespace tamrin {

class Element;
class Document;

// One element of a page, as a browser back end answers for it. Use it through Element below.
//
// Reads are total: they never throw, and answer an empty value when the thing is absent, refused or
// gone. No events are delivered inside any call. A call that meets a dialog box of the page ends
// early with an empty answer; the dialog makes the browser Busy.
//
// An element brings the answers that its lookup promised ("keys") with it; a read of these costs no
// call to the browser until a write to the same element.
class ElementObject {
public:
    virtual ~ElementObject() = default;

    // A property of the automation model as text: "id", "name", "tagName" (capitals), "value",
    // "checked" ("True" or "False"), "selectedIndex" (decimal), "innerText", "outerHTML", "href",
    // "src".
    // The lines of a textarea's value are separated by CR LF. The value of a file field is the path
    // of its one file where the browser tells it, else "C:\fakepath\" and the name. Unknown: "".
    virtual std::string Get(std::string_view property) = 0;

    // Sets "value", "checked" ("True" or "False") or "selectedIndex" so that the page notices it as
    // a user's input: it sees "input", and of a check box or radio button a whole click. The change
    // event is fireEvent's. For a file input "value" is a path. False when the element is gone or
    // does not take the value; a field that the user could not edit takes it.
    virtual bool Put(std::string_view property, std::string_view value) = 0;

    // Put, and when it was taken fireEvent("onchange"): the one write that every input makes. A
    // back end that reaches its browser by messages does both in one.
    virtual bool Change(std::string_view property, std::string_view value) {
        const bool taken = Put(property, value);
        if (taken) fireEvent("onchange");
        return taken;
    }

    // The attribute as written in the page, or nothing (Null) when it is absent. "type" is answered
    // as the automation model does: "select-one" for a select, "textarea" for a textarea, and the
    // kind of an input or button even where the page does not write it. "href" of a link is the
    // whole address.
    virtual std::optional<std::string> getAttribute(std::string_view name) = 0;

    virtual Element parentElement() = 0;

    // The form to which the element belongs, null when there is none.
    virtual Element form() = 0;

    // The button that Enter in a field of this element's form presses: the form's first submit
    // button in the order of the page, an <input> or <button>, also one that stands outside the
    // form and names it. A disabled one is that button as well; then Enter does nothing. Null when
    // there is none.
    virtual Element DefaultButton() = 0;

    // The texts of the options of a select, in order.
    virtual std::vector<std::string> OptionTexts() = 0;

    // Dispatches an event ("onchange", "onclick", ...) to the page's handlers, without the
    // browser's own action. False when the element is gone.
    //
    // Inside a handler of DocumentEvents the page does not change: "onfocusin" of the active
    // element calls the subscribers' onfocusin at once and nothing else; "onchange" of it in an
    // onkeypress of Enter does nothing where the browser fires the event itself.
    virtual bool fireEvent(std::string_view event) = 0;

    // Clicks it by the element's own method. False when the element is gone.
    virtual bool click() = 0;

    virtual void scrollIntoView() = 0;

    // Shows the user where it is: scrolls to it and, where the browser can, highlights it for about
    // two seconds, which the page cannot see. Does not wait.
    virtual void Outline() { scrollIntoView(); }

    // Its place in CSS pixels of the viewport of its own document; nothing when it is gone or not
    // displayed.
    virtual std::optional<Rect> getBoundingClientRect() = 0;

    // Whether both stand for the same element of the same page.
    virtual bool Same(const ElementObject& other) const = 0;
};

// A handle of an element; null when it stands for none. Reads of a null handle answer empty.
class Element {
public:
    Element() = default;
    explicit Element(std::shared_ptr<ElementObject> object) : object_(std::move(object)) {}

    explicit operator bool() const { return object_ != nullptr; }
    bool operator==(const Element& other) const {
        return object_ && other.object_ ? object_->Same(*other.object_) : object_ == other.object_;
    }

    std::string Get(std::string_view property) const {
        return object_ ? object_->Get(property) : std::string();
    }
    std::string id() const { return Get("id"); }
    std::string name() const { return Get("name"); }
    std::string tagName() const { return Get("tagName"); }
    std::string value() const { return Get("value"); }
    std::string checked() const { return Get("checked"); }
    std::string selectedIndex() const { return Get("selectedIndex"); }
    std::string innerText() const { return Get("innerText"); }

    bool Put(std::string_view property, std::string_view value) const {
        return object_ && object_->Put(property, value);
    }
    bool Change(std::string_view property, std::string_view value) const {
        return object_ && object_->Change(property, value);
    }
    std::optional<std::string> getAttribute(std::string_view name) const {
        return object_ ? object_->getAttribute(name) : std::nullopt;
    }
    Element parentElement() const { return object_ ? object_->parentElement() : Element(); }
    Element form() const { return object_ ? object_->form() : Element(); }
    Element DefaultButton() const { return object_ ? object_->DefaultButton() : Element(); }
    std::vector<std::string> OptionTexts() const {
        return object_ ? object_->OptionTexts() : std::vector<std::string>();
    }
    bool fireEvent(std::string_view event) const { return object_ && object_->fireEvent(event); }
    bool click() const { return object_ && object_->click(); }
    void scrollIntoView() const {
        if (object_) object_->scrollIntoView();
    }
    void Outline() const {
        if (object_) object_->Outline();
    }
    std::optional<Rect> getBoundingClientRect() const {
        return object_ ? object_->getBoundingClientRect() : std::nullopt;
    }

    // The back end's own object, for the back end that made it.
    const std::shared_ptr<ElementObject>& object() const { return object_; }

private:
    std::shared_ptr<ElementObject> object_;
};

// Keeps a subscription; dropping it ends the subscription.
class Connection {
public:
    virtual ~Connection() = default;
};

// The events of a page's user. The callbacks run only inside Clock::DoEvents, in the order of the
// events, one at a time (see BrowserEvents).
//
// An event carries a snapshot. Until its handler returns, activeElement is the element that was
// active when it happened (for onbeforedeactivate the one that loses the focus). That element, its
// parent, its form and the form's default button answer from the snapshot, through any handle and
// without a call: the keys, checked, selectedIndex, src, and the innerText of a link or button. So
// nothing is lost when the page is gone before the handler runs.
class DocumentEvents {
public:
    virtual ~DocumentEvents() = default;

    virtual void onclick() = 0;
    // The focus has come to an element, or into a frame: then the frame's element is active.
    virtual void onfocusin() = 0;
    // The focus moves from an element to another one of the page; not to another window.
    virtual void onbeforedeactivate() = 0;
    // Only keys that enter a character or a line break (Enter is 13).
    virtual void onkeypress(int key_code) = 0;
    virtual void onsubmit() = 0;
};

// All elements that answer to one name.
struct NamedElements {
    std::vector<Element> by_name;   // getElementsByName(name)
    Element by_id;                  // getElementById(name)
    std::vector<Element> in_forms;  // forms(i).elements(name), the first of each form that has one
};

// One page, as a browser back end answers for it. Use it through Document below. The same promises
// as ElementObject's hold. Collections bring their elements in document order with the keys id,
// name, tagName, value, href and the attributes type, alt, onclick, in one round trip.
class DocumentObject {
public:
    virtual ~DocumentObject() = default;

    // The page's address.
    virtual std::string url() = 0;

    // Whether the keyboard focus is in this document.
    virtual bool hasFocus() = 0;

    virtual Element activeElement() = 0;

    // All elements with that tag, "*" for all.
    virtual std::vector<Element> getElementsByTagName(std::string_view tag) = 0;

    // Whatever answers to `name` by any of the three lookups, in one round trip.
    virtual NamedElements Named(std::string_view name) = 0;

    // The page's links (a and area with an href), their keys and innerText.
    virtual std::vector<Element> links() = 0;

    // The page's frames in the order of window.frames.
    virtual std::vector<struct Frame> frames() = 0;

    // Subscribes to this page's events, not to those of its frames; `events` must outlive the
    // answer. Null when the page is gone.
    virtual std::unique_ptr<Connection> Connect(DocumentEvents& events) = 0;
};

// A handle of a document; null when it stands for none. Reads of a null handle answer empty.
class Document {
public:
    Document() = default;
    explicit Document(std::shared_ptr<DocumentObject> object) : object_(std::move(object)) {}

    explicit operator bool() const { return object_ != nullptr; }

    std::string url() const { return object_ ? object_->url() : std::string(); }
    bool hasFocus() const { return object_ && object_->hasFocus(); }
    Element activeElement() const { return object_ ? object_->activeElement() : Element(); }
    std::vector<Element> getElementsByTagName(std::string_view tag) const {
        return object_ ? object_->getElementsByTagName(tag) : std::vector<Element>();
    }
    NamedElements Named(std::string_view name) const {
        return object_ ? object_->Named(name) : NamedElements();
    }
    std::vector<Element> links() const {
        return object_ ? object_->links() : std::vector<Element>();
    }
    std::vector<Frame> frames() const;
    std::unique_ptr<Connection> Connect(DocumentEvents& events) const {
        return object_ ? object_->Connect(events) : nullptr;
    }

private:
    std::shared_ptr<DocumentObject> object_;
};

// One entry of document.frames.
struct Frame {
    std::string name;   // the id of its element where it has none
    Document document;  // null where the frame's page cannot be reached
    Element element;    // the IFRAME or FRAME element of the outer page
};

inline std::vector<Frame> Document::frames() const {
    return object_ ? object_->frames() : std::vector<Frame>();
}

}  // namespace tamrin
