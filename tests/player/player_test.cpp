#include "player/player.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/player_rig.h"

namespace tamrin::test {
namespace {

using Prepare = std::function<void(PlayerRig&)>;

struct Row {
    std::string html;
    std::string records;
    std::string story;
    Prepare prepare = nullptr;
};

void Check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        PlayerRig rig;
        if (row.prepare) row.prepare(rig);
        rig.PlayOn(row.html, row.records);
        EXPECT_EQ(rig.Story(), row.story) << row.html << " " << row.records;
    }
}

const Prepare kPoints = [](PlayerRig& rig) { rig.globals.settings.auto_point = true; };
const std::string kDied =
    "message 再生エラー|ブラウザが終了したか、ページが異常終了したため、再生を中止しました。";
const std::string kInvalid = "message |入力データ不正\r\nId=a\r\ninputdata=";

TEST(ExecRecord, ActsByTheElementsType) {
    const std::string radios =
        "<input name=g id=a type=radio value=x><input name=g id=b type=radio value=2>";
    const std::string select = "<select id=a><option>x<option>0<option>x</select>";
    Check({
        {"<input id=a type=PASSWORD>", "input\t,id=a,indt=p", "put a value=p; fire a onchange"},
        {"<input id=a type=email>", "input\t,id=a,indt=m", "put a value=m; fire a onchange"},
        {"<textarea id=a></textarea>", "input\t,id=a,indt=x\x01y\x02z",
         "put a value=x,y\r\nz; fire a onchange"},
        {"<input id=a type=checkbox>", "input\t,id=a,indt=true\ninput\t,id=a,indt= 0 ",
         "put a checked=True; fire a onchange; put a checked=False; fire a onchange"},
        {"<input id=a type=checkbox>", "input\t,id=a,indt=maybe", kInvalid + "maybe; invalid"},
        {radios, "input\t,id=g,type=radio,indt=-1", "put a checked=True; fire a onchange"},
        {radios, "input\t,id=g,indt=False,value=2", "put b checked=False; fire b onchange"},
        {radios, "input\t,id=b,type=radio,indt=x", "put a checked=True; fire a onchange"},
        {radios, "input\t,id=a,indt=y", kInvalid + "y; invalid"},
        {select, "input\t,id=a,indt=1", "put a selectedIndex=1; fire a onchange"},
        {select, "input\t,id=a,indt=0", "put a selectedIndex=0; fire a onchange"},
        {select, "input\t,id=a,indt=x", "put a selectedIndex=2; fire a onchange"},
        {select, "input\t,id=a,indt=3", kInvalid + "3; invalid"},
        {select, "input\t,id=a,indt=-1", kInvalid + "-1; invalid"},
        {"<input id=a type=button onclick=f>", "CLICK\t,id=a", "fire a onclick; click a"},
        {"<input id=a type=button onclick=f>", "push\t,id=a", "click a"},
        {"<input id=a type=button>", "click\t,id=a\nSendkeys\t,id=a", "click a; click a", kPoints},
        {"<input id=a type=image onclick=f>", "click\t,id=a\ninput\t,id=a", "click a"},
        {"<input id=a type=submit onclick=f>", "input\t,id=a", "fire a onclick; click a"},
        {"<input id=a type=reset>", "click\t,id=a,type=submit", "click a"},
        {"<div id=a></div>", "click\t,id=a", "fire a onclick; click a"},
        {"<div id=a></div>", "input\t,id=a", "fire a onclick"},
        {"<input id=a type=text>", "input\t,id=a,indt=x",
         "pointer 110,110; put a value=x; fire a onchange", kPoints},
    });
}

TEST(ExecRecord, SaysWhatCannotBeDoneAndGoesOn) {
    const std::string line = "行番号2 <該当フィールド無し>Act=input,Id=a,Type=text,InDt=x";
    Check({
        {"<input id=b type=text>", "input\t,id=a,type=text,indt=x\ninput\t,id=b,indt=%%error%%",
         "status " + line + "; not found; put b value=" + line + "; fire b onchange"},
        {"<input id=a type=text>", "input\t,id=a,indt=x",
         "put a value=x; " + kInvalid + "x; invalid",
         [](PlayerRig& rig) { rig.web.refuses_value = "a"; }},
        {"<p>", "navigate\t,indt=\n//\t,indt=a comment", "invalid; comment"},
        // A page that has gone away under the record takes no value either.
        {"<input id=a type=text>", "input\t,id=a,indt=x",
         "put a value=x; navigate page; put a value=x; fire a onchange",
         [](PlayerRig& rig) {
             rig.web.refuses_value = "a";
             rig.web.on_call["put a value=x"] = [&rig] {
                 rig.web.on_call.clear();
                 rig.web.browser->Navigate("page");
                 rig.clock.At(rig.clock.Elapsed() + 20, [&rig] { rig.web.refuses_value = ""; });
             };
         }},
    });
}

