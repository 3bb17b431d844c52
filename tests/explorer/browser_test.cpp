#include <gtest/gtest.h>

#include "explorer/browser_double.h"
#include "explorer/browser_log.h"
#include "explorer/explorer_machine.h"
#include "explorer/page_double.h"
#include "explorer/window_double.h"
#include "platform/explorer/browser_objects.h"
#include "platform/explorer/explorer_launcher.h"
#include "support/virtual_clock.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

class BrowserTest : public testing::Test {
protected:
    BrowserTest() {
        it->page = world.Open("<input id=a value=v>").document();
        calls.SetNow([this] { return now; });
    }
    std::unique_ptr<ExplorerBrowser> Made() {
        return std::make_unique<ExplorerBrowser>(calls, ComPtr<IWebBrowser2>(it.get()));
    }
    void TearDown() override {
        it->page = nullptr;
        EXPECT_TRUE(world.IsReleased());
        EXPECT_TRUE(it->IsReleased());
    }

    std::uint64_t now = 0;
    ComCalls calls;
    PageWorld world;
    ComPtr<BrowserDouble> it{new BrowserDouble};
};

TEST_F(BrowserTest, TellsTheWindowFromItsFramesByIdentity) {
    const auto browser = Made();
    BrowserLog log;
    auto connection = browser->Connect(log);
    const ComPtr<BrowserDouble> frame(new BrowserDouble);
    it->Fire(DISPID_BEFORENAVIGATE2, "http://site/next");
    it->Fire(DISPID_BEFORENAVIGATE2, "javascript:f()");
    it->Fire(DISPID_BEFORENAVIGATE2, "http://site/inner", frame.get());
    it->Fire(DISPID_NAVIGATECOMPLETE2, "http://site/inner", frame.get());
    it->Fire(DISPID_NAVIGATECOMPLETE2, "http://site/next");
    it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/inner", frame.get());
    it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/next");
    it->Fire(DISPID_NAVIGATEERROR, "http://site/missing", nullptr, 404);
    it->Fire(DISPID_NAVIGATEERROR, "http://nowhere/", nullptr, static_cast<int>(0x800C0005));
    EXPECT_EQ(log.lines, Strings());
    browser->DeliverEvents();
    EXPECT_EQ(log.lines,
              (Strings{"before http://site/next", "before http://site/inner", "shown",
                       "frame complete", "complete", "error http://nowhere/ 0x800C0005"}));
    connection.reset();
    it->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/next");
    browser->DeliverEvents();
    EXPECT_EQ(log.lines.size(), 6U);
}

TEST_F(BrowserTest, IsBusyFromTheCallOn) {
    const auto browser = Made();
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
    EXPECT_TRUE(browser->Navigate("JavaScript:f()"));
    EXPECT_FALSE(browser->Busy());
    it->busy = VARIANT_TRUE;
    EXPECT_TRUE(browser->Busy());
    for (const HRESULT waits_for_its_user : {RPC_E_CALL_REJECTED, RPC_E_SERVERCALL_RETRYLATER}) {
        it->failure = waits_for_its_user;
        EXPECT_TRUE(browser->Busy());
        EXPECT_TRUE(browser->Alive());
    }
    it->failure = E_FAIL;
    EXPECT_FALSE(browser->Busy());
}

TEST_F(BrowserTest, IsBusyBehindADialogBoxAndGoneWithItsWindow) {
    const auto window = std::make_unique<BrowserWindowDouble>();
    it->window = window->frame;
    const auto browser = Made();
    BrowserLog log;
    const auto connection = browser->Connect(log);
    const Element a = browser->document().Named("a").by_id;
    const HWND box = MakeWindow(L"#32770", window->content, WS_POPUP | WS_VISIBLE, {});
    EXPECT_TRUE(browser->Busy());
    EXPECT_FALSE(a.click());
    DestroyWindow(box);
    EXPECT_FALSE(browser->Busy());
    EXPECT_TRUE(a.click() && browser->Alive());
    DestroyWindow(window->frame);
    EXPECT_FALSE(browser->Alive());
    browser->DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"quit"});
}

TEST_F(BrowserTest, BringsThePageThatIsLeftAlong) {
    class Nobody : public DocumentEvents {
        void onclick() override {}
        void onfocusin() override {}
        void onbeforedeactivate() override {}
        void onkeypress(int) override {}
        void onsubmit() override {}
    } nobody;
    class Reader : public BrowserLog {
    public:
        explicit Reader(Document document) : page(std::move(document)) {}
        void BeforeNavigate2(const std::string&) override {
            lines.push_back(page.activeElement().id() + page.activeElement().value());
        }
        Document page;
    };
    const auto browser = Made();
    Reader reader(browser->document());
    const auto page_connection = reader.page.Connect(nobody);
    const auto connection = browser->Connect(reader);
    world.page().Focus(world.page().El("a"));
    world.page().El("a").value = "typed";
    it->Fire(DISPID_BEFORENAVIGATE2, "http://site/next");
    it->page = world.Open("<input id=b>").document();
    it->Fire(DISPID_NAVIGATECOMPLETE2, "http://site/next");
    EXPECT_EQ(reader.page.url(), "");
    browser->DeliverEvents();
    EXPECT_EQ(reader.lines, (Strings{"atyped", "shown"}));
    EXPECT_EQ(browser->document().Named("b").by_id.id(), "b");
}

