#include "explorer/explorer_rig.h"
#include "platform/explorer/browser_objects.h"
#include "platform/explorer/content_browser.h"
#include "platform/explorer/explorer_launcher.h"

namespace tamrin::test {
namespace {

class BrowserTest : public ExplorerTest {
protected:
    BrowserTest() { Open("<input id=a value=v>"); }
    void TearDown() override {
        listed.clear();
        ExplorerTest::TearDown();
    }
    // A browser that the shell lists.
    ComPtr<BrowserDouble> List(HWND window, const std::string& name = "Internet Explorer") {
        const ComPtr<BrowserDouble> made(new BrowserDouble(world.faults));
        made->window = window;
        made->name = name;
        made->page = world.Open("<p>", 11).document();
        listed.push_back(made);
        return made;
    }
    static std::uint64_t Number(HWND window) { return reinterpret_cast<std::uintptr_t>(window); }

    // Makes a browser, or fails as that one's calls do.
    static std::function<ComPtr<IWebBrowser2>(HRESULT&)> Maker(const ComPtr<BrowserDouble>& made) {
        return [&made](HRESULT& failure) {
            failure = made->failure;
            return FAILED(failure) ? nullptr : ComPtr<IWebBrowser2>(made.get());
        };
    }

    const HWND front = reinterpret_cast<HWND>(20), back = reinterpret_cast<HWND>(10);
    std::vector<ComPtr<BrowserDouble>> listed;
    ExplorerSources sources{[this] {
                                std::vector<ComPtr<IWebBrowser2>> browsers;
                                for (const auto& entry : listed) {
                                    if (IsIeWindow(calls, *entry.get()))
                                        browsers.emplace_back(entry.get());
                                }
                                return browsers;
                            },
                            [this] { return std::vector<HWND>{front, back}; }, Maker(it)};
    std::string why;
};

TEST_F(BrowserTest, TellsTheWindowFromItsFramesAndBringsThePageThatIsLeftAlong) {
    const Document left = browser->document();
    Log log(*browser, left);
    const ComPtr<BrowserDouble> frame(new BrowserDouble(world.faults));
    it->Fire(DISPID_BEFORENAVIGATE2, "http://site/next");
    page->active = &El("a");
    it->Fire(DISPID_BEFORENAVIGATE2, "javascript:f()");
    it->Fire(DISPID_BEFORENAVIGATE2, "http://site/inner", frame.get());
    it->Fire(DISPID_NAVIGATECOMPLETE2, "http://site/inner", frame.get());
    it->page = world.Open("<input id=b>", 11).document();
    it->Fire(DISPID_NAVIGATECOMPLETE2, "http://site/next");
    it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/inner", frame.get());
    it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/next");
    it->Fire(DISPID_NAVIGATEERROR, "http://site/missing", nullptr, 404);
    it->Fire(DISPID_NAVIGATEERROR, "http://nowhere/", nullptr, static_cast<int>(0x800C0005));
    EXPECT_EQ(log.lines, Strings());
    browser->DeliverEvents();
    EXPECT_EQ(log.lines,
              (Strings{"before http://site/next =", "before http://site/inner a=v", "shown",
                       "frame complete", "complete", "error http://nowhere/ 0x800C0005"}));
    EXPECT_EQ(left.url() + browser->document().Named("b").by_id.id(), "b");
    EXPECT_FALSE(left.Connect(log));
    log.connection.reset();
    it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/next");
    browser->DeliverEvents();
    EXPECT_EQ(log.lines.size(), 6U);
}

TEST_F(BrowserTest, IsBusyFromTheCallOnAndBehindADialogBox) {
    auto window = std::make_unique<BrowserWindowDouble>();
    it->window = window->frame;
    const Element a = Open("<input id=a>").Named("a").by_id;
    Log log(*browser);
    EXPECT_FALSE(browser->Busy());
    EXPECT_EQ(browser->ReadyState(), 4);
    EXPECT_TRUE(browser->Navigate("http://site/日本"));
    EXPECT_EQ(it->lines, Strings{"Navigate2 http://site/日本"});
    now = 1999;
    EXPECT_TRUE(browser->Busy());
    EXPECT_EQ(browser->ReadyState(), 1);
    now = 2000;  // by now the browser would have said so itself
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(browser->Navigate("http://site/y"));
    it->Fire(DISPID_BEFORENAVIGATE2, "http://site/y");
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(browser->Navigate("JavaScript:f()") && !browser->Busy());
    it->busy = VARIANT_TRUE;
    EXPECT_TRUE(browser->Busy());
    it->busy = VARIANT_FALSE;
    for (const HRESULT waits_for_its_user : {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER}) {
        it->failure = waits_for_its_user;
        EXPECT_TRUE(browser->Busy() && browser->Alive());
    }
    it->failure = E_FAIL;
    EXPECT_FALSE(browser->Busy());
    it->failure = S_OK;
    const HWND box = MakeWindow(L"#32770", window->content, WS_POPUP);
    EXPECT_TRUE(browser->Busy());
    EXPECT_FALSE(a.click());
    DestroyWindow(box);
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(a.click() && browser->Alive());
    window.reset();
    EXPECT_FALSE(browser->Alive());
    browser->DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"before http://site/y", "quit"}));
}

