#include <gtest/gtest.h>

#include "explorer/browser_double.h"
#include "explorer/browser_log.h"
#include "explorer/page_double.h"
#include "platform/explorer/explorer_browser.h"

namespace tamrin::test {
namespace {

// Does in each event what a recording does.
class Recording : public BrowserLog, public DocumentEvents {
public:
    explicit Recording(Browser& browser) : browser_(browser) {}
    void DocumentComplete(bool) override { browser_.State(); }
    void BeforeNavigate2(const std::string&) override { Read(); }
    void onclick() override { Read(); }
    void onfocusin() override { Read(); }
    void onbeforedeactivate() override { Read(); }
    void onkeypress(int) override { Read(); }
    void onsubmit() override { Read(); }

private:
    void Read() {
        const Element active = browser_.document().activeElement();
        for (const Element& element :
             {active, active.parentElement(), active.form(), active.DefaultButton()}) {
            element.id();
            element.checked();
            element.getAttribute("alt");
        }
        active.fireEvent("onchange");
    }
    Browser& browser_;
};

// Everything that a recording and a player do with a window, once.
void Drive(PageWorld& world, BrowserDouble& it, int mode) {
    PageDouble& shown = world.Open(
        "<form id=f><input id=a value=v><select id=s><option>x</select><button id=b>"
        "</button></form><a id=l href=x>l</a><iframe id=i></iframe>",
        mode);
    it.page = shown.document();
    ComCalls calls;
    ExplorerBrowser browser(calls, ComPtr<IWebBrowser2>(&it));
    Recording recording(browser);
    const auto connection = browser.Connect(recording);
    const Document page = browser.document();
    const auto page_connection = page.Connect(recording);
    shown.Click(shown.El("a"));
    shown.Press(shown.El("a"), 13);
    it.Fire(DISPID_BEFORENAVIGATE2, "http://site/next");
    it.Fire(DISPID_DOCUMENTCOMPLETE, "http://site/next");
    browser.DeliverEvents();
    browser.SetVisible(true);
    browser.SetPlace({.left = 1, .top = 2, .width = 3, .height = 4});
    browser.SetBars({.tool = true});
    browser.Busy();
    browser.ReadyState();
    page.links();
    for (const Frame& frame : page.frames()) frame.document.Named("x");
    for (const char* id : {"a", "s", "f"}) {
        const Element element = page.Named(id).by_id;
        element.OptionTexts();
        element.Change("value", "x");
        element.Put("selectedIndex", "0");
        element.scrollIntoView();
        browser.ElementScreenPoint(element);
        element.fireEvent("onclick");
    }
    page.Named("b").by_id.click();
    browser.UnderPointer();
    browser.Navigate("http://site/");
    it.Fire(DISPID_NAVIGATECOMPLETE2, "http://site/next");
    browser.Quit();
    browser.DeliverEvents();
    it.page = nullptr;
}

// Each call of each object of the browser fails once, alone or with all behind it: nothing crashes,
// and nothing is kept.
TEST(FailingAnswers, OfAnyCallLoseNothing) {
    constexpr HRESULT kFailures[] = {E_FAIL,
                                     E_ACCESSDENIED,
                                     RPC_E_DISCONNECTED,
                                     RPC_E_CALL_REJECTED,
                                     DISP_E_UNKNOWNNAME,
                                     DISP_E_MEMBERNOTFOUND,
                                     DISP_E_EXCEPTION,
                                     S_FALSE /* Null, or no answer */};
    std::size_t next = 0;
    for (const int mode : {11, 7}) {
        int all = 1;
        for (int call = -1; call < all; ++call) {
            for (const bool all_after : {false, true}) {
                const HRESULT how = kFailures[next++ % std::size(kFailures)];
                SCOPED_TRACE(testing::Message() << "call " << call << " fails with " << how);
                PageWorld world;
                const ComPtr<BrowserDouble> it(new BrowserDouble(&world.faults));
                it->window = GetDesktopWindow();
                world.faults = {.failing = call, .all_after = all_after, .how = how};
                Drive(world, *it.get(), mode);
                if (call < 0) all = world.faults.calls;
                world.faults = {};
                ASSERT_TRUE(world.IsReleased() && it->IsReleased());
            }
        }
        EXPECT_GT(all, 200);
    }
}

}  // namespace
}  // namespace tamrin::test
