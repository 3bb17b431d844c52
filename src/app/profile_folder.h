#pragma once

#include <string>

#include "platform/files.h"
#include "platform/process.h"

namespace tamrin {

// The folder in which the browser for recording keeps its profile from one time to the next: among
// the user's own data, where the system has a place for it, else in the program's folder. It may
// not exist yet; the folder around it does.
std::string ProfileFolder(const Processes& processes, const Files& files);

}  // namespace tamrin