TEST_F(BrowserTest, GivesEverythingBackWhenTheBrowserIsGone) {
    for (const HRESULT failure :
         {S_OK, HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE), HRESULT_FROM_WIN32(RPC_S_CALL_FAILED),
          RPC_E_DISCONNECTED, RPC_E_SERVER_DIED, RPC_E_SERVER_DIED_DNE, CO_E_OBJNOTCONNECTED}) {
        SCOPED_TRACE(failure);
        it->failure = S_OK;
        const Document shown = Open("<input id=a value=v>");
        Log log(*browser);
        EXPECT_EQ(shown.Named("a").by_id.value(), "v");
        it->failure = failure;
        if (failure == S_OK) it->Fire(DISPID_ONQUIT);
        EXPECT_FALSE(browser->Busy() || browser->Alive() || browser->document());
        EXPECT_FALSE(browser->Navigate("x"));
        EXPECT_EQ(shown.url() + shown.Named("a").by_id.id(), "");
        EXPECT_EQ(browser->State(), WindowState());
        EXPECT_TRUE(it->IsReleased());
        browser->Quit();
        browser->SetForeground();
        browser->DeliverEvents();
        EXPECT_EQ(log.lines, Strings{"quit"});
    }
}

TEST_F(BrowserTest, StandsAsItIsPut) {
    for (const WindowBars bars :
         {WindowBars{.tool = true, .address = true}, WindowBars{.menu = true, .status = true}}) {
        const WindowState state{{10, 20, 800, 600}, bars, !bars.tool};
        browser->SetPlace(state.place);
        browser->SetBars(state.bars);
        browser->SetVisible(bars.tool);
        it->FullScreen = bars.tool ? VARIANT_FALSE : VARIANT_TRUE;
        EXPECT_EQ(browser->State(), state);
        EXPECT_EQ(it->lines.back(), bars.tool ? "Visible -1" : "Visible 0");
    }
    it->failure = E_FAIL;
    EXPECT_EQ(browser->State(), WindowState());
    EXPECT_EQ(browser->Handle(), 0U);
}

TEST_F(BrowserTest, IsListedInTheOrderOfTheScreenAndFoundByItsFocus) {
    List(back);
    const auto first = List(front, "WINDOWS Internet Explorer");
    page = world.pages.back().get();
    List(front, "エクスプローラー");
    List(reinterpret_cast<HWND>(30));  // minimised
    ExplorerWindows windows(calls, sources);
    const auto visible = windows.Visible();
    ASSERT_EQ(visible.size(), 2U);
    EXPECT_EQ(visible[0]->Handle(), Number(front));
    EXPECT_EQ(visible[1]->Handle(), Number(back));
    EXPECT_EQ(windows.Visible(), visible);
    EXPECT_FALSE(windows.Focused());
    page->focused = true;
    EXPECT_EQ(windows.Focused(), visible[0]);
    Log log(*visible[0]);
    first->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    first->failure = RPC_E_DISCONNECTED;
    EXPECT_EQ(windows.Visible().size(), 1U);
}

// What the launcher needs, and nothing of it is used here.
class NoInput : public Input {
    ScreenPoint GetCursorPos() override { return {}; }
    void SetCursorPos(ScreenPoint) override {}
    void LeftButton(bool) override {}
    bool SendKeys(const std::vector<KeyStroke>&) override { return false; }
} no_input;

TEST_F(BrowserTest, IsOpenedAndCreatedOrSaysWhyNot) {
    ExplorerWindows windows(calls, sources);
    EXPECT_TRUE(ExplorerLauncher(calls, sources, no_input).Create(why));
    EXPECT_TRUE(windows.Open("", why) && windows.Open("http://x/", why));
    EXPECT_EQ(it->lines, (Strings{"Visible -1", "Navigate2 about:blank", "Visible -1",
                                  "Navigate2 http://x/"}));
    EXPECT_EQ(why, "");
    it->failure = REGDB_E_CLASSNOTREG;
    EXPECT_FALSE(windows.Open("", why));
    EXPECT_NE(why, "");
}

TEST_F(BrowserTest, IsFollowedIntoAnotherProcess) {
    const struct {
        std::uint64_t dies_at, comes_at;
        bool quits, moves;
    } rows[] = {{9999, 14998, false, true},
                {9999, 14999, false, false},
                {10000, 10000, false, false},
                {100, 100, true, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.comes_at);
        listed.clear();
        List(back);  // was there before
        it->failure = S_OK;
        now = 0;
        ExplorerLauncher launcher(calls, sources, no_input);
        const auto made = launcher.Create(why);
        Log log(*made);
        EXPECT_TRUE(made->Navigate("http://intranet/"));
        if (row.quits) made->Quit();
        now = row.dies_at;
        it->failure = RPC_E_DISCONNECTED;
        made->Busy();
        EXPECT_FALSE(made->document());
        now = row.comes_at;
        EXPECT_EQ(made->Busy(), row.moves);
        const auto successor = List(front);
        EXPECT_EQ(made->Alive(), row.moves);
        EXPECT_EQ(made->Handle(), row.moves ? Number(front) : 0U);
        successor->Fire(DISPID_DOCUMENTCOMPLETE);
        successor->Fire(DISPID_ONQUIT);
        launcher.DeliverEvents();
        EXPECT_EQ(log.lines, row.moves ? (Strings{"complete", "quit"}) : Strings{"quit"});
        EXPECT_FALSE(made->Alive());
    }
}

