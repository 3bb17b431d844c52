#include "platform/chromium/devtools.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

namespace tamrin {
namespace {

using nlohmann::json;

// How often a waiting call asks whether it is to stop.
constexpr int kStopCheckMs = 50;

// The browser writes its messages in a fixed form: {"id":1,"result":... and
// {"method":"X","params":...
constexpr std::string_view kReplyStart = R"({"id":)";
constexpr std::string_view kEventStart = R"({"method":")";
constexpr std::string_view kResult = R"(,"result":)";

bool IsHex4(std::string_view text) {
    return text.size() >= 4 && std::all_of(text.begin(), text.begin() + 4,
                                           [](unsigned char c) { return std::isxdigit(c) != 0; });
}

// A page's text may hold half of a surrogate pair, which arrives as an escape that JSON does not
// allow. Replaces each with U+FFFD.
void MendSurrogates(std::string& message) {
    for (std::size_t i = 0; i + 6 <= message.size(); ++i) {
        if (message[i] != '\\') continue;
        const std::string_view escape(message.data() + i, message.size() - i);
        if (escape[1] != 'u' || !IsHex4(escape.substr(2))) {
            ++i;
            continue;
        }
        const auto kind = [](std::string_view unit) {
            unsigned value = 0;
            std::from_chars(unit.data() + 2, unit.data() + 6, value, 16);
            return value >> 10;
        };
        constexpr unsigned kHigh = 0xD800 >> 10;
        constexpr unsigned kLow = 0xDC00 >> 10;
        const std::string_view next = escape.substr(6);
        if (kind(escape) == kHigh && next.starts_with("\\u") && IsHex4(next.substr(2)) &&
            kind(next) == kLow) {
            i += 11;
        } else if (kind(escape) == kHigh || kind(escape) == kLow) {
            message.replace(i, 6, "\\ufffd");
            i += 5;
        } else {
            i += 5;
        }
    }
}

json ParseMessage(std::string& message) {
    json parsed = json::parse(message, nullptr, false);
    if (!parsed.is_discarded()) return parsed;
    MendSurrogates(message);
    return json::parse(message, nullptr, false);
}

}  // namespace

std::string TextOf(const json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_string() ? member->get<std::string>() : "";
}

json DevToolsReply::Result() const {
    if (end != End::kAnswered) return nullptr;
    std::string copy = message;
    const json parsed = ParseMessage(copy);
    const auto result = parsed.is_object() ? parsed.find("result") : parsed.end();
    return result != parsed.end() ? *result : json();
}

std::string DevToolsReply::Text(const char* pointer) const {
    const json result = Result();
    const json::json_pointer place(pointer);
    return result.contains(place) && result[place].is_string() ? result[place].get<std::string>()
                                                               : "";
}

double DevToolsReply::Number(const char* pointer) const {
    const json result = Result();
    const json::json_pointer place(pointer);
    return result.contains(place) && result[place].is_number() ? result[place].get<double>() : 0;
}

DevTools::DevTools(const Clock& clock, Patience patience)
    : clock_(clock), patience_(std::move(patience)) {}
DevTools::~DevTools() = default;

void DevTools::Use(std::unique_ptr<DevToolsChannel> channel) {
    channel_ = std::move(channel);
    closed_ = false;
}

bool DevTools::Connect(const Endpoint& endpoint, int limit_ms) {
    BeginToConnect(endpoint);
    const std::uint32_t start = clock_.TickCount();
    while (IsOpening() && clock_.TickCount() - start < static_cast<std::uint32_t>(limit_ms)) {
        channel_->Wait(kStopCheckMs);
    }
    closed_ = channel_->state() != DevToolsChannel::State::kOpen;
    if (closed_) channel_.reset();
    return !closed_;
}

void DevTools::BeginToConnect(const Endpoint& endpoint) {
    closed_ = true;
    channel_ = ConnectSocket(endpoint);
}

bool DevTools::IsOpening() const {
    return closed_ && channel_ && channel_->state() == DevToolsChannel::State::kConnecting;
}

void DevTools::Close() {
    listener_ = nullptr;
    EndAll();
    channel_.reset();
}

bool DevTools::IsOpen() const { return !closed_; }

int DevTools::Send(const std::string& session, std::string_view method, const json& params) {
    const int id = ++last_id_;
    if (closed_) return id;
    json message{{"id", id}, {"method", method}, {"params", params}};
    if (!session.empty()) message["sessionId"] = session;
    channel_->Send(message.dump(-1, ' ', false, json::error_handler_t::replace));
    return id;
}

void DevTools::Post(const std::string& session, std::string_view method, const json& params) {
    Send(session, method, params);
    if (!closed_) channel_->Wait(0);
}

void DevTools::Ask(const std::string& session, std::string_view method, const json& params,
                   std::function<void(const DevToolsReply&)> on_reply) {
    if (closed_) return;
    const int id = Send(session, method, params);
    pending_[id] = {session, std::move(on_reply), false, {}};
    channel_->Wait(0);
}

