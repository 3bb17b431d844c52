#include "platform/windows/input.h"

#include <gtest/gtest.h>

#include "platform/windows/wide.h"
#include "player/click.h"
#include "player/key_string.h"
#include "support/player_rig.h"
#include "windows/other_window.h"
#include "windows/windows_desk.h"

namespace tamrin::test {
namespace {

bool IsDown(int key) { return GetAsyncKeyState(key) < 0; }

void Key(WORD code, DWORD flags = 0) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = code;
    input.ki.dwFlags = flags;
    SendInput(1, &input, sizeof input);
}

class InputTest : public testing::Test {
protected:
    bool Send(std::string_view keys) {
        std::string why;
        const auto strokes = ParseKeyString(keys, why);
        EXPECT_EQ(why, "");
        return input.SendKeys(*strokes);
    }
    std::string Text() const { return Utf8(other.Text()); }

    WindowsDesk desk;
    bool stop = false;
    WindowsInput input{desk.clock(),
                       {.stop_requested = [this] { return stop; }, .answer_limit_ms = 300}};
    OtherWindow other{{0, 0, 400, 300}};
};

TEST_F(InputTest, TypesTextAndKeysInTheirOrder) {
    const struct {
        const wchar_t* before;
        const char* keys;
        const char* text;
        std::pair<int, int> selection;
    } rows[] = {
        {L"", "Abc 1{+}*\\\"'é", "Abc 1+*\\\"'é", {11, 11}},
        {L"", "髙①日本😀𠮷、。ｱ一", "髙①日本😀𠮷、。ｱ一", {12, 12}},
        {L"", "一{LEFT}二{RIGHT}三~四", "二一三\r\n四", {6, 6}},
        {L"", "+a+(bc)d{h 3}", "ABCdhhh", {7, 7}},
        {L"abcdef", "{HOME}{DEL 3}", "def", {0, 0}},
        {L"abcdef", "{BS 2}{LEFT 9}{INSERT}x", "xabcd", {1, 1}},
        {L"abcdef", "+{LEFT 2}", "abcdef", {4, 6}},
        {L"abcdef", "+({LEFT}{LEFT})日", "abcd日", {5, 5}},
        {L"ab", "^a^c{END}^v^v", "ababab", {6, 6}},
        {L"ab", "^A^x^(vv)", "abab", {4, 4}},
    };
    for (const bool caps_lock : {false, true}) {
        if (caps_lock) {
            EXPECT_TRUE(Send("{CAPSLOCK}"));
        }
        for (const auto& row : rows) {
            other.SetText(row.before);
            EXPECT_TRUE(Send(row.keys));
            EXPECT_EQ(Text(), row.text) << row.keys << caps_lock;
            EXPECT_EQ(other.Selection(), row.selection) << row.keys;
        }
    }
    EXPECT_TRUE(Send("{CAPSLOCK}"));
}

TEST_F(InputTest, ReachesMenusAndButtons) {
    EXPECT_TRUE(Send("%fx"));
    EXPECT_EQ(other.entries, 1);
    EXPECT_TRUE(Send("%(fx)"));
    EXPECT_EQ(other.entries, 2);
    EXPECT_TRUE(Send("%f{ESC 2}"));
    other.FocusButton();
    EXPECT_TRUE(Send(" "));
    EXPECT_EQ(other.presses, 1);
    EXPECT_EQ(Text(), "");
}

TEST_F(InputTest, DoesNotTakeTheKeysThatTheUserHoldsForItsOwn) {
    for (const WORD held : {VK_LSHIFT, VK_RSHIFT, VK_LCONTROL, VK_RCONTROL, VK_LMENU, VK_LWIN}) {
        other.SetText(L"ab");
        Key(held);
        EXPECT_TRUE(Send("{HOME}x{DEL}+{END}"));
        Key(held, KEYEVENTF_KEYUP);
        EXPECT_EQ(Text(), "xb") << held;
        EXPECT_EQ(other.Selection(), std::pair(1, 2)) << held;
    }
}

TEST_F(InputTest, ReturnsWhenTheKeysHaveBeenProcessed) {
    other.works_ms = 40;
    EXPECT_TRUE(Send("一二三四五"));
    EXPECT_EQ(Text(), "一二三四五");
}

TEST_F(InputTest, EndsInTheMiddleWhenItIsStopped) {
    for (const char* keys : {"%(aaaaaaaaaa)", "+(aaaaaaaaaa)", "aaaaaaaaaa"}) {
        int left = 8;
        WindowsInput stopped(desk.clock(), {.stop_requested = [&left] { return left-- < 0; }});
        std::string why;
        other.SetText(L"");
        EXPECT_FALSE(stopped.SendKeys(*ParseKeyString(keys, why)));
        desk.Pass(50);
        EXPECT_LT(Text().size(), 10U);
        EXPECT_FALSE(IsDown(VK_SHIFT) || IsDown(VK_MENU));
    }
}

TEST_F(InputTest, SendsNothingWhileTheUserPressesAButtonOfTheProgram) {
    constexpr FormSpec kOwn{"frmOwn", "自分", 300, 200, {}, {}, kResizable};
    const auto form = desk.windows().Create(kOwn);
    SetCapture(WindowsDesk::WindowOf(*form));
    desk.AddSource([this, turns = 0]() mutable {
        if (++turns != 10) return;
        stop = true;
        ReleaseCapture();
    });
    EXPECT_FALSE(Send("abc"));
    EXPECT_EQ(Text(), "");
}

TEST_F(InputTest, GivesUpAProgramThatHangs) {
    other.works_ms = 1500;
    int events = 0;
    desk.AddSource([&events] { ++events; });
    const ULONGLONG start = GetTickCount64();
    EXPECT_FALSE(Send("a{TAB}b"));
    EXPECT_LT(GetTickCount64() - start, 1400U);
    EXPECT_GT(events, 5);
    other.works_ms = 0;
    EXPECT_EQ(Text(), "a");
}

TEST_F(InputTest, PressesTheButtonThatIsTheLeftOneToTheUser) {
    for (const BOOL exchanged : {FALSE, TRUE}) {
        SwapMouseButton(exchanged);
        Key(VK_LCONTROL);
        input.SetCursorPos({40, 120});
        input.LeftButton(true);
        EXPECT_FALSE(IsDown(VK_CONTROL));
        input.LeftButton(false);
        desk.Pass(50);
        // This system passes the buttons on as they are.
        EXPECT_EQ(other.clicks, 1);
        EXPECT_EQ(other.right_clicks, exchanged);
    }
    SwapMouseButton(FALSE);
    EXPECT_EQ(input.GetCursorPos(), (ScreenPoint{40, 120}));
}

// The main window of the program, over the element that is to be clicked.
class CoveringRig : public PlayerRig {
public:
    explicit CoveringRig(Form& form) : form_(form) {}
    void SetWindowVisible(bool visible) override { form_.SetVisible(visible); }
    std::optional<Rect> WindowRect() override {
        if (!form_.Visible()) return std::nullopt;
        const Place at = form_.ShownPlace();
        return Rect{1.0 * at.left, 1.0 * at.top, 1.0 * at.left + at.width,
                    1.0 * at.top + at.height};
    }

private:
    Form& form_;
};

TEST_F(InputTest, ClicksWhatTheMainWindowCovers) {
    constexpr FormSpec kCover{"frmCover", "覆い", 300, 200, {}, {}, kResizable};
    const auto form = desk.windows().Create(kCover);
    const HWND cover = WindowsDesk::WindowOf(*form);
    CoveringRig rig(*form);
    rig.web.pages["page"] = "<input id=a type=button>";
    ScriptedBrowser browser(rig.web);
    browser.Show("page");
    rig.globals.activity = "play";
    Clicker clicker(rig.globals, desk.clock(), input, rig);
    const auto click = [&] {
        clicker.ClickElement(browser, browser.document().Named("a").by_id, true, 0);
    };
    for (const int shown : {SW_SHOWNORMAL, SW_MAXIMIZE, SW_MINIMIZE}) {
        form->SetPlace({shown == SW_MAXIMIZE ? 500 : 20, 20, 300, 200});
        form->SetVisible(true);
        ShowWindow(cover, shown);
        desk.Pass(100);
        input.SetCursorPos({600, 700});
        const int before = other.clicks;
        click();
        EXPECT_EQ(other.clicks, before + 1) << shown;
        EXPECT_TRUE(form->Visible());
        EXPECT_EQ(input.GetCursorPos(), (ScreenPoint{600, 700}));
        ShowWindow(cover, SW_RESTORE);
    }
    desk.AddSource([&] { rig.globals.activity.clear(); });
    const int before = other.clicks;
    rig.globals.activity = "play";
    click();
    EXPECT_EQ(other.clicks, before);
    EXPECT_TRUE(form->Visible());
}

}  // namespace
}  // namespace tamrin::test
