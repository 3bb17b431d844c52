#pragma once

#include <memory>

#include "platform/document.h"
#include "platform/explorer/event_sink.h"
#include "platform/explorer/explorer_document.h"

namespace tamrin {

// Listens to a page for one subscriber. Each event is noted with its moment when it comes and told
// when the program handles its events.
class PageConnection : public Connection {
public:
    // Null when the page is gone or tells nobody.
    static std::unique_ptr<Connection> Make(std::shared_ptr<ExplorerDocument> page,
                                            DocumentEvents& events);
    ~PageConnection() override;
    PageConnection(const PageConnection&) = delete;
    PageConnection& operator=(const PageConnection&) = delete;

    // Listens no more. What has come before is still told.
    void Close();

    // Tells all who listen to the page that the focus has come to its active element.
    static void TellFocus(ExplorerDocument& page);

private:
    using Tell = std::function<void(DocumentEvents&)>;

    PageConnection(std::shared_ptr<ExplorerDocument> page, DocumentEvents& events);

    void Listen();
    // A form tells nobody but those who listen to itself of its sending.
    void ListenToForm();
    void Note(const Tell& tell, bool with_default_button = false);

    std::shared_ptr<ExplorerDocument> page_;
    // Null once the subscription has ended, for what was noted before.
    std::shared_ptr<DocumentEvents*> events_;
    std::unique_ptr<EventConnection> document_events_;
    std::unique_ptr<EventConnection> form_events_;
    ComPtr<IUnknown> form_;
};

}  // namespace tamrin
