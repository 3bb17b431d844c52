#include "recorder/recovery_file.h"

#include "scenario/scenario_file.h"
#include "scenario/scenario_text.h"

namespace tamrin {

std::string RecoveryFile::DefaultPath() const {
    return files_.ProgramFolder() + files_.Separator() + "Recovery.csv";
}

void RecoveryFile::Begin(const std::string& path, const std::vector<std::string>& lines,
                         bool cipher) {
    path_ = path;
    cipher_ = cipher;
    // Only what the user has worked on is worth a file: an empty one is begun with its first line.
    if (lines.empty()) {
        files_.Delete(path_);
    } else {
        files_.Replace(path_, WriteScenarioText(lines, codec_, cipher_));
    }
}

bool RecoveryFile::Append(const std::string& line) {
    if (path_.empty()) return true;
    std::string bytes = WriteScenarioText({line}, codec_, cipher_);
    if (cipher_ && files_.IsFile(path_)) bytes.erase(0, bytes.find('\n') + 1);  // "CIPHER"
    return files_.Append(path_, bytes);
}

void RecoveryFile::Remove() {
    if (!path_.empty()) files_.Delete(path_);
    path_.clear();
}

std::optional<std::vector<std::string>> RecoveryFile::TakeOver() {
    const std::string path = DefaultPath();
    auto lines = ReadScenarioFile(files_, codec_, path);
    if (!lines) return std::nullopt;
    // Lines that were enciphered one by one leave an empty one between them.
    std::erase(*lines, "");
    path_ = path;
    if (lines->empty()) {
        Remove();
        return std::nullopt;
    }
    return lines;
}

}  // namespace tamrin
