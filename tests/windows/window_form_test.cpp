#include "platform/windows/window_form.h"

#include <gtest/gtest.h>

#include <array>

#include "windows/windows_desk.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kButton, "cmdGo", -1, "実行", "実行します。", {8, 8, 80, 26}},
    {ControlKind::kButton, "cmdOk", -1, "OK", "", {96, 8, 80, 26}, kFixed, kDefault},
    {ControlKind::kButton, "cmdCancel", -1, "キャンセル", "", {184, 8, 80, 26}, kFixed, kCancel},
    {ControlKind::kTextBox, "txtName", -1, "", "", {8, 40, 200, 22}},
    {ControlKind::kTextBox, "txtAll", -1, "", "", {8, 70, 200, 60}, kFixed, kMultiLine},
    {ControlKind::kListBox, "lstLines", -1, "", "", {8, 140, 300, 60}, kFixed, kMultiSelect},
    {ControlKind::kComboBox, "cmbTime", -1, "", "", {216, 40, 80, 24}},
    {ControlKind::kSplitter, "split", -1, "", "", {8, 132, 300, 6}},
});

constexpr auto kMenus = std::to_array<MenuSpec>({
    {0, "mnuEdit", "編集(&E)"},
    {1, "mnuDelete", "行削除", "Del"},
    {1, "mnuCopy", "コピー", "Ctrl+C"},
});

const FormSpec kMain{"frmReal", "題名", 320, 220, kControls, kMenus, kResizable};

class WindowFormTest : public testing::Test {
protected:
    void SetUp() override {
        form->SetPlace({50, 50, 500, 400});
        form->SetVisible(true);
        SetForegroundWindow(window);
        desk.Pass(100);
        for (const char* name : {"cmdGo", "cmdOk", "cmdCancel", "mnuDelete", "mnuCopy"}) {
            form->Find(name).onClick = [this, name] { events.emplace_back(name); };
        }
    }

    HWND WindowOf(std::string_view name) { return WindowsDesk::WindowOf(form->Find(name)); }

    WindowsDesk desk;
    const std::unique_ptr<Form> form = desk.windows().Create(kMain);
    const HWND window = WindowsDesk::WindowOf(*form);
    Lines events;
};

TEST_F(WindowFormTest, SendsEnterAndEscToTheirButtons) {
    form->Find("txtName").SetFocus();
    desk.Strike(VK_RETURN);
    desk.Strike(VK_ESCAPE);
    form->Find("cmdGo").SetFocus();
    desk.Strike(VK_RETURN);
    PostMessageW(window, WM_CLOSE, 0, 0);
    desk.Pass(50);
    EXPECT_EQ(events, (Lines{"cmdOk", "cmdCancel", "cmdGo", "cmdCancel"}));
    EXPECT_TRUE(form->Visible());

    form->Find("txtAll").SetFocus();
    desk.Strike(VK_RETURN);
    EXPECT_EQ(form->Find("txtAll").Text(), "\r\n");
    form->List("lstLines").SetLines({"a"});
    form->List("lstLines").onDblClick = [&] { events.emplace_back("Enter"); };
    form->List("lstLines").SetFocus();
    desk.Strike(VK_RETURN);
    EXPECT_EQ(events.back(), "Enter");
}

TEST_F(WindowFormTest, LeavesTheKeysOfATextToIt) {
    form->Find("txtName").SetText("abc");
    form->Find("txtName").SetFocus();
    desk.Strike('C', {VK_CONTROL});
    desk.Strike(VK_DELETE);
    EXPECT_EQ(form->Find("txtName").Text(), "");
    EXPECT_EQ(desk.windows().ClipboardText(), "abc");
    EXPECT_EQ(events, Lines{});
    form->List("lstLines").SetFocus();
    desk.Strike('C', {VK_CONTROL});
    desk.Strike(VK_DELETE);
    EXPECT_EQ(events, (Lines{"mnuCopy", "mnuDelete"}));
}

TEST_F(WindowFormTest, TellsOfTypingAndChoosing) {
    int changes = 0;
    form->Find("txtName").onChange = [&] { ++changes; };
    SendMessageW(WindowOf("txtName"), WM_CHAR, L'髙', 0);
    EXPECT_EQ(form->Find("txtName").Text(), "髙");
    EXPECT_EQ(changes, 1);

    ComboBox& combo = form->Combo("cmbTime");
    combo.SetItems({"3", "5"});
    combo.onChange = [&] { events.push_back(combo.Text()); };
    combo.SetFocus();
    desk.Strike(VK_DOWN);
    desk.Strike(VK_DOWN);
    EXPECT_EQ(events, (Lines{"3", "5"}));
}

