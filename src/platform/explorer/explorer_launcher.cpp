#include "platform/explorer/explorer_launcher.h"

#include <algorithm>
#include <cstdint>

#include "platform/explorer/browser_objects.h"

namespace tamrin {
namespace {

constexpr std::uint32_t kLongestWaitMs = 5000;
constexpr int kAskEveryMs = 20;

// A new browser, plain or of middle integrity; null when it cannot be made.
ComPtr<IWebBrowser2> Make(ComCalls& calls, const ExplorerSources& sources, bool medium) {
    const auto& create = medium ? sources.create_medium : sources.create;
    if (!create) return nullptr;
    HRESULT result = S_OK;
    auto browser = create(result);
    const char* const name = medium ? "InternetExplorerMedium" : "InternetExplorer";
    return calls.Note(result, "make", "browser", name) ? std::move(browser) : nullptr;
}

std::vector<HWND> Frames(ComCalls& calls, const ExplorerSources& sources) {
    std::vector<HWND> frames;
    for (const auto& browser : sources.browsers()) frames.push_back(FrameOf(calls, *browser.get()));
    return frames;
}

// The browser that replaces one which was in `frame` and newer than the windows `before`.
ComPtr<IWebBrowser2> Successor(ComCalls& calls, const ExplorerSources& sources,
                               const std::vector<HWND>& before, HWND frame) {
    for (auto& browser : sources.browsers()) {
        const HWND found = FrameOf(calls, *browser.get());
        const bool old = std::find(before.begin(), before.end(), found) != before.end();
        if (found && (found == frame || !old)) return std::move(browser);
    }
    return nullptr;
}

bool ShowsAPage(ComCalls& calls, ComPtr<IWebBrowser2> object, Clock& clock) {
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
    const auto before = Frames(calls, sources);
    auto made = Make(calls, sources, *sources.medium);
    if (!made) made = Make(calls, sources, !*sources.medium);
    if (made) {
        auto browser = std::make_shared<ExplorerBrowser>(calls, std::move(made));
        browser->SetSuccessor([&calls, sources, before](HWND frame) {
            return Successor(calls, sources, before, frame);
        });
        return browser;
    }
    why = "Internet Explorer を起動できません。この PC で使えるか確認して下さい。";
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

std::shared_ptr<Browser> ExplorerLauncher::Create(std::string& why) {
    auto browser = CreateExplorer(calls_, sources_, why);
    if (!browser) return nullptr;
    std::erase_if(created_, [](const auto& window) { return window.expired(); });
    created_.push_back(browser);
    return browser;
}

void ExplorerLauncher::DeliverEvents() {
    const auto created = created_;
    for (const auto& window : created) {
        if (const auto browser = window.lock()) browser->DeliverEvents();
    }
}

}  // namespace tamrin
