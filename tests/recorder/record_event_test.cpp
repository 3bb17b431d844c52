#include <gtest/gtest.h>

#include <functional>

#include "recorder/recorder_rig.h"

namespace tamrin::test {
namespace {

using RecordEventTest = RecorderTest;

TEST_F(RecordEventTest, RecordsWhatTheUserDidByTheElementsType) {
    struct Row {
        const char* html;
        std::function<void()> act;
        Lines records;
    };
    const auto type = [&](const char* text) {
        return [this, text] {
            user.Type("a", text);
            user.Focus("");
        };
    };
    const auto click = [&] { user.Click("a"); };
    const auto click_and_leave = [&] {
        user.Click("a");
        user.Focus("");
    };
    const auto visit = [&] {
        user.Focus("a");
        user.Focus("");
    };
    const Row rows[] = {
        // Clicks that are records.
        {"<input id=a type=submit value=送信>", click, {"click→,id=a,type=submit,indt=送信"}},
        {"<input id=a type=SUBMIT>", click, {"click→,id=a,type=SUBMIT,indt="}},
        {"<input name=a type=button alt=x>", click, {"click→,id=a,type=button,indt=x"}},
        {"<input id=a type=image src=go.png>", click, {"click→,id=a,type=image,indt=go.png"}},
        {"<a id=a href=#>次, へ</a>", click, {"click→,id=a,type=href,indt=次\x01 へ"}},
        {"<a id=a href=#><img src=x></a>", click, {"click→,id=a,type=href,indt=#"}},
        {"<a id=a href=#>\n two\nlines\t</a>", click, {"click→,id=a,type=href,indt=two\x02lines"}},
        {"<a href=#><button id=a type=\"\">in</button></a>",
         click,
         {"click→,id=a,type=href,indt=in"}},
        // Clicks that are none.
        {"<input id=a type=checkbox>", click, {}},
        {"<input id=a type=text>", click, {}},
        {"<input id=a type=reset>", click, {}},
        {"<select id=a><option>x</select>", click, {}},
        {"<body id=b><p id=a>text</p></body>", click, {}},
        // Fields that are left.
        {"<input id=a type=text>",
         type("a,b "),
         {"input→,id=a,type=text,indt=a\x01"
          "b"}},
        {"<input id=a>", type("x"), {"input→,id=a,type=text,indt=x"}},
        {"<input id=a type=password>", type("p"), {"input→,id=a,type=password,indt=p"}},
        {"<textarea id=a></textarea>",
         type("1\r\n2\t3"),
         {"input→,id=a,type=textarea,indt=1\x02"
          "2 3"}},
        {"<input id=a type=file>", type("C:\\f"), {"input→,id=a,type=file,indt=C:\\f"}},
        {"<input id=a type=email>", type("a@b"), {"input→,id=a,type=email,indt=a@b"}},
        {"<input id=a type=tel>", type("03"), {"input→,id=a,type=tel,indt=03"}},
        {"<input id=a type=text value=v>", visit, {"input→,id=a,type=text,indt=v"}},
        {"<p id=a tabindex=0></p>", visit, {"input→,id=a,type=,indt="}},
        {"<input id=a type=checkbox>", click_and_leave, {"input→,id=a,type=checkbox,indt=True"}},
        {"<input id=a type=checkbox checked>",
         click_and_leave,
         {"input→,id=a,type=checkbox,indt=False"}},
        {"<input id=a type=radio>", click_and_leave, {"input→,id=a,type=radio,indt=True"}},
        {"<input name=a type=radio value=\"1,2\">",
         click_and_leave,
         {"input→,id=a,type=radio,indt=True,value=1\x01"
          "2"}},
        {"<select id=a><option>x</option><option>y</option></select>",
         [&] {
             user.Choose("a", 1);
             user.Focus("");
         },
         {"input→,id=a,type=select-one,indt=1"}},
        // Elements that leave none when they are left.
        {"<input id=a type=submit>", visit, {}},
        {"<input id=a type=image>", visit, {}},
        {"<a id=a href=#>x</a>", visit, {}},
        {"<input id=a type=reset>", visit, {}},
    };
    for (const Row& row : rows) {
        lines.clear();
        Record(row.html);
        row.act();
        EXPECT_EQ(Records(), row.records) << row.html;
    }
}

TEST_F(RecordEventTest, BeginsANewScenarioWithThePage) {
    window->state = {{0, 0, 1024, 768}, {true, true, true, true}, false};
    Record("<input id=a type=submit>");
    EXPECT_TRUE(lines.empty()) << "until something happens";
    user.Click("a");
    Pass(200);
    EXPECT_EQ(lines, (Lines{"url\t,id=,size_bar=0.0.1024.768.11110,indt=page",
                            "click\t,id=a,type=submit,indt="}));
    EXPECT_EQ(selected, 1);
    EXPECT_TRUE(globals.unsaved);
}

TEST_F(RecordEventTest, GoesOnWithAScenarioWithoutItsPage) {
    lines = {"x"};
    Record("<input id=a type=submit>", RecordKind::kNew);
    user.Click("a");
    EXPECT_EQ(Records(), (Lines{"x", "click→,id=a,type=submit,indt="}));
    lines.clear();
    Record("<input id=a type=submit>", RecordKind::kAppend);
    user.Click("a");
    Pass(200);
    EXPECT_EQ(lines, Lines{"click\t,id=a,type=submit,indt="});
}

TEST_F(RecordEventTest, SaysWhenAnElementHasNoKeys) {
    Record("<p tabindex=0 name=\"\"></p><input id=a type=submit>");
    window->page()->root().Below("P")[0]->attributes["id"] = "p";
    user.Focus("p");
    window->page()->root().Below("P")[0]->attributes.erase("id");
    user.Focus("");
    EXPECT_EQ(Records(), Lines{});
    EXPECT_EQ(lines.size(), 1U) << "the page";
    EXPECT_EQ(status, "All null data event!");
}

TEST_F(RecordEventTest, NoticesLinksThatRunScripts) {
    Record("<a id=a href=javascript:f(1,2)></a>");
    user.Click("a");
    EXPECT_EQ(Records(), Lines{"click→,id=a,type=href,indt=javascript:f(1\x01"
                               "2)"});
    EXPECT_EQ(notices, Lines{"javascript:は、現在未対応"});
}

TEST_F(RecordEventTest, DropsARecordThatRepeatsTheOneBefore) {
    Record("<input id=a type=text><input id=b type=text>");
    user.Type("a", "x");
    user.Focus("");
    user.Focus("a");
    user.Focus("b");
    user.Focus("a");
    user.Focus("");
    EXPECT_EQ(Records(), (Lines{"input→,id=a,type=text,indt=x",
                                "input→,id=b,type=text,indt=", "input→,id=a,type=text,indt=x"}));
}

TEST_F(RecordEventTest, RecordsOnlyWhatTheUserChangedWhereThatIsSet) {
    struct Row {
        const char* html;
        std::function<void()> act;
        Lines records;
    };
    const auto visit = [&] { user.Focus("a"); };
    const Row rows[] = {
        {"<input id=a type=text value=\" v, \">", visit, {}},
        {"<input id=a type=text>", visit, {"input→,id=a,type=text,indt="}},
        {"<input id=a type=email value=v>", visit, {"input→,id=a,type=email,indt=v"}},
        {"<input id=a type=checkbox>", visit, {}},
        {"<input id=a type=checkbox>",
         [&] { user.Click("a"); },
         {"input→,id=a,type=checkbox,indt=True"}},
        {"<select id=a><option>x</select>", visit, {}},
        {"<input id=a type=submit value=v>",
         [&] { user.Click("a"); },
         {"click→,id=a,type=submit,indt=v"}},
        // What was typed before the user clicked into the field again, or came back, counts.
        {"<input id=a type=text value=v>",
         [&] {
             user.Type("a", "w");
             user.Click("a");
             user.ComeBack();
         },
         {"input→,id=a,type=text,indt=w"}},
    };
    globals.settings.rec_change_only = true;
    for (const Row& row : rows) {
        lines.clear();
        Record(row.html);
        row.act();
        user.Focus("");
        EXPECT_EQ(Records(), row.records) << row.html;
    }
}

}  // namespace
}  // namespace tamrin::test
