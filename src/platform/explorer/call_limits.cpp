#include "platform/explorer/call_limits.h"

#include <utility>

namespace tamrin {

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

}  // namespace tamrin
