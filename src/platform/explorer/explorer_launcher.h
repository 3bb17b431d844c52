#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "platform/explorer/explorer_windows.h"

namespace tamrin {

// A new browser window; null, with what to do in `why`, when it cannot be had.
std::shared_ptr<ExplorerBrowser> CreateExplorer(ComCalls& calls, const ExplorerSources& sources,
                                                std::string& why);

// Opens a window of Internet Explorer for each run.
class ExplorerLauncher : public BrowserLauncher {
public:
    // `input` is the mouse and the keyboard of this machine.
    ExplorerLauncher(ComCalls& calls, ExplorerSources sources, Input& input)
        : calls_(calls), sources_(std::move(sources)), input_(input) {}

    std::shared_ptr<Browser> Create(std::string& why) override;
    Input& input() override { return input_; }

    // Tells what the windows that the program keeps have told. To be called by Clock::DoEvents.
    void DeliverEvents();

private:
    ComCalls& calls_;
    ExplorerSources sources_;
    Input& input_;
    std::vector<std::weak_ptr<ExplorerBrowser>> created_;
};

}  // namespace tamrin
