#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"
#include "platform/windows/clock.h"
#include "platform/windows/control.h"
#include "platform/windows/handle.h"
#include "platform/windows/menu.h"
#include "platform/windows/timer.h"
#include "platform/windows/tool_tips.h"
#include "platform/windows/tray_icon.h"

namespace tamrin {

class WindowForm;

// All forms of the program, in the order in which they were made.
using WindowForms = std::vector<WindowForm*>;

// What the user of a form can press: a button, and the menu entry that does the same.
struct Pressable {
    std::string_view form;
    std::string_view button;
    std::string_view entry;
};

// A form with its windows, which live as long as it does. Closing a form only hides it, so code
// that waits inside one of its events can go on using it.
//
// The window class has the name of the form. The controls have the numbers from kFirstControl on,
// in the order of the table.
class WindowForm : public Form {
public:
    static constexpr int kFirstControl = 100;

    WindowForm(const FormSpec& spec, WindowForms& forms, WindowsClock& clock);
    ~WindowForm() override;
    WindowForm(const WindowForm&) = delete;
    WindowForm& operator=(const WindowForm&) = delete;

    // The form of a top-level window; null for any other window.
    static WindowForm* Of(HWND window);

    Control& Find(std::string_view name, int index = -1) override;
    ListBox& List(std::string_view name) override;
    ComboBox& Combo(std::string_view name) override;
    std::string Caption() const override;
    void SetCaption(std::string_view caption) override;
    bool Visible() const override { return IsWindowVisible(window_) != 0; }
    void SetVisible(bool visible) override;
    Place GetPlace() const override;
    void SetPlace(const Place& place) override;
    Place ShownPlace() const override;
    void SetTopMost(bool on) override;
    void SetTrayIcon(bool shown) override { tray_icon_.Show(window_, shown, Caption()); }
    void PopUp(std::string_view menu) override;
    void ShowModal(Form& owner) override;
    bool Close() override;

    HWND window() const { return window_; }
    int dpi() const { return dpi_; }
    SIZE ClientSize() const;

    const ToolTips& tips() const { return *tips_; }

    // Carries out a key that is a shortcut of this form's menus. False when it is none.
    bool TakesShortcut(MSG& message) const;

    // Whether a message that waits in this thread's queue will press the control when it is
    // handled: a left click on the button, or a key that is a shortcut of the menu entry.
    static bool WillPress(const MSG& message, const Pressable& control);

    // Unchecks the other option buttons of the control array.
    void UncheckOthers(const WindowControl& chosen);

private:
    // window_form_messages.cpp
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
    LRESULT Command(WPARAM wparam, LPARAM lparam);
    void ContextMenu(HWND window, LPARAM point);
    HBRUSH TextColors(HDC context, HWND window) const;
    void DropFiles(WPARAM drop) const;
    void DpiChanged(int dpi, const RECT& proposed);
    void TakeFocus() const;
    void TrayClicked();

    void MakeWindow(const FormSpec& spec);
    void MakeControls(const FormSpec& spec);
    SIZE OuterSize(int width, int height) const;
    // What the user can shrink the form to.
    SIZE MinimumSize() const;
    void SetFonts();
    void Arrange();
    WindowControl* ControlOf(HWND window) const;
    WindowControl* ButtonWith(unsigned flag) const;
    int DefaultButton() const;
    // The close box: presses the form's Cancel button if it has one, otherwise closes the form.
    void Dismiss();
    void LeaveModal();

    WindowForms& forms_;
    WindowsClock& clock_;
    const std::string name_;
    const int width_;
    const int height_;
    const unsigned flags_;
    MenuTree menu_;
    HWND window_ = nullptr;
    int dpi_ = kTableDpi;
    OwnedFont font_;
    TrayIcon tray_icon_;
    std::unique_ptr<ToolTips> tips_;
    std::vector<std::unique_ptr<WindowControl>> controls_;
    std::vector<std::unique_ptr<WindowTimer>> timers_;
    HWND focus_ = nullptr;   // the control with the focus when the form was deactivated
    bool key_menu_ = false;  // the context menu was opened by its key
    bool shown_before_ = false;
    bool closing_ = false;
    bool closed_ = false;
    WindowForm* owner_ = nullptr;     // while this form is modal
    WindowForm* in_front_ = nullptr;  // the modal form of which this one is the owner
    WindowForms disabled_;            // the forms disabled while this one is modal
};

}  // namespace tamrin