TEST_F(WindowFormTest, FollowsTheKeyboardThroughAList) {
    ListBox& list = form->List("lstLines");
    Lines lines;
    for (int i = 0; i < 70000; ++i) lines.push_back("行 " + std::to_string(i));
    list.SetLines(lines);
    std::vector<int> current;
    list.onClick = [&] { current.push_back(list.ListIndex()); };
    list.SetListIndex(69997);
    list.SetFocus();
    desk.Strike(VK_DOWN);
    desk.Strike(VK_UP, {VK_SHIFT});
    EXPECT_EQ(current, (std::vector<int>{69997, 69998, 69997}));
    EXPECT_TRUE(list.Selected(69997) && list.Selected(69998));

    // The right button on a line further up: it is meant, and nothing else is told.
    RECT line{};
    SendMessageW(WindowOf("lstLines"), LB_GETITEMRECT, 69996, reinterpret_cast<LPARAM>(&line));
    SendMessageW(WindowOf("lstLines"), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, line.top + 2));
    EXPECT_EQ(list.ListIndex(), 69996);
    EXPECT_TRUE(list.Selected(69996) && !list.Selected(69998));
    EXPECT_EQ(current.size(), 3U);
}

TEST_F(WindowFormTest, GivesTheKeyboardOnWhenAControlIsDisabled) {
    form->Find("cmdGo").SetFocus();
    EXPECT_TRUE(form->Find("cmdGo").Focused());
    form->Find("cmdGo").SetEnabled(false);
    EXPECT_TRUE(form->Find("cmdOk").Focused());
    form->Find("cmdOk").SetVisible(false);
    EXPECT_TRUE(form->Find("cmdCancel").Focused());
}

TEST_F(WindowFormTest, DragsASplitter) {
    int changes = 0;
    form->Find("split").onChange = [&] { ++changes; };
    const HWND splitter = WindowOf("split");
    SendMessageW(splitter, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 3));
    SendMessageW(splitter, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, 23));
    EXPECT_EQ(form->Find("split").GetPlace().top, 152);
    SendMessageW(splitter, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(10, -5000));
    EXPECT_EQ(form->Find("split").GetPlace().top, 0);
    SendMessageW(splitter, WM_LBUTTONUP, 0, 0);
    SendMessageW(splitter, WM_MOUSEMOVE, 0, MAKELPARAM(10, 50));
    EXPECT_EQ(changes, 2);
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
    EXPECT_EQ(form->Find("cmdGo").GetPlace().width, 80);
    EXPECT_EQ(form->GetPlace().width, 800);
}

TEST_F(WindowFormTest, KeepsItsPlaceWhileMinimised) {
    const Place before = form->GetPlace();
    ShowWindow(window, SW_MINIMIZE);
    desk.Pass(100);
    EXPECT_EQ(form->GetPlace().left, before.left);
    EXPECT_EQ(form->GetPlace().width, before.width);
    EXPECT_EQ(form->Find("cmdGo").GetPlace().width, 80);
}

TEST_F(WindowFormTest, IsDisabledBehindAModalFormAndClosesItFirst) {
    const auto dialog =
        desk.windows().Create({"frmFront", "前", 200, 100, std::span(kControls).first(3), {}, 0});
    dialog->onUnload = [&] { events.emplace_back("dialog"); };
    form->onUnload = [&] { events.emplace_back("form"); };
    desk.WhenModal(*dialog, [&] {
        EXPECT_FALSE(IsWindowEnabled(window));
        form->Close();
    });
    dialog->ShowModal(*form);
    EXPECT_EQ(events, (Lines{"dialog", "form"}));
    EXPECT_TRUE(IsWindowEnabled(window));
}

TEST(WindowForm, GivesBackEveryHandle) {
    WindowsDesk desk;
    const auto open = [&desk](int times) {
        for (int i = 0; i < times; ++i) desk.windows().Create(kMain)->SetVisible(true);
    };
    open(3);
    const DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    open(30);
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdi);
    EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), user);
}

}  // namespace
}  // namespace tamrin::test
