#include "conformance/suite.h"
#include "support/temporary_folder.h"

namespace tamrin::conformance {
namespace {

using Navigate = Suite;

TEST_F(Navigate, IsBusyFromTheCallUntilThePageAndItsPicturesAreThere) {
    const std::string picture = Serve(WebReply{.content_type = "image/png", .delay_ms = 300});
    const std::string page =
        Url(Serve(WebReply{.body = "<p id=p>ok</p><img src=" + picture + ">", .delay_ms = 100}));
    Open("");
    EXPECT_TRUE(browser().Navigate(page));
    EXPECT_TRUE(browser().Busy());
    EXPECT_EQ(browser().ReadyState(), 1);
    Pump();
    EXPECT_TRUE(browser().Busy());
    EXPECT_TRUE(Wait([&] { return browser().ReadyState() == 3; }));
    EXPECT_TRUE(browser().Busy());
    EXPECT_EQ(Find("p").innerText(), "ok");
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser().document().url(), page);
}

TEST_F(Navigate, IsCompleteAgainWhenNoPageComes) {
    const std::string nothing = Serve(WebReply{.status = 204, .delay_ms = 30});
    const Document document = Open("<p id=p>文</p><a id=a href=" + nothing + ">無</a>");
    const Element kept = Find("p");
    EventLog events(browser());
    EXPECT_TRUE(browser().Navigate(Url(nothing)));
    EXPECT_TRUE(WaitComplete());
    EXPECT_TRUE(Find("a").click());
    const std::string begins = "BeforeNavigate2 " + Url(nothing);
    ExpectLines(events, begins + ", " + begins);
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser().document().url() + kept.innerText(), document.url() + "文");
}

TEST_F(Navigate, KeepsThePageWhenOnlyTheFragmentChanges) {
    const Document document = Open(
        "<p id=p>文</p><a id=a href=#two>二</a><input type=button id=b"
        " onclick=\"history.pushState(0, '', '?three')\">");
    const std::string url = document.url();
    const Element kept = Find("p");
    EventLog events(browser());
    EXPECT_TRUE(browser().Navigate(url + "#one"));
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser().document().url(), url + "#one");
    for (const auto& [id, after] : {std::pair("a", "#two"), std::pair("b", "?three")}) {
        EXPECT_TRUE(Find(id).click());
        EXPECT_TRUE(Wait([&] { return document.url() == url + after; })) << after;
    }
    EXPECT_TRUE(WaitComplete());
    ExpectLines(events, "");
    EXPECT_EQ(kept, Find("p"));
}

TEST_F(Navigate, TakesAddressesAsAUserWritesThem) {
    const std::string path = Serve("<p id=p>文");
    const TemporaryFolder folder;
    const std::string file = folder.Write("一行 1%.html", "<meta charset=utf-8><p id=p>一行");
    const std::pair<std::string, std::string> rows[] = {
        {Url(path).substr(std::string("http://").size()), Url(path)},
        {"  " + Url(path) + "#x ", Url(path) + "#x"},
        {"about:blank", "about:blank"},
        {file, "file://" + folder.path() + "/%E4%B8%80%E8%A1%8C%201%25.html"},
    };
    for (const auto& [written, url] : rows) EXPECT_EQ(GoTo(written).url(), url) << written;
    EXPECT_EQ(Find("p").innerText(), "一行");
    Open("");
    EXPECT_TRUE(browser().Navigate("javascript:void(say('評' + 1))"));
    ExpectSaid("評1");
    EXPECT_TRUE(WaitComplete());
}

TEST_F(Navigate, FollowsRedirectsAndScripts) {
    const std::string end = Serve("<p id=end>終");
    const std::string second = Serve(WebReply{.status = 303, .location = end});
    const std::string starts[] = {
        Serve(WebReply{.status = 302, .location = OtherUrl(second)}),
        Serve("<script>location = '" + Url(end) + "'</script>"),
        Serve("<meta http-equiv=refresh content='0;url=" + Url(end) + "'>"),
        Serve("<script>setTimeout(() => location = '" + Url(end) + "', 100)</script>"),
    };
    for (const std::string& start : starts) {
        Open("");
        EXPECT_TRUE(browser().Navigate(Url(start)));
        EXPECT_TRUE(Wait([&] { return browser().document().url().ends_with(end); })) << start;
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(Find("end").innerText(), "終");
    }
}

TEST_F(Navigate, LeadsToTheLastAddressAsked) {
    const std::string slow = Serve(WebReply{.body = "<p id=slow>", .delay_ms = 200});
    const std::string quick = Serve("<p id=quick>");
    EXPECT_TRUE(browser().Navigate(Url(slow)));
    EXPECT_TRUE(browser().Navigate(Url(quick)));
    EXPECT_TRUE(Wait([&] { return browser().document().url() == Url(quick); }));
    EXPECT_TRUE(WaitComplete());
    EXPECT_TRUE(Find("quick"));
}

TEST_F(Navigate, LeavesOldPagesEmpty) {
    const Document document = Open("<form><input id=a value=v></form><iframe srcdoc=x></iframe>");
    const Element old = Find("a");
    Open("<form><input id=a value=new></form>");
    EXPECT_EQ(StillAnswers(document) + StillAnswers(old), "");
    EXPECT_FALSE(old == Find("a"));
    EXPECT_EQ(Find("a").value(), "new");
}

TEST_F(Navigate, ReportsPagesThatCannotBeOpened) {
    EventLog events(browser());
    const std::string dead = DeadUrl();
    EXPECT_TRUE(browser().Navigate(dead));
    EXPECT_TRUE(Wait([&] { return events.Has("NavigateError " + dead); }));
    EXPECT_TRUE(WaitComplete() && browser().Alive());
    Open("<p id=p>文");
    EXPECT_EQ(Find("p").innerText(), "文");
}

using Connect = Suite;

TEST_F(Connect, TellsOfANavigationInOrder) {
    const std::string inner = Serve("中");
    const std::string page = Serve("<iframe src=" + OtherUrl(inner) + "></iframe>");
    for (const bool by_link : {false, true}) {
        Open("<a id=a href=" + page + ">次</a>");
        EventLog events(browser());
        EXPECT_TRUE(by_link ? Find("a").click() : browser().Navigate(Url(page)));
        EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
        EXPECT_TRUE(WaitComplete());
        std::erase(events.lines, "BeforeNavigate2 " + OtherUrl(inner));
        ExpectLines(events, "BeforeNavigate2 " + Url(page) +
                                ", DocumentComplete frame, DocumentComplete top");
        events.Disconnect();
        GoTo(Url(page));
        EXPECT_EQ(events.lines, Strings());
    }
}

TEST_F(Connect, TellsOnlyInsideDoEvents) {
    Open("<p id=p>文");
    EventLog events(browser());
    EXPECT_TRUE(browser().Navigate(Url(Serve("<p id=p>次"))));
    for (int i = 0; i < 5; ++i) {
        clock().Sleep(10);
        browser().document().Named("p");
        browser().document().url();
    }
    EXPECT_EQ(events.lines, Strings());
    EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
}

}  // namespace
}  // namespace tamrin::conformance
