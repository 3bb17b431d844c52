#include "conformance/suite.h"
#include "support/temporary_folder.h"

namespace tamrin::conformance {
namespace {

using Strings = std::vector<std::string>;
using Navigate = Suite;

TEST_F(Navigate, IsBusyFromTheCallUntilThePageAndItsPicturesAreThere) {
    const std::string picture = Serve(WebReply{.content_type = "image/png", .delay_ms = 300});
    const std::string page =
        Serve(WebReply{.body = "<p id=p>ok</p><img src=" + picture + ">", .delay_ms = 100});
    Open("");
    EXPECT_TRUE(browser().Navigate(Url(page)));
    EXPECT_TRUE(browser().Busy());
    EXPECT_EQ(browser().ReadyState(), 1);
    Pump();
    EXPECT_TRUE(browser().Busy());
    EXPECT_TRUE(Wait([&] { return browser().ReadyState() == 3; }));
    EXPECT_TRUE(browser().Busy());
    EXPECT_EQ(Find("p").innerText(), "ok");
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser().document().url(), Url(page));
}

TEST_F(Navigate, IsCompleteAgainWhenNoPageComes) {
    const std::string nothing = Serve(WebReply{.status = 204, .delay_ms = 30});
    const Document document = Open("<p id=p>文</p><a id=a href=" + nothing + ">無</a>");
    const Element kept = Find("p");
    EventLog events;
    const auto connection = browser().Connect(events);
    EXPECT_TRUE(browser().Navigate(Url(nothing)));
    EXPECT_TRUE(WaitComplete());
    EXPECT_TRUE(Find("a").click());
    Pump();
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(events.lines, Strings(2, "BeforeNavigate2 " + Url(nothing)));
    EXPECT_EQ(browser().document().url(), document.url());
    EXPECT_EQ(kept.innerText(), "文");
}

TEST_F(Navigate, KeepsThePageWhenOnlyTheFragmentChanges) {
    const Document document = Open(
        "<p id=p>文</p><a id=a href=#two>二</a><input type=button id=b"
        " onclick=\"history.pushState(0, '', '?three')\">");
    const std::string url = document.url();
    const Element kept = Find("p");
    EventLog events;
    const auto connection = browser().Connect(events);
    EXPECT_TRUE(browser().Navigate(url + "#one"));
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser().document().url(), url + "#one");
    EXPECT_TRUE(Find("a").click());
    EXPECT_TRUE(Wait([&] { return document.url() == url + "#two"; }));
    EXPECT_TRUE(Find("b").click());
    EXPECT_TRUE(Wait([&] { return browser().document().url() == url + "?three"; }));
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(events.lines, Strings());
    EXPECT_EQ(kept.innerText(), "文");
    EXPECT_EQ(kept, Find("p"));
}

TEST_F(Navigate, TakesAddressesAsAUserWritesThem) {
    const std::string path = Serve("<p id=p>文");
    const std::string host = Url("").substr(std::string("http://").size());
    GoTo(host + path);
    EXPECT_EQ(browser().document().url(), Url(path));
    GoTo("  " + Url(path) + "#x ");
    EXPECT_EQ(browser().document().url(), Url(path) + "#x");
    EXPECT_TRUE(browser().Navigate("javascript:void(say('評' + 1))"));
    EXPECT_EQ(Said("評1"), "評1");
    EXPECT_TRUE(WaitComplete());
    GoTo("about:blank");
    EXPECT_EQ(browser().document().url(), "about:blank");
    const TemporaryFolder folder;
    GoTo(folder.Write("一行 1%.html", "<meta charset=utf-8><pre>一行"));
    EXPECT_EQ(browser().document().getElementsByTagName("pre").at(0).innerText(), "一行");
}

TEST_F(Navigate, FollowsRedirectsAndScripts) {
    const std::string end = Serve("<p id=end>終");
    const std::string second = Serve(WebReply{.status = 303, .location = end});
    const std::string first = Serve(WebReply{.status = 302, .location = OtherUrl(second)});
    const std::string by_script = Serve("<script>location = '" + Url(end) + "'</script>");
    const std::string by_meta = Serve("<meta http-equiv=refresh content='0;url=" + Url(end) + "'>");
    const std::string later =
        Serve("<script>setTimeout(() => location = '" + Url(end) + "', 100)</script>");
    for (const std::string& start : {first, by_script, by_meta, later}) {
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
    EXPECT_EQ(document.url(), "");
    EXPECT_FALSE(document.Named("a").by_id || document.activeElement() || document.hasFocus());
    EXPECT_TRUE(document.getElementsByTagName("*").empty() && document.links().empty());
    EXPECT_TRUE(document.frames().empty());
    EXPECT_FALSE(old.Put("value", "x") || old.click() || old.fireEvent("onchange"));
    EXPECT_FALSE(old.parentElement() || old.form() || old.getBoundingClientRect());
    EXPECT_EQ(old.innerText() + old.checked(), "");
    old.scrollIntoView();
    EXPECT_FALSE(browser().ElementScreenPoint(old));
    EXPECT_FALSE(old == Find("a"));
    EXPECT_EQ(Find("a").value(), "new");
}

TEST_F(Navigate, ReportsPagesThatCannotBeOpened) {
    EventLog events;
    const auto connection = browser().Connect(events);
    const std::string dead = DeadUrl();
    EXPECT_TRUE(browser().Navigate(dead));
    EXPECT_TRUE(Wait([&] { return events.Has("NavigateError " + dead); }));
    EXPECT_TRUE(WaitComplete());
    EXPECT_TRUE(browser().Alive());
    Open("<p id=p>文");
    EXPECT_EQ(Find("p").innerText(), "文");
}

using Connect = Suite;

TEST_F(Connect, TellsOfANavigationInOrder) {
    const std::string inner = Serve("中");
    const std::string page = Serve("<iframe src=" + OtherUrl(inner) + "></iframe>");
    Open("<a id=a href=" + page + ">次</a>");
    EventLog events;
    auto connection = browser().Connect(events);
    const Strings expected = {"BeforeNavigate2 " + Url(page), "DocumentComplete frame",
                              "DocumentComplete top"};
    for (const bool by_link : {false, true}) {
        if (by_link) Open("<a id=a href=" + page + ">次</a>");
        events.lines.clear();
        EXPECT_TRUE(by_link ? Find("a").click() : browser().Navigate(Url(page)));
        EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
        EXPECT_TRUE(WaitComplete());
        Pump();
        std::erase(events.lines, "BeforeNavigate2 " + OtherUrl(inner));
        EXPECT_EQ(events.lines, expected) << (by_link ? "by a link" : "by Navigate");
    }
    connection.reset();
    GoTo(Url(page));
    EXPECT_EQ(events.lines, expected);
}

TEST_F(Connect, TellsOnlyInsideDoEvents) {
    Open("<p id=p>文");
    EventLog events;
    const auto connection = browser().Connect(events);
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
