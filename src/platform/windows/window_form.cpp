#include "platform/windows/window_form.h"

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <stdexcept>

#include "platform/windows/control_kinds.h"
#include "platform/windows/layout.h"
#include "platform/windows/wide.h"

namespace tamrin {
namespace {

DWORD StyleOf(const FormSpec& spec) {
    if ((spec.flags & kNoTitle) != 0) return WS_POPUP | WS_BORDER | WS_CLIPCHILDREN;
    if ((spec.flags & kResizable) != 0) return WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    return WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
}

DWORD ExtendedStyleOf(const FormSpec& spec) {
    // A splash window covers its form, which may be topmost itself.
    if ((spec.flags & kNoTitle) != 0) return WS_EX_TOPMOST | WS_EX_TOOLWINDOW;
    const DWORD frame = (spec.flags & kResizable) != 0 ? 0 : WS_EX_DLGMODALFRAME;
    return frame | WS_EX_CONTROLPARENT;
}

// Registers the window class of a form, which has the form's name.
void RegisterForm(const std::wstring& name, WNDPROC procedure) {
    WNDCLASSEXW window_class{};
    window_class.cbSize = sizeof window_class;
    window_class.lpfnWndProc = procedure;
    window_class.hInstance = GetModuleHandleW(nullptr);
    window_class.hIcon = ProgramIcon(SM_CXICON);
    window_class.hIconSm = ProgramIcon(SM_CXSMICON);
    window_class.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    window_class.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    window_class.lpszClassName = name.c_str();
    RegisterClassExW(&window_class);  // fails harmlessly when it is registered already
}

Place PlaceOf(const RECT& rectangle) {
    return {static_cast<int>(rectangle.left), static_cast<int>(rectangle.top),
            static_cast<int>(rectangle.right - rectangle.left),
            static_cast<int>(rectangle.bottom - rectangle.top)};
}

// A modal form cannot be minimised or maximised.
void MakeDialog(HWND window) {
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_STYLE);
    constexpr LONG_PTR kBoxes = WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
    SetWindowLongPtrW(window, GWL_STYLE, (style & ~kBoxes) | static_cast<LONG_PTR>(WS_POPUP));
    const LONG_PTR extended = GetWindowLongPtrW(window, GWL_EXSTYLE);
    SetWindowLongPtrW(window, GWL_EXSTYLE, extended | WS_EX_DLGMODALFRAME);
}

HFONT MakeFont(int dpi) {
    constexpr int kPoints = 9;
    // By the character set a system without this font takes another Japanese one.
    return CreateFontW(-MulDiv(kPoints, dpi, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE,
                       SHIFTJIS_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY,
                       DEFAULT_PITCH | FF_DONTCARE, L"Yu Gothic UI");
}

}  // namespace

WindowForm::WindowForm(const FormSpec& spec, WindowForms& forms, WindowsClock& clock)
    : forms_(forms),
      clock_(clock),
      name_(spec.name),
      width_(spec.width),
      height_(spec.height),
      flags_(spec.flags),
      menu_(spec.menus) {
    MakeWindow(spec);
    MakeControls(spec);
    SetFonts();
    forms_.push_back(this);
}

WindowForm::~WindowForm() {
    LeaveModal();
    std::erase(forms_, this);
    SetTrayIcon(false);
    controls_.clear();
    timers_.clear();
    DestroyWindow(window_);
}

void WindowForm::MakeWindow(const FormSpec& spec) {
    const std::wstring name = Wide(spec.name);
    RegisterForm(name, Procedure);
    CreateWindowExW(ExtendedStyleOf(spec), name.c_str(), Wide(spec.caption).c_str(), StyleOf(spec),
                    CW_USEDEFAULT, CW_USEDEFAULT, 0, 0, nullptr, menu_.bar(),
                    GetModuleHandleW(nullptr), this);
    if (!window_) throw std::runtime_error("no window for the form " + name_);
    dpi_ = static_cast<int>(GetDpiForWindow(window_));
    const SIZE size = OuterSize(Scaled(spec.width, dpi_), Scaled(spec.height, dpi_));
    SetWindowPos(window_, nullptr, 0, 0, size.cx, size.cy,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void WindowForm::MakeControls(const FormSpec& spec) {
    tips_ = std::make_unique<ToolTips>(window_);
    int id = kFirstControl;
    std::string_view group;
    for (const ControlSpec& control : spec.controls) {
        if (control.kind == ControlKind::kTimer) {
            timers_.push_back(std::make_unique<WindowTimer>(window_, control, id++));
            continue;
        }
        // The arrow keys move within the options of one control array.
        const bool option = control.kind == ControlKind::kOptionButton;
        const bool first_of_group = !option || control.name.text != group;
        group = option ? control.name.text : std::string_view();
        controls_.push_back(MakeControl(*this, control, id++, first_of_group));
        if (!control.tip.empty()) controls_.back()->SetTip(control.tip);
    }
}

// The size of the window around a client area without the menu bar.
SIZE WindowForm::OuterSize(int width, int height) const {
    RECT rectangle{0, 0, width, height};
    AdjustWindowRectExForDpi(&rectangle, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)),
                             menu_.bar() ? TRUE : FALSE,
                             static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_EXSTYLE)),
                             static_cast<UINT>(dpi_));
    return {rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
}

