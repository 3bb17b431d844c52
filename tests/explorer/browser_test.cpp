#include "explorer/explorer_rig.h"
#include "platform/explorer/explorer_launcher.h"
#include "support/virtual_clock.h"

namespace tamrin::test {
namespace {

class BrowserTest : public ExplorerTest {
protected:
    BrowserTest() { Open("<input id=a value=v>"); }
    void TearDown() override {
        listed.clear();
        sources = {};
        ExplorerTest::TearDown();
    }
    // A browser that the shell lists.
    ComPtr<BrowserDouble> List(HWND window, std::string_view name = "Internet Explorer") {
        listed.push_back(NewBrowser(world.Open("<p>", 11)));
        listed.back()->SetWindow(window);
        listed.back()->is["Name"] = Variant(name);
        return listed.back();
    }

    const HWND front = reinterpret_cast<HWND>(20), back = reinterpret_cast<HWND>(10);
    std::vector<ComPtr<BrowserDouble>> listed;
    ExplorerSources sources{[this] {
                                std::vector<DispatchObject> browsers;
                                for (const auto& entry : listed) browsers.push_back(Called(entry));
                                std::erase_if(browsers, std::not_fn(IsIeWindow));
                                return browsers;
                            },
                            [this] { return std::vector<HWND>{front, back}; },
                            [this](HRESULT&) { return ComPtr<IDispatch>(it.get()); }};
    std::string why;
};

TEST_F(BrowserTest, TellsTheWindowFromItsFramesAndBringsThePageThatIsLeftAlong) {
    const Document left = browser->document();
    Log log(*browser, left);
    const ComPtr<BrowserDouble> frame(new BrowserDouble(world.faults));
    it->Tell(DISPID_BEFORENAVIGATE2, "http://site/next");
    page->active = &El("a");
    it->Tell(DISPID_BEFORENAVIGATE2, "javascript:f()");
    it->Tell(DISPID_BEFORENAVIGATE2, "http://site/inner", 0, frame.get());
    it->Tell(DISPID_NAVIGATECOMPLETE2, "http://site/inner", 0, frame.get());
    it->is["Document"] = Variant(world.Open("<input id=b>", 11).document().get());
    it->Tell(DISPID_NAVIGATECOMPLETE2, "http://site/next");
    it->Tell(DISPID_DOCUMENTCOMPLETE, "http://site/inner", 0, frame.get());
    it->Tell(DISPID_DOCUMENTCOMPLETE, "http://site/next");
    it->Tell(DISPID_NAVIGATEERROR, "http://site/missing", 404);
    it->Tell(DISPID_NAVIGATEERROR, "http://nowhere/", static_cast<int>(0x800C0005));
    EXPECT_EQ(log.lines, Strings());
    browser->DeliverEvents();
    EXPECT_EQ(log.lines,
              (Strings{"before http://site/next =", "before http://site/inner a=v", "shown",
                       "frame complete", "complete", "error http://nowhere/ 0x800C0005"}));
    EXPECT_EQ(left.url() + browser->document().Named("b").by_id.id(), "b");
    EXPECT_FALSE(left.Connect(log));
    log.connection.reset();
    it->Tell(DISPID_DOCUMENTCOMPLETE, "http://site/next");
    browser->DeliverEvents();
    EXPECT_EQ(log.lines.size(), 6U);
}

TEST_F(BrowserTest, IsBusyFromTheCallOnAndBehindADialogBox) {
    auto window = std::make_unique<BrowserWindowDouble>();
    it->SetWindow(window->frame);
    EXPECT_EQ(browser->Handle(), BrowserDouble::NumberOf(window->frame));
    Log log(*browser);
    EXPECT_FALSE(browser->Busy());
    EXPECT_EQ(browser->ReadyState(), 4);
    EXPECT_TRUE(browser->Navigate("http://site/日本"));
    EXPECT_EQ(it->is["Navigate2"].Text(), "http://site/日本");
    now = 1999;
    EXPECT_TRUE(browser->Busy());
    EXPECT_EQ(browser->ReadyState(), 1);
    now = 2000;  // by now the browser would have said so itself
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(browser->Navigate("http://site/y"));
    it->Tell(DISPID_BEFORENAVIGATE2, "http://site/y");
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(browser->Navigate("JavaScript:f()") && !browser->Busy());
    it->is["Busy"] = Variant(true);
    EXPECT_TRUE(browser->Busy());
    it->is["Busy"] = Variant(false);
    for (const HRESULT waits_for_its_user : {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER}) {
        it->failure = waits_for_its_user;
        EXPECT_TRUE(browser->Busy() && browser->Alive());
    }
    it->failure = E_FAIL;
    EXPECT_FALSE(browser->Busy());
    it->failure = S_OK;
    const HWND box = MakeWindow(L"#32770", window->content, WS_POPUP);
    EXPECT_TRUE(browser->Busy());
    DestroyWindow(box);
    EXPECT_TRUE(!browser->Busy() && browser->Alive());
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
        const Document shown = Open("<input id=a value=v>");
        Log log(*browser);
        EXPECT_EQ(shown.Named("a").by_id.value(), "v");
        it->failure = failure;
        if (failure == S_OK) it->Tell(DISPID_ONQUIT);
        EXPECT_FALSE(browser->Busy() || browser->Alive() || browser->document());
        EXPECT_FALSE(browser->Navigate("x"));
        EXPECT_EQ(shown.url() + shown.Named("a").by_id.id(), "");
        EXPECT_EQ(browser->State(), WindowState());
        it = nullptr;
        EXPECT_EQ(ObjectDouble::alive, 0);
        browser->Quit();
        browser->SetForeground();
        browser->DeliverEvents();
        EXPECT_EQ(log.lines, Strings{"quit"});
    }
}

TEST_F(BrowserTest, StandsAsItIsPut) {
    for (const WindowBars bars :
         {WindowBars{.tool = true, .address = true}, WindowBars{.menu = true, .status = true}}) {
        const WindowState state{{10, 20, 800, 600}, bars, bars.menu};
        browser->SetPlace(state.place);
        browser->SetBars(bars);
        browser->SetVisible(bars.tool);
        it->is["FullScreen"] = Variant(bars.menu);
        EXPECT_EQ(browser->State(), state);
        EXPECT_EQ(it->is["Visible"].Truth(), bars.tool);
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
    EXPECT_EQ(visible[0]->Handle(), BrowserDouble::NumberOf(front));
    EXPECT_EQ(visible[1]->Handle(), BrowserDouble::NumberOf(back));
    EXPECT_EQ(windows.Visible(), visible);
    EXPECT_FALSE(windows.Focused());
    page->focused = true;
    EXPECT_EQ(windows.Focused(), visible[0]);
    Log log(*visible[0]);
    first->Tell(DISPID_DOCUMENTCOMPLETE, "http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    first->failure = RPC_E_DISCONNECTED;
    EXPECT_EQ(windows.Visible().size(), 1U);
}

TEST_F(BrowserTest, IsMadeAsTheKindThatShowsPagesOrSaysWhyNot) {
    enum Kind { kMissing, kShowsNothing, kShowsPages };
    const struct {
        Kind plain, medium;
        bool answers, opens_plain, opens_medium;
    } rows[] = {{kShowsPages, kShowsPages, true, true, false},
                {kShowsNothing, kShowsPages, true, false, true},
                {kMissing, kShowsPages, true, false, true},
                {kShowsNothing, kShowsNothing, false, true, false},
                {kMissing, kShowsNothing, false, false, true},
                {kMissing, kMissing, false, false, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.plain << row.medium);
        const auto plain = NewBrowser(*page), medium = NewBrowser(*page);
        const auto maker = [](const ComPtr<BrowserDouble>& made, Kind kind) {
            if (kind != kShowsPages) made->is["Document"] = Variant();
            return [made, kind](HRESULT& failure) {
                failure = kind == kMissing ? REGDB_E_CLASSNOTREG : S_OK;
                return ComPtr<IDispatch>(kind == kMissing ? nullptr : made.get());
            };
        };
        sources.create = maker(plain, row.plain);
        sources.create_medium = maker(medium, row.medium);
        *sources.medium = false;
        VirtualClock clock;
        EXPECT_EQ(ExplorerAnswers(calls, sources, clock), row.answers);
        why = "";
        const auto opened = ExplorerWindows(calls, sources).Open("http://x/", why);
        EXPECT_EQ(why.empty(), opened != nullptr);
        EXPECT_EQ(plain->is["Visible"].Truth(), row.opens_plain);
        EXPECT_EQ(medium->is["Visible"].Truth(), row.opens_medium);
        EXPECT_EQ(medium->is["Navigate2"].Text() == "http://x/", row.opens_medium);
    }
}

TEST_F(BrowserTest, IsFollowedIntoAnotherProcess) {
    List(back);  // was there before
    ExplorerWindows windows(calls, sources);
    const auto made = windows.Create(why);
    Log log(*made);
    EXPECT_TRUE(made->Navigate("http://intranet/"));
    now = 9999;
    it->failure = RPC_E_DISCONNECTED;
    EXPECT_TRUE(!made->document() && made->Busy() && made->Alive());
    const auto successor = List(front);
    EXPECT_TRUE(made->Alive() && !made->Busy());
    EXPECT_EQ(made->Handle(), BrowserDouble::NumberOf(front));
    successor->Tell(DISPID_DOCUMENTCOMPLETE);
    // But only for some seconds.
    EXPECT_TRUE(made->Navigate("http://intranet/"));
    successor->failure = RPC_E_DISCONNECTED;
    EXPECT_FALSE(made->document());
    listed.pop_back();
    now += 10000;
    EXPECT_FALSE(made->Alive());
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"complete", "quit"}));
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
        it = NewBrowser(*page);
        edge.Show(page->document().get());
    }
    BrowserWindowDouble edge{L"Chrome_WidgetWin_1"};
};

