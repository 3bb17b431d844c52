#include "app/settings_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <variant>

#include "app/paths.h"
#include "player/input_data.h"
#include "scenario/character_escape.h"

namespace tamrin {
namespace {

constexpr int kMaxPlayCount = 99999;

using TakeSetting = std::function<void(const std::string& key, std::string_view value)>;

// Calls `take` with each line that has a "=": the key in lower case without the blanks around it,
// and all that follows the first "=".
void ForEachSetting(std::string_view text, const TakeSetting& take) {
    while (!text.empty()) {
        const std::string_view line = TakeLine(text, LineEnds::kAny);
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        take(LowerCase(TrimBlankRuns(line.substr(0, equals))), line.substr(equals + 1));
    }
}

// The number that a value stands for. The rounding mode is the default one: halves to the even
// neighbour.
int Number(std::string_view value) {
    return static_cast<int>(std::nearbyint(WholeNumber(value).value_or(0)));
}

using Member = std::variant<int Settings::*, bool Settings::*, std::string Settings::*>;

struct Entry {
    std::string_view key;       // as it is written
    std::string_view read_key;  // as it is read, "" when it is not
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

    void operator()(int Settings::* member) const { settings.*member = Number(value); }
    void operator()(bool Settings::* member) const { settings.*member = Number(value) != 0; }
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

// The words for "browser kind", in the order of BrowserKind.
constexpr std::array<std::string_view, 3> kKinds = {"", "explorer", "chromium"};

BrowserKind BrowserKindOf(std::string_view word) {
    const auto at = std::find(kKinds.begin(), kKinds.end(), LowerCase(word));
    return at == kKinds.end() ? BrowserKind::kAny : static_cast<BrowserKind>(at - kKinds.begin());
}

int RecordLimitOf(std::string_view seconds) {
    constexpr double kLongest = 24 * 60 * 60;
    const double number = WholeNumber(seconds).value_or(-1);
    return number < 0 || number > kLongest ? Options().record_limit : static_cast<int>(number);
}

std::string PathOf(const char* name, const Files& files) {
    return files.ProgramFolder() + files.Separator() + name;
}

std::optional<std::string> ReadText(const char* name, const Files& files, const TextCodec& codec) {
    const auto bytes = files.Read(PathOf(name, files));
    if (!bytes) return std::nullopt;
    return UnescapeCharacters(codec.Decode(*bytes));
}

// An unchanged file is not written: the folder may be read-only, which matters only to a user who
// has changed something.
bool WriteText(const char* name, const std::string& text, Files& files, const TextCodec& codec) {
    std::string bytes;
    AppendEncoded(bytes, text, codec);
    const std::string path = PathOf(name, files);
    return files.Read(path) == bytes || files.Replace(path, bytes);
}

}  // namespace

std::optional<int> PlayCountOf(std::string_view text) {
    const double number = WholeNumber(text).value_or(0);
    if (number < 1 || number > kMaxPlayCount) return std::nullopt;
    return static_cast<int>(number);
}

void SetDefaultConf(Settings& settings, const Place& screen) {
    settings = Settings();
    settings.form_left = screen.width - 500;
    settings.form_top = screen.height - 300;
    settings.form_right = settings.form_left + 500;
    settings.form_bottom = settings.form_top + 300;
}

void ReadConf(Settings& settings, std::string_view text) {
    ForEachSetting(text, [&](const std::string& key, std::string_view value) {
        if (value.find('=') != std::string_view::npos) return;
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
        for (const Entry& entry : kEntries) {
            if (!key.empty() && key == entry.read_key)
                std::visit(Reader{settings, value}, entry.member);
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

void LoadConf(Settings& settings, const Files& files, const TextCodec& codec) {
    const auto text = ReadText("Conf.txt", files, codec);
    if (!text) return;
    const Settings before = settings;
    ReadConf(settings, *text);
    if (settings.form_right > settings.form_left && settings.form_bottom > settings.form_top)
        return;
    settings.form_left = before.form_left;
    settings.form_top = before.form_top;
    settings.form_right = before.form_right;
    settings.form_bottom = before.form_bottom;
}

bool SaveConf(const Settings& settings, Files& files, const TextCodec& codec) {
    return WriteText("Conf.txt", WriteConf(settings), files, codec);
}

void ReadOptions(Options& options, std::string_view text) {
    options.recent_files.clear();
    ForEachSetting(text, [&](const std::string& key, std::string_view quoted) {
        std::string value = StripQuotes(quoted);
        if (key == "browser") {
            options.browser_path = std::move(value);
        } else if (key == "browser kind") {
            options.browser_kind = BrowserKindOf(value);
        } else if (key == "trace") {
            options.trace_path = std::move(value);
        } else if (key == "debug address") {
            options.debug_address = std::move(value);
        } else if (key == "record limit") {
            options.record_limit = RecordLimitOf(value);
        } else if (key == "tool panel") {
            options.tool_panel = Number(value) != 0;
        } else if (key == "recent" && !value.empty() &&
                   options.recent_files.size() < kMaxRecentFiles) {
            options.recent_files.push_back(std::move(value));
        }
    });
}

std::string WriteOptions(const Options& options) {
    std::string text;
    const auto add = [&](std::string_view key, std::string_view value) {
        text.append(key).append(" = ").append(value).append("\r\n");
    };
    const auto kind = kKinds[static_cast<std::size_t>(options.browser_kind)];
    add("browser", options.kept_browser_path.value_or(options.browser_path));
    if (!kind.empty()) add("browser kind", kind);
    if (!options.trace_path.empty()) add("trace", options.trace_path);
    if (!options.debug_address.empty()) add("debug address", options.debug_address);
    if (options.record_limit != Options().record_limit) {
        add("record limit", std::to_string(options.record_limit));
    }
    if (options.tool_panel) add("tool panel", "1");
    for (const std::string& path : options.recent_files) add("recent", path);
    return text;
}

void LoadOptions(Options& options, const Files& files, const TextCodec& codec) {
    if (const auto text = ReadText("Options.txt", files, codec)) ReadOptions(options, *text);
}

bool SaveOptions(const Options& options, Files& files, const TextCodec& codec) {
    return WriteText("Options.txt", WriteOptions(options), files, codec);
}

}  // namespace tamrin
