#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tamrin {

// When to give up a call into a browser that does not answer. The times are milliseconds since the
// call began; they are checked about ten times a second.
struct CallLimits {
    // Whether the user has stopped the run; null for never. The call then still gets `stopped_ms`,
    // because a stop reads some last values.
    std::function<bool()> stop_requested = nullptr;
    // Whether a waiting message of a key or the left mouse button will stop the run once it is
    // handled; null for never. The message stays in the queue.
    std::function<bool(const MSG&)> means_stop = nullptr;

    DWORD stopped_ms = 500;
    // The browser shows a dialog box: its call returns when the user has answered, and nobody can
    // answer while this program waits.
    DWORD box_ms = 100;
    // For every call.
    DWORD longest_ms = 30000;
    // For a window that is asked for its document by a message.
    UINT window_ms = 2000;
};

// The calls into the browsers: how many there were, which failed, and when to give one up.
class ComCalls {
public:
    // Writes a line for every failed call from now on; null to stop. Off by default.
    void Trace(std::function<void(const std::string&)> write) { write_ = std::move(write); }

    // Counts a call and traces its failure, as "get INPUT.value: 0x80020003". Answers whether it
    // succeeded. `detail` is the object's own message.
    bool Note(HRESULT result, std::string_view kind, std::string_view object,
              std::string_view member, std::string_view detail = {});

    std::uint64_t count() const { return count_; }

    // The clock for the time limits of browser windows, in milliseconds: the system's, or the one
    // set by SetNow.
    std::uint64_t Now() const { return now_ ? now_() : GetTickCount64(); }
    void SetNow(std::function<std::uint64_t()> now) { now_ = std::move(now); }

    // Adds and removes a window of the browsers that the program uses.
    void Drive(HWND window);
    void Leave(HWND window);
    // Whether one of these windows shows a dialog box.
    bool BoxShown() const;

    void SetLimits(CallLimits limits) { limits_ = std::move(limits); }
    const CallLimits& limits() const { return limits_; }
    // Whether to give up a call that has waited so long.
    bool MustEnd(DWORD waited_ms) const;
    // How long a call may wait that has this limit of its own; never 0.
    DWORD Longest(DWORD limit_ms) const;

private:
    friend class CallBudget;

    std::function<void(const std::string&)> write_;
    std::uint64_t count_ = 0;
    std::function<std::uint64_t()> now_;
    std::vector<HWND> driven_;
    CallLimits limits_;
    std::uint64_t end_at_ = UINT64_MAX;  // of a CallBudget
};

// While it lives, all calls together may wait for so long; one that has to wait after that is given
// up. Only one at a time.
class CallBudget {
public:
    CallBudget(ComCalls& calls, DWORD ms) : calls_(calls) { calls.end_at_ = calls.Now() + ms; }
    ~CallBudget() { calls_.end_at_ = UINT64_MAX; }
    CallBudget(const CallBudget&) = delete;
    CallBudget& operator=(const CallBudget&) = delete;

private:
    ComCalls& calls_;
};

// Whether a call failed because the object's process has ended or has dropped the object.
bool IsDisconnected(HRESULT result);

// Whether a call that makes the page act has reached the page: it succeeded, or was given up while
// the page was still working (MustEnd).
bool WasBegun(HRESULT result);

}  // namespace tamrin
