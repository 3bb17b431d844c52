#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "samples/web_server.h"
#include "support/program.h"
#include "support/temporary_folder.h"

namespace tamrin::test {

using Lines = std::vector<std::string>;

// Runs a command of xdotool, which moves the mouse and presses keys as a user's hand, and answers
// what it prints. It works on an X display of the tests' own, with a window manager: the programs
// that are started after the first call show their windows there. A failure throws.
std::string Hand(Lines command);
void PointAt(int x, int y);

// A user who works on pages in a real browser while the real program records it.
class Recording : public testing::Test {
protected:
    Recording();
    ~Recording() override;

    // What the server answers to a path.
    void Serve(const std::string& path, WebReply reply) { pages_[path] = std::move(reply); }
    // A page of UTF-8 that reports its elements.
    void ServePage(const std::string& path, const std::string& html);
    // The script by which it does; every page that is clicked in has it. With an attribute of it.
    static std::string Reports(const std::string& attribute = "");

    // Records with a browser at "/" and does acts there, separated by blanks:
    //     @a             clicks on the element with that id, name or data-place, also in a frame
    //     {a}{shift+Tab} presses keys
    //     choose:city=2  chooses an option by the mouse alone
    //     compose:6771   types the letter of that code by an input method
    //     see:/done      waits for a page
    // Everything else is typed.
    void Record(const std::string& acts);
    // Waits until so many records behind that of the page are safe should the program die.
    void AwaitRecords(std::size_t count) const;
    // Closes the browser's window when these records are made, and expects exactly them behind that
    // of the page, without the server's address.
    void Expect(const Lines& records);
    // The same of what is saved when the program has ended.
    void ExpectSaved(Lines records);
    // Expects these requests behind that of the page to have been made, and to be made again when
    // the scenario is played.
    void ExpectPlayed(Lines requests);

    // Ends the browser as a crash would.
    void KillBrowser() const;

    const TemporaryFolder folder_;
    std::optional<Program> program_;

private:
    // What the page reports of an element: its place on the screen and its state.
    struct Report {
        int left, top, width, height, selected;
        bool hovered, ready;  // for keys: it has the focus, or is no field
    };

    Lines Read(const std::string& file) const;
    WebReply Answer(const WebRequest& request);
    void TakeReport(const std::string& body);
    // Waits for what the server is told or asked; false when it does not come.
    bool Await(const std::function<bool()>& condition, int limit_ms = 20000);
    void Do(const std::string& word);
    void ClickOn(const std::string& name);
    void Choose(const std::string& name, int index);
    Report Reported(const std::string& name) {
        const std::scoped_lock lock(mutex_);
        return elements_[name];
    }
    void ExpectRequests(const Lines& expected);

    std::mutex mutex_;  // held for what the server's thread shares with the test
    std::condition_variable told_;
    std::map<std::string, WebReply> pages_;
    std::string shown_;  // the path of the page that has reported last
    std::map<std::string, Report> elements_;
    Lines requests_;
    WebServer server_{[this](const WebRequest& request) { return Answer(request); }};
};

}  // namespace tamrin::test
