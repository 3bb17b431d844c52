#include "platform/windows/combo_box.h"

#include "platform/windows/wide.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

constexpr int kListHeight = 240;  // of the open list, pixels of the tables
constexpr int kBorders = 6;       // what the box takes above and below its text

}  // namespace

void WindowComboBox::SetItems(std::vector<std::string> items) {
    const std::string text = Text();
    Send(CB_RESETCONTENT);
    items_ = std::move(items);
    for (const std::string& item : items_) {
        Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(item).c_str()));
    }
    PutText(text);
}

void WindowComboBox::Notified(UINT code) {
    if (muted()) return;
    if (code == CBN_EDITCHANGE) {
        Raise(onChange);
    } else if (code == CBN_SELCHANGE) {
        // Windows tells of the choice before it sets the text.
        const auto chosen = static_cast<std::size_t>(Send(CB_GETCURSEL));
        if (chosen < items_.size()) SetText(items_[chosen]);
    }
}

int WindowComboBox::WindowHeight(const Place& place) const {
    return place.height + Scaled(kListHeight, form().dpi());
}

void WindowComboBox::FontChanged() {
    // Windows makes the box as high as its font; the tables say how high it is to be.
    Send(CB_SETITEMHEIGHT, static_cast<WPARAM>(-1),
         Scaled(spec().place.height - kBorders, form().dpi()));
}

}  // namespace tamrin
