#include "platform/windows/clipboard.h"

#include "platform/windows/handle.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr int kOpenAttempts = 20;
constexpr DWORD kOpenPauseMs = 10;

// The opened clipboard. Other programs open it whenever it changes, so opening it is retried.
class OpenClipboardGuard {
public:
    explicit OpenClipboardGuard(HWND owner) {
        for (int i = 0; i < kOpenAttempts && !open_; ++i) {
            if (i > 0) Sleep(kOpenPauseMs);
            open_ = OpenClipboard(owner) != 0;
        }
    }
    ~OpenClipboardGuard() {
        if (open_) CloseClipboard();
    }
    OpenClipboardGuard(const OpenClipboardGuard&) = delete;
    OpenClipboardGuard& operator=(const OpenClipboardGuard&) = delete;

    explicit operator bool() const { return open_; }

private:
    bool open_ = false;
};

using OwnedMemory = Owned<HGLOBAL, GlobalFree>;

}  // namespace

std::string ReadClipboard(HWND owner) {
    const OpenClipboardGuard clipboard(owner);
    if (!clipboard) return "";
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    const auto* const text = data ? static_cast<const wchar_t*>(GlobalLock(data)) : nullptr;
    if (!text) return "";
    // The text ends with the first null character, or with the memory that another program gave.
    const std::wstring_view all(text, GlobalSize(data) / sizeof(wchar_t));
    std::string utf8 = Utf8(all.substr(0, all.find(L'\0')));
    GlobalUnlock(data);
    return utf8;
}

bool WriteClipboard(HWND owner, std::string_view text) {
    const std::wstring wide = Wide(text);
    const std::size_t bytes = (wide.size() + 1) * sizeof(wchar_t);
    OwnedMemory memory(GlobalAlloc(GMEM_MOVEABLE, bytes));
    void* const target = memory ? GlobalLock(memory.get()) : nullptr;
    if (!target) return false;
    CopyMemory(target, wide.c_str(), bytes);
    GlobalUnlock(memory.get());

    const OpenClipboardGuard clipboard(owner);
    if (!clipboard || !EmptyClipboard()) return false;
    // On success the clipboard owns the memory.
    const HGLOBAL given = memory.release();
    if (SetClipboardData(CF_UNICODETEXT, given)) return true;
    GlobalFree(given);
    return false;
}

}  // namespace tamrin
