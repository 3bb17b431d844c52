#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using FireEvent = Suite;

TEST_F(FireEvent, RunsThePagesHandlersInOrder) {
    Open(
        "<form onchange=say('form')><input id=a onchange=say('field')></form>"
        "<input type=button id=b><input id=c onkeyup=say('up') onfocusin=say('in')>"
        "<script>for (const p of ['b', 'c']) document.getElementById(p).addEventListener('click',"
        " () => { say(p); null.x; })</script>");
    for (const char* call : {"a onchange", "b onclick", "c onkeyup", "c onfocusin", "c onclick"}) {
        EXPECT_TRUE(Find(std::string(call, 1)).fireEvent(call + 2));
    }
    EXPECT_EQ(Said("field form b up in c"), "field form b up in c");
}

TEST_F(FireEvent, LeavesOutTheBrowsersOwnAction) {
    const Document document = Open(
        "<a id=a href=/echo onclick=say('a')>次</a><form action=/echo><input type=submit id=s"
        " onclick=say('s')></form><input type=checkbox id=c onclick=say('c')>");
    for (const char* id : {"a", "s", "c"}) EXPECT_TRUE(Find(id).fireEvent("onclick"));
    EXPECT_EQ(Said("a s c"), "a s c");
    Pump();
    EXPECT_EQ(Find("c").checked(), "False");
    EXPECT_EQ(browser().document().url(), document.url());
}

using Click = Suite;

TEST_F(Click, DoesWhatThePersonsClickDoes) {
    Open(
        "<input type=checkbox id=c><label id=l>名<input type=checkbox id=d></label>"
        "<input type=checkbox id=off disabled><input type=button id=b onclick=say('b')>"
        "<a id=j href=\"javascript:say('j')\">j</a><div id=e onclick=say('div')><b id=f>f</b></div>");
    for (const char* id : {"c", "l", "off", "b", "f", "j"}) EXPECT_TRUE(Find(id).click()) << id;
    EXPECT_EQ(Said("b div j"), "b div j");
    EXPECT_EQ(Find("c").checked() + Find("d").checked() + Find("off").checked(), "TrueTrueFalse");
}

struct SubmitRow {
    std::string_view body;  // the element clicked has the id k
    std::string_view arrived;
};

TEST_F(Click, SubmitsFormsAndFollowsLinks) {
    const SubmitRow rows[] = {
        {"<form action=/echo><input name=a value='1 2'><input type=submit id=k name=s value=送>",
         "GET a=1+2&s=%E9%80%81"},
        {"<form action=/echo method=post><textarea name=a>1\n2</textarea><button id=k>送</button>",
         "POST a=1%0D%0A2"},
        {"<form action=/echo><input name=a><input type=image id=k alt=送>", "GET a="},
        {"<form action=/echo id=f><input name=a></form><button id=k form=f>送</button>", "GET a="},
        {"<form><input name=a></form><input type=button id=k onclick='document.forms[0].action ="
         " \"/echo\"; document.forms[0].submit()'>",
         "GET a="},
        {"<a id=k href='/echo?次=1'>次</a>", "GET %E6%AC%A1=1"},
        {"<a href='/echo?n'><img id=k alt=絵></a>", "GET n"},
        {"<input type=button id=k onclick='location = \"/echo?l\"'>", "GET l"},
    };
    for (const SubmitRow& row : rows) {
        Open(row.body);
        EXPECT_TRUE(Find("k").click()) << row.body;
        const std::string arrived = Arrived();
        EXPECT_EQ(arrived.substr(0, row.arrived.size()), row.arrived) << row.body;
    }
}

struct RecordRow {
    std::string_view html;  // the element clicked has the id k
    std::string_view said;  // by one click
};

constexpr std::string_view kForm = "<form onsubmit=\"say('sent'); return false\">";

// One record fires the event and then clicks; the page must see what one person's click shows it.
TEST_F(Click, IsOneTogetherWithTheFiredEvent) {
    const RecordRow rows[] = {
        {"<div id=box><input type=button id=k onclick=say('inline')></div><script>"
         "for (const [name, node] of Object.entries({window, document, box, k}))"
         " node.addEventListener('click', () => say(name));"
         "addEventListener('click', () => say('capture'), true)</script>",
         "capture inline k box document window"},
        {"<input type=checkbox id=k onclick=say('click') onchange=say('change')>", "click change"},
        {"<a id=k href=\"javascript:say('went')\" onclick=say('run')>次の頁</a>", "run went"},
        {"<button id=k onclick=say('run')>送信する</button>", "run sent"},
        {"<button id=k onclick=\"say('run'); return false\">送信する</button>", "run"},
        {"<button id=k onclick=\"say('run'); event.preventDefault()\">送信する</button>", "run"},
        {"<button id=k onclick=\"say('run'); event.stopPropagation()\">送信する</button>",
         "run sent"},
        {"<button id=k onclick=\"say('run'); event.stopImmediatePropagation()\">送信する</button>",
         "run sent"},
        {"<button id=k onclick=\"say('run'); event.stopImmediatePropagation(); return false\">"
         "送信する</button>",
         "run"},
        {"<button id=k onclick=\"say('run'); throw 1\">送信する</button>", "run sent"},
    };
    for (const RecordRow& row : rows) {
        SCOPED_TRACE(row.html);
        const bool sends = row.html.starts_with("<button");
        Open(std::string(sends ? kForm : "").append(row.html));
        const Element by_method = Find("k");
        EXPECT_TRUE(by_method.fireEvent("onclick") && by_method.click());
        std::string said(row.said);
        EXPECT_EQ(Said(said), said);
        const Element by_mouse = Find("k");
        EXPECT_TRUE(by_mouse.fireEvent("onclick"));
        MouseClick(by_mouse);
        AddWord(said, row.said);
        EXPECT_EQ(Said(said), said);
    }
}

TEST_F(Click, IsAnotherOneForTheNextRecord) {
    Open("<input type=button id=a onclick=say('a')><input type=button id=b onclick=say('b')>");
    const Element other = Find("b");
    EXPECT_TRUE(Find("a").fireEvent("onclick") && other.click());
    EXPECT_TRUE(Find("a").click());
    EXPECT_EQ(Said("a b a"), "a b a");
    EXPECT_TRUE(Find("b").fireEvent("onclick"));
    EXPECT_TRUE(Find("b").click());  // A lookup between the two makes them two clicks.
    const Element button = Find("b");
    EXPECT_TRUE(button.click() && button.click());
    EXPECT_EQ(Said("a b a b b b b"), "a b a b b b b");
}

TEST_F(Click, OpensNewWindowsBesideTheOldOne) {
    const std::string opened = Serve("<script>new BroadcastChannel('c').postMessage(1)</script>");
    const std::string script = "say(!!window.open('" + opened + "', '', 'popup'))";
    const std::pair<std::string, std::string> rows[] = {
        {"<a id=k target=_blank href=" + opened + ">新</a>", "opened"},
        {"<input type=button id=k onclick=\"" + script + "\">", "true opened"},
    };
    for (const auto& [link, said] : rows) {
        const Document document = Open(
            link + "<script>new BroadcastChannel('c').onmessage = () => say('opened')</script>");
        EXPECT_TRUE(Find("k").click());
        EXPECT_EQ(Said(said), said);
        EXPECT_TRUE(browser().Alive());
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(browser().document().url(), document.url());
        EXPECT_EQ(Find("k").id(), "k");
    }
}

}  // namespace
}  // namespace tamrin::conformance
