#pragma once

#include <span>
#include <string_view>

namespace tamrin {

// A form is described once, as tables; a window system walks them and makes windows, or structs.

enum class ControlKind {
    kButton,
    kOptionButton,
    kCheckBox,
    kTextBox,
    kListBox,
    kComboBox,  // a line of text to type into, with a list of items to choose it from
    kLabel,
    kFrame,
    kSplitter,  // a level bar that the user drags up and down
    kTimer,
};

// How a control follows the size of its form: its right and bottom edges keep their distance from
// the form's, or it moves with them.
enum Stretch : unsigned {
    kFixed = 0,
    kStretchRight = 1,
    kStretchBottom = 2,
    kMoveRight = 4,
    kMoveBottom = 8,
};

enum ControlFlags : unsigned {
    kNoFlags = 0,
    kHidden = 1,
    kDisabled = 2,
    kReadOnly = 4,
    kMultiSelect = 8,   // a list box that lets several lines be selected
    kMultiLine = 16,    // a text box of several lines; Enter begins a new one, Tab leaves it
    kDefault = 32,      // the button that Enter presses where no control needs Enter itself
    kCancel = 64,       // the button that Esc presses, and the form's close box
    kDigitsOnly = 128,  // a text box that takes digits only
    kCentered = 256,    // a label whose text stands in its middle
    kTakesTab = 512,    // a text box of several lines that Tab writes into; Ctrl+Tab leaves it
    kMenu = 1024,       // a menu; the entries behind it, up to the next menu, are in it
};

// A place in pixels of a 96 dpi screen, relative to the form's client area.
struct Place {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

// The name of a control, with its place in a control array where several have that name.
struct ControlName {
    constexpr ControlName(std::string_view its_name, int place = -1)
        : text(its_name), index(place) {}
    constexpr ControlName(const char* its_name) : ControlName(std::string_view(its_name)) {}

    std::string_view text;
    int index;  // -1 for a control that stands alone

    bool operator==(const ControlName&) const = default;
};

struct ControlSpec {
    ControlKind kind;
    ControlName name;
    std::string_view caption = {};
    std::string_view tip = {};
    Place place = {};
    unsigned stretch = kFixed;
    unsigned flags = kNoFlags;
    int interval = 0;  // of a timer, milliseconds
};

// One entry of a menu, or a menu of the bar. They stand in reading order, a menu first. "-" as
// caption is a separator. A hidden menu is a context menu.
//
// `shortcut` names one key, or several parted by ", ", of which the menu shows the first: "Ctrl+S",
// "Shift+F5, Esc", "Del". It works while the form is active and the entry enabled, whether the
// entry is visible or not. A key with which text is edited (Del, Ctrl and one of A, C, V, X, Y, Z)
// belongs to a text or combo box while that has the focus.
struct MenuSpec {
    std::string_view name;
    std::string_view caption;
    std::string_view shortcut = {};
    unsigned flags = kNoFlags;
};

enum FormFlags : unsigned {
    kResizable = 1,  // by the user, down to the width and height of the table
    kNoTitle = 2,    // without a title bar, such as a splash window
};

struct FormSpec {
    std::string_view name;
    std::string_view caption;
    int width;  // of the client area without the menu bar, pixels of a 96 dpi screen
    int height;
    std::span<const ControlSpec> controls;
    std::span<const MenuSpec> menus = {};
    unsigned flags = 0;  // FormFlags
};

}  // namespace tamrin
