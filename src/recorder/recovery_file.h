#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/text.h"

namespace tamrin {

// Keeps the lines of a recording in a scenario file of their own as they come, so that a crash
// loses none. It stands until the recording is saved or given up.
class RecoveryFile {
public:
    RecoveryFile(Files& files, const TextCodec& codec) : files_(files), codec_(codec) {}

    // "Recovery.csv" in the program's folder.
    std::string DefaultPath() const;

    // Begins the file anew with the lines that the list holds. Enciphered when `cipher` is set, as
    // the scenario will be when it is saved.
    void Begin(const std::string& path, const std::vector<std::string>& lines, bool cipher);

    // Adds a line and flushes it to the disk. False when it could not be kept.
    bool Append(const std::string& line);

    // Deletes the file that this run has begun or taken over; nothing is kept any more.
    void Remove();

    // The lines that an earlier run has left behind; nothing when it has left none. From then on
    // the file is this run's.
    std::optional<std::vector<std::string>> TakeOver();

private:
    Files& files_;
    const TextCodec& codec_;
    std::string path_;  // "" when nothing is kept
    bool cipher_ = false;
};

}  // namespace tamrin
