#include <gtest/gtest.h>

#include "explorer/browser_double.h"
#include "explorer/no_input.h"
#include "explorer/page_world.h"
#include "platform/explorer/page_geometry.h"
#include "platform/explorer/explorer_launcher.h"
#include "platform/explorer/explorer_browser.h"
#include "platform/explorer/explorer_launcher.h"
#include "platform/explorer/explorer_windows.h"
#include "platform/explorer/browser_objects.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

class EventLog : public BrowserEvents {
public:
    void DocumentComplete(bool top) override {
        lines.emplace_back(top ? "complete" : "frame complete");
    }
    void BeforeNavigate2(const std::string& url) override { lines.push_back("before " + url); }
    void NavigateComplete2() override { lines.emplace_back("shown"); }
    void NavigateError(const std::string& url, const std::string& reason) override {
        lines.push_back("error " + url + " " + reason);
    }
    void OnQuit() override { lines.emplace_back("quit"); }

    Strings lines;
};

class BrowserTest : public testing::Test {
protected:
    BrowserTest() { it->page = world.Open("<input id=a value=v>"); }

    std::unique_ptr<ExplorerBrowser> Made() {
        return std::make_unique<ExplorerBrowser>(calls, ComPtr<IWebBrowser2>(it.get()));
    }
    // The doubles that are alive are those of the test itself.
    void TearDown() override {
        it->page = nullptr;
        EXPECT_EQ(world.objects.alive.size(), 0U);
        EXPECT_EQ(it->AddRef(), 2U);
        it->Release();
    }

    ComCalls calls;
    PageWorld world;
    ComPtr<BrowserDouble> it{new BrowserDouble};
};

TEST_F(BrowserTest, TellsTheWindowFromItsFramesByIdentity) {
    const auto browser = Made();
    EventLog log;
    auto connection = browser->Connect(log);
    const ComPtr<BrowserDouble> frame(new BrowserDouble);
    it->FireBeforeNavigate2("http://site/next");
    it->FireBeforeNavigate2("javascript:f()");
    it->FireBeforeNavigate2("http://site/inner", frame.get());
    it->FireNavigateComplete2("http://site/inner", frame.get());
    it->FireNavigateComplete2("http://site/next");
    it->FireDocumentComplete("http://site/inner", frame.get());
    it->FireDocumentComplete("http://site/next");
    it->FireNavigateError("http://site/missing", 404);
    it->FireNavigateError("http://nowhere/", static_cast<long>(0x800C0005));
    EXPECT_EQ(log.lines, Strings());
    browser->DeliverEvents();
    EXPECT_EQ(log.lines,
              (Strings{"before http://site/next", "before http://site/inner", "shown",
                       "frame complete", "complete", "error http://nowhere/ 0x800C0005"}));
    connection.reset();
    it->FireDocumentComplete("http://site/next");
    browser->DeliverEvents();
    EXPECT_EQ(log.lines.size(), 6U);
}

TEST_F(BrowserTest, IsBusyFromTheCallOn) {
    const auto browser = Made();
    EXPECT_FALSE(browser->Busy());
    EXPECT_EQ(browser->ReadyState(), 4);
    EXPECT_TRUE(browser->Navigate("http://site/日本"));
    EXPECT_EQ(it->lines, Strings{"Navigate2 http://site/日本"});
    EXPECT_TRUE(browser->Busy());
    EXPECT_EQ(browser->ReadyState(), 1);
    it->FireBeforeNavigate2("http://site/x");
    EXPECT_FALSE(browser->Busy());
    it->busy = true;
    EXPECT_TRUE(browser->Busy());
    it->failure = RPC_E_CALL_REJECTED;
    EXPECT_TRUE(browser->Busy());
    EXPECT_TRUE(browser->Alive());
}

TEST_F(BrowserTest, BringsThePageThatIsLeftAlong) {
    class Reader : public EventLog {
    public:
        explicit Reader(Document document) : page(std::move(document)) {}
        void BeforeNavigate2(const std::string&) override {
            lines.push_back(page.activeElement().id() + page.activeElement().value());
        }
        Document page;
    };
    class Nobody : public DocumentEvents {
        void onclick() override {}
        void onfocusin() override {}
        void onbeforedeactivate() override {}
        void onkeypress(int) override {}
        void onsubmit() override {}
    } nobody;
    const auto browser = Made();
    Reader reader(browser->document());
    const auto page_connection = reader.page.Connect(nobody);
    const auto connection = browser->Connect(reader);
    world.Run("user.focus(el('a')); el('a').value = 'typed'");
    it->FireBeforeNavigate2("http://site/next");
    it->page = world.Open("<input id=b>");
    it->FireNavigateComplete2("http://site/next");
    EXPECT_EQ(reader.page.url(), "");
    browser->DeliverEvents();
    EXPECT_EQ(reader.lines, (Strings{"atyped", "shown"}));
    EXPECT_EQ(browser->document().Named("b").by_id.id(), "b");
}