SIZE WindowForm::MinimumSize() const {
    if ((flags_ & kResizable) == 0) return {};
    return OuterSize(Scaled(width_, dpi_), Scaled(height_, dpi_));
}

void WindowForm::SetFonts() {
    OwnedFont font(MakeFont(dpi_));
    for (const auto& control : controls_) {
        SendMessageW(control->window(), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
        control->FontChanged();
    }
    font_ = std::move(font);
}

SIZE WindowForm::ClientSize() const {
    if (IsIconic(window_)) {
        // A minimised window has no client area; controls keep the places of the restored one.
        const Place place = GetPlace();
        const SIZE borders = OuterSize(0, 0);
        return {place.width - borders.cx, place.height - borders.cy};
    }
    RECT client{};
    GetClientRect(window_, &client);
    return {client.right, client.bottom};
}

void WindowForm::Arrange() {
    const SIZE client = ClientSize();
    HDWP moves = BeginDeferWindowPos(static_cast<int>(controls_.size()));
    for (const auto& control : controls_) {
        const Place place = Stretched(control->anchor(), control->spec().stretch, client);
        moves = DeferWindowPos(moves, control->window(), nullptr, place.left, place.top,
                               place.width, control->WindowHeight(place), kMoveFlags);
    }
    EndDeferWindowPos(moves);
}

Control& WindowForm::Find(std::string_view name, int index) {
    for (const auto& control : controls_) {
        if (control->spec().name == ControlName(name, index)) return *control;
    }
    for (const auto& timer : timers_) {
        if (timer->spec().name == ControlName(name, index)) return *timer;
    }
    if (MenuEntry* const entry = menu_.Find(name)) return *entry;
    throw std::logic_error("the form has no control " + std::string(name));
}

ListBox& WindowForm::List(std::string_view name) {
    if (auto* list = dynamic_cast<ListBox*>(&Find(name))) return *list;
    throw std::logic_error("not a list box: " + std::string(name));
}

ComboBox& WindowForm::Combo(std::string_view name) {
    if (auto* combo = dynamic_cast<ComboBox*>(&Find(name))) return *combo;
    throw std::logic_error("not a combo box: " + std::string(name));
}

std::string WindowForm::Caption() const { return WindowText(window_); }

void WindowForm::SetCaption(std::string_view caption) {
    SetWindowTextW(window_, Wide(caption).c_str());
}

void WindowForm::SetVisible(bool visible) {
    if (visible == Visible() || (visible && closed_)) return;
    if (!visible) {
        LeaveModal();
        ShowWindow(window_, SW_HIDE);
        return;
    }
    if (onDropFiles) DragAcceptFiles(window_, TRUE);
    // A form takes the focus only when it is shown first. After a run, or a click that it covered,
    // the browser keeps the focus. A splash window never takes it.
    const bool keeps_focus = shown_before_ || (flags_ & kNoTitle) != 0;
    ShowWindow(window_, keeps_focus ? SW_SHOWNA : SW_SHOW);
    shown_before_ = true;
}

Place WindowForm::GetPlace() const {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(window_, &placement);
    return PlaceOf(placement.rcNormalPosition);
}

Place WindowForm::ShownPlace() const {
    RECT window{};
    if (Visible() && IsIconic(window_) == 0) GetWindowRect(window_, &window);
    return PlaceOf(window);
}

void WindowForm::SetPlace(const Place& place) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    GetWindowPlacement(window_, &placement);
    if (!Visible()) placement.showCmd = SW_HIDE;
    // A monitor with another scale changes the size of a window that comes to it: then once more.
    for (int dpi = 0, pass = 0; dpi != dpi_ && pass < 2; ++pass) {
        dpi = dpi_;
        const Place fitted = Fitted(place, MinimumSize(), WorkArea(place));
        placement.rcNormalPosition = {fitted.left, fitted.top, fitted.left + fitted.width,
                                      fitted.top + fitted.height};
        SetWindowPlacement(window_, &placement);
    }
}

