#include "platform/explorer/page_pool.h"

#include "platform/explorer/explorer_document.h"

namespace tamrin {

std::shared_ptr<ExplorerDocument> PagePool::Page(ComPtr<IDispatch> document) {
    if (!document) return nullptr;
    const auto identity = document.As<IUnknown>();
    auto& known = pages_[identity.get()];
    if (auto page = known.lock(); page && page->object()) return page;
    auto page = std::make_shared<ExplorerDocument>(shared_from_this(), std::move(document));
    if (!page->IsHtml()) return nullptr;
    known = page;
    std::erase_if(pages_, [](const auto& entry) { return entry.second.expired(); });
    return page;
}

void PagePool::KeepOnly(IUnknown* document) {
    for (const auto& [identity, known] : pages_) {
        const auto page = known.lock();
        if (page && identity != document) page->SetGone();
    }
}

void PagePool::DropLeftFrames() {
    for (const auto& page : Pages()) {
        if (!page->holder()) continue;
        const auto shown = PageInside(page->holder());
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