TEST(ExecRecord, FollowsLinks) {
    const std::string html =
        "<a id=1 href=\"http://h/a\">次へ</a><a id=2 href=\"http://h/b\">x</a>"
        "<a id=3 href=\"http://h/b\">y</a>";
    Check({
        {html, "click\t,type=HREF,indt=次へ", "scroll 1; click 1"},
        {html, "click\t,type=href,indt=javascript:go()", "navigate javascript:go()"},
        // Of two links of one address neither is followed.
        {html, "click\t,id=3,type=href,indt=http://h/b", "fire 3 onclick; click 3"},
    });
}

TEST(ExecRecord, SendsKeys) {
    const std::string error = "行番号2 のキー文字列が不正です。キーは送られません。\r\n";
    const std::string refused =
        "status 行番号2 <キー送信不可>前面のウィンドウがキーを受け付けません。";
    const Prepare takes_none = [](PlayerRig& rig) { rig.web.takes_keys = false; };
    Check({
        {"<p>", "sendkeys\t,id=,indt=x{TAB}\x01%%comma%%%%DBLQ%%%%clipboard%%%%no\nsendkeys,~",
         "keys x TAB , , \" a + b n o; keys ENTER", [](PlayerRig& rig) { rig.clipboard = "a+b"; }},
        {"<p>", "sendkeys-if-busy\t,indt=~", "not busy"},
        {"<p>", "navigate\t,indt=page\nsendkeys-if-busy\t,indt=~", "navigate page; keys ENTER",
         [](PlayerRig& rig) { rig.web.load_ms = 200; }},
        {"<p>", "sendkeys\t,indt=a{NO}",
         "message キー入力エラー|" + error +
             "「{NO}」というキーはありません。\r\n\r\na{NO}; invalid"},
        {"<p>", "sendkeys\t,indt=a", "keys a; " + refused + "; not sent", takes_none},
        {"<p>", "sendkeys\t,indt=a", "keys a; stopped",
         [=](PlayerRig& rig) {
             takes_none(rig);
             rig.web.on_call["keys a"] = [&rig] { rig.globals.activity.clear(); };
         }},
    });
}

TEST(ExecRecord, TakesItsTimeAndBringsTheBrowserToTheFront) {
    const struct {
        const char* record;
        std::uint32_t milliseconds;
        int times_to_front;  // besides the one at the start
    } rows[] = {
        {"wait\t,indt= 1000 ms", 1000, 0},
        {"wait\t,indt=\"250\" x", 250, 0},
        {"wait\t,indt=+14.6", 20, 0},
        {"wait\t,indt=x", 0, 0},
        {"sendkeys\t,indt=a", 500, 0},
        {"input\t,id=t,indt=a", 0, 1},
        {"click\t,id=a,userwait=0&#44;3", 500, 2},
        {"click\t,id=a,userwait=0.3", 800, 2},
        {"click_mouse\t,id=a", 700, 3},
        {"click\t,type=href,indt=x", 2000, 2},
        {"click\t,type=href,indt=javascript:x", 500, 1},
    };
    for (const auto& row : rows) {
        PlayerRig rig;
        rig.PlayOn("<input id=a type=button><input id=t type=text><a href=h>x</a>", row.record);
        EXPECT_EQ(rig.reports[1].milliseconds, row.milliseconds) << row.record;
        EXPECT_EQ(rig.web.browser->brought_to_front, 1 + row.times_to_front) << row.record;
    }
}

TEST(ExecRecord, ShowsTheSecondsOfAUserWaitThatCanBeSkipped) {
    std::string story;
    for (int i = 0; i < 13; ++i) story += i < 10 ? "status 2; " : "status 1; ";
    const Prepare skip = [](PlayerRig& rig) {
        rig.clock.At(1330, [&rig] { rig.globals.skip_wait = true; });
    };
    Check({
        {"<input id=a type=button>", "click\t,id=a,userwait=2", story + "status ; skipped", skip},
        {"<a href=h>x</a>", "click\t,type=href,userwait=2,indt=x", story + "status ; skipped",
         skip},
        {"<p>", "click\t,type=href,userwait=2,indt=javascript:", story + "status ; skipped", skip},
    });
}

