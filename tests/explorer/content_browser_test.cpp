#include "platform/explorer/content_browser.h"

#include <gtest/gtest.h>

#include "explorer/browser_double.h"
#include "explorer/other_program.h"
#include "explorer/page_world.h"
#include "explorer/window_double.h"
#include "platform/explorer/explorer_windows.h"
#include "platform/explorer/page_geometry.h"
#include "platform/explorer/browser_objects.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

class EventLog : public BrowserEvents {
public:
    void DocumentComplete(bool) override { lines.emplace_back("complete"); }
    void BeforeNavigate2(const std::string& url) override { lines.push_back("before " + url); }
    void NavigateComplete2() override { lines.emplace_back("shown"); }
    void NavigateError(const std::string&, const std::string&) override {}
    void OnQuit() override { lines.emplace_back("quit"); }

    Strings lines;
};

// A page that Edge shows: a window of Edge's with a content window that answers for its document.
class ContentBrowserTest : public testing::Test {
protected:
    ContentBrowserTest() {
        page = world.Open("<input id=a value=v>");
        edge.Show(page.get());
        world.Run("page.__focused = true");
    }
    void TearDown() override {
        edge.Show(nullptr);
        page = nullptr;
        EXPECT_EQ(world.objects.alive.size(), 0U);
    }
    // `listed` is what the shell lists.
    ExplorerSources Sources(BrowserDouble* listed = nullptr) {
        ExplorerSources sources;
        sources.browsers = [listed] {
            std::vector<ComPtr<IWebBrowser2>> browsers;
            if (listed) browsers.emplace_back(listed);
            return browsers;
        };
        sources.z_order = [this] { return std::vector<HWND>{edge.frame}; };
        sources.contents = ContentWindows;
        return sources;
    }
    // Until the window is asked again.
    static void Later(ExplorerWindow& window) {
        Sleep(250);
        window.DeliverEvents();
    }

    ComCalls calls;
    PageWorld world;
    BrowserWindowDouble edge{L"Chrome_WidgetWin_1"};
    ComPtr<IDispatch> page;
};

TEST_F(ContentBrowserTest, GivesItsDocumentToWhoAsksItsWindow) {
    EXPECT_TRUE(SameObject(GetDocumentFromWindow(calls, edge.content).get(), page.get()));
    edge.Show(nullptr);
    EXPECT_FALSE(GetDocumentFromWindow(calls, edge.content));
    EXPECT_FALSE(GetDocumentFromWindow(calls, edge.frame));
    EXPECT_FALSE(GetDocumentFromWindow(calls, nullptr));
    std::unique_ptr<BrowserWindowDouble> hung;
    OtherProgram program;
    program.Do([&hung] {
        hung = std::make_unique<BrowserWindowDouble>();
        hung->HangFor(2500);
    });
    const DWORD start = GetTickCount();
    EXPECT_FALSE(GetDocumentFromWindow(calls, hung->content));
    EXPECT_LT(GetTickCount() - start, 2450U);
    program.Do([&hung] { hung = nullptr; });
}

TEST_F(ContentBrowserTest, IsFoundWhereTheShellDoesNotListIt) {
    ExplorerWindows windows(calls, Sources());
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    EXPECT_EQ(found->Handle(), reinterpret_cast<std::uintptr_t>(edge.frame));
    EXPECT_EQ(found->document().Named("a").by_id.value(), "v");
    EXPECT_EQ(found->ReadyState(), 4);
    EXPECT_FALSE(found->Busy());
    EXPECT_EQ(found->State().place, (WindowPlace{100, 50, 600, 500}));
}

TEST_F(ContentBrowserTest, IsItsBrowserWhereThePageGivesOne) {
    const ComPtr<BrowserDouble> browser(new BrowserDouble);
    browser->page = page;
    world.objects.browser_of = [&](IDispatch*) { return ComPtr<IWebBrowser2>(browser.get()); };
    ExplorerWindows windows(calls, Sources());
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    EventLog log;
    const auto connection = found->Connect(log);
    browser->FireDocumentComplete("http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    EXPECT_EQ(found->Handle(), reinterpret_cast<std::uintptr_t>(edge.frame));
    // Listed after all, it is no other window.
    browser->window = edge.frame;
    ExplorerWindows listing(calls, Sources(browser.get()));
    EXPECT_EQ(listing.Visible().size(), 1U);
    world.objects.browser_of = nullptr;
    browser->page = nullptr;
}

TEST_F(ContentBrowserTest, AnswersWhatLiesUnderAPoint) {
    world.Serve("in", "<p id=p data-box='0 0 500 500'><b id=b data-box='10 10 20 20'></b></p>");
    const auto pool = std::make_shared<PagePool>(calls);
    page = world.Open(
        "<div id=d data-box='0 0 300 300'></div>"
        "<iframe id=i src=in data-box='100 100 200 200' data-border=2></iframe>");
    const auto shown = pool->Page(page);
    RECT place{};
    GetWindowRect(edge.content, &place);
    const auto under = [&](int x, int y) {
        std::string ids;
        for (const Element& element :
             ElementsAt({place.left + x, place.top + y}, edge.content, *shown))
            ids += element.id() + " ";
        return ids;
    };
    EXPECT_EQ(under(5, 5), "d ");
    EXPECT_EQ(under(113, 113), "i b ");
    EXPECT_EQ(under(111, 111), "i p ");
    EXPECT_EQ(under(350, 5), "");
    world.Run("page.__window.screen.deviceXDPI = 192");
    EXPECT_EQ(under(226, 226), "i b ");
    const HWND cover = MakeWindow(L"TamrinTestWindow", edge.frame, WS_POPUP | WS_VISIBLE, place);
    EXPECT_EQ(under(5, 5), "");
    DestroyWindow(cover);
}

TEST_F(ContentBrowserTest, TellsOfItsPagesAndItsEnd) {
    const auto window = std::make_shared<BrowserWindowDouble>(L"Chrome_WidgetWin_1");
    window->Show(page.get());
    ContentBrowser browser(calls, {window->frame, window->content});
    EventLog log;
    const auto connection = browser.Connect(log);
    const Document old = browser.document();
    EXPECT_TRUE(browser.Navigate("http://site/b"));
    EXPECT_EQ(world.Ask("page.location.href"), "http://site/b");
    page = world.Open("<p id=b>", 11, "http://site/b");
    world.Run("page.readyState = 'loading'");
    window->Show(page.get());
    Later(browser);
    EXPECT_TRUE(browser.Busy());
    EXPECT_EQ(old.url(), "");
    EXPECT_EQ(browser.document().Named("b").by_id.id(), "b");
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown"}));
    world.Run("page.readyState = 'complete'");
    Later(browser);
    DestroyWindow(window->frame);
    Later(browser);
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown", "complete", "quit"}));
    EXPECT_FALSE(browser.Alive() || browser.document());
}

TEST_F(ContentBrowserTest, KeepsNoPageOfWhichItTellsNobody) {
    ContentBrowser browser(calls, {edge.frame, edge.content});
    EXPECT_TRUE(browser.document().hasFocus());
    browser.DeliverEvents();
    edge.Show(nullptr);
    page = nullptr;
    EXPECT_EQ(world.objects.alive.size(), 0U);
}

}  // namespace
}  // namespace tamrin::test
