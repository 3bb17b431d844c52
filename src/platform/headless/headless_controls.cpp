#include "platform/headless/headless_controls.h"

#include <stdexcept>

namespace tamrin {
namespace {

void Raise(const std::function<void()>& handler) {
    // A handler may replace itself; the copy lives until it returns.
    if (const auto copy = handler) copy();
}

}  // namespace

HeadlessControl::HeadlessControl(HeadlessForm& form, ControlKind kind, std::string_view name,
                                 int index, std::string_view text, unsigned flags)
    : form_(form),
      kind_(kind),
      name_(name),
      index_(index),
      text_(text),
      enabled_((flags & kDisabled) == 0),
      visible_((flags & kHidden) == 0) {}

void HeadlessControl::SetText(std::string_view text) {
    if (text_ == text) return;
    text_ = text;
    if (kind_ == ControlKind::kTextBox || kind_ == ControlKind::kComboBox) Raise(onChange);
}

void HeadlessControl::SetChecked(bool checked) {
    if (checked_ == checked) return;
    checked_ = checked;
    if (is_menu_) return;
    if (kind_ == ControlKind::kOptionButton) {
        if (!checked) return;
        form_.UncheckOthers(*this);
    }
    Raise(onClick);
}

std::string_view HeadlessListBox::Line(int position) const {
    return Has(position) ? std::string_view(lines_[position]) : std::string_view();
}

void HeadlessListBox::SetLine(int position, std::string_view text) {
    if (Has(position)) lines_[position] = text;
}

void HeadlessListBox::Insert(int position, std::string_view text) {
    if (position < 0 || position > Count()) return;
    lines_.emplace(lines_.begin() + position, text);
    selected_.insert(selected_.begin() + position, false);
    if (current_ >= position) ++current_;
}

void HeadlessListBox::Remove(int position) {
    if (!Has(position)) return;
    lines_.erase(lines_.begin() + position);
    selected_.erase(selected_.begin() + position);
    if (current_ == position) {
        current_ = -1;
    } else if (current_ > position) {
        --current_;
    }
}

void HeadlessListBox::SetLines(std::vector<std::string> lines) {
    lines_ = std::move(lines);
    selected_.assign(lines_.size(), false);
    current_ = -1;
}

void HeadlessListBox::SetListIndex(int position) {
    if (position != -1 && !Has(position)) return;
    if (Has(current_)) selected_[current_] = false;
    const bool moved = current_ != position;
    current_ = position;
    if (position != -1) selected_[position] = true;
    if (moved) Raise(onClick);
}

bool HeadlessListBox::Selected(int position) const { return Has(position) && selected_[position]; }

void HeadlessListBox::Select(int position, bool selected) {
    if (Has(position)) selected_[position] = selected;
}

HeadlessForm::HeadlessForm(const FormSpec& spec)
    : caption_(spec.caption), place_{0, 0, spec.width, spec.height} {
    for (const ControlSpec& control : spec.controls) {
        if (control.kind == ControlKind::kListBox) {
            controls_.push_back(std::make_unique<HeadlessListBox>(
                *this, control.kind, control.name, control.index, control.caption, control.flags));
        } else {
            controls_.push_back(std::make_unique<HeadlessControl>(
                *this, control.kind, control.name, control.index, control.caption, control.flags));
        }
        controls_.back()->interval_ = control.interval;
    }
    for (const MenuSpec& menu : spec.menus) {
        controls_.push_back(std::make_unique<HeadlessControl>(
            *this, ControlKind::kButton, menu.name, -1, menu.caption, menu.flags));
        controls_.back()->is_menu_ = true;
    }
}

Control& HeadlessForm::Find(std::string_view name, int index) {
    for (const auto& control : controls_) {
        if (control->name() == name && control->index() == index) return *control;
    }
    throw std::logic_error("the form has no control " + std::string(name));
}

ListBox& HeadlessForm::List(std::string_view name) {
    if (auto* list = dynamic_cast<ListBox*>(&Find(name))) return *list;
    throw std::logic_error("not a list box: " + std::string(name));
}

void HeadlessForm::UncheckOthers(const HeadlessControl& chosen) {
    for (const auto& control : controls_) {
        if (control.get() != &chosen && control->name() == chosen.name()) {
            control->checked_ = false;
        }
    }
}

bool HeadlessForm::Close() {
    if (closed_ || closing_) return closed_;
    closing_ = true;
    closed_ = !onQueryUnload || onQueryUnload();
    closing_ = false;
    if (!closed_) return false;
    visible_ = false;
    if (onUnload) onUnload();
    return true;
}

void HeadlessForm::RunTimers(std::uint32_t now) {
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        HeadlessControl& timer = *controls_[i];
        if (timer.kind() != ControlKind::kTimer) continue;
        if (!timer.Enabled() || closed_) {
            timer.last_tick_ = now;
            continue;
        }
        if (timer.ticking_ ||
            now - timer.last_tick_ < static_cast<std::uint32_t>(timer.interval_)) {
            continue;
        }
        timer.last_tick_ = now;
        timer.ticking_ = true;
        Raise(timer.onTimer);
        timer.ticking_ = false;
    }
}

}  // namespace tamrin
