#include "platform/explorer/page_events.h"

#include <windows.h>

#include <mshtmdid.h>
#include <mshtml.h>

#include <algorithm>

#include "platform/explorer/explorer_document.h"
#include "platform/explorer/explorer_element.h"

namespace tamrin {
namespace {

constexpr int kEnter = 13;

}  // namespace

const ElementSnapshot* EventSnapshot::Find(IUnknown* identity) const {
    for (const auto& element : elements) {
        if (element && element->identity.get() == identity) return &*element;
    }
    return nullptr;
}

bool EventSnapshot::IsActive(IUnknown* identity) const {
    const auto& active = elements[kActive];
    return active && active->identity.get() == identity;
}

void EventSnapshot::Forget(IUnknown* identity) {
    for (auto& element : elements) {
        if (!element || element->identity.get() != identity) continue;
        element->properties.clear();
        element->attributes.clear();
        return;
    }
}

std::unique_ptr<Connection> PageConnection::Make(std::shared_ptr<ExplorerDocument> page,
                                                 DocumentEvents& events) {
    if (!page->object()) return nullptr;
    auto connection = std::unique_ptr<PageConnection>(new PageConnection(std::move(page), events));
    connection->Listen();
    if (!connection->document_events_) return nullptr;
    connection->ListenToForm();
    return connection;
}

PageConnection::PageConnection(std::shared_ptr<ExplorerDocument> page, DocumentEvents& events)
    : page_(std::move(page)), events_(std::make_shared<DocumentEvents*>(&events)) {
    page_->connections().push_back(this);
}

PageConnection::~PageConnection() {
    *events_ = nullptr;
    Close();  // before the members go: events can arrive meanwhile
    auto& connections = page_->connections();
    connections.erase(std::find(connections.begin(), connections.end(), this));
}

void PageConnection::Close() {
    document_events_ = nullptr;
    form_events_ = nullptr;
    form_ = nullptr;
}

void PageConnection::FireFocus(ExplorerDocument& page) {
    const auto connections = page.connections();
    for (PageConnection* connection : connections) {
        const auto& now = page.connections();
        const bool listens = std::find(now.begin(), now.end(), connection) != now.end();
        if (listens && *connection->events_) (*connection->events_)->onfocusin();
    }
}

void PageConnection::Listen() {
    const auto queue = [this](const Handler& handler) {
        return [this, handler](const EventArguments&) { Queue(handler); };
    };
    const auto key_press = [this](const EventArguments& arguments) {
        const DispatchObject event = page_->ObjectOf(arguments.At(0), "event");
        const int key = static_cast<int>(event.Get("keyCode").Number().value_or(0));
        Queue([key](DocumentEvents& events) { events.onkeypress(key); }, key == kEnter);
    };
    const auto focus_in = [this](const EventArguments&) {
        ListenToForm();
        Queue([](DocumentEvents& events) { events.onfocusin(); });
    };
    document_events_ = EventConnection::Make(
        page_->pool().calls(), page_->object().object().get(), __uuidof(HTMLDocumentEvents2),
        {{DISPID_HTMLDOCUMENTEVENTS2_ONCLICK, queue([](DocumentEvents& e) { e.onclick(); })},
         {DISPID_HTMLDOCUMENTEVENTS2_ONFOCUSIN, focus_in},
         {DISPID_HTMLDOCUMENTEVENTS2_ONBEFOREDEACTIVATE,
          queue([](DocumentEvents& e) { e.onbeforedeactivate(); })},
         {DISPID_HTMLDOCUMENTEVENTS2_ONKEYPRESS, key_press}});
}

void PageConnection::ListenToForm() {
    const Element active = page_->ElementOf(page_->object().Get("activeElement"));
    const Element form = active ? ExplorerElement::Of(active)->form() : Element();
    ComPtr<IUnknown> identity(form ? ExplorerElement::Of(form)->identity() : nullptr);
    if (identity.get() == form_.get()) return;
    form_events_ = nullptr;
    form_ = std::move(identity);
    if (!form) return;
    form_events_ = EventConnection::Make(
        page_->pool().calls(), ExplorerElement::Of(form)->object().object().get(),
        __uuidof(HTMLFormElementEvents2),
        {{DISPID_HTMLFORMELEMENTEVENTS2_ONSUBMIT, [this](const EventArguments&) {
              Queue([](DocumentEvents& events) { events.onsubmit(); });
          }}});
}

void PageConnection::Queue(const Handler& handler, bool with_default_button) {
    const auto snapshot = page_->TakeSnapshot(with_default_button);
    page_->pool().events().Add([page = page_, events = events_, snapshot, handler] {
        if (!*events) return;
        page->SetSnapshot(snapshot.get());
        handler(**events);
        page->SetSnapshot(nullptr);
    });
}

}  // namespace tamrin
