#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <mshtml.h>
#include <oleacc.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "explorer/browser_double.h"
#include "platform/explorer/browser_objects.h"
#include "platform/explorer/call_filter.h"
#include "platform/explorer/explorer_browser.h"

namespace tamrin::test {

using Strings = std::vector<std::string>;

// Makes a visible window of a class of this name, in this thread; the class answers nothing of its
// own. One with WS_CHILD is a part of `above`, any other is owned by it.
inline HWND MakeWindow(const wchar_t* name, HWND above, DWORD style, const RECT& at = {}) {
    WNDCLASSW made{};
    made.lpfnWndProc = DefWindowProcW;
    made.lpszClassName = name;
    RegisterClassW(&made);  // fails where it is known already
    return CreateWindowExW(0, name, L"", style | WS_VISIBLE, at.left, at.top, at.right - at.left,
                           at.bottom - at.top, above, nullptr, nullptr, nullptr);
}

// Handles messages until `over` holds; calls from other threads are served meanwhile. False when
// that takes too long.
inline bool Pump(const std::function<bool()>& over) {
    const DWORD start = GetTickCount();
    while (!over() && GetTickCount() - start < 10000) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
    return over();
}

// The frame of a browser with the window of its page inside.
class BrowserWindowDouble {
public:
    explicit BrowserWindowDouble(const wchar_t* frame_class = L"IEFrame")
        : frame(MakeWindow(frame_class, nullptr, WS_OVERLAPPEDWINDOW, {100, 50, 700, 550})) {
        RECT client{};
        GetClientRect(frame, &client);
        // The tabs in the background have no height.
        MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD);
        content = MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD, client);
        MakeWindow(L"Internet Explorer_Server", frame, WS_CHILD);
        SetWindowLongPtrW(content, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Answer));
    }
    ~BrowserWindowDouble() { DestroyWindow(frame); }
    BrowserWindowDouble(const BrowserWindowDouble&) = delete;
    BrowserWindowDouble& operator=(const BrowserWindowDouble&) = delete;

    // What the content window answers to those who ask for its document.
    void Show(IDispatch* document) { SetPropW(content, L"TamrinDocument", document); }

    HWND frame;
    HWND content;

private:
    static LRESULT CALLBACK Answer(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
        static const UINT asked = RegisterWindowMessageW(L"WM_HTML_GETOBJECT");
        auto* const document = static_cast<IDispatch*>(GetPropW(window, L"TamrinDocument"));
        if (message == asked && document)
            return LresultFromObject(IID_IHTMLDocument, wparam, document);
        return DefWindowProcW(window, message, wparam, lparam);
    }
};

// Writes down what a browser and its page tell; with a page also the active element's id and value.
class Log : public BrowserEvents, public DocumentEvents {
public:
    explicit Log(Browser& browser, Document its_page = {})
        : page(std::move(its_page)),
          connection(browser.Connect(*this)),
          page_connection(page.Connect(*this)) {}

    void DocumentComplete(bool top) override { Note(top ? "complete" : "frame complete"); }
    void BeforeNavigate2(const std::string& url) override { Note("before " + url); }
    void NavigateComplete2() override { Note("shown"); }
    void NavigateError(const std::string& url, const std::string& reason) override {
        Note("error " + url + " " + reason);
    }
    void OnQuit() override { Note("quit"); }
    void onclick() override { Note("click"); }
    void onfocusin() override { Note("focus"); }
    void onbeforedeactivate() override { Note("leave"); }
    void onkeypress(int key) override { Note("key" + std::to_string(key)); }
    void onsubmit() override { Note("submit"); }
    void Note(const std::string& event) {
        const Element active = page.activeElement();
        lines.push_back(active ? event + " " + active.id() + "=" + active.value() : event);
        if (during) during(event);
    }

    Document page;
    Strings lines;
    std::function<void(const std::string& event)> during;  // runs in each handler
    std::unique_ptr<Connection> connection;
    std::unique_ptr<Connection> page_connection;
};

// A browser that shows a page. At the end of a test nobody may hold any of their objects.
class ExplorerTest : public testing::Test {
protected:
    ExplorerTest() {
        ObjectDouble::alive = 0;
        calls.SetNow([this] { return now; });
    }
    void TearDown() override {
        browser = nullptr;
        it = nullptr;
        EXPECT_EQ(ObjectDouble::alive, 0);
    }
    ComPtr<BrowserDouble> NewBrowser(PageDouble& shown) {
        const ComPtr<BrowserDouble> made(new BrowserDouble(world.faults));
        made->is["Document"] = Variant(shown.document().get());
        return made;
    }
    Document Open(std::string_view html, int mode = 11) {
        page = &world.Open(html, mode);
        it = NewBrowser(*page);
        browser = std::make_unique<ExplorerBrowser>(calls, Called(it));
        return browser->document();
    }
    // A browser as the program calls it.
    DispatchObject Called(const ComPtr<BrowserDouble>& object) {
        return BrowserObject(calls, ComPtr<IDispatch>(object.get()));
    }
    Node& El(std::string_view id) { return page->El(id); }

    const Apartment apartment;
    std::uint64_t now = 0;
    ComCalls calls;
    PageWorld world;
    PageDouble* page = nullptr;  // that is shown
    ComPtr<BrowserDouble> it;
    std::unique_ptr<ExplorerBrowser> browser;
};

}  // namespace tamrin::test
