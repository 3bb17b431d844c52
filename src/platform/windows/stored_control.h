#pragma once

#include <string>
#include <string_view>

#include "platform/controls.h"

namespace tamrin {

// A control that is no window of its own, such as a timer or an entry of a menu: its state lives
// here, and it has no place.
class StoredControl : public Control {
public:
    StoredControl(std::string_view text, unsigned flags)
        : text_(text), enabled_((flags & kDisabled) == 0), visible_((flags & kHidden) == 0) {}

    std::string Text() const override { return text_; }
    void SetText(std::string_view text) override { text_ = text; }
    bool Enabled() const override { return enabled_; }
    void SetEnabled(bool enabled) override { enabled_ = enabled; }
    bool Visible() const override { return visible_; }
    void SetVisible(bool visible) override { visible_ = visible; }
    bool Checked() const override { return checked_; }
    void SetChecked(bool checked) override { checked_ = checked; }
    Place GetPlace() const override { return {}; }
    void SetPlace(const Place& /*place*/) override {}
    bool Focused() const override { return false; }
    void SetFocus() override {}
    void SetTip(std::string_view /*tip*/) override {}
    void SetTextColor(TextColor /*color*/) override {}
    void SetLeftMargin(int /*pixels*/) override {}

private:
    std::string text_;
    bool enabled_;
    bool visible_;
    bool checked_ = false;
};

}  // namespace tamrin