TEST_F(BrowserTest, GivesEverythingBackWhenTheBrowserIsGone) {
    for (const bool by_event : {true, false}) {
        it->failure = S_OK;
        const auto browser = Made();
        EventLog log;
        const auto connection = browser->Connect(log);
        const Document page = browser->document();
        EXPECT_EQ(page.Named("a").by_id.value(), "v");
        if (by_event) {
            it->FireOnQuit();
        } else {
            it->failure = HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE);
            browser->Busy();
        }
        EXPECT_FALSE(browser->Alive() || browser->document() || browser->Navigate("x"));
        EXPECT_EQ(page.url() + page.Named("a").by_id.id(), "");
        EXPECT_EQ(browser->State(), WindowState());
        EXPECT_EQ(it->AddRef(), 2U);  // only the test's own
        it->Release();
        it->FireDocumentComplete("http://site/");
        browser->Quit();
        browser->SetForeground();
        browser->DeliverEvents();
        EXPECT_EQ(log.lines, Strings{"quit"});
    }
}

TEST_F(BrowserTest, StandsAsItIsPut) {
    const auto browser = Made();
    const WindowState state{{10, 20, 800, 600}, {true, false, true, false}, false};
    browser->SetPlace(state.place);
    browser->SetBars(state.bars);
    browser->SetVisible(true);
    EXPECT_EQ(browser->State(), state);
    it->failure = E_FAIL;
    EXPECT_EQ(browser->State(), WindowState());
    EXPECT_EQ(browser->Handle(), 0U);
    EXPECT_TRUE(browser->Alive());
}

TEST_F(BrowserTest, LeavesNothingOfAThousandAttachments) {
    const ComPtr<IDispatch> page = it->page;
    for (int i = 0; i < 1000; ++i) {
        const auto browser = Made();
        EventLog log;
        const auto connection = browser->Connect(log);
        ASSERT_TRUE(browser->document().activeElement());
    }
    EXPECT_LE(DoublesAlive(), 5U);
}

// Two windows of which the second is in front, a folder's, and one that is minimised.
class WindowsTest : public BrowserTest {
protected:
    WindowsTest() {
        it->window = reinterpret_cast<HWND>(10);
        front->window = reinterpret_cast<HWND>(20);
        front->name = "WINDOWS Internet Explorer";
        front->page = world.Open("<p>");
        folder->window = reinterpret_cast<HWND>(30);
        folder->name = "Windows エクスプローラー";
        hidden->window = reinterpret_cast<HWND>(40);
    }
    ExplorerSources Sources() {
        return {[this] {
                    std::vector<ComPtr<IWebBrowser2>> browsers;
                    for (auto* entry : {it.get(), front.get(), folder.get(), hidden.get()}) {
                        if (IsIeWindow(calls, *entry)) browsers.emplace_back(entry);
                    }
                    return browsers;
                },
                [] {
                    return std::vector<HWND>{reinterpret_cast<HWND>(30), reinterpret_cast<HWND>(20),
                                             reinterpret_cast<HWND>(10)};
                },
                [this](HRESULT& failure) {
                    failure = it->failure;
                    return FAILED(failure) ? nullptr : ComPtr<IWebBrowser2>(it.get());
                }};
    }

    ComPtr<BrowserDouble> front{new BrowserDouble};
    ComPtr<BrowserDouble> folder{new BrowserDouble};
    ComPtr<BrowserDouble> hidden{new BrowserDouble};
};

TEST_F(WindowsTest, AreTheVisibleBrowsersInTheOrderOfTheScreen) {
    ExplorerWindows windows(calls, Sources());
    const auto visible = windows.Visible();
    ASSERT_EQ(visible.size(), 2U);
    EXPECT_EQ(visible[0]->Handle(), 20U);
    EXPECT_EQ(visible[1]->Handle(), 10U);
    EXPECT_EQ(windows.Visible(), visible);
    front->failure = RPC_E_DISCONNECTED;
    EXPECT_EQ(windows.Visible().size(), 1U);
    front->failure = S_OK;
    front->page = nullptr;
}

