// Plays input records against a page of 200 elements in a real browser, beside a plain script that
// only asks the browser to evaluate something.

#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/chromium/browser_process.h"
#include "platform/chromium/devtools.h"
#include "platform/chromium/launcher.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "player/exec_record.h"
#include "samples/web_server.h"
#include "table.h"

namespace tamrin {
namespace {

constexpr int kElements = 200;

std::string Page() {
    std::string html = "<!DOCTYPE html><title>bench</title><form>";
    for (int i = 0; i < kElements; ++i) {
        html += "<input type=text id=field" + std::to_string(i) + ">";
    }
    return html + "</form>";
}

// A list of input records, one for each field of the page, and a window that nobody sees.
class Host : public PlayerHost {
public:
    Host() {
        for (int i = 0; i < kElements; ++i) {
            lines_.push_back("input\t,id=field" + std::to_string(i) + ",type=text,indt=値" +
                             std::to_string(i));
        }
    }
    int RecordCount() override { return kElements; }
    std::string_view Record(int row) override { return lines_[static_cast<std::size_t>(row)]; }
    void SetStatus(const std::string&) override {}
    void ShowMessage(const std::string& text, const std::string&) override {
        std::cerr << text << '\n';
    }
    std::string ClipboardText() override { return ""; }
    std::optional<Rect> WindowRect() override { return std::nullopt; }
    void SetWindowVisible(bool) override {}

private:
    std::vector<std::string> lines_;
};

class Bench {
public:
    int Run() {
        clock_.AddSource([this] { launcher_.DeliverEvents(); });
        std::string why;
        const std::shared_ptr<Browser> browser = launcher_.Create(why);
        if (!browser || !Open(*browser)) {
            std::cerr << "no page: " << why << '\n';
            return 1;
        }
        Globals globals;
        globals.activity = "play";
        globals.settings.auto_point = std::getenv("NOPOINT") == nullptr;
        RecordExecutor executor(globals, clock_, launcher_.input(), host_, browser);
        const auto play = [&] {
            for (int row = 0; row < kElements; ++row) {
                executor.ExecRecord(ParseRecord(host_.Record(row)), row, 4);
                clock_.DoEvents();
            }
        };
        const std::uint64_t before = launcher_.RoundTrips();
        play();
        const auto trips = static_cast<double>(launcher_.RoundTrips() - before);
        const double played = BestSeconds(play);
        Table table;
        table.Row("round trips of an input record", trips / kElements, 3.001, "");
        table.Row("200 input records, 4 x 200 bare evaluates", 1000 * played,
                  1000 * 4 * BareEvaluates(kElements), "ms");
        return table.ExitCode();
    }

private:
    bool Open(Browser& browser) {
        browser.Navigate(server_.Url("/"));
        for (int i = 0; i < 1000 && (browser.Busy() || browser.ReadyState() != 4); ++i) {
            clock_.Sleep(10);
            clock_.DoEvents();
        }
        return static_cast<bool>(browser.document().Named("field0").by_id);
    }

    // The seconds of a plain script on the same page in a browser of its own.
    double BareEvaluates(int count) {
        std::string why;
        std::unique_ptr<BrowserProcess> process;
        DevTools devtools(clock_, {});  // is closed before the browser is dropped
        process = BrowserProcess::Start(processes_, files_, clock_, {}, devtools, why);
        if (!process) return 0;
        const auto target =
            devtools.Call("", "Target.createTarget", {{"url", server_.Url("/")}}).Result();
        const auto attached = devtools
                                  .Call("", "Target.attachToTarget",
                                        {{"targetId", target["targetId"]}, {"flatten", true}})
                                  .Result();
        const std::string session = attached["sessionId"];
        clock_.Sleep(1000);  // for the page to load
        return BestSeconds([&] {
            for (int i = 0; i < count; ++i) {
                devtools.Call(session, "Runtime.evaluate",
                              {{"expression", "1"}, {"returnByValue", true}});
            }
        });
    }

    PosixFiles files_;
    PosixProcesses processes_;
    SystemClock clock_;
    WebServer server_{[](const WebRequest&) { return WebReply{.body = Page()}; }};
    ChromiumLauncher launcher_{processes_, files_, clock_, {}};
    Host host_;
};

}  // namespace
}  // namespace tamrin

int main() { return tamrin::Bench().Run(); }
