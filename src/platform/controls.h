#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/form.h"

namespace tamrin {

// A control or menu entry of a form. Assigning a value from code raises the same event as the
// user's act would, and only when the value changes.
class Control {
public:
    virtual ~Control() = default;

    std::function<void()> onClick;     // pressed, chosen, checked or unchecked, a line chosen
    std::function<void()> onDblClick;  // a list box or text box double-clicked
    std::function<void()> onChange;    // the text of a text box changed
    std::function<void()> onTimer;     // a timer's interval has passed; never nested in itself
    std::function<void()> onContext;   // the right mouse button pressed

    // The caption, or the content of a text box.
    virtual std::string Text() const = 0;
    virtual void SetText(std::string_view text) = 0;

    // Whether it takes input; of a timer, whether it ticks.
    virtual bool Enabled() const = 0;
    virtual void SetEnabled(bool enabled) = 0;

    virtual bool Visible() const = 0;
    virtual void SetVisible(bool visible) = 0;

    // Whether a check box, option button or menu entry is checked. Checking an option button
    // unchecks the others of its control array. Checking a menu entry raises no event.
    virtual bool Checked() const = 0;
    virtual void SetChecked(bool checked) = 0;
};

// A list of lines. Positions count from 0; -1 is no line. A position out of range changes nothing
// and reads empty.
class ListBox : public virtual Control {
public:
    virtual int Count() const = 0;

    // A line's text; the view lasts until the list changes.
    virtual std::string_view Line(int position) const = 0;
    virtual void SetLine(int position, std::string_view text) = 0;

    // Puts a line before `position`; the end of the list when it is Count().
    virtual void Insert(int position, std::string_view text) = 0;
    virtual void Remove(int position) = 0;

    // Replaces all lines; nothing is selected and there is no current line afterwards.
    virtual void SetLines(std::vector<std::string> lines) = 0;

    // The current line. Setting it selects it alone and raises onClick.
    virtual int ListIndex() const = 0;
    virtual void SetListIndex(int position) = 0;

    virtual bool Selected(int position) const = 0;
    virtual void Select(int position, bool selected) = 0;

    // Where tabs in a line lead to, in dialog units (LB_SETTABSTOPS).
    virtual void SetTabStops(const std::vector<int>& stops) = 0;
};

// A window. Its place is in screen pixels.
class Form {
public:
    virtual ~Form() = default;

    std::function<bool()> onQueryUnload;  // false keeps the form open
    std::function<void()> onUnload;

    // A control or menu entry by name (and place in its control array). The name must be in the
    // form's tables.
    virtual Control& Find(std::string_view name, int index = -1) = 0;
    virtual ListBox& List(std::string_view name) = 0;

    virtual std::string Caption() const = 0;
    virtual void SetCaption(std::string_view caption) = 0;

    virtual bool Visible() const = 0;
    virtual void SetVisible(bool visible) = 0;

    // The restored rectangle: what it is when the form is neither minimised nor maximised.
    virtual Place GetPlace() const = 0;
    virtual void SetPlace(const Place& place) = 0;

    // Shows or removes the program's icon in the notification area.
    virtual void SetTrayIcon(bool shown) = 0;

    // Opens a context menu (a hidden entry of depth 0) at the mouse pointer.
    virtual void PopUp(std::string_view menu) = 0;

    // Asks onQueryUnload and, unless it refuses, raises onUnload and closes. True when closed; also
    // when it was closed before.
    virtual bool Close() = 0;
};

}  // namespace tamrin
