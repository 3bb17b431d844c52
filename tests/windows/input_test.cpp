#include "platform/windows/input.h"

#include <atomic>
#include <semaphore>
#include <thread>

#include "platform/windows/wide.h"
#include "player/key_string.h"
#include "system/form_rig.h"

namespace tamrin::test {
namespace {

// Another program: a form of a thread of its own.
class OtherProgram {
public:
    // Runs `act` on the program's thread.
    void Do(const std::function<void(FormRig&)>& act) {
        act_ = &act;
        done_.acquire();
    }

    // Begins again, in front: this text with the caret behind it, and the focus.
    void Begin(const std::string& text, std::string_view focus = "txtAll") {
        Do([&](FormRig& rig) {
            rig.Find("txtAll").SetText(text);
            SetForegroundWindow(Desk::WindowOf(*rig.form));
            rig.Find(focus).SetFocus();
            SendMessageW(Desk::WindowOf(rig.Find("txtAll")), EM_SETSEL, 9999, 9999);
            rig.events.clear();
        });
    }

    // Its text, with the selection in brackets or the caret as "|", and the events since Begin.
    std::string State() {
        std::string state;
        Do([&](FormRig& rig) {
            Control& edit = rig.Find("txtAll");
            const LRESULT selection = SendMessageW(Desk::WindowOf(edit), EM_GETSEL, 0, 0);
            std::wstring text = Wide(edit.Text());
            text.insert(HIWORD(selection), L"|");
            if (LOWORD(selection) != HIWORD(selection)) text.insert(LOWORD(selection), L"[");
            state = Utf8(text);
            for (const std::string& event : rig.events) state += " " + event;
        });
        return state;
    }

    std::atomic<DWORD> works_ms = 0;  // on each change of its text

private:
    void Run(const std::stop_token& stop) {
        FormRig rig;
        rig.form->List("lstLines").SetLines(Lines(9, "行"));
        rig.Find("txtAll").onChange = [this] { Sleep(works_ms); };
        for (; !stop.stop_requested(); rig.Pass(1)) {
            if (const auto* const act = act_.exchange(nullptr)) {
                (*act)(rig);
                done_.release();
            }
        }
    }

    std::atomic<const std::function<void(FormRig&)>*> act_ = nullptr;
    std::binary_semaphore done_{0};
    std::jthread thread_{[this](const std::stop_token& stop) { Run(stop); }};
};

bool IsDown(int key) { return GetAsyncKeyState(key) < 0; }

class InputTest : public testing::Test {
protected:
    bool Send(std::string_view keys) { return input.SendKeys(*ParseKeyString(keys, why)); }

    Desk desk;
    std::string why;
    int turns = -1;  // until the user's stop; negative for none
    WindowsInput input{desk.clock, {.stop_requested = [this] {
                           if (turns > 0) --turns;
                           return turns == 0;
                       }}};
    OtherProgram other;
};

TEST_F(InputTest, TypesTextAndKeysInTheirOrder) {
    const struct {
        const char* before;
        const char* keys;
        const char* after;
        const char* focus = "txtAll";
    } rows[] = {
        {"", "Abc 1{+}*\\\"'é", "Abc 1+*\\\"'é|"},
        {"", "髙①日本😀𠮷、。ｱ一", "髙①日本😀𠮷、。ｱ一|"},
        {"", "一{LEFT}二{RIGHT}三~四", "二一三\r\n四|"},
        {"", "+a+(bc)d{h 3}", "ABCdhhh|"},
        {"abcdef", "{HOME}{DEL 3}", "|def"},
        {"abcdef", "{BS 2}{LEFT 9}{INSERT}x", "x|abcd"},
        {"abcdef", "+({LEFT}{LEFT})日", "abcd日|"},
        {"ab", "{HOME}+{END}^c{END}^v+{LEFT 2}", "ab[ab|"},
        {"ab", "+{HOME}^X^(vv)", "abab|"},
        {"", "%fs%(fs)%f{ESC 2}", "| mnuSave mnuSave"},
        {"", " ", "| cmdGo", "cmdGo"},
    };
    for (const bool caps_lock : {false, true}) {
        EXPECT_TRUE(!caps_lock || Send("{CAPSLOCK}"));
        other.works_ms = caps_lock ? 20 : 0;  // it returns when the keys have been processed
        for (const auto& row : rows) {
            other.Begin(row.before, row.focus);
            EXPECT_TRUE(Send(row.keys));
            EXPECT_EQ(other.State(), row.after) << row.keys << caps_lock;
        }
    }
    EXPECT_TRUE(Send("{CAPSLOCK}"));
}

TEST_F(InputTest, DoesNotTakeTheKeysThatTheUserHoldsForItsOwn) {
    for (const WORD held : {VK_LSHIFT, VK_RSHIFT, VK_LCONTROL, VK_RCONTROL, VK_LMENU, VK_LWIN}) {
        other.Begin("ab");
        Desk::Key(held, true);
        EXPECT_TRUE(Send("{HOME}x{DEL}+{END}"));
        Desk::Key(held, false);
        EXPECT_EQ(other.State(), "x[b|") << held;
    }
}

TEST_F(InputTest, EndsInTheMiddleWhenItIsStopped) {
    for (const char* keys : {"%(aaaaaaaaaa)", "+(aaaaaaaaaa)", "aaaaaaaaaa"}) {
        turns = 8;
        other.Begin("");
        EXPECT_FALSE(Send(keys));
        EXPECT_LT(other.State().size(), 10U);
        EXPECT_FALSE(IsDown(VK_SHIFT) || IsDown(VK_MENU));
    }
    // Nothing is sent while the user presses a button of the program.
    const auto form = desk.windows.Create({"frmOwn", "自分", 300, 200, {}, {}, kResizable});
    SetCapture(Desk::WindowOf(*form));
    other.Begin("");
    turns = 10;
    EXPECT_FALSE(Send("abc"));
    EXPECT_EQ(other.State(), "|");
    ReleaseCapture();
}

TEST_F(InputTest, GivesUpAProgramThatHangs) {
    WindowsInput hasty(desk.clock, {.stop_requested = {}, .answer_limit_ms = 300});
    int events = 0;
    desk.clock.AddSource([&events] { ++events; });
    other.Begin("");
    other.works_ms = 3000;
    const ULONGLONG start = GetTickCount64();
    EXPECT_FALSE(hasty.SendKeys(*ParseKeyString("a{TAB}b", why)));
    EXPECT_LT(GetTickCount64() - start, 2900U);
    EXPECT_GT(events, 5);
    other.works_ms = 0;
    EXPECT_EQ(other.State(), "a|");
}

TEST_F(InputTest, ClicksWithoutTheKeysThatTheUserHolds) {
    RECT list{};
    other.Begin("");
    other.Do([&](FormRig& rig) { GetWindowRect(Desk::WindowOf(rig.Find("lstLines")), &list); });
    const ScreenPoint point{static_cast<int>(list.left) + 9, static_cast<int>(list.top) + 9};
    Desk::Key(VK_LCONTROL, true);
    input.SetCursorPos(point);
    input.LeftButton(true);
    EXPECT_FALSE(IsDown(VK_CONTROL));
    input.LeftButton(false);
    desk.Until([&] { return other.State() == "| lstLines"; });
    EXPECT_EQ(other.State(), "| lstLines");
    EXPECT_EQ(input.GetCursorPos(), point);
}

}  // namespace
}  // namespace tamrin::test
