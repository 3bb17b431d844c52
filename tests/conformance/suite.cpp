#include "conformance/suite.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <sstream>
#include <utility>

#include "conformance/witness.h"

namespace tamrin::conformance {
namespace {

// Steps of a wait, in milliseconds.
constexpr int kStep = 5;
// So often a browser says that it has no more events, before it is believed.
constexpr int kQuietPasses = 2;

// What a page made of its body alone begins with.
constexpr std::string_view kPrelude =
    "<!doctype html><meta charset=utf-8><title>page</title>"
    "<p id=log style='position:fixed;bottom:0;margin:0;pointer-events:none'></p><script>"
    "function say(word) { const e = document.getElementById('log');"
    " e.textContent += (e.textContent ? ' ' : '') + word;"
    " if (window.top && window.top.postMessage && window.top !== window)"
    " window.top.postMessage(String(word), '*'); }"
    "window.onmessage = function (e) { say(e.data); };"
    "if (window.requestAnimationFrame) addEventListener('draw', function (e) { var frames = 6;"
    " function next() { if (--frames > 0) requestAnimationFrame(next);"
    " e.target.title = frames > 0 ? '' : 'drawn'; } next(); }, true);</script>";

// The pages of the tests. Replies are added on the test's thread and given out on the server's.
class Pages {
public:
    std::string Add(WebReply reply) {
        const std::lock_guard lock(mutex_);
        std::string path = std::string("/").append(std::to_string(replies_.size() + 1));
        replies_.emplace(path, std::move(reply));
        return path;
    }

    const WebServer& server() const { return server_; }

private:
    WebReply Answer(const WebRequest& request) {
        if (request.path == "/echo") {
            const std::string& data = request.method == "POST" ? request.body : request.query;
            return {.body = "<!doctype html><p id=got>" + request.method + " " + data};
        }
        const std::lock_guard lock(mutex_);
        const auto found = replies_.find(request.path);
        return found == replies_.end() ? WebReply{.status = 404} : found->second;
    }

    std::mutex mutex_;
    std::map<std::string, WebReply> replies_;
    WebServer server_{[this](const WebRequest& request) { return Answer(request); }};
};

// What all tests share. Starting a browser takes about a second, so it is done once.
struct World {
    Pages pages;
    std::unique_ptr<BackEnd> back_end = MakeBackEnd();
    std::shared_ptr<Browser> browser;
};

std::unique_ptr<World> world;

World& TheWorld() {
    if (!world) world = std::make_unique<World>();
    return *world;
}

class EndOfProgram : public testing::Environment {
public:
    void TearDown() override { world.reset(); }
};

const auto* const end_of_program = testing::AddGlobalTestEnvironment(new EndOfProgram);

// The keys of a word of Suite::Do, or of a text that is typed as it stands.
std::vector<KeyStroke> Strokes(std::string_view word, bool typed) {
    std::vector<KeyStroke> strokes;
    KeyStroke held;
    for (std::size_t size = 0; !word.empty(); word.remove_prefix(size)) {
        size = 1;
        while (size < word.size() && (static_cast<unsigned char>(word[size]) & 0xC0U) == 0x80U)
            ++size;
        std::string key(word.substr(0, size));
        if (!typed && key == "^") {
            held.ctrl = true;
        } else if (!typed && key == "+") {
            held.shift = true;
        } else if (!typed && key == "%") {
            held.alt = true;
        } else {
            const bool named = !typed && key == "{";
            if (named) {
                size = word.find('}') + 1;
                key = word.substr(1, size - 2);
            }
            if (named && key == "SPACE") key = " ";
            (named && key.size() > 1 ? held.name : held.text) = key;
            strokes.push_back(std::exchange(held, {}));
        }
    }
    return strokes;
}

std::string Joined(const Strings& lines) {
    std::string text;
    for (const std::string& line : lines) text += (text.empty() ? "" : ", ") + line;
    return text;
}

void Replace(std::string& text, std::string_view what, std::string_view by) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
}

}  // namespace

void EventLog::DocumentComplete(bool top) {
    lines.emplace_back(top ? "DocumentComplete top" : "DocumentComplete frame");
}
void EventLog::BeforeNavigate2(const std::string& url) {
    lines.push_back("BeforeNavigate2 " + url);
}
void EventLog::NavigateError(const std::string& url, const std::string& reason) {
    EXPECT_NE(reason, "");
    lines.push_back("NavigateError " + url);
}
void EventLog::OnQuit() { lines.emplace_back("OnQuit"); }