TEST_F(WindowsTest, AreFocusedByTheirDocument) {
    ExplorerWindows windows(calls, Sources());
    EXPECT_FALSE(windows.Focused());
    world.Run("page.__focused = true");
    const auto focused = windows.Focused();
    ASSERT_TRUE(focused);
    EXPECT_EQ(focused->Handle(), 20U);
    EventLog log;
    const auto connection = focused->Connect(log);
    front->FireDocumentComplete("http://site/");
    windows.DeliverEvents();
    EXPECT_EQ(log.lines, Strings{"complete"});
    front->page = nullptr;
}

TEST_F(WindowsTest, AreOpenedAndCreated) {
    NoInput input;
    ExplorerLauncher launcher(calls, Sources(), input);
    ExplorerWindows windows(calls, Sources());
    std::string why;
    EXPECT_TRUE(launcher.Create(why));
    EXPECT_TRUE(windows.Open("", why));
    EXPECT_EQ(it->lines, (Strings{"Visible -1", "Navigate2 about:blank"}));
    EXPECT_EQ(why, "");
    it->failure = REGDB_E_CLASSNOTREG;
    EXPECT_FALSE(launcher.Create(why));
    EXPECT_NE(why, "");
    it->failure = S_OK;
    front->page = nullptr;
}

TEST_F(WindowsTest, FollowABrowserIntoAnotherProcess) {
    bool moved = false;
    ExplorerSources sources = Sources();
    sources.browsers = [&] {
        std::vector<ComPtr<IWebBrowser2>> browsers{ComPtr<IWebBrowser2>(folder.get())};
        if (moved) browsers.emplace_back(front.get());
        return browsers;
    };
    NoInput input;
    ExplorerLauncher launcher(calls, sources, input);
    std::string why;
    const auto browser = launcher.Create(why);
    ASSERT_TRUE(browser);
    EventLog log;
    const auto connection = browser->Connect(log);
    EXPECT_TRUE(browser->Navigate("http://intranet/"));
    it->failure = RPC_E_DISCONNECTED;
    EXPECT_TRUE(browser->Busy());
    EXPECT_TRUE(browser->Busy() && browser->Alive());
    EXPECT_FALSE(browser->document());
    moved = true;
    EXPECT_TRUE(browser->Alive());
    EXPECT_EQ(browser->Handle(), 20U);
    front->FireDocumentComplete("http://intranet/");
    browser->Quit();
    front->FireOnQuit();
    launcher.DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"complete", "quit"}));
    EXPECT_FALSE(browser->Alive());
    it->failure = S_OK;
    front->page = nullptr;
}

TEST_F(WindowsTest, AnswerWithADocumentOrNot) {
    class CountingClock : public Clock {
    public:
        std::uint32_t TickCount() const override { return now; }
        std::string TimeStamp() const override { return {}; }
        void Sleep(int milliseconds) override { now += static_cast<std::uint32_t>(milliseconds); }
        void DoEvents() override {}
        std::uint32_t now = 0;
    };
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
    for (const auto& row : rows) {
        const auto made = [](bool exists, const ComPtr<BrowserDouble>& browser) {
            return [exists, &browser](HRESULT& failure) {
                failure = exists ? S_OK : REGDB_E_CLASSNOTREG;
                return exists ? ComPtr<IWebBrowser2>(browser.get()) : nullptr;
            };
        };
        ExplorerSources sources = Sources();
        sources.create = made(row.plain, it);
        sources.create_medium = made(row.medium, front);
        it->page = row.plain_page ? page : nullptr;
        front->page = row.medium_page ? page : nullptr;
        it->lines.clear();
        CountingClock clock;
        EXPECT_EQ(ExplorerAnswers(calls, sources, clock), row.answers);
        EXPECT_LE(clock.now, 11000U);
        EXPECT_EQ(*sources.medium, row.made_medium);
        const Strings asked{"Navigate2 about:blank", "Quit"};
        EXPECT_EQ(it->lines, row.plain ? asked : Strings());
    }
    front->page = nullptr;
}

}  // namespace
}  // namespace tamrin::test
