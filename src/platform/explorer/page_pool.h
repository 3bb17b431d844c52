#pragma once

#include <map>
#include <memory>
#include <vector>

#include "platform/explorer/com_calls.h"
#include "platform/explorer/com_ptr.h"
#include "platform/explorer/event_queue.h"
#include "platform/explorer/fired_click.h"

namespace tamrin {

class ExplorerDocument;

// What the pages of one browser window share. Each page is the same object for as long as somebody
// keeps it, so that an event's moment is known through whichever handle.
class PagePool : public std::enable_shared_from_this<PagePool> {
public:
    explicit PagePool(ComCalls& calls) : calls_(calls) {}

    ComCalls& calls() const { return calls_; }
    EventQueue& events() { return events_; }
    FiredClick& fired_click() { return fired_click_; }

    // The page of a document object; null for none and for one that is no HTML document.
    std::shared_ptr<ExplorerDocument> Page(ComPtr<IDispatch> document);

    // The window shows another page: those of the one before answer empty from now on. Null for a
    // window that is gone.
    void KeepOnly(IUnknown* document);

    // A frame shows another page: those that no frame shows any more answer empty from now on.
    void DropLeftFrames();

    // The pages that somebody keeps.
    std::vector<std::shared_ptr<ExplorerDocument>> Pages() const;

private:
    ComCalls& calls_;
    EventQueue events_;
    FiredClick fired_click_;
    std::map<IUnknown*, std::weak_ptr<ExplorerDocument>> pages_;
};

}  // namespace tamrin
