#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using ElementScreenPoint = Suite;

TEST_F(ElementScreenPoint, LeadsTheMouseToTheElement) {
    // Each says where a click landed, and "!" when a script made it.
    const std::string says =
        "<script>addEventListener('click', e => say(e.target.id + (e.isTrusted ? '' : '!')), true)"
        "</script>";
    const std::string space = "<div style='height:1500px'></div>";
    const std::string leaf = says + "<button id=a>葉</button>" + space + "<button id=b>下</button>";
    for (const std::string& url : Origins(leaf)) {
        const std::string nested = says + space + "<iframe id=f src=" + url +
                                   " style='border:7px solid;padding:11px 13px'></iframe>";
        Check({says + space + "<iframe id=bordered src=" + url +
                   " style='border:9px solid;padding:15px 21px'></iframe><iframe id=nested src=" +
                   Url(Serve(nested)) +
                   "></iframe><div style='zoom:1.5'><iframe id=zoomed src=" + url +
                   "></iframe></div><div style='transform:scale(1.5);transform-origin:0 0'>"
                   "<iframe id=scaled src=" +
                   url + "></iframe></div>" + space,
               "@bordered/a @bordered/b @nested/f/a @nested/f/b @zoomed/a @zoomed/b @scaled/a"
               " @scaled/b",
               "a b a b a b a b"});
    }
    Check(
        {says + "<style>html{scroll-behavior:smooth}</style><button id=top>上</button>" + space +
             "<button id=low>下</button>"
             "<div style='width:300px;font:24px/40px monospace'>あいうえおかき<a id=broken href=#>"
             "二つの行にわたる長い長いリンク</a></div>"
             "<div style='height:80px;overflow:scroll'><div style='height:500px'></div>"
             "<button id=boxed>箱</button></div><div style='width:4000px;text-align:right'>"
             "<button id=right>右</button></div><button id=scaled style='transform:scale(1.5)'>大"
             "</button><div style='zoom:1.5'><button id=zoomed>拡</button></div>",
         "@top @low @broken @top @boxed @right @scaled @zoomed",
         "top low broken top boxed right scaled zoomed"});
    input().SetCursorPos({300, 200});
    EXPECT_EQ(input().GetCursorPos(), (ScreenPoint{300, 200}));
}

TEST_F(ElementScreenPoint, IsNothingForWhatIsNotShown) {
    Open(
        "<button id=a style='display:none'>a</button><input id=b type=hidden>"
        "<div style='display:none'><input id=c></div><button id=shown>d</button>");
    for (const char* id : {"a", "b", "c", "none"}) {
        EXPECT_FALSE(browser().ElementScreenPoint(Find(id))) << id;
        EXPECT_FALSE(Find(id).getBoundingClientRect()) << id;
    }
    EXPECT_TRUE(browser().ElementScreenPoint(Find("shown")));
}

TEST_F(ElementScreenPoint, FollowsTheWindow) {
    Open("<button id=k>a</button>");
    browser().SetPlace({.left = 40, .top = 30, .width = 900, .height = 700});
    std::optional<ScreenPoint> before;
    // The window system moves a window when it likes: ask until two answers agree.
    EXPECT_TRUE(Wait([&] {
        const auto now = browser().ElementScreenPoint(Find("k"));
        return std::exchange(before, now) == now && now;
    }));
    browser().SetPlace({.left = 140, .top = 80, .width = 900, .height = 700});
    EXPECT_TRUE(Wait([&] {
        const auto now = browser().ElementScreenPoint(Find("k"));
        return before && now && now->x - before->x == 100 && now->y - before->y == 50;
    }));
}

using GetBoundingClientRect = Suite;

TEST_F(GetBoundingClientRect, AnswersThePlaceInTheViewportOfItsOwnDocument) {
    const std::string box =
        "<!doctype html><body style='margin:0;height:3000px'><div id=k style='position:absolute;"
        "left:20px;top:2000px;width:30px;height:40.5px'></div>";
    Open(box + "<iframe id=i src=" + OtherUrl(Serve(box)) + "></iframe>");
    const Rect whole{.left = 20, .top = 2000, .right = 50, .bottom = 2040.5};
    for (const char* path : {"k", "i/k"}) EXPECT_EQ(Find(path).getBoundingClientRect(), whole);
    Find("k").scrollIntoView();
    const auto moved = Find("k").getBoundingClientRect();
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->left, 20);
    EXPECT_LT(moved->top, 600);
    EXPECT_EQ(moved->bottom - moved->top, 40.5);
}

}  // namespace
}  // namespace tamrin::conformance
