#include "player/player.h"

#include <gtest/gtest.h>

#include "support/player_rig.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;

class PlayTest : public testing::Test, protected PlayerRig {};

TEST_F(PlayTest, OpensTheFirstUrlRecordAndPlaysWhatFollows) {
    web.pages["page"] = "<input id=a type=text>";
    lines = {Line("input", ",id=a,type=text,indt=never"), Url("page"),
             Line("input", ",id=a,type=text,indt=x")};
    EXPECT_EQ(player.Play(), RunEnd::kCompleted);
    EXPECT_EQ(web.calls, (Lines{"create", "navigate page", "visible", "place 1,2,300,400",
                                "bars 1011", "put a value=x", "fire a onchange"}));
    EXPECT_EQ(modes, (Lines{"play on", "play off"}));
    EXPECT_EQ(globals.activity, "");
    EXPECT_EQ(selected, 2);
    ASSERT_EQ(reports.size(), 2U);
    EXPECT_EQ(reports[0].act, "url");
    EXPECT_EQ(reports[1].row, 2);
    EXPECT_EQ(reports[1].outcome, RecordOutcome::kDone);
}

TEST_F(PlayTest, ReadsSizeAndBars) {
    struct Row {
        const char* size_bar;
        RunEnd end;
        const char* place;
        const char* bars;
    };
    const Row rows[] = {
        {"10.20.800.600.1", RunEnd::kCompleted, "place 10,20,800,600", "bars 1000"},
        {"10.20.800.600.1011", RunEnd::kCompleted, "place 10,20,800,600", "bars 1011"},
        {"-8.x.8a.600.11111.9", RunEnd::kCompleted, "place -8,0,8,600", "bars 1111"},
        {"0.0.1024.768.", RunEnd::kCompleted, "place 0,0,1024,768", "bars 0000"},
        {"0.0.1024.768", RunEnd::kBadSizeBar, "", ""},
        {"", RunEnd::kBadSizeBar, "", ""},
    };
    for (const Row& row : rows) {
        PlayerRig rig;
        rig.web.pages["page"] = "<p>";
        rig.lines = {Line("url", std::string(",id=,size_bar=") + row.size_bar + ",indt=page")};
        EXPECT_EQ(rig.player.Play(), row.end) << row.size_bar;
        if (row.end == RunEnd::kCompleted) {
            EXPECT_EQ(rig.web.calls[3], row.place) << row.size_bar;
            EXPECT_EQ(rig.web.calls[4], row.bars) << row.size_bar;
        } else {
            EXPECT_EQ(rig.messages,
                      Lines{"フォーマットエラー|位置・サイズまたはツールバーの指定が不正です。"});
            EXPECT_EQ(rig.globals.activity, "play") << "left by the stop command";
            EXPECT_TRUE(rig.held) << "the new window stays open";
        }
    }
}

TEST_F(PlayTest, SaysWhenThereIsNothingToPlay) {
    EXPECT_EQ(player.Play(), RunEnd::kNothingToPlay);
    EXPECT_EQ(messages, Lines{"|再生するデータがありません。"});
    EXPECT_EQ(web.calls, Lines{});
}

TEST_F(PlayTest, EndsSilentlyWithoutAUrlRecordOrAddress) {
    for (const std::string& line : {Line("input", ",id=a"), Url("")}) {
        PlayerRig rig;
        rig.lines = {line};
        EXPECT_EQ(rig.player.Play(), RunEnd::kNothingToPlay);
        EXPECT_EQ(rig.messages, Lines{});
        EXPECT_EQ(rig.globals.activity, "play");
        EXPECT_FALSE(rig.held);
    }
}

TEST_F(PlayTest, PlaysAsOftenAsThePlayCountSaysInOneWindow) {
    repeat = 3;
    EXPECT_EQ(PlayOn("<input id=a type=text>", {Line("input", ",id=a,type=text,indt=x")}),
              RunEnd::kCompleted);
    EXPECT_EQ(CallsOnPage(),
              "put a value=x; fire a onchange; navigate page; put a value=x; fire a onchange; "
              "navigate page; put a value=x; fire a onchange");
    EXPECT_EQ(reports.size(), 6U);
}

