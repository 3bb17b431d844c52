#include "conformance/suite.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <sstream>
#include <utility>

#include "player/key_string.h"

namespace tamrin::conformance {
namespace {

// What a page made of its body alone begins with.
constexpr std::string_view kPrelude =
    "<!doctype html><meta charset=utf-8><title>page</title>"
    "<p id=log style='position:fixed;bottom:0;margin:0;pointer-events:none'></p><script>"
    "function say(word) { const e = document.getElementById('log');"
    " e.textContent += (e.textContent ? ' ' : '') + word;"
    " if (top !== window) top.postMessage(String(word), '*'); }"
    "onmessage = e => say(e.data);"
    "addEventListener('draw', e => { let frames = 6;"
    " const next = () => --frames > 0 ? requestAnimationFrame(next) : e.target.title = 'drawn';"
    " e.target.title = ''; next(); }, true);</script>";

// What all tests share. Starting a browser takes about a second, so it is done once.
struct World {
    WebReply Answer(const WebRequest& request) {
        if (request.path == "/echo") {
            return {.body = "<!doctype html><p id=got>" + request.method + " " + request.query};
        }
        const std::lock_guard lock(mutex);
        const auto number = std::strtoul(request.path.c_str() + 1, nullptr, 10);
        return number - 1 < replies.size() ? replies[number - 1] : WebReply{.status = 404};
    }

    std::mutex mutex;  // replies are added on the test's thread and given out on the server's
    std::vector<WebReply> replies;
    WebServer server{[this](const WebRequest& request) { return Answer(request); }};
    std::unique_ptr<BackEnd> back_end = MakeBackEnd();
    std::shared_ptr<Browser> browser;
};

World& TheWorld() {
    static World world;
    return world;
}

std::string Joined(const Strings& lines) {
    std::string text;
    for (const std::string& line : lines) AddWord(text, line, ", ");
    return text;
}

// The frames of a page and theirs, as words.
std::string FramesOf(const Document& page) {
    std::string words;
    for (const Frame& frame : page.frames()) {
        const std::string inner = FramesOf(frame.document);
        AddWord(words, frame.name + "|" + frame.element.id() + "|" +
                           frame.document.Named("p").by_id.innerText() +
                           (inner.empty() ? "" : "[" + inner + "]"));
    }
    return words;
}

}  // namespace

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

std::string Suite::Serve(WebReply reply) {
    const std::lock_guard lock(TheWorld().mutex);
    TheWorld().replies.push_back(std::move(reply));
    return "/" + std::to_string(TheWorld().replies.size());
}
std::string Suite::Serve(std::string_view page) {
    const std::string_view prelude = page.starts_with("<!doctype") ? "" : kPrelude;
    return Serve(WebReply{.body = std::string(prelude).append(page)});
}

std::string Suite::Url(std::string_view path) { return TheWorld().server.Url(path); }
std::string Suite::OtherUrl(std::string_view path) {
    return "http://localhost:" + std::to_string(TheWorld().server.port()) + std::string(path);
}
std::array<std::string, 2> Suite::Origins(std::string_view page) {
    const std::string path = Serve(page);
    return {Url(path), OtherUrl(path)};
}

Document Suite::GoTo(const std::string& address) {
    EXPECT_TRUE(browser().Navigate(address));
    EXPECT_TRUE(WaitComplete()) << address;
    Pump();
    log_ = Find("log");
    answers_.clear();
    return browser().document();
}

bool Suite::Pump() {
    int quiet = 0;  // passes: a browser is not believed at once
    return Wait([&] { return (quiet = browser().AllDelivered() ? quiet + 1 : 0) > 2; });
}

Element Suite::Find(std::string_view path) {
    Document page = browser().document();
    for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        Document inner;
        for (const Frame& frame : page.frames()) {
            if (frame.element.id() == path.substr(0, slash)) inner = frame.document;
        }
        page = inner;
        path.remove_prefix(slash + 1);
    }
    return page.Named(path).by_id;
}

// It asks the element `log` found after GoTo, so it makes no lookup.
void Suite::ExpectSaid(std::string_view expected) {
    Wait([&] { return log_.innerText() + answers_ == expected; });
    EXPECT_EQ(log_.innerText() + answers_, expected);
}

void Suite::ExpectLines(EventLog& log, std::string_view expected) {
    Wait([&] { return Joined(log.lines).size() >= expected.size(); });
    Pump();
    EXPECT_EQ(Joined(std::exchange(log.lines, {})), expected);
}

int Suite::StillAnswers(const Document& page) {
    const NamedElements named = page.Named("a");
    return int(!page.url().empty()) + int(page.hasFocus()) + int(bool(page.activeElement())) +
           int(page.getElementsByTagName("*").size()) + int(page.links().size()) +
           int(page.frames().size()) + int(named.by_name.size() + named.in_forms.size()) +
           int(bool(named.by_id));
}

