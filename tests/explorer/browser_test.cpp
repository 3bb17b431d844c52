#include "explorer/explorer_rig.h"
#include "platform/explorer/explorer_launcher.h"
#include "support/virtual_clock.h"

namespace tamrin::test {
namespace {

class BrowserTest : public ExplorerTest {
protected:
    BrowserTest() { Open("<input id=a value=v>"); }
    // A browser that the shell lists.
    void List(HWND window, std::string_view name = "Internet Explorer") {
        listed.push_back(NewBrowser(world.Open("<p>").document()));
        listed.back()->SetWindow(window);
        listed.back()->is["Name"] = Variant(name);
    }

    const HWND front = reinterpret_cast<HWND>(20), back = reinterpret_cast<HWND>(10);
    std::vector<ComPtr<BrowserDouble>> listed;
    ExplorerSources sources{[this] {
                                std::vector<DispatchObject> browsers;
                                for (const auto& entry : listed) browsers.push_back(Called(entry));
                                std::erase_if(browsers, std::not_fn(IsIeWindow));
                                return browsers;
                            },
                            [this] { return std::vector<HWND>{front, back}; }, nullptr};
    std::string why;
};

TEST_F(BrowserTest, TellsTheWindowFromItsFramesAndBringsThePageThatIsLeftAlong) {
    const Document left = browser->document();
    Log log(*browser, left);
    const auto frame = NewBrowser(nullptr);
    it->Tell(DISPID_BEFORENAVIGATE2, "http://site/next");
    page->active = &El("a");
    it->Tell(DISPID_BEFORENAVIGATE2, "javascript:f()");
    it->Tell(DISPID_BEFORENAVIGATE2, "http://site/inner", 0, frame.get());
    it->Tell(DISPID_NAVIGATECOMPLETE2, "http://site/inner", 0, frame.get());
    it->is["Document"] = Variant(world.Open("<input id=b>").document().get());
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
}

TEST_F(BrowserTest, IsBusyFromTheCallOnAndGoneWhenKilled) {
    auto window = std::make_unique<BrowserWindowDouble>();
    it->SetWindow(window->frame);
    EXPECT_EQ(browser->Handle(), BrowserDouble::NumberOf(window->frame));
    Log log(*browser);
    EXPECT_TRUE(!browser->Busy() && browser->ReadyState() == 4);
    EXPECT_TRUE(browser->Navigate("http://site/日本"));
    EXPECT_EQ(it->is["Navigate2"].Text(), "http://site/日本");
    now = 1999;
    EXPECT_TRUE(browser->Busy() && browser->ReadyState() == 1);
    now = 2000;  // by now the browser would have said so itself
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(browser->Navigate("http://site/y"));
    it->Tell(DISPID_BEFORENAVIGATE2, "http://site/y");
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(browser->Navigate("JavaScript:f()") && !browser->Busy());
    it->failure = RPC_E_SERVERCALL_RETRYLATER;  // waits for its user
    EXPECT_TRUE(browser->Busy() && browser->Alive());
    it->failure = S_OK;
    it->is["Busy"] = Variant(true);
    EXPECT_TRUE(browser->Busy());
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
        EXPECT_EQ(shown.url(), "");
        it = nullptr;
        EXPECT_EQ(ObjectDouble::alive, 0);
        browser->Quit();
        browser->DeliverEvents();
        EXPECT_EQ(log.lines, Strings{"quit"});
    }
}

TEST_F(BrowserTest, StandsAsItIsPut) {
    const WindowState state{{10, 20, 800, 600}, {true, false, true, false}, true};
    browser->SetPlace(state.place);
    browser->SetBars(state.bars);
    it->is["FullScreen"] = Variant(true);
    EXPECT_EQ(browser->State(), state);
}

TEST_F(BrowserTest, IsListedInTheOrderOfTheScreenAndFoundByItsFocus) {
    List(back);
    List(front, "WINDOWS Internet Explorer");
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
}

TEST_F(BrowserTest, IsMadeAsTheKindThatShowsPagesOrSaysWhyNot) {
    enum Kind { kMissing, kShowsNothing, kShowsPages };
    const struct {
        Kind plain, medium;
        bool answers;
        std::string_view opened;
    } rows[] = {{kShowsPages, kShowsPages, true, "plain"},
                {kShowsNothing, kShowsPages, true, "medium"},
                {kMissing, kShowsPages, true, "medium"},
                {kShowsNothing, kShowsNothing, false, "plain"},
                {kMissing, kMissing, false, ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.plain << row.medium);
        std::string opened;
        const auto make = [&](Kind kind, const char* name, HRESULT& failure) {
            failure = kind == kMissing ? REGDB_E_CLASSNOTREG : S_OK;
            if (kind == kMissing) return ComPtr<IDispatch>();
            opened = name;
            it = NewBrowser(kind == kShowsPages ? page->document() : nullptr);
            return ComPtr<IDispatch>(it.get());
        };
        sources.create = [&](HRESULT& error) { return make(row.plain, "plain", error); };
        sources.create_medium = [&](HRESULT& error) { return make(row.medium, "medium", error); };
        *sources.medium = false;
        VirtualClock clock;
        EXPECT_EQ(ExplorerAnswers(calls, sources, clock), row.answers);
        opened = why = "";
        const auto made = ExplorerWindows(calls, sources).Open("http://x/", why);
        EXPECT_EQ(opened, row.opened);
        EXPECT_TRUE(made ? it->is["Navigate2"].Text() == "http://x/" : !why.empty());
    }
}

// Edge shows pages in windows that the shell does not list; a window inside answers for them.
TEST_F(BrowserTest, IsFoundByItsContentWindow) {
    BrowserWindowDouble edge(L"Chrome_WidgetWin_1");
    const auto show = [&](const std::string& url) {
        page = &world.Open("<input id=a value=v>", url);
        it = NewBrowser(page->document());
        edge.Show(page->document().get());
    };
    show("http://site/");
    page->focused = true;
    sources.z_order = [&edge] { return std::vector<HWND>{edge.frame}; };
    // Another one hangs, so that the shell's list, which could wait for it, is not asked.
    List(edge.frame);
    sources.contents = [this](const std::vector<HWND>& screen) {
        auto found = ContentWindows(screen);
        found.push_back({back, back, true});
        return found;
    };
    ExplorerWindows windows(calls, sources);
    const auto found = windows.Focused();
    ASSERT_TRUE(found);
    EXPECT_EQ(windows.Visible(), std::vector<std::shared_ptr<Browser>>{found});
    EXPECT_EQ(found->Handle(), BrowserDouble::NumberOf(edge.frame));
    EXPECT_EQ(found->State().place, (WindowPlace{100, 50, 600, 500}));
    Log log(*found);
    const Document old = found->document();
    EXPECT_TRUE(found->Navigate("http://site/b"));
    EXPECT_EQ(page->went_to + " from " + old.url(), "http://site/b from http://site/");
    show("http://site/b");
    page->ready_state = "loading";
    EXPECT_TRUE(found->Busy() && found->ReadyState() == 1);
    EXPECT_EQ(old.url() + found->document().url(), "http://site/b");
    page->ready_state = "complete";
    now = 200;  // it does not ask at each turn
    windows.DeliverEvents();
    world.browser = it.get();  // which is used where a page gives it
    EXPECT_TRUE(ExplorerWindows(calls, sources).Visible().at(0)->Navigate("x"));
    EXPECT_EQ(it->is["Navigate2"].Text(), "x");
    DestroyWindow(edge.content);
    EXPECT_FALSE(found->Alive() || found->document());
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"before http://site/b", "shown", "complete", "quit"}));
}

}  // namespace
}  // namespace tamrin::test
