#pragma once

#include <string>

#include "app/platform.h"

namespace tamrin {

// Adds a line, with the date and time before it, to the log "Tamrin.log" in the program's folder,
// in code page 932. What cannot be written is not logged.
void Log(const Platform& platform, const std::string& line);

}  // namespace tamrin
