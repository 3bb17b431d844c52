#include "app/options_file.h"

#include <algorithm>
#include <array>

#include "app/paths.h"
#include "platform/text.h"
#include "scenario/character_escape.h"

namespace tamrin {
namespace {

std::string PathOf(const Files& files) {
    return files.ProgramFolder() + files.Separator() + "Options.txt";
}

// What "browser kind" may say; in the order of BrowserKind.
constexpr std::array<std::string_view, 3> kKinds = {"", "explorer", "chromium"};

BrowserKind KindOf(std::string_view word) {
    const auto at = std::find(kKinds.begin(), kKinds.end(), LowerCase(word));
    return at == kKinds.end() ? BrowserKind::kAny : static_cast<BrowserKind>(at - kKinds.begin());
}

}  // namespace

void OptionsLoad(Options& options, const Files& files, const TextCodec& codec) {
    const auto bytes = files.Read(PathOf(files));
    if (!bytes) return;
    const std::string text = UnescapeCharacters(codec.Decode(*bytes));
    options.recent_files.clear();
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view line = TakeLine(rest, LineEnds::kAny);
        const auto equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        const std::string key = LowerCase(TrimBlankRuns(line.substr(0, equals)));
        std::string value = StripQuotes(line.substr(equals + 1));
        if (key == "browser") {
            options.browser_path = std::move(value);
        } else if (key == "browser kind") {
            options.browser_kind = KindOf(value);
        } else if (key == "trace") {
            options.trace_path = std::move(value);
        } else if (key == "debug address") {
            options.debug_address = std::move(value);
        } else if (key == "recent" && !value.empty() &&
                   options.recent_files.size() < kMostRecentFiles) {
            options.recent_files.push_back(std::move(value));
        }
    }
}

bool OptionsSave(const Options& options, Files& files, const TextCodec& codec) {
    std::string text =
        "browser = " + options.kept_browser_path.value_or(options.browser_path) + "\r\n";
    const auto kind = static_cast<std::size_t>(options.browser_kind);
    if (options.browser_kind != BrowserKind::kAny)
        text.append("browser kind = ").append(kKinds[kind]) += "\r\n";
    if (!options.trace_path.empty()) text += "trace = " + options.trace_path + "\r\n";
    if (!options.debug_address.empty()) {
        text += "debug address = " + options.debug_address + "\r\n";
    }
    for (const std::string& path : options.recent_files) text += "recent = " + path + "\r\n";
    std::string bytes;
    AppendEncoded(bytes, text, codec);
    return files.Read(PathOf(files)) == bytes || files.Replace(PathOf(files), bytes);
}

void RememberRecentFile(Options& options, const std::string& path) {
    std::erase(options.recent_files, path);
    options.recent_files.insert(options.recent_files.begin(), path);
    if (options.recent_files.size() > kMostRecentFiles) {
        options.recent_files.resize(kMostRecentFiles);
    }
}

}  // namespace tamrin
