#include "player/player.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/text.h"
#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

// A player with everything around it in memory. All that it does and says is written down in order
// among the calls of the web.
class PlayerRig : public PlayerHost, public RunEvents {
public:
    PlayerRig() { globals.settings.auto_point = globals.settings.mouse_click = false; }

    // What happened since the calls of that beginning, with "; " between.
    std::string Story(std::string_view after) const {
        std::string story;
        for (const std::string& call : web.calls) {
            story = call.starts_with(after) ? "" : story + (story.empty() ? "" : "; ") + call;
        }
        return story;
    }

    int RecordCount() override { return static_cast<int>(lines.size()); }
    std::string_view Record(int row) override { return lines.at(static_cast<size_t>(row)); }
    void SetStatus(const std::string& text) override { web.Note("status " + text); }
    void ShowMessage(const std::string& text, const std::string& title) override {
        web.Note("message " + title + "|" + text);
    }
    std::string ClipboardText() override { return clipboard; }
    std::optional<Rect> WindowRect() override { return window; }
    void SetWindowVisible(bool shown) override {
        web.Note(shown ? "window shown" : "window hidden");
    }

    void RunBegan() override { web.Note("run began"); }
    void BrowserOpened(std::shared_ptr<Browser> /*browser*/) override {}
    void RecordBegan(int /*row*/) override {}
    void RecordDone(const RecordReport& report) override {
        constexpr const char* kWords[] = {"done",      "comment", "not busy", "skipped",
                                          "not found", "invalid", "not sent", "stopped"};
        const bool done = report.outcome == RecordOutcome::kDone;
        if (!done) web.Note(kWords[static_cast<std::size_t>(report.outcome)]);
        reports.push_back(report);
    }
    void RunEnded(RunEnd end) override { ended.push_back(end); }

    VirtualClock clock;
    ScriptedWeb web{clock};
    Globals globals;
    Player player{globals, clock, web, *this, *this};

    std::vector<std::string> lines;
    std::string clipboard;
    std::optional<Rect> window;
    std::vector<RecordReport> reports;
    std::vector<RunEnd> ended;
};

const std::string kUrl = "url\t,id=,size_bar=1.2.300.400.10110,indt=page";

// Opens a page of that HTML and plays the records, one a line.
void Play(PlayerRig& rig, const std::string& html, const std::string& records) {
    rig.web.pages["page"] = html;
    rig.lines = SplitLines(kUrl + "\n" + records);
    rig.player.Play();
}

using Prepare = std::function<void(PlayerRig&)>;

struct Row {
    std::string html;
    std::string records;
    std::string story;
    Prepare prepare = nullptr;
    std::optional<Rect> window = {};  // the main window
};

void Check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        PlayerRig rig;
        rig.window = row.window;
        if (row.prepare) row.prepare(rig);
        Play(rig, row.html, row.records);
        EXPECT_EQ(rig.Story("bars "), row.story) << row.html << " " << row.records;
    }
}

// Acts when that call is made, or after that time.
Prepare On(const std::string& call, const Prepare& act) {
    return [=](PlayerRig& rig) { rig.web.on_call[call] = [&rig, act] { act(rig); }; };
}
Prepare After(std::uint64_t milliseconds, const Prepare& act) {
    return [=](PlayerRig& rig) { rig.clock.After(milliseconds, [&rig, act] { act(rig); }); };
}

const Prepare kStop = [](PlayerRig& rig) { rig.globals.activity.clear(); };
const Prepare kSkip = [](PlayerRig& rig) { rig.globals.skip_wait = true; };
const Prepare kDie = [](PlayerRig& rig) { rig.web.browser->Die(); };
const Prepare kClose = [](PlayerRig& rig) { rig.web.browser->Die(true); };
const Prepare kPoints = [](PlayerRig& rig) { rig.globals.settings.auto_point = true; };
const std::string kDied =
    "message 再生エラー|ブラウザーが終了したか、ページが異常終了したため、再生を中止しました。";
const std::string kInvalid = "message |入力データ不正\r\nId=a\r\ninputdata=";

