#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "platform/chromium/launcher.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "samples/web_server.h"

namespace tamrin::test {

// This computer without a display, so that browsers start headless.
class NoDisplay : public PosixProcesses {
public:
    bool HasDisplay() const override { return false; }
};

// A real browser and a web to show in it. Both are shared by all tests of the program: starting a
// browser takes a second.
struct World {
    World();

    NoDisplay processes;
    PosixFiles files;
    SystemClock clock;
    std::mutex lock;
    std::function<WebReply(const WebRequest&)> web;  // under `lock`; called by the server's thread
    WebServer server;
    bool stop = false;  // what the program's stop button says
    std::unique_ptr<ChromiumLauncher> launcher;
    std::shared_ptr<Browser> browser;

    static World& Shared();
};

// A test in the shared browser's window.
class ChromiumTest : public ::testing::Test {
protected:
    ChromiumTest();

    // Serves `html` at every address from now on; its scripts find log(text), which adds a word to
    // what Log answers.
    void Serve(const std::string& html);
    // Lets `web` answer every request from now on.
    void Serve(std::function<WebReply(const WebRequest&)> web);

    // Shows a page and waits until it is complete.
    void Open(const std::string& html);
    void OpenUrl(const std::string& url);

    // What the page has logged.
    std::string Log();

    // The element with that id, in the top page.
    Element Find(const std::string& id);

    // Handles events until `condition` holds; false when it does not within 10 s.
    bool Wait(const std::function<bool()>& condition);
    bool WaitComplete();

    World& world_ = World::Shared();
    ChromiumLauncher& launcher_;
    Browser& browser_;
};

// Key strokes: a named key, and a character.
KeyStroke NamedKey(const std::string& name);
KeyStroke Letter(char c);

// A page whose scripts find log(text).
std::string Page(const std::string& html);

}  // namespace tamrin::test
