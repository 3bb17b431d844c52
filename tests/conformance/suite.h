#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/browser.h"
#include "platform/clock.h"
#include "samples/web_server.h"

namespace tamrin::conformance {

using Strings = std::vector<std::string>;

// What a browser back end gives to the suite. The suite itself knows only the platform interfaces:
// whatever passes it can be played on.
class BackEnd {
public:
    virtual ~BackEnd() = default;

    virtual BrowserLauncher& launcher() = 0;

    // Its DoEvents delivers the browser's events.
    virtual Clock& clock() = 0;

    // How often a call has waited for the browser's answer so far.
    virtual std::uint64_t RoundTrips() = 0;
};

// Each back end's test program defines this once. On failure it throws.
std::unique_ptr<BackEnd> MakeBackEnd();

// Handles events until `condition` holds; false when it does not within ten seconds.
bool WaitUntil(Clock& clock, const std::function<bool()>& condition);

// Keeps the browser's events as lines: "BeforeNavigate2 <address>", "DocumentComplete top" or
// "DocumentComplete frame", "NavigateError <address> <reason>", "NotResponding", "OnQuit".
struct EventLog : BrowserEvents {
    explicit EventLog(Browser& browser) : connection(browser.Connect(*this)) {}

    void DocumentComplete(bool top) override {
        lines.emplace_back(top ? "DocumentComplete top" : "DocumentComplete frame");
    }
    void BeforeNavigate2(const std::string& url) override {
        lines.push_back("BeforeNavigate2 " + url);
    }
    void NavigateError(const std::string& url, const std::string& reason) override {
        lines.push_back("NavigateError " + url + " " + reason);
    }
    void NotResponding() override { lines.emplace_back("NotResponding"); }
    void OnQuit() override { lines.emplace_back("OnQuit"); }

    bool Has(std::string_view line) const;

    Strings lines;
    std::unique_ptr<Connection> connection;
};

// Writes down what a browser and the pages that it shows now and later report, with their frames:
// the event and the active element as it was, with its value, checked state or index, its form, and
// at Enter its form's default button. Then it also fires events, of which the page must see
// nothing.
class Witness : public EventLog {
public:
    Witness(Browser& browser, BackEnd& back_end)
        : EventLog(browser), browser_(browser), back_end_(back_end) {
        Listen(browser.document());
    }

    // The element whose focus was reported last stands for what the page is left with.
    void BeforeNavigate2(const std::string& /*url*/) override {
        lines.push_back("navigate " + Told(watched_));
    }
    void NavigateComplete2() override {
        pages_.clear();
        Listen(browser_.document());
    }
    void DocumentComplete(bool top) override {
        EventLog::DocumentComplete(top);
        if (!top) return;
        for (const Frame& frame : browser_.document().frames()) Listen(frame.document);
    }

private:
    static std::string Told(const Element& e) {
        std::string text = e.id();
        const std::string type = e.getAttribute("type").value_or("");
        if (type == "checkbox" || type == "radio") return text + "=" + e.checked();
        if (type == "select-one") return text + "=" + e.selectedIndex();
        return e.value().empty() ? text : text + "=" + e.value();
    }

    class Page : public DocumentEvents {
    public:
        Page(Document document, Witness& witness)
            : witness_(witness), document_(std::move(document)) {}

        void onclick() override { Note("click"); }
        void onfocusin() override {
            witness_.watched_ = document_.activeElement();
            Note("focus");
        }
        void onbeforedeactivate() override { Note("leave"); }
        void onkeypress(int key_code) override {
            const bool enter = key_code == 13;
            Note("key" + std::to_string(key_code), enter);
            for (const char* event : {"onfocusin", "onchange"}) {
                if (enter) document_.activeElement().fireEvent(event);
            }
        }
        void onsubmit() override { Note("submit"); }

    private:
        // The moment comes with the event: nothing is asked for.
        void Note(const std::string& event, bool enter = false) {
            const auto before = witness_.back_end_.RoundTrips();
            const Element active = document_.activeElement();
            std::string line = event + " " + Told(active);
            if (const Element form = active.form()) line += " in " + form.id();
            if (const Element button = active.DefaultButton(); button && enter) {
                line += " presses " + Told(button);
            }
            EXPECT_EQ(witness_.back_end_.RoundTrips(), before) << line;
            witness_.lines.push_back(line);
        }

