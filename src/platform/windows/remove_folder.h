#pragma once

#include <string>

namespace tamrin {

// Deletes a folder with all that is in it, as far as that can be done. What a link in it leads to
// stays. True when the folder is gone.
bool RemoveFolder(const std::wstring& folder);

}  // namespace tamrin
