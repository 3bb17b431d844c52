#pragma once

#include <string>
#include <string_view>

namespace tamrin {

// Replaces the file at `path`, or the one to which a symbolic link there leads, by `bytes` as one
// step. A file that was there keeps its permissions and, where the system allows it, its owner. On
// failure answers false, and the folder is as it was.
bool ReplaceFile(const std::string& path, std::string_view bytes);

// Writes all bytes to an open file; false on failure.
bool WriteAll(int file, std::string_view bytes);

}  // namespace tamrin