TEST_F(BrowserTest, GivesEverythingBackWhenTheBrowserIsGone) {
    for (const HRESULT failure :
         {S_OK, HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE), HRESULT_FROM_WIN32(RPC_S_CALL_FAILED),
          RPC_E_DISCONNECTED, RPC_E_SERVER_DIED, RPC_E_SERVER_DIED_DNE, CO_E_OBJNOTCONNECTED}) {
        SCOPED_TRACE(failure);
        it->failure = S_OK;
        const auto browser = Made();
        BrowserLog log;
        const auto connection = browser->Connect(log);
        const Document page = browser->document();
        EXPECT_EQ(page.Named("a").by_id.value(), "v");
        it->failure = failure;
        if (failure == S_OK) it->Fire(DISPID_ONQUIT);
        EXPECT_FALSE(browser->Busy() || browser->Alive() || browser->document());
        EXPECT_FALSE(browser->Navigate("x"));
        EXPECT_EQ(page.url() + page.Named("a").by_id.id(), "");
        EXPECT_EQ(browser->State(), WindowState());
        EXPECT_TRUE(it->IsReleased());
        browser->Quit();
        browser->SetForeground();
        browser->DeliverEvents();
        EXPECT_EQ(log.lines, Strings{"quit"});
    }
}

TEST_F(BrowserTest, StandsAsItIsPut) {
    const auto browser = Made();
    for (const WindowBars bars :
         {WindowBars{.tool = true, .address = true}, WindowBars{.menu = true, .status = true}}) {
        const WindowState state{{10, 20, 800, 600}, bars, false};
        browser->SetPlace(state.place);
        browser->SetBars(state.bars);
        browser->SetVisible(bars.tool);
        EXPECT_EQ(browser->State(), state);
        EXPECT_EQ(it->lines.back(), bars.tool ? "Visible -1" : "Visible 0");
    }
    it->FullScreen = VARIANT_TRUE;
    EXPECT_TRUE(browser->State().full_screen);
    it->failure = E_FAIL;
    EXPECT_EQ(browser->State(), WindowState());
    EXPECT_EQ(browser->Handle(), 0U);
    EXPECT_TRUE(browser->Alive());
}

// Two windows of which the second is in front, a folder's, and one that is minimised.
class WindowsTest : public BrowserTest {
protected:
    WindowsTest() {
        const auto handle = [](int number) { return reinterpret_cast<HWND>(number); };
        it->window = handle(10);
        front->window = handle(20);
        front->name = "WINDOWS Internet Explorer";
        front->page = world.Open("<p>").document();
        folder->window = handle(30);
        folder->name = "Windows エクスプローラー";
        hidden->window = handle(40);
        listed = {it.get(), front.get(), folder.get(), hidden.get()};
        sources = {[this] {
                       std::vector<ComPtr<IWebBrowser2>> browsers;
                       for (auto* entry : listed) {
                           if (IsIeWindow(calls, *entry)) browsers.emplace_back(entry);
                       }
                       return browsers;
                   },
                   [handle] { return std::vector<HWND>{handle(30), handle(20), handle(10)}; },
                   Maker(it)};
    }
    void TearDown() override {
        front->page = nullptr;
        BrowserTest::TearDown();
    }
    // Makes a browser, or fails as that one's calls do.
    static std::function<ComPtr<IWebBrowser2>(HRESULT&)> Maker(const ComPtr<BrowserDouble>& made) {
        return [&made](HRESULT& failure) {
            failure = made->failure;
            return FAILED(failure) ? nullptr : ComPtr<IWebBrowser2>(made.get());
        };
    }

    ComPtr<BrowserDouble> front{new BrowserDouble};
    ComPtr<BrowserDouble> folder{new BrowserDouble};
    ComPtr<BrowserDouble> hidden{new BrowserDouble};
    std::vector<BrowserDouble*> listed;
    ExplorerSources sources;
    NoInput input;
    std::string why;
};

