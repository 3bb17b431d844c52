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

// A page whose hidden field counts the runs of the click handlers and whose elements send it away.
constexpr std::string_view kCounting =
    "<form action=/echo><input type=hidden name=n id=n><input type=submit id=s value=送"
    " onclick='n.value += 1'></form><a id=a href='javascript:document.forms[0].submit()'"
    " onclick='n.value += 2'>次</a><input type=button id=b>"
    "<script>addEventListener('click', () => { n.value += 0; });"
    "document.getElementById('b').addEventListener('click', () => say('b'))</script>";

TEST_F(Click, RunsHandlersOnceTogetherWithAFiredClick) {
    const struct {
        std::string_view id;
        std::string_view arrived;
    } rows[] = {{"s", "GET n=10"}, {"a", "GET n=20"}};
    for (const auto& row : rows) {
        for (const bool mouse : {false, true}) {
            SCOPED_TRACE(std::string(row.id) + (mouse ? " by mouse" : " by click()"));
            Open(kCounting);
            const Element element = Find(row.id);
            EXPECT_TRUE(element.fireEvent("onclick"));
            if (mouse) {
                MouseClick(element);
            } else {
                EXPECT_TRUE(element.click());
            }
            EXPECT_EQ(Arrived(), row.arrived);
        }
    }
}

TEST_F(Click, HonoursTheVetoOfAFiredClick) {
    for (const bool mouse : {false, true}) {
        const Document document = Open(
            "<form action=/echo><input type=submit id=k onclick='say(\"veto\"); return false'>");
        const Element element = Find("k");
        EXPECT_TRUE(element.fireEvent("onclick"));
        if (mouse) {
            MouseClick(element);
        } else {
            EXPECT_TRUE(element.click());
        }
        Pump();
        EXPECT_EQ(Said("veto"), "veto");
        EXPECT_EQ(browser().document().url(), document.url());
    }
}

TEST_F(Click, RunsHandlersAgainForTheNextRecord) {
    Open(kCounting);
    const auto click = [&] { return Find("b").click(); };
    EXPECT_TRUE(Find("b").fireEvent("onclick") && click());
    EXPECT_EQ(Said("b b"), "b b");  // A lookup between the two makes them two clicks.
    const Element button = Find("b");
    EXPECT_TRUE(button.fireEvent("onclick") && button.click());
    EXPECT_EQ(Said("b b b"), "b b b");
    EXPECT_TRUE(button.click() && button.click());
    EXPECT_EQ(Said("b b b b b"), "b b b b b");
}

TEST_F(Click, OpensNewWindowsBesideTheOldOne) {
    for (const char* link : {"<a id=k target=_blank href=/echo>新</a>",
                             "<input type=button id=k onclick='say(!!window.open(\"/echo\"))'>"}) {
        const Document document = Open(link);
        EXPECT_TRUE(Find("k").click());
        Pump();
        EXPECT_TRUE(browser().Alive());
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(browser().document().url(), document.url());
        EXPECT_EQ(Find("k").id(), "k");
    }
}

}  // namespace
}  // namespace tamrin::conformance
