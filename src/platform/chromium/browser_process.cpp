#include "platform/chromium/browser_process.h"

#include <optional>
#include <vector>

#include "platform/chromium/browser_command.h"

namespace tamrin {
namespace {

constexpr const char* kDisabledFeatures =
    "--disable-features=Translate,BackForwardCache,Prerender2,HttpsUpgrades,"
    "HttpsFirstBalancedModeAutoEnable,MediaRouter,OptimizationHints,AutofillServerCommunication";

std::vector<std::string> Arguments(const Processes& processes, const std::string& profile) {
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
             // Keys and clicks count from the first moment of a page, not only once it has been
             // drawn.
             "--allow-pre-commit-input",
             // A page goes back to where it was by loading again, and never shows before it is
             // asked
             // for.
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

bool BrowserProcess::ReadPort(const Files& files) {
    const auto text = files.Read(profile_ + files.Separator() + "DevToolsActivePort");
    const auto endpoint = text ? ReadActivePort(*text) : std::nullopt;
    if (endpoint) endpoint_ = *endpoint;
    return endpoint.has_value();
}

}  // namespace tamrin
