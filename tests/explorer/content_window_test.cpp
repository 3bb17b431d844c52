#include "platform/explorer/page_geometry.h"

#include <gtest/gtest.h>

#include "explorer/page_world.h"
#include "platform/explorer/explorer_document.h"
#include "platform/explorer/screen_windows.h"
#include "platform/explorer/page_pool.h"

namespace tamrin::test {
namespace {

constexpr wchar_t kServer[] = L"Internet Explorer_Server";

// Windows as a browser has them. They go with the outermost one.
class ContentWindowTest : public testing::Test {
protected:
    ContentWindowTest() {
        for (const wchar_t* name : {kServer, L"Shell DocObject View"}) {
            WNDCLASSW window_class{};
            window_class.lpfnWndProc = DefWindowProcW;
            window_class.lpszClassName = name;
            RegisterClassW(&window_class);
        }
        frame = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 100, 50, 600, 400,
                                nullptr, nullptr, nullptr, nullptr);
    }
    ~ContentWindowTest() override { DestroyWindow(frame); }

    HWND View(HWND parent) {
        return CreateWindowExW(0, L"Shell DocObject View", L"", WS_CHILD | WS_VISIBLE, 0, 0, 600,
                               400, parent, nullptr, nullptr, nullptr);
    }
    HWND Server(HWND parent, int height) {
        return CreateWindowExW(0, kServer, L"", WS_CHILD | WS_VISIBLE, 20, 30, 500, height, parent,
                               nullptr, nullptr, nullptr);
    }

    HWND frame = nullptr;
};

using FindIeServerWindowTest = ContentWindowTest;

TEST_F(FindIeServerWindowTest, TakesTheLastOfSeveralThatHasAHeight) {
    EXPECT_EQ(FindIeServerWindow(nullptr), nullptr);
    const HWND first_tab = View(frame);
    EXPECT_EQ(FindIeServerWindow(frame), nullptr);
    const HWND hidden = Server(first_tab, 0);
    EXPECT_EQ(FindIeServerWindow(frame), hidden) << "the only one";
    const HWND tall = Server(View(frame), 300);
    EXPECT_EQ(FindIeServerWindow(frame), tall);
    Server(View(frame), 0);
    EXPECT_EQ(FindIeServerWindow(frame), tall) << "not one without a height";
    const HWND inner = Server(View(tall), 10);
    EXPECT_EQ(FindIeServerWindow(frame), inner) << "not the tallest, and at any depth";
    EXPECT_EQ(FindIeServerWindow(first_tab), hidden);
}

using ScreenPointOfTest = ContentWindowTest;

TEST_F(ScreenPointOfTest, CountsFramesAndTheZoomIn) {
    for (const int mode : {11, 7}) {
        ComCalls calls;
        PageWorld world;
        const auto pool = std::make_shared<PagePool>(calls);
        world.Serve("inner", "<input id=b data-box='10 20 60 40'>");
        const Document page(pool->Page(
            world.Open("<input id=a data-box='5 -7.5 30 50'><input id=out><iframe id=f src=inner "
                       "data-box='100 200 300 400'></iframe>",
                       mode)));
        const HWND content = Server(View(frame), 300);
        const Element a = page.Named("a").by_id;
        const Element b = page.frames().at(0).document.Named("b").by_id;
        ASSERT_TRUE(a && b);
        EXPECT_EQ(ScreenPointOf(a, content), (ScreenPoint{125, 72}));
        EXPECT_EQ(ScreenPointOf(b, content), (ScreenPoint{230, 300}));
        world.Run(
            "el('f').clientLeft = 2; el('f').clientTop = 3;"
            "page.__window.screen = {deviceXDPI: 144, logicalXDPI: 96}");
        EXPECT_EQ(ScreenPointOf(a, content), (ScreenPoint{128, 69}));
        EXPECT_EQ(ScreenPointOf(b, content), (ScreenPoint{288, 415}));
        world.Run("page.__window.screen = null");
        EXPECT_EQ(ScreenPointOf(b, content), (ScreenPoint{232, 303}));
        SetWindowPos(frame, nullptr, -200, 10, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        EXPECT_EQ(ScreenPointOf(a, content), (ScreenPoint{-175, 32})) << "another screen";
        EXPECT_FALSE(ScreenPointOf(page.Named("out").by_id, content));
        EXPECT_FALSE(ScreenPointOf(Element(), content));
        DestroyWindow(content);
        EXPECT_FALSE(ScreenPointOf(a, content));
        SetWindowPos(frame, nullptr, 100, 50, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        pool->KeepOnly(nullptr);
        EXPECT_FALSE(ScreenPointOf(a, frame)) << "the page is gone";
    }
}

using BringToForegroundTest = ContentWindowTest;

TEST_F(BringToForegroundTest, RestoresAWindowAndGoesToTheBoxThatHoldsItUp) {
    const auto make = [](HWND owner, const wchar_t* title) {
        return CreateWindowExW(0, L"STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 300, 300, 200,
                               100, owner, nullptr, nullptr, nullptr);
    };
    const auto brings = [](HWND window) {
        BringToForeground(window);
        return GetForegroundWindow();
    };
    const HWND browser = make(nullptr, L"browser");
    EXPECT_EQ(brings(frame), frame);
    EXPECT_EQ(brings(browser), browser);
    ShowWindow(browser, SW_MINIMIZE);
    brings(browser);
    for (int i = 0; i < 100 && IsIconic(browser); ++i) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(10);
    }
    EXPECT_FALSE(IsIconic(browser));
    const HWND box = make(browser, L"box");
    EnableWindow(browser, FALSE);
    EXPECT_EQ(brings(frame), frame);
    EXPECT_EQ(brings(browser), box);
    DestroyWindow(browser);
    BringToForeground(browser);
    BringToForeground(nullptr);
}

}  // namespace
}  // namespace tamrin::test
