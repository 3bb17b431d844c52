#include "platform/explorer/explorer_browser.h"

#include <exdispid.h>

#include <cstdio>
#include <utility>

#include "platform/explorer/browser_objects.h"
#include "platform/explorer/explorer_document.h"
#include "platform/explorer/page_events.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// The browser becomes busy a little later than the call that makes it navigate.
constexpr std::uint64_t kBeginsWithinMs = 2000;
// After that call it may move into another process for so long.
constexpr std::uint64_t kMovesWithinMs = 10000;

using Snapshot = std::pair<std::shared_ptr<ExplorerDocument>, std::shared_ptr<EventSnapshot>>;

// Snapshots of all pages that have subscribers, before a navigation takes the pages away.
std::vector<Snapshot> SnapshotsOf(const PagePool& pages) {
    std::vector<Snapshot> snapshots;
    for (auto& page : pages.Pages()) {
        if (page->connections().empty()) continue;
        auto snapshot = page->TakeSnapshot(false);
        snapshots.emplace_back(std::move(page), std::move(snapshot));
    }
    return snapshots;
}

void SetSnapshots(const std::vector<Snapshot>& snapshots, bool set) {
    for (const auto& [page, snapshot] : snapshots)
        page->SetSnapshot(set ? snapshot.get() : nullptr);
}

}  // namespace

ExplorerBrowser::ExplorerBrowser(ComCalls& calls, DispatchObject browser, ContentWindow found)
    : ExplorerWindow(calls), browser_(std::move(browser)), found_(found) {}

ExplorerBrowser::~ExplorerBrowser() { calls_.Leave(window_); }

Variant ExplorerBrowser::Noted(Variant answer) {
    if (IsDisconnected(answer.error())) Part();
    return answer;
}

bool ExplorerBrowser::Navigate(const std::string& address) {
    Listen();
    const Variant url{std::string_view(address)};
    if (Noted(browser_.Call("Navigate2", url)).Failed()) return false;
    // A script does not navigate.
    const bool script = StartsWithIgnoreCase(address, "javascript:");
    begins_until_ = script ? 0 : calls_.Now() + kBeginsWithinMs;
    may_move_until_ = calls_.Now() + kMovesWithinMs;
    return true;
}

void ExplorerBrowser::Quit() {
    may_move_until_ = 0;
    Noted(browser_.Call("Quit"));
}

bool ExplorerBrowser::Busy() {
    if (!browser_) return Moving();
    // While a page shows a dialog box, the browser might not answer.
    if (BoxOf(window_)) return true;
    const Variant busy = Get("Busy");
    // It rejects calls while it waits for its user.
    if (busy.error() == RPC_E_CALL_REJECTED || busy.error() == RPC_E_SERVERCALL_RETRYLATER)
        return true;
    if (busy.Truth()) begins_until_ = 0;
    return busy.Truth() || calls_.Now() < begins_until_;
}

int ExplorerBrowser::ReadyState() {
    const auto state = Get("ReadyState").Number();
    if (!state) return 0;
    return calls_.Now() < begins_until_ ? READYSTATE_LOADING : static_cast<int>(*state);
}

bool ExplorerBrowser::Alive() {
    // A killed browser fires no event, but its window is gone. A tab can also have been dragged
    // into another window.
    if (browser_ && window_ && !IsWindow(window_) && !IsWindow(Frame())) Lose();
    return browser_ || Moving();
}

std::shared_ptr<ExplorerDocument> ExplorerBrowser::Page() {
    Listen();
    return pages_->Page(Get("Document").Object());
}

void ExplorerBrowser::SetVisible(bool visible) { browser_.Put("Visible", Variant(visible)); }

void ExplorerBrowser::SetPlace(const WindowPlace& place) {
    browser_.Put("Left", Variant(place.left));
    browser_.Put("Top", Variant(place.top));
    browser_.Put("Width", Variant(place.width));
    browser_.Put("Height", Variant(place.height));
}

void ExplorerBrowser::SetBars(const WindowBars& bars) {
    browser_.Put("ToolBar", Variant(bars.tool ? 1 : 0));
    browser_.Put("MenuBar", Variant(bars.menu));
    browser_.Put("AddressBar", Variant(bars.address));
    browser_.Put("StatusBar", Variant(bars.status));
}

WindowState ExplorerBrowser::State() {
    const auto number = [this](const char* property) {
        return static_cast<int>(Get(property).Number().value_or(0));
    };
    const auto truth = [this](const char* property) { return Get(property).Truth(); };
    return {{number("Left"), number("Top"), number("Width"), number("Height")},
            {number("ToolBar") != 0, truth("MenuBar"), truth("AddressBar"), truth("StatusBar")},
            truth("FullScreen")};
}

