#include "app/frm_ie_auto.h"

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

class RunTest : public MainWindowTest {
protected:
    // Starts the program with a scenario that waits after it has opened a page.
    void Play(const std::string& milliseconds, const std::string& page = "page") {
        files.contents[kFile] = "url\t,size_bar=1.2.3.4.1,indt=" + page +
                                "\n//\twait\nwait\t,indt=" + milliseconds + "\n";
        window.Form_Load(std::string("-a ") + kFile);
    }
    static constexpr const char* kFile = "C:\\tamrin\\order.csv";
};

TEST_F(MainWindowTest, SwitchesTheButtonsByMode) {
    // Rec, Play, Stop and the entry that makes a player, "1" for enabled. Before each row all are
    // disabled, and the list holds a line.
    const struct {
        const char* activity;
        const char* mode;
        bool on;
        const char* buttons;
    } rows[] = {
        {"", "all", true, "1101"},        {"", "rec", true, "0010"},
        {"", "rec", false, "1101"},       {"", "play", true, "0010"},
        {"", "play", false, "1101"},      {"rec", "stop", true, "1101"},
        {"rec", "stop", false, "0111"},   {"play", "stop", true, "0101"},
        {"play", "stop", false, "1111"},  {"", "stop", true, "0101"},
        {"", "play check", true, "0101"}, {"", "no such", true, "0000"},
    };
    list().SetLines({"x"});
    const char* const names[] = {"cmdRec", "cmdPlay", "cmdStop", "mnuMakeExe"};
    for (const auto& row : rows) {
        for (const char* name : names) Find(name).SetEnabled(false);
        globals.activity = row.activity;
        window.SetMode(row.mode, row.on);
        std::string buttons;
        for (const char* name : names) buttons += Enabled(name) ? '1' : '0';
        EXPECT_EQ(buttons, row.buttons) << row.mode << row.on << row.activity;
    }
    list().SetLines({});
    window.SetMode("all", true);
    EXPECT_FALSE(Enabled("cmdPlay") || Enabled("mnuMakeExe"));
}

TEST_F(RunTest, ShowsItsProgressUntilItIsStopped) {
    std::string caption;
    After(300, [&] {
        caption = form().Caption();
        form().Press("F5");  // it runs already
    });
    After(3000, [&] { form().Click("cmdStop"); });
    Play("60000");
    EXPECT_EQ(caption, "(3/3) Tamrin 0.10 < order.csv >");
    EXPECT_EQ(form().Caption(), "Tamrin 0.10 < order.csv >");
    EXPECT_EQ(std::ranges::count(web.calls, "create"), 1);
    EXPECT_EQ(window.last_run(), RunEnd::kStopped);
    EXPECT_EQ(clock.Elapsed(), 3000U);
    EXPECT_TRUE(Enabled("cmdPlay"));
    EXPECT_FALSE(Enabled("cmdStop") || globals.unsaved || window.Stopping());
    for (const char* key : {"Esc", "Shift+F5"}) {
        After(3000, [&, key] {
            form().Press(key);
            EXPECT_TRUE(window.Stopping());
        });
        form().Press("F5");
        EXPECT_EQ(window.last_run(), RunEnd::kStopped) << key;
    }
}

TEST_F(RunTest, TheWatchdogEndsAnAutomaticRunWithoutPages) {
    Play("600000");
    EXPECT_EQ(window.last_run(), RunEnd::kTimedOut);
    EXPECT_TRUE(form().closed());
    EXPECT_FALSE(form().Visible());
    EXPECT_NEAR(static_cast<double>(clock.Elapsed()), 31000.0, 1100.0);
    EXPECT_EQ(codec.Decode(files.contents["C:\\tamrin\\Tamrin.log"]),
              "2026-01-02 03:04:05 C:\\tamrin\\order.csv：3 行目の再生中、30 秒のあいだ"
              "ページの読み込みが完了しなかったため、終了しました。\r\n");
}

TEST_F(RunTest, ARunStartedByHandHasNoWatchdogAndPlaysAsOftenAsChosen) {
    window.Form_Load("");
    list().SetLines({"url\t,size_bar=1.2.3.4.1,indt=page", "wait\t,indt=90000"});
    globals.settings.play_count = 2;
    window.cmdPlay_Click();
    EXPECT_EQ(window.last_run(), RunEnd::kCompleted);
    EXPECT_EQ(std::ranges::count(web.calls, "navigate page"), 2);
}

TEST_F(RunTest, TellsThatAPageCannotBeOpened) {
    Play("1", "gone");
    EXPECT_TRUE(window.page_failed());
    EXPECT_EQ(Find("txtStatus").Text(), "ページを開けません：gone （no page）");
}

TEST_F(MainWindowTest, DisplayOptionsTakeEffectAndAreStored) {
    window.Form_Load("");
    list().onContext();
    EXPECT_EQ(form().popped_up(), "mnuContext");
    Find("lstCsv").onContext();
    EXPECT_EQ(form().popped_up(), "mnuListEdit");
    for (const char* entry : {"mnuDispTop", "mnuScrollBar", "mnuTaskTray"}) form().Click(entry);
    EXPECT_FALSE(form().top_most() || Find("mnuDispTop").Checked());
    EXPECT_TRUE(dynamic_cast<HeadlessListBox&>(list()).horizontal_scroll());
    const Place before = list().GetPlace();
    form().Click("optDisp", 0);
    EXPECT_EQ(list().GetPlace().top, 34);
    EXPECT_FALSE(Find("splTop").Visible() || Find("lstDetail").Visible());
    form().Click("optDisp", 2);
    EXPECT_TRUE(Find("lstCsv").Visible() && Find("splTop").Visible());
    EXPECT_FALSE(Find("lstDetail").Visible());
    EXPECT_EQ(list().GetPlace().top, before.top);
    const std::pair<int, int> rows[] = {
        {100, 105}, {-50, 69}, {5000, before.top + before.height - 30}};
    for (const auto& [dragged_to, list_top] : rows) {
        Place splitter = Find("splTop").GetPlace();
        splitter.top = dragged_to;
        Find("splTop").SetPlace(splitter);
        Find("splTop").onChange();
        EXPECT_EQ(list().GetPlace().top, list_top) << dragged_to;
        EXPECT_EQ(list().GetPlace().top + list().GetPlace().height, before.top + before.height);
    }
    const Settings& settings = globals.settings;
    EXPECT_EQ((std::vector<int>{settings.disp, settings.disp_top, settings.scroll_bar,
                                settings.tasktray}),
              (std::vector{2, 0, 1, 1}));
}

}  // namespace
}  // namespace tamrin::test
