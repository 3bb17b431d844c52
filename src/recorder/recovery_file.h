#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/text.h"

namespace tamrin {

// Keeps the lines of a recording in a scenario file of their own as they come, so that a crash
// loses none. It stands until the recording is saved or given up.
//
// Until then it is locked: a further program in the same folder leaves it alone. What that program
// records it keeps in a file of another name, "Recovery 2.csv".
class RecoveryFile {
public:
    RecoveryFile(Files& files, const TextCodec& codec) : files_(files), codec_(codec) {}

    // "Recovery.csv" in the program's folder.
    std::string DefaultPath() const;

    // Begins the file anew with the lines that the list holds, under another number where a program
    // has one at `path` that runs still, or whose lines wait for their user. Enciphered when
    // `cipher` is set, as the scenario will be when it is saved.
    void Begin(const std::string& path, const std::vector<std::string>& lines, bool cipher);

    // Adds a line and flushes it to the disk. False when it could not be kept.
    bool Append(const std::string& line);

    // Deletes the file that this run has begun or taken over; nothing is kept any more.
    void Remove();

    // The lines that an earlier run has left behind; nothing when none has, or it runs still. From
    // then on the file is this run's.
    std::optional<std::vector<std::string>> TakeOver();

private:
    // Makes a file this run's; false when it is another's.
    bool Own(const std::string& path);
    // Makes a file of that name, or of the name with a number, this run's.
    void OwnOneOf(const std::string& path);
    // Lets go of the file, which stays.
    void LetGo();

    Files& files_;
    const TextCodec& codec_;
    std::string wanted_;              // where lines are to be kept, "" when they are not
    std::string path_;                // where they are; "" also when no file could be had
    std::unique_ptr<FileLock> lock_;  // of the file at path_
    bool cipher_ = false;
};

}  // namespace tamrin
