// Whole scenarios, recorded and played by the program through the browser's automation objects.
#include <gtest/gtest.h>

#include <map>
#include <optional>

#include "app/frm_ie_auto.h"
#include "explorer/explorer_machine.h"
#include "platform/explorer/explorer_launcher.h"
#include "platform/headless/headless_window_system.h"
#include "platform/windows/text_codec.h"
#include "support/memory_files.h"
#include "support/no_processes.h"
#include "support/scripted_dialogs.h"
#include "support/virtual_clock.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;

class ScenarioTest : public testing::Test {
protected:
    ScenarioTest() {
        site["/"] =
            "<form action=/order><input id=who name=who><input type=password id=pin name=pin>"
            "<select id=size name=size><option>S<option>L</select>"
            "<input type=radio name=pay value=cash><input type=radio name=pay value=card>"
            "<input type=checkbox id=gift name=gift><textarea id=note name=note></textarea>"
            "<input type=submit id=go value=送信></form>";
        site["/order"] = "<iframe id=box src=/box></iframe><a href=/done>次へ</a>";
        site["/box"] = "<input id=inner><input id=other>";
        site["/done"] = "<input type=button id=end onclick=\"say('終')\"><p id=log></p>";
        calls.SetNow([this] { return clock.Elapsed(); });
        clock.AddSource([this] {
            machine.Tick();
            windows.RunTimers(clock.TickCount());
            browsers.DeliverEvents();
            launcher.DeliverEvents();
        });
    }
    // The program lets go of every object of the pages that it has had.
    void TearDown() override {
        for (const auto& browser : machine.windows) browser->page = nullptr;
        globals.unsaved = false;
        EXPECT_TRUE(window->Close());
        window.reset();
        EXPECT_TRUE(machine.world.IsReleased());
    }

    Reply Serve(const std::string& url) {
        const std::string path = url.substr(std::min(url.find('/', 7), url.size()));
        requests.push_back(path);
        const auto page = site.find(path.substr(0, path.find('?')));
        if (page == site.end()) return {.status = 404};
        return {.status = 200, .body = page->second};
    }
    void Pass(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 10) {
            clock.Sleep(10);
            clock.DoEvents();
        }
    }
    // What the user does in the page, and the time that it takes.
    void Act(const std::function<void(PageDouble& page)>& act) {
        act(machine.world.page());
        Pass(500);
    }
    static void Type(PageDouble& page, std::string_view id, std::string_view text) {
        page.Focus(page.El(id));
        page.Type(page.El(id), text);
    }
    HeadlessForm& form() { return *windows.FindForm("frmIeAuto"); }
    ListBox& list() { return form().List("lstDtList"); }
    // The records, TAB as "→".
    Lines Records() {
        Lines lines;
        for (int i = 0; i < window->RecordCount(); ++i) {
            lines.emplace_back(window->Record(i));
            if (const auto tab = lines.back().find('\t'); tab != std::string::npos)
                lines.back().replace(tab, 1, "→");
        }
        return lines;
    }
    // Records the user on the page of an address.
    void Record(const std::string& address) {
        window->Form_Load("");
        LoadingBrowser& browser = machine.Open(address);
        browser.Left = 10;
        browser.Top = 20;
        browser.Width = 800;
        browser.Height = 600;
        browser.MenuBar = browser.AddressBar = VARIANT_TRUE;
        Pass(1500);
        form().Click("cmdRec");
        Pass(100);
    }

    std::map<std::string, std::string> site;
    Lines requests;
    VirtualClock clock;
    ScriptedDialogs dialogs;
    HeadlessWindowSystem windows{dialogs};
    MemoryFiles files;
    WindowsTextCodec codec;
    NoProcesses processes;
    ComCalls calls;
    ExplorerMachine machine{[this](const std::string& url) { return Serve(url); }};
    NoInput input;
    ExplorerLauncher launcher{calls, machine.Sources(), input};
    ExplorerWindows browsers{calls, machine.Sources()};
    Globals globals;
    std::optional<frmIeAuto> window{
        std::in_place, globals,
        Platform{windows, clock, files, codec, processes, launcher, browsers}};
};

