// What a browser window tells.
#include <windows.h>

#include <exdispid.h>

#include <cstdio>

#include "platform/explorer/explorer_browser.h"
#include "platform/explorer/explorer_document.h"
#include "platform/text.h"

namespace tamrin {
namespace {

// How long a browser takes to move into another process.
constexpr std::uint64_t kMovesForMs = 5000;

using Moment = std::pair<std::shared_ptr<ExplorerDocument>, std::shared_ptr<PageMoment>>;

// How all pages are that somebody listens to: the navigation will take them away.
std::vector<Moment> MomentsOf(const PagePool& pages) {
    std::vector<Moment> moments;
    for (auto& page : pages.Pages()) {
        if (page->connections().empty()) continue;
        auto moment = page->TakeMoment(false);
        moments.emplace_back(std::move(page), std::move(moment));
    }
    return moments;
}

void SetMoments(const std::vector<Moment>& moments, bool told) {
    for (const auto& [page, moment] : moments) page->SetMoment(told ? moment.get() : nullptr);
}

}  // namespace

void ExplorerBrowser::Listen() {
    if (events_ || !browser_) return;
    Window();  // a dialog box is known by the window before which it stands
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
    if (StartsWithIgnoreCase(url, "javascript:")) return;  // no page goes away for it
    if (Is(arguments.At(0).Object().get())) begins_until_ = 0;
    const auto moments = MomentsOf(*pages_);
    pages_->events().Add([subscribers = subscribers_, moments, url] {
        subscribers->ForEach([&](BrowserEvents& events) {
            SetMoments(moments, true);
            events.BeforeNavigate2(url);
            SetMoments(moments, false);
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
    Tell([](BrowserEvents& events) { events.NavigateComplete2(); });
}

void ExplorerBrowser::NoteComplete(const EventArguments& arguments) {
    // A frame tells through its own browser, and the window last through itself.
    const bool top = Is(arguments.At(0).Object().get());
    Tell([top](BrowserEvents& events) { events.DocumentComplete(top); });
}

void ExplorerBrowser::NoteError(const EventArguments& arguments) {
    const auto code = static_cast<long>(arguments.At(3).Number().value_or(0));
    // A page that the server sends with an error is a page all the same.
    if (!Is(arguments.At(0).Object().get()) || code >= 0) return;
    const std::string url = arguments.At(1).Text().value_or("");
    char reason[16] = "";
    std::snprintf(reason, sizeof reason, "0x%08lX", static_cast<unsigned long>(code));
    Tell([url, text = std::string(reason)](BrowserEvents& events) {
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
    if (moving_until_ == 0) Tell([](BrowserEvents& events) { events.OnQuit(); });
    // Last: it may be its own event that is being told.
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
        Tell([](BrowserEvents& events) { events.OnQuit(); });
    }
    return static_cast<bool>(browser_);
}

void ExplorerBrowser::Tell(std::function<void(BrowserEvents&)> call) {
    pages_->events().Add(
        [subscribers = subscribers_, call = std::move(call)] { subscribers->ForEach(call); });
}

}  // namespace tamrin
