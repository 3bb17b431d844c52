#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "recording/desk.h"
#include "samples/web_server.h"
#include "support/temporary_folder.h"

namespace tamrin::test {

using Lines = std::vector<std::string>;

// A user who works on pages in a real browser, while the real program records it.
class RecordingTest : public testing::Test {
public:
    static void Pass(int milliseconds);

    // The desk of all tests of the program.
    static Desk& desk();

protected:
    RecordingTest();
    ~RecordingTest() override;

    // What the server answers to a path, from now on. Every page that tells the test where its
    // elements are has Watched() in it.
    void Serve(const std::string& path, WebReply reply);
    // A page of UTF-8 that tells it.
    void ServePage(const std::string& path, const std::string& html);
    // The script that tells it; as an attribute of it, say, its nonce.
    static std::string Watched(const std::string& attribute = "");

    // The settings of the program, as lines of Conf.txt.
    void Configure(const std::string& lines) const;

    // Begins to record with a browser at the path. A wait in vain ends the test.
    void Record(const std::string& path);
    // Waits for the page of the path, ready for its user.
    void See(const std::string& path);
    // Of an element by its id, name or data-place, also one in a frame.
    void ClickOn(const std::string& name);
    // Of a drop-down list, by the mouse alone.
    void Choose(const std::string& name, int index);
    // Until the server has been asked so often since the browser was opened.
    void AwaitRequests(std::size_t count);
    // Until so many lines are safe should the program die.
    void AwaitLines(std::size_t count);

    // Closes the browser's window, and with it the recording. The scenario's lines, the server's
    // address taken out of them; the first one is that of the page.
    Lines EndRecording();
    Lines SavedLines() const { return ReadLines("new.csv"); }

    // Plays the scenario. The server must be asked for the same as while it was recorded.
    void PlayBack();

    // Kills the browser as a crash would.
    void KillBrowser() const;
    void Interrupt() const { program_->Signal(SIGINT); }
    int Wait() { return program_->Wait(); }
    const std::string& output() const { return program_->output(); }

private:
    // Of the page's elements, on the screen.
    struct Box {
        Point corner;
        int width = 0;
        int height = 0;
    };

    // The process of the browser that records; 0 when none runs.
    pid_t BrowserProcess() const;
    Lines ReadLines(const std::string& file) const;
    WebReply Answer(const WebRequest& request);
    void TakePlaces(const std::string& told);
    Box Place(const std::string& name);
    // Throws a std::runtime_error where `what` does not come about.
    void Await(const std::string& what, const std::function<bool()>& condition);
    Lines Requests();

    TemporaryFolder folder_;
    std::mutex mutex_;  // held for what the server's threads share with the test
    std::map<std::string, WebReply> pages_;
    std::string shown_;  // the path of the page that has told last
    std::map<std::string, Box> places_;
    Lines requests_;
    WebServer server_{[this](const WebRequest& request) { return Answer(request); }};
    std::optional<Program> program_;
};

}  // namespace tamrin::test
