// What pages report of their user.

#include "conformance/witness.h"

namespace tamrin::conformance {
namespace {

using DocumentEvent = Suite;

TEST_F(DocumentEvent, TellsOfWhatTheUserDoes) {
    const std::string left = "focus a, click a, key49 a, leave a=1, focus b=送";
    const std::string sent = left + " in f, click b=送 in f, submit b=送 in f, navigate b=送";
    const std::string fields = "<input id=k><input id=n>";
    Check({
        {"<form id=g><input id=a><textarea id=b></textarea><input id=c type=checkbox><input id=d"
         " type=radio><select id=e><option>x<option>y</select></form><input id=f type=password>",
         "@a あ1 {TAB} x {ENTER} @c @d {TAB} {DOWN} {TAB} s {TAB}", "",
         "focus a in g, click a in g, key49 a=あ in g, leave a=あ1 in g, focus b in g,"
         " key120 b in g, key13 b=x in g, leave b=x\r\n in g, focus c=False in g,"
         " click c=True in g, leave c=True in g, focus d=False in g, click d=True in g,"
         " leave d=True in g, focus e=0 in g, leave e=1 in g, focus f, key115 f, leave f=s"},
        // The page is gone when its events are delivered.
        {"<input id=a><form id=f action=/echo><input type=submit id=b value=送></form>", "@a 1 @b",
         "", sent + ", DocumentComplete top"},
        {"<input id=a><form id=f action=/echo><button id=b value=送>送</button></form>", "@a 1 @b",
         "", sent + ", DocumentComplete top"},
        {"<input id=a><input type=button id=b value=送 onclick=\"location='/echo'\">", "@a 1 @b",
         "", left + ", click b=送, navigate b=送, DocumentComplete top"},
        {"<input id=a><input type=button id=b value=送 onclick=\"document.write('x'); document.close()\">",
         "@a 1 @b", "", left + ", click b=送, DocumentComplete top"},
        {"<form id=f action=/echo><input id=a><input type=submit id=b></form>", "@a 1 {ENTER}", "",
         "focus a in f, click a in f, key49 a in f, key13 a=1 in f presses b, submit a=1 in f,"
         " navigate a=1, DocumentComplete top"},
        // Frames report in the order of the user, whichever process they are in.
        {"<input id=a><iframe id=i src=$1></iframe>", "@a 1 @i/k 2 @a", "",
         "focus a, click a, key49 a, leave a=1, focus i, focus k, click k, key50 k, leave k=2,"
         " focus a=1, click a=1",
         fields},
        {"<iframe id=i src=$1></iframe><iframe id=j src=$2></iframe>", "@i/k 1 @j/n 2 @i/k", "",
         "focus i, focus k, click k, key49 k, leave k=1, focus j, focus n, click n, key50 n,"
         " leave n=2, focus i, focus k=1, click k=1",
         fields},
        // A page that writes itself anew.
        {"<!doctype html><a id=a onclick=\"document.open(); document.write('<input id=b>');"
         " document.close()\">次</a>",
         "click:a gone:a @b", "", "DocumentComplete top, focus b, click b"},
    });
}

TEST_F(DocumentEvent, BringsTheButtonThatEnterPresses) {
    const struct {
        std::string page, pressed, said;
    } rows[] = {
        {"<form id=f><input id=a><button id=x type=button></button><button id=y type=reset>"
         "</button><button id=b value=v></button><input id=c type=submit></form>",
         " presses b=v, submit a in f", "a b"},
        {"<input type=image id=b form=f><form id=f><input id=a><input type=submit></form>",
         " presses b, submit a in f", "a b"},
        {"<form id=f><input id=a></form><button id=b form=f></button>", " presses b, submit a in f",
         "a b"},
        {"<form id=f><input id=a><input type=submit id=b disabled><button></button></form>",
         " presses b", "a"},
        {"<form id=f><input name=form><input name=elements><input id=a name=id><input type=image"
         " id=b></form>",
         " presses b, submit a in f", "a b"},
        {"<form id=f><input id=a><input type=checkbox checked></form><button></button>",
         ", submit a in f", "a"},
    };
    for (const auto& row : rows) {
        Check({row.page +
                   "<script>onclick = e => say(e.target.id); onsubmit = e => e.preventDefault()"
                   "</script>",
               "@a {ENTER}", row.said, "focus a in f, click a in f, key13 a in f" + row.pressed});
    }
}

TEST_F(DocumentEvent, FiresInsideAHandlerWithoutThePage) {
    Witness witness(browser(), back_end());
    witness.fires = true;
    const Document page = Open("<input id=a onfocusin=say('in') onchange=say('changed')>");
    witness.lines.clear();
    witness.Listen(page);
    Do("@a 1 {ENTER}");
    ExpectLines(witness, "focus a, click a, focus a, key49 a, key13 a=1");
    ExpectSaid("in changed");
}

TEST_F(DocumentEvent, IsNotLostAmongMany) {
    Row row{.page = "", .acts = "@f0", .said = "", .events = "focus f0, click f0"};
    for (int i = 0; i < 60; ++i) {
        const std::string field = "f" + std::to_string(i);
        if (i > 0) row.events += ", focus " + field;
        row.events += ", key120 " + field + ", leave " + field + "=x";
        row.page += "<input id=" + field + ">";
        row.acts += " x {TAB}";
    }
    Check(row);
}

TEST_F(DocumentEvent, IsNotLostWherePagesLeadOnAsTheyLoad) {
    const std::string hop =
        Serve("<!doctype html><script>location.replace(document.referrer)</script>");
    Open("<input id=a><button id=b onclick=\"location = '" + hop + "'\">x</button>");
    Witness witness(browser(), back_end());
    witness.Follow();
    for (int i = 0; i < 12; ++i) {
        Do("@a @b");
        ASSERT_TRUE(Wait([&] { return witness.Has("DocumentComplete top"); }));
        ASSERT_TRUE(Wait([&] { return !browser().Busy() && Find("a"); }));
        std::erase_if(witness.lines, [](const std::string& line) {
            return line.starts_with("navigate") || line.starts_with("DocumentComplete");
        });
        ExpectLines(witness, "focus a, click a, leave a, focus b, click b");
    }
}

TEST_F(DocumentEvent, IsNotLostWhereATabIsClosedAfterIt) {
    const auto window = NewWindow();
    ASSERT_TRUE(window);
    window->Navigate(Url(Serve("<input id=a value=v><button id=b value=w>x</button>")));
    ASSERT_TRUE(WaitComplete(*window));
    Witness witness(*window, back_end());
    witness.Listen(window->document());
    for (const char* id : {"a", "b"}) {
        const auto point = window->ElementScreenPoint(window->document().Named(id).by_id);
        ASSERT_TRUE(point);
        input().SetCursorPos({point->x + 5, point->y + 5});
        input().LeftButton(true);
        input().LeftButton(false);
    }
    window->Quit();
    EXPECT_TRUE(Wait([&] { return witness.Has("OnQuit"); }));
    ExpectLines(witness, "focus a=v, click a=v, leave a=v, focus b=w, click b=w, OnQuit");
}

}  // namespace
}  // namespace tamrin::conformance
