#include "app/settings.h"

#include <cmath>

#include "app/paths.h"
#include "player/input_data.h"

namespace tamrin {
void SetDefaultConf(Settings& settings, const Place& screen) {
    settings = Settings();
    settings.form_left = screen.width - 500;
    settings.form_top = screen.height - 300;
    settings.form_right = settings.form_left + 500;
    settings.form_bottom = settings.form_top + 300;
}

void ForEachLine(std::string_view text, const std::function<void(std::string_view line)>& take) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        take(line);
    }
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    }
    return result;
}

void ForEachSetting(
    std::string_view text,
    const std::function<void(const std::string& key, std::string_view value)>& take) {
    ForEachLine(text, [&](std::string_view line) {
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) return;
        if (line.find('=', equals + 1) != std::string_view::npos) return;
        std::string_view value = line.substr(equals + 1);
        const auto first = value.find_first_not_of(' ');
        value.remove_prefix(first == std::string_view::npos ? value.size() : first);
        take(LowerCase(TrimBlankRuns(line.substr(0, equals))), value);
    });
}

int SettingNumber(std::string_view value) {
    // The rounding mode is the default one, which takes halves to the even neighbour.
    return static_cast<int>(std::nearbyint(WholeNumber(value).value_or(0)));
}

}  // namespace tamrin
