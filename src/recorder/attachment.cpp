#include "recorder/attachment.h"

#include <array>
#include <charconv>
#include <utility>

#include "platform/text.h"

namespace tamrin {

Attachment::Attachment(const Globals& globals, BrowserWindows& windows, Control& txtUrl,
                       Control& txthWnd)
    : globals_(globals), windows_(windows), txtUrl_(txtUrl), txthWnd_(txthWnd) {
    txthWnd_.onDblClick = [this] { txthWnd_DblClick(); };
    txthWnd_.onClick = [this] { BringToFront(); };
    txtUrl_.onClick = [this] { BringToFront(); };
}

void Attachment::AttachActiveBrowser() {
    if (!globals_.activity.empty()) return;
    // A minimised window is not visible, and stays attached.
    if (target_ie_ ? !target_ie_->Alive() : windows_.Visible().empty()) Detach();
    const std::shared_ptr<Browser> active = windows_.Focused();
    if (!active) return;
    const std::string url = active->document().url();
    if (active != target_ie_ || url != txtUrl_.Text() || txthWnd_.Text().empty()) {
        Attach(active, url);
    }
}

void Attachment::Attach(std::shared_ptr<Browser> browser, const std::string& url) {
    changed_ = true;
    target_ie_ = std::move(browser);
    ShowHandle();
    txtUrl_.SetText(url);
}

void Attachment::Detach() {
    changed_ |= target_ie_ != nullptr;
    target_ie_.reset();
    txtUrl_.SetText("");
    txthWnd_.SetText("");
}

bool Attachment::TakeChanged() { return std::exchange(changed_, false); }

void Attachment::txthWnd_DblClick() {
    hexadecimal_ = !hexadecimal_;
    txthWnd_.SetTip(hexadecimal_ ? "ウィンドウハンドル（16進）" : "ウィンドウハンドル（十進）");
    if (target_ie_) ShowHandle();
}

void Attachment::ShowHandle() {
    std::array<char, 20> digits;
    const auto end =
        std::to_chars(digits.begin(), digits.end(), target_ie_->Handle(), hexadecimal_ ? 16 : 10)
            .ptr;
    txthWnd_.SetText(UpperCase({digits.data(), static_cast<std::size_t>(end - digits.data())}));
}

void Attachment::BringToFront() {
    if (target_ie_) target_ie_->SetForeground();
}

}  // namespace tamrin
