#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

#include "platform/controls.h"
#include "platform/form.h"
#include "platform/windows/layout.h"

namespace tamrin {

class WindowForm;

// Calls an event's handler if there is one. The handler may replace itself.
void Raise(const std::function<void()>& handler);

// The text of a window, in UTF-8.
std::string WindowText(HWND window);

// How a control is moved and sized. It is drawn again: Windows would copy its old border along,
// which would stay inside a list that has grown.
inline constexpr UINT kMoveFlags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS;

// A control that is a child window of its form.
class WindowControl : public virtual Control {
public:
    WindowControl(WindowForm& form, const ControlSpec& spec, HWND window);

    std::string Text() const override;
    void SetText(std::string_view text) override;
    bool Enabled() const override;
    void SetEnabled(bool enabled) override;
    bool Visible() const override;
    void SetVisible(bool visible) override;
    bool Checked() const override { return checked_; }
    void SetChecked(bool checked) override;
    Place GetPlace() const override;
    void SetPlace(const Place& place) override;
    bool Focused() const override;
    void SetFocus() override;
    void SetTip(std::string_view tip) override;
    void SetTextColor(TextColor color) override;
    void SetLeftMargin(int pixels) override;

    // A notification that the window sent its form by WM_COMMAND: BN_CLICKED, EN_CHANGE and others.
    virtual void Notified(UINT code);

    // The height that the window needs for a place. A combo box needs room for its open list.
    virtual int WindowHeight(const Place& place) const { return place.height; }

    // Called when the form has a new font, and so lines of another height.
    virtual void FontChanged() {}

    const ControlSpec& spec() const { return spec_; }
    HWND window() const { return window_; }
    TextColor text_color() const { return text_color_; }

    // From here it follows the size of its form.
    const Anchor& anchor() const { return anchor_; }
    void SetAnchor(const Anchor& anchor) { anchor_ = anchor; }

    // Unchecks it without an event, as an option button when another one is chosen.
    void Uncheck();

    // Presses it like a click of the mouse, if it is enabled.
    void Press();

protected:
    WindowForm& form() const { return form_; }
    LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
        return SendMessageW(window_, message, wparam, lparam);
    }

    // Sets the window's text without an event.
    void PutText(std::string_view text);
    bool muted() const { return muted_; }

private:
    void Clicked();
    void CheckChanged(bool checked);
    void LeaveFocus() const;

    WindowForm& form_;
    const ControlSpec spec_;
    HWND window_;
    Anchor anchor_{};
    TextColor text_color_ = TextColor::kNormal;
    bool checked_ = false;
    bool muted_ = false;  // code is setting the text, which the window notifies too
};

// A control that sees the messages of its window before the window does.
//
// It replaces the window procedure itself: SetWindowSubclass looks its data up by name for each
// message, which makes the loading of a long list many times slower.
class HookedControl : public WindowControl {
public:
    HookedControl(WindowForm& form, const ControlSpec& spec, HWND window);
    ~HookedControl() override;
    HookedControl(const HookedControl&) = delete;
    HookedControl& operator=(const HookedControl&) = delete;

protected:
    virtual LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam) = 0;

    // What the window itself does with a message.
    LRESULT Default(UINT message, WPARAM wparam, LPARAM lparam) const {
        return CallWindowProcW(original_, window(), message, wparam, lparam);
    }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

    WNDPROC original_;
};

// A control without a window of its own: a timer, a menu entry. It keeps its state itself and has
// no place.
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
