#include "platform/windows/input.h"

#include <atomic>
#include <semaphore>
#include <thread>

#include "platform/windows/wide.h"
#include "player/key_string.h"
#include "system/form_rig.h"
#include "windows/windows_desk.h"

namespace tamrin::test {
namespace {

// Another program: a form of a thread of its own.
class OtherProgram {
public:
    OtherProgram() : thread_([this] { Run(); }) { Begin(""); }
    ~OtherProgram() {
        ends_ = true;
        thread_.join();
    }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

    // Runs `act` on the program's thread.
    void Do(const std::function<void(Form&)>& act) {
        act_ = &act;
        done_.acquire();
    }

    // Begins again, in front: this text with the caret behind it, and the focus.
    void Begin(const std::string& text, std::string_view focus = "txtAll") {
        Do([&](Form& form) {
            Control& edit = form.Find("txtAll");
            edit.SetText(text);
            SetForegroundWindow(WindowsDesk::WindowOf(form));
            form.Find(focus).SetFocus();
            SendMessageW(WindowsDesk::WindowOf(edit), EM_SETSEL, 9999, 9999);
            events.clear();
        });
    }

    // Its text, with the selection in brackets or the caret as "|".
    std::string Text() {
        std::wstring text;
        Do([&](Form& form) {
            DWORD from = 0;
            DWORD to = 0;
            SendMessageW(WindowsDesk::WindowOf(form.Find("txtAll")), EM_GETSEL,
                         reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
            text = Wide(form.Find("txtAll").Text());
            text.insert(to, from == to ? L"|" : L"]");
            if (from != to) text.insert(from, L"[");
        });
        return Utf8(text);
    }

    std::atomic<int> works_ms = 0;  // on each change of its text
    Lines events;                   // of the user, since Begin

private:
    void Run() {
        WindowsDesk desk;
        const auto form = desk.windows().Create(kMain);
        form->SetPlace({0, 0, 400, 300});
        form->List("lstLines").SetLines(Lines(9, "行"));
        form->Find("txtAll").onChange = [this] { Sleep(static_cast<DWORD>(works_ms.load())); };
        form->Find("mnuSave").onClick = [this] { events.emplace_back("menu"); };
        form->Find("cmdGo").onClick = [this] { events.emplace_back("button"); };
        form->List("lstLines").onClick = [this] { events.emplace_back("left"); };
        form->List("lstLines").onContext = [this] { events.emplace_back("right"); };
        form->SetVisible(true);
        for (; !ends_; desk.Pass(1)) {
            if (const auto* const act = act_.exchange(nullptr)) {
                (*act)(*form);
                done_.release();
            }
        }
    }

    std::atomic<const std::function<void(Form&)>*> act_ = nullptr;
    std::atomic<bool> ends_ = false;
    std::binary_semaphore done_{0};
    std::thread thread_;
};

bool IsDown(int key) { return GetAsyncKeyState(key) < 0; }

class InputTest : public testing::Test {
protected:
    static bool SendBy(WindowsInput& input, std::string_view keys) {
        std::string why;
        const auto strokes = ParseKeyString(keys, why);
        EXPECT_EQ(why, "");
        return input.SendKeys(*strokes);
    }
    bool Send(std::string_view keys) { return SendBy(input, keys); }

