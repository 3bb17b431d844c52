#include "platform/windows/tool_tips.h"

#include <windows.h>

#include <commctrl.h>

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr LPARAM kMaxWidth = 400;  // longer texts are wrapped

}  // namespace

ToolTips::ToolTips(HWND form)
    : form_(form),
      window_(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0,
                              0, 0, 0, form, nullptr, nullptr, nullptr)) {
    SendMessageW(window_, TTM_SETMAXTIPWIDTH, 0, kMaxWidth);
}

void ToolTips::Set(HWND control, std::string_view text) const {
    std::wstring wide = Wide(text);
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_IDISHWND;
    tool.hwnd = form_;
    tool.uId = reinterpret_cast<UINT_PTR>(control);
    tool.lpszText = wide.data();
    SendMessageW(window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (!text.empty()) SendMessageW(window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

void ToolTips::Relay(const MSG& message) const {
    if (message.message < WM_MOUSEFIRST || message.message > WM_MOUSELAST) return;
    SendMessageW(window_, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&message));
}

}  // namespace tamrin
