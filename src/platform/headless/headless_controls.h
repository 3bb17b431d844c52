#pragma once

#include <cstdint>
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
    HeadlessControl(HeadlessForm& form, ControlKind kind, std::string_view name, int index,
                    std::string_view text, unsigned flags);

    std::string Text() const override { return text_; }
    void SetText(std::string_view text) override;
    bool Enabled() const override { return enabled_; }
    void SetEnabled(bool enabled) override { enabled_ = enabled; }
    bool Visible() const override { return visible_; }
    void SetVisible(bool visible) override { visible_ = visible; }
    bool Checked() const override { return checked_; }
    void SetChecked(bool checked) override;

    ControlKind kind() const { return kind_; }
    const std::string& name() const { return name_; }
    int index() const { return index_; }

private:
    friend class HeadlessForm;

    HeadlessForm& form_;
    ControlKind kind_;
    std::string name_;
    int index_;
    std::string text_;
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
    void SetTabStops(const std::vector<int>& stops) override { tab_stops_ = stops; }

    const std::vector<int>& tab_stops() const { return tab_stops_; }

private:
    bool Has(int position) const { return position >= 0 && position < Count(); }

    std::vector<std::string> lines_;
    std::vector<bool> selected_;
    int current_ = -1;
    std::vector<int> tab_stops_;
};

// A form in memory, made from its tables.
class HeadlessForm : public Form {
public:
    explicit HeadlessForm(const FormSpec& spec);

    Control& Find(std::string_view name, int index = -1) override;
    ListBox& List(std::string_view name) override;
    std::string Caption() const override { return caption_; }
    void SetCaption(std::string_view caption) override { caption_ = caption; }
    bool Visible() const override { return visible_; }
    void SetVisible(bool visible) override { visible_ = visible; }
    Place GetPlace() const override { return place_; }
    void SetPlace(const Place& place) override { place_ = place; }
    void SetTrayIcon(bool shown) override { tray_icon_ = shown; }
    void PopUp(std::string_view menu) override { popped_up_ = menu; }
    bool Close() override;

    // Ticks the timers whose interval has passed at the tick count `now`.
    void RunTimers(std::uint32_t now);

    bool tray_icon() const { return tray_icon_; }
    bool closed() const { return closed_; }
    const std::string& popped_up() const { return popped_up_; }

private:
    friend class HeadlessControl;

    void UncheckOthers(const HeadlessControl& chosen);

    std::vector<std::unique_ptr<HeadlessControl>> controls_;
    std::string caption_;
    bool visible_ = false;
    Place place_;
    bool tray_icon_ = false;
    bool closing_ = false;
    bool closed_ = false;
    std::string popped_up_;
};

}  // namespace tamrin
