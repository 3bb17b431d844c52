#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/windows/control.h"
#include "platform/windows/line_ruler.h"

namespace tamrin {

// A list box. It keeps its lines in UTF-8 beside the window's own copy; the selection is kept by
// the window alone.
class WindowListBox : public HookedControl, public ListBox {
public:
    using HookedControl::HookedControl;

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
    void SetTabStops(const std::vector<int>& stops) override;
    void SetHorizontalScroll(bool shown) override;

    void Notified(UINT code) override;
    void FontChanged() override;

private:
    LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam) override;

    bool Has(int position) const { return position >= 0 && position < Count(); }
    bool multi_select() const { return (spec().flags & kMultiSelect) != 0; }
    int LineAt(LPARAM point) const;
    void MarkCurrent();
    void RightPressed(LPARAM point);
    void WidenTo(int width);
    void Measure(std::string_view text);
    void MeasureAll();

    std::vector<std::string> lines_;
    int current_ = -1;
    std::vector<int> tab_stops_;
    std::optional<LineRuler> ruler_;  // while the lines can be scrolled sideways
    int widest_ = 0;                  // the width of the widest line, in pixels
};

}  // namespace tamrin
