#include "platform/explorer/content_browser.h"

#include <array>
#include <string_view>

#include "platform/explorer/browser_objects.h"
#include "platform/explorer/explorer_document.h"

namespace tamrin {
namespace {

// The message that asks for the page waits for the browser, so it is not sent at every call.
constexpr std::uint64_t kLookEveryMs = 200;

// The index is the number of the state.
constexpr std::array<std::string_view, 5> kReadyStates = {"uninitialized", "loading", "loaded",
                                                          "interactive", "complete"};
constexpr int kComplete = 4;

}  // namespace

ContentBrowser::ContentBrowser(ComCalls& calls, ContentWindow window)
    : ExplorerWindow(calls), window_(window) {
    calls_.Drive(window_.frame);
}

ContentBrowser::~ContentBrowser() { calls_.Leave(window_.frame); }

void ContentBrowser::Look() {
    if (gone_ || !Alive() || calls_.Now() < look_again_at_ || BoxOf(window_.frame)) return;
    look_again_at_ = calls_.Now() + kLookEveryMs;
    auto page = pages_->Page(GetDocumentFromWindow(calls_, window_.content));
    if (page && page != page_) Show(std::move(page));
    if (page_ && !complete_ && PageState() == kComplete) {
        complete_ = true;
        Notify([](BrowserEvents& events) { events.DocumentComplete(true); });
    }
}

void ContentBrowser::Show(std::shared_ptr<ExplorerDocument> page) {
    const bool first = !page_;
    page_ = std::move(page);
    pages_->KeepOnly(page_->object().object().As<IUnknown>().get());
    complete_ = first && PageState() == kComplete;
    if (first) return;  // nobody saw it come
    Notify([url = page_->object().Text("URL")](BrowserEvents& events) {
        events.BeforeNavigate2(url);
        events.NavigateComplete2();
    });
}

int ContentBrowser::PageState() {
    const std::string state = page_ ? page_->object().Text("readyState") : std::string();
    for (std::size_t i = 0; i < kReadyStates.size(); ++i) {
        if (state == kReadyStates[i]) return static_cast<int>(i);
    }
    return 0;
}

bool ContentBrowser::Navigate(const std::string& address) {
    Look();
    if (!page_) return false;
    const auto location = page_->ObjectOf(page_->object().Get("location"), "location");
    if (!location.Put("href", Variant(std::string_view(address)))) return false;
    look_again_at_ = 0;
    return true;
}

void ContentBrowser::Quit() {
    if (page_) page_->Window().Act("close");
}

bool ContentBrowser::Busy() {
    if (BoxOf(window_.frame)) return true;
    Look();
    return page_ && PageState() != kComplete;
}

int ContentBrowser::ReadyState() {
    Look();
    return PageState();
}

bool ContentBrowser::Alive() {
    if (gone_ || IsWindow(window_.content)) return !gone_;
    gone_ = true;
    page_ = nullptr;
    pages_->KeepOnly(nullptr);
    Notify([](BrowserEvents& events) { events.OnQuit(); });
    return false;
}

std::shared_ptr<ExplorerDocument> ContentBrowser::Page() {
    Look();
    return page_;
}

HWND ContentBrowser::Content() { return Alive() ? window_.content : nullptr; }

void ContentBrowser::SetPlace(const WindowPlace& place) {
    // Does not wait for the window's program.
    SetWindowPos(window_.frame, nullptr, place.left, place.top, place.width, place.height,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
}

WindowState ContentBrowser::State() {
    RECT place{};
    if (!Alive() || !GetWindowRect(window_.frame, &place)) return {};
    return {
        {static_cast<int>(place.left), static_cast<int>(place.top),
         static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)},
        {true, false, true, false},
        false};
}

std::uint64_t ContentBrowser::Handle() {
    const auto handle = reinterpret_cast<std::uintptr_t>(window_.frame);
    return Alive() ? static_cast<std::uint64_t>(handle) : 0;
}

std::unique_ptr<Connection> ContentBrowser::Connect(BrowserEvents& events) {
    Look();
    return subscribers_->Connect(events);
}

void ContentBrowser::DeliverEvents() {
    if (!subscribers_->empty()) {
        Look();
    } else {
        // Without subscribers it holds no page.
        page_ = nullptr;
        look_again_at_ = 0;
    }
    pages_->events().Deliver();
}

}  // namespace tamrin
