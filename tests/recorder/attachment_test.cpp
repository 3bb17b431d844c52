#include "recorder/attachment.h"

#include <gtest/gtest.h>

#include "platform/headless/headless_controls.h"
#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

TEST(Attachment, FollowsTheFocusWhileNothingRuns) {
    VirtualClock clock;
    ScriptedWeb web{clock};
    web.pages = {{"one", ""}, {"two", ""}};
    const auto first = std::make_shared<ScriptedBrowser>(web);
    const auto second = std::make_shared<ScriptedBrowser>(web);
    first->Show("one");
    second->Show("two");
    ScriptedWindows windows;
    windows.visible = {first, second};
    Globals globals;
    HeadlessForm form{FormSpec{"frm", "", 100, 100, {}}, nullptr};
    HeadlessControl url{form, ControlSpec{ControlKind::kTextBox, "txtUrl"}};
    HeadlessControl handle{form, ControlSpec{ControlKind::kTextBox, "txthWnd"}};
    Attachment attachment{globals, windows, url, handle};
    // What is shown after one step of the poll.
    const auto poll = [&](const std::shared_ptr<Browser>& focused) {
        windows.focused = focused;
        attachment.AttachActiveBrowser();
        return url.Text() + " " + handle.Text() + (attachment.TakeChanged() ? " changed" : "");
    };

    handle.onDblClick();
    EXPECT_EQ(poll(nullptr) + handle.tip(), " ウィンドウハンドル（16進）");
    EXPECT_EQ(poll(first), "one AF changed");
    handle.onDblClick();
    EXPECT_EQ(poll(first) + handle.tip(), "one 175ウィンドウハンドル（十進）");
    EXPECT_EQ(poll(second), "two 175 changed");
    EXPECT_EQ(poll(nullptr), "two 175") << "the user has turned to another program";
    url.onClick();
    handle.onClick();
    EXPECT_EQ(second->brought_to_front, 2);
    globals.activity = "rec";
    EXPECT_EQ(poll(first), "two 175");
    globals.activity.clear();
    second->Show("one");
    EXPECT_EQ(poll(second), "one 175 changed");
    second->Die();
    EXPECT_EQ(poll(nullptr), "  changed");
    windows.visible.clear();
    url.SetText("order.csv");
    EXPECT_EQ(poll(nullptr), " ");
}

}  // namespace
}  // namespace tamrin::test