void WindowForm::SetTopMost(bool on) {
    SetWindowPos(window_, on ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void WindowForm::PopUp(std::string_view menu) {
    POINT point{};
    GetCursorPos(&point);
    if (key_menu_) {
        RECT rectangle{};
        const HWND focus = GetFocus();
        GetWindowRect(focus ? focus : window_, &rectangle);
        point = {rectangle.left + Scaled(8, dpi_), rectangle.top + Scaled(8, dpi_)};
    }
    menu_.PopUp(menu, window_, point);
}

bool WindowForm::Close() {
    if (closed_ || closing_) return closed_;
    if (in_front_ && !in_front_->Close()) return false;
    closing_ = true;
    closed_ = !onQueryUnload || onQueryUnload();
    closing_ = false;
    if (!closed_) return false;
    SetVisible(false);
    SetTrayIcon(false);
    for (const auto& timer : timers_) timer->SetEnabled(false);
    if (onUnload) onUnload();
    return true;
}

void WindowForm::ShowModal(Form& owner) {
    owner_ = &static_cast<WindowForm&>(owner);
    owner_->in_front_ = this;
    closed_ = false;
    shown_before_ = false;
    MakeDialog(window_);
    SetPlace(Centered(GetPlace(), owner_->GetPlace()));
    // An owned window stays in front of its owner, and Windows hides it with its owner. So a form
    // whose owner is hidden gets none.
    const HWND parent = owner_->Visible() ? owner_->window_ : nullptr;
    SetWindowLongPtrW(window_, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(parent));
    for (WindowForm* form : forms_) {
        if (form == this || !IsWindowEnabled(form->window_)) continue;
        EnableWindow(form->window_, FALSE);
        disabled_.push_back(form);
    }
    SetVisible(true);
    while (Visible()) clock_.WaitForEvents();
}

// Enables the other forms again. This must come before the form is hidden: otherwise Windows finds
// none of our windows enabled and activates another program's.
void WindowForm::LeaveModal() {
    if (!owner_) return;
    owner_->in_front_ = nullptr;
    for (const WindowForm* form : disabled_) {
        if (std::ranges::count(forms_, form) > 0) EnableWindow(form->window_, TRUE);
    }
    disabled_.clear();
    if (GetActiveWindow() == window_ && owner_->Visible()) SetActiveWindow(owner_->window_);
    owner_ = nullptr;
}

void WindowForm::UncheckOthers(const WindowControl& chosen) {
    for (const auto& control : controls_) {
        if (control.get() != &chosen && control->spec().name.text == chosen.spec().name.text) {
            control->Uncheck();
        }
    }
}

WindowControl* WindowForm::ControlOf(HWND window) const {
    for (const auto& control : controls_) {
        if (control->window() == window || IsChild(control->window(), window)) {
            return control.get();
        }
    }
    return nullptr;
}

}  // namespace tamrin
