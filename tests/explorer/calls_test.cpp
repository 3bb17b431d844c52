#include <gtest/gtest.h>
#include <objidl.h>

#include <atomic>

#include "explorer/browser_double.h"
#include "explorer/page_double.h"
#include "explorer/window_double.h"
#include "platform/explorer/call_filter.h"
#include "platform/explorer/dispatch_object.h"
#include "platform/explorer/explorer_browser.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

TEST(DispatchObject, AnswersValuesAndTracesFailures) {
    PageWorld world;
    PageDouble& page = world.Open("");
    std::function<Variant()> value;
    const ComPtr<PageObject> object(
        new PageObject(page, nullptr, [&](const std::string& name, const EventArguments& a) {
            if (name == "MISSING") return Variant::Failure(DISP_E_MEMBERNOTFOUND);
            if (name != "JOIN") return value();
            return Variant(*a.At(0).Text() + "|" + *a.At(1).Text() + "|" + *a.At(2).Text());
        }));
    ComCalls calls;
    Strings lines;
    calls.Trace([&lines](const std::string& line) { lines.push_back(line); });
    const DispatchObject it(ComPtr<IDispatch>(object.get()),
                            std::make_shared<ObjectType>(calls, "it"));
    const auto null = static_cast<IDispatch*>(nullptr);
    const struct {
        std::function<Variant()> value;
        std::optional<std::string> text;
        std::optional<double> number;
    } rows[] = {{[] { return Variant("日本🚀"); }, "日本🚀", std::nullopt},
                {[] { return Variant("1.5"); }, "1.5", 1.5},
                {[] { return Variant(true); }, "True", -1},
                {[] { return Variant(false); }, "False", 0},
                {[] { return Variant(-7); }, "-7", -7},
                {[] { return Variant(""); }, "", std::nullopt},
                {[] { return Variant(); }, std::nullopt, std::nullopt},
                {[&] { return Variant(null); }, std::nullopt, std::nullopt},
                {[&] { return Variant(object.get()); }, std::nullopt, std::nullopt}};
    for (const auto& row : rows) {
        value = row.value;
        const Variant read = it.Get("Value");
        EXPECT_EQ(read.Text(), row.text);
        EXPECT_EQ(read.Number(), row.number);
        EXPECT_EQ(static_cast<bool>(read.Object()), &row == std::end(rows) - 1);
    }
    EXPECT_EQ(it.Call("join", Variant("a"), Variant(2), Variant(true)).Text(), "a|2|True");
    value = rows[0].value;
    world.first_number += 1000;  // the page has changed its objects
    EXPECT_EQ(it.Text("Value"), "日本🚀");
    EXPECT_EQ(lines, Strings());

    EXPECT_TRUE(it.Get("missing").Failed());
    EXPECT_FALSE(it.Put("value", Variant(1)));
    world.faults = {.failing = 0, .how = DISP_E_EXCEPTION};
    world.faults.calls = -1;  // the name is asked for first
    EXPECT_TRUE(it.Call("text").Failed());
    EXPECT_EQ(lines, (Strings{"get it.missing: 0x80020003", "put it.value: 0x80020003",
                              "call it.text: 0x80004005 駄目  "}));
    const DispatchObject none;
    EXPECT_TRUE(!none && none.Get("x").Failed() && none.Call("x").Failed() &&
                none.Text("x").empty());
}

// A browser in a program of its own, whose page asks its user and waits for the answer.
class OtherBrowserTest : public testing::Test {
protected:
    // A browser window that shows a page with an element "k".
    std::unique_ptr<ExplorerBrowser> Show(const std::string& html, bool with_box, int mode = 11) {
        browser_->page = program_.Give([&] {
            window_ = std::make_unique<BrowserWindowDouble>();
            world_ = std::make_unique<PageWorld>();
            world_->box = [this, with_box] {
                const HWND box =
                    with_box ? MakeWindow(L"#32770", window_->frame, WS_POPUP | WS_VISIBLE, {})
                             : nullptr;
                // A box handles messages, a page that hangs does not.
                const DWORD wakes = with_box ? QS_ALLINPUT : 0;
                while (MsgWaitForMultipleObjects(1, &answered_, FALSE, INFINITE, wakes)) {
                    MSG message;
                    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                        DispatchMessageW(&message);
                }
                DestroyWindow(box);
                return answer_.load();
            };
            return world_->Open(html, mode).document();
        });
        browser_->window = window_->frame;
        return std::make_unique<ExplorerBrowser>(calls, ComPtr<IWebBrowser2>(browser_.get()));
    }
    // Answers the page's question. What the page has said follows.
    std::string Answer(bool answer) {
        answer_ = answer;
        SetEvent(answered_);
        std::string said;
        program_.Do([&] { said = world_->page().said; });
        return said;
    }
    void TearDown() override {
        browser_->page = nullptr;
        // What was left behind comes back.
        bool released = false;
        EXPECT_TRUE(Pump([&] {
            program_.Do([&] { released = world_->IsReleased(); });
            return released;
        }));
        program_.Do([this] {
            world_ = nullptr;
            window_ = nullptr;
        });
        CloseHandle(answered_);
    }

