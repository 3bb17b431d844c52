#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

class SendKeys : public ChromiumTest {
protected:
    bool Keys(const std::vector<KeyStroke>& keys) { return launcher_.input().SendKeys(keys); }

    static std::vector<KeyStroke> Type(const std::string& text) {
        std::vector<KeyStroke> keys;
        for (const char c : text) keys.push_back(Letter(c));
        return keys;
    }

    static KeyStroke With(KeyStroke key, bool ctrl, bool shift = false, bool alt = false) {
        key.ctrl = ctrl;
        key.shift = shift;
        key.alt = alt;
        return key;
    }
};

TEST_F(SendKeys, TypeWhatTheySay) {
    Open("<input id=t><textarea id=u></textarea><script>t.focus()</script>");
    std::vector<KeyStroke> keys = Type("aB1!~ \\\"'x");
    KeyStroke kanji;
    for (const char* text : {"日", "本", "\xF0\xA0\xAE\xB7"}) {
        kanji.text = text;
        keys.push_back(kanji);
    }
    keys.push_back(With(Letter('s'), false, true));
    EXPECT_TRUE(Keys(keys));
    EXPECT_EQ(Find("t").value(), "aB1!~ \\\"'x日本\xF0\xA0\xAE\xB7S");

    EXPECT_TRUE(Keys({NamedKey("BACKSPACE"), NamedKey("LEFT"), NamedKey("DEL"), NamedKey("HOME"),
                      NamedKey("DELETE"), NamedKey("END"), Letter('z'), NamedKey("TAB"),
                      Letter('1'), NamedKey("ENTER"), Letter('2')}));
    EXPECT_EQ(Find("t").value(), "B1!~ \\\"'x日本z");
    EXPECT_EQ(Find("u").value(), "1\r\n2");

    // Through the clipboard from one field to the other.
    EXPECT_TRUE(
        Keys({With(NamedKey("TAB"), false, true), With(Letter('a'), true), With(Letter('x'), true),
              NamedKey("TAB"), With(Letter('a'), true), With(Letter('v'), true)}));
    EXPECT_EQ(Find("t").value(), "");
    EXPECT_EQ(Find("u").value(), "B1!~ \\\"'x日本z");
    EXPECT_TRUE(Keys({With(Letter('z'), true)}));
    EXPECT_EQ(Find("u").value(), "1\r\n2");
}

TEST_F(SendKeys, AreSeenByThePageAsKeys) {
    Open(
        "<input id=t><script>t.focus(); onkeydown = (e) => log("
        "[e.code, e.key, e.keyCode, e.shiftKey, e.ctrlKey, e.altKey].join('/'))</script>");
    EXPECT_TRUE(Keys({Letter('?'), NamedKey("F12"), With(NamedKey("PGUP"), true, true)}));
    EXPECT_EQ(Log(),
              "Slash/?/191/true/false/false F12/F12/123/false/false/false "
              "PageUp/PageUp/33/true/true/false");
}

TEST_F(SendKeys, SubmitAFormByEnter) {
    Open("<form action=/sent><input id=t name=q></form><script>t.focus()</script>");
    EXPECT_TRUE(Keys({Letter('a'), NamedKey("ENTER")}));
    EXPECT_TRUE(browser_.Busy());
    EXPECT_TRUE(WaitComplete());
    EXPECT_EQ(browser_.document().url(), world_.server.Url("/sent?q=a"));
}

TEST_F(SendKeys, OfTheBrowserItselfAct) {
    Serve([](const WebRequest& request) {
        return WebReply{.body = Page("<input id=t><p>" + request.path + "</p>")};
    });
    OpenUrl(world_.server.Url("/1"));
    OpenUrl(world_.server.Url("/2"));
    const struct {
        KeyStroke key;
        const char* path;
    } rows[] = {
        {With(NamedKey("RIGHT"), false, false, true), "/2"},
        {With(NamedKey("LEFT"), false, false, true), "/1"},
        {With(NamedKey("RIGHT"), false, false, true), "/2"},
        {NamedKey("F5"), "/2"},
    };
    for (const auto& row : rows) {
        EXPECT_TRUE(Find("t").Put("value", "old"));
        const std::string before = browser_.document().url();
        EXPECT_TRUE(Keys({row.key}));
        const bool stays = row.key.name != "F5" && before.ends_with(row.path);
        EXPECT_NE(browser_.Busy(), stays);
        EXPECT_TRUE(WaitComplete());
        EXPECT_EQ(browser_.document().url(), world_.server.Url(row.path));
    }

    Open("<script>onkeydown = (e) => { log(e.key); e.preventDefault() }</script>");
    EXPECT_TRUE(Keys({NamedKey("F5")}));
    EXPECT_FALSE(browser_.Busy()) << "the page took the key";
    EXPECT_EQ(Log(), "F5");
}