bool EventLog::Has(std::string_view line) const {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
}

void Suite::SetUp() {
    auto& window = TheWorld().browser;
    if (!window || !window->Alive()) window = NewWindow();
    ASSERT_TRUE(window);
    window->SetForeground();
}

Browser& Suite::browser() { return *TheWorld().browser; }
BackEnd& Suite::back_end() { return *TheWorld().back_end; }

std::shared_ptr<Browser> Suite::NewWindow() {
    std::string why;
    auto window = back_end().launcher().Create(why);
    EXPECT_TRUE(window) << why;
    if (window) window->SetVisible(true);
    return window;
}

std::string Suite::Serve(WebReply reply) { return TheWorld().pages.Add(std::move(reply)); }
std::string Suite::Serve(std::string_view page) {
    const std::string_view prelude = page.starts_with("<!doctype") ? "" : kPrelude;
    return Serve(WebReply{.body = std::string(prelude).append(page)});
}

std::string Suite::Url(std::string_view path) { return TheWorld().pages.server().Url(path); }
std::string Suite::OtherUrl(std::string_view path) {
    const unsigned short port = TheWorld().pages.server().port();
    return "http://localhost:" + std::to_string(port) + std::string(path);
}
std::array<std::string, 2> Suite::Origins(std::string_view page) {
    const std::string path = Serve(page);
    return {Url(path), OtherUrl(path)};
}
std::string Suite::DeadUrl() {
    const WebServer gone([](const WebRequest&) { return WebReply{}; });
    return gone.Url("/dead");
}

Document Suite::GoTo(const std::string& address) {
    EXPECT_TRUE(browser().Navigate(address));
    EXPECT_TRUE(WaitComplete()) << address;
    log_ = Find("log");
    return browser().document();
}

bool Suite::WaitComplete(Browser& window) {
    return Wait([&] { return !window.Busy() && window.ReadyState() == 4; });
}

void Suite::Pump() {
    int quiet = 0;
    Wait([&] {
        quiet = browser().AllDelivered() ? quiet + 1 : 0;
        return quiet > kQuietPasses;
    });
}

Element Suite::Find(std::string_view path) {
    Document page = browser().document();
    for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        const auto frames = page.frames();
        const auto frame = std::find_if(frames.begin(), frames.end(), [&](const Frame& each) {
            return each.element.id() == path.substr(0, slash);
        });
        page = frame == frames.end() ? Document() : frame->document;
        path.remove_prefix(slash + 1);
    }
    return page.Named(path).by_id;
}

std::string Suite::Said(std::string_view expected) {
    Wait([&] { return log_.innerText() == expected; });
    return log_.innerText();
}

std::string Suite::Arrived() {
    const std::string echo = Url("/echo");
    Wait([&] { return browser().document().url().starts_with(echo); });
    WaitComplete();
    return Find("got").innerText();
}

void Suite::ExpectLines(EventLog& log, std::string_view expected) {
    Wait([&] { return Joined(log.lines).size() >= expected.size(); });
    Pump();
    EXPECT_EQ(Joined(std::exchange(log.lines, {})), expected);
}

namespace {

// The names of what holds.
std::string Held(const std::vector<std::pair<const char*, bool>>& facts) {
    std::string names;
    for (const auto& [name, holds] : facts) {
        if (holds) AddWord(names, name);
    }
    return names;
}

}  // namespace

std::string Suite::StillAnswers(const Document& page) {
    const NamedElements named = page.Named("a");
    return Held({{"url", !page.url().empty()},
                 {"hasFocus", page.hasFocus()},
                 {"activeElement", bool(page.activeElement())},
                 {"getElementsByTagName", !page.getElementsByTagName("*").empty()},
                 {"Named", named.by_id || !named.by_name.empty() || !named.in_forms.empty()},
                 {"links", !page.links().empty()},
                 {"frames", !page.frames().empty()}});
}

std::string Suite::StillAnswers(const Element& element) {
    element.scrollIntoView();
    return Held({{"innerText", !element.innerText().empty()},
                 {"checked", !element.checked().empty()},
                 {"parentElement", bool(element.parentElement())},
                 {"form", bool(element.form())},
                 {"getBoundingClientRect", element.getBoundingClientRect().has_value()},
                 {"ElementScreenPoint", browser().ElementScreenPoint(element).has_value()},
                 {"Put", element.Put("value", "x")},
                 {"fireEvent", element.fireEvent("onchange")},
                 {"click", element.click()}});
}