int Suite::StillAnswers(const Element& element) {
    element.scrollIntoView();
    return int(!element.innerText().empty()) + int(!element.checked().empty()) +
           int(bool(element.parentElement())) + int(bool(element.form())) +
           int(element.getBoundingClientRect().has_value()) +
           int(browser().ElementScreenPoint(element).has_value()) + int(element.Put("value", "x")) +
           int(element.fireEvent("onchange")) + int(element.click());
}

bool Suite::MouseClick(const Element& element, bool in_frame) {
    element.scrollIntoView();
    // The browser takes a click in a frame that it has not drawn for one on the page around it.
    if (in_frame) element.fireEvent("ondraw");
    const auto drawn = [&] { return !in_frame || element.getAttribute("title") == "drawn"; };
    const auto point = Wait(drawn) ? browser().ElementScreenPoint(element) : std::nullopt;
    clock().DoEvents();
    if (point) input().SetCursorPos({point->x + 10, point->y + 10});
    input().LeftButton(true);
    input().LeftButton(false);
    clock().DoEvents();
    return point.has_value();
}

void Suite::Do(const std::string& acts) {
    std::map<std::string, Element> found;
    std::istringstream words(acts);
    for (std::string word; words >> word;) {
        SCOPED_TRACE(word);
        if (word[0] == '@') word.insert(1, ":");
        std::istringstream parts(word);
        std::string verb, path, name, value;
        std::getline(std::getline(std::getline(parts, verb, ':'), path, ':'), name, '=');
        std::getline(parts, value);
        Element& element = found[path];
        const auto answer = [&](const std::string& text) {
            answers_ += "|" + text;
            return true;
        };
        const std::map<std::string, std::function<bool()>> known = {
            {"find", [&] { return Wait([&] { return bool(element = Find(path)); }); }},
            {"@", [&] { return MouseClick(element, path.find('/') != path.npos); }},
            {"click", [&] { return element.click(); }},
            {"fire", [&] { return element.fireEvent(name); }},
            {"put", [&] { return element.Put(name, value); }},
            {"change", [&] { return element.Change(name, value); }},
            {"is", [&] { return answer(element.Get(name)); }},
            {"old", [&] { return answer(std::to_string(StillAnswers(element))); }},
            {"frames", [&] { return answer(FramesOf(browser().document())); }},
            {"done", [&] { return WaitComplete(); }},
            {"box", [&] { return Wait([&] { return browser().Busy(); }) && Pump(); }},
        };
        const auto act = known.find(verb);
        if (act != known.end()) {
            if (!element && !path.empty()) element = Find(path);
            EXPECT_TRUE(act->second());
        } else if (verb == "go") {
            EXPECT_TRUE(browser().Navigate(word.substr(3)));
        } else {
            std::string why;
            Replace(word, "{SPACE}", "{ }");
            EXPECT_TRUE(input().SendKeys(ParseKeyString(word, why).value()));
        }
    }
}

void Suite::Check(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        const auto origins = Origins(row.frame);
        for (std::size_t first = 0; first < (row.page.find('$') == row.page.npos ? 1 : 2);
             ++first) {
            std::string page = row.page;
            Replace(page, "$1", origins.at(first));
            Replace(page, "$2", origins.at(1 - first));
            SCOPED_TRACE(page + " " + row.acts);
            Witness witness(browser(), back_end());
            Open(page);
            witness.lines.clear();
            Do(row.acts);
            if (!row.events.empty()) ExpectLines(witness, row.events == "none" ? "" : row.events);
            if (row.said.starts_with("GET ")) {
                Wait([&] { return browser().document().url().starts_with(Url("/echo")); });
                WaitComplete();
                EXPECT_EQ(Find("got").innerText().substr(0, row.said.size()), row.said);
            } else {
                ExpectSaid(row.said);
            }
            EXPECT_TRUE(!browser().Alive() || WaitComplete());
        }
    }
}

bool WaitUntil(Clock& clock, const std::function<bool()>& condition) {
    const std::uint32_t start = clock.TickCount();
    while (!condition()) {
        if (clock.TickCount() - start > 10000) return false;
        clock.Sleep(5);
        clock.DoEvents();
    }
    return true;
}

void AddWord(std::string& words, std::string_view word, std::string_view between) {
    words.append(words.empty() ? "" : between).append(word);
}

void Replace(std::string& text, std::string_view what, std::string_view by) {
    auto at = what.empty() ? text.npos : text.find(what);
    for (; at != text.npos; at = text.find(what, at + by.size())) text.replace(at, what.size(), by);
}

std::string Ids(const std::vector<Element>& elements) {
    std::string ids;
    for (const Element& element : elements) AddWord(ids, element.id());
    return ids;
}

}  // namespace tamrin::conformance
