#include "explorer/explorer_machine.h"

#include "platform/explorer/dispatch_object.h"

namespace tamrin::test {
namespace {

constexpr long kNoServer = static_cast<long>(0x800C0005);

std::string Absolute(const std::string& base, const std::string& address) {
    if (address.find(':') != std::string::npos) return address;
    return base.substr(0, base.find('/', 7)) + address;
}

}  // namespace

LoadingBrowser::LoadingBrowser(PageWorld& world, const Server& server, const int& mode)
    : world_(world), server_(server), mode_(mode) {
    page = world_.Open("", mode_, "about:blank");
    window = GetDesktopWindow();
}

STDMETHODIMP LoadingBrowser::Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) {
    const std::string address = Variant(*url).Text().value_or("");
    if (!address.starts_with("javascript:")) Go(address);
    return S_OK;
}

STDMETHODIMP LoadingBrowser::Quit() {
    waiting_.clear();
    quits_ = true;
    return S_OK;
}

void LoadingBrowser::Go(const std::string& address) {
    waiting_ = {address};
    busy = true;
    ready_state = 1;
}

void LoadingBrowser::Tick() {
    if (quits_) {
        quits_ = false;
        page = nullptr;
        ended_ = true;
        FireOnQuit();
        return;
    }
    if (waiting_.empty()) return;
    const std::string address = waiting_.front();
    waiting_.pop_front();
    Load(address);
}

void LoadingBrowser::Load(std::string url) {
    FireBeforeNavigate2(url);
    Reply reply = server_(url);
    for (int hop = 0; hop < 5 && !reply.location.empty(); ++hop) {
        url = Absolute(url, reply.location);
        reply = server_(url);
    }
    busy = false;
    ready_state = 4;
    if (reply.status == 204) return;
    if (reply.status == 0 && url != "about:blank") FireNavigateError(url, kNoServer);
    page = world_.Open(reply.body, mode_, url);
    world_.Run("page.__focused = true");
    FireNavigateComplete2(url);
    if (world_.Ask("page.__frames.length") != "0") {
        const ComPtr<BrowserDouble> frame(new BrowserDouble);
        FireDocumentComplete(url, frame.get());
    }
    FireDocumentComplete(url);
}

ExplorerMachine::ExplorerMachine(ComCalls& calls, Server server)
    : calls_(calls), server_(std::move(server)) {
    world.fetch = [this](const std::string& url) -> std::optional<std::string> {
        Reply reply = server_(url);
        return reply.status == 200 ? std::optional(std::move(reply.body)) : std::nullopt;
    };
    world.navigate = [this](IDispatch* document, const std::string& url) {
        const auto page = world.objects.Wrap(document);
        for (const auto& window : windows) {
            if (window->Shows(page.get())) window->Go(url);
        }
    };
    world.objects.browser_of = [this](IDispatch* window) {
        const ComPtr<BrowserDouble> frame(new BrowserDouble);
        const DispatchObject script(ComPtr<IDispatch>(window),
                                    std::make_shared<ObjectType>(calls_, "window"));
        frame->page = world.objects.Wrap(script.Get("document").Object().get());
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
                windows.emplace_back(new LoadingBrowser(world, server_, mode));
                return ComPtr<IWebBrowser2>(windows.back().get());
            }};
}

LoadingBrowser& ExplorerMachine::Open(const std::string& address) {
    windows.emplace_back(new LoadingBrowser(world, server_, mode));
    windows.back()->Go(address);
    return *windows.back().get();
}

void ExplorerMachine::Tick() {
    const auto now = windows;
    for (const auto& window : now) window->Tick();
    std::erase_if(windows, [](const auto& window) { return window->ended(); });
}

}  // namespace tamrin::test
