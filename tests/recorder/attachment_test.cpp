#include "recorder/attachment.h"

#include <gtest/gtest.h>

#include "platform/headless/headless_controls.h"
#include "support/scripted_user.h"

namespace tamrin::test {
namespace {

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kTextBox, "txtUrl"},
    {ControlKind::kTextBox, "txthWnd"},
});
const FormSpec kForm{"frm", "", 100, 100, kControls};

class AttachmentTest : public testing::Test {
protected:
    AttachmentTest() {
        for (const char* address : {"one", "two"}) web.pages[address] = "";
        first->Show("one");
        second->Show("two");
        first->handle = 255;
        second->handle = 4096;
        windows.visible = {first, second};
    }
    // What is shown after one step of the poll.
    std::string Poll() {
        attachment.AttachActiveBrowser();
        return url.Text() + " " + handle.Text() + (attachment.TakeChanged() ? " changed" : "");
    }

    VirtualClock clock;
    ScriptedWeb web{clock};
    std::shared_ptr<ScriptedBrowser> first = std::make_shared<ScriptedBrowser>(web);
    std::shared_ptr<ScriptedBrowser> second = std::make_shared<ScriptedBrowser>(web);
    ScriptedWindows windows;
    Globals globals;
    HeadlessForm form{kForm, nullptr};
    Control& url = form.Find("txtUrl");
    Control& handle = form.Find("txthWnd");
    Attachment attachment{globals, windows, url, handle};
};

TEST_F(AttachmentTest, AttachesTheWindowWithTheFocusUntilAllAreClosed) {
    EXPECT_EQ(Poll(), " ") << "none has the focus";
    windows.focused = first;
    EXPECT_EQ(Poll(), "one 255 changed");
    EXPECT_EQ(Poll(), "one 255");
    windows.focused = second;
    EXPECT_EQ(Poll(), "two 4096 changed");
    windows.focused = nullptr;  // the user has turned to another program
    EXPECT_EQ(Poll(), "two 4096");
    second->Show("one");
    windows.focused = second;
    EXPECT_EQ(Poll(), "one 4096 changed");
    windows.focused = nullptr;
    second->Die();
    EXPECT_EQ(Poll(), "  changed");
    windows.visible.clear();
    url.SetText("order.csv");
    EXPECT_EQ(Poll(), " ");
}

TEST_F(AttachmentTest, KeepsTheWindowWhileSomethingRuns) {
    windows.focused = first;
    Poll();
    globals.activity = "rec";
    windows.focused = second;
    windows.focus_questions = 0;
    EXPECT_EQ(Poll(), "one 255");
    EXPECT_EQ(windows.focus_questions, 0);
}

TEST_F(AttachmentTest, ShowsTheHandleInEitherRadix) {
    auto* const box = dynamic_cast<HeadlessControl*>(&handle);
    windows.focused = first;
    Poll();
    handle.onDblClick();
    EXPECT_EQ(handle.Text(), "FF");
    EXPECT_EQ(box->tip(), "ウィンドウハンドル（16進）");
    windows.focused = second;
    EXPECT_EQ(Poll(), "two 1000 changed");
    handle.onDblClick();
    EXPECT_EQ(handle.Text(), "4096");
    EXPECT_EQ(box->tip(), "ウィンドウハンドル（十進）");
    url.onClick();
    handle.onClick();
    EXPECT_EQ(second->brought_to_front, 2);
}

}  // namespace
}  // namespace tamrin::test
