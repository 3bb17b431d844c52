#include <gtest/gtest.h>

#include "explorer/browser_double.h"
#include "explorer/browser_log.h"
#include "explorer/page_double.h"
#include "explorer/window_double.h"
#include "platform/explorer/browser_objects.h"
#include "platform/explorer/content_browser.h"
#include "platform/explorer/explorer_windows.h"
#include "platform/explorer/page_geometry.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

constexpr wchar_t kServer[] = L"Internet Explorer_Server";

TEST(FindIeServerWindow, TakesTheLastOfSeveralThatHasAHeight) {
    const HWND frame = MakeWindow(L"STATIC", nullptr, WS_POPUP, {100, 50, 700, 450});
    const auto add = [](const wchar_t* name, HWND parent, int height) {
        return MakeWindow(name, parent, WS_CHILD | WS_VISIBLE, {20, 30, 520, 30 + height});
    };
    EXPECT_EQ(FindIeServerWindow(nullptr), nullptr);
    const HWND first_tab = add(L"Shell DocObject View", frame, 400);
    EXPECT_EQ(FindIeServerWindow(frame), nullptr);
    const HWND hidden = add(kServer, first_tab, 0);
    EXPECT_EQ(FindIeServerWindow(frame), hidden) << "the only one";
    const HWND tall = add(kServer, add(L"Shell DocObject View", frame, 400), 300);
    EXPECT_EQ(FindIeServerWindow(frame), tall);
    add(kServer, add(L"Shell DocObject View", frame, 400), 0);
    EXPECT_EQ(FindIeServerWindow(frame), tall) << "not one without a height";
    const HWND inner = add(kServer, add(L"Shell DocObject View", tall, 100), 10);
    EXPECT_EQ(FindIeServerWindow(frame), inner) << "not the tallest, and at any depth";
    EXPECT_EQ(FindIeServerWindow(first_tab), hidden);
    DestroyWindow(frame);
}

TEST(BringToForeground, RestoresAWindowAndGoesToTheBoxThatHoldsItUp) {
    const auto make = [](HWND owner) {
        return MakeWindow(L"STATIC", owner, WS_OVERLAPPEDWINDOW | WS_VISIBLE, {300, 300, 500, 400});
    };
    const auto brings = [](HWND window, HWND in_front) {
        BringToForeground(window);
        return Pump([&] { return GetForegroundWindow() == in_front && !IsIconic(in_front); });
    };
    const HWND other = make(nullptr);
    const HWND browser = make(nullptr);
    EXPECT_TRUE(brings(other, other));
    EXPECT_TRUE(brings(browser, browser));
    ShowWindow(browser, SW_MINIMIZE);
    EXPECT_TRUE(brings(browser, browser));
    const HWND box = make(browser);
    EnableWindow(browser, FALSE);
    EXPECT_TRUE(brings(other, other));
    EXPECT_TRUE(brings(browser, box));
    DestroyWindow(browser);
    BringToForeground(browser);
    BringToForeground(nullptr);
    DestroyWindow(other);
}

