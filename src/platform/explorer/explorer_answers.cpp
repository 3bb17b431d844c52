#include "platform/explorer/explorer_answers.h"

#include <cstdint>

#include "platform/explorer/explorer_browser.h"

namespace tamrin {
namespace {

constexpr std::uint32_t kLongestMs = 5000;
constexpr int kStepMs = 20;

bool ShowsAPage(ComCalls& calls, ComPtr<IWebBrowser2> object, Clock& clock) {
    ExplorerBrowser browser(calls, std::move(object));
    bool shows = false;
    const std::uint32_t start = clock.TickCount();
    if (browser.Navigate("about:blank")) {
        while (!shows && browser.Alive() && clock.TickCount() - start < kLongestMs) {
            clock.Sleep(kStepMs);
            clock.DoEvents();
            browser.DeliverEvents();
            shows = static_cast<bool>(browser.document());
        }
    }
    browser.Quit();
    return shows;
}

}  // namespace

bool ExplorerAnswers(ComCalls& calls, const ExplorerSources& sources, Clock& clock) {
    for (const bool medium : {false, true}) {
        const auto& create = medium ? sources.create_medium : sources.create;
        if (!create) continue;
        HRESULT result = S_OK;
        auto browser = create(result);
        const char* const name = medium ? "InternetExplorerMedium" : "InternetExplorer";
        if (!calls.Note(result, "make", "browser", name) || !browser) continue;
        if (!ShowsAPage(calls, std::move(browser), clock)) continue;
        *sources.medium = medium;
        return true;
    }
    return false;
}

}  // namespace tamrin
