#include "app/console_recording.h"

#include <ostream>

#include "app/paths.h"
#include "browser/wait.h"

namespace tamrin {
namespace {

constexpr std::uint32_t kLoadLimitMs = 30000;

// Handles events until `over` answers true.
void PassUntil(Clock& clock, const std::function<bool()>& over) {
    while (!over()) {
        clock.Sleep(10);
        clock.DoEvents();
    }
}

}  // namespace

ExitCode RecordToFile(frmIeAuto& window, const Platform& platform, const std::string& file,
                      const std::string& address, const std::function<bool()>& stop_requested,
                      std::ostream& output) {
    const std::string path = ResolvePath(file, "", platform.files);
    std::string why;
    const std::shared_ptr<Browser> browser = platform.browsers.Open("", why);
    if (!browser) {
        if (stop_requested()) return kInterrupted;
        window.ShowMessage(why, "ブラウザーを起動できません");
        return kNotStarted;
    }
    browser->Navigate(address);
    Clock& clock = platform.clock;
    const std::uint32_t start = clock.TickCount();
    PassUntil(clock, [&] {
        return IEState(*browser) == 4 || !browser->Alive() || stop_requested() ||
               clock.TickCount() - start > kLoadLimitMs;
    });
    RecordCommands& recording = window.recording();
    recording.Start(browser, RecordKind::kNew, path + ".recovery");
    // After this round trip the pages report what their user does.
    browser->AllDelivered();
    output << "記録しています。ブラウザーの窓を閉じるか Ctrl+C を押すと、保存して終わります。\n"
           << std::flush;
    PassUntil(clock,
              [&] { return !recording.BrowserOpen() || !browser->Alive() || stop_requested(); });
    PassUntil(clock, [&] { return recording.Stop(); });
    if (window.RecordCount() == 0) {
        window.ShowMessage("記録はありません。", "");
        return kNothing;
    }
    if (!window.SaveTo(path)) return kNotSaved;
    output << window.RecordCount() << " 行を保存しました：" << path << '\n';
    return kPlayed;
}

}  // namespace tamrin
