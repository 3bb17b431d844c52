#pragma once

#include <string>
#include <vector>

#include "platform/browser.h"

namespace tamrin::test {

// Writes down what a browser tells.
class BrowserLog : public BrowserEvents {
public:
    void DocumentComplete(bool top) override {
        lines.emplace_back(top ? "complete" : "frame complete");
    }
    void BeforeNavigate2(const std::string& url) override { lines.push_back("before " + url); }
    void NavigateComplete2() override { lines.emplace_back("shown"); }
    void NavigateError(const std::string& url, const std::string& reason) override {
        lines.push_back("error " + url + " " + reason);
    }
    void OnQuit() override { lines.emplace_back("quit"); }

    std::vector<std::string> lines;
};

}  // namespace tamrin::test
