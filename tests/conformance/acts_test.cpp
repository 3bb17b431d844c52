// Clicks, events, keys, the mouse and dialog boxes: what is done with a page, and what it sees.

#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using FireEvent = Suite;

TEST_F(FireEvent, RunsThePagesHandlersInOrderAndNotTheBrowsersOwnAction) {
    Check({
        {"<form onchange=say('form')><input id=a onchange=say('field')></form>"
         "<input type=button id=b><input id=c onkeyup=say('up') onfocusin=say('in')><script>"
         "for (const p of [b, c]) p.addEventListener('click', () => { say(p.id); null.x; })"
         "</script>",
         "fire:a:onchange fire:b:onclick fire:c:onkeyup fire:c:onfocusin fire:c:onclick",
         "field form b up in c"},
        {"<a id=a href=/echo onclick=say('a')>次</a><form action=/echo><input type=submit id=s"
         " onclick=say('s')></form><input type=checkbox id=c onclick=say('c')>",
         "fire:a:onclick fire:s:onclick fire:c:onclick find:c is:c:checked", "a s c|False"},
    });
}

using Click = Suite;

TEST_F(Click, DoesWhatThePersonsClickDoes) {
    const std::string opened = Serve("<script>new BroadcastChannel('c').postMessage(1)</script>");
    const std::string channel =
        "<script>new BroadcastChannel('c').onmessage = () => say('opened')</script>";
    Check({
        {"<input type=checkbox id=c onchange=say(id+checked)><label id=l>名<input type=checkbox id=d"
         " onchange=say(id+checked)></label><input type=checkbox id=off disabled onchange=say(id)>"
         "<a id=j href=\"javascript:say('j')\">j</a><div onclick=say('div')><b id=f>f</b></div>",
         "click:c click:l click:off click:f click:j", "ctrue dtrue div j"},
        {"<a href='/echo?次=1'><img id=k alt=絵></a>", "click:k", "GET %E6%AC%A1=1"},
        // A new window is beside the old one, which stays usable.
        {channel + "<a id=k target=_blank href=" + opened + " onclick=say('k')>新</a>",
         "click:k find:k", "k opened"},
        {channel + "<input type=button id=k onclick=\"say(!!window.open('" + opened +
             "', '', 'popup'))\">",
         "click:k find:k", "true opened"},
    });
}

using SendKeys = Suite;

TEST_F(SendKeys, ReachesThePageAndElseTheBrowser) {
    Check({
        {"<input id=a><textarea id=b></textarea>",
         "@a Abc1{+}*{~}\\\"'山田🚀𠮷 +{s} {TAB} 一 {ENTER} 二 is:a:value is:b:value",
         "|Abc1+*~\\\"'山田🚀𠮷S|一\r\n二"},
        {"<input id=a value=12345><input type=checkbox id=b onchange=say(checked)>"
         "<select id=c onchange=say(value)><option>x<option>y<option>z</select><input id=d"
         " onfocus=say(id)>",
         "@a {END}{BACKSPACE}{BACKSPACE}{LEFT}{DELETE}{HOME}{DELETE} is:a:value 67 ^{a} 8"
         " is:a:value ^{a}^{x}^{v}^{v} is:a:value ^{z} is:a:value {TAB} {SPACE}"
         " {TAB} {DOWN} {DOWN} {UP} {TAB} +{TAB}+{TAB}+{TAB} 9 is:a:value",
         "true y z y d|2|8|88|8|9"},
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
        {"<p id=p><script>p.textContent = performance.getEntriesByType('navigation')[0].type"
         "</script>",
         "{F5} done is:p:innerText", "|reload"},
        {"<a id=k href=/echo?1>次</a>",
         "click:k done %{LEFT} done find:k is:k:id %{RIGHT} done is:got:innerText %{RIGHT} done"
         " find:got is:got:innerText",
         "|k|GET 1|GET 1"},
    });
}

using Dialogs = Suite;

