#pragma once

#include <memory>

#include "platform/document.h"

namespace tamrin {

class PageLink;

// Receives what a user does in a page.
class PageListener {
public:
    virtual ~PageListener() = default;

    virtual void onclick(PageLink& page) = 0;
    virtual void onfocusin(PageLink& page) = 0;
    virtual void onbeforedeactivate(PageLink& page) = 0;
    virtual void onkeypress(PageLink& page, int key_code) = 0;
    virtual void onsubmit(PageLink& page) = 0;
};

// The connection to the events of one page: of the top document (EventDoc), or of a frame's
// (EventDocIFrame).
class PageLink : private DocumentEvents {
public:
    // `frame` is the frame's element in the page around it, null for the top document.
    PageLink(PageListener& listener, Document document, Element frame)
        : listener_(listener),
          document_(std::move(document)),
          frame_(std::move(frame)),
          connection_(document_.Connect(*this)) {}
    PageLink(const PageLink&) = delete;
    PageLink& operator=(const PageLink&) = delete;

    const Document& document() const { return document_; }
    const Element& frame() const { return frame_; }
    bool in_frame() const { return static_cast<bool>(frame_); }

private:
    void onclick() override { listener_.onclick(*this); }
    void onfocusin() override { listener_.onfocusin(*this); }
    void onbeforedeactivate() override { listener_.onbeforedeactivate(*this); }
    void onkeypress(int key_code) override { listener_.onkeypress(*this, key_code); }
    void onsubmit() override { listener_.onsubmit(*this); }

    PageListener& listener_;
    Document document_;
    Element frame_;
    std::unique_ptr<Connection> connection_;
};

}  // namespace tamrin
