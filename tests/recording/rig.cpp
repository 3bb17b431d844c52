#include "recording/rig.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include "platform/posix/text_codec.h"
#include "scenario/scenario_text.h"

namespace tamrin::test {
namespace {

constexpr int kOptionHeight = 27;  // of an open drop-down list
const Lines kKeys{"key", "--delay", "4"};

// Sends the server the place and state of each element whenever they change.
constexpr const char* kReports = R"html(
(() => {
  let told = null, drawn = false;
  requestAnimationFrame(() => requestAnimationFrame(() => { drawn = true; }));
  const field = 'input:not([type=submit]):not([type=button]):not([type=image]), select, textarea';
  // In pages of old, ':hover' without a tag is true of links alone.
  const collect = (view, left, top) => {
    let lines = '';
    for (const e of view.document.querySelectorAll('[id], [name], [data-place]')) {
      const box = e.getBoundingClientRect();
      const x = Math.round(left + box.left), y = Math.round(top + box.top);
      for (const name of [e.id, e.name, e.dataset.place]) if (name)
        lines += `${name} ${x} ${y} ${Math.round(box.width)} ${Math.round(box.height)} ` +
            `${e.selectedIndex ?? -1} ${+e.matches(e.localName + ':hover')} ` +
            `${+(view.document.activeElement === e || !e.matches(field))}\n`;
      if (e.contentWindow) lines += collect(e.contentWindow, x + e.clientLeft, y + e.clientTop);
    }
    return lines;
  };
  setInterval(() => {
    const border = (outerWidth - innerWidth) / 2;
    const now = collect(window, screenX + border, screenY + outerHeight - innerHeight - border);
    if (!drawn || document.readyState !== 'complete' || now === told) return;
    told = now;
    fetch('/report', {method: 'POST', body: location.pathname + '\n' + now});
  }, 20);
})();
)html";

void Pass(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace

std::string Hand(Lines command) {
    // Only the display's number is of interest: it tells as well which ones it found taken.
    static Program display(
        {"/bin/sh", "-c",
         "exec Xvfb -displayfd 1 -screen 0 1280x1000x24 -nolisten tcp 2>/dev/null"});
    static const Program window_manager = [] {
        if (!display.Prints("\n")) throw std::runtime_error("no display: " + display.output());
        setenv("DISPLAY", (":" + display.output().substr(0, display.output().find('\n'))).c_str(),
               1);
        // The toolkit's own input method, whatever the tester's desktop has.
        setenv("GTK_IM_MODULE", "gtk-im-context-simple", 1);
        return Program({"/usr/bin/env", "openbox"});
    }();
    command.insert(command.begin(), {"/usr/bin/env", "xdotool"});
    Program hand(command);
    if (hand.Wait() != 0) throw std::runtime_error("xdotool: " + hand.output());
    return hand.output();
}

void PointAt(int x, int y) { Hand({"mousemove", std::to_string(x), std::to_string(y)}); }

Recording::Recording() {
    Hand({"version"});
    setenv("HOME", folder_.path().c_str(), 1);
    std::filesystem::copy_file(TAMRIN_PROGRAM, folder_.At("tamrin"));
}

Recording::~Recording() {
    program_.reset();
    KillBrowser();
}

std::string Recording::Reports(const std::string& attribute) {
    return "<script " + attribute + ">" + kReports + "</script>";
}

void Recording::ServePage(const std::string& path, const std::string& html) {
    Serve(path, {.body = "<!doctype html><meta charset=utf-8>" + Reports() + html});
}

WebReply Recording::Answer(const WebRequest& request) {
    const std::scoped_lock lock(mutex_);
    told_.notify_all();
    if (request.path == "/report") {
        TakeReport(request.body);
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

void Recording::TakeReport(const std::string& body) {
    std::istringstream lines(body);
    std::getline(lines, shown_);
    elements_.clear();
    std::string name;
    Report e{};
    while (lines >> name >> e.left >> e.top >> e.width >> e.height >> e.selected >> e.hovered >>
           e.ready) {
        elements_[name] = e;
    }
}

bool Recording::Await(const std::function<bool()>& condition, int limit_ms) {
    std::unique_lock lock(mutex_);
    return told_.wait_for(lock, std::chrono::milliseconds(limit_ms), condition);
}

void Recording::AwaitRecords(std::size_t count) const {
    for (int i = 0; i < 1000 && Read("new.csv.recovery").size() <= count; ++i) Pass(20);
}

void Recording::Record(const std::string& acts) {
    {
        const std::scoped_lock lock(mutex_);
        shown_.clear();
        elements_.clear();
    }
    program_.emplace(
        Lines{folder_.At("tamrin"), "-record", folder_.At("new.csv"), server_.Url("/")});
    if (!program_->Prints("記録しています。")) throw std::runtime_error(program_->output());
    std::istringstream words("see:/ " + acts);
    for (std::string word; words >> word;) Do(word);
}

void Recording::Do(const std::string& word) {
    const std::string argument = word.substr(word.find(':') + 1);
    if (word[0] == '@') {
        ClickOn(word.substr(1));
    } else if (word[0] == '{') {
        Lines command = kKeys;
        std::istringstream keys(word);
        for (std::string key; std::getline(keys, key, '}');) command.push_back(key.substr(1));
        Hand(command);
    } else if (word.starts_with("see:")) {
        EXPECT_TRUE(Await([&] { return shown_ == argument; })) << word;
    } else if (word.starts_with("compose:")) {
        // The browser shows the composition underlined in the field, and then its outcome.
        Lines command = kKeys;
        command.emplace_back("ctrl+shift+u");
        for (const char digit : argument) command.emplace_back(1, digit);
        command.emplace_back("space");
        Hand(command);
    } else if (word.starts_with("choose:")) {
        const auto equals = argument.find('=');
        Choose(argument.substr(0, equals), std::stoi(argument.substr(equals + 1)));
    } else {
        Hand({"type", "--delay", "4", word});
    }
}

// The window may still be on its way to its place: the click waits until the page reports that the
// pointer is on the element, and keys wait until the click has brought the focus to a field.
void Recording::ClickOn(const std::string& name) {
    const auto shown = [&] { return elements_.contains(name); };
    for (int i = 0; i < 50; ++i) {
        if (!Await(shown)) throw std::runtime_error("not shown: " + name);
        const Report e = Reported(name);
        PointAt(e.left + e.width / 2 + i % 2, e.top + e.height / 2);
        if (Await([&] { return shown() && elements_[name].hovered; }, 400)) break;
    }
    Hand({"click", "1"});
    Await([&] { return !shown() || elements_[name].ready; });
}

void Recording::Choose(const std::string& name, int index) {
    ClickOn(name);
    const Lines location{"getmouselocation", "--shell"};
    const auto window = [&] {
        const std::string told = Hand(location);
        return told.substr(told.find("WINDOW="));
    };
    const std::string browser = window();
    const Report list = Reported(name);
    PointAt(list.left + 20, list.top + list.height + kOptionHeight * index + kOptionHeight / 2);
    for (int i = 0; i < 500 && window() == browser; ++i) Pass(10);
    Hand({"click", "1"});
    EXPECT_TRUE(Await([&] { return elements_[name].selected == index; })) << name;
}

void Recording::Expect(const Lines& records) {
    AwaitRecords(records.size());
    Hand({"key", "ctrl+shift+w"});
    ExpectSaved(records);
}

void Recording::ExpectSaved(Lines records) {
    EXPECT_EQ(program_->Wait(), 0) << program_->output();
    records.insert(records.begin(), "url\t,id=,indt=/");
    EXPECT_EQ(Read("new.csv"), records);
}

void Recording::ExpectPlayed(Lines requests) {
    requests.insert(requests.begin(), "GET /");
    ExpectRequests(requests);
    program_.emplace(Lines{folder_.At("tamrin"), "-a", folder_.At("new.csv"), "-close"});
    EXPECT_EQ(program_->Wait(), 0) << program_->output();
    ExpectRequests(requests);
}

void Recording::ExpectRequests(const Lines& expected) {
    Await([&] { return requests_.size() >= expected.size(); });
    const std::scoped_lock lock(mutex_);
    EXPECT_EQ(std::exchange(requests_, {}), expected);
}

Lines Recording::Read(const std::string& file) const {
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

void Recording::KillBrowser() const {
    // The lock of the profile is a link that reads "host-process".
    std::error_code none;
    const std::string owner =
        std::filesystem::read_symlink(folder_.path() + "/.tamrin-browser/SingletonLock", none);
    const auto dash = owner.rfind('-');
    if (dash != std::string::npos) kill(std::stoi(owner.substr(dash + 1)), SIGKILL);
}

}  // namespace tamrin::test
