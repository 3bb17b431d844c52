#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/document.h"
#include "platform/explorer/com_ptr.h"
#include "platform/explorer/event_sink.h"

namespace tamrin {

class ExplorerDocument;

// An element as it was at an event.
struct ElementSnapshot {
    Element element;
    ComPtr<IUnknown> identity;
    std::map<std::string, std::string, std::less<>> properties;
    std::map<std::string, std::optional<std::string>, std::less<>> attributes;
};

// A page as it was at an event: its address, and the active element with what belongs to it.
struct EventSnapshot {
    enum Role : std::size_t { kActive, kParent, kForm, kDefaultButton };

    std::string url;
    std::array<std::optional<ElementSnapshot>, 4> elements;

    // The state of an element; null when the snapshot does not have it.
    const ElementSnapshot* Find(IUnknown* identity) const;
    // Whether this is the active element.
    bool IsActive(IUnknown* identity) const;
    // Removes an element's state, because it has been written to since.
    void Forget(IUnknown* identity);
};

// A subscription to the events of a page. Each event is queued with its snapshot when it arrives,
// and its handler runs when the program handles its events.
class PageConnection : public Connection {
public:
    // Null when the page is gone or has no events.
    static std::unique_ptr<Connection> Make(std::shared_ptr<ExplorerDocument> page,
                                            DocumentEvents& events);
    ~PageConnection() override;
    PageConnection(const PageConnection&) = delete;
    PageConnection& operator=(const PageConnection&) = delete;

    // Ends the subscription. Events that are already queued are still delivered.
    void Close();

    // Calls onfocusin of all subscribers of the page.
    static void FireFocus(ExplorerDocument& page);

private:
    using Handler = std::function<void(DocumentEvents&)>;

    PageConnection(std::shared_ptr<ExplorerDocument> page, DocumentEvents& events);

    void Listen();
    // Subscribes to the active element's form: only the form itself has the submit event.
    void ListenToForm();
    void Queue(const Handler& handler, bool with_default_button = false);

    std::shared_ptr<ExplorerDocument> page_;
    // Null once the subscription has ended, for the events that are still queued.
    std::shared_ptr<DocumentEvents*> events_;
    std::unique_ptr<EventConnection> document_events_;
    std::unique_ptr<EventConnection> form_events_;
    ComPtr<IUnknown> form_;
};

}  // namespace tamrin
