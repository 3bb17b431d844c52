#include "platform/chromium/browser_process.h"

#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

namespace tamrin {
namespace {

// The names under which browsers of this family are installed, in the order of preference.
constexpr const char* kNames[] = {
    "chromium", "chromium-browser", "google-chrome",         "google-chrome-stable",
    "chrome",   "microsoft-edge",   "microsoft-edge-stable", "msedge",
};

// How long it may take to end by itself.
constexpr std::uint32_t kEndLimitMs = 3000;

// How often it is looked at while it starts.
constexpr int kStartCheckMs = 20;

// The executable of a browser of this family: `wanted`, a path or a name, or "" to look for one.
// When there is none "", and `why` says in Japanese what to do.
std::string FindBrowser(const Processes& processes, const Files& files, const std::string& wanted,
                        std::string& why) {
    if (!wanted.empty()) {
        // A name without a folder is never a file of the current folder, where anybody may have
        // put one.
        const bool is_path = wanted.find_first_of("/\\") != std::string::npos;
        if (is_path && files.IsFile(wanted)) return wanted;
        const std::string found = processes.FindExecutable(wanted);
        if (found.empty()) {
            why = "指定されたブラウザーがありません。\r\n" + wanted +
                  "\r\n-browser の指定を確認してください。";
        }
        return found;
    }
    for (const char* name : kNames) {
        const std::string found = processes.FindExecutable(name);
        if (!found.empty()) return found;
    }
    why =
        "ブラウザーが見つかりません（chromium、google-chrome、microsoft-edge を探しました）。\r\n"
        "いずれかをインストールするか、-browser でブラウザーの実行ファイルを指定してください。";
    return "";
}

// What every browser is started with.
std::vector<std::string> BasicArguments(const Processes& processes, const std::string& profile,
                                        bool by_port) {
    std::vector<std::string> arguments{
        "--user-data-dir=" + profile,
        by_port ? "--remote-debugging-port=0" : "--remote-debugging-pipe",
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

// What a browser that only plays is started with in addition.
constexpr const char* kPlayArguments[] = {
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
};

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

BrowserProcess::BrowserProcess(Processes& processes, Files& files, Clock& clock, BrowserStart start)
    : processes_(processes),
      files_(files),
      clock_(clock),
      start_(std::move(start)),
      temporary_(start_.profile.empty()),
      by_port_(!processes.Environment("TAMRIN_DEBUGGING_PORT").empty()) {}

std::unique_ptr<BrowserProcess> BrowserProcess::Start(Processes& processes, Files& files,
                                                      Clock& clock, const BrowserStart& start,
                                                      DevTools& devtools, std::string& why) {
    const std::string executable = FindBrowser(processes, files, start.executable, why);
    if (executable.empty()) return nullptr;
    std::unique_ptr<BrowserProcess> browser(new BrowserProcess(processes, files, clock, start));
    if (!browser->MakeProfile(why) || !browser->Launch(executable, why)) return nullptr;
    browser->connected_ = browser->Connect(devtools, why);
    if (browser->connected_) return browser;
    if (browser->temporary_) why += "\r\n" + executable;
    return nullptr;
}

bool BrowserProcess::MakeProfile(std::string& why) {
    profile_ = temporary_ ? processes_.MakeTemporaryFolder() : start_.profile;
    const bool made = !profile_.empty() && (temporary_ ? WritePreferences(files_, profile_)
                                                       : files_.MakeFolder(profile_));
    if (made) return true;
    why = temporary_ ? "ブラウザー用の一時フォルダを作成できません。"
                     : "ブラウザー用のフォルダを作成できません。\r\n" + profile_;
    return false;
}

bool BrowserProcess::Launch(const std::string& executable, std::string& why) {
    // A browser that has ended leaves its file behind; it would be taken for the new one's.
    files_.Delete(profile_ + files_.Separator() + std::string(kPortFile));
    std::vector<std::string> arguments = BasicArguments(processes_, profile_, by_port_);
    if (temporary_) {
        arguments.insert(arguments.end(), std::begin(kPlayArguments), std::end(kPlayArguments));
    }
    arguments.emplace_back("about:blank");
    process_ = processes_.Start({.executable = executable,
                                 .arguments = std::move(arguments),
                                 .outlives = start_.outlives,
                                 .piped = !by_port_,
                                 .folder = profile_});
    if (!process_) why = "ブラウザーを起動できません。\r\n" + executable;
    return process_ != nullptr;
}

BrowserProcess::~BrowserProcess() {
    if (process_) {
        if (connected_ && start_.outlives && process_->Running()) return;
        End();
    }
    if (temporary_ && !profile_.empty()) processes_.RemoveTemporaryFolder(profile_);
}

void BrowserProcess::End() {
    const std::uint32_t begin = clock_.TickCount();
    while (connected_ && process_->Running() && clock_.TickCount() - begin < kEndLimitMs) {
        clock_.Sleep(5);
    }
    process_->Kill();
}

bool BrowserProcess::Connect(DevTools& devtools, std::string& why) {
    const std::uint32_t begin = clock_.TickCount();
    const auto answered = std::make_shared<bool>(false);
    const auto ask = [&] {
        devtools.Ask("", "Browser.getVersion", nlohmann::json::object(),
                     [answered](const DevToolsReply&) { *answered = true; });
    };
    if (!by_port_) {
        devtools.Use(OpenPipe(process_->TakePipe()));
        ask();
    }
    while (!devtools.WaitUntil([&] { return *answered; }, kStartCheckMs)) {
        const bool ended = !process_->Running() || (!by_port_ && !devtools.IsOpen());
        if (ended && temporary_) {
            why = "ブラウザーがすぐに終了しました。実行ファイルを確認してください。";
            return false;
        }
        if (ended) {
            // It has left its work to one that runs with this profile already.
            why =
                "ブラウザーに接続できません。開いているブラウザーを閉じてから、もう一度実行してください。";
            return false;
        }
        if (clock_.TickCount() - begin >= static_cast<std::uint32_t>(start_.limit_ms)) {
            why = temporary_ ? "ブラウザーが " + std::to_string((start_.limit_ms + 999) / 1000) +
                                   " 秒以内に準備できませんでした。"
                             : "ブラウザーの準備ができませんでした。もう一度実行してください。";
            return false;
        }
        if (start_.stop_requested && start_.stop_requested()) {
            why = "ブラウザーの起動を中止しました。";
            return false;
        }
        if (devtools.IsOpen()) continue;
        clock_.Sleep(10);
        if (ReadPort(devtools)) ask();
    }
    return true;
}

bool BrowserProcess::ReadPort(DevTools& devtools) {
    const auto text = files_.Read(profile_ + files_.Separator() + std::string(kPortFile));
    const auto endpoint = text ? ReadActivePort(*text) : std::nullopt;
    return endpoint && devtools.Connect(*endpoint, start_.limit_ms);
}

}  // namespace tamrin
