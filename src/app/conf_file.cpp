#include "app/conf_file.h"

#include <variant>

#include "app/settings.h"
#include "scenario/character_escape.h"

namespace tamrin {
namespace {

using Member = std::variant<int Settings::*, bool Settings::*, std::string Settings::*>;

struct Entry {
    std::string_view key;       // as it is written
    std::string_view read_key;  // as it is looked for, "" when it is not
    Member member;
};

// In the order of the file.
const Entry kEntries[] = {
    {"form left", "form left", &Settings::form_left},
    {"form top", "form top", &Settings::form_top},
    {"form right", "form right", &Settings::form_right},
    {"form bottom", "form bottom", &Settings::form_bottom},
    {"top height", "top height", &Settings::top_height},
    {"auto point", "auto point", &Settings::auto_point},
    {"rec change only", "rec change only", &Settings::rec_change_only},
    {"async", "async", &Settings::async},
    {"cipher", "scipher", &Settings::cipher},
    {"disp", "disp", &Settings::disp},
    {"disp top", "disp top", &Settings::disp_top},
    {"scroll bar", "scroll bar", &Settings::scroll_bar},
    {"save folder path", "save folder path", &Settings::save_folder_path},
    {"mouse click", "mouse click", &Settings::mouse_click},
    {"tasktray", "tasktray", &Settings::tasktray},
    {"quit after play", "quit after play", &Settings::quit_after_play},
    {"play count", "", &Settings::play_count},
    {"max wait time", "max wait time", &Settings::max_wait_time},
};

struct Reader {
    Settings& settings;
    std::string_view value;

    void operator()(int Settings::* member) const { settings.*member = SettingNumber(value); }
    void operator()(bool Settings::* member) const { settings.*member = SettingNumber(value) != 0; }
    void operator()(std::string Settings::* member) const { settings.*member = value; }
};

struct Writer {
    const Settings& settings;

    std::string operator()(int Settings::* member) const {
        return std::to_string(settings.*member);
    }
    std::string operator()(bool Settings::* member) const { return settings.*member ? "1" : "0"; }
    std::string operator()(std::string Settings::* member) const { return settings.*member; }
};

std::string PathOf(const Files& files) {
    return files.ProgramFolder() + files.Separator() + "Conf.txt";
}

}  // namespace

void ReadConf(Settings& settings, std::string_view text) {
    ForEachSetting(text, [&](const std::string& key, std::string_view value) {
        for (const Entry& entry : kEntries) {
            if (key == entry.read_key) std::visit(Reader{settings, value}, entry.member);
        }
    });
}

std::string WriteConf(const Settings& settings) {
    std::string text;
    for (const Entry& entry : kEntries) {
        text += entry.key;
        text += " = ";
        text += std::visit(Writer{settings}, entry.member);
        text += "\r\n";
    }
    return text;
}

void ReadConfFile(Settings& settings, const Files& files, const TextCodec& codec) {
    const auto bytes = files.Read(PathOf(files));
    if (bytes) ReadConf(settings, UnescapeCharacters(codec.Decode(*bytes)));
}

bool WriteConfFile(const Settings& settings, Files& files, const TextCodec& codec) {
    // Only the folder's name can hold a character that Shift-JIS lacks.
    std::string bytes;
    AppendEncoded(bytes, WriteConf(settings), codec);
    // A folder that cannot be written to matters only to whoever has changed something.
    return files.Read(PathOf(files)) == bytes || files.Replace(PathOf(files), bytes);
}

}  // namespace tamrin