TEST(ExecRecord, ClicksWithTheRealMouseAndPutsItBack) {
    const std::string click = "pointer 110,110; button down; button up; ";
    const std::string covered = "scroll a; window hidden; " + click + "window shown; pointer 3,4";
    const auto window = [](Rect rect) -> Prepare {
        return [=](PlayerRig& rig) { rig.window = rect; };
    };
    const auto at = [=](const char* call, const Prepare& act) -> Prepare {
        return [=](PlayerRig& rig) {
            rig.window = Rect{110, 110, 111, 111};
            rig.web.on_call[call] = [&rig, act] { act(rig); };
        };
    };
    const Prepare stop = [](PlayerRig& rig) { rig.globals.activity.clear(); };
    const std::string html = "<input id=a type=submit>";
    Check({
        {html, "click_mouse\t,id=a", "scroll a; " + click + "pointer 3,4"},
        {html, "click\t,id=a", "scroll a; " + click + "pointer 3,4",
         [](PlayerRig& rig) { rig.globals.settings.mouse_click = true; }},
        {html, "click_mouse\t,id=a", covered, window({110, 110, 111, 111})},
        {"<input id=a type=submit tiny>", "click_mouse\t,id=a",
         "scroll a; pointer 103,103; button down; button up; pointer 3,4"},
        {html, "click_mouse\t,id=a", "scroll a; click a",
         [](PlayerRig& rig) { rig.web.has_screen_points = false; }},
        // A click that is no longer wanted.
        {html, "click_mouse\t,id=a", "scroll a; window hidden; window shown; stopped",
         at("window hidden", stop)},
        {html, "click_mouse\t,id=a\nquit\t", "scroll a; window hidden; window shown; " + kDied,
         at("window hidden", [](PlayerRig& rig) { rig.web.browser->Die(); })},
        {html, "click_mouse\t,id=a", covered + "; stopped", at("button down", stop)},
    });
    for (const Rect beside : {Rect{90, 90, 110, 200}, Rect{90, 90, 200, 110},
                              Rect{111, 90, 200, 200}, Rect{90, 111, 200, 200}}) {
        Check({{html, "click_mouse\t,id=a", "scroll a; " + click + "pointer 3,4", window(beside)}});
    }
}

TEST(Play, KeepsItsRecordsInStepWithThePage) {
    const Prepare busy = [](PlayerRig& rig) {
        rig.web.busy = true;
        rig.clock.At(60000, [&rig] { rig.globals.activity.clear(); });
    };
    Check({
        {"<input id=a type=text>", "navigate\t,indt=page\ninput\t,id=a,indt=x",
         "navigate page; put a value=x; fire a onchange",
         [](PlayerRig& rig) { rig.web.load_ms = 4000; }},
        // The first record of a run does not wait for its page, later ones do until Stop.
        {"<input id=a type=text>", "input\t,id=a,indt=x\ninput\t,id=a,indt=y",
         "put a value=x; fire a onchange", busy},
        {"<p>", "quit\t\nwait\t,indt=10", "quit",
         [](PlayerRig& rig) { rig.globals.settings.play_count = 2; }},
        {"<p>", "wait\t,indt=300\ninput\t,id=a,indt=x", kDied,
         [](PlayerRig& rig) { rig.clock.At(100, [&rig] { rig.web.browser->Die(); }); }},
        {"<p>", "wait\t,indt=100\nquit\t", "",
         [](PlayerRig& rig) { rig.clock.At(50, [&rig] { rig.lines.resize(2); }); }},
    });
}

using Lines = std::vector<std::string>;