TEST_F(SendKeys, GoToTheWindowInFront) {
    Open("<input id=t><script>t.focus()</script>");
    std::string why;
    const auto other = launcher_.Create(why);
    ASSERT_TRUE(other) << why;
    EXPECT_TRUE(other->Navigate(world_.server.Url("/")));
    EXPECT_TRUE(Wait([&] { return !other->Busy(); }));
    EXPECT_TRUE(Keys({Letter('o')}));
    browser_.SetForeground();
    EXPECT_TRUE(Keys({Letter('t')}));
    EXPECT_EQ(Find("t").value(), "t");
    EXPECT_EQ(other->document().Named("t").by_id.value(), "o");
    other->SetForeground();
    EXPECT_TRUE(Keys({With(NamedKey("F4"), false, false, true)}));
    EXPECT_TRUE(Wait([&] { return !other->Alive(); }));
    EXPECT_FALSE(Keys({Letter('x')}));
    browser_.SetForeground();
    EXPECT_TRUE(Keys({Letter('t')}));
}

class ElementScreenPoint : public ChromiumTest {};

TEST_F(ElementScreenPoint, FollowsTheWindowAndTheScrolling) {
    Open(
        "<style>body { margin: 0; height: 5000px; scroll-behavior: smooth }</style>"
        "<p id=hidden style='display: none'>x</p>"
        "<p id=p style='position: absolute; left: 50px; top: 3000px; margin: 0'>x</p>");
    EXPECT_FALSE(browser_.ElementScreenPoint(Find("hidden")));
    EXPECT_FALSE(Find("hidden").getBoundingClientRect());
    const Element paragraph = Find("p");
    const auto before = browser_.ElementScreenPoint(paragraph);
    ASSERT_TRUE(before);
    EXPECT_EQ(paragraph.getBoundingClientRect()->left, 50);
    EXPECT_EQ(paragraph.getBoundingClientRect()->top, 3000);
    paragraph.scrollIntoView();
    const auto rect = paragraph.getBoundingClientRect();
    const auto after = browser_.ElementScreenPoint(paragraph);
    ASSERT_TRUE(rect && after);
    EXPECT_EQ(rect->left, 50);
    EXPECT_LT(rect->top, 900);
    EXPECT_EQ(after->x, before->x);
    EXPECT_EQ(after->y - before->y, static_cast<int>(rect->top - 3000));

    browser_.SetPlace({100, 120, 700, 600});
    EXPECT_TRUE(Wait([&] {
        const auto moved = browser_.ElementScreenPoint(Find("p"));
        return moved && moved->x > 100 && moved->x < 170 && moved->y > 120 && moved->y < 720;
    }));
    const auto picture = launcher_.Picture();
    ASSERT_TRUE(picture);
    EXPECT_TRUE(picture->starts_with("\x89PNG\r\n\x1A\n"));
    browser_.SetPlace({10, 10, 1280, 900});
}

// A link that is broken into two lines begins where its first line does.
TEST_F(ElementScreenPoint, OfABrokenLinkIsThatOfItsFirstLine) {
    Open(
        "<div style='width: 200px; font: 16px monospace'>12345678901234 "
        "<a id=a href=#>and here the link goes on</a></div>");
    const Element link = Find("a");
    const auto rect = link.getBoundingClientRect();
    const auto corner = browser_.ElementScreenPoint(link);
    const auto line = browser_.ElementScreenPoint(link.parentElement());
    ASSERT_TRUE(rect && corner && line);
    EXPECT_GT(corner->x - line->x, 100);
    EXPECT_EQ(rect->left, 8);
}

}  // namespace
}  // namespace tamrin::test
