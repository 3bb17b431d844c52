#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using Dialogs = Suite;

struct DialogRow {
    std::string_view script;             // what the button says when the box is closed
    std::vector<std::string_view> keys;  // names, and after "=" what is typed
    std::string_view said;
};

TEST_F(Dialogs, AreAnsweredByKeys) {
    const DialogRow rows[] = {
        {"say('a' + alert('知らせ'))", {"ENTER"}, "aundefined"},
        {"say('a' + alert('\\ud800'))", {"ESC"}, "aundefined"},
        {"say(confirm('？'))", {"F2", "=a", "ENTER"}, "true"},
        {"say(confirm('？'))", {"= "}, "true"},
        {"say(confirm('？'))", {"ESC"}, "false"},
        {"say(confirm('？'))", {"TAB", "ENTER"}, "false"},
        {"say(confirm('？'))", {"TAB", "LEFT", "ENTER"}, "true"},
        {"say(prompt('？', 'もと'))", {"ENTER"}, "もと"},
        {"say(prompt('？', 'もと'))", {"=あ 1", "ENTER"}, "あ 1"},
        {"say(prompt('？', 'もと'))", {"=あ", "ESC"}, "null"},
        {"say(prompt('？', 'もと'))", {"TAB", "TAB", "ENTER"}, "null"},
    };
    for (const DialogRow& row : rows) {
        Open("<input type=button id=b onclick=\"" + std::string(row.script) + "\">");
        EXPECT_TRUE(Find("b").click());
        ASSERT_TRUE(Wait([&] { return browser().Busy(); })) << row.script;
        Pump();
        EXPECT_TRUE(browser().Busy());
        for (const std::string_view key : row.keys) {
            EXPECT_TRUE(key[0] == '=' ? Type(key.substr(1)) : Press(std::string(key)));
        }
        EXPECT_EQ(Said(row.said), row.said) << row.script;
        EXPECT_TRUE(WaitComplete());
    }
}

TEST_F(Dialogs, EndCallsIntoThePageEarlyAndEmpty) {
    const Document document = Open(
        "<input id=a value=v><iframe srcdoc='<p id=p>'></iframe>"
        "<input type=button id=b onclick=\"alert('x'); say('後')\">");
    const Element field = Find("a");
    const std::uint32_t start = clock().TickCount();
    Find("b").fireEvent("onclick");
    ASSERT_TRUE(Wait([&] { return browser().Busy(); }));
    EXPECT_FALSE(document.Named("a").by_id || document.activeElement());
    EXPECT_TRUE(document.links().empty() && document.getElementsByTagName("*").empty());
    EXPECT_EQ(field.innerText(), "");
    EXPECT_FALSE(field.getBoundingClientRect());
    EXPECT_FALSE(field.Put("value", "x"));
    EXPECT_TRUE(browser().Alive());
    EXPECT_LT(clock().TickCount() - start, 5000U);  // Each call by itself may be held for longer.
    EXPECT_TRUE(Press("ENTER"));
    EXPECT_EQ(Said("後"), "後");
    EXPECT_EQ(Find("a").value(), "v");
}

TEST_F(Dialogs, MakeTheBrowserBusyHoweverTheyAreOpened) {
    Open(
        "<input type=button id=b onclick=\"say(confirm('？'))\"><input id=k onkeydown=\""
        "if (event.key === 'a') alert('k')\"><form onsubmit=\"return confirm('送信？')\""
        " action=/echo><input name=n id=n></form>");
    const Element button = Find("b");
    const Element field = Find("k");
    const Element sent = Find("n");
    MouseClick(button);
    ASSERT_TRUE(Wait([&] { return browser().Busy(); }));
    EXPECT_TRUE(Press("ENTER"));
    EXPECT_EQ(Said("true"), "true");
    MouseClick(field);
    ASSERT_TRUE(Wait([&] { return browser().document().activeElement() == field; }));
    Type("a");
    ASSERT_TRUE(Wait([&] { return browser().Busy(); }));
    EXPECT_TRUE(Press("ENTER"));
    EXPECT_TRUE(WaitComplete());
    MouseClick(sent);
    Press("ENTER");
    ASSERT_TRUE(Wait([&] { return browser().Busy(); }));
    EXPECT_TRUE(Press("ENTER"));
    EXPECT_EQ(Arrived(), "GET n=");
}

TEST_F(Dialogs, HoldUpThePageThatLoads) {
    const std::string page = Serve("<script>alert(1); alert(2)</script><p id=p>文</p>");
    EXPECT_TRUE(browser().Navigate(Url(page)));
    Pump();
    EXPECT_TRUE(browser().Busy());
    EXPECT_TRUE(Wait([&] {
        Press("ENTER");
        return Find("p").innerText() == "文";
    }));
    EXPECT_TRUE(WaitComplete());
}

TEST_F(Dialogs, OfAFrameAreAnsweredLikeThoseOfThePage) {
    const std::string inner = Serve("<input type=button id=b onclick=\"say(confirm('？'))\">");
    const Document frame =
        Open("<iframe src=" + OtherUrl(inner) + "></iframe>").frames()[0].document;
    const Element log = frame.Named("log").by_id;
    EXPECT_TRUE(frame.Named("b").by_id.click());
    ASSERT_TRUE(Wait([&] { return browser().Busy(); }));
    EXPECT_TRUE(Press("ESC"));
    EXPECT_TRUE(Wait([&] { return log.innerText() == "false"; }));
    EXPECT_TRUE(WaitComplete());
}

TEST_F(Dialogs, MayKeepThePageFromBeingLeft) {
    const Document document = Open(
        "<input id=a autofocus><a id=l href=/echo>次</a>"
        "<script>onbeforeunload = e => { e.preventDefault(); return 'x' }</script>");
    const std::string url = document.url();
    MouseClick(Find("a"));
    EXPECT_TRUE(Type("x"));  // Browsers ask only where the user has done something.
    EXPECT_TRUE(Find("l").click());
    ASSERT_TRUE(Wait([&] { return browser().Busy(); }));
    Pump();
    EXPECT_TRUE(Press("ESC"));
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser().document().url(), url);
    EXPECT_EQ(Find("a").value(), "x");

    EXPECT_TRUE(browser().Navigate(Url("/echo")));
    EXPECT_TRUE(Wait([&] {
        if (browser().document().url() == Url("/echo")) return true;
        Press("ENTER");
        return false;
    }));
    EXPECT_TRUE(WaitComplete());
}

}  // namespace
}  // namespace tamrin::conformance
