#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using ElementScreenPoint = Suite;

// The page and its frames tell the top page where a click landed, and "!" when a script made it.
constexpr std::string_view kTells =
    "<script>addEventListener('click', e => top.postMessage(e.target.id + (e.isTrusted ? '' : '!'),"
    " '*'), true); if (self === top) addEventListener('message', e => say(e.data))</script>";

std::string Page(const std::string& body) { return std::string(kTells) + body; }

TEST_F(ElementScreenPoint, LeadsTheMouseToTheElement) {
    Open(
        Page("<style>html{scroll-behavior:smooth}</style>"
             "<button id=top>上</button><div style='height:3000px'></div><button id=low>下</button>"
             "<div style='width:300px;font:24px/40px monospace'>あいうえおかき<a id=broken href=#>"
             "二つの行にわたる長い長いリンク</a></div>"
             "<div style='height:80px;overflow:scroll'><div style='height:500px'></div>"
             "<button id=boxed>箱</button></div><div style='width:4000px;text-align:right'>"
             "<button id=right>右</button></div><button id=scaled style='transform:scale(1.5)'>大"
             "</button><div style='zoom:1.5'><button id=zoomed>拡</button></div>"));
    std::string expected;
    for (const char* id : {"top", "low", "broken", "top", "boxed", "right", "scaled", "zoomed"}) {
        MouseClick(Find(id));
        AddWord(expected, id);
        ASSERT_EQ(Said(expected), expected);
    }
}

TEST_F(ElementScreenPoint, CountsFramesAndTheirScaleIn) {
    const std::string leaf =
        Serve(Page("<button id=leaf>葉</button><div style='height:900px'></div>"
                   "<button id=low>下</button>"));
    for (const bool other : {false, true}) {
        const std::string leaf_url = other ? OtherUrl(leaf) : Url(leaf);
        const std::string middle =
            Serve(Page("<div style='height:300px'></div><iframe src=" + leaf_url +
                       " style='border:7px solid;padding:11px 13px'></iframe>"));
        const Document document = Open(
            Page("<div style='height:1500px'></div><iframe src=" + leaf_url +
                 " style='border:9px solid;padding:15px 21px'></iframe><iframe src=" + Url(middle) +
                 "></iframe><div style='zoom:1.5'><iframe src=" + leaf_url +
                 "></iframe></div><div style='transform:scale(1.5);transform-origin:0 0'>"
                 "<iframe src=" +
                 leaf_url + "></iframe></div><div style='height:1500px'></div>"));
        const auto frames = document.frames();
        ASSERT_EQ(frames.size(), 4U);
        const auto inner = frames[1].document.frames();
        ASSERT_EQ(inner.size(), 1U);
        std::string expected;
        for (const Document& page :
             {frames[0].document, inner[0].document, frames[2].document, frames[3].document}) {
            for (const char* id : {"leaf", "low"}) {
                MouseClick(page.Named(id).by_id);
                AddWord(expected, id);
                ASSERT_EQ(Said(expected), expected) << (other ? "other origin" : "same origin");
            }
        }
    }
}

TEST_F(ElementScreenPoint, IsNothingForWhatIsNotShown) {
    Open(
        "<button id=a style='display:none'>a</button><input id=b type=hidden>"
        "<div style='display:none'><input id=c></div><button id=shown>d</button>");
    for (const char* id : {"a", "b", "c"}) {
        EXPECT_FALSE(browser().ElementScreenPoint(Find(id))) << id;
        EXPECT_FALSE(Find(id).getBoundingClientRect()) << id;
    }
    EXPECT_TRUE(browser().ElementScreenPoint(Find("shown")));
    EXPECT_FALSE(browser().ElementScreenPoint(Element()));
}

TEST_F(ElementScreenPoint, FollowsTheWindow) {
    Open("<button id=k>a</button>");
    browser().SetPlace({.left = 40, .top = 30, .width = 900, .height = 700});
    std::optional<ScreenPoint> before;
    // The window system moves a window when it likes: ask until two answers agree.
    EXPECT_TRUE(Wait([&] {
        const auto now = browser().ElementScreenPoint(Find("k"));
        const bool settled = now && now == before;
        before = now;
        return settled;
    }));
    ASSERT_TRUE(before);
    browser().SetPlace({.left = 140, .top = 80, .width = 900, .height = 700});
    EXPECT_TRUE(Wait([&] {
        const auto now = browser().ElementScreenPoint(Find("k"));
        return now && now->x - before->x == 100 && now->y - before->y == 50;
    }));
}

using GetBoundingClientRect = Suite;

TEST_F(GetBoundingClientRect, AnswersThePlaceInTheViewportOfItsOwnDocument) {
    constexpr std::string_view kBox =
        "<!doctype html><body style='margin:0;height:3000px'><div id=k style='position:absolute;"
        "left:20px;top:2000px;width:30px;height:40.5px'></div>";
    const std::string inner = ServeBare(std::string(kBox));
    const Document document =
        OpenBare(std::string(kBox) + "<iframe src=" + OtherUrl(inner) + "></iframe>");
    const Rect whole{.left = 20, .top = 2000, .right = 50, .bottom = 2040.5};
    EXPECT_EQ(Find("k").getBoundingClientRect(), whole);
    const Element framed = document.frames().at(0).document.Named("k").by_id;
    EXPECT_EQ(framed.getBoundingClientRect(), whole);
    Find("k").scrollIntoView();
    const auto moved = Find("k").getBoundingClientRect();
    ASSERT_TRUE(moved);
    EXPECT_EQ(moved->left, 20);
    EXPECT_LT(moved->top, 600);
    EXPECT_EQ(moved->bottom - moved->top, 40.5);
}

using LeftButton = Suite;

TEST_F(LeftButton, ActsAsAPersonsMouse) {
    Open(
        "<input id=t><input type=checkbox id=c><a id=a href='/echo?m'>次</a><script>"
        "for (const type of ['mousedown', 'focusin', 'mouseup', 'click'])"
        " addEventListener(type, e => say(e.target.id + '.' + type), true)</script>");
    MouseClick(Find("t"));
    EXPECT_EQ(Said("t.mousedown t.focusin t.mouseup t.click"),
              "t.mousedown t.focusin t.mouseup t.click");
    EXPECT_EQ(browser().document().activeElement().id(), "t");
    MouseClick(Find("a"));
    EXPECT_EQ(Arrived(), "GET m");
    input().SetCursorPos({300, 200});
    EXPECT_EQ(input().GetCursorPos(), (ScreenPoint{300, 200}));
}

}  // namespace
}  // namespace tamrin::conformance
