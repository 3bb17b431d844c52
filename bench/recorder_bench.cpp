// Measures the recorder in the whole program, with windows in memory, before a real browser: the
// poll for the browser that the user works in, the way of a click, the tag list of a large page,
// and the memory that a long recording takes.

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <functional>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "app/frm_ie_auto.h"
#include "live_bytes.h"
#include "platform/chromium/browser_process.h"
#include "platform/chromium/chromium_windows.h"
#include "platform/chromium/launcher.h"
#include "platform/headless/console_dialogs.h"
#include "platform/headless/headless_window_system.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "platform/posix/text_codec.h"
#include "recorder/tag_list.h"
#include "samples/web_server.h"
#include "table.h"

namespace tamrin {
namespace {

// A user without a display, whose own browsers stay out of it.
class NoProfiles : public PosixProcesses {
public:
    bool HasDisplay() const override { return false; }
    std::string Environment(const std::string& name) const override {
        if (name == "TAMRIN_DEBUGGING_PORT") return "1";  // the user's hand is a second connection
        return name == "PATH" ? PosixProcesses::Environment(name) : std::string();
    }
    std::string MakeTemporaryFolder() override {
        return profile = PosixProcesses::MakeTemporaryFolder();
    }

    std::string profile;  // of the browser that was started last
};

// "/tags/N" is a page of about N elements. In the other, after work(n), the focus goes n times from
// one field to the other, with another value each time, as fast as 2000 events a second.
std::string Page(const std::string& path) {
    std::string html = "<!DOCTYPE html><meta charset=utf-8><title>bench</title>";
    if (path.starts_with("/tags/")) {
        for (int i = 0; i < std::stoi(path.substr(6)) / 5; ++i) {
            const std::string n = std::to_string(i);
            html += "<p id=p" + n + "><label>項目" + n + " <input name=n" + n +
                    " type=text value=値" + n + "></label><a href=/page/" + n +
                    ">link</a><img alt=text></p>";
        }
        return html;
    }
    return html +
           "<form><input id=a><input id=b><input type=submit></form><button id=c>c</button><script>"
           "let done = 0;"
           "function work(n) { const timer = setInterval(() => { for (let i = 0; i < 10; ++i) {"
           " if (done >= n) return clearInterval(timer);"
           " const e = document.getElementById(done % 2 ? 'a' : 'b');"
           " e.value = 'value ' + done++; e.focus(); } }, 10); }</script>";
}

class NotesClicks : public DocumentEvents {
public:
    void onclick() override { clicked = true; }
    void onfocusin() override {}
    void onbeforedeactivate() override {}
    void onkeypress(int /*key_code*/) override {}
    void onsubmit() override {}

    bool clicked = false;
};

class Bench {
public:
    int Run() {
        clock_.AddSource([this] { browsers_.DeliverEvents(); });
        clock_.AddSource([this] { windows_.RunTimers(clock_.TickCount()); });
        window_.Form_Load("");
        Pass(3000);  // the splash window goes
        MeasurePoll("a second without a browser");
        if (!OpenBrowser()) {
            std::cerr << "no browser: " << why_ << '\n';
            return 1;
        }
        MeasurePoll("a second with one attached");
        MeasureClick();
        MeasureTagList();
        MeasureMemory();
        return table_.ExitCode();
    }

private:
    void Pass(std::uint32_t milliseconds) {
        const std::uint32_t start = clock_.TickCount();
        PassUntil([&] { return clock_.TickCount() - start >= milliseconds; });
    }
    // As the program does it: events, and 10 ms of rest.
    void PassUntil(const std::function<bool()>& over) {
        while (!over()) {
            clock_.DoEvents();
            clock_.Sleep(10);
        }
    }

    bool OpenBrowser() {
        process_ = BrowserProcess::Start(processes_, files_, clock_, {}, mouse_, why_);
        const auto port = files_.Read(processes_.profile + "/DevToolsActivePort");
        const auto endpoint = process_ && port ? ReadActivePort(*port) : std::nullopt;
        if (!endpoint) return false;
        address_ = "localhost:" + std::to_string(endpoint->port);
        for (int i = 0; i < 1000 && browsers_.Visible().empty(); ++i) {
            clock_.DoEvents();
            clock_.Sleep(10);
        }
        if (browsers_.Visible().empty()) return false;
        browser_ = browsers_.Visible().front();
        session_ = SessionOfPage();
        Open("/");
        return !session_.empty();
    }

    std::string SessionOfPage() {
        const auto targets =
            mouse_.Call("", "Target.getTargets", nlohmann::json::object()).Result()["targetInfos"];
        for (const auto& target : targets) {
            if (target["type"] != "page") continue;
            return mouse_
                .Call("", "Target.attachToTarget",
                      {{"targetId", target["targetId"]}, {"flatten", true}})
                .Text("/sessionId");
        }
        return "";
    }