int DevTools::Begin(const std::string& session, std::string_view method, const json& params) {
    const int id = Send(session, method, params);
    pending_[id] = {session, nullptr, closed_, {}};
    return id;
}

std::vector<DevToolsReply> DevTools::Await(const std::vector<int>& calls) {
    std::vector<DevToolsReply> replies;
    bool waited = false;
    for (const int id : calls) {
        const auto call = pending_.find(id);
        if (!call->second.done) {
            waited = true;
            WaitFor(call->second);
        }
        replies.push_back(std::move(call->second.reply));
        pending_.erase(call);
    }
    round_trips_ += waited ? 1 : 0;
    return replies;
}

DevToolsReply DevTools::Call(const std::string& session, std::string_view method,
                             const json& params) {
    return std::move(Await({Begin(session, method, params)}).front());
}

void DevTools::WaitFor(Pending& call) {
    const std::uint32_t start = clock_.TickCount();
    std::uint32_t asked = start;
    HandleArrived();
    while (!call.done) {
        channel_->Wait(kStopCheckMs);
        HandleArrived();
        if (call.done) return;
        const std::uint32_t now = clock_.TickCount();
        if (now - start >= static_cast<std::uint32_t>(patience_.limit_ms)) {
            call.reply.end = DevToolsReply::End::kLate;
            return;
        }
        if (now - asked < kStopCheckMs || !patience_.stop_requested) continue;
        asked = now;
        if (patience_.stop_requested()) {
            call.reply.end = DevToolsReply::End::kStopped;
            return;
        }
    }
}

void DevTools::CutShort(std::string_view session) {
    for (auto& [id, call] : pending_) {
        if (call.on_reply || call.done || call.session != session) continue;
        call.done = true;
        call.reply.end = DevToolsReply::End::kCutShort;
    }
}

void DevTools::Forget(std::string_view session) {
    std::erase_if(pending_, [&](const auto& entry) {
        return entry.second.on_reply && entry.second.session == session;
    });
}

void DevTools::Poll() {
    if (IsOpening()) {
        channel_->Wait(0);
        closed_ = channel_->state() != DevToolsChannel::State::kOpen;
    }
    if (closed_) return;
    channel_->Wait(0);
    HandleArrived();
}

bool DevTools::WaitUntil(const std::function<bool()>& done, int limit_ms) {
    const std::uint32_t start = clock_.TickCount();
    Poll();
    if (done()) return true;
    ++round_trips_;
    while (!closed_ && clock_.TickCount() - start < static_cast<std::uint32_t>(limit_ms)) {
        channel_->Wait(std::min(limit_ms, kStopCheckMs));
        HandleArrived();
        if (done()) return true;
    }
    return false;
}

void DevTools::HandleArrived() {
    std::string message;
    while (channel_ && channel_->Next(message)) Handle(message);
    if (closed_ || channel_->state() == DevToolsChannel::State::kOpen) return;
    EndAll();
    if (listener_) listener_->OnClosed();
}

void DevTools::Handle(std::string& message) {
    const std::string_view text = message;
    if (text.starts_with(kEventStart)) return HandleEvent(message);
    if (!text.starts_with(kReplyStart)) return;
    int id = 0;
    const char* end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data() + kReplyStart.size(), end, id);
    const std::string_view rest(after, static_cast<std::size_t>(end - after));
    if (error == std::errc()) HandleReply(id, rest.starts_with(kResult), message);
}

void DevTools::HandleReply(int id, bool answered, std::string& message) {
    const auto call = pending_.find(id);
    if (call == pending_.end() || call->second.done) return;
    using End = DevToolsReply::End;
    const bool left =
        !answered && message.find("Inspected target navigated or closed") != std::string::npos;
    const End refused = left ? End::kLeft : End::kRefused;
    DevToolsReply reply{answered ? End::kAnswered : refused, std::move(message)};
    if (!call->second.on_reply) {
        call->second.reply = std::move(reply);
        call->second.done = true;
        return;
    }
    const auto on_reply = std::move(call->second.on_reply);
    pending_.erase(call);
    on_reply(reply);
}

void DevTools::HandleEvent(std::string& message) {
    if (!listener_) return;
    const std::string_view text = std::string_view(message).substr(kEventStart.size());
    if (!listener_->Wants(text.substr(0, text.find('"')))) return;
    const json event = ParseMessage(message);
    if (!event.is_object() || !event.contains("params")) return;
    listener_->OnEvent(event.value("sessionId", ""), event["method"].get<std::string>(),
                       event["params"]);
}

void DevTools::EndAll() {
    closed_ = true;
    for (auto call = pending_.begin(); call != pending_.end();) {
        call->second.done = true;
        call = call->second.on_reply ? pending_.erase(call) : std::next(call);
    }
}

}  // namespace tamrin