TEST_F(WindowsTest, AreTheVisibleBrowsersInTheOrderOfTheScreen) {
    ExplorerWindows windows(calls, sources);
    const auto visible = windows.Visible();
    ASSERT_EQ(visible.size(), 2U);
    EXPECT_EQ(visible[0]->Handle(), 20U);
    EXPECT_EQ(visible[1]->Handle(), 10U);
    EXPECT_EQ(windows.Visible(), visible);
    EXPECT_FALSE(windows.Focused());
    world.page().focused = true;
    const auto focused = windows.Focused();
    EXPECT_EQ(focused, visible[0]);
    BrowserLog log;
    const auto connection = focused->Connect(log);
    front->Fire(DISPID_DOCUMENTCOMPLETE, "http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    front->failure = RPC_E_DISCONNECTED;
    EXPECT_EQ(windows.Visible().size(), 1U);
}

TEST_F(WindowsTest, AreOpenedAndCreated) {
    ExplorerLauncher launcher(calls, sources, input);
    ExplorerWindows windows(calls, sources);
    EXPECT_TRUE(launcher.Create(why));
    EXPECT_TRUE(windows.Open("", why));
    EXPECT_TRUE(windows.Open("http://x/", why));
    EXPECT_EQ(it->lines, (Strings{"Visible -1", "Navigate2 about:blank", "Visible -1",
                                  "Navigate2 http://x/"}));
    EXPECT_EQ(why, "");
    it->failure = REGDB_E_CLASSNOTREG;
    EXPECT_FALSE(launcher.Create(why) || windows.Open("", why));
    EXPECT_NE(why, "");
    sources.create_medium = Maker(front);
    EXPECT_EQ(ExplorerLauncher(calls, sources, input).Create(why)->Handle(), 20U);
}

TEST_F(WindowsTest, FollowABrowserIntoAnotherProcess) {
    const struct {
        std::uint64_t dies_at, comes_at;
        bool quits, moves;
    } rows[] = {{9999, 14998, false, true},
                {9999, 14999, false, false},
                {10000, 10000, false, false},
                {100, 100, true, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.comes_at);
        listed = {folder.get(), hidden.get()};
        it->failure = S_OK;
        now = 0;
        ExplorerLauncher launcher(calls, sources, input);
        const auto browser = launcher.Create(why);
        BrowserLog log;
        const auto connection = browser->Connect(log);
        EXPECT_TRUE(browser->Navigate("http://intranet/"));
        if (row.quits) browser->Quit();
        now = row.dies_at;
        it->failure = RPC_E_DISCONNECTED;
        browser->Busy();
        EXPECT_FALSE(browser->document());
        now = row.comes_at;
        EXPECT_EQ(browser->Busy(), row.moves);
        listed.push_back(front.get());
        EXPECT_EQ(browser->Alive(), row.moves);
        EXPECT_EQ(browser->Handle(), row.moves ? 20U : 0U);
        front->Fire(DISPID_DOCUMENTCOMPLETE);
        front->Fire(DISPID_ONQUIT);
        launcher.DeliverEvents();
        EXPECT_EQ(log.lines, row.moves ? (Strings{"complete", "quit"}) : Strings{"quit"});
        EXPECT_FALSE(browser->Alive());
    }
    it->failure = S_OK;
}

TEST_F(WindowsTest, AnswerWithADocumentOrNot) {
    // Which of the two there are, and what they show.
    const struct {
        bool plain, plain_page, medium, medium_page, answers, made_medium;
    } rows[] = {{true, true, true, true, true, false},
                {true, false, true, true, true, true},
                {false, false, true, true, true, true},
                {true, false, true, false, false, false},
                {false, false, false, false, false, false}};
    const ComPtr<IDispatch> page = it->page;
    it->window = front->window = GetDesktopWindow();
    sources.create_medium = Maker(front);
    for (const auto& row : rows) {
        it->failure = row.plain ? S_OK : REGDB_E_CLASSNOTREG;
        front->failure = row.medium ? S_OK : REGDB_E_CLASSNOTREG;
        it->page = row.plain_page ? page : nullptr;
        front->page = row.medium_page ? page : nullptr;
        it->lines.clear();
        *sources.medium = false;
        VirtualClock clock;
        EXPECT_EQ(ExplorerAnswers(calls, sources, clock), row.answers);
        const bool waits = row.plain && !row.plain_page;
        EXPECT_GE(clock.Elapsed(), waits ? 5000U : 0U);
        EXPECT_LE(clock.Elapsed(), 10100U);
        EXPECT_EQ(*sources.medium, row.made_medium);
        EXPECT_EQ(it->lines, row.plain ? (Strings{"Navigate2 about:blank", "Quit"}) : Strings());
    }
    it->failure = S_OK;
}

// The browser of the system that runs the test, in a process of its own; some know no more of it.
TEST(SystemBrowser, IsMadeShownAndMissed) {
    ComCalls calls;
    ShellList list(calls);
    for (int pass = 0; pass < 2; ++pass) list.Browsers();
    HRESULT failure = S_OK;
    auto object = SystemSources(calls).create(failure);
    if (!object) GTEST_SKIP() << "no browser: " << std::hex << failure;
    ExplorerBrowser browser(calls, std::move(object));
    BrowserLog log;
    Strings lines;
    calls.Trace([&lines](const std::string& line) { lines.push_back(line); });
    const auto connection = browser.Connect(log);
    browser.SetVisible(true);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the number is the handle
    const auto window = reinterpret_cast<HWND>(browser.Handle());
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_TRUE(browser.Alive());
    EXPECT_EQ(lines, Strings());
    DWORD process_id = 0;
    GetWindowThreadProcessId(window, &process_id);
    const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, process_id);
    EXPECT_TRUE(TerminateProcess(process, 1));
    CloseHandle(process);
    EXPECT_TRUE(Pump([&] {
        browser.Alive();
        browser.DeliverEvents();
        return log.lines == Strings{"quit"};
    }));
}

}  // namespace
}  // namespace tamrin::test
