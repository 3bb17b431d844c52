#include "platform/chromium/chromium_windows.h"

#include <algorithm>

#include "platform/chromium/browser_process.h"

namespace tamrin {
namespace {

constexpr std::uint32_t kLookMs = 1000;

// How long to wait before a place that did not answer is tried again, unless it changes. The file
// of a browser that has ended says nothing new; at an address a browser may be started.
constexpr std::uint32_t kFileRestMs = 60000;
constexpr std::uint32_t kAddressRestMs = 5000;

}  // namespace

ChromiumWindows::ChromiumWindows(Processes& processes, Files& files, Clock& clock,
                                 ChromiumWindowsSettings settings)
    : processes_(processes), files_(files), clock_(clock), settings_(std::move(settings)) {
    const std::string end = files.Separator() + std::string(kPortFile);
    sources_.push_back({settings_.profile_folder + end});
    sources_.push_back({""});
    for (const std::string& folder : ProfileFolders(processes, files.Separator())) {
        sources_.push_back({folder + end});
    }
}

void ChromiumWindows::FindBrowsers() {
    const std::uint32_t now = clock_.TickCount();
    if (looked_at_ && now - *looked_at_ < kLookMs) return;
    looked_at_ = now;
    for (Source& source : sources_) Look(source);
}

void ChromiumWindows::Look(Source& source) {
    if (source.browser && source.browser->Alive()) return;
    if (source.request) {
        if (!source.request->Poll()) return;
        source.endpoint.path = source.request->path();
        source.request.reset();
        if (!source.endpoint.path.empty()) Connect(source, source.endpoint);
        return;
    }
    const bool is_file = !source.port_file.empty();
    std::string text =
        is_file ? files_.Read(source.port_file).value_or("") : settings_.debug_address();
    const std::uint32_t rest = is_file ? kFileRestMs : kAddressRestMs;
    const std::uint32_t now = clock_.TickCount();
    if (text.empty() || (text == source.text && now - source.tried_at < rest)) return;
    source.text = std::move(text);
    source.tried_at = now;
    source.browser.reset();
    const auto endpoint = is_file ? ReadActivePort(source.text) : ReadDebugAddress(source.text);
    if (!endpoint) return;
    source.endpoint = *endpoint;
    if (endpoint->path.empty()) {
        source.request = std::make_unique<VersionRequest>(endpoint->port);
    } else {
        Connect(source, *endpoint);
    }
}

void ChromiumWindows::Connect(Source& source, const Endpoint& endpoint) {
    if (IsConnected(endpoint)) return;
    source.browser = std::make_shared<UserBrowser>(clock_, files_, endpoint);
}

bool ChromiumWindows::IsConnected(const Endpoint& endpoint) const {
    return std::any_of(sources_.begin(), sources_.end(), [&](const Source& source) {
        return source.browser && source.browser->Alive() && source.browser->endpoint() == endpoint;
    });
}

std::vector<std::shared_ptr<Browser>> ChromiumWindows::Visible() {
    FindBrowsers();
    std::vector<std::shared_ptr<Browser>> windows;
    for (const Source& source : sources_) {
        if (!source.browser) continue;
        const auto own = source.browser->Visible();
        windows.insert(windows.end(), own.begin(), own.end());
    }
    return windows;
}

std::shared_ptr<Browser> ChromiumWindows::Focused() {
    FindBrowsers();
    for (const Source& source : sources_) {
        if (source.browser) source.browser->BeginToLook();
    }
    std::shared_ptr<Browser> focused;
    for (const Source& source : sources_) {
        const auto own = source.browser ? source.browser->EndLook() : nullptr;
        if (!focused) focused = own;
    }
    return focused;
}

std::shared_ptr<Browser> ChromiumWindows::Open(const std::string& address, std::string& why) {
    bool started = false;
    const auto own = OwnBrowser(started, why);
    if (!own) return nullptr;
    auto window =
        started ? own->First(settings_.start_limit_ms) : own->Open(settings_.start_limit_ms);
    if (!window) {
        why = "ブラウザに接続できません。開いているブラウザを閉じてから、もう一度実行して下さい。";
        return nullptr;
    }
    window->SetForeground();
    if (!address.empty()) window->Navigate(address);
    return window;
}

std::shared_ptr<UserBrowser> ChromiumWindows::OwnBrowser(bool& started, std::string& why) {
    Source& own = sources_.front();
    const std::uint32_t start = clock_.TickCount();
    own.text.clear();
    Look(own);
    for (;;) {
        if (own.browser) own.browser->DeliverEvents();
        if (own.browser && own.browser->Connected()) return own.browser;
        if (!own.browser || !own.browser->Alive()) {
            const bool running =
                started || BrowserProcess::Start(processes_, files_, clock_,
                                                 {.executable = settings_.executable(),
                                                  .limit_ms = settings_.start_limit_ms,
                                                  .stop_requested = nullptr,
                                                  .profile = settings_.profile_folder},
                                                 why);
            if (!running) return nullptr;
            started = true;
            own.text.clear();
            Look(own);
        }
        if (clock_.TickCount() - start >= static_cast<std::uint32_t>(settings_.start_limit_ms)) {
            why = "ブラウザの準備ができませんでした。もう一度実行して下さい。";
            return nullptr;
        }
        clock_.Sleep(10);
    }
}

void ChromiumWindows::DeliverEvents() {
    // A handler may open a window, and so a browser.
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        const auto browser = sources_[i].browser;
        if (browser) browser->DeliverEvents();
    }
}

std::uint64_t ChromiumWindows::RoundTrips() const {
    std::uint64_t trips = 0;
    for (const Source& source : sources_) {
        if (source.browser) trips += source.browser->RoundTrips();
    }
    return trips;
}

}  // namespace tamrin
