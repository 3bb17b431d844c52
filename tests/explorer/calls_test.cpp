#include <objidl.h>

#include <atomic>
#include <chrono>
#include <future>

#include "explorer/explorer_rig.h"
#include "platform/explorer/call_filter.h"

namespace tamrin::test {
namespace {

using CallsTest = ExplorerTest;

TEST_F(CallsTest, AreTracedWhenTheyFailAndAskAgainForNumbers) {
    Strings trace;
    calls.Trace([&trace](const std::string& line) { trace.push_back(line); });
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
        it->Tell(DISPID_BEFORENAVIGATE2, "http://site/next");
        it->Tell(DISPID_DOCUMENTCOMPLETE, "http://site/next");
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
        it->Tell(DISPID_NAVIGATECOMPLETE2, "http://site/next");
        browser->Quit();
        browser->DeliverEvents();
    };
    for (const int mode : {11, 7}) {
        world.faults = {};
        drive(mode);
        const int all = world.faults.calls;
        EXPECT_GT(all, 100);
        int first = 0;
        // The last one is Null, or no answer.
        for (const HRESULT how :
             {E_FAIL, E_ACCESSDENIED, RPC_E_DISCONNECTED, RPC_E_CALL_REJECTED, DISP_E_UNKNOWNNAME,
              DISP_E_MEMBERNOTFOUND, DISP_E_EXCEPTION, S_FALSE}) {
            for (int call = first++; call < all; call += 8) {
                SCOPED_TRACE(testing::Message() << "call " << call << " fails as " << how);
                world.faults = {.failing = call, .how = how};
                drive(mode);
                browser = nullptr;
                it = nullptr;
                ASSERT_EQ(ObjectDouble::alive, 0);
            }
        }
    }
}

// A browser in a program of its own, whose page asks its user and waits for the answer. Calls to
// the page are marshaled, and wait while the program does not handle its messages.
class OtherBrowserTest : public CallsTest {
protected:
    // Shows a page with an element "k". Without a box the program hangs while the page asks.
    Element Show(const std::string& html, bool with_box, int mode = 11) {
        IStream* packed = nullptr;
        program = std::async(std::launch::async, [=, this, &packed] {
            const Apartment its_apartment;
            const BrowserWindowDouble shown;
            window = &shown;
            world.box = [this, with_box] {
                const HWND frame = window->frame;
                const HWND box = with_box ? MakeWindow(L"#32770", frame, WS_POPUP) : nullptr;
                if (with_box) Pump([this] { return answer != kNone; });
                while (answer == kNone) Sleep(1);
                DestroyWindow(box);
                return answer.exchange(kNone) == kYes;
            };
            page = &world.Open(html, mode);
            CoMarshalInterThreadInterfaceInStream(IID_IDispatch, page->document().get(), &packed);
            state = kShown;
            while (!Pump([this] { return state == kEnding; })) continue;
        });
        Pump([this] { return state == kShown; });
        ComPtr<IDispatch> document;
        CoGetInterfaceAndReleaseStream(packed, IID_IDispatch,
                                       reinterpret_cast<void**>(document.Out()));
        it = ComPtr<BrowserDouble>(new BrowserDouble(world.faults));
        it->is["Document"] = Variant(document.get());
        it->SetWindow(window->frame);
        browser = std::make_unique<ExplorerBrowser>(calls, Called(it));
        return browser->document().Named("k").by_id;
    }
    // Ends the program. What its page has said follows.
    std::string End() {
        browser = nullptr;
        it = nullptr;
        // What was left behind comes back.
        EXPECT_TRUE(Pump([] { return ObjectDouble::alive == 0; }));
        state = kEnding;
        Pump([this] { return program.wait_for(std::chrono::seconds(0)) != kRuns; });
        return page->said;
    }

    static constexpr auto kRuns = std::future_status::timeout;
    enum { kStarting, kShown, kEnding };
    std::atomic<int> state = kStarting;
    enum { kNone, kYes, kNo };
    std::atomic<int> answer = kNone;
    const BrowserWindowDouble* window = nullptr;
    std::future<void> program;
};

TEST_F(OtherBrowserTest, IsBusyWhileItsPageAsksItsUser) {
    const CallFilter filter(calls, {});
    Element button = Show("<input type=button id=k onclick=ask onchange=ask>", true, 9);
    for (const int reply : {kYes, kNo}) {
        EXPECT_TRUE(Pump([this] { return !browser->Busy(); }));
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(browser->Busy());
        EXPECT_FALSE(button.click() || button.Put("value", "x"));  // nobody acts behind a box
        answer = reply;
    }
    EXPECT_TRUE(Pump([this] { return !browser->Busy(); }));
    EXPECT_TRUE(button.Change("value", "山"));
    EXPECT_TRUE(browser->Busy());
    answer = kYes;
    EXPECT_EQ(button.value(), "山");
    button = {};
    EXPECT_EQ(End(), "yes no yes ");
}

TEST_F(OtherBrowserTest, IsLeftToItselfWhenTheUserStops) {
    int asked = 0;
    const CallFilter filter(calls,
                            {.stop_requested = [&asked] { return ++asked == 3; }, .window_ms = 10});
    Element button = Show("<input type=button id=k onclick=ask>", false);
    EXPECT_TRUE(button.click());
    EXPECT_EQ(asked, 3);
    EXPECT_FALSE(GetDocumentFromWindow(calls, window->content));
    answer = kYes;
    button = {};
    EXPECT_EQ(End(), "yes ");
}

TEST_F(CallsTest, PaintAndEndAfterATimeOrWhenStopped) {
    constexpr auto kGiveUp = static_cast<DWORD>(-1);
    bool stop = false;
    const CallFilter filter(calls, {.stop_requested = [&stop] { return stop; },
                                    .means_stop = [](const MSG& m) { return m.wParam == 27; },
                                    .longest_ms = 5500});
    // What COM asks of a thread whose call waits.
    ComPtr<IMessageFilter> registered, none;
    CoRegisterMessageFilter(nullptr, registered.Out());
    CoRegisterMessageFilter(registered.get(), none.Out());
    const auto pending = [&registered](DWORD waited) {
        return registered->MessagePending(nullptr, waited, PENDINGTYPE_TOPLEVEL);
    };
    const auto rejected = [&registered](DWORD waited) {
        return registered->RetryRejectedCall(nullptr, waited, SERVERCALL_RETRYLATER);
    };
    EXPECT_EQ(pending(5499), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(pending(5500), PENDINGMSG_CANCELCALL);
    EXPECT_EQ(rejected(4999), 100U);
    EXPECT_EQ(rejected(5000), kGiveUp);
    stop = true;
    EXPECT_EQ(pending(499), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_EQ(pending(500), PENDINGMSG_CANCELCALL);
    EXPECT_EQ(rejected(500), kGiveUp);

    const HWND window = MakeWindow(L"TamrinTestWindow", nullptr, WS_POPUP, {0, 0, 100, 100});
    InvalidateRect(window, nullptr, TRUE);
    PostMessageW(window, WM_APP, 7, 0);
    EXPECT_EQ(pending(0), PENDINGMSG_WAITDEFPROCESS);
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));  // painted
    PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(pending(0), PENDINGMSG_CANCELCALL);
    // Everything else is left in the queue.
    MSG message;
    EXPECT_TRUE(PeekMessageW(&message, window, WM_APP, WM_APP, PM_REMOVE));
    EXPECT_TRUE(PeekMessageW(&message, window, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
    DestroyWindow(window);
}

}  // namespace
}  // namespace tamrin::test
