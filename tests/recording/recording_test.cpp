// Pages as users meet them, worked on by mouse and keyboard: the records, and what playing them
// asks of the server.

#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>

#include "platform/posix/text_codec.h"
#include "samples/web_server.h"
#include "scenario/scenario_text.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;

// Runs a command of xdotool, which moves the mouse and presses keys as a user's hand. It works on
// an X display of the tests' own, with a window manager: the programs that are started after the
// first call show their windows there. A failure throws.
void Hand(Lines command) {
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
}

void PointAt(int x, int y) { Hand({"mousemove", std::to_string(x), std::to_string(y)}); }

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
        lines += `${name} ${x + Math.round(box.width / 2)} ${y + Math.round(box.height / 2)} ` +
            `${+e.matches(e.localName + ':hover')} ` +
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

WebReply Page(const std::string& html, const std::string& nonce = "") {
    return {.body = "<!doctype html><meta charset=utf-8><script " + nonce + ">" + kReports +
                    "</script>" + html};
}

// An old page, without a doctype and in Shift-JIS.
WebReply OldPage(const std::string& html) {
    return {.content_type = "text/html; charset=Shift_JIS", .body = *PosixTextCodec().Encode(html)};
}

// What a user does on which pages, and what must come of it.
struct Session {
    std::map<std::string, WebReply> pages;
    std::string acts;
    Lines records;        // behind that of the page "/", without the server's address
    Lines requests = {};  // behind "GET /", of the user, and again when the scenario is played
};

// A user who works on pages in a real browser while the real program records it.
class Recording : public testing::Test {
protected:
    Recording() {
        Hand({"version"});
        setenv("HOME", folder_.path().c_str(), 1);
        std::filesystem::copy_file(TAMRIN_PROGRAM, folder_.At("tamrin"));
    }
    ~Recording() override {
        program_.reset();
        KillBrowser();
    }

    void Check(const Session& session) {
        Record(session);
        AwaitRecords(session.records.size());
        Hand({"key", "ctrl+shift+w"});
        ExpectSaved(session.records);
        Lines requests = session.requests;
        requests.insert(requests.begin(), "GET /");
        for (const bool played : {false, true}) {
            if (played) {
                program_.emplace(
                    Lines{folder_.At("tamrin"), "-a", folder_.At("new.csv"), "-close"});
                EXPECT_EQ(program_->Wait(), 0) << program_->output();
            }
            Await([&] { return requests_.size() >= requests.size(); });
            const std::scoped_lock lock(mutex_);
            EXPECT_EQ(std::exchange(requests_, {}), requests);
        }
    }

