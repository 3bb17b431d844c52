#include "app/lines.h"

namespace tamrin {

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    for (;;) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (end != std::string_view::npos && line.ends_with('\r')) line.remove_suffix(1);
        lines.emplace_back(line);
        if (end == std::string_view::npos) return lines;
        text.remove_prefix(end + 1);
    }
}

std::string JoinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        if (&line != &lines.front()) text += "\r\n";
        text += line;
    }
    return text;
}

}  // namespace tamrin