void Suite::Draw(const Element& element) {
    element.scrollIntoView();
    EXPECT_TRUE(element.fireEvent("ondraw"));
    EXPECT_TRUE(Wait([&] { return element.getAttribute("title") == "drawn"; }));
}

void Suite::MouseClick(const Element& element) {
    element.scrollIntoView();
    const auto point = browser().ElementScreenPoint(element);
    ASSERT_TRUE(point);
    clock().DoEvents();
    input().SetCursorPos({point->x + 10, point->y + 10});
    input().LeftButton(true);
    input().LeftButton(false);
    clock().DoEvents();
}

void Suite::Do(const std::string& acts) {
    std::map<std::string, Element> found;
    std::istringstream words(acts);
    for (std::string word; words >> word;) {
        SCOPED_TRACE(word);
        Replace(word, "@", "@:");
        std::istringstream parts(word);
        std::string verb, path, argument;
        std::getline(std::getline(std::getline(parts, verb, ':'), path, ':'), argument);
        if (verb == "find" || (!path.empty() && !found.contains(path))) found[path] = Find(path);
        const Element& element = found[path];
        const auto equals = argument.find('=');
        const std::string value = argument.substr(std::min(equals + 1, argument.size()));
        if (verb == "@") {
            if (path.find('/') != std::string::npos) Draw(element);
            MouseClick(element);
        } else if (verb == "click") {
            EXPECT_TRUE(element.click());
        } else if (verb == "fire") {
            EXPECT_TRUE(element.fireEvent(argument));
        } else if (verb == "put") {
            EXPECT_TRUE(element.Put(argument.substr(0, equals), value));
        } else if (verb == "change") {
            EXPECT_TRUE(element.Change(argument.substr(0, equals), value));
        } else if (verb == "gone") {
            EXPECT_TRUE(Wait([&] { return !Find(path); }));
        } else if (verb == "box") {
            ASSERT_TRUE(WaitBusy());
            Pump();
            ASSERT_TRUE(browser().Busy());
        } else if (verb != "find") {
            EXPECT_TRUE(input().SendKeys(Strokes(word, false)));
        }
    }
}

void Suite::Check(const Row& row) {
    const auto origins = Origins(row.frame);
    const std::size_t last = row.page.find('$') == std::string::npos ? 1 : 2;
    for (std::size_t i = 0; i < last; ++i) {
        for (std::size_t j = 0; j < (row.page.find("$2") == std::string::npos ? 1 : last); ++j) {
            std::string page = row.page;
            Replace(page, "$1", origins[i]);
            Replace(page, "$2", origins[j]);
            SCOPED_TRACE(page + " " + row.acts);
            Witness witness(browser(), back_end());
            const bool whole = page.starts_with("<!doctype");
            if (whole) witness.Follow();
            const Document document = Open(page);
            if (!whole && !row.events.empty()) witness.Listen(document);
            Pump();
            witness.lines.clear();
            Do(row.acts);
            if (!row.events.empty()) ExpectLines(witness, row.events);
            if (row.said.starts_with("GET ") || row.said.starts_with("POST ")) {
                EXPECT_EQ(Arrived().substr(0, row.said.size()), row.said);
            } else {
                ExpectSaid(row.said);
            }
            EXPECT_TRUE(WaitComplete());
        }
    }
}

bool Suite::Type(std::string_view text) { return input().SendKeys(Strokes(text, true)); }

bool WaitUntil(Clock& clock, const std::function<bool()>& condition) {
    const std::uint32_t start = clock.TickCount();
    while (!condition()) {
        if (clock.TickCount() - start > kLongestWait) return false;
        clock.Sleep(kStep);
        clock.DoEvents();
    }
    return true;
}

void AddWord(std::string& words, std::string_view word) {
    if (!words.empty()) words += ' ';
    words += word;
}

std::string Numbered(std::string_view html, std::size_t row) {
    std::string text(html);
    Replace(text, "%", "e" + std::to_string(row));
    return text;
}

std::string Ids(const std::vector<Element>& elements) {
    std::string ids;
    for (const Element& element : elements) AddWord(ids, element.id());
    return ids;
}

}  // namespace tamrin::conformance
