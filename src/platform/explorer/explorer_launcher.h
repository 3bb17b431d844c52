#pragma once

#include <memory>
#include <string>

#include "platform/browser.h"
#include "platform/clock.h"
#include "platform/explorer/explorer_windows.h"

namespace tamrin {

// Whether this machine has an Internet Explorer that shows pages. Makes an invisible one, opens an
// empty page in it and quits it. When that does not give a document, tries a browser of middle
// integrity; if that works, `sources` makes such ones from then on. Handles events while it waits,
// for at most five seconds each.
bool ExplorerAnswers(ComCalls& calls, const ExplorerSources& sources, Clock& clock);

// Makes a new browser window. On failure null, and `why` says in Japanese what to do.
std::shared_ptr<ExplorerBrowser> CreateExplorer(ComCalls& calls, const ExplorerSources& sources,
                                                std::string& why);

// Opens a window of Internet Explorer for each run, one of `windows`, which delivers its events.
class ExplorerLauncher : public BrowserLauncher {
public:
    // `input` is the mouse and the keyboard of this machine.
    ExplorerLauncher(ExplorerWindows& windows, Input& input) : windows_(windows), input_(input) {}

    std::shared_ptr<Browser> Create(std::string& why) override { return windows_.Create(why); }
    Input& input() override { return input_; }

private:
    ExplorerWindows& windows_;
    Input& input_;
};

}  // namespace tamrin
