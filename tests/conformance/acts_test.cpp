// Clicks, events, keys and dialog boxes: what is done with a page, and what the page sees of it.

#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using FireEvent = Suite;

TEST_F(FireEvent, RunsThePagesHandlersInOrder) {
    Check(
        {{"<form onchange=say('form')><input id=a onchange=say('field')></form>"
          "<input type=button id=b><input id=c onkeyup=say('up') onfocusin=say('in')><script>"
          "for (const p of [b, c]) p.addEventListener('click', () => { say(p.id); null.x; })"
          "</script>",
          "fire:a:onchange fire:b:onclick fire:c:onkeyup fire:c:onfocusin fire:c:onclick",
          "field form b up in c"}});
}

TEST_F(FireEvent, LeavesOutTheBrowsersOwnAction) {
    const std::string page =
        "<a id=a href=/echo onclick=say('a')>次</a><form action=/echo><input type=submit id=s"
        " onclick=say('s')></form><input type=checkbox id=c onclick=say('c')>";
    Check({{page, "fire:a:onclick fire:s:onclick fire:c:onclick", "a s c"}});
    Pump();
    EXPECT_EQ(Find("c").checked(), "False");
    EXPECT_FALSE(browser().document().url().starts_with(Url("/echo")));
}

using Click = Suite;

TEST_F(Click, DoesWhatThePersonsClickDoes) {
    const std::string opened = Serve("<script>new BroadcastChannel('c').postMessage(1)</script>");
    const std::string channel =
        "<script>new BroadcastChannel('c').onmessage = () => say('opened')</script>";
    Check({
        {"<input type=checkbox id=c onchange=say(id+checked)><label id=l>名<input type=checkbox id=d"
         " onchange=say(id+checked)></label><input type=checkbox id=off disabled onchange=say(id)>"
         "<input type=button id=b onclick=say('b')><a id=j href=\"javascript:say('j')\">j</a>"
         "<div onclick=say('div')><b id=f>f</b></div>",
         "click:c click:l click:off click:b click:f click:j", "ctrue dtrue b div j"},
        {"<form action=/echo><input name=a value='1 2'><input type=submit id=k name=s value=送>",
         "click:k", "GET a=1+2&s=%E9%80%81"},
        {"<form action=/echo method=post><textarea name=a>1\n2</textarea><button id=k>送</button>",
         "click:k", "POST a=1%0D%0A2"},
        {"<form action=/echo><input name=a><input type=image id=k alt=送>", "click:k", "GET a="},
        {"<form action=/echo id=f><input name=a></form><button id=k form=f>送</button>", "click:k",
         "GET a="},
        {"<form><input name=a></form><input type=button id=k onclick='document.forms[0].action ="
         " \"/echo\"; document.forms[0].submit()'>",
         "click:k", "GET a="},
        {"<a id=k href='/echo?次=1'>次</a>", "click:k", "GET %E6%AC%A1=1"},
        {"<a href='/echo?n'><img id=k alt=絵></a>", "click:k", "GET n"},
        {"<input type=button id=k onclick='location = \"/echo?l\"'>", "click:k", "GET l"},
        // A new window is beside the old one, which stays usable.
        {channel + "<a id=k target=_blank href=" + opened + " onclick=say('k')>新</a>",
         "click:k find:k", "k opened"},
        {channel + "<input type=button id=k onclick=\"say(!!open('" + opened +
             "', '', 'popup'))\">",
         "click:k find:k", "true opened"},
    });
}

// One record fires the event and then clicks; the page must see what one person's click shows it.
TEST_F(Click, IsOneTogetherWithTheFiredEvent) {
    const std::string form = "<form onsubmit=\"say('sent'); return false\"><button id=k onclick=";
    const std::pair<std::string, std::string> rows[] = {
        {"<div id=box><input type=button id=k onclick=say('inline')></div><script>"
         "for (const [name, node] of Object.entries({window, document, box, k}))"
         " node.addEventListener('click', () => say(name));"
         "addEventListener('click', () => say('capture'), true)</script>",
         "capture inline k box document window"},
        {"<input type=checkbox id=k onclick=say('click') onchange=say('change')>", "click change"},
        {"<a id=k href=\"javascript:say('went')\" onclick=say('run')>次の頁</a>", "run went"},
        {form + "say('run')>送信する", "run sent"},
        {form + "\"say('run'); return false\">送信する", "run"},
        {form + "\"say('run'); event.preventDefault()\">送信する", "run"},
        {form + "\"say('run'); event.stopPropagation()\">送信する", "run sent"},
        {form + "\"say('run'); event.stopImmediatePropagation()\">送信する", "run sent"},
        {form + "\"say('run'); event.stopImmediatePropagation(); return false\">送信する", "run"},
        {form + "\"say('run'); throw 1\">送信する", "run sent"},
    };
    for (const auto& [page, said] : rows) {
        Check({{page, "fire:k:onclick click:k", said},
               {page, "fire:k:onclick click:k find:k fire:k:onclick @k", said + " " + said}});
    }
}

