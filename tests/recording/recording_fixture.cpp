#include "recording/recording_fixture.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <thread>

#include "platform/posix/text_codec.h"
#include "scenario/scenario_text.h"

namespace tamrin::test {
namespace {

constexpr int kOptionHeight = 27;  // of an open drop-down list

// Tells the server where the elements are, on the screen, whenever that changes.
constexpr const char* kTellPlaces = R"html(
(() => {
  let told = null, drawn = false;
  // A page takes no clicks before it has been drawn.
  requestAnimationFrame(() => requestAnimationFrame(() => { drawn = true; }));
  const collect = (view, left, top) => {
    let lines = '';
    for (const e of view.document.querySelectorAll('[id], [name], [data-place]')) {
      const box = e.getBoundingClientRect();
      const x = left + box.left, y = top + box.top;
      for (const name of [e.id, e.name, e.dataset.place])
        if (name) lines += `${name} ${x} ${y} ${box.width} ${box.height}\n`;
      if (e.contentWindow) lines += collect(e.contentWindow, x + e.clientLeft, y + e.clientTop);
    }
    return lines;
  };
  setInterval(() => {
    const border = (outerWidth - innerWidth) / 2;
    const now = collect(window, screenX + border, screenY + outerHeight - innerHeight - border);
    if (!drawn || document.readyState !== 'complete' || now === told) return;
    told = now;
    fetch('/places', {method: 'POST', body: location.pathname + '\n' + now});
  }, 100);
})();
)html";

}  // namespace

void RecordingTest::Pass(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

Desk& RecordingTest::desk() {
    static Desk desk;
    return desk;
}

RecordingTest::RecordingTest() {
    desk();
    setenv("HOME", folder_.path().c_str(), 1);
    std::filesystem::copy_file(TAMRIN_PROGRAM, folder_.At("tamrin"));
}

RecordingTest::~RecordingTest() {
    program_.reset();
    // It writes into its profile as long as it lives.
    const pid_t browser = BrowserProcess();
    KillBrowser();
    for (int i = 0; i < 500 && browser > 0 && kill(browser, 0) == 0; ++i) Pass(10);
}

std::string RecordingTest::Watched(const std::string& attribute) {
    return "<script " + attribute + ">" + kTellPlaces + "</script>";
}

void RecordingTest::Serve(const std::string& path, WebReply reply) {
    const std::scoped_lock lock(mutex_);
    pages_[path] = std::move(reply);
}

void RecordingTest::ServePage(const std::string& path, const std::string& html) {
    Serve(path, {.body = "<!doctype html><meta charset=utf-8>" + Watched() + html});
}

void RecordingTest::Configure(const std::string& lines) const { folder_.Write("Conf.txt", lines); }

WebReply RecordingTest::Answer(const WebRequest& request) {
    const std::scoped_lock lock(mutex_);
    if (request.path == "/places") {
        TakePlaces(request.body);
        return {.status = 204};
    }
    const auto page = pages_.find(request.path);
    if (page == pages_.end()) return {.status = 404};
    std::string line = request.method + " " + request.path;
    if (!request.query.empty()) line += "?" + request.query;
    if (!request.body.empty()) line += " " + request.body;
    requests_.push_back(line);
    return page->second;
}

void RecordingTest::TakePlaces(const std::string& told) {
    std::istringstream lines(told);
    std::getline(lines, shown_);
    places_.clear();
    std::string name;
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
    while (lines >> name >> left >> top >> width >> height) {
        places_[name] = {{static_cast<int>(left), static_cast<int>(top)},
                         static_cast<int>(width),
                         static_cast<int>(height)};
    }
}

void RecordingTest::Await(const std::string& what, const std::function<bool()>& condition) {
    const auto start = std::chrono::steady_clock::now();
    while (std::chrono::steady_clock::now() - start < std::chrono::seconds(20)) {
        {
            const std::scoped_lock lock(mutex_);
            if (condition()) return;
        }
        Pass(20);
    }
    throw std::runtime_error("waited in vain for " + what);
}

void RecordingTest::Record(const std::string& path) {
    program_.emplace(std::vector<std::string>{folder_.At("tamrin"), "-record",
                                              folder_.At("new.csv"), server_.Url(path)});
    if (!program_->Prints("記録しています。")) throw std::runtime_error(output());
    See(path);
    Pass(400);  // the window may still be put to its place
}

void RecordingTest::See(const std::string& path) {
    Await(path, [&] { return shown_ == path; });
}

void RecordingTest::AwaitRequests(std::size_t count) {
    Await("requests", [&] { return requests_.size() >= count; });
}

void RecordingTest::AwaitLines(std::size_t count) {
    Await("lines", [&] { return ReadLines("new.csv.recovery").size() >= count; });
}

RecordingTest::Box RecordingTest::Place(const std::string& name) {
    Await(name, [&] { return places_.contains(name); });
    const std::scoped_lock lock(mutex_);
    return places_[name];
}

void RecordingTest::ClickOn(const std::string& name) {
    const Box box = Place(name);
    desk().Click({box.corner.x + box.width / 2, box.corner.y + box.height / 2});
    Pass(100);  // on its way into a frame a click may be overtaken by keys
}

void RecordingTest::Choose(const std::string& name, int index) {
    ClickOn(name);
    Pass(500);  // the list opens
    const Box box = Place(name);
    const int below = kOptionHeight * index + kOptionHeight / 2;
    desk().Click({box.corner.x + 20, box.corner.y + box.height + below});
    Pass(300);
}

Lines RecordingTest::EndRecording() {
    desk().Press({"ctrl+shift+w"});
    EXPECT_EQ(Wait(), 0) << output();
    return SavedLines();
}

Lines RecordingTest::ReadLines(const std::string& file) const {
    Lines lines;
    for (std::string line : ReadScenarioText(FileBytes(folder_.At(file)), PosixTextCodec())) {
        const std::string address = server_.Url("");
        const auto at = line.find(address);
        if (at != std::string::npos) line.erase(at, address.size());
        const auto bar = line.find(",size_bar=");
        if (bar != std::string::npos) line.erase(bar, line.find(',', bar + 1) - bar);
        lines.push_back(line);
    }
    return lines;
}

void RecordingTest::PlayBack() {
    Lines recorded;
    {
        const std::scoped_lock lock(mutex_);
        recorded.swap(requests_);
    }
    Program player({folder_.At("tamrin"), "-a", folder_.At("new.csv"), "-close"});
    EXPECT_EQ(player.Wait(), 0) << player.output();
    Await("requests", [&] { return requests_.size() >= recorded.size(); });
    const std::scoped_lock lock(mutex_);
    EXPECT_EQ(requests_, recorded);
}

pid_t RecordingTest::BrowserProcess() const {
    // The lock of the profile is a link that reads "host-process".
    std::error_code none;
    const std::string owner =
        std::filesystem::read_symlink(folder_.path() + "/.tamrin-browser/SingletonLock", none);
    const auto dash = owner.rfind('-');
    return dash == std::string::npos ? 0 : std::stoi(owner.substr(dash + 1));
}

void RecordingTest::KillBrowser() const {
    const pid_t browser = BrowserProcess();
    if (browser > 0) kill(browser, SIGKILL);
}

}  // namespace tamrin::test
