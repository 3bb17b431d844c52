#include "platform/explorer/explorer_browser.h"

#include <exdispid.h>

#include "platform/explorer/box_window.h"
#include "platform/explorer/content_window.h"
#include "platform/explorer/explorer_element.h"
#include "platform/explorer/foreground.h"
#include "platform/explorer/pointer_element.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// A browser says that it is busy a little after it was asked to navigate.
constexpr std::uint64_t kBeginsWithinMs = 2000;
// How long after it was led somewhere it may move into another process.
constexpr std::uint64_t kMovesWithinMs = 10000;

VARIANT_BOOL Truth(bool truth) { return truth ? VARIANT_TRUE : VARIANT_FALSE; }

}  // namespace

ExplorerBrowser::ExplorerBrowser(ComCalls& calls, ComPtr<IWebBrowser2> browser, ContentWindow found)
    : calls_(calls),
      browser_(std::move(browser)),
      found_(found),
      pages_(std::make_shared<PagePool>(calls)),
      subscribers_(std::make_shared<Subscribers<BrowserEvents>>()) {}

ExplorerBrowser::~ExplorerBrowser() {
    pages_->KeepOnly(nullptr);
    calls_.Leave(window_);
}

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
    // A script address begins no navigation.
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
    // Asked while a page shows one, the browser itself might not answer.
    if (BoxOf(window_)) return true;
    VARIANT_BOOL busy = VARIANT_FALSE;
    const HRESULT result = browser_->get_Busy(&busy);
    const bool known = Did(result, "get", "Busy");
    // It refuses calls while it waits for its user.
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
    // A browser that was ended by force tells nothing, but its window is gone. A tab may also have
    // been dragged into another window.
    if (browser_ && window_ && !IsWindow(window_) && !IsWindow(Window())) Lose();
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

Document ExplorerBrowser::document() {
    auto page = Page();
    return page ? Document(std::move(page)) : Document();
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

HWND ExplorerBrowser::Window() {
    SHANDLE_PTR window = 0;
    if (!browser_ || !Did(browser_->get_HWND(&window), "get", "HWND")) return nullptr;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how the browser gives its handle
    const auto own = reinterpret_cast<HWND>(window);
    // Inside another program's window its own is not the one that the user sees.
    const HWND now = found_.frame ? found_.frame : own;
    if (now != window_) {
        calls_.Leave(window_);
        calls_.Drive(now);
        window_ = now;
    }
    return window_;
}

HWND ExplorerBrowser::Content() {
    return IsWindow(found_.content) ? found_.content : FindIeServerWindow(Window());
}

std::uint64_t ExplorerBrowser::Handle() {
    return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(Window()));
}

void ExplorerBrowser::SetForeground() { BringToForeground(Window()); }

std::optional<ScreenPoint> ExplorerBrowser::ElementScreenPoint(const Element& element) {
    // The mouse is about to click it.
    if (element) pages_->fired_click().ReplaceBy(ExplorerElement::Of(element)->identity());
    const HWND content = Content();
    return content ? ScreenPointOf(element, content) : std::nullopt;
}

std::vector<Element> ExplorerBrowser::UnderPointer() {
    POINT pointer{};
    const auto page = Page();
    if (!page || !GetCursorPos(&pointer)) return {};
    return ElementsAt({pointer.x, pointer.y}, Content(), *page);
}

std::unique_ptr<Connection> ExplorerBrowser::Connect(BrowserEvents& events) {
    Listen();
    return subscribers_->Connect(events);
}

}  // namespace tamrin
