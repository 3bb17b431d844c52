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
    }
    Browser& browser_;
};

// What a recording and a player read of a window, once.
void ReadAll(PageDouble& shown, BrowserDouble& it, ExplorerBrowser& browser) {
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
    const Element select = page.Named("s").by_id;
    select.OptionTexts();
    select.scrollIntoView();
    browser.ElementScreenPoint(select);
    browser.UnderPointer();
    browser.Navigate("http://site/");
    it.Fire(DISPID_NAVIGATECOMPLETE2, "http://site/next");
    browser.Quit();
    browser.DeliverEvents();
}

// What a player makes a page do, with as few acts as show it: each costs a thread.
void ActAll(PageDouble&, BrowserDouble&, ExplorerBrowser& browser) {
    const Document page = browser.document();
    page.Named("a").by_id.Change("value", "x");
    const auto fields = page.getElementsByTagName("INPUT");
    if (!fields.empty()) fields.back().Put("checked", "True");
    const Element select = page.Named("s").by_id;
    select.Put("selectedIndex", "0");
    select.fireEvent("onclick");
    browser.Busy();
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
    const std::pair<decltype(&ReadAll), int> drives[] = {
        {ReadAll, 11}, {ReadAll, 7}, {ActAll, 11}, {ActAll, 7}};
    for (const auto& [drive, mode] : drives) {
        int all = 1;
        for (int call = -1; call < all; ++call) {
            const HRESULT how =
                kFailures[static_cast<std::size_t>(call + 1) % std::size(kFailures)];
            SCOPED_TRACE(testing::Message() << "call " << call << " fails with " << how);
            PageWorld world;
            const ComPtr<BrowserDouble> it(new BrowserDouble(&world.faults));
            PageDouble& shown = world.Open(
                "<form id=f><input id=a value=v><select id=s><option>x</select><button id=b>"
                "</button></form><a id=l href=x>l</a><iframe id=i></iframe><input type=checkbox>",
                mode);
            it->window = GetDesktopWindow();
            it->page = shown.document();
            world.faults = {.failing = call, .all_after = (call / 8) % 2 == 1, .how = how};
            ComCalls calls;
            drive(shown, *it.get(),
                  *std::make_unique<ExplorerBrowser>(calls, ComPtr<IWebBrowser2>(it.get())));
            if (call < 0) all = world.faults.calls;
            it->page = nullptr;
            ASSERT_TRUE(world.IsReleased() && it->IsReleased());
        }
        EXPECT_GT(all, 50);
    }
}

}  // namespace
}  // namespace tamrin::test