// A page that Edge shows: a window of Edge's with a content window that answers for its document.
class ContentTest : public testing::Test {
protected:
    ContentTest() {
        calls.SetNow([this] { return now; });
        Show("<input id=a value=v>");
        world.page().focused = true;
    }
    void TearDown() override {
        edge.Show(nullptr);
        page = nullptr;
        EXPECT_TRUE(world.IsReleased());
    }
    void Show(std::string_view html, int mode = 11, const std::string& url = "http://site/") {
        page = world.Open(html, mode, url).document();
        edge.Show(page.get());
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

    std::uint64_t now = 0;
    ComCalls calls;
    PageWorld world;
    BrowserWindowDouble edge{L"Chrome_WidgetWin_1"};
    ComPtr<IDispatch> page;
};

TEST_F(ContentTest, PointsOnTheScreenCountFramesAndTheZoom) {
    world.fetch = [](const std::string&) {
        return "<p id=p data-box='0 0 500 500'><b id=b data-box='10 20 60 40'></b></p>";
    };
    for (const int mode : {11, 7}) {
        Show(
            "<div id=a data-box='5 -7.5 300 300'></div><input id=out><iframe id=f src=in "
            "data-box='100 200 300 400' data-border=2></iframe>",
            mode);
        const auto pool = std::make_shared<PagePool>(calls);
        const auto shown = pool->Page(page);
        const Element a = shown->Named("a").by_id;
        const Element b = shown->frames().at(0).document.Named("b").by_id;
        RECT place{};
        GetWindowRect(edge.content, &place);
        const auto point = [&](const Element& element) {
            const auto at = ScreenPointOf(element, edge.content);
            return at ? std::pair(at->x - place.left, at->y - place.top) : std::pair(-1L, -1L);
        };
        const auto under = [&](int x, int y) {
            std::string ids;
            for (const Element& element :
                 ElementsAt({place.left + x, place.top + y}, edge.content, *shown))
                ids += element.id() + " ";
            return ids;
        };
        EXPECT_EQ(point(a), std::pair(5L, -8L));
        EXPECT_EQ(point(b), std::pair(112L, 222L));
        EXPECT_EQ(under(5, 5), "a ");
        EXPECT_EQ(under(113, 223), "f b ");
        EXPECT_EQ(under(111, 223), "f p ");
        EXPECT_EQ(under(350, 5), "");
        world.page().screen_dpi = 144;
        EXPECT_EQ(point(b), std::pair(168L, 333L));
        EXPECT_EQ(under(169, 334), "f b ");
        world.page().screen_dpi = 0;
        EXPECT_EQ(point(b), std::pair(112L, 222L));
        EXPECT_EQ(point(shown->Named("out").by_id), std::pair(-1L, -1L));
        EXPECT_EQ(point(Element()), std::pair(-1L, -1L));
        const HWND cover =
            MakeWindow(L"TamrinTestWindow", edge.frame, WS_POPUP | WS_VISIBLE, place);
        EXPECT_EQ(under(5, 5), "");
        DestroyWindow(cover);
        EXPECT_FALSE(ScreenPointOf(a, nullptr));
        pool->KeepOnly(nullptr);
        EXPECT_EQ(point(a), std::pair(-1L, -1L));
    }
}

TEST_F(ContentTest, GivesItsDocumentToWhoAsksItsWindow) {
    EXPECT_TRUE(SameObject(GetDocumentFromWindow(calls, edge.content).get(), page.get()));
    edge.Show(nullptr);
    EXPECT_FALSE(GetDocumentFromWindow(calls, edge.content));
    EXPECT_FALSE(GetDocumentFromWindow(calls, edge.frame));
    EXPECT_FALSE(GetDocumentFromWindow(calls, nullptr));
    // One that hangs is given up.
    const HANDLE over = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::unique_ptr<BrowserWindowDouble> hung;
    {
        OtherProgram program;
        program.Do([&] {
            hung = std::make_unique<BrowserWindowDouble>();
            hung->HangUntil(over);
        });
        calls.SetLimits({.window_ms = 10});
        EXPECT_FALSE(GetDocumentFromWindow(calls, hung->content));
        SetEvent(over);
        program.Do([&hung] { hung = nullptr; });
    }
    CloseHandle(over);
}

TEST_F(ContentTest, IsFoundWhereTheShellDoesNotListIt) {
    ExplorerWindows windows(calls, Sources());
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    EXPECT_EQ(found->Handle(), reinterpret_cast<std::uintptr_t>(edge.frame));
    EXPECT_EQ(found->document().Named("a").by_id.value(), "v");
    EXPECT_EQ(found->ReadyState(), 4);
    EXPECT_FALSE(found->Busy());
    EXPECT_EQ(found->State(),
              (WindowState{{100, 50, 600, 500}, {true, false, true, false}, false}));
    found->SetPlace({110, 60, 620, 520});
    EXPECT_TRUE(Pump([&] { return found->State().place == WindowPlace{110, 60, 620, 520}; }));
    const HWND box = MakeWindow(L"#32770", edge.frame, WS_POPUP | WS_VISIBLE, {});
    EXPECT_TRUE(found->Busy());
    DestroyWindow(box);
}

TEST_F(ContentTest, IsItsBrowserWhereThePageGivesOne) {
    const ComPtr<BrowserDouble> browser(new BrowserDouble);
    browser->page = page;
    world.browser_of = [&](PageDouble&) { return ComPtr<IWebBrowser2>(browser.get()); };
    ExplorerWindows windows(calls, Sources());
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    BrowserLog log;
    const auto connection = found->Connect(log);
    browser->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    EXPECT_EQ(found->Handle(), reinterpret_cast<std::uintptr_t>(edge.frame));
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    // Listed after all, in that frame or in another, it is no other window.
    for (const HWND frame : {edge.frame, edge.content}) {
        browser->window = frame;
        ExplorerSources sources = Sources(browser.get());
        sources.z_order = [this] { return std::vector<HWND>{edge.frame, edge.content}; };
        EXPECT_EQ(ExplorerWindows(calls, sources).Visible().size(), 1U);
    }
    browser->page = nullptr;
}

TEST_F(ContentTest, TellsOfItsPagesAndItsEnd) {
    ContentBrowser browser(calls, {edge.frame, edge.content});
    BrowserLog log;
    const auto connection = browser.Connect(log);
    const Document old = browser.document();
    EXPECT_TRUE(browser.Navigate("http://site/b"));
    EXPECT_EQ(world.page().went_to, "http://site/b");
    EXPECT_EQ(old.url(), "http://site/");
    Show("<p id=b>", 11, "http://site/b");
    world.page().ready_state = "loading";
    EXPECT_TRUE(browser.Busy());
    EXPECT_EQ(browser.ReadyState(), 1);
    EXPECT_EQ(old.url(), "");
    EXPECT_EQ(browser.document().Named("b").by_id.id(), "b");
    browser.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown"}));
    world.page().ready_state = "complete";
    now = 199;  // it does not ask at each turn
    browser.DeliverEvents();
    EXPECT_EQ(log.lines.size(), 2U);
    now = 200;
    browser.DeliverEvents();
    EXPECT_EQ(log.lines.size(), 3U);
    DestroyWindow(edge.content);
    now = 400;
    EXPECT_FALSE(browser.Alive() || browser.document());
    browser.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown", "complete", "quit"}));
}

TEST_F(ContentTest, KeepsNoPageOfWhichItTellsNobody) {
    ContentBrowser browser(calls, {edge.frame, edge.content});
    EXPECT_TRUE(browser.document().hasFocus());
    browser.DeliverEvents();
    edge.Show(nullptr);
    page = nullptr;
    EXPECT_TRUE(world.IsReleased());
}

}  // namespace
}  // namespace tamrin::test
