#include "conformance/suite.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

namespace tamrin::conformance {
namespace {

// Steps of a wait, in milliseconds.
constexpr int kStep = 5;

// What a page made of its body alone begins with.
constexpr std::string_view kPrelude =
    "<!doctype html><meta charset=utf-8><title>page</title>"
    "<p id=log style='position:fixed;bottom:0;margin:0;pointer-events:none'></p><script>"
    "function say(word) { const e = document.getElementById('log');"
    " e.textContent += (e.textContent ? ' ' : '') + word; }</script>";

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

// The characters of a UTF-8 text.
std::vector<std::string> Characters(std::string_view text) {
    std::vector<std::string> characters;
    for (const char byte : text) {
        const bool continues = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
        if (!continues) characters.emplace_back();
        characters.back() += byte;
    }
    return characters;
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
std::string Suite::Serve(std::string_view body) {
    return ServeBare(std::string(kPrelude) + std::string(body));
}
std::string Suite::ServeBare(std::string html) { return Serve(WebReply{.body = std::move(html)}); }

std::string Suite::Url(std::string_view path) { return TheWorld().pages.server().Url(path); }
std::string Suite::OtherUrl(std::string_view path) {
    const unsigned short port = TheWorld().pages.server().port();
    return "http://localhost:" + std::to_string(port) + std::string(path);
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
    for (int pass = 0; pass < 10; ++pass) {
        clock().Sleep(kStep);
        clock().DoEvents();
    }
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

void Suite::MouseClick(const Element& element) {
    element.scrollIntoView();
    const auto point = browser().ElementScreenPoint(element);
    ASSERT_TRUE(point);
    clock().DoEvents();
    clock().Sleep(50);
    input().SetCursorPos({point->x + 10, point->y + 10});
    input().LeftButton(true);
    input().LeftButton(false);
    clock().DoEvents();
}

std::vector<KeyStroke> Suite::Typed(std::string_view text) {
    std::vector<KeyStroke> keys;
    for (auto& character : Characters(text))
        keys.push_back({.text = std::move(character), .name = ""});
    return keys;
}

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

std::string Ids(const std::vector<Element>& elements) {
    std::string ids;
    for (const Element& element : elements) AddWord(ids, element.id());
    return ids;
}

}  // namespace tamrin::conformance
