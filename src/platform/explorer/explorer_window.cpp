#include "platform/explorer/explorer_window.h"

#include "platform/explorer/explorer_element.h"
#include "platform/explorer/page_geometry.h"
#include "platform/explorer/screen_windows.h"

namespace tamrin {

ExplorerWindow::ExplorerWindow(ComCalls& calls)
    : calls_(calls),
      pages_(std::make_shared<PagePool>(calls)),
      subscribers_(std::make_shared<Subscribers<BrowserEvents>>()) {}

ExplorerWindow::~ExplorerWindow() {
    pages_->KeepOnly(nullptr);
    pages_->events().Clear();
}

Document ExplorerWindow::document() {
    auto page = Page();
    return page ? Document(std::move(page)) : Document();
}

void ExplorerWindow::SetForeground() { BringToForeground(Frame()); }

std::optional<ScreenPoint> ExplorerWindow::ElementScreenPoint(const Element& element) {
    const HWND content = Content();
    return content ? ScreenPointOf(element, content) : std::nullopt;
}

std::vector<Element> ExplorerWindow::UnderPointer() {
    POINT pointer{};
    const auto page = Page();
    if (!page || !GetCursorPos(&pointer)) return {};
    return ElementsAt({pointer.x, pointer.y}, Content(), *page);
}

void ExplorerWindow::Notify(std::function<void(BrowserEvents&)> call) {
    pages_->events().Add(
        [subscribers = subscribers_, call = std::move(call)] { subscribers->ForEach(call); });
}

}  // namespace tamrin
