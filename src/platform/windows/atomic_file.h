#pragma once

#include <string>
#include <string_view>

namespace tamrin {

// Replaces the file at `path` by `bytes` as one step. A file that was there keeps its attributes
// and its access rights. A folder, a read-only file and one that another program holds open are
// refused. On failure answers false, and the folder is as it was.
bool ReplaceAtomically(const std::wstring& path, std::string_view bytes);

// Adds `bytes` at the end of a file, which is made when there is none, and flushes them to the
// disk.
bool AppendTo(const std::wstring& path, std::string_view bytes);

}  // namespace tamrin
