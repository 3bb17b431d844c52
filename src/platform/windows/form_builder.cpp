#include "platform/windows/form_builder.h"

#include "platform/windows/combo_box.h"
#include "platform/windows/list_box.h"
#include "platform/windows/splitter.h"
#include "platform/windows/text_box.h"
#include "platform/windows/wide.h"
#include "platform/windows/window_form.h"

namespace tamrin {
namespace {

// What Windows has to know of a control to make its window.
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
            // Transparent, for the form does not paint what lies under it.
            return {L"BUTTON", BS_GROUPBOX, WS_EX_TRANSPARENT};
        case ControlKind::kLabel:
        case ControlKind::kSplitter:
        case ControlKind::kTimer:
            break;
    }
    const bool centered = (flags & kCentered) != 0;
    return {L"STATIC", static_cast<DWORD>(centered ? SS_CENTER | SS_CENTERIMAGE : SS_LEFT)};
}

std::unique_ptr<WindowControl> Speaker(WindowForm& form, const ControlSpec& spec, HWND window) {
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
    // The limit of 32767 characters is far below a long scenario.
    if (spec.kind == ControlKind::kTextBox) SendMessageW(window, EM_SETLIMITTEXT, 0, 0);
    auto control = Speaker(form, spec, window);
    control->SetPlace(spec.place);
    return control;
}

}  // namespace tamrin
