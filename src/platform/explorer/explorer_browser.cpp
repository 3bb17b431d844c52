#include "platform/explorer/explorer_browser.h"

#include <exdispid.h>

#include <cstdio>
#include <utility>

#include "platform/explorer/explorer_document.h"
#include "platform/explorer/page_events.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// The browser becomes busy a little later than the call that makes it navigate.
constexpr std::uint64_t kBeginsWithinMs = 2000;
// How long after that call it may still move into another process.
constexpr std::uint64_t kMovesWithinMs = 10000;

// The longest that moving into another process takes.
constexpr std::uint64_t kMovesForMs = 5000;

using Snapshot = std::pair<std::shared_ptr<ExplorerDocument>, std::shared_ptr<PageSnapshot>>;

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

VARIANT_BOOL Truth(bool truth) { return truth ? VARIANT_TRUE : VARIANT_FALSE; }

}  // namespace

ExplorerBrowser::ExplorerBrowser(ComCalls& calls, ComPtr<IWebBrowser2> browser, ContentWindow found)
    : ExplorerWindow(calls), browser_(std::move(browser)), found_(found) {}

ExplorerBrowser::~ExplorerBrowser() { calls_.Leave(window_); }

bool ExplorerBrowser::Did(HRESULT result, const char* kind, const char* member) {
    const bool done = calls_.Note(result, kind, "browser", member);
    if (IsDisconnected(result)) Part();
    return done;
}

bool ExplorerBrowser::Navigate(const std::string& address) {
    pages_->fired_click().Settle();
    if (!browser_) return false;
    Listen();
    if (!browser_) return false;
    Variant url{std::string_view(address)};
    Variant none;
    VARIANT empty = none.get();
    VARIANT target = url.get();
    if (!Did(browser_->Navigate2(&target, &empty, &empty, &empty, &empty), "call", "Navigate2"))
        return false;
    // A script does not navigate.
    const bool script = StartsWithIgnoreCase(address, "javascript:");
    begins_until_ = script ? 0 : calls_.Now() + kBeginsWithinMs;
    may_move_until_ = calls_.Now() + kMovesWithinMs;
    return true;
}

void ExplorerBrowser::Quit() {
    may_move_until_ = 0;
    if (browser_) Did(browser_->Quit(), "call", "Quit");
}

bool ExplorerBrowser::Busy() {
    pages_->fired_click().Settle();
    if (!browser_) return Moving();
    // While a page shows a dialog box, the browser might not answer.
    if (BoxOf(window_)) return true;
    VARIANT_BOOL busy = VARIANT_FALSE;
    const HRESULT result = browser_->get_Busy(&busy);
    const bool known = Did(result, "get", "Busy");
    // It rejects calls while it waits for its user.
    if (result == RPC_E_CALL_REJECTED || result == RPC_E_SERVERCALL_RETRYLATER) return true;
    if (known && busy != VARIANT_FALSE) begins_until_ = 0;
    return (known && busy != VARIANT_FALSE) || calls_.Now() < begins_until_;
}

int ExplorerBrowser::ReadyState() {
    READYSTATE state = READYSTATE_UNINITIALIZED;
    if (!browser_ || !Did(browser_->get_ReadyState(&state), "get", "ReadyState")) return 0;
    return calls_.Now() < begins_until_ ? READYSTATE_LOADING : state;
}

bool ExplorerBrowser::Alive() {
    pages_->fired_click().Settle();
    // A killed browser fires no event, but its window is gone. A tab can also have been dragged
    // into another window.
    if (browser_ && window_ && !IsWindow(window_) && !IsWindow(Frame())) Lose();
    return browser_ || Moving();
}

std::shared_ptr<ExplorerDocument> ExplorerBrowser::Page() {
    if (!browser_) return nullptr;
    Listen();
    ComPtr<IDispatch> document;
    if (!browser_ || !Did(browser_->get_Document(document.Out()), "get", "Document"))
        return nullptr;
    return pages_->Page(std::move(document));
}

void ExplorerBrowser::SetVisible(bool visible) {
    if (browser_) Did(browser_->put_Visible(Truth(visible)), "put", "Visible");
}

void ExplorerBrowser::SetPlace(const WindowPlace& place) {
    if (browser_) Did(browser_->put_Left(place.left), "put", "Left");
    if (browser_) Did(browser_->put_Top(place.top), "put", "Top");
    if (browser_) Did(browser_->put_Width(place.width), "put", "Width");
    if (browser_) Did(browser_->put_Height(place.height), "put", "Height");
}

