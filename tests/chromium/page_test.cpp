#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

using Loading = ChromiumTest;

// A player that acts again must not meet the page that its last act is sending away.
TEST_F(Loading, IsKnownWhenTheActThatBeginsItReturns) {
    const struct {
        std::string_view html;  // the element acted on has the id k
        char act;               // a click, the mouse or the Enter key
        bool loads;
    } rows[] = {
        {"<a id=k href=/echo>次の頁</a>", 'c', true},
        {"<a id=k href=/echo onclick=say(1)>次の頁</a>", 'm', true},
        {"<form action=/echo><input id=k autofocus></form>", 'e', true},
        {"<form action=/echo method=post><button id=k>送</button></form>", 'c', true},
        {"<a id=k href='#below'>下へ</a>", 'c', false},
        {"<button id=k onclick=\"history.pushState(0, '', '/pushed')\">b</button>", 'c', false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.html);
        Open(row.html);
        const Element element = Find("k");
        if (row.act == 'e') {
            EXPECT_TRUE(WaitFocus("k"));
            EXPECT_TRUE(Press("ENTER"));
        } else if (row.act == 'm') {
            MouseClick(element);
        } else {
            EXPECT_TRUE(element.fireEvent("onclick"));
            EXPECT_TRUE(element.click());
        }
        // On a slow machine the next page may be there before the program runs again.
        const auto arrived = [&] { return browser().document().url().starts_with(Url("/echo")); };
        EXPECT_EQ(browser().Busy() || arrived(), row.loads);
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(arrived(), row.loads);
    }
}

TEST_F(Loading, TellsTheBrowsersWordForWhatFails) {
    class Errors : public conformance::EventLog {
    public:
        using EventLog::EventLog;
        void DocumentComplete(bool /*top*/) override {}
        void BeforeNavigate2(const std::string& /*url*/) override {}
        void NavigateError(const std::string& url, const std::string& reason) override {
            lines.push_back(url + " " + reason);
        }
    };
    const std::pair<std::string, std::string> rows[] = {
        {"127.0.0.1:1/none", "http://127.0.0.1:1/none ERR_UNSAFE_PORT"},
        {"/no/such file", "file:///no/such%20file ERR_FILE_NOT_FOUND"},
        {"http://[bad/", "http://[bad/ ERR_INVALID_URL"},
    };
    for (const auto& [address, told] : rows) {
        Errors errors(browser());
        EXPECT_TRUE(browser().Navigate(address));
        EXPECT_TRUE(browser().Busy());
        EXPECT_TRUE(WaitComplete());
        ExpectLines(errors, told);
    }
}

using Lookup = ChromiumTest;

TEST_F(Lookup, BringsStateAndPlaceAndSparesCalls) {
    const Document document = Open("<input name=n type=checkbox checked><input name=n value=1>");
    const auto start = rig().RoundTrips();
    const auto trips = [&] { return rig().RoundTrips() - start; };
    const auto fields = document.Named("n").by_name;
    ASSERT_EQ(fields.size(), 2U);
    EXPECT_EQ(fields[0].checked(), "True");
    EXPECT_TRUE(browser().ElementScreenPoint(fields[0]));
    EXPECT_EQ(trips(), 1U);
    EXPECT_TRUE(fields[0].Put("checked", "False"));
    EXPECT_EQ(fields[1].value(), "1");
    EXPECT_EQ(trips(), 2U) << "another element's keys still hold";
    Open("");
    const auto gone = trips();
    EXPECT_FALSE(fields[0].click() || fields[1].getAttribute("alt"));
    EXPECT_TRUE(document.getElementsByTagName("*").empty());
    EXPECT_EQ(trips(), gone) << "a page that is gone is not asked";
}

using PageDialogs = ChromiumTest;

// A record fires onclick, whose handler asks, and clicks meanwhile; the next record answers.
TEST_F(PageDialogs, HoldTheClickOfTheSameRecordUntilTheyAreAnswered) {
    for (const bool yes : {true, false}) {
        Open(
            "<form onsubmit=\"say('submit'); return false\">"
            "<button id=b onclick=\"say('ask'); return confirm(1)\">send</button></form>");
        const Element button = Find("b");
        EXPECT_TRUE(button.fireEvent("onclick"));
        EXPECT_TRUE(browser().Busy());
        button.scrollIntoView();
        EXPECT_FALSE(browser().ElementScreenPoint(button));
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(Press(yes ? "ENTER" : "ESC"));
        EXPECT_TRUE(WaitComplete());
        ExpectSaid(yes ? "ask submit" : "ask");
    }
}

TEST_F(PageDialogs, MayFollowEachOtherAndTheKeysGoOnInThePage) {
    Open(
        "<input id=t autofocus onkeydown=\"if (event.key == 'Enter') say(confirm(1) && confirm(2))"
        "\">");
    ASSERT_TRUE(WaitFocus("t"));
    EXPECT_TRUE(input().SendKeys(
        {Key("F2"), Key("ENTER"), Key("ENTER"), Key("ENTER"), {.text = "c", .name = ""}}));
    EXPECT_TRUE(WaitComplete());
    ExpectSaid("true");
    EXPECT_EQ(Find("t").value(), "c");
}

}  // namespace
}  // namespace tamrin::test
