#include <objidl.h>

#include <atomic>

#include "explorer/explorer_rig.h"
#include "platform/explorer/call_filter.h"

namespace tamrin::test {
namespace {

using CallsTest = ExplorerTest;

TEST_F(CallsTest, AreTracedWhenTheyFailAndAskAgainForNumbers) {
    const Document shown = Open("<input id=a value=v>");
    const Element a = shown.Named("a").by_id;
    EXPECT_EQ(a.id(), "a");
    world.first_number += 1000;  // the page has changed its objects
    EXPECT_EQ(a.id(), "a");
    trace.clear();
    world.faults = {.calls = -1, .failing = 0, .how = DISP_E_EXCEPTION};  // the name comes first
    EXPECT_EQ(a.selectedIndex() + a.Get("src"), "");
    EXPECT_EQ(trace, Strings{"get INPUT.src: 0x80004005 駄目  "});
}

// Each call of each object of the browser fails once: nothing crashes, and nothing is kept.
TEST_F(CallsTest, LoseNothingWhenAnyOfThemFails) {
    constexpr HRESULT kFailures[] = {E_FAIL,
                                     E_ACCESSDENIED,
                                     RPC_E_DISCONNECTED,
                                     RPC_E_CALL_REJECTED,
                                     DISP_E_UNKNOWNNAME,
                                     DISP_E_MEMBERNOTFOUND,
                                     DISP_E_EXCEPTION,
                                     S_FALSE /* Null, or no answer */};
    const auto drive = [this](int mode) {
        const Document shown = Open(
            "<form id=f><input id=a value=v><select id=s><option>x</select><button id=b></button>"
            "</form><a id=l href=x>l</a><iframe id=i></iframe><input type=checkbox>",
            mode);
        Log log(*browser, shown);
        log.during = [&log](const std::string&) {
            const Element active = log.page.activeElement();
            for (const Element& e : {active, active.form(), active.DefaultButton()})
                e.getAttribute("alt");
        };
        page->Focus(El("a"));
        page->Fire(&El("a"), "onkeypress", 13);
        it->Fire(DISPID_BEFORENAVIGATE2, "http://site/next");
        it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/next");
        browser->DeliverEvents();
        browser->SetPlace({});
        browser->SetBars({});
        browser->State();
        shown.links();
        for (const Frame& frame : shown.frames()) frame.document.Named("x");
        const Element select = shown.Named("s").by_id;
        select.OptionTexts();
        select.Put("selectedIndex", "1");
        if (mode > 9) select.fireEvent("onchange");  // costs a thread
        browser->Busy();
        browser->Navigate("http://site/");
        it->Fire(DISPID_NAVIGATECOMPLETE2, "http://site/next");
        browser->Quit();
        browser->DeliverEvents();
    };
    for (const int mode : {11, 7}) {
        int all = 1;
        for (int call = -1; call < all; ++call) {
            const auto row = static_cast<std::size_t>(call + mode) % std::size(kFailures);
            SCOPED_TRACE(testing::Message() << "call " << call << " fails as " << row);
            world.faults = {.failing = call, .how = kFailures[row]};
            drive(mode);
            if (call < 0) all = world.faults.calls;
            browser = nullptr;
            it = nullptr;
            ASSERT_EQ(ObjectDouble::alive, 0);
        }
        EXPECT_GT(all, 100);
    }
}

// A browser in a program of its own, whose page asks its user and waits for the answer.
class OtherBrowserTest : public CallsTest {
protected:
    // A page with an element "k"; without a box it hangs while it waits.
    Element Show(const std::string& html, bool with_box, int mode = 11) {
        const auto shown = program.Give([&] {
            world.box = [this, with_box] {
                const HWND frame = program.window->frame;
                const HWND box = with_box ? MakeWindow(L"#32770", frame, WS_POPUP) : nullptr;
                const DWORD wakes = with_box ? QS_ALLINPUT : 0;
                while (MsgWaitForMultipleObjects(1, &answered, FALSE, INFINITE, wakes)) {
                    MSG message;
                    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                        DispatchMessageW(&message);
                }
                DestroyWindow(box);
                return answer.load();
            };
            return world.Open(html, mode).document();
        });
        it = ComPtr<BrowserDouble>(new BrowserDouble(world.faults));
        it->is["Document"] = Variant(shown.get());
        it->SetWindow(program.window->frame);
        browser = std::make_unique<ExplorerBrowser>(calls, Called(it));
        return browser->document().Named("k").by_id;
    }
    // Answers the page's question. What the page has said follows.
    std::string Answer(bool yes) {
        answer = yes;
        SetEvent(answered);
        std::string said;
        program.window->Do([&] { said = world.pages.back()->said; });
        return said;
    }
    void TearDown() override {
        browser = nullptr;
        it = nullptr;
        // What was left behind comes back.
        EXPECT_TRUE(Pump([&] {
            int left = 0;
            program.window->Do([&] { left = ObjectDouble::alive; });
            return left == 0;
        }));
        CloseHandle(answered);
    }