TEST(ExecRecord, ActsByTheElementsType) {
    const std::string check = "<input id=a type=checkbox>";
    const std::string radios =
        "<input name=g id=a type=radio value=x><input name=g id=b type=radio value=2>";
    const std::string select = "<select id=a><option>x<option>0<option>x</select>";
    const std::string links =
        "<a id=1 href=\"http://h/a\">次へ</a><a id=2 href=\"http://h/b\">x</a>"
        "<a id=3 href=\"http://h/b\">y</a>";
    Check({
        {"<input id=a type=PASSWORD>", "input\t,id=a,indt=p\x01q\x02",
         "pointer 110,110; put a value=p,q\r\n; fire a onchange", kPoints},
        {check, "input\t,id=a,indt=true\ninput\t,id=a,indt= 0 ",
         "put a checked=True; fire a onchange; put a checked=False; fire a onchange"},
        {check, "input\t,id=a,indt=maybe", kInvalid + "maybe; invalid"},
        {check, "input\t,id=a,type=password,indt=maybe", kInvalid + "●●●●●●●●; invalid"},
        {radios, "input\t,id=g,type=radio,indt=-1", "put a checked=True; fire a onchange"},
        {radios, "input\t,id=g,indt=False,value=2", "put b checked=False; fire b onchange"},
        {radios, "input\t,id=b,type=radio,indt=x", "put a checked=True; fire a onchange"},
        {radios, "input\t,id=a,indt=y", kInvalid + "y; invalid"},
        {select, "input\t,id=a,indt=0", "put a selectedIndex=0; fire a onchange"},
        {select, "input\t,id=a,indt=x", "put a selectedIndex=2; fire a onchange"},
        {select, "input\t,id=a,indt=3", kInvalid + "3; invalid"},
        {"<input id=a type=button onclick=f>", "CLICK\t,id=a\npush\t,id=a", "click a; click a"},
        {"<input id=a type=image onclick=f>", "click\t,id=a\ninput\t,id=a", "click a"},
        {"<input id=a type=submit onclick=f>", "input\t,id=a", "click a"},
        {"<input id=a type=reset>", "click\t,id=a,type=submit", "click a"},
        {"<p id=a>", "click\t,id=a\ninput\t,id=a", "click a; fire a onclick"},
        // Of two links of one address neither is followed.
        {links,
         "click\t,type=HREF,indt=次へ\nclick\t,type=href,indt=http://h/a\n"
         "click\t,id=3,type=href,indt=http://h/b\nclick\t,type=href,indt=javascript:go()",
         "scroll 1; click 1; scroll 1; click 1; click 3; navigate javascript:go()"},
    });
}

TEST(ExecRecord, WaitsForThePageAndSaysWhatCannotBeDone) {
    const std::string line =
        "行番号2 <該当フィールド無し>Act=input,Id=a,Type=password,InDt=●●●●●●●●";
    const auto page_goes = [](PlayerRig& rig) {
        rig.web.failing = {"put a value=x"};
        rig.web.browser->Navigate("page");
        On("put a value=x", [](auto& later) { later.web.failing.clear(); })(rig);
    };
    Check({
        {"<input id=b type=text>", "input\t,id=a,type=password,indt=x\ninput\t,id=b,indt=%%error%%",
         "status " + line + "; not found; put b value=" + line + "; fire b onchange"},
        {"<input id=a type=text>", "input\t,id=a,indt=x",
         "put a value=x; navigate page; put a value=x; fire a onchange",
         On("put a value=x", page_goes)},
        {"<p>", "navigate\t,indt=\n//\t,indt=a comment", "invalid; comment"},
        {"<p>", "sendkeys\t,id=,indt=x{TAB}\x01%%comma%%%%DBLQ%%%%clipboard%%%%no\nsendkeys,~",
         "keys x TAB , , \" a + b n o; keys ENTER", [](auto& rig) { rig.clipboard = "a+b"; }},
        {"<p>", "sendkeys-if-busy\t,indt=~\nnavigate\t,indt=page\nsendkeys-if-busy\t,indt=~",
         "not busy; navigate page; keys ENTER", [](auto& rig) { rig.web.load_ms = 200; }},
        {"<p>", "sendkeys\t,indt={NO}",
         "message キー入力エラー|行番号2 のキー文字列が不正です。キーは送られません。\r\n"
         "「{NO}」というキーはありません。\r\n\r\n{NO}; invalid"},
        {"<p>", "sendkeys\t,indt=a",
         "keys a; status 行番号2 <キー送信不可>前面のウィンドウがキーを受け付けません。; not sent",
         [](auto& rig) { rig.web.failing = {"keys a"}; }},
        // The first record of a run does not wait for its page, later ones do.
        {"<input id=a type=text>", "input\t,id=a,type=password,indt=x\ninput\t,id=a,indt=y",
         "status " + line + "; not found; put a value=y; fire a onchange",
         [](auto& rig) { rig.web.load_ms = 40000; }},
        {"<p>", "wait\t,indt=100\nquit\t", "", After(50, [](auto& rig) { rig.lines.resize(2); })},
    });
}