    void Open(const std::string& path) {
        browser_->Navigate(server_.Url(path));
        PassUntil(
            [&] { return !browser_->Busy() && browser_->document().url() == server_.Url(path); });
        Pass(200);
    }

    // The processor's milliseconds in each second of `seconds` that pass so.
    template <typename PassTime>
    static double Processor(int seconds, PassTime pass) {
        const std::clock_t cpu = std::clock();
        for (int i = 0; i < seconds; ++i) pass();
        return 1000.0 * static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC / seconds;
    }

    void MeasurePoll(const std::string& what) {
        constexpr int kSeconds = 10;
        Pass(1500);
        const std::uint64_t trips = browsers_.RoundTrips();
        const double idle = Processor(kSeconds, [&] { Pass(1000); });
        const auto polls = static_cast<double>(browsers_.RoundTrips() - trips) / kSeconds;
        table_.Row((what + ": processor").c_str(), idle, 20, "ms");
        table_.Row("its round trips", polls, 1.101, "");
    }

    void MeasureClick() {
        NotesClicks notes;
        const auto connection = browser_->document().Connect(notes);
        Pass(300);
        const auto place = browser_->document().Named("c").by_id.getBoundingClientRect();
        std::vector<double> all;
        for (int i = 0; i < 51 && place; ++i) {
            notes.clicked = false;
            const auto begin = std::chrono::steady_clock::now();
            for (const char* type : {"mousePressed", "mouseReleased"}) {
                mouse_.Post(session_, "Input.dispatchMouseEvent",
                            {{"type", type},
                             {"x", place->left + 5},
                             {"y", place->top + 5},
                             {"button", "left"},
                             {"clickCount", 1}});
            }
            mouse_.Poll();
            while (!notes.clicked) browsers_.DeliverEvents();
            all.push_back(
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
                    .count());
            Pass(20);
        }
        std::sort(all.begin(), all.end());
        table_.Row("from a click to its event, median of 51", all.at(all.size() / 2), 30, "ms");
    }

    void MeasureTagList() {
        Open("/tags/10000");
        ListBox& list = windows_.FindForm("frmIeAuto")->List("lstDetail");
        const double seconds = BestSeconds([&] {
            list.SetLines({});
            list.SetLines(ListTags(browser_->document()).lines);
        });
        const std::string what = "tag list of " + std::to_string(list.Count()) + " elements";
        table_.Row(what.c_str(), seconds, 0.5, "s");
    }

    void MeasureMemory() {
        constexpr int kRecords = 10000;
        constexpr int kWarmUp = 2000;
        Open("/");
        const std::string folder = processes_.MakeTemporaryFolder();
        window_.recording().Start(browser_, RecordKind::kNew, folder + "/recovery.csv");
        Work(kWarmUp);
        const std::size_t before = LiveBytes();
        RestartPeak();
        const int first = window_.RecordCount();
        Work(kRecords);
        const double records = window_.RecordCount() - first;
        const double grown = static_cast<double>(LiveBytes()) - static_cast<double>(before);
        const double peak = static_cast<double>(PeakBytes()) - static_cast<double>(LiveBytes());
        table_.Row("20,000 events: records that are missing", kRecords - records, 1, "");
        table_.Row("memory that a record takes", grown / records, 600, "B");
        table_.Row("memory that events took in between", peak / 1e6, 8, "MB");
        PassUntil([&] { return window_.recording().Stop(); });
        processes_.RemoveTemporaryFolder(folder);
    }

    void Work(int moves) {
        const int records = window_.RecordCount() + moves;
        const std::uint32_t start = clock_.TickCount();
        worked_ += moves;
        browser_->Navigate("javascript:work(" + std::to_string(worked_) + ")");
        PassUntil([&] {
            return window_.RecordCount() >= records || clock_.TickCount() - start > 120000;
        });
    }

    PosixFiles files_;
    PosixTextCodec codec_;
    NoProfiles processes_;
    SystemClock clock_;
    std::ostringstream said_;
    ConsoleDialogs dialogs_{said_};
    HeadlessWindowSystem windows_{dialogs_};
    WebServer server_{
        [](const WebRequest& request) { return WebReply{.body = Page(request.path)}; }};
    std::string why_;
    std::string address_;
    std::unique_ptr<BrowserProcess> process_;
    ChromiumLauncher launcher_{processes_, files_, clock_, {}};
    ChromiumWindows browsers_{
        processes_,
        files_,
        clock_,
        {.debug_address = [this] { return address_; }, .profile_folder = "/none"}};
    std::shared_ptr<Browser> browser_;
    DevTools mouse_{clock_, {}};
    std::string session_;
    int worked_ = 0;
    Globals globals_;
    frmIeAuto window_{globals_,
                      {windows_, clock_, files_, codec_, processes_, launcher_, browsers_}};
    Table table_;
};

}  // namespace
}  // namespace tamrin

int main() { return tamrin::Bench().Run(); }
