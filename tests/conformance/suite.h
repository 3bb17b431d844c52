#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "conformance/back_end.h"
#include "samples/web_server.h"

namespace tamrin::conformance {

// The longest that any wait of the suite takes, in milliseconds.
constexpr std::uint32_t kLongestWait = 10000;

// Handles events until `condition` holds; false when it does not within kLongestWait.
bool WaitUntil(Clock& clock, const std::function<bool()>& condition);

// Keeps the browser's events as lines: "BeforeNavigate2 <address>", "DocumentComplete top" or
// "DocumentComplete frame", "NavigateError <address>", "OnQuit".
class EventLog : public BrowserEvents {
public:
    void DocumentComplete(bool top) override;
    void BeforeNavigate2(const std::string& url) override;
    void NavigateError(const std::string& url, const std::string& reason) override;
    void OnQuit() override;

    bool Has(std::string_view line) const;

    std::vector<std::string> lines;
};

// The fixture of every test: one browser window and one web server for the whole program.
class Suite : public testing::Test {
protected:
    // Brings the shared window to the front. A window that an earlier test lost is replaced.
    void SetUp() override;

    Browser& browser();
    BackEnd& back_end();
    Clock& clock() { return back_end().clock(); }
    Input& input() { return back_end().launcher().input(); }

    // How many round trips there were since, for a back end that saves them.
    void ExpectRoundTrips(std::uint64_t before, std::uint64_t expected) {
        if (!back_end().BringsKeysAlong()) return;
        EXPECT_EQ(back_end().RoundTrips() - before, expected);
    }

    // A further window, null with a failure of the test when there is none.
    std::shared_ptr<Browser> NewWindow();

    // Puts a reply behind an address of its own and answers the path of that address.
    static std::string Serve(WebReply reply);
    // The same for a page, written as the content of its body. The page has an element `log` and
    // the function say(word), which adds a word to it.
    static std::string Serve(std::string_view body);
    // The same for a page with nothing but what `html` says.
    static std::string ServeBare(std::string html);

    // The address of a path. "/echo" answers a page whose element `got` holds the request:
    // "GET query" or "POST body".
    static std::string Url(std::string_view path);
    // The same page as another origin.
    static std::string OtherUrl(std::string_view path);
    // An address of this machine at which nobody answers.
    static std::string DeadUrl();

    // Navigates and waits until the page is complete.
    Document GoTo(const std::string& address);
    Document Open(std::string_view body) { return GoTo(Url(Serve(body))); }
    Document OpenBare(std::string html) { return GoTo(Url(ServeBare(std::move(html)))); }

    bool Wait(const std::function<bool()>& condition) { return WaitUntil(clock(), condition); }
    bool WaitComplete() { return WaitComplete(browser()); }
    bool WaitComplete(Browser& window);
    // Pumps for some passes, for what must not happen.
    void Pump();

    Element Find(std::string_view id) { return browser().document().Named(id).by_id; }

    // What the page has said. Waits for `expected`, and answers what there is when it does not
    // come. It asks the element `log` found after GoTo, so it makes no lookup.
    std::string Said(std::string_view expected);
    // Waits until a form or link has brought the window to "/echo" and answers what arrived there.
    std::string Arrived();

    // Presses and releases the mouse where a player would: inside the element's top left corner.
    void MouseClick(const Element& element);
    // A text as the keys that type it.
    static std::vector<KeyStroke> Typed(std::string_view text);
    static KeyStroke Key(std::string name) { return {.text = "", .name = std::move(name)}; }
    bool Press(std::string name) { return input().SendKeys({Key(std::move(name))}); }
    bool Type(std::string_view text) { return input().SendKeys(Typed(text)); }

private:
    Element log_;
};

// Adds a word to words that are separated by blanks.
void AddWord(std::string& words, std::string_view word);

// The ids of elements, as words.
std::string Ids(const std::vector<Element>& elements);

}  // namespace tamrin::conformance
