#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using Quit = Suite;

TEST_F(Quit, LeavesEverythingEmptyAtOnce) {
    const auto window = NewWindow();
    ASSERT_TRUE(window);
    EventLog events(*window);
    EXPECT_TRUE(window->Navigate(Url(Serve("<input id=a value=v><iframe srcdoc=x></iframe>"))));
    ASSERT_TRUE(WaitComplete(*window));
    const Document document = window->document();
    const Element element = document.Named("a").by_id;
    EXPECT_TRUE(window->Alive());

    events.lines.clear();
    window->Quit();
    EXPECT_TRUE(Wait([&] { return events.Has("OnQuit"); }));
    const std::uint32_t start = clock().TickCount();
    EXPECT_FALSE(window->Alive() || window->Busy() || window->Navigate(Url("/echo")));
    EXPECT_FALSE(window->document());
    EXPECT_EQ(StillAnswers(document) + StillAnswers(element), "");
    EXPECT_FALSE(window->ElementScreenPoint(element));
    window->SetForeground();
    window->SetPlace({.left = 0, .top = 0, .width = 300, .height = 200});
    window->SetVisible(true);
    window->Quit();
    ExpectLines(events, "OnQuit");
    EXPECT_LT(clock().TickCount() - start, 2000U);  // None of it waited for an answer.
    EXPECT_TRUE(browser().Alive());
}

using Create = Suite;

TEST_F(Create, OpensEmptyWindowsThatWorkSideBySide) {
    const auto window = NewWindow();
    ASSERT_TRUE(window);
    EXPECT_TRUE(window->Alive() && WaitComplete(*window) && window->document());
    EXPECT_EQ(window->document().links().size(), 0U);

    Open("<input id=a value=shared>");
    EventLog events(*window);
    EventLog shared_events(browser());
    const std::string page = Url(Serve("<input id=a>"));
    EXPECT_TRUE(window->Navigate(page));
    ExpectLines(events, "BeforeNavigate2 " + page + ", DocumentComplete top");
    EXPECT_TRUE(window->document().Named("a").by_id.Put("value", "own"));
    EXPECT_EQ(Find("a").value(), "shared");
    window->Quit();
    ExpectLines(events, "OnQuit");
    EXPECT_EQ(shared_events.lines, Strings());
}

TEST_F(Create, LeadsTheKeysToTheWindowMadeOrBroughtToTheFrontLast) {
    const std::string page = Serve("<input id=a autofocus>");
    const auto other = NewWindow();
    ASSERT_TRUE(other);
    for (Browser* window : {&browser(), other.get()}) {
        EXPECT_TRUE(window->Navigate(Url(page)));
        ASSERT_TRUE(Wait([&] { return window->document().activeElement().id() == "a"; }));
    }
    Do("o");
    browser().SetForeground();
    Do("t");
    EXPECT_TRUE(Wait([&] { return Find("a").value() == "t"; }));
    EXPECT_EQ(other->document().Named("a").by_id.value(), "o");
    other->SetForeground();
    Do("%{F4}");
    EXPECT_TRUE(Wait([&] { return !other->Alive(); }));
    EXPECT_FALSE(Type("x"));
}

}  // namespace
}  // namespace tamrin::conformance
