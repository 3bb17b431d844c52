#pragma once

#include <string>
#include <vector>

#include "platform/windows/control.h"

namespace tamrin {

// A line of text with a list of items that opens below it.
class WindowComboBox : public WindowControl, public ComboBox {
public:
    using WindowControl::WindowControl;

    void SetItems(std::vector<std::string> items) override;
    std::vector<std::string> Items() const override { return items_; }

    void Notified(UINT code) override;
    int WindowHeight(const Place& place) const override;
    void FontChanged() override;

private:
    std::vector<std::string> items_;
};

}  // namespace tamrin
