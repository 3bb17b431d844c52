#include "platform/windows/line_ruler.h"

#include <algorithm>

namespace tamrin {
namespace {

constexpr int kUnitsPerLetter = 4;
constexpr int kDefaultStop = 32;  // dialog units between tab stops where none are set

// A device context of a window, with the window's font selected.
class FontContext {
public:
    explicit FontContext(HWND window)
        : window_(window),
          context_(GetDC(window)),
          before_(SelectObject(context_, reinterpret_cast<HGDIOBJ>(  // NOLINT
                                             SendMessageW(window, WM_GETFONT, 0, 0)))) {}
    ~FontContext() {
        SelectObject(context_, before_);
        ReleaseDC(window_, context_);
    }
    FontContext(const FontContext&) = delete;
    FontContext& operator=(const FontContext&) = delete;

    HDC get() const { return context_; }

    int WidthOf(wchar_t character) const {
        SIZE size{};
        GetTextExtentPoint32W(context_, &character, 1, &size);
        return static_cast<int>(size.cx);
    }

private:
    HWND window_;
    HDC context_;
    HGDIOBJ before_;
};

}  // namespace

LineRuler::LineRuler(HWND list, std::span<const int> stops) : stops_(stops) {
    const FontContext context(list);
    for (size_t c = ' '; c < ascii_.size(); ++c)
        ascii_[c] = context.WidthOf(static_cast<wchar_t>(c));
    half_ = context.WidthOf(L'ｱ');
    full_ = std::max(context.WidthOf(L'漢'), context.WidthOf(L'Ｗ'));
    TEXTMETRICW metrics{};
    GetTextMetricsW(context.get(), &metrics);
    unit_ = std::max(1, static_cast<int>(metrics.tmAveCharWidth));
}

// Where a tab ends: at the next stop. After the last stop, or with a single one, at its multiples.
int LineRuler::AfterTab(int width) const {
    const auto pixels = [this](int units) { return MulDiv(units, unit_, kUnitsPerLetter); };
    for (const int stop : stops_) {
        if (pixels(stop) > width) return pixels(stop);
    }
    const int step = std::max(1, pixels(stops_.size() == 1 ? stops_.front() : kDefaultStop));
    return (width / step + 1) * step;
}

int LineRuler::Width(std::string_view utf8) const {
    int width = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\t') {
            width = AfterTab(width);
        } else if (byte < 0x80U) {
            width += ascii_[byte];
        } else if (byte >= 0xC0U) {
            width += full_;  // the first byte of a character; half-width ones are told apart below
        }
    }
    // Half-width katakana begin with the bytes EF BD or EF BE.
    for (auto at = utf8.find('\xEF'); at != std::string_view::npos;
         at = utf8.find('\xEF', at + 1)) {
        const auto next = at + 1 < utf8.size() ? static_cast<unsigned char>(utf8[at + 1]) : 0U;
        if (next == 0xBDU || next == 0xBEU) width -= full_ - half_;
    }
    return width;
}

}  // namespace tamrin
