#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "explorer/browser_double.h"
#include "explorer/page_world.h"
#include "platform/explorer/com_calls.h"
#include "platform/explorer/explorer_windows.h"

namespace tamrin::test {

// What a server answers.
struct Reply {
    int status = 0;  // 0 when nobody answers
    std::string location{};
    std::string body{};
};

using Server = std::function<Reply(const std::string& url)>;

// A window that loads its pages from a server and tells of it as a browser does.
class LoadingBrowser : public BrowserDouble {
public:
    LoadingBrowser(PageWorld& world, const Server& server, const int& mode);

    STDMETHODIMP Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override;
    STDMETHODIMP Quit() override;

    // Begins to load an address.
    void Go(const std::string& address);
    bool Shows(IDispatch* document) const { return SameObject(page.get(), document); }

    bool ended() const { return ended_; }

    // Does what it was asked for since the last time.
    void Tick();

private:
    void Load(std::string url);

    PageWorld& world_;
    const Server& server_;
    const int& mode_;
    std::deque<std::string> waiting_;
    bool quits_ = false;
    bool ended_ = false;
};

// A machine with the browser: its windows, and the pages that a server gives them.
class ExplorerMachine {
public:
    ExplorerMachine(ComCalls& calls, Server server);

    // For the program: the shell lists all windows.
    ExplorerSources Sources();
    // A window that the user has opened.
    LoadingBrowser& Open(const std::string& address);
    // What all windows were asked for happens. To be called in every DoEvents.
    void Tick();

    PageWorld world;
    std::vector<ComPtr<LoadingBrowser>> windows;  // that have not ended
    // The document mode of the pages to come. In that of 9 they know the events of the standards
    // and those of old.
    int mode = 9;

private:
    ComCalls& calls_;
    const Server server_;
};

}  // namespace tamrin::test