TEST(Play, OpensTheFirstUrlRecordAndPlaysWhatFollowsAsOftenAsTheSettingSays) {
    PlayerRig rig;
    rig.web.pages["page"] = "<input id=a type=text>";
    rig.lines = {"input\t,id=a,indt=never", rig.Url("page"), "input\t,id=a,indt=x"};
    rig.globals.settings.play_count = 2;
    EXPECT_EQ(rig.player.Play(), RunEnd::kCompleted);
    EXPECT_EQ(rig.web.calls,
              (Lines{"status ", "run began", "create", "navigate page", "visible",
                     "place 1,2,300,400", "bars 1011", "put a value=x", "fire a onchange",
                     "navigate page", "put a value=x", "fire a onchange"}));
    std::string done;
    for (const auto& report : rig.reports) done += std::to_string(report.row) + report.act + " ";
    EXPECT_EQ(done, "1url 2input 1url 2input ");
    EXPECT_EQ(rig.begun, 2);
}

TEST(Play, ReadsSizeAndBars) {
    const std::pair<const char*, std::string> rows[] = {
        {"10.20.800.600.1", "place 10,20,800,600 bars 1000"},
        {"-8.x.8a.600.10111.9", "place -8,0,8,600 bars 1011"},
        {"0.0.1024.768.", "place 0,0,1024,768 bars 0000"},
    };
    for (const auto& [size_bar, shown] : rows) {
        PlayerRig rig;
        rig.web.pages["page"] = "<p>";
        rig.lines = {std::string("url\t,id=,size_bar=") + size_bar + ",indt=page"};
        rig.player.Play();
        EXPECT_EQ(rig.web.calls.at(5) + " " + rig.web.calls.at(6), shown) << size_bar;
    }
}

TEST(Play, SaysHowItEndedAndLeavesTheActivity) {
    const std::string size =
        "message フォーマットエラー|位置・サイズまたはツールバーの指定が不正です。";
    const struct {
        std::string line;  // the only one of the list
        RunEnd end;
        const char* activity;  // "play" is left by the stop command, or by closing the program
        std::string call;      // the last one
        Prepare prepare = nullptr;
    } rows[] = {
        {PlayerRig::Url("page"), RunEnd::kCompleted, "", "bars 1011"},
        {PlayerRig::Url("page"), RunEnd::kCompleted, "play", "bars 1011",
         [](PlayerRig& rig) { rig.globals.settings.quit_after_play = true; }},
        {PlayerRig::Url("page"), RunEnd::kCompleted, "play", "bars 1011",
         [](PlayerRig& rig) { rig.globals.close_after_play = true; }},
        {PlayerRig::Url("page"), RunEnd::kNoBrowser, "",
         "message ブラウザを起動できません|ブラウザがありません。",
         [](PlayerRig& rig) { rig.web.refusal = "ブラウザがありません。"; }},
        {PlayerRig::Url(""), RunEnd::kNothingToPlay, "play", "create"},
        {"input\t,id=a", RunEnd::kNothingToPlay, "play", "create"},
        {"url\t,size_bar=0.0.1024.768,indt=page", RunEnd::kBadSizeBar, "play", size},
        {"url\t,indt=page", RunEnd::kBadSizeBar, "play", size},
    };
    for (const auto& row : rows) {
        PlayerRig rig;
        rig.web.pages["page"] = "<p>";
        rig.lines = {row.line};
        if (row.prepare) row.prepare(rig);
        EXPECT_EQ(rig.player.Play(), row.end) << row.line;
        EXPECT_EQ(rig.ended, std::vector{row.end}) << row.line;
        EXPECT_EQ(rig.globals.activity, row.activity) << row.line;
        EXPECT_EQ(rig.web.calls.back(), row.call) << row.line;
    }
    PlayerRig empty;
    EXPECT_EQ(empty.player.Play(), RunEnd::kNothingToPlay);
    EXPECT_EQ(empty.web.calls, (Lines{"status ", "message |再生するデータがありません。"}));
}

TEST(Play, StopsInTheMiddleOfAnyWait) {
    for (const char* record : {"wait\t,indt=100000", "click\t,id=b,userwait=500",
                               "click\t,id=a,type=href,userwait=500,indt=x"}) {
        PlayerRig rig;
        rig.clock.At(5000, [&] { rig.globals.activity.clear(); });
        EXPECT_EQ(rig.PlayOn("<a id=a href=u>x</a><input id=b type=button>",
                             std::string(record) + "\nquit\t"),
                  RunEnd::kStopped);
        EXPECT_EQ(rig.web.calls.back(), "stopped") << record;
        EXPECT_EQ(rig.reports.size(), 2U) << record;
        EXPECT_LT(rig.clock.Elapsed(), 5200U) << record;
    }
}

}  // namespace
}  // namespace tamrin::test
