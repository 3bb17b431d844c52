#include "platform/explorer/explorer_launcher.h"

#include <algorithm>
#include <cstdint>

#include "platform/explorer/browser_objects.h"

namespace tamrin {
namespace {

constexpr std::uint32_t kLongestWaitMs = 5000;
constexpr int kAskEveryMs = 20;

// A new browser, plain or of middle integrity; null when it cannot be made.
DispatchObject Make(ComCalls& calls, const ExplorerSources& sources, bool medium) {
    const auto& create = medium ? sources.create_medium : sources.create;
    if (!create) return {};
    HRESULT result = S_OK;
    auto browser = create(result);
    const char* const name = medium ? "InternetExplorerMedium" : "InternetExplorer";
    if (!calls.Note(result, "make", "browser", name)) return {};
    return BrowserObject(calls, std::move(browser));
}

std::vector<HWND> Frames(const ExplorerSources& sources) {
    std::vector<HWND> frames;
    for (const auto& browser : sources.browsers()) frames.push_back(FrameOf(browser));
    return frames;
}

// The browser that replaces one which was in `frame` and newer than the windows `before`.
DispatchObject Successor(const ExplorerSources& sources, const std::vector<HWND>& before,
                         HWND frame) {
    for (auto& browser : sources.browsers()) {
        const HWND found = FrameOf(browser);
        const bool old = std::find(before.begin(), before.end(), found) != before.end();
        if (found && (found == frame || !old)) return std::move(browser);
    }
    return {};
}

bool ShowsAPage(ComCalls& calls, DispatchObject object, Clock& clock) {
    ExplorerBrowser browser(calls, std::move(object));
    bool shows = false;
    const std::uint32_t start = clock.TickCount();
    if (browser.Navigate("about:blank")) {
        while (!shows && browser.Alive() && clock.TickCount() - start < kLongestWaitMs) {
            clock.Sleep(kAskEveryMs);
            clock.DoEvents();
            browser.DeliverEvents();
            shows = static_cast<bool>(browser.document());
        }
    }
    browser.Quit();
    return shows;
}

}  // namespace

std::shared_ptr<ExplorerBrowser> CreateExplorer(ComCalls& calls, const ExplorerSources& sources,
                                                std::string& why) {
    const auto before = Frames(sources);
    auto made = Make(calls, sources, *sources.medium);
    if (!made) made = Make(calls, sources, !*sources.medium);
    if (made) {
        auto browser = std::make_shared<ExplorerBrowser>(calls, std::move(made));
        browser->SetSuccessor(
            [sources, before](HWND frame) { return Successor(sources, before, frame); });
        return browser;
    }
    why = "Internet Explorer を起動できません。この PC で使えるか確認してください。";
    return nullptr;
}

bool ExplorerAnswers(ComCalls& calls, const ExplorerSources& sources, Clock& clock) {
    for (const bool medium : {false, true}) {
        auto browser = Make(calls, sources, medium);
        if (!browser || !ShowsAPage(calls, std::move(browser), clock)) continue;
        *sources.medium = medium;
        return true;
    }
    return false;
}

}  // namespace tamrin