// Each box keeps the browser busy until keys have answered it.
TEST_F(Dialogs, AreAnsweredByKeys) {
    const auto button = [](const std::string& script) {
        return "<input type=button id=b onclick=\"say(" + script + ")\">";
    };
    Check({
        {button("'a' + alert('\\ud800')"), "click:b box {ESC}", "aundefined"},
        {button("confirm('？')"), "click:b box {F2} a {ENTER}", "true"},
        {button("confirm('？')"), "@b box {SPACE}", "true"},
        {button("confirm('？')"), "click:b box {TAB} {ENTER}", "false"},
        {button("confirm('？')"), "click:b box {TAB} {LEFT} {ENTER}", "true"},
        {button("prompt('？', 'もと')"), "click:b box あ1 {ENTER}", "あ1"},
        {button("prompt('？', 'もと')"), "click:b box あ {ESC}", "null"},
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
    Find("b").fireEvent("onclick");
    Do("box");
    EXPECT_EQ(StillAnswers(document), 1);  // its address
    EXPECT_EQ(StillAnswers(field), 1);     // the click, which is made when the box is closed
    EXPECT_TRUE(browser().Alive());
    Do("{ENTER}");
    ExpectSaid("後 clicked");
    EXPECT_EQ(Find("a").value(), "v");
}

using ElementScreenPoint = Suite;

TEST_F(ElementScreenPoint, LeadsTheMouseToTheElement) {
    // Each says where a click landed, and "!" when a script made it.
    const std::string says =
        "<script>addEventListener('click', e => say(e.target.id + (e.isTrusted ? '' : '!')), true)"
        "</script>";
    const std::string space = "<div style='height:1500px'></div>";
    const std::string leaf = says + "<button id=a>葉</button>" + space + "<button id=b>下</button>";
    for (const std::string& url : Origins(leaf)) {
        const std::string nested = says + space + "<iframe id=f src=" + url +
                                   " style='border:7px solid;padding:11px 13px'></iframe>";
        Check({{says + space + "<iframe id=nested src=" + Url(Serve(nested)) +
                    "></iframe><div style='zoom:1.5'><iframe id=zoomed src=" + url +
                    "></iframe></div><div style='transform:scale(1.5);transform-origin:0 0'>"
                    "<iframe id=scaled src=" +
                    url + "></iframe></div>" + space,
                "@zoomed/b @scaled/b @nested/f/a @nested/f/b", "b b a b"}});
    }
    Check(
        {{says + "<style>html{scroll-behavior:smooth}</style><button id=top>上</button>" + space +
              "<button id=low>下</button><div style='width:300px;font:24px/40px monospace'>あいう"
              "<a id=broken href=#>二つの行にわたる長い長いリンク</a></div><div style='width:4000px;"
              "text-align:right'><button id=right>右</button></div>",
          "@top @low @broken @top @right", "top low broken top right"}});
    input().SetCursorPos({300, 200});
    EXPECT_EQ(input().GetCursorPos(), (ScreenPoint{300, 200}));
}

TEST_F(ElementScreenPoint, IsWhereThePointerIsToldOf) {
    const std::string field = "<input id=deep>", border = " style='border:20px solid' src=";
    const auto middle =
        Origins(field + "<iframe id=inner height=40" + border + Url(Serve(field)) + "></iframe>");
    Open("<label id=text for=field>名前</label><input id=field><iframe id=same" + border +
         middle[0] + "></iframe><iframe id=other" + border + middle[1] + "></iframe>");
    // The way into a frame of another site leads over its border.
    for (std::string path : {"text", "same/deep", "same/inner/deep", "other", "other/deep",
                             "other/inner", "other/inner/deep"}) {
        const std::string click = "@" + path;
        const Element element = Find(path);
        Replace(path, "/", " ");
        EXPECT_TRUE(Wait([&] {
            Do(click);
            return Ids(browser().UnderPointer()) == path;
        })) << path;
        EXPECT_EQ(browser().UnderPointer().back(), element) << path;
    }
    const auto before = back_end().RoundTrips();
    browser().UnderPointer();
    EXPECT_EQ(back_end().RoundTrips() - before, 3U);  // one for each page on the way
}

}  // namespace
}  // namespace tamrin::conformance
