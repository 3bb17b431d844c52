#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files.h"
#include "platform/text.h"

namespace tamrin {

// Keeps the lines of a recording in a scenario file as they come, so that a crash loses none. The
// file stays until the recording is saved or given up.
//
// Until then it is locked: another program in the same folder leaves it alone and keeps its own
// recording in a file of another name, "Recovery 2.csv".
class RecoveryFile {
public:
    RecoveryFile(Files& files, const TextCodec& codec) : files_(files), codec_(codec) {}

    // "Recovery.csv" in the program's folder.
    static std::string DefaultPath(const Files& files);

    // Whether a path is that one, or one of the same name with a number.
    static bool IsOne(const std::string& path, const Files& files);

    // Begins the file anew with the lines that the list holds. It gets another number where a
    // running program has the file at `path`, or where its lines still wait to be offered to their
    // user. Enciphered when `cipher` is set, as the scenario will be when it is saved.
    void Begin(const std::string& path, const std::vector<std::string>& lines, bool cipher);

    // Adds a line and flushes it to the disk. False when it could not be kept.
    bool Append(const std::string& line);

    // Deletes the file that this run has begun or taken over; nothing is kept any more.
    void Remove();

    // The lines that an earlier run has left behind; nothing when none has, or it is still running.
    // From then on the file belongs to this run.
    std::optional<std::vector<std::string>> TakeOver();

private:
    // Locks the file for this run; false when another program holds it.
    bool Own(const std::string& path);
    // Locks the file of that name, or of the name with a number, for this run.
    void OwnOneOf(const std::string& path);
    // Unlocks the file and leaves it where it is.
    void LetGo();

    Files& files_;
    const TextCodec& codec_;
    std::string wanted_;              // where lines are to be kept, "" when they are not
    std::string path_;                // where they are; "" also when no file could be had
    std::unique_ptr<FileLock> lock_;  // of the file at path_
    bool cipher_ = false;
};

}  // namespace tamrin
