#include "platform/chromium/browser_command.h"

namespace tamrin {
namespace {

// The names under which browsers of this family are installed, in the order of preference.
constexpr const char* kNames[] = {
    "chromium", "chromium-browser", "google-chrome",         "google-chrome-stable",
    "chrome",   "microsoft-edge",   "microsoft-edge-stable", "msedge",
};

}  // namespace

std::string FindBrowser(const Processes& processes, const Files& files, const std::string& wanted,
                        std::string& why) {
    if (!wanted.empty()) {
        if (files.IsFile(wanted)) return wanted;
        const std::string found = processes.FindExecutable(wanted);
        if (found.empty()) {
            why = "指定されたブラウザがありません。\r\n" + wanted +
                  "\r\n-browser の指定を確認して下さい。";
        }
        return found;
    }
    for (const char* name : kNames) {
        const std::string found = processes.FindExecutable(name);
        if (!found.empty()) return found;
    }
    why =
        "ブラウザが見つかりません（chromium、google-chrome、microsoft-edge を探しました）。\r\n"
        "いずれかをインストールするか、-browser でブラウザの実行ファイルを指定して下さい。";
    return "";
}

std::vector<std::string> BasicArguments(const Processes& processes, const std::string& profile) {
    std::vector<std::string> arguments{
        "--user-data-dir=" + profile,
        "--remote-debugging-port=0",
        "--no-first-run",
        "--no-default-browser-check",
        "--hide-crash-restore-bubble",
        "--disable-search-engine-choice-screen",
    };
    if (!processes.HasDisplay()) {
        arguments.insert(arguments.end(), {"--headless=new", "--window-size=1280,900"});
    }
    if (processes.IsRoot()) {
        arguments.insert(arguments.end(),
                         {"--no-sandbox", "--disable-dev-shm-usage", "--test-type"});
    }
    return arguments;
}

}  // namespace tamrin