TEST_F(Click, IsAnotherOneForTheNextRecord) {
    const std::string page =
        "<input type=button id=a onclick=say('a')><input type=button id=b onclick=say('b')>";
    Check({{page, "find:b fire:a:onclick click:b find:a click:a", "a b a"},
           // A lookup between the two makes them two clicks.
           {page, "fire:b:onclick find:b click:b click:b", "b b b"}});
}

using SendKeys = Suite;

TEST_F(SendKeys, TypesText) {
    Open("<input id=a><textarea id=b></textarea>");
    Do("@a");
    EXPECT_TRUE(Type("Abc 1+*~\\\"'山田🚀𠮷") && input().SendKeys({}));
    Do("+{s} {TAB} 一 {ENTER} 二");
    EXPECT_EQ(Find("a").value() + Find("b").value(), "Abc 1+*~\\\"'山田🚀𠮷S一\r\n二");
}

TEST_F(SendKeys, EditsAndMoves) {
    const struct {
        std::string keys, active, value;
    } rows[] = {
        {"@a {END}{BACKSPACE}{BACKSPACE}{LEFT}{DELETE}{HOME}{DELETE}", "a", "2"},
        {"67 ^{a} 8", "a", "8"},
        {"^{a}^{x}^{v}^{v}", "a", "88"},
        {"^{z}", "a", "8"},
        {"{TAB} {SPACE}", "b", "on"},
        {"{TAB} {DOWN} {DOWN} {UP}", "c", "y"},
        {"{TAB}", "d", ""},
        {"+{TAB}+{TAB}+{TAB}", "a", "8"},
    };
    Open(
        "<input id=a value=12345><input type=checkbox id=b onchange=say(checked)>"
        "<select id=c onchange=say(value)><option>x<option>y<option>z</select><input id=d>");
    for (const auto& row : rows) {
        Do(row.keys);
        const Element active = browser().document().activeElement();
        EXPECT_EQ(active.id() + active.value(), row.active + row.value) << row.keys;
    }
    ExpectSaid("true y z y");
}

TEST_F(SendKeys, ReachesThePage) {
    Check({
        {"<script>addEventListener('keydown', e => { if (!['Control', 'Alt', 'Shift'].includes("
         "e.key)) say((e.ctrlKey ? '^' : '') + (e.altKey ? '%' : '') + (e.shiftKey ? '+' : '') +"
         " [e.key, e.keyCode, e.code].join('/')); })</script>",
         "^{k}%{k}K?+{F2}^+{PGUP}^{ENTER}{ESC}",
         "^k/75/KeyK %k/75/KeyK +K/75/KeyK +?/191/Slash +F2/113/F2 ^+PageUp/33/PageUp"
         " ^Enter/13/Enter Escape/27/Escape"},
        {"<form action=/echo><input id=a name=a onchange='value += \"!\"'><input type=submit"
         " name=s></form>",
         "@a x {ENTER}", "GET a=x%21&s"},
        // What the page takes does not act on the browser.
        {"<script>onkeydown = e => { say(e.key); e.preventDefault() }</script>", "{F5}", "F5"},
        {"<iframe id=i src=$1></iframe>", "@i/k 枠内 {TAB} x {TAB}", "k枠内 nextx", "",
         "<input id=k onchange=say(id+value)><input id=next onchange=say(id+value)>"},
        {"<input id=t><a id=a href='/echo?m'>次</a><script>"
         "for (const type of ['mousedown', 'focusin', 'mouseup', 'click'])"
         " addEventListener(type, e => say(e.target.id + '.' + type), true)</script>",
         "@t", "t.mousedown t.focusin t.mouseup t.click"},
        {"<a id=a href='/echo?m'>次</a>", "@a", "GET m"},
    });
}

