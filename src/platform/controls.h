#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/form.h"

namespace tamrin {

enum class TextColor { kNormal, kRed };  // kRed is RGB 255, 0, 0

// A control or menu entry of a form. Assigning a value from code raises the same event as the
// user's act would, and only when the value changes.
class Control {
public:
    virtual ~Control() = default;

    // Pressed, chosen, checked or unchecked, a line chosen, a text box clicked.
    std::function<void()> onClick;
    std::function<void()> onDblClick;  // a list or text box double-clicked, Enter in a list box
    std::function<void()> onChange;    // the text of a text or combo box changed; a splitter moved
    std::function<void()> onTimer;     // a timer's interval has passed; never nested in itself
    // The right mouse button pressed, or the menu key. In a list box the line under the pointer is
    // made the current one before, unless it is selected already.
    std::function<void()> onContext;

    // The caption, or the content of a text or combo box. Lines of a text are parted by CR LF. A
    // caption shows "&" as "&&".
    virtual std::string Text() const = 0;
    virtual void SetText(std::string_view text) = 0;

    // Whether it takes input; of a timer, whether it ticks.
    virtual bool Enabled() const = 0;
    virtual void SetEnabled(bool enabled) = 0;

    virtual bool Visible() const = 0;
    virtual void SetVisible(bool visible) = 0;

    // Whether a check box, option button or menu entry is checked. Checking an option button
    // unchecks the others of its control array. Checking a menu entry raises no event, and choosing
    // one does not check it.
    virtual bool Checked() const = 0;
    virtual void SetChecked(bool checked) = 0;

    // Where it stands now in the form's client area, in pixels of a 96 dpi screen. When set, it
    // goes on from there to follow the form's size; no event is raised. A menu entry has no place.
    virtual Place GetPlace() const = 0;
    virtual void SetPlace(const Place& place) = 0;

    // Whether keys go to it. Giving it the focus selects all the text of a text or combo box.
    virtual bool Focused() const = 0;
    virtual void SetFocus() = 0;

    // The text that is shown while the mouse pointer rests on it.
    virtual void SetTip(std::string_view tip) = 0;

    // The colour of the text of a text box.
    virtual void SetTextColor(TextColor color) = 0;

    // The blank space before the text of a text box, in screen pixels (EM_SETMARGINS).
    virtual void SetLeftMargin(int pixels) = 0;
};

// A list of lines. Positions count from 0; -1 is no line. A position out of range changes nothing
// and reads empty.
class ListBox : public virtual Control {
public:
    virtual int Count() const = 0;

    // A line's text; the view lasts until the list changes.
    virtual std::string_view Line(int position) const = 0;
    virtual void SetLine(int position, std::string_view text) = 0;

    // Puts a line before `position`; the end of the list when it is Count(). Lines that stay keep
    // whether they are selected, and the current line stays current.
    virtual void Insert(int position, std::string_view text) = 0;
    virtual void Remove(int position) = 0;

    // Replaces all lines; afterwards nothing is selected and there is no current line. The list
    // keeps its scroll position if it is still long enough.
    virtual void SetLines(std::vector<std::string> lines) = 0;

    // The current line. Setting it selects it alone, scrolls it into view, and raises onClick; -1
    // leaves no line current and none selected.
    virtual int ListIndex() const = 0;
    virtual void SetListIndex(int position) = 0;

    virtual bool Selected(int position) const = 0;
    virtual void Select(int position, bool selected) = 0;
    // Selects `count` lines from `first` on, besides what is selected already. The list must let
    // several lines be selected.
    virtual void SelectRange(int first, int count) = 0;

    // Where tabs in a line lead to, in dialog units (LB_SETTABSTOPS).
    virtual void SetTabStops(const std::vector<int>& stops) = 0;

    // Whether lines that are wider than the list can be scrolled sideways.
    virtual void SetHorizontalScroll(bool shown) = 0;
};

// A text box with items to choose its text from. Choosing one sets the text and raises onChange.
class ComboBox : public virtual Control {
public:
    virtual void SetItems(std::vector<std::string> items) = 0;
    virtual std::vector<std::string> Items() const = 0;
};

// A window. Its place is in screen pixels.
class Form {
public:
    virtual ~Form() = default;

    std::function<bool()> onQueryUnload;  // false keeps the form open
    std::function<void()> onUnload;
    // Files or folders were dropped on the form, by full path. A form without this takes none.
    std::function<void(const std::vector<std::string>& paths)> onDropFiles;

    // A control or menu entry by name (and place in its control array). The name must be in the
    // form's tables, and the control of that kind.
    virtual Control& Find(std::string_view name, int index = -1) = 0;
    virtual ListBox& List(std::string_view name) = 0;
    virtual ComboBox& Combo(std::string_view name) = 0;

    virtual std::string Caption() const = 0;
    virtual void SetCaption(std::string_view caption) = 0;

    virtual bool Visible() const = 0;
    virtual void SetVisible(bool visible) = 0;

    // The restored rectangle: what it is when the form is neither minimised nor maximised.
    virtual Place GetPlace() const = 0;
    virtual void SetPlace(const Place& place) = 0;

    // The rectangle of the screen that the form covers now, also when it is maximised; empty when
    // it is hidden or minimised.
    virtual Place ShownPlace() const { return Visible() ? GetPlace() : Place(); }

    // Keeps the form in front of the windows of other programs, or stops doing so.
    virtual void SetTopMost(bool on) = 0;

    // Shows or removes the program's icon in the notification area. A click on it shows the form
    // again and removes the icon.
    virtual void SetTrayIcon(bool shown) = 0;

    // Opens a context menu (a hidden menu) at the mouse pointer, or at the control that
    // has the focus when it was the menu key.
    virtual void PopUp(std::string_view menu) = 0;

    // Shows this form in the middle of `owner`, on the screen as a whole, and handles events until
    // it is closed or hidden. Meanwhile no other form takes input.
    virtual void ShowModal(Form& owner) = 0;

    // Asks onQueryUnload and, unless it refuses, raises onUnload and closes. True when closed; also
    // when it was closed before. Closing a form closes the modal forms in front of it first.
    virtual bool Close() = 0;
};

}  // namespace tamrin
