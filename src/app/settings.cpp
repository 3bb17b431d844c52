#include "app/settings.h"

#include <cmath>

#include "app/paths.h"
#include "platform/text.h"
#include "player/input_data.h"

namespace tamrin {
void SetDefaultConf(Settings& settings, const Place& screen) {
    settings = Settings();
    settings.form_left = screen.width - 500;
    settings.form_top = screen.height - 300;
    settings.form_right = settings.form_left + 500;
    settings.form_bottom = settings.form_top + 300;
}

void ForEachSetting(
    std::string_view text,
    const std::function<void(const std::string& key, std::string_view value)>& take) {
    while (!text.empty()) {
        const std::string_view line = TakeLine(text, LineEnds::kAny);
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        if (line.find('=', equals + 1) != std::string_view::npos) continue;
        std::string_view value = line.substr(equals + 1);
        const auto first = value.find_first_not_of(' ');
        value.remove_prefix(first == std::string_view::npos ? value.size() : first);
        take(LowerCase(TrimBlankRuns(line.substr(0, equals))), value);
    }
}

int SettingNumber(std::string_view value) {
    // The rounding mode is the default one, which takes halves to the even neighbour.
    return static_cast<int>(std::nearbyint(WholeNumber(value).value_or(0)));
}

}  // namespace tamrin
