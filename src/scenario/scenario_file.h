#pragma once

#include <string>
#include <vector>

namespace tamrin {

class Clock;
class Files;

// Answers the names of the scenario files in `folder`: all ".csv", then all ".tamrin", both in the
// order in which the system lists them.
std::vector<std::string> ListScenarioFiles(const Files& files, const std::string& folder);

// Deletes a file and answers whether it is gone. Because another program may hold the file for a
// moment, it retries for up to five seconds and handles events meanwhile.
bool DeleteScenarioFile(Files& files, Clock& clock, const std::string& path);

}  // namespace tamrin
