#include <algorithm>

#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

// Writes down what the browser tells, in order.
class Journal : public BrowserEvents {
public:
    void DocumentComplete(bool top) override { Add(top ? "complete" : "frame complete"); }
    void BeforeNavigate2(const std::string& url) override { Add("before " + Path(url)); }
    void NavigateError(const std::string& url, const std::string& reason) override {
        Add("error " + Path(url) + " " + reason);
    }
    void OnQuit() override { Add("quit"); }

    std::vector<std::string> lines;

private:
    void Add(const std::string& line) { lines.push_back(line); }
    static std::string Path(const std::string& url) {
        const auto slash = url.find('/', std::min(url.find("//"), url.size() - 2) + 2);
        return slash == std::string::npos ? url : url.substr(slash);
    }
};

class Loading : public ChromiumTest {
protected:
    // Runs a script of the page, as a handler of a button.
    void Press(const std::string& id) { EXPECT_TRUE(Find(id).click()); }

    void ServeSite() {
        Serve([](const WebRequest& request) {
            if (request.path == "/slow") return WebReply{.body = Page("slow"), .delay_ms = 300};
            if (request.path == "/empty") return WebReply{.status = 204};
            if (request.path == "/from") return WebReply{.status = 302, .location = "/to"};
            if (request.path == "/frame") {
                return WebReply{.body = Page("<iframe src=/slow></iframe>")};
            }
            return WebReply{
                .body = Page(
                    "<a id=slow href=/slow>slow</a> <a id=empty href=/empty>empty</a>"
                    "<a id=hash href='#below'>hash</a> <a id=from href=/from>from</a>"
                    "<button id=push type=button onclick=\"history.pushState(0, '', '/pushed')\">"
                    "</button><button id=late type=button "
                    "onclick=\"setTimeout(() => location = '/slow', 100)\"></button>"
                    "<form method=post action=/slow><button id=post></button></form>")};
        });
    }

    ~Loading() override { Serve(""); }
};

TEST_F(Loading, IsBusyFromTheActUntilThePageIsComplete) {
    const struct {
        const char* id;
        const char* url;
        std::vector<std::string> told;
        bool busy;  // right after the act
    } rows[] = {
        {"slow", "/slow", {"before /slow", "complete"}, true},
        {"post", "/slow", {"before /slow", "complete"}, true},
        {"from", "/to", {"before /from", "complete"}, true},
        {"empty", "/", {"before /empty"}, true},
        {"hash", "/#below", {}, false},
        {"push", "/pushed", {}, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.id);
        ServeSite();
        OpenUrl(world_.server.Url("/"));
        Journal journal;
        const auto connection = browser_.Connect(journal);
        Press(row.id);
        EXPECT_EQ(browser_.Busy(), row.busy);
        const std::vector<std::string> nothing;
        EXPECT_EQ(journal.lines, nothing) << "told outside DoEvents";
        EXPECT_TRUE(WaitComplete());
        world_.clock.DoEvents();
        EXPECT_EQ(browser_.document().url(), world_.server.Url(row.url));
        EXPECT_EQ(journal.lines, row.told);
    }
}

TEST_F(Loading, LeavesNothingOfTheOldPage) {
    ServeSite();
    OpenUrl(world_.server.Url("/"));
    const Document page = browser_.document();
    const Element old = Find("slow");
    EXPECT_EQ(old.id(), "slow");
    ASSERT_TRUE(browser_.Navigate(world_.server.Url("/slow")));
    EXPECT_TRUE(browser_.Busy());
    EXPECT_EQ(browser_.ReadyState(), 1);
    EXPECT_TRUE(WaitComplete());
    const auto trips = launcher_.RoundTrips();
    EXPECT_EQ(old.id(), "");
    EXPECT_FALSE(old.getAttribute("href"));
    EXPECT_FALSE(old.click());
    EXPECT_FALSE(old.Put("value", "x"));
    EXPECT_EQ(page.url(), "");
    EXPECT_TRUE(page.getElementsByTagName("*").empty());
    EXPECT_EQ(launcher_.RoundTrips(), trips);
}

TEST_F(Loading, OfAFrameKeepsTheTabBusy) {
    ServeSite();
    OpenUrl(world_.server.Url("/frame"));
    const auto frames = browser_.document().frames();
    ASSERT_EQ(frames.size(), 1U);
    EXPECT_TRUE(browser_.Navigate("javascript:void(frames[0].location = '/slow?again')"));
    EXPECT_TRUE(Wait([&] { return browser_.Busy(); }));
    EXPECT_TRUE(WaitComplete());
    const auto again = browser_.document().frames();
    ASSERT_EQ(again.size(), 1U);
    EXPECT_EQ(again[0].document.url(), world_.server.Url("/slow?again"));
}

TEST_F(Loading, StartedByThePageLaterIsSeenWhenItBegins) {
    ServeSite();
    OpenUrl(world_.server.Url("/"));
    Press("late");
    EXPECT_FALSE(browser_.Busy());
    EXPECT_TRUE(Wait([&] { return browser_.Busy(); }));
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser_.document().url(), world_.server.Url("/slow"));
}

TEST_F(Loading, ThatFailsTellsTheReason) {
    Open("");
    const struct {
        std::string address;
        std::vector<std::string> told;
    } rows[] = {
        {"127.0.0.1:1/none", {"before /none", "error /none ERR_UNSAFE_PORT", "complete"}},
        {"/no/such/file",
         {"before /no/such/file", "error /no/such/file ERR_FILE_NOT_FOUND", "complete"}},
        {"http://[bad/", {"error / ERR_INVALID_URL"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.address);
        Journal journal;
        const auto connection = browser_.Connect(journal);
        EXPECT_TRUE(browser_.Navigate(row.address));
        EXPECT_TRUE(browser_.Busy());
        EXPECT_TRUE(WaitComplete());
        EXPECT_TRUE(Wait([&] { return journal.lines.size() == row.told.size(); }));
        EXPECT_EQ(journal.lines, row.told);
    }
}

TEST_F(Loading, TellsOnlyThoseWhoAreStillConnected) {
    Open("");
    Journal first;
    Journal second;
    auto connection = browser_.Connect(first);
    const auto other = browser_.Connect(second);
    connection.reset();
    OpenUrl(world_.server.Url("/other"));
    EXPECT_TRUE(first.lines.empty());
    EXPECT_EQ(second.lines, (std::vector<std::string>{"before /other", "complete"}));
}

}  // namespace
}  // namespace tamrin::test