    // Records with a browser at "/" and does acts there, separated by blanks:
    //     @a             clicks on the element with that id, name or data-place, also in a frame
    //     {a}{shift+Tab} presses keys
    //     compose:6771   types the letter of that code by an input method
    //     see:/done      waits for a page
    // Everything else is typed.
    void Record(const Session& session) {
        {
            const std::scoped_lock lock(mutex_);
            pages_ = session.pages;
            shown_.clear();
            elements_.clear();
        }
        program_.emplace(
            Lines{folder_.At("tamrin"), "-record", folder_.At("new.csv"), server_.Url("/")});
        if (!program_->Prints("記録しています。")) throw std::runtime_error(program_->output());
        std::istringstream words("see:/ " + session.acts);
        for (std::string word; words >> word;) Do(word);
    }
    // Waits until so many records behind that of the page are safe should the program die.
    void AwaitRecords(std::size_t count) const {
        for (int i = 0; i < 1000 && Read("new.csv.recovery").size() <= count; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    void ExpectSaved(Lines records, const std::string& file = "new.csv", int code = 0) {
        EXPECT_EQ(program_->Wait(), code) << program_->output();
        records.insert(records.begin(), "url\t,id=,indt=/");
        EXPECT_EQ(Read(file), records);
    }

    // Ends the browser as a crash would. The lock of its profile is a link "host-process".
    void KillBrowser() const {
        std::error_code none;
        const std::string owner =
            std::filesystem::read_symlink(folder_.At(".tamrin-browser/SingletonLock"), none);
        const auto dash = owner.rfind('-');
        if (dash != std::string::npos) kill(std::stoi(owner.substr(dash + 1)), SIGKILL);
    }

    const TemporaryFolder folder_;
    std::optional<Program> program_;

private:
    // What the page reports of an element: its middle on the screen and its state.
    struct Report {
        int x, y;
        bool hovered, ready;  // for keys: it has the focus, or is no field
    };

    WebReply Answer(const WebRequest& request) {
        const std::scoped_lock lock(mutex_);
        told_.notify_all();
        if (request.path == "/report") {
            std::istringstream lines(request.body);
            std::getline(lines, shown_);
            elements_.clear();
            Report e{};
            for (std::string name; lines >> name >> e.x >> e.y >> e.hovered >> e.ready;) {
                elements_[name] = e;
            }
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

    // Waits for what the server is told or asked; false when it does not come.
    bool Await(const std::function<bool()>& condition, int limit_ms = 20000) {
        std::unique_lock lock(mutex_);
        return told_.wait_for(lock, std::chrono::milliseconds(limit_ms), condition);
    }

    void Do(const std::string& word) {
        const std::string argument = word.substr(word.find(':') + 1);
        Lines keys{"key", "--delay", "4"};
        if (word[0] == '@') {
            ClickOn(word.substr(1));
        } else if (word[0] == '{') {
            std::istringstream names(word);
            for (std::string key; std::getline(names, key, '}');) keys.push_back(key.substr(1));
            Hand(keys);
        } else if (word.starts_with("see:")) {
            EXPECT_TRUE(Await([&] { return shown_ == argument; })) << word;
        } else if (word.starts_with("compose:")) {
            // The browser shows the composition underlined in the field, and then its outcome.
            keys.emplace_back("ctrl+shift+u");
            for (const char digit : argument) keys.emplace_back(1, digit);
            keys.emplace_back("space");
            Hand(keys);
        } else {
            Hand({"type", "--delay", "4", word});
        }
    }

    // The window may still be on its way to its place: the click waits until the page reports that
    // the pointer is on the element, and keys wait until the click has brought the focus to a
    // field.
    void ClickOn(const std::string& name) {
        const auto shown = [&] { return elements_.contains(name); };
        for (int i = 0; i < 50; ++i) {
            Report e{};
            if (!Await([&] { return shown() && (e = elements_[name], true); })) {
                throw std::runtime_error("not shown: " + name);
            }
            PointAt(e.x + i % 2, e.y);
            if (Await([&] { return shown() && elements_[name].hovered; }, 400)) break;
        }
        Hand({"click", "1"});
        Await([&] { return !shown() || elements_[name].ready; });
    }

    // The records of a file without the server's address and the window's place.
    Lines Read(const std::string& file) const {
        Lines lines = ReadScenarioText(FileBytes(folder_.At(file)), PosixTextCodec());
        for (std::string& line : lines) {
            const std::string address = server_.Url("");
            const auto at = line.find(address);
            if (at != std::string::npos) line.erase(at, address.size());
            const auto bar = line.find(",size_bar=");
            if (bar != std::string::npos) line.erase(bar, line.find(',', bar + 1) - bar);
        }
        return lines;
    }

    std::mutex mutex_;  // held for what the server's thread shares with the test
    std::condition_variable told_;
    std::map<std::string, WebReply> pages_;
    std::string shown_;  // the path of the page that has reported last
    std::map<std::string, Report> elements_;
    Lines requests_;
    WebServer server_{[this](const WebRequest& request) { return Answer(request); }};
};

TEST_F(Recording, KeepsEachKindOfField) {
    Check({
        .pages = {{"/", Page(R"(
<form action=/old method=post>
<p><input id=name name=name type=text> <input id=kana name=kana>
<p><input id=pass name=pass type=password> <textarea id=memo name=memo></textarea>
<p><select id=city name=city><option>東京<option>大阪<option>福岡</select>
<p><input type=radio id=r1 name=when value=am><input type=radio id=r2 name=when value=pm>
<input type=checkbox id=gift name=gift> <input type=submit id=send value=送信>
</form>)")},
                  // Older pages name their fields, and give ids to none.
                  {"/old", Page(R"(
<form action=/done><input name=q><input type=radio name=r value=x>
<input type=radio name=r value=y data-place=y><input type=submit value=検索 data-place=go></form>)")},
                  {"/done", Page("<p>受付")}},
        .acts = "@name Tokyo,1-2 @kana compose:6771 compose:4eac {Tab} p#9 @memo compose:4e00"
                " compose:884c {Return} b {Tab}{Down}{Down}{Tab}{space}{Right} @gift @send see:/old"
                " @q kensaku @y @go see:/done",
        .records = {"input\t,id=name,type=text,indt=Tokyo\0011-2",
                    "input\t,id=kana,type=text,indt=東京", "input\t,id=pass,type=password,indt=p#9",
                    "input\t,id=memo,type=textarea,indt=一行\002b",
                    "input\t,id=city,type=select-one,indt=2", "input\t,id=r1,type=radio,indt=True",
                    "input\t,id=r2,type=radio,indt=True", "input\t,id=gift,type=checkbox,indt=True",
                    "click\t,id=send,type=submit,indt=送信", "input\t,id=q,type=text,indt=kensaku",
                    "input\t,id=r,type=radio,indt=True,value=y",
                    "click\t,id=,type=submit,indt=検索"},
        .requests = {"POST /old name=Tokyo%2C1-2&kana=%E6%9D%B1%E4%BA%AC&pass=p%239&memo=%E4%B8%80"
                     "%E8%A1%8C%0D%0Ab&city=%E7%A6%8F%E5%B2%A1&when=pm&gift=on",
                     "GET /done?q=kensaku&r=y"},
    });
}

TEST_F(Recording, KeepsWhatLeadsToOtherPages) {
    const std::string picture =
        "<img width=40 height=30 data-place=picture src=data:image/gif;base64,"
        "R0lGODlhAQABAIAAAP///wAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==>";
    Check({
        .pages =
            {{"/", Page("<a href=/second data-place=text>次の ページ</a>")},
             {"/second", Page("<a href=/third>" + picture + "</a>")},
             {"/third", Page("<a href=\"javascript:location='/4'\" data-place=script>開く</a>")},
             {"/4", Page("<form><input type=image id=go src=/go.svg width=40 height=30"
                         " onclick=\"location='/enter'; return false\"></form>")},
             {"/go.svg",
              {.content_type = "image/svg+xml",
               .body = "<svg xmlns='http://www.w3.org/2000/svg'><circle r='20'/></svg>"}},
             // A frame, and Enter, which is the button that it presses.
             {"/enter", Page("<form action=/only><input name=q><input type=hidden name=r><input"
                             " type=submit name=go value=検索></form><iframe name=i src=/inner>")},
             {"/inner",
              {.body = "<input id=in1><input id=in2"
                       " onchange='parent.document.forms[0].r.value = value'>"}},
             // A page that is away before its click is recorded, and a server that sends it on.
             {"/only", Page("<input id=a><button id=b onclick=\"location='/moved'\">x</button>")},
             {"/moved", {.status = 302, .location = "/last"}},
             {"/last", Page("<button type=button id=stay onclick=\"fetch('/stayed')\">y</button>"
                            "<button id=c onclick=\"document.write('<p>書き換え')\">z</button>")},
             {"/stayed", {}}},
        .acts = "@text see:/second @picture see:/third @script see:/4 @go see:/enter @in1 b {Tab} c"
                " @q one {Return} see:/only @a v @b see:/last @stay @c",
        .records = {"click\t,id=,type=href,indt=次の ページ", "click\t,id=,type=href,indt=/third",
                    "click\t,id=,type=href,indt=開く", "click\t,id=go,type=image,indt=/go.svg",
                    "input\t,id=in1,type=text,indt=b", "input\t,id=in2,type=text,indt=c",
                    "input\t,id=q,type=text,indt=one", "click\t,id=go,type=submit,indt=検索",
                    "input\t,id=a,type=text,indt=v", "click\t,id=b,type=submit,indt=",
                    "click\t,id=stay,type=button,indt=", "click\t,id=c,type=submit,indt="},
        .requests = {"GET /second", "GET /third", "GET /4", "GET /go.svg", "GET /enter",
                     "GET /inner", "GET /only?q=one&r=c&go=%E6%A4%9C%E7%B4%A2", "GET /moved",
                     "GET /last", "GET /stayed"},
    });
}

TEST_F(Recording, FollowsAnOldFrameset) {
    Check({
        .pages = {{"/", OldPage(std::string("<html><head><script>") + kReports +
                                "</script></head><frameset cols='200,*'><frame name=menu src=/menu>"
                                "<frame name=main></frameset></html>")},
                  {"/menu", OldPage("<a href=/form target=main data-place=menu>申請書</a>")},
                  {"/form",
                   OldPage("<form action=/done><table><tr><td>氏名<td><input name=shimei"
                           " onchange=\"this.form.kana.value='カナ'\"><td><input name=kana><tr><td>"
                           "<input type=submit value='送 信' data-place=send></table></form>")},
                  {"/done", OldPage("<p>受付")}},
        .acts = "@menu @shimei compose:9ad9 compose:2460 @send",
        .records = {"click\t,id=,type=href,indt=申請書", "input\t,id=shimei,type=text,indt=髙①",
                    "click\t,id=,type=submit,indt=送 信"},
        .requests = {"GET /menu", "GET /form", "GET /done?shimei=%FB%FC%87%40&kana=%83J%83i"},
    });
}

// A page may replace its fields by new ones at each input, forbid scripts that it does not know,
// and give the names of the language to others.
TEST_F(Recording, WorksOnPagesThatRebuildForbidAndRedefine) {
    Check({
        .pages = {{"/", Page(R"(
<meta http-equiv=Content-Security-Policy content="script-src 'nonce-n'"><div id=app></div>
<button id=send>送る</button><script nonce=n>
let name = '';
const show = () => {
  app.innerHTML = `<input id=name value="${name}">`;
  app.firstChild.oninput = (e) => {
    name = e.target.value;
    show();
    app.firstChild.focus();
    app.firstChild.setSelectionRange(99, 99);
  };
};
show();
send.onclick = () => { location = '/done?' + name; };
Array.prototype.push = Array.prototype.map = String.prototype.toLowerCase = () => 'no';
Map = Set = JSON = Promise = undefined;
EventTarget.prototype.addEventListener = () => {};
</script>)",
                             "nonce=n")},
                  {"/done", Page("")}},
        .acts = "@name abc @send see:/done",
        // Each field that is gone has been left.
        .records = {"input\t,id=name,type=text,indt=a", "input\t,id=name,type=text,indt=ab",
                    "input\t,id=name,type=text,indt=abc", "click\t,id=send,type=submit,indt="},
        .requests = {"GET /done?abc"},
    });
}

// At Ctrl+C the field in which the user still stands is recorded as well. Only changes are kept
// here: the field between the two was visited alone.
TEST_F(Recording, KeepsWhatWasRecordedWhenItIsCutShort) {
    const Lines records{"input\t,id=a,type=text,indt=x", "input\t,id=b,type=text,indt=y"};
    const Session session{{{"/", Page("<input id=a><input id=same value=z><input id=b>")}},
                          "@a {x}{Tab}{Tab}{y}",
                          {}};
    folder_.Write("Conf.txt", "rec change only = 1\r\n");
    Record(session);
    program_->Signal(SIGINT);
    ExpectSaved(records);

    Record(session);
    Hand({"key", "Tab"});
    AwaitRecords(2);
    KillBrowser();
    ExpectSaved(records);

    std::filesystem::remove(folder_.At("new.csv"));
    std::filesystem::create_directory(folder_.At("new.csv"));
    Record(session);
    program_->Signal(SIGINT);
    ExpectSaved(records, "new.csv.recovery", 8);
    EXPECT_NE(program_->output().find("[保存エラー]"), std::string::npos) << program_->output();
}

}  // namespace
}  // namespace tamrin::test
