#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tamrin {

class Clock;
class Files;
class TextCodec;

// Answers the records of a scenario file, plain or enciphered; nothing when it cannot be read.
std::optional<std::vector<std::string>> ReadScenarioFile(const Files& files, const TextCodec& codec,
                                                         const std::string& path);

// Writes a scenario file, enciphered when `cipher` is set. On failure answers false and does not
// change an older file of that name.
bool WriteScenarioFile(Files& files, const TextCodec& codec, const std::string& path,
                       const std::vector<std::string>& lines, bool cipher);

// Answers the names of the scenario files in `folder`: all ".csv", then all ".tamrin", both in the
// order in which the system lists them.
std::vector<std::string> ListScenarioFiles(const Files& files, const std::string& folder);

// Deletes a file and answers whether it is gone. Because another program may hold the file for a
// moment, it retries for up to five seconds and handles events meanwhile.
bool DeleteScenarioFile(Files& files, Clock& clock, const std::string& path);

}  // namespace tamrin
