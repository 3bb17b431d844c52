#pragma once

#include <string>

namespace tamrin {

// The program, defined by its entry file. `command_line` is as the user or another program wrote
// it, without the program's name. Answers the exit code.
int Main(const std::string& command_line);

}  // namespace tamrin