void ExplorerBrowser::SetBars(const WindowBars& bars) {
    if (browser_) Did(browser_->put_ToolBar(bars.tool ? 1 : 0), "put", "ToolBar");
    if (browser_) Did(browser_->put_MenuBar(Truth(bars.menu)), "put", "MenuBar");
    if (browser_) Did(browser_->put_AddressBar(Truth(bars.address)), "put", "AddressBar");
    if (browser_) Did(browser_->put_StatusBar(Truth(bars.status)), "put", "StatusBar");
}

WindowState ExplorerBrowser::State() {
    WindowState state;
    const auto number = [this](auto get, const char* member) {
        LONG value = 0;
        if (browser_) Did((browser_.get()->*get)(&value), "get", member);
        return static_cast<int>(value);
    };
    const auto truth = [this](auto get, const char* member) {
        VARIANT_BOOL value = VARIANT_FALSE;
        if (browser_) Did((browser_.get()->*get)(&value), "get", member);
        return value != VARIANT_FALSE;
    };
    state.place = {number(&IWebBrowser2::get_Left, "Left"), number(&IWebBrowser2::get_Top, "Top"),
                   number(&IWebBrowser2::get_Width, "Width"),
                   number(&IWebBrowser2::get_Height, "Height")};
    int tool = 0;
    if (browser_) Did(browser_->get_ToolBar(&tool), "get", "ToolBar");
    state.bars = {tool != 0, truth(&IWebBrowser2::get_MenuBar, "MenuBar"),
                  truth(&IWebBrowser2::get_AddressBar, "AddressBar"),
                  truth(&IWebBrowser2::get_StatusBar, "StatusBar")};
    state.full_screen = truth(&IWebBrowser2::get_FullScreen, "FullScreen");
    return state;
}

HWND ExplorerBrowser::Frame() {
    SHANDLE_PTR window = 0;
    if (!browser_ || !Did(browser_->get_HWND(&window), "get", "HWND")) return nullptr;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how the browser gives its handle
    const auto own = reinterpret_cast<HWND>(window);
    // Inside another program's window, its own one is not what the user sees.
    const HWND now = found_.frame ? found_.frame : own;
    if (now != window_) {
        calls_.Leave(window_);
        calls_.Drive(now);
        window_ = now;
    }
    return window_;
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
    if (!browser_) return;
    const auto to = [this](void (ExplorerBrowser::*note)(const EventArguments&)) {
        return [this, note](const EventArguments& arguments) { (this->*note)(arguments); };
    };
    events_ = EventConnection::Make(calls_, browser_.get(), DIID_DWebBrowserEvents2,
                                    {{DISPID_BEFORENAVIGATE2, to(&ExplorerBrowser::NoteNavigation)},
                                     {DISPID_NAVIGATECOMPLETE2, to(&ExplorerBrowser::NoteShown)},
                                     {DISPID_DOCUMENTCOMPLETE, to(&ExplorerBrowser::NoteComplete)},
                                     {DISPID_NAVIGATEERROR, to(&ExplorerBrowser::NoteError)},
                                     {DISPID_ONQUIT, [this](const EventArguments&) { Lose(); }}});
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
    ComPtr<IDispatch> document;
    Did(browser_->get_Document(document.Out()), "get", "Document");
    pages_->KeepOnly(document.As<IUnknown>().get());
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
    if (!browser_) return;
    if (find_successor_ && calls_.Now() < may_move_until_)
        moving_until_ = calls_.Now() + kMovesForMs;
    Lose();
}

void ExplorerBrowser::Lose() {
    if (!browser_) return;
    browser_ = nullptr;
    pages_->KeepOnly(nullptr);
    if (moving_until_ == 0) Notify([](BrowserEvents& events) { events.OnQuit(); });
    // Last, because this can run inside a handler of these events.
    events_ = nullptr;
}

bool ExplorerBrowser::Moving() {
    if (moving_until_ == 0) return false;
    browser_ = find_successor_(window_);
    if (!browser_ && calls_.Now() < moving_until_) return true;
    moving_until_ = 0;
    may_move_until_ = 0;
    if (browser_) {
        Listen();
    } else {
        Notify([](BrowserEvents& events) { events.OnQuit(); });
    }
    return static_cast<bool>(browser_);
}

}  // namespace tamrin
