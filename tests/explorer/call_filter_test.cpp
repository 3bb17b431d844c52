#include "platform/explorer/call_filter.h"

#include <gtest/gtest.h>
#include <objidl.h>

#include <atomic>

#include "explorer/browser_double.h"
#include "explorer/other_program.h"
#include "explorer/page_world.h"
#include "explorer/window_double.h"
#include "platform/explorer/screen_windows.h"
#include "platform/explorer/explorer_browser.h"

namespace tamrin::test {
namespace {

// A browser in a program of its own. Its page's boxes are real windows that want an answer.
class OtherBrowserTest : public testing::Test {
protected:
    // A browser window that shows a page with an element "k".
    std::unique_ptr<ExplorerBrowser> Show(const std::string& html, int mode = 11) {
        browser_ = ComPtr<BrowserDouble>(new BrowserDouble);
        browser_->page = program_.Give([&] {
            window_ = std::make_unique<BrowserWindowDouble>();
            world_ = std::make_unique<PageWorld>();
            world_->box = [this](const std::string&) { return window_->ShowBox(); };
            return world_->Open(html, mode);
        });
        browser_->window = window_->frame;
        return std::make_unique<ExplorerBrowser>(calls, ComPtr<IWebBrowser2>(browser_.get()));
    }
    std::string Said() {
        std::string said;
        program_.Do([&] { said = world_->Ask("page.__said.join()"); });
        return said;
    }
    // From now on the page hangs at its questions, without a box, until it is over.
    void Hang(const std::atomic<bool>& over) {
        world_->box = [&over](const std::string&) {
            while (!over) Sleep(5);
            return true;
        };
    }
    void Answer(WPARAM key) {
        ASSERT_TRUE(BoxOf(window_->frame));
        PostMessageW(BoxOf(window_->frame), WM_KEYDOWN, key, 0);
        EXPECT_TRUE(OtherProgram::Pump([this] { return !BoxOf(window_->frame); }));
    }
    void TearDown() override {
        browser_ = nullptr;
        OtherProgram::Pump([] { return false; }, 100);  // what was left behind comes back
        program_.Do([this] {
            EXPECT_EQ(world_->objects.alive.size(), 0U);
            world_ = nullptr;
            window_ = nullptr;
        });
    }

    ComCalls calls;

private:
    OtherProgram program_;
    std::unique_ptr<PageWorld> world_;
    std::unique_ptr<BrowserWindowDouble> window_;
    ComPtr<BrowserDouble> browser_;
};

TEST_F(OtherBrowserTest, IsBusyWhileItsPageAsksItsUser) {
    const CallFilter filter(calls, {});
    const auto browser = Show("<input type=button id=k onclick=\"say(confirm('?'))\">");
    for (const auto& [key, said] : {std::pair(VK_RETURN, "true"), {VK_ESCAPE, "true,false"}}) {
        const Element button = browser->document().Named("k").by_id;
        EXPECT_FALSE(browser->Busy());
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(browser->Busy());
        EXPECT_FALSE(button.click() || button.Put("value", "x"));  // nobody acts behind a box
        Answer(static_cast<WPARAM>(key));
        EXPECT_TRUE(OtherProgram::Pump([&] { return Said() == said; })) << Said();
        EXPECT_FALSE(browser->Busy());
    }
}

TEST_F(OtherBrowserTest, TellsOfAFieldThatAsks) {
    const auto browser = Show("<input id=k onchange='alert(1)'>", 9);
    const Element field = browser->document().Named("k").by_id;
    EXPECT_TRUE(field.Change("value", "山"));
    EXPECT_TRUE(browser->Busy());
    Answer(VK_RETURN);
    EXPECT_EQ(field.value(), "山");
}

TEST_F(OtherBrowserTest, IsLeftToItselfWhenTheUserStops) {
    std::atomic<int> asked = 0;
    const CallFilter filter(calls, {.stop_requested = [&asked] { return ++asked == 3; }});
    const auto browser = Show("<input type=button id=k onclick=\"say(confirm('?'))\">");
    std::atomic<bool> over = false;
    Hang(over);
    const Element button = browser->document().Named("k").by_id;
    EXPECT_TRUE(button.click());
    EXPECT_EQ(asked, 3);
    over = true;
    EXPECT_TRUE(OtherProgram::Pump([&] { return Said() == "true"; }));
}

// What the component model asks of whoever waits.
class CallFilterTest : public testing::Test {
protected:
    static DWORD Pending(DWORD waited) {
        IMessageFilter* filter = nullptr;
        CoRegisterMessageFilter(nullptr, &filter);
        const DWORD answer = filter->MessagePending(nullptr, waited, PENDINGTYPE_TOPLEVEL);
        IMessageFilter* none = nullptr;
        CoRegisterMessageFilter(filter, &none);
        filter->Release();
        return answer;
    }
    ComCalls calls;
};

TEST_F(CallFilterTest, GivesUpAfterATimeOrWhenStopped) {
    bool stop = false;
    const CallFilter filter(calls,
                            {.stop_requested = [&stop] { return stop; }, .longest_ms = 5000});
    EXPECT_EQ(Pending(4999), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(Pending(5000), PENDINGMSG_CANCELCALL);
    stop = true;
    EXPECT_EQ(Pending(499), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(Pending(500), PENDINGMSG_CANCELCALL);
}

TEST_F(CallFilterTest, LeavesTheKeyThatStopsInTheQueueAndHandlesNothing) {
    const HWND window = MakeWindow(L"TamrinTestWindow", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                   {0, 0, 100, 100});
    const CallFilter filter(calls,
                            {.means_stop = [](const MSG& m) { return m.wParam == VK_ESCAPE; }});
    OtherProgram::Pump([] { return false; }, 50);
    InvalidateRect(window, nullptr, TRUE);
    PostMessageW(window, WM_APP, 7, 0);
    EXPECT_EQ(Pending(0), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));  // painted
    PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(Pending(0), PENDINGMSG_CANCELCALL);
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, window, WM_APP, WM_APP, PM_REMOVE));
    EXPECT_TRUE(PeekMessageW(&message, window, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
    DestroyWindow(window);
}
}  // namespace
}  // namespace tamrin::test
