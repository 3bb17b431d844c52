// How windows, their pages and the frames of those come and go.

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
}

TEST_F(Navigate, TakesAddressesAsAUserWritesThem) {
    const std::string path = Serve("<p id=p>文");
    const TemporaryFolder folder;
    const std::string file = folder.Write("一行 1%.html", "<meta charset=utf-8><p id=p>一行");
    const std::pair<std::string, std::string> rows[] = {
        {Url(path).substr(std::string("http://").size()), Url(path)},
        {"  " + Url(path) + "#x ", Url(path) + "#x"},
        {file, "file://" + folder.path() + "/%E4%B8%80%E8%A1%8C%201%25.html"},
    };
    for (const auto& [written, url] : rows) EXPECT_EQ(GoTo(written).url(), url) << written;
    EXPECT_EQ(Find("p").innerText(), "一行");
}

TEST_F(Navigate, FollowsTheUserThePageAndItsScripts) {
    const std::string second = Serve(WebReply{.status = 303, .location = Url("/echo?end")});
    const std::string first = Serve(WebReply{.status = 302, .location = OtherUrl(second)});
    const std::string slow = Url(Serve(WebReply{.delay_ms = 200}));
    const std::string nothing = Url(Serve(WebReply{.status = 204, .delay_ms = 30}));
    Check({
        {"", "go:" + slow + " go:" + Url("/echo?quick"), "GET quick"},
        {"<p id=p>文</p><a id=a href=" + nothing + ">無</a>",
         "find:p go:" + nothing + " done click:a done is:p:innerText", "|文",
         "navigate , navigate "},
        {"", "go:" + Url(first), "GET end"},
        {"<script>location = '/echo?1'</script>", "", "GET 1"},
        {"<script>setTimeout(() => location = '/echo?2', 100)</script>", "", "GET 2"},
        {"", "go:javascript:say('評'+1) done", "評1"},
        // Only the address changes, and not the page.
        {"<p id=p>文</p><a id=a href=#two>二</a><input type=button id=b"
         " onclick=\"history.pushState(0, '', '?three')\">",
         "find:p click:a click:b done is:p:innerText", "|文", "none"},
    });
}

TEST_F(Navigate, LeavesOldPagesEmpty) {
    const Document document = Open("<form><input id=a value=v></form><iframe srcdoc=x></iframe>");
    const Element old = Find("a");
    Open("<form><input id=a value=new></form>");
    EXPECT_EQ(StillAnswers(document) + StillAnswers(old), 0);
    EXPECT_FALSE(old == Find("a"));
    EXPECT_EQ(Find("a").value(), "new");
}

using Connect = Suite;

TEST_F(Connect, TellsOfANavigationInOrderAndOnlyInsideDoEvents) {
    const std::string inner = OtherUrl(Serve("中"));
    const std::string page = Url(Serve("<iframe src=" + inner + "></iframe>"));
    for (const bool by_link : {false, true}) {
        Open("<a id=a href=" + page + ">次</a>");
        EventLog events(browser());
        EXPECT_TRUE(by_link ? Find("a").click() : browser().Navigate(page));
        for (int i = 0; i < 5; ++i) {
            clock().Sleep(10);
            browser().document().Named("p");
        }
        EXPECT_EQ(events.lines, Strings());
        EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
        ExpectLines(events,
                    "BeforeNavigate2 " + page + ", DocumentComplete frame, DocumentComplete top");
        events.connection.reset();
        GoTo(page);
        EXPECT_EQ(events.lines, Strings());
    }
}

using Frames = Suite;

TEST_F(Frames, AreAnsweredInTheOrderOfThePage) {
    const std::string leaf = "<p id=p>中</p>";
    const auto inner = Origins(leaf);
    Check({
        {"<iframe name=n1 id=e1 src=$1></iframe><div><iframe id=e2 src=$2></iframe></div><iframe"
         " name=枠 id=e3 srcdoc='<p id=p>文'></iframe><iframe id=e4 name=n4></iframe><iframe"
         " name=dead src=http://127.0.0.1:1/></iframe><iframe name=n5 sandbox src=$1></iframe>",
         "frames is:p:id", "|n1|e1|中 e2|e2|中 枠|e3|文 n4|e4| dead|| n5||中|", "", leaf},
        {"<!doctype html><frameset cols=50%,50%><frame name=left src=$1><frame name=right src=$2>"
         "</frameset>",
         "frames", "|left||中 right||中", "", leaf},
        {"<iframe name=a src=$1></iframe><iframe name=b src=$2></iframe>", "frames",
         "|a||間[same|e1|中 other|e2|中] b||間[same|e1|中 other|e2|中]", "",
         "<p id=p>間</p><iframe name=same id=e1 src=" + inner[0] +
             "></iframe><iframe name=other id=e2 src=" + inner[1] + "></iframe>"},
    });
}

TEST_F(Frames, AreWrittenToLikePages) {
    // A lookup, wherever it is made, ends what was one click.
    Check({{"<iframe id=i src=$1></iframe>",
            "change:i/t:value=値 fire:i/b:onclick find:i click:i/b is:i/t:value", "値 1 1|値", "",
            "<input id=t onchange='say(value)'><input type=button id=b onclick=say(1)>"}});
}

TEST_F(Frames, FollowTheirOwnNavigationAndThePagesScripts) {
    const std::string next = Serve(WebReply{.body = "<p id=p>next</p>", .delay_ms = 300});
    const std::string page = "<p id=p>前</p><a id=a href=" + next + ">次</a>";
    Check({
        {"<iframe id=i src=$1></iframe>", "find:i/a click:i/a box done frames old:i/a",
         "|i|i|next|0", "DocumentComplete frame", page},
        {"<iframe id=i src=$1></iframe><input type=button id=b onclick=\"i.remove(); const f ="
         " document.createElement('iframe'); f.id = f.name = 'new'; f.src = '$2';"
         " document.body.append(f)\">",
         "find:i find:i/a click:b find:new/p frames old:i old:i/a", "|new|new|前|0|0", "", page},
    });
}

using Create = Suite;

TEST_F(Create, OpensEmptyWindowsThatWorkSideBySide) {
    const auto window = NewWindow();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->Alive() && WaitComplete(*window) && window->document());
    Open("<input id=a value=shared>");
    EventLog events(*window), shared_events(browser());
    EXPECT_TRUE(window->Navigate(Url(Serve("<input id=a value=v><iframe srcdoc=x></iframe>"))));
    ASSERT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
    const Document document = window->document();
    const Element element = document.Named("a").by_id;
    EXPECT_TRUE(element.Put("value", "own"));
    EXPECT_EQ(Find("a").value(), "shared");

    events.lines.clear();
    window->Quit();
    EXPECT_TRUE(Wait([&] { return events.Has("OnQuit"); }));
    const std::uint32_t start = clock().TickCount();
    EXPECT_FALSE(window->Alive() || window->Busy() || window->Navigate(Url("/echo")));
    EXPECT_FALSE(window->document() || window->ElementScreenPoint(element));
    EXPECT_EQ(StillAnswers(document) + StillAnswers(element), 0);
    window->SetForeground();
    window->SetPlace({.left = 0, .top = 0, .width = 300, .height = 200});
    window->Quit();
    ExpectLines(events, "OnQuit");
    EXPECT_LT(clock().TickCount() - start, 2000U);  // None of it waited for an answer.
    EXPECT_TRUE(browser().Alive());
    EXPECT_EQ(shared_events.lines, Strings());
}

}  // namespace
}  // namespace tamrin::conformance
