#include "recorder/recorder.h"

#include <gtest/gtest.h>

#include "recorder/recorder_rig.h"

namespace tamrin::test {
namespace {

constexpr const char* kForm =
    "<form action=next><input id=q type=text><input id=go type=submit value=検索></form>";
const std::string kClickA = "click→,id=a,type=submit,indt=";
const std::string kClickB = "click→,id=b,type=submit,indt=";

TEST_F(RecorderTest, RecordsWhatTheUserDid) {
    web.pages["next"] = "<input id=b type=text><a id=l href=page>戻る</a>";
    web.pages["f"] = "<input id=in type=text><input id=ok type=submit>";
    web.pages["g"] = "<a id=link href=#>x</a>";
    const std::string forms =
        "<form><input id=q type=text><input id=i type=image src=s></form>"
        "<form><input id=r type=text></form><form><textarea id=t></textarea><input type=submit></form>"
        "<form><input id=u type=text><button id=b type=submit>x</button><input type=submit></form>";
    const struct {
        std::string html;
        const char* acts;
        std::string records;
    } rows[] = {
        // Clicks.
        {"<input id=a type=submit value=送信>", "click a", "click→,id=a,type=submit,indt=送信"},
        {"<input id=a type=SUBMIT>", "click a", "click→,id=a,type=SUBMIT,indt="},
        {"<input name=a type=button alt=x>", "click a", "click→,id=a,type=button,indt=x"},
        {"<input id=a type=image src=s>", "click a", "click→,id=a,type=image,indt=s"},
        {"<a id=a href=#>次, へ</a>", "click a", "click→,id=a,type=href,indt=次[,] へ"},
        {"<a id=a href=#><img src=x></a>", "click a", "click→,id=a,type=href,indt=#"},
        {"<a id=a href=#>\n two\nx\t</a>", "click a", "click→,id=a,type=href,indt=two[n]x"},
        {"<a href=#><button id=a type=\"\">in</button></a>", "click a",
         "click→,id=a,type=href,indt=in"},
        {"<a id=a href=javascript:f(1,2)></a>", "click a",
         "click→,id=a,type=href,indt=javascript:f(1[,]2)"},
        // Clicks that leave no record.
        {"<input id=a type=checkbox>", "click a", ""},
        {"<input id=b type=text>", "click b", ""},
        {"<input id=c type=reset>", "click c", ""},
        {"<select id=d><option>x</select>", "click d", ""},
        {"<body id=b><p id=e>text</p></body>", "click e; leave", ""},
        // Fields that are left.
        {"<input id=a type=text>", "type a a,b ; leave", "input→,id=a,type=text,indt=a[,]b"},
        {"<input id=a>", "type a x; leave", "input→,id=a,type=text,indt=x"},
        {"<input id=a type=password>", "type a p; leave", "input→,id=a,type=password,indt=p"},
        {"<textarea id=a></textarea>", "type a 1\t2; leave", "input→,id=a,type=textarea,indt=1 2"},
        {"<input id=a type=email>", "type a a@b; leave", "input→,id=a,type=email,indt=a@b"},
        {"<input id=a type=text value=v>", "focus a; leave", "input→,id=a,type=text,indt=v"},
        {"<p id=a tabindex=0></p>", "focus a; leave", "input→,id=a,type=,indt="},
        {"<input id=a type=checkbox>", "click a; leave", "input→,id=a,type=checkbox,indt=True"},
        {"<input id=a type=radio>", "click a; leave", "input→,id=a,type=radio,indt=True"},
        {"<input name=a type=radio value=\"1,2\">", "click a; leave",
         "input→,id=a,type=radio,indt=True,value=1[,]2"},
        {"<select id=a><option>x<option>y</select>", "choose a 1; leave",
         "input→,id=a,type=select-one,indt=1"},
        {"<input id=a type=submit><input id=b type=image><a id=c href=#>x</a><input id=d type=reset>",
         "focus a; focus b; focus c; focus d; leave", ""},
        // A record that repeats the one before is dropped.
        {"<input id=a type=text><input id=b type=text>",
         "type a x; leave; focus a; focus b; focus a; leave",
         "input→,id=a,type=text,indt=x\ninput→,id=b,type=text,indt=\ninput→,id=a,type=text,indt=x"},
        // The page goes away at once.
        {kForm, "type q x; click go; pass; type b y; click l",
         "input→,id=q,type=text,indt=x\nclick→,id=go,type=submit,indt=検索\n"
         "input→,id=b,type=text,indt=y\nclick→,id=l,type=href,indt=戻る"},
        {kForm, "type q x; open next", "input→,id=q,type=text,indt=x"},
        // Enter is recorded as the click that it makes.
        {kForm, "type q x; pass; enter",
         "input→,id=q,type=text,indt=x\nclick→,id=go,type=submit,indt=検索"},
        {forms, "type q 1; enter; pass; type q 2; enter; type r 3; enter; type u 4; enter; leave",
         "input→,id=q,type=text,indt=1\nclick→,id=i,type=image,indt=s\n"
         "input→,id=q,type=text,indt=2\nclick→,id=i,type=image,indt=s\n"
         "input→,id=r,type=text,indt=3\ninput→,id=u,type=text,indt=4\n"
         "click→,id=b,type=submit,indt="},
        {"<input id=a type=text><iframe src=f></iframe><iframe src=g></iframe>",
         "type a 1; type in 2; click ok; click link; type a 3; leave",
         "input→,id=a,type=text,indt=1\ninput→,id=in,type=text,indt=2\n"
         "click→,id=ok,type=submit,indt=\nclick→,id=link,type=href,indt=x\n"
         "input→,id=a,type=text,indt=3"},
        // Only what the user changed.
        {"<input id=a type=text value=\" v, \">", "set; focus a; leave", ""},
        {"<input id=a type=text>", "set; focus a; leave", "input→,id=a,type=text,indt="},
        {"<input id=a type=email value=v>", "set; focus a; leave", "input→,id=a,type=email,indt=v"},
        {"<input id=a type=checkbox>", "set; focus a; leave", ""},
        {"<input id=a type=checkbox>", "set; click a; leave",
         "input→,id=a,type=checkbox,indt=True"},
        {"<select id=a><option>x</select>", "set; focus a; leave", ""},
        {"<input id=a type=submit>", "set; click a", "click→,id=a,type=submit,indt="},
        // What was typed before the user clicked into the field again, or came back, counts.
        {"<input id=a type=text value=v>", "set; type a w; click a; return; leave",
         "input→,id=a,type=text,indt=w"},
    };
    for (const auto& row : rows) {
        lines.clear();
        globals.settings.rec_change_only = false;
        Start(row.html);
        web.lookups = 0;
        Do(row.acts);
        EXPECT_EQ(Records(), row.records) << row.html << " " << row.acts;
        EXPECT_EQ(web.lookups, 0) << "the events bring everything";
    }
    EXPECT_EQ(said, "javascript:は、現在未対応");
}

TEST_F(RecorderTest, BeginsANewScenarioWithThePage) {
    const std::string url = "url\t,id=,size_bar=0.0.1024.768.11110,indt=page";
    const std::string click = "click\t,id=a,type=submit,indt=";
    using Lines = std::vector<std::string>;
    const std::tuple<RecordKind, Lines, Lines> rows[] = {
        {RecordKind::kNew, {}, {url, click}},
        {RecordKind::kNew, {"x"}, {"x", click}},
        {RecordKind::kAppend, {}, {click}},
    };
    for (const auto& [kind, before, after] : rows) {
        lines = before;
        globals.unsaved = false;
        Start("<input id=a type=submit>", kind);
        EXPECT_EQ(lines, before) << "until something happens";
        Do("click a; pass");
        EXPECT_EQ(lines, after);
        EXPECT_EQ(selected, RecordCount() - 1);
        EXPECT_TRUE(globals.unsaved);
    }
}

TEST_F(RecorderTest, SaysWhenAnElementHasNoKeys) {
    Start("<p id=p tabindex=0></p>");
    user.Focus("p");
    window->page()->root().Below("P")[0]->attributes.erase("id");
    Do("leave; pass");
    EXPECT_EQ(lines.size(), 1U) << "the page";
    EXPECT_EQ(status, "All null data event!");
}

TEST_F(RecorderTest, TellsThePageOfAChangeThatEnterMakes) {
    Start("<form><input id=t type=text></form>");
    Do("type t 4; enter; pass");
    EXPECT_EQ(web.calls, std::vector<std::string>{"fire t onchange"});
}

TEST_F(RecorderTest, ConnectsToTheNextPageOfAFrameOrOfTheWindow) {
    web.pages["f"] = "<a id=l href=#>x</a>";
    web.pages["g"] = "<input id=b type=submit>";
    Start("<iframe src=f></iframe>");
    Node& frame = *window->page()->root().Below("IFRAME")[0];
    window->page()->FramePage(frame)->Leave();
    frame.attributes["src"] = "g";
    window->Tell([](BrowserEvents& e) { e.DocumentComplete(false); });
    Do("pass; click b");
    EXPECT_EQ(Records(), kClickB);
    EXPECT_EQ(pages_shown, 0);
    // A page that is shown and not complete yet.
    window->page()->Leave();
    web.pages["next"] = "<input id=a type=submit>";
    window->Show("next");
    window->Tell([](BrowserEvents& e) { e.NavigateComplete2(); });
    Do("pass; click a");
    window->Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    EXPECT_EQ(Records(), kClickB + "\n" + kClickA);
    EXPECT_EQ(pages_shown, 1);
}

TEST_F(RecorderTest, KeepsUpWithFastWorkInItsOrder) {
    Start("<input id=a type=text><input id=b type=text>");
    std::string expected;
    for (int i = 0; i < 250; ++i) {
        for (const std::string field : {"a", "b"}) {
            user.Type(field, std::to_string(i));
            expected += "input→,id=" + field + ",type=text,indt=" + std::to_string(i) + "\n";
        }
    }
    Do("leave");
    EXPECT_EQ(Records() + "\n", expected);
    EXPECT_LT(clock.Elapsed(), 1000U);
}

TEST_F(RecorderTest, HandlesTheNextEventOnlyWhenThePauseOfTheOneBeforeIsOver) {
    Start("<input id=a type=submit><input id=b type=submit>");
    Do("pass; click a");
    clock.At(clock.Elapsed() + 50, [&] {
        EXPECT_TRUE(recorder.Handling());
        user.Click("b");
    });
    const auto before = clock.Elapsed();
    clock.DoEvents();
    EXPECT_EQ(clock.Elapsed() - before, 100U);
    EXPECT_FALSE(recorder.Handling());
    EXPECT_EQ(Records(), kClickA + "\n" + kClickB);
}

TEST_F(RecorderTest, FinishRecordsWhatIsQueuedAndTheFieldThatWasChanged) {
    web.pages["f"] = "<input id=in type=text value=v>";
    const struct {
        std::string html;
        const char* act;
        std::string records;
    } rows[] = {
        {"<input id=a type=text value=v>", "type a w", "\ninput→,id=a,type=text,indt=w"},
        {"<input id=a type=text value=v>", "type a v", ""},
        {"<input id=a type=email value=v>", "type a v", ""},
        {"<iframe src=f></iframe>", "type in w", "\ninput→,id=in,type=text,indt=w"},
    };
    for (const auto& row : rows) {
        lines.clear();
        Start("<input id=b type=submit>" + row.html);
        Do("click b");
        user.Focus(row.html.starts_with("<iframe") ? "in" : "a");
        clock.DoEvents();
        Do(row.act);
        recorder.Finish();
        EXPECT_EQ(Records(), kClickB + row.records) << row.html << row.act;
    }
    Start("<input id=b type=submit>");
    globals.activity.clear();
    lines.clear();
    Do("click b");
    recorder.Finish();
    EXPECT_EQ(Records(), "") << "once it is stopped";
}

TEST_F(RecorderTest, ForgetsAClosedBrowser) {
    web.pages["next"] = "";
    Start("<input id=a type=text>");
    Do("type a x; open next");  // a page that is closed tells of it as of a page that is left
    window->Die();
    EXPECT_EQ(Records(), "input→,id=a,type=text,indt=x");
    EXPECT_TRUE(closed);
    EXPECT_EQ(recorder.browser(), nullptr);
    recorder.Finish();
}

TEST_F(RecorderTest, SaysThatAPageIsNoDocument) {
    Start("");
    window->page()->Leave();
    window->Show("no such page");
    web.busy = true;  // the next page may be on its way
    window->Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    Do("pass");
    EXPECT_EQ(said, "");
    web.busy = false;
    window->Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    Do("pass");
    EXPECT_EQ(said, "エラー発生|記録を終了します。\r\n未対応のイベント発生！");
    window->Tell([](BrowserEvents& e) { e.NavigateError("http://h/", "no host"); });
    Do("pass");
    EXPECT_EQ(status, "ページを開けません：http://h/ （no host）");
    EXPECT_EQ(globals.activity, "rec");
}

TEST_F(RecorderTest, KnowsOfPasswordsAndShowsNone) {
    Start("<input id=t type=text value=shown><input id=a type=password value=secret>");
    Do("focus t; pass");
    EXPECT_EQ(status, "shown");
    Do("focus a; pass");
    EXPECT_EQ(status, "");
    EXPECT_FALSE(recorder.has_password());
    Do("leave; pass");
    EXPECT_TRUE(recorder.has_password());
}

}  // namespace
}  // namespace tamrin::test