    HANDLE answered = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<bool> answer = false;
    OtherProgram program;
};

TEST_F(OtherBrowserTest, IsBusyWhileItsPageAsksItsUser) {
    const CallFilter filter(calls, {});
    const Element button = Show("<input type=button id=k onclick=ask onchange=ask>", true, 9);
    std::string said;
    for (const bool yes : {true, false}) {
        EXPECT_FALSE(browser->Busy());
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(browser->Busy());
        EXPECT_FALSE(button.click() || button.Put("value", "x"));  // nobody acts behind a box
        EXPECT_EQ(Answer(yes), said += yes ? "yes " : "no ");
    }
    EXPECT_TRUE(button.Change("value", "山"));
    EXPECT_TRUE(browser->Busy());
    Answer(true);
    EXPECT_EQ(button.value(), "山");
}

TEST_F(OtherBrowserTest, IsLeftToItselfWhenTheUserStops) {
    int asked = 0;
    const CallFilter filter(calls,
                            {.stop_requested = [&asked] { return ++asked == 3; }, .window_ms = 10});
    const Element button = Show("<input type=button id=k onclick=ask>", false);
    EXPECT_TRUE(button.click());
    EXPECT_EQ(asked, 3);
    EXPECT_FALSE(GetDocumentFromWindow(calls, program.window->content));
    EXPECT_EQ(Answer(true), "yes ");
}

// What COM asks of a thread whose call waits.
DWORD Asked(const std::function<DWORD(IMessageFilter&)>& ask) {
    IMessageFilter* filter = nullptr;
    CoRegisterMessageFilter(nullptr, &filter);
    const DWORD answer = ask(*filter);
    IMessageFilter* none = nullptr;
    CoRegisterMessageFilter(filter, &none);
    filter->Release();
    return answer;
}
DWORD Pending(DWORD waited) {
    return Asked([waited](IMessageFilter& filter) {
        return filter.MessagePending(nullptr, waited, PENDINGTYPE_TOPLEVEL);
    });
}
DWORD Rejected(DWORD waited) {
    return Asked([waited](IMessageFilter& filter) {
        return filter.RetryRejectedCall(nullptr, waited, SERVERCALL_RETRYLATER);
    });
}

TEST_F(CallsTest, EndAfterATimeOrWhenStopped) {
    constexpr auto kGiveUp = static_cast<DWORD>(-1);
    bool stop = false;
    const CallFilter filter(calls,
                            {.stop_requested = [&stop] { return stop; }, .longest_ms = 5500});
    EXPECT_EQ(Pending(5499), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(Pending(5500), PENDINGMSG_CANCELCALL);
    EXPECT_EQ(Rejected(4999), 100U);
    EXPECT_EQ(Rejected(5000), kGiveUp);
    stop = true;
    EXPECT_EQ(Pending(499), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(Pending(500), PENDINGMSG_CANCELCALL);
    EXPECT_EQ(Rejected(500), kGiveUp);
}

TEST_F(CallsTest, PaintAndLeaveEverythingElseInTheQueue) {
    const HWND window =
        MakeWindow(L"TamrinTestWindow", nullptr, WS_OVERLAPPEDWINDOW, {0, 0, 100, 100});
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

// The thread of the tests is an apartment, as that of the program is.
class ApartmentOfTests : public testing::Environment {
    void SetUp() override { apartment_.emplace(); }
    void TearDown() override { apartment_.reset(); }
    std::optional<Apartment> apartment_;
};
const auto* const apartment = testing::AddGlobalTestEnvironment(new ApartmentOfTests);

}  // namespace
}  // namespace tamrin::test
