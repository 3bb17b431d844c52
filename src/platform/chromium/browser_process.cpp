#include "platform/chromium/browser_process.h"

#include <optional>
#include <vector>

namespace tamrin {
namespace {

// The names under which browsers of this family are installed, in the order of preference.
constexpr const char* kNames[] = {
    "chromium", "chromium-browser", "google-chrome",         "google-chrome-stable",
    "chrome",   "microsoft-edge",   "microsoft-edge-stable", "msedge",
};

// The executable of a browser of this family: `wanted`, a path or a name, or "" to look for one.
// When there is none "", and `why` says in Japanese what to do.
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

// What every browser is started with.
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

constexpr const char* kDisabledFeatures =
    "--disable-features=Translate,BackForwardCache,Prerender2,HttpsUpgrades,"
    "HttpsFirstBalancedModeAutoEnable,MediaRouter,OptimizationHints,AutofillServerCommunication";

std::vector<std::string> OwnArguments(const Processes& processes, const std::string& profile) {
    std::vector<std::string> arguments = BasicArguments(processes, profile);
    for (const char* argument : {
             // Nothing but the scenario's pages: no questions, no traffic of its own.
             "--disable-background-networking",
             "--disable-component-update",
             "--disable-default-apps",
             "--disable-sync",
             "--disable-quic",
             "--disable-breakpad",
             "--no-pings",
             "--password-store=basic",
             "--use-mock-keychain",
             "--disable-popup-blocking",
             "--disable-prompt-on-repost",
             "--disable-hang-monitor",
             // Keys and clicks reach a page from its first moment, not only once it is drawn.
             "--allow-pre-commit-input",
             // Going back loads a page again, and no page is loaded before it is asked for.
             kDisabledFeatures,
             // A window that other windows cover works as fast as one in front.
             "--disable-backgrounding-occluded-windows",
             "--disable-renderer-backgrounding",
             "--disable-background-timer-throttling",
             "--lang=ja",
             "--accept-lang=ja,en-US,en",
             "about:blank",
         }) {
        arguments.emplace_back(argument);
    }
    return arguments;
}

// No switch turns these off: offers to keep passwords and to translate, in boxes over the page.
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
    std::unique_ptr<BrowserProcess> browser(new BrowserProcess(processes, files, clock));
    browser->temporary_ = start.profile.empty();
    browser->profile_ = start.profile;
    const bool started = browser->temporary_ ? browser->StartOwn(executable, why)
                                             : browser->StartKept(executable, why);
    if (!started) return nullptr;
    if (browser->WaitForPort(start, why)) return browser;
    if (browser->temporary_) why += "\r\n" + executable;
    return nullptr;
}

bool BrowserProcess::StartOwn(const std::string& executable, std::string& why) {
    profile_ = processes_.MakeTemporaryFolder();
    if (profile_.empty() || !WritePreferences(files_, profile_)) {
        why = "ブラウザ用の一時フォルダを作成できません。";
        return false;
    }
    process_ = processes_.Start(executable, OwnArguments(processes_, profile_));
    if (!process_) why = "ブラウザを起動できません。\r\n" + executable;
    return process_ != nullptr;
}

bool BrowserProcess::StartKept(const std::string& executable, std::string& why) {
    if (!files_.MakeFolder(profile_)) {
        why = "ブラウザ用のフォルダを作成できません。\r\n" + profile_;
        return false;
    }
    // A browser that has ended leaves its file behind; it would be taken for the new one's.
    files_.Delete(profile_ + files_.Separator() + std::string(kPortFile));
    std::vector<std::string> arguments = BasicArguments(processes_, profile_);
    arguments.emplace_back("about:blank");
    const bool launched = processes_.Launch(executable, arguments);
    if (!launched) why = "ブラウザを起動できません。\r\n" + executable;
    return launched;
}

BrowserProcess::~BrowserProcess() {
    if (process_) process_->Kill();
    if (temporary_ && !profile_.empty()) processes_.RemoveTemporaryFolder(profile_);
}

bool BrowserProcess::WaitForPort(const BrowserStart& start, std::string& why) {
    const std::uint32_t begin = clock_.TickCount();
    while (!ReadPort()) {
        if (process_ && !process_->Running()) {
            why = "ブラウザがすぐに終了しました。実行ファイルを確認して下さい。";
            return false;
        }
        if (clock_.TickCount() - begin >= static_cast<std::uint32_t>(start.limit_ms)) {
            why = temporary_ ? "ブラウザが " + std::to_string((start.limit_ms + 999) / 1000) +
                                   " 秒以内に準備できませんでした。"
                             : "ブラウザの準備ができませんでした。もう一度実行して下さい。";
            return false;
        }
        if (start.stop_requested && start.stop_requested()) {
            why = "ブラウザの起動を中止しました。";
            return false;
        }
        clock_.Sleep(10);
    }
    return true;
}

bool BrowserProcess::ReadPort() {
    const auto text = files_.Read(profile_ + files_.Separator() + std::string(kPortFile));
    const auto endpoint = text ? ReadActivePort(*text) : std::nullopt;
    if (endpoint) endpoint_ = *endpoint;
    return endpoint.has_value();
}

}  // namespace tamrin
