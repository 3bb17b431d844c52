#include "platform/explorer/explorer_launcher.h"

#include <algorithm>

#include "platform/explorer/shell_list.h"

namespace tamrin {

namespace {

std::vector<HWND> Frames(ComCalls& calls, const ExplorerSources& sources) {
    std::vector<HWND> frames;
    for (const auto& browser : sources.browsers()) frames.push_back(FrameOf(calls, *browser.get()));
    return frames;
}

// The browser that has taken the place of one that was made after `before` and stood in `frame`.
ComPtr<IWebBrowser2> Successor(ComCalls& calls, const ExplorerSources& sources,
                               const std::vector<HWND>& before, HWND frame) {
    for (auto& browser : sources.browsers()) {
        const HWND found = FrameOf(calls, *browser.get());
        const bool old = std::find(before.begin(), before.end(), found) != before.end();
        if (found && (found == frame || !old)) return std::move(browser);
    }
    return nullptr;
}

ComPtr<IWebBrowser2> MakeEither(ComCalls& calls, const ExplorerSources& sources) {
    ComPtr<IWebBrowser2> browser;
    for (const bool medium : {*sources.medium, !*sources.medium}) {
        const auto& create = medium ? sources.create_medium : sources.create;
        if (!create || browser) continue;
        HRESULT result = S_OK;
        browser = create(result);
        const char* const name = medium ? "InternetExplorerMedium" : "InternetExplorer";
        if (!calls.Note(result, "make", "browser", name)) browser = nullptr;
    }
    return browser;
}

}  // namespace

std::shared_ptr<ExplorerBrowser> CreateExplorer(ComCalls& calls, const ExplorerSources& sources,
                                                std::string& why) {
    const auto before = Frames(calls, sources);
    if (auto made = MakeEither(calls, sources)) {
        auto browser = std::make_shared<ExplorerBrowser>(calls, std::move(made));
        browser->SetSuccessor([&calls, sources, before](HWND frame) {
            return Successor(calls, sources, before, frame);
        });
        return browser;
    }
    why = "Internet Explorer を起動できません。この PC で使えるか確認して下さい。";
    return nullptr;
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