    WindowsDesk desk;
    bool stop = false;
    WindowsInput input{desk.clock(),
                       {.stop_requested = [this] { return stop; }, .answer_limit_ms = 300}};
    OtherProgram other;
};

TEST_F(InputTest, TypesTextAndKeysInTheirOrder) {
    const struct {
        const char* before;
        const char* keys;
        const char* after;
    } rows[] = {
        {"", "Abc 1{+}*\\\"'é", "Abc 1+*\\\"'é|"},
        {"", "髙①日本😀𠮷、。ｱ一", "髙①日本😀𠮷、。ｱ一|"},
        {"", "一{LEFT}二{RIGHT}三~四", "二一三\r\n四|"},
        {"", "+a+(bc)d{h 3}", "ABCdhhh|"},
        {"abcdef", "{HOME}{DEL 3}", "|def"},
        {"abcdef", "{BS 2}{LEFT 9}{INSERT}x", "x|abcd"},
        {"abcdef", "+{LEFT 2}", "abcd[ef]"},
        {"abcdef", "+({LEFT}{LEFT})日", "abcd日|"},
        {"ab", "{HOME}+{END}^c{END}^v^v", "ababab|"},
        {"ab", "+{HOME}^X^(vv)", "abab|"},
    };
    for (const bool caps_lock : {false, true}) {
        EXPECT_TRUE(!caps_lock || Send("{CAPSLOCK}"));
        for (const auto& row : rows) {
            other.Begin(row.before);
            EXPECT_TRUE(Send(row.keys));
            EXPECT_EQ(other.Text(), row.after) << row.keys << caps_lock;
        }
    }
    EXPECT_TRUE(Send("{CAPSLOCK}"));
    // It returns when the keys have been processed.
    other.Begin("");
    other.works_ms = 40;
    EXPECT_TRUE(Send("一二三四五"));
    EXPECT_EQ(other.Text(), "一二三四五|");
}

TEST_F(InputTest, ReachesMenusAndButtons) {
    EXPECT_TRUE(Send("%fs%(fs)%f{ESC 2}"));
    EXPECT_EQ(other.Text(), "|");
    EXPECT_EQ(other.events, (Lines{"menu", "menu"}));
    other.Begin("", "cmdGo");
    EXPECT_TRUE(Send(" "));
    EXPECT_EQ(other.Text(), "|");
    EXPECT_EQ(other.events, Lines{"button"});
}

TEST_F(InputTest, DoesNotTakeTheKeysThatTheUserHoldsForItsOwn) {
    for (const WORD held : {VK_LSHIFT, VK_RSHIFT, VK_LCONTROL, VK_RCONTROL, VK_LMENU, VK_LWIN}) {
        other.Begin("ab");
        WindowsDesk::Key(held, true);
        EXPECT_TRUE(Send("{HOME}x{DEL}+{END}"));
        WindowsDesk::Key(held, false);
        EXPECT_EQ(other.Text(), "x[b]") << held;
    }
}

TEST_F(InputTest, EndsInTheMiddleWhenItIsStopped) {
    for (const char* keys : {"%(aaaaaaaaaa)", "+(aaaaaaaaaa)", "aaaaaaaaaa"}) {
        int left = 8;
        WindowsInput stopped(desk.clock(), {.stop_requested = [&left] { return left-- < 0; }});
        other.Begin("");
        EXPECT_FALSE(SendBy(stopped, keys));
        EXPECT_LT(other.Text().size(), 10U);
        EXPECT_FALSE(IsDown(VK_SHIFT) || IsDown(VK_MENU));
    }
}

TEST_F(InputTest, SendsNothingWhileTheUserPressesAButtonOfTheProgram) {
    const auto form = desk.windows().Create({"frmOwn", "自分", 300, 200, {}, {}, kResizable});
    SetCapture(WindowsDesk::WindowOf(*form));
    desk.clock().AddSource([this, turns = 0]() mutable {
        if (++turns != 10) return;
        stop = true;
        ReleaseCapture();
    });
    EXPECT_FALSE(Send("abc"));
    EXPECT_EQ(other.Text(), "|");
}

TEST_F(InputTest, GivesUpAProgramThatHangs) {
    other.works_ms = 1500;
    int events = 0;
    desk.clock().AddSource([&events] { ++events; });
    const ULONGLONG start = GetTickCount64();
    EXPECT_FALSE(Send("a{TAB}b"));
    EXPECT_LT(GetTickCount64() - start, 1400U);
    EXPECT_GT(events, 5);
    other.works_ms = 0;
    EXPECT_EQ(other.Text(), "a|");
}

TEST_F(InputTest, PressesTheButtonThatIsTheLeftOneToTheUser) {
    RECT list{};
    other.Do(
        [&](Form& form) { GetWindowRect(WindowsDesk::WindowOf(form.Find("lstLines")), &list); });
    const ScreenPoint point{static_cast<int>(list.left) + 9, static_cast<int>(list.top) + 9};
    for (const BOOL swapped : {FALSE, TRUE}) {
        SwapMouseButton(swapped);
        WindowsDesk::Key(VK_LCONTROL, true);
        input.SetCursorPos(point);
        input.LeftButton(true);
        EXPECT_FALSE(IsDown(VK_CONTROL));
        input.LeftButton(false);
        desk.Until([&] { return other.Text() == "|" && other.events.size() == 1U + swapped; });
    }
    SwapMouseButton(FALSE);
    // Wine passes the buttons on as they are.
    EXPECT_EQ(other.events, (Lines{"left", "right"}));
    EXPECT_EQ(input.GetCursorPos(), point);
}

}  // namespace
}  // namespace tamrin::test
