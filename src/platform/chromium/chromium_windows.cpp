#include "platform/chromium/chromium_windows.h"

#include <algorithm>

namespace tamrin {
namespace {

constexpr std::uint32_t kLookMs = 1000;

// How long a call may take; the user's pages are many, and some of them may hang.
constexpr int kAnswerLimitMs = 10000;

// How long to wait before a place that did not answer is tried again, unless it changes. The file
// of a browser that has ended says nothing new; at an address a browser may be started.
constexpr std::uint32_t kFileRestMs = 60000;
constexpr std::uint32_t kAddressRestMs = 5000;

}  // namespace

ChromiumWindows::ChromiumWindows(Processes& processes, Files& files, Clock& clock,
                                 ChromiumWindowsSettings settings)
    : processes_(processes), files_(files), clock_(clock), settings_(std::move(settings)) {
    const std::string end = files.Separator() + std::string(kPortFile);
    sources_.emplace_back();
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
    source.browser = Make();
    source.browser->link().devtools().BeginToConnect(endpoint);
}

bool ChromiumWindows::IsConnected(const Endpoint& endpoint) const {
    return std::any_of(sources_.begin(), sources_.end(), [&](const Source& source) {
        return source.browser && source.browser->Alive() && source.endpoint == endpoint;
    });
}

std::shared_ptr<UserBrowser> ChromiumWindows::Make() const {
    return std::make_shared<UserBrowser>(clock_, files_,
                                         DevTools::Patience{kAnswerLimitMs, nullptr}, nullptr);
}

std::vector<UserBrowser*> ChromiumWindows::Connections() const {
    std::vector<UserBrowser*> connections;
    if (own_) connections.push_back(own_.get());
    for (const Source& source : sources_) {
        if (source.browser) connections.push_back(source.browser.get());
    }
    if (settings_.played) connections.push_back(settings_.played);
    return connections;
}

std::vector<std::shared_ptr<Browser>> ChromiumWindows::Visible() {
    FindBrowsers();
    std::vector<std::shared_ptr<Browser>> windows;
    for (UserBrowser* browser : Connections()) {
        const auto own = browser->Visible();
        windows.insert(windows.end(), own.begin(), own.end());
    }
    return windows;
}

std::shared_ptr<Browser> ChromiumWindows::Focused() {
    FindBrowsers();
    const auto connections = Connections();
    for (UserBrowser* browser : connections) browser->BeginToLook();
    std::shared_ptr<Browser> focused;
    for (UserBrowser* browser : connections) {
        const auto own = browser->EndLook();
        if (!focused) focused = own;
    }
    return focused;
}

std::shared_ptr<Browser> ChromiumWindows::Open(const std::string& address, std::string& why) {
    const bool running = own_ && own_->Connected();
    if (!running && !StartOwn(why)) return nullptr;
    auto window =
        running ? own_->Open(settings_.start_limit_ms) : own_->First(settings_.start_limit_ms);
    if (!window) {
        why = "ブラウザーの準備ができませんでした。もう一度実行してください。";
        return nullptr;
    }
    window->SetForeground();
    if (!address.empty()) window->Navigate(address);
    return window;
}

bool ChromiumWindows::StartOwn(std::string& why) {
    own_ = Make();
    process_.reset();
    process_ = BrowserProcess::Start(processes_, files_, clock_,
                                     {.executable = settings_.executable(),
                                      .limit_ms = settings_.start_limit_ms,
                                      .stop_requested = settings_.stop_requested,
                                      .profile = settings_.profile_folder,
                                      .outlives = settings_.outlives()},
                                     own_->link().devtools(), why);
    if (process_) own_->Discover();
    return process_ != nullptr;
}

void ChromiumWindows::DeliverEvents() {
    // A handler may open a window, and so a browser.
    if (const auto own = own_) own->DeliverEvents();
    for (std::size_t i = 0; i < sources_.size(); ++i) {
        const auto browser = sources_[i].browser;
        if (browser) browser->DeliverEvents();
    }
}

std::uint64_t ChromiumWindows::RoundTrips() const {
    std::uint64_t trips = 0;
    for (const UserBrowser* browser : Connections()) trips += browser->RoundTrips();
    return trips;
}

}  // namespace tamrin