HWND ExplorerBrowser::Frame() {
    // Inside another program's window, its own one is not what the user sees.
    const HWND now = browser_ && found_.frame ? found_.frame : FrameOf(browser_);
    if (now && now != window_) {
        calls_.Leave(window_);
        calls_.Drive(now);
        window_ = now;
    }
    return now;
}

HWND ExplorerBrowser::Content() {
    return IsWindow(found_.content) ? found_.content : FindIeServerWindow(Frame());
}

std::uint64_t ExplorerBrowser::Handle() {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(Frame()));
}

std::unique_ptr<Connection> ExplorerBrowser::Connect(BrowserEvents& events) {
    Listen();
    return subscribers_->Connect(events);
}

void ExplorerBrowser::Listen() {
    if (events_ || !browser_) return;
    Frame();  // registers the window, so that its dialog boxes are noticed
    const auto to = [this](void (ExplorerBrowser::*note)(const EventArguments&)) {
        return [this, note](const EventArguments& arguments) { (this->*note)(arguments); };
    };
    events_ = EventConnection::Make(calls_, browser_.object().get(), DIID_DWebBrowserEvents2,
                                    {{DISPID_BEFORENAVIGATE2, to(&ExplorerBrowser::NoteNavigation)},
                                     {DISPID_NAVIGATECOMPLETE2, to(&ExplorerBrowser::NoteShown)},
                                     {DISPID_DOCUMENTCOMPLETE, to(&ExplorerBrowser::NoteComplete)},
                                     {DISPID_NAVIGATEERROR, to(&ExplorerBrowser::NoteError)},
                                     {DISPID_ONQUIT, [this](const EventArguments&) {
                                          closed_ = true;
                                          Lose();
                                      }}});
}

void ExplorerBrowser::NoteNavigation(const EventArguments& arguments) {
    const std::string url = arguments.At(1).Text().value_or("");
    if (StartsWithIgnoreCase(url, "javascript:")) return;  // the page stays
    if (Is(arguments.At(0).Object().get())) begins_until_ = 0;
    const auto snapshots = SnapshotsOf(*pages_);
    pages_->events().Add([subscribers = subscribers_, snapshots, url] {
        subscribers->ForEach([&](BrowserEvents& events) {
            SetSnapshots(snapshots, true);
            events.BeforeNavigate2(url);
            SetSnapshots(snapshots, false);
        });
    });
}

void ExplorerBrowser::NoteShown(const EventArguments& arguments) {
    if (!Is(arguments.At(0).Object().get())) {
        pages_->DropLeftFrames();
        return;
    }
    pages_->KeepOnly(Get("Document").Object().As<IUnknown>().get());
    Notify([](BrowserEvents& events) { events.NavigateComplete2(); });
}

void ExplorerBrowser::NoteComplete(const EventArguments& arguments) {
    // The event's sender is the browser of a frame, or the window itself for the top page.
    const bool top = Is(arguments.At(0).Object().get());
    Notify([top](BrowserEvents& events) { events.DocumentComplete(top); });
}

void ExplorerBrowser::NoteError(const EventArguments& arguments) {
    const auto code = static_cast<long>(arguments.At(3).Number().value_or(0));
    // With an HTTP status the server has sent a page.
    if (!Is(arguments.At(0).Object().get()) || code >= 0) return;
    const std::string url = arguments.At(1).Text().value_or("");
    char reason[16] = "";
    std::snprintf(reason, sizeof reason, "0x%08lX", static_cast<unsigned long>(code));
    Notify([url, text = std::string(reason)](BrowserEvents& events) {
        events.NavigateError(url, text);
    });
}

void ExplorerBrowser::Part() {
    if (!find_successor_ || calls_.Now() >= may_move_until_) may_move_until_ = 0;
    Release();
}

void ExplorerBrowser::Lose() {
    may_move_until_ = 0;
    Release();
}

void ExplorerBrowser::Release() {
    if (!browser_) return;
    browser_ = {};
    pages_->KeepOnly(nullptr);
    if (may_move_until_ == 0) Notify([](BrowserEvents& events) { events.OnQuit(); });
    // Last, because this can run inside a handler of these events.
    events_ = nullptr;
}

bool ExplorerBrowser::Moving() {
    if (may_move_until_ == 0) return false;
    browser_ = find_successor_(window_);
    if (!browser_ && calls_.Now() < may_move_until_) return true;
    may_move_until_ = 0;
    if (browser_) {
        Listen();
    } else {
        Notify([](BrowserEvents& events) { events.OnQuit(); });
    }
    return static_cast<bool>(browser_);
}

}  // namespace tamrin
