#include <algorithm>
#include <utility>

#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using Strings = std::vector<std::string>;

// Writes down what a user does in a page: the event, and the active element by its id and value.
class Listener : public DocumentEvents {
public:
    Listener(Document document, Strings& into)
        : into_(into), document_(std::move(document)), connection_(document_.Connect(*this)) {}

    void onclick() override { Note("click"); }
    void onfocusin() override { Note("focus"); }
    void onbeforedeactivate() override { Note("leave"); }
    void onkeypress(int /*key_code*/) override { Note("key"); }
    void onsubmit() override { Note("submit"); }

private:
    void Note(const std::string& event) {
        const Element active = document_.activeElement();
        into_.push_back(event + " " + active.id());
        if (!active.value().empty()) into_.back() += "=" + active.value();
    }

    Strings& into_;
    Document document_;
    std::unique_ptr<Connection> connection_;
};

// Listens to each page that the window shows, from the moment on when it is shown.
class Follower : public EventLog {
public:
    explicit Follower(Browser& browser) : browser_(browser), connection_(browser.Connect(*this)) {
        Follower::NavigateComplete2();
    }
    void NavigateComplete2() override {
        page_ = std::make_unique<Listener>(browser_.document(), told);
    }

    Strings told;

private:
    Browser& browser_;
    std::unique_ptr<Connection> connection_;
    std::unique_ptr<Listener> page_;
};

class Following : public Suite {
protected:
    // What is told, once as much as that has come and no more follows.
    void ExpectTold(Strings& told, const Strings& expected) {
        Wait([&] { return told.size() >= expected.size(); });
        for (int i = 0; i < 3; ++i) Pump();
        EXPECT_EQ(std::exchange(told, {}), expected);
    }
    void Click(std::string_view id) { MouseClick(Find(id)); }
};

TEST_F(Following, GoesFromOneFrameToTheNext) {
    const std::string first = Serve("<input id=m>"), second = Serve("<input id=n>");
    const Strings urls[] = {{Url(first), Url(second)},
                            {OtherUrl(first), Url(second)},
                            {Url(first), OtherUrl(second)},
                            {OtherUrl(first), OtherUrl(second)}};
    for (const Strings& url : urls) {
        SCOPED_TRACE(url[0] + " " + url[1]);
        const Document page = Open("<iframe id=i src=" + url[0] +
                                   "></iframe><iframe id=j src=" + url[1] + "></iframe>");
        const Document i = page.frames().at(0).document;
        const Document j = page.frames().at(1).document;
        for (int pass = 0; pass < 3; ++pass) Pump();  // until the frames are drawn
        Strings told;
        const Listener around(page, told), in_i(i, told), in_j(j, told);
        MouseClick(i.Named("m").by_id);
        Type("1");
        MouseClick(j.Named("n").by_id);
        Type("2");
        MouseClick(i.Named("m").by_id);
        ExpectTold(told,
                   {"focus i", "focus m", "click m", "key m", "leave m=1", "focus j", "focus n",
                    "click n", "key n", "leave n=2", "focus i", "focus m=1", "click m=1"});
    }
}

TEST_F(Following, HearsTheClickThatATabIsClosedAfter) {
    const auto window = NewWindow();
    ASSERT_TRUE(window);
    window->Navigate(Url(Serve("<input id=a value=v><button id=b value=w>x</button>")));
    ASSERT_TRUE(WaitComplete(*window));
    Follower follower(*window);
    for (const char* id : {"a", "b"}) {
        const auto point = window->ElementScreenPoint(window->document().Named(id).by_id);
        ASSERT_TRUE(point);
        input().SetCursorPos({point->x + 5, point->y + 5});
        input().LeftButton(true);
        input().LeftButton(false);
    }
    window->Quit();
    EXPECT_TRUE(Wait([&] { return follower.Has("OnQuit"); }));
    ExpectTold(follower.told, {"focus a=v", "click a=v", "leave a=v", "focus b=w", "click b=w"});
}

TEST_F(Following, LosesNothingWherePagesLeadOnAsTheyLoad) {
    constexpr int kTimes = 20;
    const std::string hop = ServeBare("<script>location.replace(document.referrer)</script>");
    Open("<input id=a><button id=b onclick=\"location = '" + hop + "'\">x</button>");
    Follower follower(browser());
    Strings expected;
    for (int i = 0; i < kTimes; ++i) {
        const std::size_t before = follower.lines.size();
        Click("a");
        Click("b");
        expected.insert(expected.end(), {"focus a", "click a", "leave a", "focus b", "click b"});
        ASSERT_TRUE(Wait([&] {
            return std::count(follower.lines.begin() + static_cast<std::ptrdiff_t>(before),
                              follower.lines.end(), "DocumentComplete top") > 0 &&
                   !browser().Busy() && Find("a");
        }));
    }
    ExpectTold(follower.told, expected);
}

}  // namespace
}  // namespace tamrin::conformance
