#include "platform/windows/list_box.h"

#include <windows.h>

#include <windowsx.h>

#include <algorithm>

#include "platform/windows/wide.h"

namespace tamrin {
namespace {

constexpr int kMarginRight = 8;  // pixels after the widest line

WPARAM At(int position) { return static_cast<WPARAM>(position); }

// Keeps a list box from drawing and scrolling while its lines change.
//
// WM_SETREDRAW to the list box alone still draws its scroll bar for every line that is added. The
// default procedure hides the whole window on the same message.
class NoRedraw {
public:
    explicit NoRedraw(HWND window) : window_(window), top_(Send(LB_GETTOPINDEX)) {
        was_visible_ = (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
        Send(WM_SETREDRAW, FALSE);
        if (was_visible_) DefWindowProcW(window_, WM_SETREDRAW, FALSE, 0);
    }
    ~NoRedraw() {
        Send(LB_SETTOPINDEX, static_cast<WPARAM>(top_));
        if (was_visible_) DefWindowProcW(window_, WM_SETREDRAW, TRUE, 0);
        Send(WM_SETREDRAW, TRUE);
        RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
    }
    NoRedraw(const NoRedraw&) = delete;
    NoRedraw& operator=(const NoRedraw&) = delete;

private:
    LRESULT Send(UINT message, WPARAM wparam = 0) const {
        return SendMessageW(window_, message, wparam, 0);
    }

    HWND window_;
    LRESULT top_;
    bool was_visible_;
};

LPARAM Pointer(const std::wstring& text) { return reinterpret_cast<LPARAM>(text.c_str()); }

}  // namespace

std::string_view WindowListBox::Line(int position) const {
    return Has(position) ? std::string_view(lines_[At(position)]) : std::string_view();
}

void WindowListBox::SetLine(int position, std::string_view text) {
    if (!Has(position) || lines_[At(position)] == text) return;
    lines_[At(position)] = text;
    // A list box cannot change a line, so the line is inserted again with its selection.
    const NoRedraw no_redraw(window());
    const bool selected = Selected(position);
    Send(LB_DELETESTRING, At(position));
    Send(LB_INSERTSTRING, At(position), Pointer(Wide(text)));
    if (selected) Select(position, true);
    MarkCurrent();
    Measure(text);
}

void WindowListBox::Insert(int position, std::string_view text) {
    if (position < 0 || position > Count()) return;
    lines_.emplace(lines_.begin() + position, text);
    const NoRedraw no_redraw(window());
    Send(LB_INSERTSTRING, At(position), Pointer(Wide(text)));
    if (current_ >= position) ++current_;
    MarkCurrent();
    Measure(text);
}

void WindowListBox::Remove(int position) {
    if (!Has(position)) return;
    lines_.erase(lines_.begin() + position);
    const NoRedraw no_redraw(window());
    Send(LB_DELETESTRING, At(position));
    if (current_ == position) {
        current_ = -1;
    } else if (current_ > position) {
        --current_;
    }
    MarkCurrent();
}

void WindowListBox::SetLines(std::vector<std::string> lines) {
    const NoRedraw no_redraw(window());
    Send(LB_RESETCONTENT);
    lines_ = std::move(lines);
    current_ = -1;
    std::size_t bytes = 0;
    for (const std::string& line : lines_) bytes += line.size();
    Send(LB_INITSTORAGE, lines_.size(), static_cast<LPARAM>(bytes * sizeof(wchar_t)));
    for (const std::string& line : lines_) Send(LB_ADDSTRING, 0, Pointer(Wide(line)));
    MeasureAll();
}

void WindowListBox::SetListIndex(int position) {
    if (position != -1 && !Has(position)) return;
    const bool moved = current_ != position;
    current_ = position;
    if (multi_select()) Send(LB_SETSEL, FALSE, -1);
    if (position == -1) {
        if (!multi_select()) Send(LB_SETCURSEL, At(-1));
    } else {
        Select(position, true);
        MarkCurrent();
    }
    if (moved) Raise(onClick);
}

// Lets the keyboard continue from the current line, and scrolls it into view.
void WindowListBox::MarkCurrent() {
    if (current_ < 0) return;
    if (multi_select()) {
        Send(LB_SETANCHORINDEX, At(current_));
        Send(LB_SETCARETINDEX, At(current_), FALSE);
    } else {
        Send(LB_SETCURSEL, At(current_));
    }
}

bool WindowListBox::Selected(int position) const {
    return Has(position) && Send(LB_GETSEL, At(position)) > 0;
}

void WindowListBox::Select(int position, bool selected) {
    if (!Has(position)) return;
    if (multi_select()) {
        Send(LB_SETSEL, selected ? TRUE : FALSE, position);
    } else if (selected || Selected(position)) {
        Send(LB_SETCURSEL, At(selected ? position : -1));
    }
}

void WindowListBox::SelectRange(int first, int count) {
    const int last = std::min(first + count, Count()) - 1;
    if (first < 0 || last < first) return;
    const NoRedraw no_redraw(window());
    Send(LB_SELITEMRANGEEX, At(first), last);
}

void WindowListBox::SetTabStops(const std::vector<int>& stops) {
    tab_stops_ = stops;
    Send(LB_SETTABSTOPS, stops.size(), reinterpret_cast<LPARAM>(tab_stops_.data()));
    SetHorizontalScroll(ruler_.has_value());
    InvalidateRect(window(), nullptr, TRUE);
}

void WindowListBox::SetHorizontalScroll(bool shown) {
    ruler_.reset();
    if (shown) ruler_.emplace(window(), tab_stops_);
    MeasureAll();
}

void WindowListBox::FontChanged() { SetHorizontalScroll(ruler_.has_value()); }

void WindowListBox::MeasureAll() {
    widest_ = 0;
    int width = 0;
    if (ruler_) {
        for (const std::string& line : lines_) width = std::max(width, ruler_->Width(line));
    }
    Send(LB_SETHORIZONTALEXTENT, 0);
    WidenTo(width);
}

void WindowListBox::Measure(std::string_view text) {
    if (ruler_) WidenTo(ruler_->Width(text));
}

// Lets the list scroll to the end of a line of that width.
void WindowListBox::WidenTo(int width) {
    if (width <= widest_) return;
    widest_ = width;
    Send(LB_SETHORIZONTALEXTENT, At(width + kMarginRight));
}

void WindowListBox::Notified(UINT code) {
    if (code == LBN_SELCHANGE) {
        current_ = static_cast<int>(Send(multi_select() ? LB_GETCARETINDEX : LB_GETCURSEL));
        if (!Has(current_)) current_ = -1;
        Raise(onClick);
    } else if (code == LBN_DBLCLK) {
        Raise(onDblClick);
    }
}

// LB_ITEMFROMPOINT answers 16 bits, too few for a long scenario.
int WindowListBox::LineAt(LPARAM point) const {
    const LRESULT row = GET_Y_LPARAM(point) / std::max<LRESULT>(1, Send(LB_GETITEMHEIGHT));
    const int position = static_cast<int>(Send(LB_GETTOPINDEX) + row);
    return Has(position) ? position : -1;
}

// Selects the line under the pointer before its menu opens. Raises no event: nothing was chosen
// yet.
void WindowListBox::RightPressed(LPARAM point) {
    ::SetFocus(window());
    const int position = LineAt(point);
    if (position == -1 || Selected(position)) return;
    current_ = position;
    if (multi_select()) Send(LB_SETSEL, FALSE, -1);
    Select(position, true);
    MarkCurrent();
}

LRESULT WindowListBox::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
    const bool enter = wparam == VK_RETURN && onDblClick;
    if (message == WM_GETDLGCODE && enter) {
        // Otherwise Enter would press the form's default button.
        return DLGC_WANTMESSAGE | Default(message, wparam, lparam);
    }
    if (message == WM_KEYDOWN && enter) {
        Raise(onDblClick);
        return 0;
    }
    if (message == WM_RBUTTONDOWN) RightPressed(lparam);
    return Default(message, wparam, lparam);
}

}  // namespace tamrin
