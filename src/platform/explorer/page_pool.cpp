#include "platform/explorer/page_pool.h"

#include "platform/explorer/explorer_document.h"

namespace tamrin {

std::shared_ptr<ExplorerDocument> PagePool::Page(ComPtr<IDispatch> document) {
    if (!document) return nullptr;
    std::erase_if(pages_, [](const auto& entry) { return entry.second.expired(); });
    auto& known = pages_[document.As<IUnknown>().get()];
    if (auto page = known.lock(); page && page->object()) return page;
    auto page = std::make_shared<ExplorerDocument>(shared_from_this(), std::move(document));
    known = page;
    // Last, because an event during this call can change the pages.
    return page->IsHtml() ? page : nullptr;
}

void PagePool::KeepOnly(IUnknown* document) {
    for (const auto& page : Pages()) {
        if (!SameObject(page->object().object().get(), document)) page->SetGone();
    }
}

void PagePool::DropLeftFrames() {
    for (const auto& page : Pages()) {
        // A reference of its own: the page may be left during the call.
        Element holder = page->holder();
        const auto shown = holder ? PageInside(holder) : page;
        if (shown && shown != page) page->SetGone();
    }
}

std::vector<std::shared_ptr<ExplorerDocument>> PagePool::Pages() const {
    std::vector<std::shared_ptr<ExplorerDocument>> pages;
    for (const auto& [identity, known] : pages_) {
        auto page = known.lock();
        if (page && page->object()) pages.push_back(std::move(page));
    }
    return pages;
}

}  // namespace tamrin
