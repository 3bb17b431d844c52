#include "player/exec_record.h"

#include <gtest/gtest.h>

#include "support/player_rig.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;

class ExecRecordTest : public testing::Test, protected PlayerRig {};

TEST_F(ExecRecordTest, ActsByTheElementsType) {
    struct Row {
        const char* html;
        const char* record;
        const char* calls;
    };
    const Row rows[] = {
        {"<input id=a type=PASSWORD>", "input\t,id=a,type=password,indt=p",
         "put a value=p; fire a onchange"},
        {"<textarea id=a></textarea>", "input\t,id=a,type=textarea,indt=x\x01y\x02z",
         "put a value=x,y\r\nz; fire a onchange"},
        {"<input id=a type=tel>", "input\t,id=a,type=tel,indt=03",
         "put a value=03; fire a onchange"},
        {"<input id=a type=file>", "input\t,id=a,type=file,indt=/f",
         "put a value=/f; fire a onchange"},
        {"<input id=a type=checkbox>", "input\t,id=a,type=checkbox,indt=true",
         "put a checked=True; fire a onchange"},
        {"<input id=a type=radio>", "input\t,id=a,type=radio,indt=0",
         "put a checked=False; fire a onchange"},
        {"<input id=a type=radio>", "input\t,id=a,type=radio,indt=-1",
         "put a checked=True; fire a onchange"},
        {"<input name=g id=a type=radio value=x><input name=g id=b type=radio value=y>",
         "input\t,id=g,type=radio,indt=y", "put b checked=True; fire b onchange"},
        {"<input name=g id=a type=radio value=1><input name=g id=b type=radio value=2>",
         "input\t,id=g,type=radio,indt=True,value=2", "put b checked=True; fire b onchange"},
        {"<select id=a><option>x</option><option>2</option></select>",
         "input\t,id=a,type=select-one,indt=1", "put a selectedIndex=1; fire a onchange"},
        {"<select id=a><option>2</option><option>x</option></select>",
         "input\t,id=a,type=select-one,indt=2", "put a selectedIndex=0; fire a onchange"},
        {"<select id=a><option>x</option><option>y</option><option>x</option></select>",
         "input\t,id=a,type=select-one,indt=x", "put a selectedIndex=2; fire a onchange"},
        {"<input id=a type=button onclick=f>", "CLICK\t,id=a", "fire a onclick; click a"},
        {"<input id=a type=button onclick=f>", "push\t,id=a", "click a"},
        {"<input id=a type=button>", "click\t,id=a", "click a"},
        {"<input id=a type=image onclick=f>", "click\t,id=a", "click a"},
        {"<input id=a type=image>", "input\t,id=a", ""},
        {"<input id=a type=submit onclick=f>", "submit\t,id=a", "fire a onclick; click a"},
        {"<input id=a type=reset>", "click\t,id=a,type=submit", "click a"},
        {"<div id=a></div>", "click\t,id=a", "fire a onclick; click a"},
        {"<div id=a></div>", "input\t,id=a", "fire a onclick"},
        {"<input id=a type=button>", "Sendkeys\t,id=a,indt=x", "click a"},
    };
    for (const Row& row : rows) {
        PlayerRig rig;
        EXPECT_EQ(rig.PlayOn(row.html, {row.record}), RunEnd::kCompleted);
        EXPECT_EQ(rig.CallsOnPage(), row.calls) << row.record << " on " << row.html;
        EXPECT_EQ(rig.reports.back().outcome, RecordOutcome::kDone) << row.record;
    }
}

TEST_F(ExecRecordTest, SearchesFramesAndThenByValue) {
    web.pages["f"] = "<input id=in type=text>";
    web.pages["f"] += "<input name=g type=radio value=1><input name=g id=r type=radio value=x>";
    PlayOn(
        "<iframe src=f></iframe><input id=v type=text value=東京><img id=w alt=大阪>",
        {Line("input", ",id=in,type=text,indt=x"), Line("input", ",id=no,type=text,indt=東京"),
         Line("click", ",id=no,type=image,indt=大阪"), Line("input", ",id=g,type=radio,indt=x")});
    EXPECT_EQ(CallsOnPage(),
              "put in value=x; fire in onchange; put v value=東京; fire v onchange; "
              "fire w onclick; click w; put r checked=True; fire r onchange");
}

TEST_F(ExecRecordTest, SaysWhichRecordFoundNoElementAndGoesOn) {
    PlayOn("<input id=b type=text>", {Line("input", ",id=a,type=text,indt=x"),
                                      Line("input", ",id=b,type=text,indt=%%error%%")});
    const std::string line = "行番号2 <該当フィールド無し>Act=input,Id=a,Type=text,InDt=x";
    EXPECT_EQ(statuses.back(), line);
    EXPECT_EQ(reports[1].outcome, RecordOutcome::kNotFound);
    EXPECT_EQ(CallsOnPage(), "put b value=" + line + "; fire b onchange");
}

