#include <algorithm>

#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using Quit = Suite;

TEST_F(Quit, LeavesEverythingEmptyAtOnce) {
    const auto window = NewWindow();
    ASSERT_TRUE(window);
    EventLog events;
    const auto connection = window->Connect(events);
    EXPECT_TRUE(window->Navigate(Url(Serve("<input id=a value=v><iframe srcdoc=x></iframe>"))));
    ASSERT_TRUE(WaitComplete(*window));
    const Document document = window->document();
    const Element element = document.Named("a").by_id;
    EXPECT_TRUE(window->Alive());

    window->Quit();
    EXPECT_TRUE(Wait([&] { return events.Has("OnQuit"); }));
    const std::uint32_t start = clock().TickCount();
    EXPECT_FALSE(window->Alive() || window->Busy() || window->Navigate(Url("/echo")));
    EXPECT_FALSE(window->document());
    EXPECT_EQ(document.url() + element.innerText(), "");
    EXPECT_FALSE(document.Named("a").by_id || element.click() || element.Put("value", "x"));
    EXPECT_TRUE(document.frames().empty());
    EXPECT_FALSE(window->ElementScreenPoint(element));
    window->SetForeground();
    window->SetPlace({.left = 0, .top = 0, .width = 300, .height = 200});
    window->SetVisible(true);
    window->Quit();
    Pump();
    EXPECT_EQ(std::count(events.lines.begin(), events.lines.end(), "OnQuit"), 1);
    EXPECT_LT(clock().TickCount() - start, 2000U);  // None of it waited for an answer.
    EXPECT_TRUE(browser().Alive());
}

using Create = Suite;

TEST_F(Create, OpensEmptyWindowsThatWorkSideBySide) {
    const auto window = NewWindow();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->Alive());
    EXPECT_TRUE(WaitComplete(*window));
    EXPECT_TRUE(window->document());
    EXPECT_EQ(window->document().links().size(), 0U);

    Open("<input id=a value=shared>");
    EventLog events;
    EventLog shared_events;
    const auto connection = window->Connect(events);
    const auto shared_connection = browser().Connect(shared_events);
    EXPECT_TRUE(window->Navigate(Url(Serve("<input id=a>"))));
    EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete top"); }));
    ASSERT_TRUE(WaitComplete(*window));
    EXPECT_TRUE(window->document().Named("a").by_id.Put("value", "own"));
    EXPECT_EQ(Find("a").value(), "shared");
    window->Quit();
    EXPECT_TRUE(Wait([&] { return events.Has("OnQuit"); }));
    EXPECT_EQ(shared_events.lines, std::vector<std::string>());
}

TEST_F(Create, LeadsTheKeysToTheWindowMadeOrBroughtToTheFrontLast) {
    const std::string page = Serve("<input id=a autofocus>");
    const auto other = NewWindow();
    ASSERT_TRUE(other);
    for (Browser* window : {&browser(), other.get()}) {
        EXPECT_TRUE(window->Navigate(Url(page)));
        ASSERT_TRUE(Wait([&] { return window->document().activeElement().id() == "a"; }));
    }
    EXPECT_TRUE(Type("o"));
    browser().SetForeground();
    EXPECT_TRUE(Type("t"));
    EXPECT_TRUE(Wait([&] { return Find("a").value() == "t"; }));
    EXPECT_EQ(other->document().Named("a").by_id.value(), "o");
    other->SetForeground();
    EXPECT_TRUE(input().SendKeys({{.text = "", .name = "F4", .alt = true}}));
    EXPECT_TRUE(Wait([&] { return !other->Alive(); }));
    EXPECT_FALSE(Type("x"));
}

}  // namespace
}  // namespace tamrin::conformance
