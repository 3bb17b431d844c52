#pragma once

#include <string>

namespace tamrin {

// The program, defined by its entry file. Called with the command line without the program's name,
// as the user or another program wrote it; answers the exit code.
int Main(const std::string& command_line);

}  // namespace tamrin
