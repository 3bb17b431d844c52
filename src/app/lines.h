#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tamrin {

// The lines of a text that people exchange (the clipboard, a text box): they are parted by CR LF, a
// bare LF counts as well, and a text that ends in one has one more, empty, line. An empty text is
// one empty line.
std::vector<std::string> SplitLines(std::string_view text);

// The lines joined by CR LF, with none behind the last one.
std::string JoinLines(const std::vector<std::string>& lines);

}  // namespace tamrin
