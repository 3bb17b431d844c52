#include "platform/windows/window_form.h"

#include "system/form_rig.h"

namespace tamrin::test {
namespace {

class WindowFormTest : public FormTest {
protected:
    const HWND window = Desk::WindowOf(*form);
};

TEST_F(WindowFormTest, SendsEachKeyToItsButtonTextOrMenu) {
    form->List("lstLines").SetLines({"a"});
    form->List("lstLines").onDblClick = [&] { events.emplace_back("Enter"); };
    form->Combo("cmbTime").SetItems({"3", "5"});
    const struct {
        const char* focus;
        WORD key;
        const char* event;
        WORD held = Desk::kNoKey;
    } rows[] = {
        {"txtName", VK_RETURN, "cmdOk"},      {"txtName", VK_ESCAPE, "cmdCancel"},
        {"cmdGo", VK_RETURN, "cmdGo"},        {"txtAll", VK_RETURN, "txtAll=\r\n"},
        {"lstLines", VK_RETURN, "Enter"},     {"txtName", 'C', "", VK_CONTROL},
        {"txtName", VK_DELETE, "txtName="},   {"lstLines", 'C', "mnuCopy", VK_CONTROL},
        {"lstLines", VK_DELETE, "mnuDelete"}, {"lstLines", VK_F5, "mnuStop", VK_SHIFT},
        {"cmbTime", VK_DOWN, "cmbTime=3"},    {"cmbTime", VK_DOWN, "cmbTime=5"},
        {"txtTab", VK_TAB, "txtTab=\t"},      {"txtAll", VK_TAB, ""},
    };
    for (const auto& row : rows) {
        events.assign(1, "");
        Find(row.focus).SetFocus();
        desk.Strike(row.key, row.held);
        EXPECT_EQ(events.back(), row.event) << row.focus << ' ' << row.key;
    }
    EXPECT_TRUE(Find("txtTab").Focused());
    desk.Strike(VK_TAB, VK_CONTROL);
    EXPECT_TRUE(Find("cmbTime").Focused());
    EXPECT_EQ(desk.windows.ClipboardText(), "最初");
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(events.back(), "cmdCancel");
    EXPECT_TRUE(form->Visible());
}

TEST_F(WindowFormTest, ScalesWithTheMonitor) {
    const RECT proposed{50, 50, 850, 700};
    SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&proposed));
    RECT button{};
    GetWindowRect(Desk::WindowOf(Find("cmdGo")), &button);
    EXPECT_EQ(button.right - button.left, 120);
    EXPECT_EQ(Find("cmdGo").GetPlace().width, 80);
    EXPECT_EQ(form->GetPlace().width, 800);
    // What is outside, because of the larger scale or of a monitor that is gone, comes back.
    const Place screen = desk.windows.Screen();
    SetWindowPos(window, nullptr, screen.width - 500, -5000, 500, 300, 0);
    SendMessageW(window, WM_DISPLAYCHANGE, 32, 0);
    EXPECT_EQ(form->GetPlace().left + form->GetPlace().width, screen.width);
    EXPECT_TRUE(form->GetPlace().top == 0 && form->GetPlace().width > 600);
}

TEST_F(WindowFormTest, IsDisabledBehindAModalFormAndClosesItFirst) {
    const auto dialog =
        desk.windows.Create({"frmFront", "前", 200, 100, std::span(kControls).first(3), {}, 0});
    dialog->onQueryUnload = [&] {
        events.emplace_back("query");
        return events.size() > 1;
    };
    dialog->onUnload = [&] { events.emplace_back("dialog"); };
    form->onUnload = [&] { events.emplace_back("form"); };
    Find("Timer1").onTimer = [&] {
        EXPECT_FALSE(IsWindowEnabled(window) || form->Close());
        EXPECT_TRUE(form->Close());
    };
    Find("Timer1").SetEnabled(true);
    dialog->ShowModal(*form);
    EXPECT_EQ(events, (Lines{"query", "query", "dialog", "form"}));
    EXPECT_TRUE(IsWindowEnabled(window));
}

}  // namespace
}  // namespace tamrin::test
