#include "recorder/recovery_file.h"

#include "scenario/scenario_text.h"

namespace tamrin {
namespace {

// How many programs can record at the same time.
constexpr int kFileLimit = 9;

// The path itself, then "Recovery 2.csv" and so on.
std::string Numbered(const std::string& path, int number) {
    if (number == 1) return path;
    return std::string(path).insert(path.rfind('.'), " " + std::to_string(number));
}

}  // namespace

std::string RecoveryFile::DefaultPath(const Files& files) {
    return files.ProgramFolder() + files.Separator() + "Recovery.csv";
}

bool RecoveryFile::IsOne(const std::string& path, const Files& files) {
    bool is_one = false;
    for (int i = 1; i <= kFileLimit; ++i) is_one |= path == Numbered(DefaultPath(files), i);
    return is_one;
}

bool RecoveryFile::Own(const std::string& path) {
    auto lock = files_.Lock(path + ".lock");
    if (!lock) return false;
    path_ = path;
    lock_ = std::move(lock);
    return true;
}

// A file that a crash has left and that no user was offered yet is overwritten only when all other
// names are in use.
void RecoveryFile::OwnOneOf(const std::string& path) {
    for (const bool overwrites : {false, true}) {
        for (int i = 1; i <= kFileLimit && !lock_; ++i) {
            const std::string numbered = Numbered(path, i);
            if (overwrites || !files_.IsFile(numbered)) Own(numbered);
        }
    }
}

void RecoveryFile::LetGo() {
    wanted_.clear();
    path_.clear();
    lock_.reset();
}

void RecoveryFile::Begin(const std::string& path, const std::vector<std::string>& lines,
                         bool cipher) {
    cipher_ = cipher;
    if (wanted_ != path || !lock_) {
        LetGo();
        wanted_ = path;
        OwnOneOf(path);
    }
    if (!lock_) return;
    // Only what the user has worked on is worth a file: an empty one is begun with its first line.
    if (lines.empty()) {
        files_.Delete(path_);
    } else {
        files_.Replace(path_, WriteScenarioText(lines, codec_, cipher_));
    }
}

bool RecoveryFile::Append(const std::string& line) {
    if (path_.empty()) return wanted_.empty();
    std::string bytes = WriteScenarioText({line}, codec_, cipher_);
    if (cipher_ && files_.IsFile(path_)) bytes.erase(0, bytes.find('\n') + 1);  // "CIPHER"
    return files_.Append(path_, bytes);
}

void RecoveryFile::Remove() {
    if (lock_) files_.Delete(path_);
    LetGo();
}

std::optional<std::vector<std::string>> RecoveryFile::TakeOver() {
    LetGo();
    for (int i = 1; i <= kFileLimit; ++i) {
        const std::string path = Numbered(DefaultPath(files_), i);
        if (!files_.IsFile(path) || !Own(path)) continue;
        const auto bytes = files_.Read(path);
        if (!bytes) continue;
        wanted_ = DefaultPath(files_);
        std::vector<std::string> lines = ReadScenarioText(*bytes, codec_);
        // Lines that were enciphered one by one leave an empty one between them.
        std::erase(lines, "");
        if (!lines.empty()) return lines;
        Remove();
    }
    LetGo();
    return std::nullopt;
}

}  // namespace tamrin
