#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using SendKeys = Suite;

TEST_F(SendKeys, TypesText) {
    Open("<input id=a autofocus><textarea id=b></textarea>");
    ASSERT_TRUE(Wait([&] { return browser().document().activeElement().id() == "a"; }));
    EXPECT_TRUE(Type("Abc 1+*~\\\"'山田🚀𠮷") &&
                input().SendKeys({{.text = "s", .name = "", .shift = true}}));
    EXPECT_EQ(Find("a").value(), "Abc 1+*~\\\"'山田🚀𠮷S");
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
    const auto ctrl = [](std::string letter) {
        return KeyStroke{.text = std::move(letter), .name = "", .ctrl = true};
    };
    const KeyStroke back{.text = "", .name = "TAB", .shift = true};

    EXPECT_TRUE(input().SendKeys({Key("END"), Key("BACKSPACE"), Key("BS"), Key("LEFT"),
                                  Key("DELETE"), Key("HOME"), Key("DEL")}));
    EXPECT_EQ(Find("a").value(), "2");
    EXPECT_TRUE(Type("67") && input().SendKeys({ctrl("a")}) && Type("8"));
    EXPECT_EQ(Find("a").value(), "8");
    EXPECT_TRUE(input().SendKeys({ctrl("a"), ctrl("x"), ctrl("v"), ctrl("v")}));
    EXPECT_EQ(Find("a").value(), "88");
    EXPECT_TRUE(input().SendKeys({ctrl("z")}));
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
        "<script>addEventListener('keydown', e => { if (!['Control', 'Alt', 'Shift'].includes("
        "e.key)) say((e.ctrlKey ? '^' : '') + (e.altKey ? '%' : '') + (e.shiftKey ? '+' : '') +"
        " [e.key, e.keyCode, e.code].join('/')); })</script>");
    EXPECT_TRUE(input().SendKeys({{.text = "k", .name = "", .ctrl = true},
                                  {.text = "k", .name = "", .alt = true},
                                  {.text = "K", .name = ""},
                                  {.text = "?", .name = ""},
                                  {.text = "", .name = "F2", .shift = true},
                                  {.text = "", .name = "PGUP", .shift = true, .ctrl = true},
                                  {.text = "", .name = "ENTER", .ctrl = true},
                                  {.text = "", .name = "ESC"}}));
    const std::string said =
        "^k/75/KeyK %k/75/KeyK +K/75/KeyK +?/191/Slash +F2/113/F2 ^+PageUp/33/PageUp"
        " ^Enter/13/Enter Escape/27/Escape";
    EXPECT_EQ(Said(said), said);
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
    const std::string first = Open("<input id=p>").url();
    const std::string second = Open("<input id=p>").url();
    EventLog events;
    const auto connection = browser().Connect(events);
    EXPECT_TRUE(Press("F5"));
    EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
    const struct {
        std::string_view key;
        const std::string& url;
    } rows[] = {{"LEFT", first}, {"RIGHT", second}, {"RIGHT", second}};
    for (const auto& row : rows) {
        EXPECT_TRUE(input().SendKeys({{.text = "", .name = std::string(row.key), .alt = true}}));
        EXPECT_TRUE(Wait([&] { return browser().document().url() == row.url; })) << row.key;
        EXPECT_TRUE(WaitComplete());
        EXPECT_TRUE(Find("p").Put("value", "x"));
        EXPECT_EQ(Find("p").value(), "x");
    }
}

TEST_F(SendKeys, LeavesToThePageWhatItTakes) {
    Open(
        "<script>onkeydown = e => { say(e.key); e.preventDefault() }"
        "</script>");
    EventLog events;
    const auto connection = browser().Connect(events);
    EXPECT_TRUE(Press("F5"));
    EXPECT_EQ(Said("F5"), "F5");
    Pump();
    EXPECT_FALSE(browser().Busy());
    EXPECT_EQ(events.lines, std::vector<std::string>());
}

}  // namespace
}  // namespace tamrin::conformance
