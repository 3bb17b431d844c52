#include "platform/windows/control_kinds.h"

#include <windows.h>

#include <windowsx.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/windows/list_box.h"
#include "platform/windows/wide.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

// A text box with events for the mouse, which Windows' own does not notify.
class WindowTextBox : public HookedControl {
public:
    using HookedControl::HookedControl;

private:
    LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam) override {
        const bool takes_tab = (spec().flags & kTakesTab) != 0;
        if (takes_tab && message == WM_KEYDOWN && wparam == VK_TAB) return 0;
        if (takes_tab && message == WM_CHAR && wparam == VK_TAB) {
            Send(EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"\t"));
            return 0;
        }
        const LRESULT result = Default(message, wparam, lparam);
        if (message == WM_GETDLGCODE && (spec().flags & kMultiLine) != 0) {
            return DialogCode(result, wparam);
        }
        if (message == WM_LBUTTONUP) Raise(onClick);
        if (message == WM_LBUTTONDBLCLK) Raise(onDblClick);
        return result;
    }

    // What a box of several lines wants of a key. It would keep Tab to itself and do nothing with
    // it, because its form is no dialog of Windows; and Tab into it would select a long text.
    LRESULT DialogCode(LRESULT code, WPARAM key) const {
        code &= ~DLGC_HASSETSEL;
        const bool writes_tab = (spec().flags & kTakesTab) != 0 && GetKeyState(VK_CONTROL) >= 0;
        return key == VK_TAB && !writes_tab ? code & ~(DLGC_WANTALLKEYS | DLGC_WANTTAB) : code;
    }
};

// A line of text with a list of items that opens below it.
class WindowComboBox : public WindowControl, public ComboBox {
public:
    using WindowControl::WindowControl;

    void SetItems(std::vector<std::string> items) override {
        const std::string text = Text();
        Send(CB_RESETCONTENT);
        items_ = std::move(items);
        for (const std::string& item : items_) {
            Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(item).c_str()));
        }
        PutText(text);
    }

    std::vector<std::string> Items() const override { return items_; }

    void Notified(UINT code) override {
        if (muted()) return;
        if (code == CBN_EDITCHANGE) {
            Raise(onChange);
        } else if (code == CBN_SELCHANGE) {
            // Windows notifies the choice before it sets the text.
            const auto chosen = static_cast<std::size_t>(Send(CB_GETCURSEL));
            if (chosen < items_.size()) SetText(items_[chosen]);
        }
    }

    int WindowHeight(const Place& place) const override {
        return place.height + Scaled(kListHeight, form().dpi());
    }

    // Windows makes the box as high as its font; the form's table says how high it is to be.
    void FontChanged() override {
        Send(CB_SETITEMHEIGHT, static_cast<WPARAM>(-1),
             Scaled(spec().place.height - kBorders, form().dpi()));
    }

private:
    static constexpr int kListHeight = 240;  // of the open list, in pixels of the tables
    static constexpr int kBorders = 6;       // height that the box adds to its text

    std::vector<std::string> items_;
};

// A level bar that the user drags up and down with the mouse, within its form.
class WindowSplitter : public HookedControl {
public:
    using HookedControl::HookedControl;

private:
    LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam) override {
        switch (message) {
            case WM_NCHITTEST:
                return HTCLIENT;  // a static control would let the mouse through
            case WM_SETCURSOR:
                SetCursor(LoadCursorW(nullptr, IDC_SIZENS));
                return TRUE;
            case WM_LBUTTONDOWN:
                grip_ = GET_Y_LPARAM(lparam);
                SetCapture(window());
                return 0;
            case WM_MOUSEMOVE:
                if (GetCapture() == window()) DragTo(GET_Y_LPARAM(lparam));
                return 0;
            case WM_LBUTTONUP:
                ReleaseCapture();
                return 0;
            default:
                return Default(message, wparam, lparam);
        }
    }

    void DragTo(int y) {
        Place place = GetPlace();
        const int top = std::clamp(place.top + MulDiv(y - grip_, kTableDpi, form().dpi()), 0,
                                   MulDiv(form().ClientSize().cy, kTableDpi, form().dpi()));
        if (top == place.top) return;
        place.top = top;
        SetPlace(place);
        Raise(onChange);
    }

    int grip_ = 0;  // how far below its upper edge the mouse holds it
};

