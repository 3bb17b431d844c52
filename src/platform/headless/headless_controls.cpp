#include "platform/headless/headless_controls.h"

#include <stdexcept>

namespace tamrin {
namespace {

void Raise(const std::function<void()>& handler) {
    // A handler may replace itself; the copy lives until it returns.
    if (const auto copy = handler) copy();
}

}  // namespace

HeadlessControl::HeadlessControl(HeadlessForm& form, const ControlSpec& spec)
    : form_(form),
      kind_(spec.kind),
      name_(spec.name.text),
      index_(spec.name.index),
      text_(spec.caption),
      tip_(spec.tip),
      place_(spec.place),
      stretch_(spec.stretch),
      enabled_((spec.flags & kDisabled) == 0),
      visible_((spec.flags & kHidden) == 0),
      interval_(spec.interval) {}

HeadlessControl::HeadlessControl(HeadlessForm& form, const MenuSpec& spec)
    : form_(form),
      kind_(ControlKind::kButton),
      name_(spec.name),
      index_(-1),
      text_(spec.caption),
      shortcut_(spec.shortcut),
      is_menu_(true),
      enabled_((spec.flags & kDisabled) == 0),
      visible_((spec.flags & kHidden) == 0) {}

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

bool HeadlessControl::Focused() const { return form_.focused_ == this; }

void HeadlessControl::SetFocus() { form_.focused_ = this; }

void HeadlessControl::Stretch(int wider, int taller) {
    if ((stretch_ & kStretchRight) != 0) place_.width += wider;
    if ((stretch_ & kStretchBottom) != 0) place_.height += taller;
    if ((stretch_ & kMoveRight) != 0) place_.left += wider;
    if ((stretch_ & kMoveBottom) != 0) place_.top += taller;
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
    selected_.assign(lines_.size(), false);
    const bool moved = current_ != position;
    current_ = position;
    if (position != -1) selected_[position] = true;
    if (moved) Raise(onClick);
}

bool HeadlessListBox::Selected(int position) const { return Has(position) && selected_[position]; }

void HeadlessListBox::Select(int position, bool selected) {
    if (Has(position)) selected_[position] = selected;
}

void HeadlessListBox::SelectRange(int first, int count) {
    for (int i = first; i < first + count; ++i) Select(i, true);
}

HeadlessForm::HeadlessForm(const FormSpec& spec, std::function<void(HeadlessForm&)> show_modal)
    : show_modal_(std::move(show_modal)),
      name_(spec.name),
      caption_(spec.caption),
      place_{0, 0, spec.width, spec.height} {
    for (const ControlSpec& control : spec.controls) {
        if (control.kind == ControlKind::kListBox) {
            controls_.push_back(std::make_unique<HeadlessListBox>(*this, control));
        } else if (control.kind == ControlKind::kComboBox) {
            controls_.push_back(std::make_unique<HeadlessComboBox>(*this, control));
        } else {
            controls_.push_back(std::make_unique<HeadlessControl>(*this, control));
        }
    }
    for (const MenuSpec& menu : spec.menus) {
        controls_.push_back(std::make_unique<HeadlessControl>(*this, menu));
    }
}

HeadlessControl& HeadlessForm::FindControl(std::string_view name, int index) {
    for (const auto& control : controls_) {
        if (control->name() == name && control->index() == index) return *control;
    }
    throw std::logic_error("the form has no control " + std::string(name));
}

Control& HeadlessForm::Find(std::string_view name, int index) { return FindControl(name, index); }

ListBox& HeadlessForm::List(std::string_view name) {
    if (auto* list = dynamic_cast<ListBox*>(&Find(name))) return *list;
    throw std::logic_error("not a list box: " + std::string(name));
}

ComboBox& HeadlessForm::Combo(std::string_view name) {
    if (auto* combo = dynamic_cast<ComboBox*>(&Find(name))) return *combo;
    throw std::logic_error("not a combo box: " + std::string(name));
}

void HeadlessForm::SetPlace(const Place& place) {
    const int wider = place.width - place_.width;
    const int taller = place.height - place_.height;
    place_ = place;
    for (const auto& control : controls_) control->Stretch(wider, taller);
}

void HeadlessForm::ShowModal(Form& owner) {
    const Place around = owner.GetPlace();
    place_.left = around.left + (around.width - place_.width) / 2;
    place_.top = around.top + (around.height - place_.height) / 2;
    visible_ = true;
    if (show_modal_) show_modal_(*this);
    visible_ = false;
}

void HeadlessForm::Click(std::string_view name, int index) {
    HeadlessControl& control = FindControl(name, index);
    if (!control.enabled_) return;
    const bool is_button = control.is_menu_ || control.kind_ == ControlKind::kButton;
    if (is_button) {
        Raise(control.onClick);
    } else {
        control.SetChecked(control.kind_ == ControlKind::kOptionButton || !control.checked_);
    }
}

void HeadlessForm::Press(std::string_view key) {
    for (const auto& control : controls_) {
        std::string_view keys = control->shortcut_;
        while (!keys.empty()) {
            const auto end = keys.find(", ");
            if (keys.substr(0, end) == key) {
                if (control->enabled_) Raise(control->onClick);
                return;
            }
            keys.remove_prefix(end == std::string_view::npos ? keys.size() : end + 2);
        }
    }
    throw std::logic_error("the form has no shortcut " + std::string(key));
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