TEST_F(ContentTest, IsFoundWhereTheShellDoesNotListItAndTellsOfItsPages) {
    ExplorerWindows windows(calls, sources);
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    EXPECT_EQ(found->Handle(), BrowserDouble::NumberOf(edge.frame));
    EXPECT_EQ(found->State(),
              (WindowState{{100, 50, 600, 500}, {true, false, true, false}, false}));
    found->SetPlace({110, 60, 620, 520});
    EXPECT_TRUE(Pump([&] { return found->State().place == WindowPlace{110, 60, 620, 520}; }));
    const HWND box = MakeWindow(L"#32770", edge.frame, WS_POPUP);
    EXPECT_TRUE(found->Busy());
    DestroyWindow(box);
    EXPECT_FALSE(found->Busy());
    windows.DeliverEvents();
    it = nullptr;
    EXPECT_EQ(ObjectDouble::alive, 2) << "it keeps no page of which it tells nobody";
    Show("http://site/");
    Log log(*found);
    const Document old = found->document();
    EXPECT_TRUE(found->Navigate("http://site/b"));
    EXPECT_EQ(page->went_to + " from " + old.url(), "http://site/b from http://site/");
    Show("http://site/b");
    page->ready_state = "loading";
    EXPECT_TRUE(found->Busy());
    EXPECT_EQ(found->ReadyState(), 1);
    EXPECT_EQ(old.url() + found->document().url(), "http://site/b");
    page->ready_state = "complete";
    now = 199;  // it does not ask at each turn
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown"}));
    now = 200;
    windows.DeliverEvents();
    found->Quit();
    EXPECT_EQ(page->went_to, "closed");
    DestroyWindow(edge.content);
    EXPECT_FALSE(found->Alive() || found->document());
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown", "complete", "quit"}));
}

TEST_F(ContentTest, IsItsBrowserWhereThePageGivesOne) {
    world.browser = it.get();
    ExplorerWindows windows(calls, sources);
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    Log log(*found);
    it->Tell(DISPID_DOCUMENTCOMPLETE, "http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    EXPECT_EQ(found->Handle(), BrowserDouble::NumberOf(edge.frame));
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    // Listed after all, in that frame or in another, it is no other window.
    listed.push_back(it);
    for (const HWND frame : {edge.frame, edge.content}) {
        it->SetWindow(frame);
        EXPECT_EQ(ExplorerWindows(calls, sources).Visible().size(), 1U);
    }
}

}  // namespace
}  // namespace tamrin::test