// What Windows needs to make the window of a control.
struct WindowKind {
    const wchar_t* window_class;
    DWORD style;
    DWORD extended_style = 0;
};

WindowKind TextBoxKind(unsigned flags) {
    DWORD style = WS_TABSTOP | ES_AUTOHSCROLL;
    if ((flags & kReadOnly) != 0) style |= ES_READONLY;
    if ((flags & kDigitsOnly) != 0) style |= ES_NUMBER;
    if ((flags & kMultiLine) != 0) {
        style |= ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL | WS_VSCROLL | WS_HSCROLL;
    }
    return {L"EDIT", style, WS_EX_CLIENTEDGE};
}

WindowKind ListBoxKind(unsigned flags) {
    DWORD style =
        WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT | LBS_USETABSTOPS;
    if ((flags & kMultiSelect) != 0) style |= LBS_EXTENDEDSEL;
    return {L"LISTBOX", style, WS_EX_CLIENTEDGE};
}

WindowKind KindOf(const ControlSpec& spec) {
    const unsigned flags = spec.flags;
    switch (spec.kind) {
        case ControlKind::kButton:
            return {L"BUTTON",
                    WS_TABSTOP | static_cast<DWORD>((flags & kDefault) != 0 ? BS_DEFPUSHBUTTON
                                                                            : BS_PUSHBUTTON)};
        case ControlKind::kOptionButton:
            return {L"BUTTON", WS_TABSTOP | BS_AUTORADIOBUTTON | BS_PUSHLIKE};
        case ControlKind::kCheckBox:
            return {L"BUTTON", WS_TABSTOP | BS_AUTOCHECKBOX};
        case ControlKind::kTextBox:
            return TextBoxKind(flags);
        case ControlKind::kListBox:
            return ListBoxKind(flags);
        case ControlKind::kComboBox:
            return {L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL};
        case ControlKind::kFrame:
            // Transparent: the form does not paint what lies under it.
            return {L"BUTTON", BS_GROUPBOX, WS_EX_TRANSPARENT};
        case ControlKind::kLabel:
        case ControlKind::kSplitter:
        case ControlKind::kTimer:
            break;
    }
    const bool centered = (flags & kCentered) != 0;
    return {L"STATIC", static_cast<DWORD>(centered ? SS_CENTER | SS_CENTERIMAGE : SS_LEFT)};
}

std::unique_ptr<WindowControl> ControlFor(WindowForm& form, const ControlSpec& spec, HWND window) {
    switch (spec.kind) {
        case ControlKind::kListBox:
            return std::make_unique<WindowListBox>(form, spec, window);
        case ControlKind::kComboBox:
            return std::make_unique<WindowComboBox>(form, spec, window);
        case ControlKind::kSplitter:
            return std::make_unique<WindowSplitter>(form, spec, window);
        case ControlKind::kTextBox:
            return std::make_unique<WindowTextBox>(form, spec, window);
        default:
            return std::make_unique<WindowControl>(form, spec, window);
    }
}

}  // namespace

std::unique_ptr<WindowControl> MakeControl(WindowForm& form, const ControlSpec& spec, int id,
                                           bool first_of_group) {
    const WindowKind kind = KindOf(spec);
    DWORD style = WS_CHILD | kind.style;
    if ((spec.flags & kHidden) == 0) style |= WS_VISIBLE;
    if ((spec.flags & kDisabled) != 0) style |= WS_DISABLED;
    if (first_of_group) style |= WS_GROUP;
    const HWND window = CreateWindowExW(
        kind.extended_style, kind.window_class, Wide(spec.caption).c_str(), style, 0, 0, 0, 0,
        form.window(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),  // NOLINT
        GetModuleHandleW(nullptr), nullptr);
    // Without this the limit is 32767 characters, and scenarios are longer.
    if (spec.kind == ControlKind::kTextBox) SendMessageW(window, EM_SETLIMITTEXT, 0, 0);
    auto control = ControlFor(form, spec, window);
    control->SetPlace(spec.place);
    return control;
}

}  // namespace tamrin
