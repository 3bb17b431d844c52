#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "state/globals.h"

namespace tamrin {

// The browsers of this machine as if they were one: what Options.txt says decides for each new
// window which of them it is.
class BrowserChoice : public BrowserLauncher, public BrowserWindows {
public:
    // A kind of browser that the program drives.
    struct Kind {
        BrowserLauncher& launcher;
        BrowserWindows& windows;
    };

    // `answers` is asked once, when it first matters, whether there is an Internet Explorer that
    // shows pages; asking may take seconds.
    BrowserChoice(const Options& options, Kind explorer, Kind chromium,
                  std::function<bool()> answers)
        : options_(options),
          explorer_(explorer),
          chromium_(chromium),
          answers_(std::move(answers)) {}

    // Where no kind is chosen, or the command line names a browser, its path tells the kind.
    std::shared_ptr<Browser> Create(std::string& why) override;
    // That of the browser created last.
    Input& input() override;

    // Those of the chosen kind; of both, Internet Explorer's first, where none is.
    std::vector<std::shared_ptr<Browser>> Visible() override;
    std::shared_ptr<Browser> Focused() override;
    std::shared_ptr<Browser> Open(const std::string& address, std::string& why) override;

private:
    bool UsesExplorer();

    const Options& options_;
    const Kind explorer_;
    const Kind chromium_;
    const std::function<bool()> answers_;
    std::optional<bool> explorer_answers_;
    bool created_explorer_ = false;
};

}  // namespace tamrin
