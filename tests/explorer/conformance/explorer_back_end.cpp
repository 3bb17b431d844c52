#include <boost/asio/ip/tcp.hpp>
#include <deque>
#include <sstream>

#include "conformance/back_end.h"
#include "explorer/browser_double.h"
#include "explorer/page_world.h"
#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/explorer_launcher.h"
#include "platform/windows/clock.h"

namespace tamrin::conformance {
namespace {

using test::BrowserDouble;
using test::PageWorld;

// The documents know the events of the standards and those of old.
constexpr int kMode = 9;

struct Reply {
    int status = 0;  // 0 when nobody answers
    std::string location;
    std::string body;
};

// Asks a server of this machine. The doubles wait for the answer.
Reply Fetch(const std::string& url) {
    Reply reply;
    constexpr std::string_view kScheme = "http://";
    const auto slash = url.find('/', kScheme.size());
    if (!url.starts_with(kScheme)) return reply;
    const std::string host = url.substr(kScheme.size(), slash - kScheme.size());
    const std::string path = slash == std::string::npos ? "/" : url.substr(slash);
    boost::asio::ip::tcp::iostream stream;
    stream.expires_after(std::chrono::seconds(5));
    stream.connect("127.0.0.1", host.substr(host.find(':') + 1));
    stream << "GET " << path.substr(0, path.find('#')) << " HTTP/1.0\r\nHost: " << host
           << "\r\n\r\n"
           << std::flush;
    std::string line;
    std::getline(stream, line);
    if (line.size() < 12) return reply;
    reply.status = std::stoi(line.substr(9, 3));
    while (std::getline(stream, line) && line != "\r") {
        if (line.starts_with("Location: ")) reply.location = line.substr(10, line.size() - 11);
    }
    std::ostringstream body;
    body << stream.rdbuf();
    reply.body = body.str();
    return reply;
}

std::string Absolute(const std::string& base, const std::string& address) {
    if (address.find(':') != std::string::npos) return address;
    return base.substr(0, base.find('/', 7)) + address;
}

// A window that loads its pages from the suite's server and tells of it as a browser does.
class LoadingWindow : public BrowserDouble {
public:
    explicit LoadingWindow(PageWorld& world) : world_(world) {
        page = world_.Open("", kMode, "about:blank");
        window = GetDesktopWindow();
    }

    STDMETHODIMP Navigate2(VARIANT* url, VARIANT*, VARIANT*, VARIANT*, VARIANT*) override {
        const std::string address = Variant(*url).Text().value_or("");
        if (!address.starts_with("javascript:")) Go(address);
        return S_OK;
    }
    STDMETHODIMP Quit() override {
        waiting_.clear();
        quits_ = true;
        return S_OK;
    }

    void Go(const std::string& address) {
        waiting_ = {address};
        busy = true;
        ready_state = 1;
    }
    bool Shows(IDispatch* document) const { return SameObject(page.get(), document); }

    // Does what it was asked for since the last time.
    void Tick() {
        if (quits_) {
            quits_ = false;
            page = nullptr;
            FireOnQuit();
            return;
        }
        if (waiting_.empty()) return;
        const std::string address = waiting_.front();
        waiting_.pop_front();
        Load(address);
    }

private:
    void Load(std::string url) {
        FireBeforeNavigate2(url);
        Reply reply = Fetch(url);
        for (int hop = 0; hop < 5 && !reply.location.empty(); ++hop) {
            url = Absolute(url, reply.location);
            reply = Fetch(url);
        }
        busy = false;
        ready_state = 4;
        if (reply.status == 204) return;
        if (reply.status == 0 && url != "about:blank") FireNavigateError(url, kNoServer);
        page = world_.Open(reply.body, kMode, url);
        world_.Run("page.__focused = true");
        FireNavigateComplete2(url);
        if (world_.Ask("page.__frames.length") != "0") {
            const ComPtr<BrowserDouble> frame(new BrowserDouble);
            FireDocumentComplete(url, frame.get());
        }
        FireDocumentComplete(url);
    }

    static constexpr long kNoServer = static_cast<long>(0x800C0005);

    PageWorld& world_;
    std::deque<std::string> waiting_;
    bool quits_ = false;
};

// There are no windows for it to reach.
class NoInput : public Input {
public:
    ScreenPoint GetCursorPos() override { return {}; }
    void SetCursorPos(ScreenPoint) override {}
    void LeftButton(bool) override {}
    bool SendKeys(const std::vector<KeyStroke>&) override { return false; }
};

class ExplorerBackEnd : public BackEnd {
public:
    ExplorerBackEnd() {
        clock_.AddSource([this] {
            for (const auto& window : windows_) window->Tick();
            launcher_.DeliverEvents();
        });
        world_.fetch = [](const std::string& url) -> std::optional<std::string> {
            Reply reply = Fetch(url);
            return reply.status == 200 ? std::optional(std::move(reply.body)) : std::nullopt;
        };
        world_.navigate = [this](IDispatch* document, const std::string& url) {
            const auto page = world_.objects.Wrap(document);
            for (const auto& window : windows_) {
                if (window->Shows(page.get())) window->Go(url);
            }
        };
        world_.objects.browser_of = [this](IDispatch* window) {
            const ComPtr<BrowserDouble> frame(new BrowserDouble);
            const DispatchObject script(ComPtr<IDispatch>(window),
                                        std::make_shared<ObjectType>(calls_, "window"));
            frame->page = world_.objects.Wrap(script.Get("document").Object().get());
            return ComPtr<IWebBrowser2>(frame.get());
        };
    }

    BrowserLauncher& launcher() override { return launcher_; }
    Clock& clock() override { return clock_; }
    std::uint64_t RoundTrips() override { return calls_.count(); }

private:
    ExplorerSources Sources() {
        return {[] { return std::vector<ComPtr<IWebBrowser2>>(); },
                [] { return std::vector<HWND>(); },
                [this](HRESULT& failure) {
                    failure = S_OK;
                    windows_.emplace_back(new LoadingWindow(world_));
                    return ComPtr<IWebBrowser2>(windows_.back().get());
                }};
    }

    ComCalls calls_;
    WindowsClock clock_;
    PageWorld world_;
    NoInput input_;
    std::vector<ComPtr<LoadingWindow>> windows_;
    ExplorerLauncher launcher_{calls_, Sources(), input_};
};

}  // namespace

std::unique_ptr<BackEnd> MakeBackEnd() { return std::make_unique<ExplorerBackEnd>(); }

}  // namespace tamrin::conformance
