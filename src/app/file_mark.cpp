#include "app/file_mark.h"

#include <functional>
#include <string_view>

namespace tamrin {

std::optional<FileMark> MarkFile(const Files& files, const std::string& path) {
    const auto bytes = files.Read(path);
    if (!bytes) return std::nullopt;
    return FileMark{bytes->size(), std::hash<std::string_view>{}(*bytes)};
}

}  // namespace tamrin
