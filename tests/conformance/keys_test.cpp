#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using SendKeys = Suite;

TEST_F(SendKeys, TypesText) {
    Open("<input id=a autofocus><textarea id=b></textarea>");
    ASSERT_TRUE(Wait([&] { return browser().document().activeElement().id() == "a"; }));
    EXPECT_TRUE(Type("Abc 1+*\"'山田🚀"));
    EXPECT_EQ(Find("a").value(), "Abc 1+*\"'山田🚀");
    EXPECT_TRUE(Press("TAB") && Type("一") && Press("ENTER") && Type("二"));
    EXPECT_EQ(Find("b").value(), "一\r\n二");
    EXPECT_TRUE(input().SendKeys({}));
}

TEST_F(SendKeys, EditsAndMoves) {
    Open(
        "<input id=a value=12345 autofocus><input type=checkbox id=b><select id=c onchange="
        "say(value)><option>x<option>y<option>z</select><input id=d>");
    const auto active = [&] { return browser().document().activeElement().id(); };
    ASSERT_TRUE(Wait([&] { return active() == "a"; }));
    const KeyStroke all{.text = "a", .name = "", .ctrl = true};
    const KeyStroke back{.text = "", .name = "TAB", .shift = true};

    EXPECT_TRUE(input().SendKeys({Key("END"), Key("BACKSPACE"), Key("BS"), Key("LEFT"),
                                  Key("DELETE"), Key("HOME"), Key("DEL")}));
    EXPECT_EQ(Find("a").value(), "2");
    EXPECT_TRUE(Type("67") && input().SendKeys({all}) && Type("8"));
    EXPECT_EQ(Find("a").value(), "8");
    EXPECT_TRUE(Press("TAB") && Type(" "));
    EXPECT_EQ(active() + Find("b").checked(), "bTrue");
    EXPECT_TRUE(Press("TAB") && Press("DOWN") && Press("DOWN") && Press("UP"));
    EXPECT_EQ(active() + Find("c").value(), "cy");
    EXPECT_EQ(Said("y z y"), "y z y");
    EXPECT_TRUE(Press("TAB"));
    EXPECT_EQ(active(), "d");
    EXPECT_TRUE(input().SendKeys({back, back, back}));
    EXPECT_EQ(active(), "a");
}

TEST_F(SendKeys, TellsThePageWhichKeysAreHeld) {
    Open(
        "<script>addEventListener('keydown', e => { if (e.key.length === 1 || e.key[0] === 'F' ||"
        " e.key === 'Enter' || e.key === 'Escape') say((e.ctrlKey ? '^' : '') +"
        " (e.altKey ? '%' : '') + (e.shiftKey ? '+' : '') + e.key); })</script>");
    EXPECT_TRUE(input().SendKeys({{.text = "k", .name = "", .ctrl = true},
                                  {.text = "k", .name = "", .alt = true},
                                  {.text = "K", .name = ""},
                                  {.text = "", .name = "F2", .shift = true},
                                  {.text = "", .name = "ENTER", .ctrl = true},
                                  {.text = "", .name = "ESC"}}));
    EXPECT_EQ(Said("^k %k +K +F2 ^Enter Escape"), "^k %k +K +F2 ^Enter Escape");
}

TEST_F(SendKeys, SubmitsByEnter) {
    Open(
        "<form action=/echo><input id=a name=a autofocus onchange='value += \"!\"'>"
        "<input type=submit name=s></form>");
    ASSERT_TRUE(Wait([&] { return browser().document().activeElement().id() == "a"; }));
    EXPECT_TRUE(Type("x") && Press("ENTER"));
    EXPECT_EQ(Arrived().substr(0, 12), "GET a=x%21&s");
}

TEST_F(SendKeys, ReachesTheFieldThatHasTheFocusInAFrame) {
    const std::string inner = Serve("<input id=k><input id=next>");
    for (const std::string& url : {Url(inner), OtherUrl(inner)}) {
        const Document frame = Open("<iframe src=" + url + "></iframe>").frames().at(0).document;
        MouseClick(frame.Named("k").by_id);
        ASSERT_TRUE(Wait([&] { return frame.activeElement().id() == "k" && frame.hasFocus(); }));
        EXPECT_TRUE(Type("枠内") && Press("TAB") && Type("x"));
        // A frame of another site is a process of its own: its page may be a moment behind.
        EXPECT_TRUE(Wait([&] {
            return frame.Named("k").by_id.value() + frame.Named("next").by_id.value() == "枠内x";
        }));
        EXPECT_EQ(browser().document().activeElement().tagName(), "IFRAME");
    }
}

TEST_F(SendKeys, ActsOnTheBrowser) {
    const Document first = Open("<p id=first>一");
    const std::string first_url = first.url();
    Open("<p id=second>二");
    EventLog events;
    const auto connection = browser().Connect(events);
    EXPECT_TRUE(Press("F5"));
    EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
    EXPECT_TRUE(Find("second"));
    EXPECT_TRUE(input().SendKeys({{.text = "", .name = "LEFT", .alt = true}}));
    EXPECT_TRUE(Wait([&] { return browser().document().url() == first_url; }));
    EXPECT_TRUE(WaitComplete());
    EXPECT_TRUE(Find("first"));
}

}  // namespace
}  // namespace tamrin::conformance