        Witness& witness_;
        Document document_;
        std::unique_ptr<Connection> connection_ = document_.Connect(*this);
    };

    void Listen(const Document& document) {
        pages_.push_back(std::make_unique<Page>(document, *this));
    }

    Browser& browser_;
    BackEnd& back_end_;
    Element watched_;
    std::vector<std::unique_ptr<Page>> pages_;
};

// What is done with a page, and what must come of it.
struct Row {
    std::string page;       // as Suite::Serve takes it; $1 and $2 stand for the address of `frame`
    std::string acts;       // as Suite::Do takes them
    std::string said = "";  // by the page and its frames, and then the answers that the acts asked
                            // for, each behind a "|"; "GET ..." for what arrives at "/echo"
    std::string events =
        "";                  // as a Witness writes them down, with ", " between; "" for any, "none"
    std::string frame = "";  // the page of a frame
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

    // A further window, null with a failure of the test when there is none.
    std::shared_ptr<Browser> NewWindow();

    // Puts a reply behind an address of its own and answers the path of that address.
    static std::string Serve(WebReply reply);
    // The same for a page: a whole one that begins with "<!doctype", or the content of its body.
    // Then the page has an element `log` and the function say(word), which adds a word to it and,
    // in a frame, also to that of the top page.
    static std::string Serve(std::string_view page);

    // The address of a path. "/echo" answers a page whose element `got` holds "GET query".
    static std::string Url(std::string_view path);
    // The same page as another origin.
    static std::string OtherUrl(std::string_view path);
    // Serves a page and answers its address as the tests' own origin and as another one.
    static std::array<std::string, 2> Origins(std::string_view page);

    // Navigates and waits until the page is complete and all that it reports is there.
    Document GoTo(const std::string& address);
    Document Open(std::string_view page) { return GoTo(Url(Serve(page))); }

    bool Wait(const std::function<bool()>& condition) { return WaitUntil(clock(), condition); }
    bool WaitComplete() { return WaitComplete(browser()); }
    bool WaitComplete(Browser& window) {
        return Wait([&] { return !window.Busy() && window.ReadyState() == 4; });
    }
    // Handles events until the browser has no more of them, for what must not happen.
    bool Pump();

    // The element with an id, in a frame when the ids of the frames' elements precede it: "i/k".
    Element Find(std::string_view path);

    // Waits until the page, and then the answers that acts have asked for, say exactly this.
    void ExpectSaid(std::string_view expected);
    // Expects exactly these lines, with ", " between them, and forgets them.
    void ExpectLines(EventLog& log, std::string_view expected);

    // How many calls of a page and of an element answer something: 0 for what is gone.
    static int StillAnswers(const Document& page);
    int StillAnswers(const Element& element);

    // Does acts that are separated by blanks, on elements by their paths. Each element is looked up
    // at its first act, or by "find".
    //     @i/k    clicks with the mouse       find:k  waits until it is there
    //     click:k clicks by its method        fire:k:onclick     put:k:value=x    change:k:value=x
    //     go:http://...  navigates            done  waits until the page is complete
    //     box     waits until the page loads or shows a dialog box
    //     is:k:value  asks for a property     old:k  asks how many calls of it answer something
    //     frames  asks for each frame: its name, the id of its element, the text of its element
    //             `p` and its own frames in brackets, with "|" between
    // Everything else is a key string as users write it, with {SPACE} for a blank.
    void Do(const std::string& acts);
    // Does what each row says and compares all that came of it; where it has frames, once with $1
    // of the tests' own origin and $2 of another one, and once the other way about.
    void Check(const std::vector<Row>& rows);
    bool Press(const std::string& name) { return input().SendKeys({{.text = "", .name = name}}); }

private:
    // Presses and releases the mouse where a player would: inside the element's top left corner.
    // False when it is not shown.
    bool MouseClick(const Element& element, bool in_frame);

    Element log_;  // of the page that GoTo has opened
    std::string answers_;
};

// Adds a word to words that are separated by blanks, or otherwise.
void AddWord(std::string& words, std::string_view word, std::string_view between = " ");

void Replace(std::string& text, std::string_view what, std::string_view by);

// The ids of elements, as words.
std::string Ids(const std::vector<Element>& elements);

}  // namespace tamrin::conformance
