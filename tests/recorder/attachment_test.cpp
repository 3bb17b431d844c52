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

TEST(Attachment, FollowsTheFocusWhileNothingRuns) {
    VirtualClock clock;
    ScriptedWeb web{clock};
    web.pages = {{"one", ""}, {"two", ""}};
    const auto first = std::make_shared<ScriptedBrowser>(web);
    const auto second = std::make_shared<ScriptedBrowser>(web);
    first->Show("one");
    second->Show("two");
    first->handle = 255;
    second->handle = 4096;
    ScriptedWindows windows;
    windows.visible = {first, second};
    Globals globals;
    HeadlessForm form{kForm, nullptr};
    Control& url = form.Find("txtUrl");
    auto& handle = dynamic_cast<HeadlessControl&>(form.Find("txthWnd"));
    Attachment attachment{globals, windows, url, handle};
    // What is shown after one step of the poll.
    const auto poll = [&](const std::shared_ptr<Browser>& focused) {
        windows.focused = focused;
        attachment.AttachActiveBrowser();
        return url.Text() + " " + handle.Text() + (attachment.TakeChanged() ? " changed" : "");
    };

    EXPECT_EQ(poll(nullptr), " ");
    EXPECT_EQ(poll(first), "one 255 changed");
    EXPECT_EQ(poll(first), "one 255");
    handle.onDblClick();
    EXPECT_EQ(handle.Text() + handle.tip(), "FFウィンドウハンドル（16進）");
    EXPECT_EQ(poll(second), "two 1000 changed");
    handle.onDblClick();
    EXPECT_EQ(handle.Text() + handle.tip(), "4096ウィンドウハンドル（十進）");
    EXPECT_EQ(poll(nullptr), "two 4096") << "the user has turned to another program";
    url.onClick();
    handle.onClick();
    EXPECT_EQ(second->brought_to_front, 2);
    globals.activity = "rec";
    EXPECT_EQ(poll(first), "two 4096");
    globals.activity.clear();
    second->Show("one");
    EXPECT_EQ(poll(second), "one 4096 changed");
    second->Die();
    EXPECT_EQ(poll(nullptr), "  changed");
    handle.onDblClick();
    EXPECT_EQ(handle.Text(), "");
    windows.visible.clear();
    url.SetText("order.csv");
    EXPECT_EQ(poll(nullptr), " ");
}

}  // namespace
}  // namespace tamrin::test
