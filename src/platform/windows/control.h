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

// Calls an event's handler when there is one. The handler may replace itself.
void Raise(const std::function<void()>& handler);

// The text of a window, in UTF-8.
std::string WindowText(HWND window);

// How a control is moved and sized. It is drawn anew, for a border that is copied along would stay
// inside a list that has grown.
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

    // What the window has told its form by WM_COMMAND: BN_CLICKED, EN_CHANGE and the like.
    virtual void Notified(UINT code);

    // The size that the window takes for a place; more than it shows where it opens a list below.
    virtual int WindowHeight(const Place& place) const { return place.height; }

    // Called when the form's font, and so the height of a line, is another one.
    virtual void FontChanged() {}

    const ControlSpec& spec() const { return spec_; }
    HWND window() const { return window_; }
    TextColor text_color() const { return text_color_; }

    // Where it stands from, by which it follows the size of its form.
    const Anchor& anchor() const { return anchor_; }
    void SetAnchor(const Anchor& anchor) { anchor_ = anchor; }

    // Takes the check mark off without an event, as of an option button whose neighbour is chosen.
    void Uncheck();

    // Presses it as a click of the mouse would, if it takes input.
    void Press();

protected:
    WindowForm& form() const { return form_; }
    LRESULT Send(UINT message, WPARAM wide = 0, LPARAM wider = 0) const {
        return SendMessageW(window_, message, wide, wider);
    }

    // Sets the window's text without an event.
    void PutText(std::string_view text);
    bool muted() const { return muted_; }

private:
    void Clicked();
    void LeaveFocus() const;

    WindowForm& form_;
    const ControlSpec spec_;
    HWND window_;
    Anchor anchor_{};
    TextColor text_color_ = TextColor::kNormal;
    bool checked_ = false;
    bool muted_ = false;  // the text is being set from code, of which the window tells too
};

}  // namespace tamrin
