#pragma once

#include <windows.h>

#include <array>
#include <span>
#include <string_view>

namespace tamrin {

// Measures lines of text as a list box shows them, without a system call for each: ASCII and
// half-width katakana have the widths of the font, any other character the full width.
class LineRuler {
public:
    // Measures with the font of `list`; `stops` are its tab stops, in dialog units.
    LineRuler(HWND list, std::span<const int> stops);

    // The width of a line in pixels, estimated upwards.
    int Width(std::string_view utf8) const;

private:
    int AfterTab(int width) const;

    std::array<int, 128> ascii_{};
    int half_ = 0;
    int full_ = 0;
    std::span<const int> stops_;
    int unit_ = 1;  // average width of a letter: four dialog units
};

}  // namespace tamrin