TEST(ExecRecord, TakesItsTimeAndBringsTheBrowserToTheFront) {
    PlayerRig rig;
    Play(rig, "<input id=a type=button><input id=t type=text><a href=h>x</a>",
         "wait\t,indt= 1000 ms\nwait\t,indt=\"250\" x\nwait\t,indt=+14.6\nwait\t,indt=x\n"
         "sendkeys\t,indt=a\ninput\t,id=t,indt=a\nclick\t,id=a,userwait=0&#44;3\n"
         "click\t,id=a,userwait=0.3\nclick_mouse\t,id=a\nclick\t,type=href,indt=x\n"
         "click\t,type=href,indt=javascript:x");
    std::string done;
    for (const auto& [row, act, outcome, milliseconds] : rig.reports) {
        done += std::to_string(row) + act + " " + std::to_string(milliseconds) + ", ";
    }
    EXPECT_EQ(done,
              "0url 30, 1wait 1000, 2wait 250, 3wait 20, 4wait 0, 5sendkeys 500, 6input 0, "
              "7click 500, 8click 800, 9click_mouse 700, 10click 2000, 11click 500, ");
    EXPECT_EQ(rig.web.browser->brought_to_front, 12);
}

TEST(ExecRecord, ShowsTheSecondsOfAUserWaitThatCanBeSkippedOrStopped) {
    const std::string html = "<input id=a type=button onclick=f><a href=h>x</a>";
    const std::string story = "status 2; status 1; status 1; status ; ";
    Check(
        {{html, "click\t,id=a,userwait=1.1", story + "fire a onclick; skipped", After(330, kSkip)},
         {html, "click\t,id=a,userwait=1.1", story + "stopped", After(330, kStop)}});
    for (const std::string record :
         {"click\t,type=href,indt=x", "click\t,type=href,indt=javascript:"}) {
        Check({{html, record + ",userwait=1.1", story + "skipped", After(330, kSkip)},
               {html, record + ",userwait=1.1", story + "stopped", After(330, kStop)}});
    }
}

TEST(ExecRecord, ClicksWithTheRealMouseAndPutsItBack) {
    const Rect covers{110, 110, 111, 111};
    const std::string html = "<input id=a type=submit>";
    const std::string mouse = "click_mouse\t,id=a";
    const std::string click = "pointer 110,110; button down; button up; ";
    const std::string clicks = "scroll a; " + click + "pointer 3,4";
    const std::string gives_up = "scroll a; window hidden; window shown; ";
    Check({
        {html, "click\t,id=a", clicks, [](auto& rig) { rig.globals.settings.mouse_click = true; }},
        {html, mouse, "scroll a; window hidden; " + click + "window shown; pointer 3,4", nullptr,
         covers},
        {html, mouse, clicks, nullptr, Rect{90, 90, 110, 200}},
        {html, mouse, clicks, nullptr, Rect{90, 90, 200, 110}},
        {html, mouse, clicks, nullptr, Rect{111, 90, 200, 200}},
        {html, mouse, clicks, nullptr, Rect{90, 111, 200, 200}},
        {"<input id=a type=submit tiny>", mouse,
         "scroll a; pointer 103,103; button down; button up; pointer 3,4"},
        {html, mouse, "scroll a; click a", [](auto& rig) { rig.web.screen_point.reset(); }},
        // A click that is no longer wanted.
        {html, mouse, gives_up + "stopped", On("window hidden", kStop), covers},
        {html, mouse + "\nquit\t", gives_up + kDied, On("window hidden", kDie), covers},
    });
}

