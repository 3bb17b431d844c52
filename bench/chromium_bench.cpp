// Measures the lookups of the Chromium back end beside plain scripts that ask the same of the same
// page.

#include <cstdio>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/chromium/browser_process.h"
#include "platform/chromium/devtools.h"
#include "platform/chromium/launcher.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "samples/web_server.h"
#include "table.h"

namespace tamrin {
namespace {

// A form page of about `count` elements.
std::string Page(int count) {
    std::string html = "<!DOCTYPE html><title>bench</title><form>";
    for (int i = 0; i < count / 5; ++i) {
        const std::string n = std::to_string(i);
        html += "<p id=p" + n + "><label>項目" + n + " <input name=n" + n + " type=text value=値" +
                n + "></label><a href=/page/" + n + " onclick=\"return true\">link</a>" +
                "<img alt=text></p>";
    }
    return html + "</form>";
}

// What a script writer would send to read the same keys of every element.
constexpr const char* kPlainScript =
    "JSON.stringify(Array.from(document.getElementsByTagName('*'), (e) => [e.id, e.name || '', "
    "e.tagName, e.value || '', e.href || null, e.type || null, e.getAttribute('alt'), "
    "e.getAttribute('onclick')]))";

class Bench {
public:
    int Run() {
        clock_.AddSource([this] { launcher_.DeliverEvents(); });
        std::string why;
        browser_ = launcher_.Create(why);
        plain_ = BrowserProcess::Start(processes_, files_, clock_, {}, devtools_, why);
        if (!browser_ || !plain_ || !OpenPlain()) {
            std::cerr << why << '\n';
            return 1;
        }
        const double calls = BestSeconds([&] {
            for (int i = 0; i < 200; ++i) Plain("''");
        });
        table_.Row("200 calls one after another", 1000 * calls, 400, "ms");
        const double small = Walk("10,000 elements, 2 plain scripts", 10000);
        const double large = Walk("100,000 elements, 2 plain scripts", 100000);
        table_.Row("100,000 elements, 15 times 10,000", large, 15 * small, "ms");
        return table_.ExitCode();
    }

private:
    void Open(int count) {
        const std::string url = server_.Url("/" + std::to_string(count));
        browser_->Navigate(url);
        devtools_.Call(session_, "Page.navigate", {{"url", url}});
        while (browser_->Busy() || Plain("document.readyState") != "complete") {
            clock_.Sleep(10);
            clock_.DoEvents();
        }
    }

    // All keys of all elements, as a walk that looks for one of them reads them.
    double Walk(const char* what, int count) {
        Open(count);
        const Document page = browser_->document();
        std::size_t read = 0;
        const auto walk = [&] {
            for (const Element& element : page.getElementsByTagName("*")) {
                read += element.getAttribute("type").value_or("").size() + element.value().size();
            }
        };
        walk();
        const std::uint64_t before = launcher_.RoundTrips();
        const double seconds = BestSeconds(walk);
        const auto trips = static_cast<double>(launcher_.RoundTrips() - before);
        const double plain = BestSeconds([&] { read += Plain(kPlainScript).size(); });
        table_.Row(what, 1000 * seconds, 1000 * 2 * plain, "ms");
        table_.Row("its round trips", trips / 3, 1.001, "");
        return 1000 * seconds;
    }

    bool OpenPlain() {
        const std::string target =
            devtools_.Call("", "Target.createTarget", {{"url", "about:blank"}}).Text("/targetId");
        session_ =
            devtools_.Call("", "Target.attachToTarget", {{"targetId", target}, {"flatten", true}})
                .Text("/sessionId");
        return !session_.empty();
    }

    std::string Plain(const char* script) {
        return devtools_
            .Call(session_, "Runtime.evaluate", {{"expression", script}, {"returnByValue", true}})
            .Text("/result/value");
    }

    PosixFiles files_;
    PosixProcesses processes_;
    SystemClock clock_;
    WebServer server_{[](const WebRequest& request) {
        return WebReply{.body = Page(std::atoi(request.path.c_str() + 1))};
    }};
    ChromiumLauncher launcher_{processes_, files_, clock_, {}};
    std::shared_ptr<Browser> browser_;
    std::unique_ptr<BrowserProcess> plain_;  // ends when the connection is closed before it
    DevTools devtools_{clock_, {}};
    std::string session_;
    Table table_;
};

}  // namespace
}  // namespace tamrin

int main() { return tamrin::Bench().Run(); }
