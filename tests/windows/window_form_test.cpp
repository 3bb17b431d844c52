#include "platform/windows/window_form.h"

#include "system/form_rig.h"
#include "windows/windows_desk.h"

namespace tamrin::test {
namespace {

class WindowFormTest : public FormTest {
protected:
    HWND WindowOf(std::string_view name) { return WindowsDesk::WindowOf(Find(name)); }
    void Strike(WORD key, std::initializer_list<WORD> held = {}) {
        static_cast<WindowsDesk&>(*desk).Strike(key, held);
    }
    LRESULT Send(std::string_view name, UINT message, WPARAM wparam, LPARAM lparam) {
        return SendMessageW(WindowOf(name), message, wparam, lparam);
    }

    const HWND window = WindowsDesk::WindowOf(*form);
};

TEST_F(WindowFormTest, SendsEachKeyToItsButtonTextOrMenu) {
    form->List("lstLines").SetLines({"a"});
    form->List("lstLines").onDblClick = [&] { events.emplace_back("Enter"); };
    Find("txtName").SetText("abc");
    const struct {
        const char* focus;
        WORD key;
        const char* event;
        bool ctrl = false;
    } rows[] = {
        {"txtName", VK_RETURN, "cmdOk"},      {"txtName", VK_ESCAPE, "cmdCancel"},
        {"cmdGo", VK_RETURN, "cmdGo"},        {"txtAll", VK_RETURN, ""},
        {"lstLines", VK_RETURN, "Enter"},     {"txtName", 'C', "", true},
        {"txtName", VK_DELETE, ""},           {"lstLines", 'C', "mnuCopy", true},
        {"lstLines", VK_DELETE, "mnuDelete"},
    };
    for (const auto& row : rows) {
        events.assign(1, "");
        Find(row.focus).SetFocus();
        Strike(row.key, {row.ctrl ? WORD{VK_CONTROL} : WORD{0xE8}});
        EXPECT_EQ(events.back(), row.event) << row.focus << ' ' << row.key;
    }
    EXPECT_EQ(Find("txtAll").Text(), "\r\n");
    EXPECT_EQ(Find("txtName").Text(), "");
    EXPECT_EQ(desk->windows().ClipboardText(), "abc");
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(events.back(), "cmdCancel");
    EXPECT_TRUE(form->Visible());
}

TEST_F(WindowFormTest, NotifiesTypingAndChoosing) {
    Find("txtName").SetText("");
    ComboBox& combo = form->Combo("cmbTime");
    for (Control* control : {&Find("txtName"), static_cast<Control*>(&combo)}) {
        control->onChange = [this, control] { events.push_back(control->Text()); };
    }
    Send("txtName", WM_CHAR, L'髙', 0);
    combo.SetItems({"3", "5"});
    combo.SetFocus();
    Strike(VK_DOWN);
    Strike(VK_DOWN);
    EXPECT_EQ(events, (Lines{"髙", "3", "5"}));
}

TEST_F(WindowFormTest, FollowsKeyboardAndMouseThroughALongList) {
    ListBox& list = form->List("lstLines");
    list.SetLines(Lines(70000, "行"));
    std::vector<int> current;
    list.onClick = [&] { current.push_back(list.ListIndex()); };
    list.SetListIndex(69997);
    list.SetFocus();
    Strike(VK_DOWN);
    Strike(VK_UP, {VK_SHIFT});
    EXPECT_EQ(current, (std::vector<int>{69997, 69998, 69997}));
    EXPECT_TRUE(list.Selected(69997) && list.Selected(69998));
    // The right button selects a line and raises no click.
    RECT line{};
    Send("lstLines", LB_GETITEMRECT, 69996, reinterpret_cast<LPARAM>(&line));
    Send("lstLines", WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, line.top + 2));
    EXPECT_EQ(list.ListIndex(), 69996);
    EXPECT_TRUE(list.Selected(69996) && !list.Selected(69998));
    EXPECT_EQ(current.size(), 3U);
}

TEST_F(WindowFormTest, PassesTheFocusOnWhenAControlIsDisabledOrHidden) {
    Find("cmdGo").SetFocus();
    EXPECT_TRUE(Find("cmdGo").Focused());
    Find("cmdGo").SetEnabled(false);
    EXPECT_TRUE(Find("cmdOk").Focused());
    Find("cmdOk").SetVisible(false);
    EXPECT_TRUE(Find("cmdCancel").Focused());
}

TEST_F(WindowFormTest, DragsASplitter) {
    std::vector<int> tops;
    Find("split").onChange = [&] { tops.push_back(Find("split").GetPlace().top); };
    Send("split", WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 3));
    for (const int y : {23, -5000}) Send("split", WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, y));
    Send("split", WM_LBUTTONUP, 0, 0);
    Send("split", WM_MOUSEMOVE, 0, MAKELPARAM(10, 50));
    EXPECT_EQ(tops, (std::vector<int>{160, 0}));
}

