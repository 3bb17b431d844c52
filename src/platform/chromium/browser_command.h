#pragma once

#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/process.h"

namespace tamrin {

// The executable of a browser of this family: `wanted`, a path or a name, or "" to look for one.
// When there is none "", and `why` says in Japanese what to do.
std::string FindBrowser(const Processes& processes, const Files& files, const std::string& wanted,
                        std::string& why);

// What every browser is started with: a profile that nobody else uses, a port of its own choice
// for DevTools, and no greetings.
std::vector<std::string> BasicArguments(const Processes& processes, const std::string& profile);

}  // namespace tamrin
