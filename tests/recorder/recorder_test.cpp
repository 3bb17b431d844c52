#include "recorder/recorder.h"

#include <gtest/gtest.h>

#include "recorder/recorder_rig.h"

namespace tamrin::test {
namespace {

constexpr const char* kForm =
    "<form action=next><input id=q type=text><input id=go type=submit value=検索></form>";

TEST_F(RecorderTest, LosesNothingOfAClickThatLeavesThePageAtOnce) {
    web.pages["next"] = "<input id=b type=text><a id=l href=page>戻る</a>";
    Record(kForm);
    user.Type("q", "x");
    user.Click("go");
    Pass(100);
    user.Type("b", "y");
    user.Click("l");
    EXPECT_EQ(Records(),
              (Lines{"input→,id=q,type=text,indt=x", "click→,id=go,type=submit,indt=検索",
                     "input→,id=b,type=text,indt=y", "click→,id=l,type=href,indt=戻る"}));
    EXPECT_TRUE(lines[0].ends_with(",indt=page"));
    EXPECT_EQ(pages_shown, 2);
    EXPECT_EQ(globals.browser_status, BrowserStatus::kExec);
}

TEST_F(RecorderTest, RecordsAChangedFieldBeforeThePageGoesAway) {
    web.pages["next"] = "";
    Record(kForm);
    user.Type("q", "x");
    user.GoTo("next");
    EXPECT_EQ(Records(), Lines{"input→,id=q,type=text,indt=x"});
}

TEST_F(RecorderTest, RecordsEnterAsTheClickThatItMakes) {
    web.pages["next"] = "<input id=b type=text>";
    Record(kForm);
    user.Type("q", "x");
    Pass(20);
    user.Enter();
    EXPECT_EQ(Records(),
              (Lines{"input→,id=q,type=text,indt=x", "click→,id=go,type=submit,indt=検索"}));
    // The page may answer without leaving; a form without a button has no click.
    lines.clear();
    Record(
        "<form><input id=q type=text><input id=i type=image src=s></form>"
        "<form><input id=r type=text></form>"
        "<form><input id=t type=text><button id=b type=submit>x</button><input type=submit></form>");
    user.Type("q", "1");
    user.Enter();
    Pass(300);
    user.Type("q", "2");
    user.Enter();
    user.Type("r", "3");
    user.Enter();
    user.Type("t", "4");
    user.Enter();
    user.Focus("");
    EXPECT_EQ(Records(), (Lines{"input→,id=q,type=text,indt=1", "click→,id=i,type=image,indt=s",
                                "input→,id=q,type=text,indt=2", "click→,id=i,type=image,indt=s",
                                "input→,id=r,type=text,indt=3", "input→,id=t,type=text,indt=4",
                                "click→,id=b,type=submit,indt="}));
    EXPECT_EQ(web.calls.back(), "fire t onchange");
    EXPECT_EQ(web.lookups, 0) << "the events bring all of it";
}

TEST_F(RecorderTest, FollowsTheFocusIntoFrames) {
    web.pages["f"] = "<input id=in type=text><input id=ok type=submit>";
    web.pages["g"] = "<a id=link href=#>x</a>";
    Record("<input id=a type=text><iframe src=f></iframe><iframe src=g></iframe>");
    user.Type("a", "1");
    user.Type("in", "2");
    user.Click("ok");
    user.Click("link");
    user.Type("a", "3");
    user.Focus("");
    EXPECT_EQ(Records(), (Lines{"input→,id=a,type=text,indt=1", "input→,id=in,type=text,indt=2",
                                "click→,id=ok,type=submit,indt=", "click→,id=link,type=href,indt=x",
                                "input→,id=a,type=text,indt=3"}));
}

TEST_F(RecorderTest, ConnectsToAFramesNextPage) {
    web.pages["f"] = "<a id=l href=#>x</a>";
    web.pages["g"] = "<input id=b type=submit>";
    Record("<iframe src=f></iframe>");
    Node& frame = *window->page()->root().Below("IFRAME")[0];
    window->page()->FramePage(frame)->Leave();
    frame.attributes["src"] = "g";
    window->Tell([](BrowserEvents& e) { e.DocumentComplete(false); });
    Pass(20);
    user.Click("b");
    EXPECT_EQ(Records(), Lines{"click→,id=b,type=submit,indt="});
}

TEST_F(RecorderTest, RecordsInAPageThatIsNotCompleteYet) {
    web.pages["next"] = "<input id=b type=submit>";
    Record("<a id=l href=#>x</a>");
    user.Click("l");
    Pass(200);
    window->page()->Leave();
    window->Show("next");
    window->Tell([](BrowserEvents& e) { e.NavigateComplete2(); });
    Pass(20);
    user.Click("b");
    window->Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    EXPECT_EQ(Records(), (Lines{"click→,id=l,type=href,indt=x", "click→,id=b,type=submit,indt="}));
}

TEST_F(RecorderTest, KeepsUpWithFastWorkInItsOrder) {
    Record("<input id=a type=text><input id=b type=text>");
    Lines expected;
    for (int i = 0; i < 250; ++i) {
        for (const char* field : {"a", "b"}) {
            user.Type(field, std::to_string(i));
            expected.push_back(std::string("input→,id=") + field +
                               ",type=text,indt=" + std::to_string(i));
        }
    }
    user.Focus("");
    EXPECT_EQ(Records(), expected);
    EXPECT_LT(clock.Elapsed(), 1000U);
}

TEST_F(RecorderTest, HandlesTheNextEventOnlyWhenThePauseOfTheOneBeforeIsOver) {
    Record("<input id=a type=submit><input id=b type=submit>");
    Pass(50);
    user.Click("a");
    clock.At(clock.Elapsed() + 50, [&] {
        EXPECT_TRUE(recorder.Handling());
        user.Click("b");
    });
    const auto before = clock.Elapsed();
    clock.DoEvents();
    EXPECT_EQ(clock.Elapsed() - before, 100U);
    EXPECT_EQ(Records(), (Lines{"click→,id=a,type=submit,indt=", "click→,id=b,type=submit,indt="}));
}

TEST_F(RecorderTest, FinishRecordsWhatIsQueuedAndTheFieldThatWasChanged) {
    struct Row {
        const char* html;
        const char* field;
        const char* text;
        Lines records;
    };
    web.pages["f"] = "<input id=in type=text value=v>";
    const Row rows[] = {
        {"<input id=a type=text value=v>", "a", "w", {"input→,id=a,type=text,indt=w"}},
        {"<input id=a type=text value=v>", "a", "v", {}},
        {"<input id=a type=email value=v>", "a", "v", {}},
        {"<iframe src=f></iframe>", "in", "w", {"input→,id=in,type=text,indt=w"}},
    };
    for (const Row& row : rows) {
        lines.clear();
        Record(std::string("<input id=b type=submit>") + row.html);
        user.Click("b");
        user.Type(row.field, "v");
        clock.DoEvents();
        user.Type(row.field, row.text);
        recorder.Finish();
        Lines expected{"click→,id=b,type=submit,indt="};
        expected.insert(expected.end(), row.records.begin(), row.records.end());
        EXPECT_EQ(Records(), expected) << row.html << row.text;
    }
}

TEST_F(RecorderTest, RecordsNothingOnceItIsStopped) {
    Record("<input id=a type=submit>");
    globals.activity.clear();
    user.Click("a");
    EXPECT_EQ(Records(), Lines{});
}

TEST_F(RecorderTest, ForgetsAClosedBrowser) {
    web.pages["next"] = "";
    Record("<input id=a type=text>");
    user.Type("a", "x");
    user.GoTo("next");  // a page that is closed tells of it as of a page that is left
    window->Die();
    EXPECT_EQ(Records(), Lines{"input→,id=a,type=text,indt=x"});
    EXPECT_TRUE(closed);
    EXPECT_EQ(recorder.browser(), nullptr);
    recorder.Finish();
}

TEST_F(RecorderTest, SaysThatAPageIsNoDocument) {
    Record("");
    window->page()->Leave();
    window->Show("no such page");
    window->Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    Pass(20);
    EXPECT_EQ(messages, Lines{"エラー発生|記録を終了します。\r\n未対応のイベント発生！"});
    EXPECT_EQ(globals.activity, "rec");
}

TEST_F(RecorderTest, KnowsOfPasswordsAndShowsNone) {
    Record("<input id=t type=text value=shown><input id=a type=password value=secret>");
    user.Focus("t");
    Pass(20);
    EXPECT_EQ(status, "shown");
    user.Focus("a");
    Pass(150);
    EXPECT_EQ(status, "");
    EXPECT_FALSE(recorder.has_password());
    user.Focus("");
    Pass(150);
    EXPECT_TRUE(recorder.has_password());
}

}  // namespace
}  // namespace tamrin::test
