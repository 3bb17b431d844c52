#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "explorer/browser_double.h"
#include "explorer/page_double.h"
#include "platform/explorer/explorer_windows.h"
#include "platform/input.h"

namespace tamrin::test {

// The mouse and the keyboard where there are no windows for them to reach.
class NoInput : public Input {
public:
    ScreenPoint GetCursorPos() override { return {}; }
    void SetCursorPos(ScreenPoint) override {}
    void LeftButton(bool) override {}
    bool SendKeys(const std::vector<KeyStroke>&) override { return false; }
};

// What a server answers.
struct Reply {
    int status = 0;  // 0 when nobody answers
    std::string body{};
};

using Server = std::function<Reply(const std::string& url)>;

class ExplorerMachine;

// A window that loads its pages from a server and fires its events as a browser does.
class LoadingBrowser : public BrowserDouble {
public:
    explicit LoadingBrowser(ExplorerMachine& machine);

    STDMETHODIMP Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override;
    STDMETHODIMP Quit() override;

    // Begins to load an address.
    void Go(const std::string& address);
    // Does what it was asked for since the last time. False when it has ended.
    bool Tick();

private:
    void Load(const std::string& url);

    ExplorerMachine& machine_;
    std::optional<std::string> next_;
    bool quits_ = false;
};

// A machine with the browser: its windows, and the pages that a server gives them.
class ExplorerMachine {
public:
    explicit ExplorerMachine(Server its_server);

    // For the program: the shell lists all windows.
    ExplorerSources Sources();
    // A window that the user has opened.
    LoadingBrowser& Open(const std::string& address);
    // Lets all windows do what they were asked for. To be called in every DoEvents.
    void Tick();

    const Server server;
    PageWorld world;
    std::vector<ComPtr<LoadingBrowser>> windows;  // that have not ended
    int mode = 9;                                 // the document mode of the pages to come
};

}  // namespace tamrin::test
