#pragma once

#include <string>
#include <vector>

#include "platform/process.h"

namespace tamrin {

// The folders in which browsers of this family keep their user's profiles unless they are told
// otherwise, on Windows and on Linux; those that do not exist among them. `separator` is that of
// the system.
std::vector<std::string> ProfileFolders(const Processes& processes, char separator);

}  // namespace tamrin
