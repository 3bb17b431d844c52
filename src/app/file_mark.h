#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/files.h"

namespace tamrin {

// What a file held at some moment: its size, and a hash of its bytes. Times of files are not used:
// copying and synchronising change them without changing the text, and the other way round.
struct FileMark {
    std::size_t size = 0;
    std::size_t hash = 0;

    bool operator==(const FileMark&) const = default;
};

// Nothing when the file cannot be read.
std::optional<FileMark> MarkFile(const Files& files, const std::string& path);

}  // namespace tamrin