TEST(Play, OpensTheFirstUrlRecordAndSaysHowTheRunEnded) {
    using enum RunEnd;
    const std::string wait = kUrl + "\nwait\t,indt=9000";
    const std::string opens = "run began; create; navigate page; visible";
    const std::string shown = opens + "; place 1,2,300,400; bars 1011";
    const std::string change = "; put a value=x; fire a onchange";
    const Prepare quits = [](auto& rig) { rig.globals.settings.quit_after_play = true; };
    const Prepare closes = [](auto& rig) { rig.globals.close_after_play = true; };
    const Prepare twice = [](auto& rig) { rig.globals.settings.play_count = 2; };
    const struct {
        std::string lines;
        RunEnd end;
        const char* activity;  // "play" is left by the stop command, or by closing the program
        std::size_t reports;
        std::string story;
        Prepare prepare = nullptr;
    } rows[] = {
        {kUrl, kCompleted, "play", 1, shown, quits},
        {kUrl, kCompleted, "play", 1, shown, closes},
        {"input\t,id=a,indt=never\n" + kUrl + "\ninput\t,id=a,indt=x", kCompleted, "", 4,
         shown + change + "; navigate page" + change, twice},
        {kUrl + "\nquit\t\nwait\t,indt=10", kCompleted, "", 2, shown + "; quit", twice},
        {wait, kStopped, "", 2, shown + "; stopped", After(100, kStop)},
        {wait, kBrowserDied, "", 2, shown + "; " + kDied, After(100, kDie)},
        {wait, kCompleted, "", 2, shown, After(100, kClose)},
        {wait + "\nquit\t", kCompleted, "", 3, shown + "; quit", After(100, kClose)},
        {wait + wait, kBrowserDied, "", 2, shown + "; " + kDied, After(100, kClose)},
        {kUrl, kNoBrowser, "", 0, "run began; message ブラウザーを起動できません|なし",
         [](auto& rig) { rig.web.refusal = "なし"; }},
        {kUrl, kStopped, "", 0, "run began",
         [](auto& rig) {
             rig.web.refusal = "なし";
             After(0, kStop)(rig);
         }},
        // The last page is still to come.
        {kUrl, kStopped, "", 1, shown,
         [](auto& rig) {
             rig.web.load_ms = 40000;
             After(25000, kStop)(rig);
         }},
        {"url\t,size_bar=1.2.300.400.10110,indt=", kNothingToPlay, "play", 0, "run began; create"},
        {"input\t,id=a", kNothingToPlay, "play", 0, "run began; create"},
        {"url\t,size_bar=0.0.1024.768,indt=page", kBadSizeBar, "play", 0,
         "run began; create; "
         "message フォーマットエラー|位置・サイズまたはツールバーの指定が不正です。"},
        {"url\t,size_bar=-8.x.8a.600.1.9,indt=page", kCompleted, "", 1,
         opens + "; place -8,0,8,600; bars 1000"},
        {"", kNothingToPlay, "", 0, "message |再生するデータがありません。"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.lines);
        PlayerRig rig;
        rig.web.pages["page"] = "<input id=a type=text>";
        if (!row.lines.empty()) rig.lines = SplitLines(row.lines);
        if (row.prepare) row.prepare(rig);
        EXPECT_EQ(rig.player.Play(), row.end);
        EXPECT_EQ(rig.Story("status "), row.story);
        EXPECT_EQ(rig.ended, std::vector(row.lines.empty() ? 0 : 1, row.end));
        EXPECT_EQ(rig.reports.size(), row.reports);
        EXPECT_EQ(rig.globals.activity, row.activity);
    }
}

}  // namespace
}  // namespace tamrin::test
