#include "platform/explorer/com_calls.h"

#include <algorithm>
#include <cstdio>

#include "platform/explorer/screen_windows.h"

namespace tamrin {
namespace {

// Whether the user has already pressed what will stop the run, in a message that still waits.
bool StopWaits(const CallLimits& limits) {
    constexpr std::pair<UINT, UINT> kRanges[] = {{WM_KEYDOWN, WM_SYSKEYUP},
                                                 {WM_LBUTTONDOWN, WM_LBUTTONUP},
                                                 {WM_NCLBUTTONDOWN, WM_NCLBUTTONUP}};
    if (!limits.means_stop) return false;
    for (const auto& [first, last] : kRanges) {
        MSG message;
        if (PeekMessageW(&message, nullptr, first, last, PM_NOREMOVE | PM_NOYIELD) &&
            limits.means_stop(message))
            return true;
    }
    return false;
}

}  // namespace

bool ComCalls::Note(HRESULT result, std::string_view kind, std::string_view object,
                    std::string_view member, std::string_view detail) {
    ++count_;
    if (SUCCEEDED(result)) return true;
    if (!write_) return false;
    char code[16] = "";
    std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(result));
    std::string line;
    line.append(kind).append(" ").append(object).append(".").append(member);
    line.append(": ").append(code);
    if (!detail.empty()) line.append(" ").append(detail);
    for (char& c : line) {
        if (c == '\r' || c == '\n') c = ' ';
    }
    write_(line);
    return false;
}

void ComCalls::Drive(HWND window) {
    if (window) driven_.push_back(window);
}

void ComCalls::Leave(HWND window) {
    const auto at = std::find(driven_.begin(), driven_.end(), window);
    if (at != driven_.end()) driven_.erase(at);
}

bool ComCalls::BoxShown() const {
    return std::any_of(driven_.begin(), driven_.end(), [](HWND window) { return BoxOf(window); });
}

bool ComCalls::MustEnd(DWORD waited_ms) const {
    if (waited_ms >= limits_.longest_ms || Now() >= end_at_ || StopWaits(limits_)) return true;
    if (waited_ms >= limits_.stopped_ms && limits_.stop_requested && limits_.stop_requested())
        return true;
    return waited_ms >= limits_.box_ms && BoxShown();
}

DWORD ComCalls::Longest(DWORD limit_ms) const {
    constexpr std::uint64_t kLeastMs = 20;  // enough for a window that does answer
    const std::uint64_t now = Now();
    const std::uint64_t left = now < end_at_ ? end_at_ - now : 0;
    return static_cast<DWORD>(std::min<std::uint64_t>(limit_ms, std::max(kLeastMs, left)));
}

bool WasBegun(HRESULT result) { return SUCCEEDED(result) || result == RPC_E_CALL_CANCELED; }

bool IsDisconnected(HRESULT result) {
    switch (result) {
        case RPC_E_DISCONNECTED:
        case RPC_E_SERVER_DIED:
        case RPC_E_SERVER_DIED_DNE:
        case CO_E_OBJNOTCONNECTED:
            return true;
        default:
            return result == HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE) ||
                   result == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED);
    }
}

}  // namespace tamrin