    ComCalls calls;

private:
    const HANDLE answered_ = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<bool> answer_ = false;
    OtherProgram program_;
    std::unique_ptr<PageWorld> world_;
    std::unique_ptr<BrowserWindowDouble> window_;
    ComPtr<BrowserDouble> browser_{new BrowserDouble};
};

TEST_F(OtherBrowserTest, IsBusyWhileItsPageAsksItsUser) {
    const CallFilter filter(calls, {});
    const auto browser = Show("<input type=button id=k onclick=say(confirm())>", true);
    for (const auto& [answer, said] : {std::pair(true, "true"), {false, "true,false"}}) {
        const Element button = browser->document().Named("k").by_id;
        EXPECT_FALSE(browser->Busy());
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(browser->Busy());
        EXPECT_FALSE(button.click() || button.Put("value", "x"));  // nobody acts behind a box
        EXPECT_EQ(Answer(answer), said);
        EXPECT_FALSE(browser->Busy());
    }
}

TEST_F(OtherBrowserTest, TakesAFieldThatAsks) {
    const auto browser = Show("<input id=k onchange=alert()>", true, 9);
    const Element field = browser->document().Named("k").by_id;
    EXPECT_TRUE(field.Change("value", "山"));
    EXPECT_TRUE(browser->Busy());
    Answer(true);
    EXPECT_EQ(field.value(), "山");
}

TEST_F(OtherBrowserTest, IsLeftToItselfWhenTheUserStops) {
    int asked = 0;
    const CallFilter filter(calls, {.stop_requested = [&asked] { return ++asked == 3; }});
    const auto browser = Show("<input type=button id=k onclick=say(confirm())>", false);
    const Element button = browser->document().Named("k").by_id;
    EXPECT_TRUE(button.click());
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(Answer(true), "true");
}

// What COM asks of a thread whose call waits.
class CallFilterTest : public testing::Test {
protected:
    static DWORD Asked(const std::function<DWORD(IMessageFilter&)>& ask) {
        IMessageFilter* filter = nullptr;
        CoRegisterMessageFilter(nullptr, &filter);
        const DWORD answer = ask(*filter);
        IMessageFilter* none = nullptr;
        CoRegisterMessageFilter(filter, &none);
        filter->Release();
        return answer;
    }
    static DWORD Pending(DWORD waited) {
        return Asked([waited](IMessageFilter& filter) {
            return filter.MessagePending(nullptr, waited, PENDINGTYPE_TOPLEVEL);
        });
    }
    ComCalls calls;
};

TEST_F(CallFilterTest, GivesUpAfterATimeOrWhenStopped) {
    bool stop = false;
    const CallFilter filter(calls,
                            {.stop_requested = [&stop] { return stop; }, .longest_ms = 5500});
    EXPECT_EQ(Pending(5499), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(Pending(5500), PENDINGMSG_CANCELCALL);
    const auto rejected = [](DWORD waited) {
        return Asked([waited](IMessageFilter& asked) {
            return asked.RetryRejectedCall(nullptr, waited, SERVERCALL_RETRYLATER);
        });
    };
    EXPECT_EQ(rejected(4999), 100U);
    EXPECT_EQ(rejected(5000), static_cast<DWORD>(-1));
    stop = true;
    EXPECT_EQ(Pending(499), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(Pending(500), PENDINGMSG_CANCELCALL);
    EXPECT_EQ(rejected(500), static_cast<DWORD>(-1));
}

TEST_F(CallFilterTest, PaintsAndLeavesEverythingElseInTheQueue) {
    const HWND window = MakeWindow(L"TamrinTestWindow", nullptr, WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                                   {0, 0, 100, 100});
    const CallFilter filter(calls,
                            {.means_stop = [](const MSG& m) { return m.wParam == VK_ESCAPE; }});
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