// A page that Edge shows: a window of Edge's with a content window that answers for its document.
class ContentTest : public BrowserTest {
protected:
    ContentTest() {
        sources.z_order = [this] { return std::vector<HWND>{edge.frame, edge.content}; };
        sources.contents = ContentWindows;
        Show("http://site/");
        page->focused = true;
    }
    void Show(const std::string& url) {
        page = &world.Open("<input id=a value=v>", 11, url);
        it->page = page->document();
        edge.Show(it->page.get());
    }
    BrowserWindowDouble edge{L"Chrome_WidgetWin_1"};
};

TEST_F(ContentTest, IsFoundWhereTheShellDoesNotListIt) {
    ExplorerWindows windows(calls, sources);
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    EXPECT_EQ(found->Handle(), Number(edge.frame));
    EXPECT_EQ(found->document().Named("a").by_id.value(), "v");
    EXPECT_EQ(found->ReadyState(), 4);
    EXPECT_FALSE(found->Busy());
    EXPECT_EQ(found->State(),
              (WindowState{{100, 50, 600, 500}, {true, false, true, false}, false}));
    found->SetPlace({110, 60, 620, 520});
    EXPECT_TRUE(Pump([&] { return found->State().place == WindowPlace{110, 60, 620, 520}; }));
    const HWND box = MakeWindow(L"#32770", edge.frame, WS_POPUP);
    EXPECT_TRUE(found->Busy());
    DestroyWindow(box);
    found->Quit();
    EXPECT_EQ(page->went_to, "closed");
}

TEST_F(ContentTest, IsItsBrowserWhereThePageGivesOne) {
    world.browser = it.get();
    ExplorerWindows windows(calls, sources);
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    Log log(*found);
    it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    EXPECT_EQ(found->Handle(), Number(edge.frame));
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    // Listed after all, in that frame or in another, it is no other window.
    listed.push_back(it);
    for (const HWND frame : {edge.frame, edge.content}) {
        it->window = frame;
        EXPECT_EQ(ExplorerWindows(calls, sources).Visible().size(), 1U);
    }
}

TEST_F(ContentTest, TellsOfItsPagesAndItsEnd) {
    ContentBrowser content(calls, {edge.frame, edge.content});
    EXPECT_TRUE(content.document().hasFocus());
    content.DeliverEvents();
    EXPECT_EQ(ObjectDouble<IHTMLDocument>::alive, 1) << "it keeps no page of which it tells nobody";
    Log log(content);
    const Document old = content.document();
    EXPECT_TRUE(content.Navigate("http://site/b"));
    EXPECT_EQ(page->went_to, "http://site/b");
    EXPECT_EQ(old.url(), "http://site/");
    Show("http://site/b");
    page->ready_state = "loading";
    EXPECT_TRUE(content.Busy());
    EXPECT_EQ(content.ReadyState(), 1);
    EXPECT_EQ(old.url(), "");
    EXPECT_EQ(content.document().url(), "http://site/b");
    content.DeliverEvents();
    const Strings shown = {"before http://site/b", "shown"};
    EXPECT_EQ(log.lines, shown);
    page->ready_state = "complete";
    now = 199;  // it does not ask at each turn
    content.DeliverEvents();
    EXPECT_EQ(log.lines, shown);
    now = 200;
    content.DeliverEvents();
    DestroyWindow(edge.content);
    now = 400;
    EXPECT_FALSE(content.Alive() || content.document());
    content.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown", "complete", "quit"}));
}

TEST(ScreenWindows, AreSearchedForTheLastContentThatHasAHeight) {
    const HWND frame = MakeWindow(L"STATIC", nullptr, WS_POPUP, {100, 50, 700, 450});
    HWND last = nullptr;
    EXPECT_EQ(FindIeServerWindow(frame), nullptr);
    for (const int height : {0, 300, 10, 0}) {
        const HWND view = MakeWindow(L"Shell DocObject View", frame, WS_CHILD);
        const RECT place{0, 0, 500, height};
        const HWND tab = MakeWindow(L"Internet Explorer_Server", view, WS_CHILD, place);
        if (height > 0 || !last) last = tab;  // the only one may be without
        EXPECT_EQ(FindIeServerWindow(frame), last);
    }
    DestroyWindow(frame);
}

}  // namespace
}  // namespace tamrin::test
