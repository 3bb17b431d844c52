#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

class PageDialogs : public ChromiumTest {
protected:
    bool Keys(const std::vector<KeyStroke>& keys) { return launcher_.input().SendKeys(keys); }
};

TEST_F(PageDialogs, AreAnsweredByKeysAsAPersonWould) {
    const KeyStroke enter = NamedKey("ENTER");
    const KeyStroke escape = NamedKey("ESC");
    const KeyStroke tab = NamedKey("TAB");
    const KeyStroke other = NamedKey("F2");
    const KeyStroke blank = Letter(' ');
    const KeyStroke a = Letter('a');
    const struct {
        const char* what;
        const char* call;
        std::vector<KeyStroke> keys;
        const char* expected;
    } rows[] = {
        {"alert", "alert(1)", {enter}, "undefined"},
        {"alert by ESC", "alert(1)", {escape}, "undefined"},
        {"confirm", "confirm(1)", {other, a, enter}, "true"},
        {"confirm by blank", "confirm(1)", {blank}, "true"},
        {"cancel", "confirm(1)", {escape}, "false"},
        {"cancel by its button", "confirm(1)", {tab, enter}, "false"},
        {"there and back", "confirm(1)", {tab, NamedKey("LEFT"), enter}, "true"},
        {"prompt", "prompt('', 'old')", {enter}, "old"},
        {"prompt with text", "prompt('', 'old')", {a, blank, a, enter}, "a a"},
        {"no prompt", "prompt('', 'old')", {a, escape}, "null"},
        {"prompt's cancel", "prompt('', 'old')", {tab, tab, enter}, "null"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Open("<button id=b type=button onclick=\"log(String(" + std::string(row.call) +
             "))\">x</button>");
        const Document page = browser_.document();
        const Element button = Find("b");
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(browser_.Busy());
        // The page's scripts stand still: nothing is to be had of it, at once.
        EXPECT_EQ(button.innerText(), "");
        EXPECT_TRUE(page.getElementsByTagName("*").empty());
        EXPECT_TRUE(Keys(row.keys));
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(Log(), row.expected);
    }
}

// A record fires onclick, whose handler asks, and clicks meanwhile; the next record answers.
TEST_F(PageDialogs, HoldTheClickOfTheSameRecordUntilTheyAreAnswered) {
    for (const bool yes : {true, false}) {
        Open(
            "<form onsubmit=\"log('submit'); return false\">"
            "<button id=b onclick=\"log('ask'); return confirm(1)\">send</button></form>");
        const Element button = Find("b");
        EXPECT_TRUE(button.fireEvent("onclick"));
        EXPECT_TRUE(browser_.Busy());
        button.scrollIntoView();
        EXPECT_FALSE(browser_.ElementScreenPoint(button));
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(Keys({NamedKey(yes ? "ENTER" : "ESC")}));
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(Log(), yes ? "ask submit" : "ask");
    }
}

TEST_F(PageDialogs, MayFollowEachOtherAndTheKeysGoOnInThePage) {
    Open(
        "<input id=t onkeydown=\"if (event.key == 'Enter') log(confirm(1) && confirm(2))\">"
        "<script>t.focus()</script>");
    std::vector<KeyStroke> keys{Letter('a'), Letter('b')};
    for (const auto* name : {"ENTER", "ENTER", "ENTER"}) keys.push_back(NamedKey(name));
    keys.push_back(Letter('c'));
    EXPECT_TRUE(Keys(keys));
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(Log(), "true");
    EXPECT_EQ(Find("t").value(), "abc");
}

TEST_F(PageDialogs, AskBeforeThePageIsLeft) {
    Serve([](const WebRequest& request) {
        if (request.path == "/next") return WebReply{.body = Page("")};
        return WebReply{.body = Page("<input id=t><a id=a href=/next>go</a><script>t.focus();"
                                     "onbeforeunload = (e) => e.preventDefault()</script>")};
    });
    OpenUrl(world_.server.Url("/"));
    EXPECT_TRUE(Keys({Letter('x')}));  // browsers ask only when the page has been used
    for (const bool leave : {false, true}) {
        EXPECT_TRUE(Find("a").click());
        EXPECT_TRUE(Wait([&] { return browser_.Busy(); }));
        world_.clock.Sleep(100);
        world_.clock.DoEvents();
        EXPECT_TRUE(Keys({NamedKey(leave ? "ENTER" : "ESC")}));
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(browser_.document().url(), world_.server.Url(leave ? "/next" : "/"));
    }
}

TEST_F(PageDialogs, WithTextThatIsNoneAreStillSeen) {
    Open("<button id=b type=button onclick=\"alert('\\ud800'); log('done')\">x</button>");
    EXPECT_TRUE(Find("b").click());
    EXPECT_TRUE(browser_.Busy());
    EXPECT_TRUE(Keys({NamedKey("ENTER")}));
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(Log(), "done");
}

}  // namespace
}  // namespace tamrin::test
