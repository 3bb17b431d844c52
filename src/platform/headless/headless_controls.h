#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"

namespace tamrin {

class HeadlessForm;

// A control in memory.
class HeadlessControl : public virtual Control {
public:
    HeadlessControl(HeadlessForm& form, const ControlSpec& spec);
    HeadlessControl(HeadlessForm& form, const MenuSpec& spec);

    std::string Text() const override { return text_; }
    void SetText(std::string_view text) override;
    bool Enabled() const override { return enabled_; }
    void SetEnabled(bool enabled) override { enabled_ = enabled; }
    bool Visible() const override { return visible_; }
    void SetVisible(bool visible) override { visible_ = visible; }
    bool Checked() const override { return checked_; }
    void SetChecked(bool checked) override;
    Place GetPlace() const override { return place_; }
    void SetPlace(const Place& place) override { place_ = place; }
    bool Focused() const override;
    void SetFocus() override;
    void SetTip(std::string_view tip) override { tip_ = tip; }
    void SetTextColor(TextColor color) override { text_color_ = color; }
    void SetLeftMargin(int pixels) override { left_margin_ = pixels; }

    ControlKind kind() const { return kind_; }
    const std::string& name() const { return name_; }
    int index() const { return index_; }
    const std::string& shortcut() const { return shortcut_; }
    const std::string& tip() const { return tip_; }
    TextColor text_color() const { return text_color_; }
    int left_margin() const { return left_margin_; }

private:
    friend class HeadlessForm;

    // Moves and sizes the control after the form has grown by so many pixels.
    void Stretch(int wider, int taller);

    HeadlessForm& form_;
    ControlKind kind_;
    std::string name_;
    int index_;
    std::string text_;
    std::string tip_;
    std::string shortcut_;
    Place place_;
    unsigned stretch_ = kFixed;
    TextColor text_color_ = TextColor::kNormal;
    int left_margin_ = 0;
    bool is_menu_ = false;
    bool enabled_;
    bool visible_;
    bool checked_ = false;
    // Of a timer.
    int interval_ = 0;
    std::uint32_t last_tick_ = 0;
    bool ticking_ = false;
};

class HeadlessListBox : public HeadlessControl, public ListBox {
public:
    using HeadlessControl::HeadlessControl;

    int Count() const override { return static_cast<int>(lines_.size()); }
    std::string_view Line(int position) const override;
    void SetLine(int position, std::string_view text) override;
    void Insert(int position, std::string_view text) override;
    void Remove(int position) override;
    void SetLines(std::vector<std::string> lines) override;
    int ListIndex() const override { return current_; }
    void SetListIndex(int position) override;
    bool Selected(int position) const override;
    void Select(int position, bool selected) override;
    void SelectRange(int first, int count) override;
    void SetTabStops(const std::vector<int>& stops) override { tab_stops_ = stops; }
    void SetHorizontalScroll(bool shown) override { horizontal_scroll_ = shown; }

    const std::vector<int>& tab_stops() const { return tab_stops_; }
    bool horizontal_scroll() const { return horizontal_scroll_; }

private:
    bool Has(int position) const { return position >= 0 && position < Count(); }

    std::vector<std::string> lines_;
    std::vector<bool> selected_;
    int current_ = -1;
    std::vector<int> tab_stops_;
    bool horizontal_scroll_ = false;
};

class HeadlessComboBox : public HeadlessControl, public ComboBox {
public:
    using HeadlessControl::HeadlessControl;

    void SetItems(std::vector<std::string> items) override { items_ = std::move(items); }
    std::vector<std::string> Items() const override { return items_; }

private:
    std::vector<std::string> items_;
};

// A form in memory, made from its tables. It is a client area without borders.
class HeadlessForm : public Form {
public:
    // `show_modal` acts as the user of a modal form.
    HeadlessForm(const FormSpec& spec, std::function<void(HeadlessForm&)> show_modal);

    Control& Find(std::string_view name, int index = -1) override;
    ListBox& List(std::string_view name) override;
    ComboBox& Combo(std::string_view name) override;
    std::string Caption() const override { return caption_; }
    void SetCaption(std::string_view caption) override { caption_ = caption; }
    bool Visible() const override { return visible_; }
    void SetVisible(bool visible) override { visible_ = visible; }
    Place GetPlace() const override { return place_; }
    void SetPlace(const Place& place) override;
    void SetTopMost(bool on) override { top_most_ = on; }
    void SetTrayIcon(bool shown) override { tray_icon_ = shown; }
    void PopUp(std::string_view menu) override { popped_up_ = menu; }
    void ShowModal(Form& owner) override;
    bool Close() override;

    // Does what a user's click does: presses a button, toggles a check box, chooses an option or a
    // menu entry. A disabled control does nothing.
    void Click(std::string_view name, int index = -1);

    // Does what a shortcut key does: chooses the entry that has it, if it is enabled.
    void Press(std::string_view key);

    // Ticks the timers whose interval has passed at the tick count `now`.
    void RunTimers(std::uint32_t now);

    const std::string& name() const { return name_; }
    bool tray_icon() const { return tray_icon_; }
    bool top_most() const { return top_most_; }
    bool closed() const { return closed_; }
    const std::string& popped_up() const { return popped_up_; }

private:
    friend class HeadlessControl;

    HeadlessControl& FindControl(std::string_view name, int index);
    void UncheckOthers(const HeadlessControl& chosen);

    std::vector<std::unique_ptr<HeadlessControl>> controls_;
    std::function<void(HeadlessForm&)> show_modal_;
    const HeadlessControl* focused_ = nullptr;
    std::string name_;
    std::string caption_;
    bool visible_ = false;
    Place place_;
    bool top_most_ = false;
    bool tray_icon_ = false;
    bool closing_ = false;
    bool closed_ = false;
    std::string popped_up_;
};

}  // namespace tamrin