TEST_F(ExecRecordTest, SaysWhichInputDataCannotBeApplied) {
    const char* const rows[][2] = {
        {"<input id=a type=checkbox>", "input\t,id=a,indt=maybe"},
        {"<input id=a name=g type=radio value=x>", "input\t,id=a,indt=y"},
        {"<select id=a><option>x</option></select>", "input\t,id=a,indt=1"},
        {"<select id=a></select>", "input\t,id=a,indt=-1"},
    };
    for (const auto& [html, record] : rows) {
        PlayerRig rig;
        rig.PlayOn(html, {record, "wait\t,indt=10"});
        ASSERT_EQ(rig.messages.size(), 1U) << record;
        EXPECT_TRUE(rig.messages[0].starts_with("|入力データ不正\r\nId=a\r\ninputdata="));
        EXPECT_EQ(rig.reports[1].outcome, RecordOutcome::kInvalid);
        EXPECT_EQ(rig.reports.size(), 3U) << "the run goes on";
    }
    web.refuses_value = "a";
    PlayOn("<input id=a type=text>", {Line("input", ",id=a,indt=x")});
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(ExecRecordTest, RetriesARecordWhosePageWentAwayUnderIt) {
    web.refuses_value = "a";
    web.pages["next"] = "<input id=a type=text>";
    web.on_call["put a value=x"] = [&] {
        if (!web.refuses_value.empty()) web.browser->Navigate("next");
        web.on_call.clear();
        clock.At(clock.Elapsed() + 20, [&] { web.refuses_value.clear(); });
    };
    PlayOn("<input id=a type=text>", {Line("input", ",id=a,indt=x")});
    EXPECT_EQ(CallsOnPage(), "put a value=x; navigate next; put a value=x; fire a onchange");
    EXPECT_EQ(messages, Lines{});
}

TEST_F(ExecRecordTest, FollowsLinksByTextAddressOrScript) {
    const std::string html =
        "<a id=1 href=\"http://h/a\">次へ</a><a id=2 href=\"http://h/b\">x</a>"
        "<a id=3 href=\"http://h/b\">y</a>";
    const struct {
        const char* items;
        const char* calls;
        std::uint32_t at_least_ms;
    } rows[] = {
        {",id=,type=href,indt=次へ", "scroll 1; click 1", 2000},
        {",id=,type=href,indt=javascript:go()", "navigate javascript:go()", 0},
        {",id=,type=href,indt=http://h/b", "", 0},  // of two links neither is clicked
        {",id=3,type=href,indt=http://h/b", "fire 3 onclick; click 3", 0},
    };
    for (const auto& row : rows) {
        PlayerRig rig;
        rig.PlayOn(html, {Line("click", row.items)});
        EXPECT_EQ(rig.CallsOnPage(), row.calls);
        EXPECT_EQ(rig.reports.back().outcome == RecordOutcome::kNotFound, *row.calls == '\0');
        EXPECT_GE(rig.reports.back().milliseconds, row.at_least_ms);
    }
}

TEST_F(ExecRecordTest, SendsKeysAfterAPause) {
    clipboard = "a+b";
    PlayOn("<p>", {Line("sendkeys", ",id=,indt=x{TAB}\x01%%comma%%%%DBLQ%%%%clipboard%%"),
                   "sendkeys,~", Line("sendkeys", ",id=,indt=~")});
    EXPECT_EQ(CallsOnPage(), "keys x TAB , , \" a + b; keys ENTER; keys ENTER");
    EXPECT_EQ(reports[1].milliseconds, 500U);
}

TEST_F(ExecRecordTest, SendsKeysToABusyBrowserOnly) {
    PlayOn("<p>", {Line("sendkeys-if-busy", ",id=,indt=~")});
    EXPECT_EQ(CallsOnPage(), "");
    EXPECT_EQ(reports.back().outcome, RecordOutcome::kNotBusy);

    PlayerRig rig;
    rig.web.load_ms = 200;
    rig.web.pages["slow"] = "<p>";
    rig.PlayOn("<p>", {Line("navigate", ",indt=slow"), Line("sendkeys-if-busy", ",indt=~")});
    EXPECT_EQ(rig.CallsOnPage(), "navigate slow; keys ENTER");
}

TEST_F(ExecRecordTest, RefusesAMalformedKeyString) {
    PlayOn("<p>", {Line("sendkeys", ",indt=a{NOKEY}")});
    EXPECT_EQ(messages, Lines{"キー入力エラー|行番号2 のキー文字列が不正です。キーは送られません。"
                              "\r\n「{NOKEY}」というキーはありません。\r\n\r\na{NOKEY}"});
    EXPECT_EQ(CallsOnPage(), "");
    EXPECT_EQ(reports.back().outcome, RecordOutcome::kInvalid);
}

TEST_F(ExecRecordTest, SaysWhenKeysCannotBeSent) {
    web.takes_keys = false;
    PlayOn("<p>", {Line("sendkeys", ",indt=a")});
    EXPECT_EQ(statuses.back(), "行番号2 <キー送信不可>前面のウィンドウがキーを受け付けません。");
    EXPECT_EQ(reports.back().outcome, RecordOutcome::kNotSent);

    PlayerRig stopped;
    stopped.web.takes_keys = false;
    stopped.web.on_call["keys a"] = [&] { stopped.globals.activity.clear(); };
    stopped.PlayOn("<p>", {Line("sendkeys", ",indt=a")});
    EXPECT_EQ(stopped.reports.back().outcome, RecordOutcome::kStopped);
    EXPECT_EQ(stopped.statuses, Lines{""});
}

TEST_F(ExecRecordTest, WaitsAsLongAsTheFirstTokenSays) {
    PlayOn("<p>", {Line("wait", ",indt= 1000 ms"), Line("wait", ",indt=\"250\" x"),
                   Line("wait", ",indt=15"), Line("wait", ",indt=5"), Line("wait", ",indt=x"),
                   Line("//", ",indt=a comment")});
    const std::uint32_t expected[] = {1000, 250, 20, 0, 0, 0};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(reports[i + 1].milliseconds, expected[i]) << i;
    EXPECT_EQ(reports.back().outcome, RecordOutcome::kComment);
}

TEST_F(ExecRecordTest, ShowsTheSecondsOfAUserWaitThatCanBeSkipped) {
    clock.At(2130, [&] { globals.skip_wait = true; });
    PlayOn("<input id=a type=button>", {Line("click", ",id=a,userwait=3")});
    EXPECT_EQ(CallsOnPage(), "");
    EXPECT_EQ(reports.back().outcome, RecordOutcome::kSkipped);
    EXPECT_EQ(statuses[1], "3");
    EXPECT_EQ(statuses[statuses.size() - 2], "1");
    EXPECT_EQ(statuses.back(), "");
}

TEST_F(ExecRecordTest, ClicksWithTheRealMouseAndPutsItBack) {
    const struct {
        const char* html;
        bool has_place;  // on the screen
        Rect window;     // the program's own, which must not take the click
        const char* calls;
    } rows[] = {
        {"<input id=a type=submit>",
         true,
         {90, 90, 200, 200},
         "scroll a; window hidden; pointer 110,110; button down; button up; window shown; "
         "pointer 3,4"},
        {"<input id=a type=submit>",
         true,
         {111, 90, 200, 200},
         "scroll a; pointer 110,110; button down; button up; pointer 3,4"},
        {"<input id=a type=submit tiny>",
         true,
         {},
         "scroll a; pointer 103,103; button down; button up; pointer 3,4"},
        {"<input id=a type=submit>", false, {}, "scroll a; click a"},
    };
    for (const auto& row : rows) {
        for (const bool by_setting : {false, true}) {
            PlayerRig rig;
            rig.globals.settings.mouse_click = by_setting;
            rig.window = row.window;
            rig.web.has_screen_points = row.has_place;
            rig.PlayOn(row.html, {Line(by_setting ? "click" : "click_mouse", ",id=a")});
            EXPECT_EQ(rig.CallsOnPage(), row.calls);
        }
    }
}

TEST_F(ExecRecordTest, LeavesAClickThatIsNoLongerWanted) {
    const struct {
        const char* moment;
        bool dies;  // the browser, and else the run is stopped
        const char* calls;
    } rows[] = {
        {"window hidden", false, "scroll a; window hidden; window shown"},
        {"window hidden", true, "scroll a; window hidden; window shown"},
        {"button down", false,
         "scroll a; window hidden; pointer 110,110; button down; button up; window shown; "
         "pointer 3,4"},
    };
    for (const auto& row : rows) {
        PlayerRig rig;
        rig.window = {90, 90, 200, 200};
        rig.web.on_call[row.moment] = [&] {
            if (row.dies) return rig.web.browser->Die();
            rig.globals.activity.clear();
        };
        rig.PlayOn("<input id=a type=submit>", {Line("click_mouse", ",id=a")});
        EXPECT_EQ(rig.CallsOnPage(), row.calls);
    }
}

TEST_F(ExecRecordTest, PointsAtTheFieldWhereTheSettingSaysSo) {
    globals.settings.auto_point = true;
    PlayOn("<input id=a type=text>", {Line("input", ",id=a,indt=x")});
    EXPECT_EQ(CallsOnPage(), "pointer 110,110; put a value=x; fire a onchange");
}

}  // namespace
}  // namespace tamrin::test
