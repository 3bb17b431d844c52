#include "recorder/recorder.h"

#include <gtest/gtest.h>

#include "platform/text.h"
#include "support/scripted_user.h"

namespace tamrin::test {
namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;

// A recorder with everything around it in memory, and a user before the recorded window.
class RecorderTest : public testing::Test, protected RecorderHost {
protected:
    // Begins to record on a page of that HTML.
    void Start(const std::string& html) {
        web.pages["page"] = html;
        window->Show("page");
        recorder.Start(window, RecordKind::kNew);
    }
    // What the user does, with "; " between; also "pass" (0.3 seconds), "set" ("rec change only")
    // "leaves" (the page is about to go) and "stop".
    void Do(const std::string& acts) {
        for (const std::string& act : SplitLines(ReplaceAll(acts, "; ", "\n"))) {
            user.Do(act);
            if (act == "pass") clock.Pass(300);
            if (act == "leaves") window->Tell([](BrowserEvents& e) { e.BeforeNavigate2(""); });
            if (act == "set") globals.settings.rec_change_only = true;
            if (act == "stop") globals.activity.clear();
        }
    }
    void Tell(const std::function<void(BrowserEvents&)>& event) {
        window->Tell(event);
        clock.Pass(300);
    }
    // The records once the recording is over, with "; " between: "EVENT ID TYPE VALUE", with "[,]"
    // and "[n]" for an encoded comma and line end. The record of the page itself is left out.
    std::string Records() {
        recorder.Finish();
        std::string records;
        for (const std::string& line : lines) {
            if (!line.starts_with("url\t")) records += (records.empty() ? "" : "; ") + line;
        }
        for (const char* key : {"\t,id=", ",type=", ",indt="}) {
            records = ReplaceAll(records, key, " ");
        }
        return ReplaceAll(ReplaceAll(records, "\x01", "[,]"), "\x02", "[n]");
    }

    int RecordCount() override { return static_cast<int>(lines.size()); }
    std::string_view Record(int row) override { return lines.at(static_cast<size_t>(row)); }
    void AppendRecord(const std::string& line) override { lines.push_back(line); }
    void SelectRecord(int /*row*/) override {}
    void SetStatus(const std::string& text) override { status = text; }
    void ShowMessage(const std::string& text, const std::string& title) override {
        said.push_back(title + "|" + text);
    }
    void ShowNotice(const std::string& text) override { said.push_back(text); }
    void PageShown() override { said.push_back("page shown"); }
    void BrowserClosed() override { said.push_back("closed"); }

    VirtualClock clock;
    ScriptedWeb web{clock};
    std::shared_ptr<ScriptedBrowser> window = std::make_shared<ScriptedBrowser>(web);
    ScriptedUser user{web, window};
    Globals globals;
    Recorder recorder{globals, clock, *this};

