#include "platform/chromium/launcher.h"

#include <nlohmann/json.hpp>
#include <string_view>

namespace tamrin {
namespace {

using nlohmann::json;

constexpr const char* kNoAnswer =
    "ブラウザーに接続できません。もう一度実行しても直らないときは、-browser "
    "で別のブラウザーを指定してください。";

// The bytes of a text in base64 (RFC 4648, padded); nothing when it is not base64 or empty.
std::optional<std::string> DecodeBase64(std::string_view text) {
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    while (text.ends_with('=')) text.remove_suffix(1);
    if (text.empty()) return std::nullopt;
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3 + 2);
    std::uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const auto digit = kDigits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    return bytes;
}

}  // namespace

ChromiumLauncher::ChromiumLauncher(Processes& processes, Files& files, Clock& clock,
                                   ChromiumSettings settings)
    : processes_(processes),
      files_(files),
      clock_(clock),
      settings_(std::move(settings)),
      browser_(clock, files, {settings_.answer_limit_ms, settings_.stop_requested},
               // A new window comes to the front, whoever opened it.
               [this] { in_front_ = false; }),
      input_([this] { return front_.lock(); }) {}

std::shared_ptr<Browser> ChromiumLauncher::Create(std::string& why) {
    link().devtools().Poll();
    if (!link().devtools().IsOpen() && !StartBrowser(why)) return nullptr;
    const std::string target = first_taken_ ? link().NewTarget() : FirstTarget();
    first_taken_ = true;
    const std::shared_ptr<Tab> tab = target.empty() ? nullptr : Attach(target);
    if (!tab) {
        why = kNoAnswer;
        return nullptr;
    }
    front_ = tab;
    in_front_ = true;
    return link().MakeBrowser(tab, [this, weak = std::weak_ptr<Tab>(tab)] {
        if (const auto own = weak.lock()) BringToFront(own);
    });
}

bool ChromiumLauncher::StartBrowser(std::string& why) {
    process_.reset();
    first_taken_ = false;
    process_ = BrowserProcess::Start(processes_, files_, clock_,
                                     {.executable = settings_.executable(),
                                      .limit_ms = settings_.start_limit_ms,
                                      .stop_requested = settings_.stop_requested,
                                      .outlives = settings_.outlives()},
                                     link().devtools(), why);
    if (!process_) return false;
    browser_.Discover();
    return true;
}

// The window with which the browser has started.
std::string ChromiumLauncher::FirstTarget() {
    const json targets = link().devtools().Call("", "Target.getTargets", json::object()).Result();
    if (!targets.is_object()) return "";
    for (const json& target : targets.value("targetInfos", json::array())) {
        if (target.value("type", "") == "page") return target.value("targetId", "");
    }
    return link().NewTarget();
}

std::shared_ptr<Tab> ChromiumLauncher::Attach(const std::string& target) {
    const std::string session =
        link()
            .devtools()
            .Call("", "Target.attachToTarget", {{"targetId", target}, {"flatten", true}})
            .Text("/sessionId");
    if (session.empty()) return nullptr;
    const auto tab = link().MakeTab(target, session, Tab::Owner::kProgram);
    return tab->Open() ? tab : nullptr;
}

void ChromiumLauncher::BringToFront(const std::shared_ptr<Tab>& tab) {
    if (in_front_ && front_.lock() == tab) return;
    front_ = tab;
    in_front_ = true;
    tab->agents().Post("Page.bringToFront", json::object());
}

void ChromiumLauncher::DeliverEvents() { browser_.DeliverEvents(); }

std::optional<std::string> ChromiumLauncher::Picture() {
    const auto tab = front_.lock();
    if (!tab) return std::nullopt;
    return DecodeBase64(
        tab->agents().Call("Page.captureScreenshot", {{"format", "png"}}).Text("/data"));
}

std::uint64_t ChromiumLauncher::RoundTrips() const { return browser_.RoundTrips(); }

}  // namespace tamrin