class ScenarioInModeTest : public ScenarioTest, public testing::WithParamInterface<int> {};

TEST_P(ScenarioInModeTest, IsRecordedAndAsksTheSameOfTheServerWhenItIsPlayed) {
    machine.mode = GetParam();
    Record("http://site/");
    Act([](PageDouble& page) {
        page.Click(page.El("who"));
        Type(page, "who", "山田, 太郎");
    });
    Act([](PageDouble& page) {
        Type(page, "pin", "x9");
        page.Focus(page.El("size"));
        page.El("size").selected = 1;
    });
    Act([](PageDouble& page) {
        page.Click(*page.All([](const Node& node) { return node.value == "card"; }).at(0));
        page.Click(page.El("gift"));
    });
    Act([](PageDouble& page) {
        page.Focus(page.El("note"));
        page.El("note").value = "a\nb";
    });
    Act([](PageDouble& page) { page.Click(page.El("go")); });
    Act([](PageDouble& page) { page.Focus(page.El("box")); });
    Act([](PageDouble& page) {
        PageDouble& box = page.frame(0);
        Type(box, "inner", "q");
        box.Focus(box.El("other"));
    });
    Act([](PageDouble& page) {
        page.Click(*page.All([](const Node& node) { return node.tag == "A"; }).at(0));
    });
    Act([](PageDouble& page) { page.Click(page.El("end")); });
    dialogs.answers = {Answer::kOk};  // a password was recorded
    form().Click("cmdStop");
    Pass(500);
    const Lines expected = {
        "url→,id=,size_bar=10.20.800.600.01100,indt=http://site/",
        "input→,id=who,type=text,indt=山田\x01 太郎",
        "input→,id=pin,type=password,indt=x9",
        "input→,id=size,type=select-one,indt=1",
        "input→,id=pay,type=radio,indt=True,value=card",
        "input→,id=gift,type=checkbox,indt=True",
        "input→,id=note,type=textarea,indt=a\002b",
        "click→,id=go,type=submit,indt=送信",
        "input→,id=inner,type=text,indt=q",
        "click→,id=,type=href,indt=次へ",
        "click→,id=end,type=button,indt=",
    };
    EXPECT_EQ(Records(), expected);
    const Lines recorded = std::exchange(requests, {});
    EXPECT_EQ(recorded.size(), 4U);
    form().Click("cmdPlay");
    EXPECT_EQ(window->last_run(), RunEnd::kCompleted);
    EXPECT_EQ(requests, recorded);
    EXPECT_EQ(machine.world.page().said, "終");
}

INSTANTIATE_TEST_SUITE_P(Modes, ScenarioInModeTest, testing::Values(5, 7, 8, 9, 11));

TEST_F(ScenarioTest, KeepsItsRecordsAndNoReferenceWhenTheBrowserEnds) {
    Record("http://site/");
    Act([](PageDouble& page) {
        Type(page, "who", "a");
        page.Focus(page.El("gift"));
    });
    machine.windows.back()->Quit();
    Pass(1500);
    EXPECT_TRUE(machine.world.IsReleased());
    form().Click("cmdStop");
    Pass(500);
    const Lines recorded = {"url→,id=,size_bar=10.20.800.600.01100,indt=http://site/",
                            "input→,id=who,type=text,indt=a"};
    EXPECT_EQ(Records(), recorded);

    // The same while it is played.
    list().SetLines({std::string(window->Record(0)), "wait\t,indt=60000"});
    clock.At(clock.Elapsed() + 3000, [this] { machine.windows.back()->Quit(); });
    dialogs.answers = {Answer::kOk};
    form().Click("cmdPlay");
    ASSERT_EQ(window->last_run(), RunEnd::kBrowserDied);
    EXPECT_EQ(dialogs.shown.back(),
              "再生エラー|ブラウザが終了したか、ページが異常終了したため、再生を中止しました。");
    EXPECT_TRUE(machine.world.IsReleased());
}

}  // namespace
}  // namespace tamrin::test
