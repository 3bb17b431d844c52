#pragma once

#include <string>

#include "platform/files.h"

namespace tamrin {

// What the user is told when a file could not be written at `path`.
std::string SaveError(const std::string& path, const Files& files);

}  // namespace tamrin
