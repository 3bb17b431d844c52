#include <objidl.h>

#include <atomic>
#include <thread>

#include "explorer/explorer_rig.h"
#include "platform/explorer/call_filter.h"

namespace tamrin::test {
namespace {

using CallsTest = ExplorerTest;

TEST_F(CallsTest, AreTracedWhenTheyFail) {
    std::string trace;
    const Element a = Open("<input id=a>").Named("a").by_id;
    calls.Trace([&trace](const std::string& line) { trace += line; });
    world.faults = {.calls = -1, .failing = 0, .how = DISP_E_EXCEPTION};  // the name comes first
    EXPECT_EQ(a.Get("src"), "");
    EXPECT_EQ(trace, "get INPUT.src: 0x80004005 駄目  ");
}

// A browser in a program of its own, whose page asks its user and waits for the answer. Calls to
// the page are marshaled, and wait while that program does not handle its messages.
TEST_F(CallsTest, LeaveAPageThatAsksItsUserToItself) {
    std::atomic<int> answer = 0;  // or IDYES or IDNO
    std::atomic<bool> hangs = false, ending = false;
    std::atomic<const BrowserWindowDouble*> window = nullptr;
    IStream* packed = nullptr;
    world.box = [&] {
        const HWND box = hangs ? nullptr : MakeWindow(L"#32770", window.load()->frame, WS_POPUP);
        if (box) Pump([&] { return answer != 0; });
        while (answer == 0) Sleep(1);
        DestroyWindow(box);
        return answer.exchange(0) == IDYES;
    };
    std::thread program([&] {
        const Apartment its_apartment;
        const BrowserWindowDouble shown;
        page = &world.Open("<input type=button id=k onclick=ask onchange=ask>");
        CoMarshalInterThreadInterfaceInStream(IID_IDispatch, page->document().get(), &packed);
        window = &shown;
        while (!Pump([&] { return ending.load(); })) continue;
    });
    Pump([&] { return window != nullptr; });
    ComPtr<IDispatch> document;
    CoGetInterfaceAndReleaseStream(packed, IID_IDispatch, reinterpret_cast<void**>(document.Out()));
    Show(NewBrowser(document));
    document = nullptr;
    it->SetWindow(window.load()->frame);
    int asked = 0;
    const CallFilter filter(
        calls, {.stop_requested = [&] { return hangs && ++asked == 3; }, .window_ms = 10});
    Element button = browser->document().Named("k").by_id;
    for (const int reply : {IDYES, IDNO}) {
        EXPECT_TRUE(button.click() && browser->Busy());
        EXPECT_FALSE(button.click() || button.Put("value", "x"));  // nobody acts behind a box
        answer = reply;
        EXPECT_TRUE(Pump([this] { return !browser->Busy(); }));
    }
    EXPECT_TRUE(button.Change("value", "山") && browser->Busy());
    answer = IDYES;
    EXPECT_TRUE(Pump([this] { return !browser->Busy(); }));
    EXPECT_EQ(button.value(), "山");
    hangs = true;
    EXPECT_TRUE(button.click());
    EXPECT_EQ(asked, 3);
    EXPECT_FALSE(GetDocumentFromWindow(calls, window.load()->content));
    answer = IDYES;
    button = {};
    browser = nullptr;
    it = nullptr;
    EXPECT_TRUE(Pump([] { return ObjectDouble::alive == 0; })) << "what was left comes back";
    ending = true;
    program.join();
    EXPECT_EQ(page->said, "yes no yes yes ");
}

TEST_F(CallsTest, PaintAndEndAfterATimeOrWhenStopped) {
    constexpr DWORD kWait = PENDINGMSG_WAITDEFPROCESS, kEnd = PENDINGMSG_CANCELCALL;
    constexpr auto kGiveUp = static_cast<DWORD>(-1);
    const struct {
        bool stop;
        DWORD waited, pending, rejected, time = 0;
    } rows[] = {{false, 4999, kWait, 100},      {false, 5000, kWait, kGiveUp},
                {false, 5499, kWait, kGiveUp},  {false, 5500, kEnd, kGiveUp},
                {true, 499, kWait, 100},        {true, 500, kEnd, kGiveUp},
                {false, 0, kEnd, kGiveUp, 500}, {false, 0, kWait, 100, 499}};
    const CallBudget budget(calls, 500);
    bool stop = false;
    const CallFilter filter(calls, {.stop_requested = [&stop] { return stop; },
                                    .means_stop = [](const MSG& m) { return m.wParam == 27; },
                                    .longest_ms = 5500});
    // What COM asks of a thread whose call waits.
    ComPtr<IMessageFilter> registered, none;
    CoRegisterMessageFilter(nullptr, registered.Out());
    CoRegisterMessageFilter(registered.get(), none.Out());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.waited);
        stop = row.stop, now = row.time;
        EXPECT_EQ(registered->MessagePending(nullptr, row.waited, 0), row.pending);
        EXPECT_EQ(registered->RetryRejectedCall(nullptr, row.waited, 0), row.rejected);
    }
    const HWND window = MakeWindow(L"TamrinTestWindow", nullptr, WS_POPUP, {0, 0, 100, 100});
    InvalidateRect(window, nullptr, TRUE);
    EXPECT_EQ(registered->MessagePending(nullptr, 0, 0), kWait);
    EXPECT_FALSE(GetUpdateRect(window, nullptr, FALSE));  // painted
    PostMessageW(window, WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(registered->MessagePending(nullptr, 0, 0), kEnd);
    MSG message;  // left in the queue
    EXPECT_TRUE(PeekMessageW(&message, window, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE));
    DestroyWindow(window);
}

}  // namespace
}  // namespace tamrin::test
