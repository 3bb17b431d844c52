#include "explorer/explorer_machine.h"

namespace tamrin::test {

LoadingBrowser::LoadingBrowser(ExplorerMachine& machine) : machine_(machine) {
    page = machine_.world.Open("", machine_.mode, "about:blank").document();
    window = GetDesktopWindow();
}

STDMETHODIMP LoadingBrowser::Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) {
    Go(Variant(*url).Text().value_or(""));
    return S_OK;
}

STDMETHODIMP LoadingBrowser::Quit() {
    quits_ = true;
    return S_OK;
}

void LoadingBrowser::Go(const std::string& address) {
    next_ = address;
    busy = VARIANT_TRUE;
    ready_state = READYSTATE_LOADING;
}

bool LoadingBrowser::Tick() {
    if (quits_) {
        page = nullptr;
        Fire(DISPID_ONQUIT);
    } else if (next_) {
        Load(*std::exchange(next_, std::nullopt));
    }
    return !quits_;
}

void LoadingBrowser::Load(const std::string& url) {
    constexpr int kNoServer = static_cast<int>(0x800C0005);
    Fire(DISPID_BEFORENAVIGATE2, url);
    const Reply reply = machine_.server(url);
    busy = VARIANT_FALSE;
    ready_state = READYSTATE_COMPLETE;
    if (reply.status == 204) return;
    if (reply.status == 0 && url != "about:blank")
        Fire(DISPID_NAVIGATEERROR, url, nullptr, kNoServer);
    PageDouble& loaded = machine_.world.Open(reply.body, machine_.mode, url);
    loaded.focused = true;
    page = loaded.document();
    Fire(DISPID_NAVIGATECOMPLETE2, url);
    if (!loaded.All([](const Node& node) { return node.IsFrame(); }).empty()) {
        const ComPtr<BrowserDouble> frame(new BrowserDouble);
        Fire(DISPID_DOCUMENTCOMPLETE, url, frame.get());
    }
    Fire(DISPID_DOCUMENTCOMPLETE, url);
}

ExplorerMachine::ExplorerMachine(Server its_server) : server(std::move(its_server)) {
    world.fetch = [this](const std::string& url) -> std::optional<std::string> {
        const Reply reply = server(url);
        return reply.status == 200 ? std::optional(reply.body) : std::nullopt;
    };
    world.navigate = [this](PageDouble& page, const std::string& url) {
        for (const auto& window : windows) {
            if (SameObject(window->page.get(), page.document().get())) window->Go(url);
        }
    };
    world.browser_of = [](PageDouble& page) {
        const ComPtr<BrowserDouble> frame(new BrowserDouble);
        frame->page = page.document();
        return ComPtr<IWebBrowser2>(frame.get());
    };
}

ExplorerSources ExplorerMachine::Sources() {
    return {[this] {
                std::vector<ComPtr<IWebBrowser2>> listed;
                for (const auto& window : windows) listed.emplace_back(window.get());
                return listed;
            },
            [] { return std::vector<HWND>{GetDesktopWindow()}; },
            [this](HRESULT& failure) {
                failure = S_OK;
                windows.emplace_back(new LoadingBrowser(*this));
                return ComPtr<IWebBrowser2>(windows.back().get());
            }};
}

LoadingBrowser& ExplorerMachine::Open(const std::string& address) {
    windows.emplace_back(new LoadingBrowser(*this));
    windows.back()->Go(address);
    return *windows.back().get();
}

void ExplorerMachine::Tick() {
    std::erase_if(windows, [](const ComPtr<LoadingBrowser>& window) { return !window->Tick(); });
}

}  // namespace tamrin::test
