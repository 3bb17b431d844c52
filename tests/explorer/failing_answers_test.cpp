#include <gtest/gtest.h>

#include "explorer/browser_double.h"
#include "explorer/page_world.h"
#include "platform/explorer/explorer_browser.h"

namespace tamrin::test {
namespace {

constexpr HRESULT kFailures[] = {E_FAIL,
                                 E_ACCESSDENIED,
                                 RPC_E_DISCONNECTED,
                                 RPC_E_CALL_REJECTED,
                                 DISP_E_UNKNOWNNAME,
                                 DISP_E_MEMBERNOTFOUND,
                                 S_FALSE /* Null, or no answer */};

// Reads of each event what a recording does.
class Recording : public BrowserEvents, public DocumentEvents {
public:
    explicit Recording(Browser& browser) : browser_(browser) {}
    void DocumentComplete(bool) override { browser_.State(); }
    void BeforeNavigate2(const std::string&) override { Read(); }
    void NavigateError(const std::string&, const std::string&) override {}
    void OnQuit() override { ++quits; }
    void onclick() override { Read(); }
    void onfocusin() override { Read(); }
    void onbeforedeactivate() override { Read(); }
    void onkeypress(int) override { Read(); }
    void onsubmit() override { Read(); }

    int quits = 0;

private:
    void Read() {
        const Element active = browser_.document().activeElement();
        for (const Element& element :
             {active, active.parentElement(), active.form(), active.DefaultButton()}) {
            element.id();
            element.name();
            element.value();
            element.checked();
            element.getAttribute("type");
            element.getAttribute("alt");
        }
        active.fireEvent("onchange");
    }
    Browser& browser_;
};

class FailingAnswersTest : public testing::Test {
protected:
    // Everything that a recording and a player do with a window, once.
    void Drive() {
        it->page = world.Open(
            "<form id=f><input id=a name=a value=v><select id=s><option>x</select><button id=b>"
            "</button></form><a id=l href=x>l</a><iframe id=i src=in></iframe>");
        ExplorerBrowser browser(calls, ComPtr<IWebBrowser2>(it.get()));
        Recording recording(browser);
        const auto connection = browser.Connect(recording);
        const Document page = browser.document();
        const auto page_connection = page.Connect(recording);
        world.Run("user.click(el('a')); user.enter(el('a')); user.submit(el('f'))");
        it->FireBeforeNavigate2("http://site/next");
        it->FireDocumentComplete("http://site/next");
        browser.DeliverEvents();
        Play(browser, page);
        it->FireNavigateComplete2("http://site/next");
        it->FireOnQuit();
        browser.DeliverEvents();
        EXPECT_LE(recording.quits, 1);
        EXPECT_FALSE(browser.Alive());
        EXPECT_EQ(page.url(), "");
        it->page = nullptr;
        EXPECT_EQ(world.objects.alive.size(), 0U);
    }
    void Play(ExplorerBrowser& browser, const Document& page) {
        browser.SetVisible(true);
        browser.SetPlace({.left = 1, .top = 2, .width = 3, .height = 4});
        browser.SetBars({.tool = true});
        browser.State();
        browser.Busy();
        browser.ReadyState();
        page.links();
        page.getElementsByTagName("*");
        for (const Frame& frame : page.frames()) frame.document.Named("x");
        for (const char* id : {"a", "s", "b", "f"}) {
            const Element element = page.Named(id).by_id;
            element.Get("outerHTML");
            element.OptionTexts();
            element.Change("value", "w");
            element.Put("selectedIndex", "0");
            element.scrollIntoView();
            element.getBoundingClientRect();
            browser.ElementScreenPoint(element);
            element.fireEvent("onclick");
        }
        page.Named("b").by_id.click();
        browser.UnderPointer();
        browser.Navigate("http://site/");
        browser.Quit();
    }

    ComCalls calls;
    PageWorld world;
    ComPtr<BrowserDouble> it{new BrowserDouble};
};

TEST_F(FailingAnswersTest, OfAnyMemberOfThePageLoseNothing) {
    it->window = GetDesktopWindow();
    Drive();
    const auto members = world.objects.numbers;
    EXPECT_GT(members.size(), 30U);
    int lines = 0;
    calls.Trace([&lines](const std::string&) { ++lines; });
    for (const auto& [member, number] : members) {
        for (const HRESULT failure : kFailures) {
            SCOPED_TRACE(TextOf(member.c_str(), member.size()));
            world.objects.faults = {{member, failure}};
            Drive();
        }
    }
    EXPECT_GT(lines, 0);
}

TEST_F(FailingAnswersTest, OfAnyCallOfTheBrowserLoseNothing) {
    it->window = GetDesktopWindow();
    Drive();
    const int all = it->calls;
    EXPECT_GT(all, 30);
    for (int call = 0; call < all; ++call) {
        for (const HRESULT failure : kFailures) {
            SCOPED_TRACE(call);
            it->calls = 0;
            it->failing_call = call;
            it->failing_with = failure;
            Drive();
            EXPECT_EQ(it->AddRef(), 2U);  // only the test's own
            it->Release();
        }
    }
}

}  // namespace
}  // namespace tamrin::test