    Texts lines;
    std::string status;
    Texts said;  // to the user and to the program
};

TEST_F(RecorderTest, RecordsWhatTheUserDid) {
    web.pages = {{"next", "<input id=b type=text><a id=l href=page>戻る</a>"},
                 {"f", "<input id=in type=text value=v><input id=ok type=submit>"},
                 {"g", "<a id=link href=#>x</a>"}};
    const struct {
        std::string html;
        std::string acts;
        std::string records;
    } rows[] = {
        // Clicks.
        {"<input id=a type=SUBMIT value=送信>", "click a", "click a SUBMIT 送信"},
        {"<input name=a type=button alt=x>", "click a", "click a button x"},
        {"<input id=a type=image src=s>", "click a", "click a image s"},
        {"<a id=a href=#>\n two\nx,\t</a>", "click a", "click a href two[n]x[,]"},
        {"<a id=a href=#><img src=x></a>", "click a", "click a href #"},
        {"<a href=javascript:f(1,2)><button id=a type=\"\"></button></a>", "click a",
         "click a href javascript:f(1[,]2)"},
        {"<input id=a type=reset><body id=b><p id=e>text</p></body>", "click a; click e", ""},
        // Fields that are left.
        {"<textarea id=a></textarea>", "type a 1,\t2 \0; leave"s, "input a textarea 1[,] 2"},
        {"<input id=a type=text value=v>", "focus a; leave", "input a text v"},
        {"<p id=a tabindex=0></p>", "focus a; leave", "input a  "},
        {"<input id=a type=radio value=3><input name=b type=radio value=\"1,2\">",
         "click a; click b; leave", "input a radio True; input b radio True,value=1[,]2"},
        {"<select id=a><option>x</select><input id=f type=file value=C:\\fakepath\\f>"
         "<input id=g type=file><input id=h type=file value=/h>",
         "focus a; focus f; focus g; focus h; leave",
         "input a select-one 0; // f file C:\\fakepath\\f; input h file /h"},
        {"<input id=a type=submit><input id=b type=image><a id=c href=#>x</a>",
         "focus a; focus b; focus c; leave", ""},
        {"<button type=submit><b id=a> 保存</b></button>", "click a; click a",
         "click  submit ,value=保存; click  submit ,value=保存"},
        // A record that repeats the one before is dropped, unless it is another press.
        {"<input id=a type=text>", "type a x; leave; focus a; leave", "input a text x"},
        {"<input id=a type=button>", "leaves; click a; click a; pass; pass; click a",
         "click a button ; click a button "},
        // The page goes away at once.
        {"<form action=next><input id=a type=text><input id=go type=submit></form>",
         "type a x; click go; pass; type b y; click l",
         "input a text x; click go submit ; input b text y; click l href 戻る"},
        {"<input id=a type=text>", "type a x; open next", "input a text x"},
        // Enter is recorded as the click that it makes.
        {"<form><input id=a type=text><input id=i type=image></form><form><input id=b></form>",
         "type a 1; enter; pass; type a 2; enter; type b 3; enter; leave",
         "input a text 1; click i image ; input a text 2; click i image ; input b text 3"},
        {"<input id=a type=text><iframe src=f></iframe><iframe src=g></iframe>",
         "type a 1; type in 2; click ok; click link; type a 3; leave",
         "input a text 1; input in text 2; click ok submit ; click link href x; input a text 3"},
        // Only what the user changed, also before a click into the field.
        {"<input id=a type=text value=\" v, \"><input id=b type=checkbox><input id=c type=text>"
         "<input id=d type=email value=v><select id=e><option>x</select>",
         "set; focus a; focus b; focus c; focus d; focus e; leave",
         "input c text ; input d email v"},
        {"<input id=a type=text value=v>", "set; type a w; click a; leave", "input a text w"},
        // The end of the recording records the field that was changed.
        {"<input id=a type=text value=v>", "focus a; pass; type a w", "input a text w"},
        {"<input id=a type=text value=v>", "focus a", ""},
        {"<iframe src=f></iframe>", "focus in; pass; type in w", "input in text w"},
        {"<input id=a type=submit>", "stop; click a", ""},
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
    EXPECT_EQ(said, (Texts{"javascript:は、現在未対応", "page shown", "page shown", "page shown"}));
    EXPECT_EQ(web.calls, (Texts{"fire a onchange", "fire a onchange", "fire b onchange"}));
}

TEST_F(RecorderTest, ConnectsToTheNextPageOfAFrameOrOfTheWindow) {
    web.pages = {{"f", "<input id=c type=submit>"}, {"g", "<input id=b type=submit>"}};
    Start("<iframe></iframe>");
    Node& frame = *window->page()->Below("IFRAME")[0];
    frame.attributes["src"] = "f";
    Do("click c; pass");
    window->page()->FramePage(frame)->Leave();
    frame.attributes["src"] = "g";
    Tell([](BrowserEvents& e) { e.DocumentComplete(false); });
    Do("click b; pass");
    // A page that is shown and not complete yet.
    window->page()->Leave();
    web.pages["next"] = "<input id=a type=text>";
    window->Show("next");
    Tell([](BrowserEvents& e) { e.NavigateComplete2(); });
    Do("focus a; pass; type a x");
    Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    EXPECT_EQ(Records(), "click c submit ; click b submit ; input a text x");
    EXPECT_EQ(said, Texts{"page shown"});
}

TEST_F(RecorderTest, PausesBeforeTheFirstOfTheEventsThatWait) {
    Start("<input id=b type=submit><input id=a type=submit>");
    Do("pass; click b");
    clock.After(50, [&] {
        EXPECT_TRUE(recorder.Handling());
        user.Do("click a");
    });
    const auto before = clock.Elapsed();
    clock.DoEvents();
    EXPECT_EQ(clock.Elapsed() - before, 100U) << "for both";
    EXPECT_FALSE(recorder.Handling());
    EXPECT_EQ(Records(), "click b submit ; click a submit ");
}

TEST_F(RecorderTest, SaysThatAPageIsNoDocumentAndForgetsAClosedBrowser) {
    Start("");
    window->Show("no such page");
    web.busy = true;  // the next page may be on its way
    Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    web.busy = false;
    Tell([](BrowserEvents& e) { e.DocumentComplete(true); });
    Tell([](BrowserEvents& e) { e.NavigateError("http://h/", "no host"); });
    EXPECT_EQ(status, "ページを開けません：http://h/ （no host）");
    window->Die();
    recorder.Finish();
    EXPECT_EQ(recorder.browser(), nullptr);
    EXPECT_EQ(said, (Texts{"エラー発生|記録を終了します。\r\n未対応のイベント発生！", "closed"}));
}

TEST_F(RecorderTest, ShowsTheWatchedValueButNoPassword) {
    Start(
        "<input id=t type=text value=shown><input id=a type=password value=secret><p tabindex=0><b id=x>");
    std::string shown;
    for (const char* acts : {"focus t; pass", "focus a; pass", "click x; pass", "leave; pass"}) {
        Do(acts);
        shown += status + (recorder.has_password() ? " password|" : "|");
    }
    EXPECT_EQ(shown, "shown|| password|All null data event! password|");
}

}  // namespace
}  // namespace tamrin::test
