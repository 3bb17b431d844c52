#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/explorer/call_limits.h"

namespace tamrin {

// How the calls into the browser went: their number, and on demand a line for each that failed.
class ComCalls {
public:
    // Gets every line from now on; none for no more. Without it nothing is written.
    void Trace(std::function<void(const std::string&)> write) { write_ = std::move(write); }

    // Counts a call and notes its failure as "get INPUT.value: 0x80020003"; answers whether it
    // succeeded. `detail` is what the object itself says of the failure.
    bool Note(HRESULT result, std::string_view kind, std::string_view object,
              std::string_view member, std::string_view detail = {});

    std::uint64_t count() const { return count_; }

    // The time by which a browser's own doings are waited for, milliseconds; the system's unless
    // another clock is given.
    std::uint64_t Now() const { return now_ ? now_() : GetTickCount64(); }
    void SetNow(std::function<std::uint64_t()> now) { now_ = std::move(now); }

    // The windows of the browsers that are driven.
    void Drive(HWND window);
    void Leave(HWND window);
    // Whether one of them shows a dialog box.
    bool BoxShown() const;

    // How long a call may take.
    void SetLimits(CallLimits limits) { limits_ = std::move(limits); }
    // Whether a call that has waited so long is to be given up.
    bool MustEnd(DWORD waited_ms) const;

private:
    std::function<void(const std::string&)> write_;
    std::uint64_t count_ = 0;
    std::function<std::uint64_t()> now_;
    std::vector<HWND> driven_;
    CallLimits limits_;
};

// Whether a call failed because the program that holds the object has ended or let go of it.
bool IsDisconnected(HRESULT result);

// Whether a call that makes the page do something has reached it: it has succeeded, or was given up
// while the page was still at it (see MustEnd).
bool WasBegun(HRESULT result);

}  // namespace tamrin
