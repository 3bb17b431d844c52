#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "explorer/page_double.h"
#include "explorer/window_double.h"
#include "platform/explorer/browser_objects.h"
#include "platform/explorer/call_filter.h"
#include "platform/explorer/explorer_browser.h"

namespace tamrin::test {

using Strings = std::vector<std::string>;

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
        calls.Trace([this](const std::string& line) { trace.push_back(line); });
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
    Strings trace;
    ComCalls calls;
    PageWorld world;
    PageDouble* page = nullptr;  // that is shown
    ComPtr<BrowserDouble> it;
    std::unique_ptr<ExplorerBrowser> browser;
};

}  // namespace tamrin::test
