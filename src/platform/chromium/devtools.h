#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/chromium/devtools_channel.h"
#include "platform/chromium/endpoint.h"
#include "platform/clock.h"

namespace tamrin {

// The answer to a call of the DevTools protocol.
struct DevToolsReply {
    enum class End {
        kAnswered,
        kRefused,    // the browser answered with an error
        kLeft,       // the page was replaced by another before it could answer
        kCutShort,   // ended by CutShort: a dialog box of the page is open, or the
                     // page is gone
        kStopped,    // the program was told to stop
        kLate,       // no answer within the limit
        kNoBrowser,  // the connection is closed
    };
    End end = End::kNoBrowser;
    std::string message;  // as it arrived

    // The "result" object; null unless kAnswered.
    nlohmann::json Result() const;

    // A text or number within the result, by its JSON pointer ("/result/value"); "" or 0 when there
    // is none.
    std::string Text(const char* pointer) const;
    double Number(const char* pointer) const;
};

// The events of the protocol that a tracker reads, and its member function for each. A tracker
// follows one concern of a tab (its frames, its loads, its dialog boxes, its user) from the
// browser's events.
template <class Tracker>
using EventHandlers =
    std::unordered_map<std::string_view,
                       void (Tracker::*)(const std::string& session, const nlohmann::json& params)>;

// Hands an event to the tracker if it reads it. The handlers throw json::exception where a browser
// of another version writes the event otherwise.
template <class Tracker>
void HandleEvent(Tracker& tracker, const std::string& session, std::string_view method,
                 const nlohmann::json& params) {
    const auto handler = Tracker::Handlers().find(method);
    if (handler != Tracker::Handlers().end()) (tracker.*handler->second)(session, params);
}

// A member of an event's parameters that is a text, "" when it is absent.
std::string TextOf(const nlohmann::json& object, const char* name);

// The DevTools protocol over one connection that all sessions share; session "" is the browser. The
// listener receives events inside Poll and inside every call that waits; it may Post and Ask, and
// must not wait.
class DevTools {
public:
    class Listener {
    public:
        virtual ~Listener() = default;
        // Events of other methods are dropped without parsing: a page that sends many costs little.
        virtual bool Wants(std::string_view method) const = 0;
        virtual void OnEvent(const std::string& session, std::string_view method,
                             const nlohmann::json& params) = 0;
        virtual void OnClosed() = 0;
    };

    struct Patience {
        int limit_ms = 30000;                  // timeout of one call
        std::function<bool()> stop_requested;  // null: never; asked while a call waits
    };

    DevTools(const Clock& clock, Patience patience);
    ~DevTools();

    DevTools(const DevTools&) = delete;
    DevTools& operator=(const DevTools&) = delete;

    // Takes an open channel.
    void Use(std::unique_ptr<DevToolsChannel> channel);

    // Connects, within `limit_ms`. False when nothing answers there.
    bool Connect(const Endpoint& endpoint, int limit_ms);

    // The same without waiting: Poll continues it until it IsOpen, or no longer IsOpening. A
    // browser that asks its user first may take as long as the user does.
    void BeginToConnect(const Endpoint& endpoint);
    bool IsOpening() const;

    // Drops the listener and the connection; every call ends at once from now on.
    void Close();
    bool IsOpen() const;

    // `listener` must outlive the connection.
    void SetListener(Listener& listener) { listener_ = &listener; }

    // Sends a call and ignores the answer.
    void Post(const std::string& session, std::string_view method, const nlohmann::json& params);

    // Sends a call and returns; `on_reply` is called with the answer when it arrives, if ever.
    void Ask(const std::string& session, std::string_view method, const nlohmann::json& params,
             std::function<void(const DevToolsReply&)> on_reply);

    // Sends a call and waits until it ends.
    DevToolsReply Call(const std::string& session, std::string_view method,
                       const nlohmann::json& params);

    // The two halves of Call. Several calls begun before the first is awaited are one round trip.
    int Begin(const std::string& session, std::string_view method, const nlohmann::json& params);
    std::vector<DevToolsReply> Await(const std::vector<int>& calls);

    // Ends the calls that wait for an answer of that session.
    void CutShort(std::string_view session);

    // Drops the callbacks of that session: whoever asked is gone.
    void Forget(std::string_view session);

    // Handles the messages that have arrived, without waiting.
    void Poll();

    // Handles messages until `done`; false when that takes longer than `limit_ms`.
    bool WaitUntil(const std::function<bool()>& done, int limit_ms);

    // How often the program has waited for the browser.
    std::uint64_t RoundTrips() const { return round_trips_; }

private:
    struct Pending {
        std::string session;
        std::function<void(const DevToolsReply&)> on_reply;  // null: somebody waits
        bool done = false;
        DevToolsReply reply;
    };

    int Send(const std::string& session, std::string_view method, const nlohmann::json& params);
    void WaitFor(Pending& call);
    void HandleArrived();
    void Handle(std::string& message);
    void HandleReply(int id, bool answered, std::string& message);
    void HandleEvent(std::string& message);
    void EndAll();

    const Clock& clock_;
    const Patience patience_;
    Listener* listener_ = nullptr;
    std::unique_ptr<DevToolsChannel> channel_;
    bool closed_ = true;
    int last_id_ = 0;
    std::map<int, Pending> pending_;
    std::uint64_t round_trips_ = 0;
};

}  // namespace tamrin
