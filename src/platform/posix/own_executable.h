#pragma once

#include <string>

namespace tamrin {

// The full path of this program's own file, "" when the system does not tell it.
std::string OwnExecutable();

}  // namespace tamrin