TEST_F(SendKeys, ActsOnTheBrowser) {
    const std::string first = Open("<input id=p>").url();
    const std::string second = Open("<input id=p>").url();
    EventLog events(browser());
    Do("{F5}");
    ExpectLines(events, "BeforeNavigate2 " + second + ", DocumentComplete top");
    for (const auto& [keys, url] : {std::pair("%{LEFT}", first), std::pair("%{RIGHT}", second),
                                    std::pair("%{RIGHT}", second)}) {
        Do(keys);
        EXPECT_TRUE(Wait([&] { return browser().document().url() == url; })) << keys;
        EXPECT_TRUE(WaitComplete());
        EXPECT_TRUE(Find("p").Put("value", "x"));
        EXPECT_EQ(Find("p").value(), "x");
    }
}

using Dialogs = Suite;

// Each box keeps the browser busy until keys have answered it.
TEST_F(Dialogs, AreAnsweredByKeys) {
    const auto button = [](const std::string& script) {
        return "<input type=button id=b onclick=\"say(" + script + ")\">";
    };
    Check({
        {button("'a' + alert('知らせ')"), "click:b box {ENTER}", "aundefined"},
        {button("'a' + alert('\\ud800')"), "click:b box {ESC}", "aundefined"},
        {button("confirm('？')"), "click:b box {F2} a {ENTER}", "true"},
        {button("confirm('？')"), "@b box {SPACE}", "true"},
        {button("confirm('？')"), "click:b box {ESC}", "false"},
        {button("confirm('？')"), "click:b box {TAB} {ENTER}", "false"},
        {button("confirm('？')"), "click:b box {TAB} {LEFT} {ENTER}", "true"},
        {button("prompt('？', 'もと')"), "click:b box {ENTER}", "もと"},
        {button("prompt('？', 'もと')"), "click:b box あ1 {ENTER}", "あ1"},
        {button("prompt('？', 'もと')"), "click:b box あ {ESC}", "null"},
        {button("prompt('？', 'もと')"), "click:b box {TAB} {TAB} {ENTER}", "null"},
        {"<input id=k onkeydown=\"say('a' + alert('k'))\">", "@k a box {ENTER}", "aundefined"},
        {"<form onsubmit=\"return confirm('送信？')\" action=/echo><input name=n id=n></form>",
         "@n {ENTER} box {ENTER}", "GET n="},
        {"<iframe id=i src=$1></iframe>", "click:i/b box {ESC}", "false", "",
         button("confirm('？')")},
        // Browsers ask only where the user has done something.
        {"<input id=a><a id=l href=/echo onclick=say('left')>次</a>"
         "<script>onbeforeunload = e => { onbeforeunload = null; e.preventDefault() }</script>",
         "@a x click:l box {ESC}", "left"},
    });
}

TEST_F(Dialogs, EndCallsIntoThePageEarlyAndEmpty) {
    const Document document = Open(
        "<form><input id=a value=v onclick=say('clicked')></form><a href=x>y</a>"
        "<input type=button id=b onclick=\"alert('x'); say('後')\">");
    const Element field = Find("a");
    const std::uint32_t start = clock().TickCount();
    Find("b").fireEvent("onclick");
    Do("box");
    EXPECT_EQ(StillAnswers(document), "url");
    EXPECT_EQ(StillAnswers(field), "click");  // which is made when the box is closed
    EXPECT_TRUE(browser().Alive());
    EXPECT_LT(clock().TickCount() - start, 5000U);  // Each call by itself may be held for longer.
    Do("{ENTER}");
    ExpectSaid("後 clicked");
    EXPECT_EQ(Find("a").value(), "v");
}

TEST_F(Dialogs, HoldUpThePageThatIsLeftAndTheOneThatLoads) {
    Open("<input id=a><script>onbeforeunload = e => e.preventDefault()</script>");
    Do("@a x");
    EXPECT_TRUE(
        browser().Navigate(Url(Serve("<script>alert(1); alert(2)</script><p id=p>文</p>"))));
    Pump();
    EXPECT_TRUE(browser().Busy());
    EXPECT_TRUE(Wait([&] {
        Press("ENTER");
        return Find("p").innerText() == "文";
    }));
    EXPECT_TRUE(WaitComplete());
}

}  // namespace
}  // namespace tamrin::conformance
