#include "chromium/chromium_fixture.h"

#include <atomic>

namespace tamrin::test {
namespace {

// One record's click: the event is fired first and the click follows, by the element's own method
// or by the mouse. The page must see what one person's click shows it.
class Click : public ChromiumTest, public ::testing::WithParamInterface<bool> {
protected:
    void ClickAsOneRecord(const Element& element) {
        EXPECT_TRUE(element.fireEvent("onclick"));
        if (!GetParam()) {
            EXPECT_TRUE(element.click());
            return;
        }
        element.scrollIntoView();
        const auto corner = browser_.ElementScreenPoint(element);
        ASSERT_TRUE(corner);
        launcher_.input().SetCursorPos({corner->x + 10, corner->y + 10});
        launcher_.input().LeftButton(true);
        launcher_.input().LeftButton(false);
    }
};

TEST_P(Click, RunsEveryHandlerOnce) {
    Open(
        "<div id=box><button id=b type=button onclick=\"log('inline')\"><b>press me</b></button>"
        "</div><script>for (const [name, node] of Object.entries({window, document, box, b}))"
        "  node.addEventListener('click', () => log(name));"
        "window.addEventListener('click', () => log('capture'), true);</script>");
    ClickAsOneRecord(Find("b"));
    EXPECT_EQ(Log(), "capture inline b box document window");

    // The next record is another click.
    ClickAsOneRecord(Find("b"));
    EXPECT_EQ(Log(), "capture inline b box document window capture inline b box document window");
}

TEST_P(Click, DoesTheBrowsersOwnActionOnceUnlessTheHandlersRefuse) {
    const struct {
        const char* what;
        const char* handler;
        const char* expected;
    } rows[] = {
        {"lets go", "log('run')", "run submit"},
        {"refuses by its answer", "log('run'); return false", "run"},
        {"refuses", "log('run'); event.preventDefault()", "run"},
        {"keeps it from those around", "log('run'); event.stopPropagation()", "run submit"},
        {"keeps it from its neighbours", "log('run'); event.stopImmediatePropagation()",
         "run submit"},
        {"keeps it and refuses", "log('run'); event.stopImmediatePropagation(); return false",
         "run"},
        {"throws", "log('run'); throw 1", "run submit"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Open("<form onsubmit=\"log('submit'); return false\"><button id=b onclick=\"" +
             std::string(row.handler) + "\">send this</button></form>");
        ClickAsOneRecord(Find("b"));
        EXPECT_EQ(Log(), row.expected);
    }
}

TEST_P(Click, FollowsALinkOnceAndIsBusyAtOnce) {
    std::atomic<int> visits = 0;
    Serve([&](const WebRequest& request) {
        if (request.path == "/next") ++visits;
        return WebReply{.body = Page("<a id=a href=/next onclick=\"log('run')\">go there</a>")};
    });
    OpenUrl(world_.server.Url("/"));
    ClickAsOneRecord(Find("a"));
    EXPECT_TRUE(browser_.Busy());
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser_.document().url(), world_.server.Url("/next"));
    EXPECT_EQ(visits, 1);
    Serve("");
}

TEST_P(Click, OnABoxTogglesItOnce) {
    Open("<input type=checkbox id=c onclick=\"log('click')\" onchange=\"log(this.checked)\">");
    ClickAsOneRecord(Find("c"));
    EXPECT_EQ(Log(), "click true");
    EXPECT_EQ(Find("c").checked(), "True");
}

// A click elsewhere, or in a later record, is a click of its own.
TEST_P(Click, MutesNoOtherClick) {
    Open(
        "<button id=a type=button onclick=\"log('a')\">first one</button>"
        "<button id=b type=button onclick=\"log('b')\">other one</button>");
    EXPECT_TRUE(Find("a").fireEvent("onclick"));
    const Element other = Find("b");
    EXPECT_TRUE(other.click());
    EXPECT_TRUE(Find("a").click());
    EXPECT_EQ(Log(), "a b a");
}

INSTANTIATE_TEST_SUITE_P(By, Click, ::testing::Bool(),
                         [](const auto& by) { return by.param ? "TheMouse" : "ItsMethod"; });

class TargetBlank : public ChromiumTest {};

TEST_F(TargetBlank, LeavesTheBrowserWithItsPage) {
    for (const char* html :
         {"<a id=a href=/new target=_blank>open it</a>",
          "<button id=a type=button onclick=\"log(!!open('/new', '', 'popup'))\">open</button>"}) {
        std::atomic<bool> opened = false;
        Serve([&](const WebRequest& request) {
            if (request.path == "/new") opened = true;
            return WebReply{.body = Page(html)};
        });
        OpenUrl(world_.server.Url("/"));
        EXPECT_TRUE(Find("a").click());
        EXPECT_TRUE(Wait([&] { return opened.load(); }));
        EXPECT_TRUE(WaitComplete());
        EXPECT_TRUE(browser_.Alive());
        EXPECT_EQ(browser_.document().url(), world_.server.Url("/"));
        EXPECT_EQ(Find("a").id(), "a");
        Serve("");
    }
}

}  // namespace
}  // namespace tamrin::test