TEST_F(WindowFormTest, ComesBackFromTheNotificationArea) {
    form->SetTrayIcon(true);
    form->SetVisible(false);
    SendMessageW(window, TrayIcon::kTrayMessage, 1, WM_MOUSEMOVE);
    EXPECT_FALSE(form->Visible());
    SendMessageW(window, TrayIcon::kTrayMessage, 1, WM_LBUTTONUP);
    EXPECT_TRUE(form->Visible());
}

TEST_F(WindowFormTest, ScalesWithTheMonitor) {
    const RECT proposed{50, 50, 850, 700};
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&proposed));
    RECT button{};
    GetWindowRect(WindowOf("cmdGo"), &button);
    EXPECT_EQ(button.right - button.left, 120);
    EXPECT_EQ(Find("cmdGo").GetPlace().width, 80);
    EXPECT_EQ(form->GetPlace().width, 800);
}

// A click on what the form covers hides it, and shows it again as it was.
TEST_F(WindowFormTest, KeepsItsPlaceAndStateWhileHidden) {
    for (const int state : {SW_SHOWNORMAL, SW_MAXIMIZE, SW_MINIMIZE}) {
        SCOPED_TRACE(state);
        ShowWindow(window, state);
        const auto covers = [&] { return form->ShownPlace().width; };
        const int covered = covers();
        EXPECT_EQ(covered > 0, state != SW_MINIMIZE);
        EXPECT_EQ(covered > 640, state == SW_MAXIMIZE);
        form->SetVisible(false);
        EXPECT_EQ(covers(), 0);
        form->SetVisible(true);
        EXPECT_EQ(covers(), covered);
        EXPECT_EQ(form->GetPlace().left, 50);
        EXPECT_EQ(form->GetPlace().width, 640);
        EXPECT_EQ(Find("cmdGo").GetPlace().width, 80);
    }
}

TEST_F(WindowFormTest, IsDisabledBehindAModalFormAndClosesItFirst) {
    const auto dialog =
        desk->windows().Create({"frmFront", "前", 200, 100, std::span(kControls).first(3), {}, 0});
    dialog->onUnload = [&] { events.emplace_back("dialog"); };
    form->onUnload = [&] { events.emplace_back("form"); };
    desk->WhenModal(*dialog, [&] {
        EXPECT_FALSE(IsWindowEnabled(window));
        form->Close();
    });
    dialog->ShowModal(*form);
    EXPECT_EQ(events, (Lines{"dialog", "form"}));
    EXPECT_TRUE(IsWindowEnabled(window));
}

TEST_F(WindowFormTest, GivesBackEveryHandle) {
    const auto handles_after = [this](int forms) {
        for (int i = 0; i < forms; ++i) desk->windows().Create(kMain)->SetVisible(true);
        const HANDLE self = GetCurrentProcess();
        return GetGuiResources(self, GR_GDIOBJECTS) + GetGuiResources(self, GR_USEROBJECTS);
    };
    const DWORD before = handles_after(3);
    EXPECT_LE(handles_after(30), before);
}

}  // namespace
}  // namespace tamrin::test
