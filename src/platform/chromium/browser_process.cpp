#include "platform/chromium/browser_process.h"

#include <charconv>
#include <vector>

namespace tamrin {
namespace {

// The names under which browsers of this family are installed, in the order of preference.
constexpr const char* kNames[] = {
    "chromium", "chromium-browser", "google-chrome",         "google-chrome-stable",
    "chrome",   "microsoft-edge",   "microsoft-edge-stable", "msedge",
};

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

constexpr const char* kDisabledFeatures =
    "--disable-features=Translate,BackForwardCache,Prerender2,HttpsUpgrades,"
    "HttpsFirstBalancedModeAutoEnable,MediaRouter,OptimizationHints,AutofillServerCommunication";

std::vector<std::string> Arguments(const Processes& processes, const std::string& profile) {
    std::vector<std::string> arguments{
        "--user-data-dir=" + profile,
        "--remote-debugging-port=0",
        // Nothing but the scenario's pages: no greeting, no questions, no traffic of its own.
        "--no-first-run",
        "--no-default-browser-check",
        "--disable-background-networking",
        "--disable-component-update",
        "--disable-default-apps",
        "--disable-sync",
        "--disable-quic",
        "--disable-breakpad",
        "--no-pings",
        "--password-store=basic",
        "--use-mock-keychain",
        "--hide-crash-restore-bubble",
        "--disable-search-engine-choice-screen",
        "--disable-popup-blocking",
        "--disable-prompt-on-repost",
        "--disable-hang-monitor",
        // Keys and clicks count from the first moment of a page, not only once it has been drawn.
        "--allow-pre-commit-input",
        // A page goes back to where it was by loading again, and never shows before it is asked
        // for.
        kDisabledFeatures,
        // A window that other windows cover works as fast as one in front.
        "--disable-backgrounding-occluded-windows",
        "--disable-renderer-backgrounding",
        "--disable-background-timer-throttling",
        "--lang=ja",
        "--accept-lang=ja,en-US,en",
    };
    if (!processes.HasDisplay()) {
        arguments.insert(arguments.end(), {"--headless=new", "--window-size=1280,900"});
    }
    if (processes.IsRoot()) {
        arguments.insert(arguments.end(),
                         {"--no-sandbox", "--disable-dev-shm-usage", "--test-type"});
    }
    arguments.emplace_back("about:blank");
    return arguments;
}

// What no switch can tell the browser: not to offer to keep passwords or to translate, in boxes
// that lie over the page.
constexpr const char* kPreferences =
    R"({"credentials_enable_service":false,"profile":{"password_manager_enabled":false},)"
    R"("translate":{"enabled":false},"autofill":{"profile_enabled":false,"credit_card_enabled":false}})";

bool WritePreferences(Files& files, const std::string& profile) {
    const std::string folder = profile + files.Separator() + "Default";
    return files.MakeFolder(folder) &&
           files.Replace(folder + files.Separator() + "Preferences", kPreferences);
}

}  // namespace

std::unique_ptr<BrowserProcess> BrowserProcess::Start(Processes& processes, Files& files,
                                                      Clock& clock, const BrowserStart& start,
                                                      std::string& why) {
    const std::string executable = FindBrowser(processes, files, start.executable, why);
    if (executable.empty()) return nullptr;
    std::unique_ptr<BrowserProcess> browser(new BrowserProcess(processes));
    browser->profile_ = processes.MakeTemporaryFolder();
    if (browser->profile_.empty() || !WritePreferences(files, browser->profile_)) {
        why = "ブラウザ用の一時フォルダを作成できません。";
        return nullptr;
    }
    browser->process_ = processes.Start(executable, Arguments(processes, browser->profile_));
    if (!browser->process_) {
        why = "ブラウザを起動できません。\r\n" + executable;
        return nullptr;
    }
    if (browser->WaitForPort(files, clock, start, why)) return browser;
    why += "\r\n" + executable;
    return nullptr;
}

BrowserProcess::~BrowserProcess() {
    if (process_) process_->Kill();
    if (!profile_.empty()) processes_.RemoveTemporaryFolder(profile_);
}

bool BrowserProcess::WaitForPort(const Files& files, Clock& clock, const BrowserStart& start,
                                 std::string& why) {
    const std::uint32_t begin = clock.TickCount();
    while (!ReadPort(files)) {
        if (!process_->Running()) {
            why = "ブラウザがすぐに終了しました。実行ファイルを確認して下さい。";
            return false;
        }
        if (clock.TickCount() - begin >= static_cast<std::uint32_t>(start.limit_ms)) {
            why = "ブラウザが " + std::to_string((start.limit_ms + 999) / 1000) +
                  " 秒以内に準備できませんでした。";
            return false;
        }
        if (start.stop_requested && start.stop_requested()) {
            why = "ブラウザの起動を中止しました。";
            return false;
        }
        clock.Sleep(10);
    }
    return true;
}

// The browser writes the file when its port is open: the port, and the path on a line of its own.
bool BrowserProcess::ReadPort(const Files& files) {
    const auto text = files.Read(profile_ + files.Separator() + "DevToolsActivePort");
    if (!text) return false;
    const auto line_end = text->find('\n');
    if (line_end == std::string::npos) return false;
    std::from_chars(text->data(), text->data() + line_end, port_);
    path_ = text->substr(line_end + 1);
    while (!path_.empty() && (path_.back() == '\n' || path_.back() == '\r')) path_.pop_back();
    return port_ != 0 && path_.starts_with('/');
}

}  // namespace tamrin
