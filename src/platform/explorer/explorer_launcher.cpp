#include "platform/explorer/explorer_launcher.h"

namespace tamrin {

std::shared_ptr<ExplorerBrowser> CreateExplorer(ComCalls& calls, const ExplorerSources& sources,
                                                std::string& why) {
    HRESULT result = S_OK;
    auto browser = sources.create(result);
    if (calls.Note(result, "make", "browser", "InternetExplorer") && browser)
        return std::make_shared<ExplorerBrowser>(calls, std::move(browser));
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
