#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

std::unique_ptr<World> shared;

// Ends the browser when the tests are over.
class EndOfWorld : public ::testing::Environment {
public:
    void TearDown() override { shared.reset(); }
};

const auto* const registered = ::testing::AddGlobalTestEnvironment(new EndOfWorld);

}  // namespace

World::World()
    : server([this](const WebRequest& request) {
          const std::scoped_lock guard(lock);
          return web ? web(request) : WebReply{.status = 404};
      }) {
    ChromiumSettings settings;
    settings.stop_requested = [this] { return stop; };
    launcher = std::make_unique<ChromiumLauncher>(processes, files, clock, settings);
    clock.AddSource([this] { launcher->DeliverEvents(); });
}

World& World::Shared() {
    if (!shared) shared = std::make_unique<World>();
    if (!shared->browser || !shared->browser->Alive()) {
        std::string why;
        shared->browser = shared->launcher->Create(why);
        if (!shared->browser) throw std::runtime_error(why);
    }
    return *shared;
}

ChromiumTest::ChromiumTest() : launcher_(*world_.launcher), browser_(*world_.browser) {
    world_.stop = false;
    browser_.SetForeground();
}

KeyStroke NamedKey(const std::string& name) {
    KeyStroke key;
    key.name = name;
    return key;
}

KeyStroke Letter(char c) {
    KeyStroke key;
    key.text = c;
    return key;
}

std::string Page(const std::string& html) {
    return "<!doctype html><meta charset=utf-8><script>words = [];\n"
           "function log(word) { words.push(word);\n"
           "  document.getElementById('log').textContent = words.join(' '); }</script>"
           "<pre id=log></pre>" +
           html;
}

void ChromiumTest::Serve(const std::string& html) {
    Serve([html](const WebRequest&) { return WebReply{.body = Page(html)}; });
}

void ChromiumTest::Serve(std::function<WebReply(const WebRequest&)> web) {
    const std::scoped_lock guard(world_.lock);
    world_.web = std::move(web);
}

void ChromiumTest::Open(const std::string& html) {
    Serve(html);
    OpenUrl(world_.server.Url("/"));
}

void ChromiumTest::OpenUrl(const std::string& url) {
    ASSERT_TRUE(browser_.Navigate(url));
    ASSERT_TRUE(WaitComplete());
}

std::string ChromiumTest::Log() { return Find("log").innerText(); }

Element ChromiumTest::Find(const std::string& id) { return browser_.document().Named(id).by_id; }

bool ChromiumTest::Wait(const std::function<bool()>& condition) {
    const std::uint32_t start = world_.clock.TickCount();
    while (!condition()) {
        if (world_.clock.TickCount() - start > 10000) return false;
        world_.clock.Sleep(2);
        world_.clock.DoEvents();
    }
    return true;
}

bool ChromiumTest::WaitComplete() {
    return Wait([this] { return !browser_.Busy() && browser_.ReadyState() == 4; });
}

}  // namespace tamrin::test
