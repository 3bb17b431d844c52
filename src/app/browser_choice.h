#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/browser.h"
#include "state/globals.h"

namespace tamrin {

// Stands before both kinds of browser as if they were one. Options.txt decides for each new window
// which kind it is.
class BrowserChoice : public BrowserLauncher, public BrowserWindows {
public:
    // A kind of browser that the program drives.
    struct Kind {
        BrowserLauncher& launcher;
        BrowserWindows& windows;
    };

    // `answers` tells whether there is an Internet Explorer that shows pages. It is called at most
    // once, and only when no kind is chosen, because it may take seconds.
    BrowserChoice(const Options& options, Kind explorer, Kind chromium,
                  std::function<bool()> answers)
        : options_(options),
          explorer_(explorer),
          chromium_(chromium),
          answers_(std::move(answers)) {}

    // The kind follows from the browser's path where no kind is chosen, or where the command line
    // names a browser.
    std::shared_ptr<Browser> Create(std::string& why) override;
    // The input of the browser that was created last.
    Input& input() override;

    // The windows of the chosen kind; where none is chosen, those of both kinds, Internet
    // Explorer's first.
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
