#include "platform/explorer/page_connection.h"

#include <windows.h>

#include <mshtmdid.h>
#include <mshtml.h>

#include <algorithm>

#include "platform/explorer/explorer_element.h"

namespace tamrin {
namespace {

constexpr int kEnter = 13;

}  // namespace

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
    auto& connections = page_->connections();
    connections.erase(std::find(connections.begin(), connections.end(), this));
}

void PageConnection::Close() {
    document_events_ = nullptr;
    form_events_ = nullptr;
    form_ = nullptr;
}

void PageConnection::TellFocus(ExplorerDocument& page) {
    const auto connections = page.connections();
    for (PageConnection* connection : connections) {
        const auto& now = page.connections();
        const bool listens = std::find(now.begin(), now.end(), connection) != now.end();
        if (listens && *connection->events_) (*connection->events_)->onfocusin();
    }
}

void PageConnection::Listen() {
    const auto tell = [this](const Tell& call) {
        return [this, call](const EventArguments&) { Note(call); };
    };
    const auto key_press = [this](const EventArguments& arguments) {
        const DispatchObject event = page_->ObjectOf(arguments.At(0), "event");
        const int key = static_cast<int>(event.Get("keyCode").Number().value_or(0));
        Note([key](DocumentEvents& events) { events.onkeypress(key); }, key == kEnter);
    };
    const auto focus_in = [this](const EventArguments&) {
        ListenToForm();
        Note([](DocumentEvents& events) { events.onfocusin(); });
    };
    document_events_ = EventConnection::Make(
        page_->pool().calls(), page_->object().object().get(), __uuidof(HTMLDocumentEvents2),
        {{DISPID_HTMLDOCUMENTEVENTS2_ONCLICK, tell([](DocumentEvents& e) { e.onclick(); })},
         {DISPID_HTMLDOCUMENTEVENTS2_ONFOCUSIN, focus_in},
         {DISPID_HTMLDOCUMENTEVENTS2_ONBEFOREDEACTIVATE,
          tell([](DocumentEvents& e) { e.onbeforedeactivate(); })},
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
              Note([](DocumentEvents& events) { events.onsubmit(); });
          }}});
}

void PageConnection::Note(const Tell& tell, bool with_default_button) {
    const auto moment = page_->TakeMoment(with_default_button);
    page_->pool().events().Add([page = page_, events = events_, moment, tell] {
        if (!*events) return;
        page->SetMoment(moment.get());
        tell(**events);
        page->SetMoment(nullptr);
    });
}

}  // namespace tamrin