TEST_F(PlayTest, QuitEndsTheRunWhateverThePlayCount) {
    repeat = 2;
    EXPECT_EQ(PlayOn("<p>", {Line("quit", ",id="), Line("wait", ",indt=10")}), RunEnd::kCompleted);
    EXPECT_EQ(CallsOnPage(), "quit");
    EXPECT_EQ(globals.browser_status, BrowserStatus::kEnd);
}

TEST_F(PlayTest, WaitsForThePageBeforeARecordOfAnElement) {
    web.pages["next"] = "<input id=b type=text>";
    web.load_ms = 4000;
    EXPECT_EQ(PlayOn("<p>", {Line("navigate", ",indt=next"), Line("input", ",id=b,indt=y")}),
              RunEnd::kCompleted);
    EXPECT_EQ(CallsOnPage(), "navigate next; put b value=y; fire b onchange");
    EXPECT_GE(reports.back().milliseconds, 4000U);
}

TEST_F(PlayTest, TheFirstRecordDoesNotWaitForAPageThatNeverCompletes) {
    web.busy = true;
    clock.At(60000, [&] { globals.activity.clear(); });
    EXPECT_EQ(PlayOn("<input id=a type=text>",
                     {Line("input", ",id=a,indt=x"), Line("input", ",id=a,indt=y")}),
              RunEnd::kStopped);
    EXPECT_EQ(CallsOnPage(), "put a value=x; fire a onchange");
    EXPECT_EQ(clock.Elapsed(), 60000U) << "the second record is retried until Stop";
}

TEST_F(PlayTest, StopsInTheMiddleOfAnyWait) {
    for (const char* record : {"wait\t,indt=100000", "click\t,id=b,userwait=500,indt=",
                               "click\t,id=a,type=href,userwait=500,indt=x"}) {
        PlayerRig rig;
        rig.clock.At(5000, [&] { rig.globals.activity.clear(); });
        EXPECT_EQ(rig.PlayOn("<a id=a href=u>x</a><input id=b type=button>", {record, "quit\t"}),
                  RunEnd::kStopped);
        EXPECT_EQ(rig.CallsOnPage(), "") << record;
        EXPECT_LT(rig.clock.Elapsed(), 5200U) << record;
        EXPECT_EQ(rig.reports.back().outcome, RecordOutcome::kStopped);
    }
}

TEST_F(PlayTest, SaysWhenTheBrowserCannotBeStarted) {
    web.refusal = "ブラウザがありません。";
    EXPECT_EQ(PlayOn("<p>", {}), RunEnd::kNoBrowser);
    EXPECT_EQ(messages, Lines{"ブラウザを起動できません|ブラウザがありません。"});
    EXPECT_EQ(globals.activity, "");
    EXPECT_EQ(modes.back(), "all on");
}

TEST_F(PlayTest, EndsWithAMessageWhenTheBrowserDies) {
    clock.At(100, [&] { web.browser->Die(); });
    EXPECT_EQ(PlayOn("<p>", {Line("wait", ",indt=300"), Line("input", ",id=a,indt=x")}),
              RunEnd::kBrowserDied);
    EXPECT_EQ(messages, Lines{"再生エラー|ブラウザが終了したか、ページが異常終了したため、"
                              "再生を中止しました。"});
    EXPECT_EQ(globals.activity, "");
}

TEST_F(PlayTest, ClosesTheProgramAfterwardsWhereToldTo) {
    for (const bool by_setting : {true, false}) {
        PlayerRig rig;
        rig.globals.settings.quit_after_play = by_setting;
        rig.globals.close_after_play = !by_setting;
        rig.PlayOn("<p>", {});
        EXPECT_TRUE(rig.closed);
        EXPECT_EQ(rig.modes, Lines{"play on"});
    }
}

TEST_F(PlayTest, SurvivesAListThatShrinksDuringTheRun) {
    clock.At(50, [&] { lines.resize(1); });
    EXPECT_EQ(PlayOn("<p>", {Line("wait", ",indt=100"), Line("wait", ",indt=100")}),
              RunEnd::kCompleted);
}

}  // namespace
}  // namespace tamrin::test
