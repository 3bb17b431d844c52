#include "recording/desk.h"

#include <cstdlib>
#include <stdexcept>

namespace tamrin::test {
namespace {

// env finds a program by its name, and becomes it.
std::vector<std::string> Found(std::vector<std::string> command) {
    command.insert(command.begin(), "/usr/bin/env");
    return command;
}

std::vector<std::string> OnDisplay(Program& display, std::vector<std::string> command) {
    if (!display.Prints("\n")) throw std::runtime_error("no display: " + display.output());
    const std::string number = display.output().substr(0, display.output().find('\n'));
    setenv("DISPLAY", (":" + number).c_str(), 1);
    // The toolkit's own input method, whatever the tester's desktop has.
    setenv("GTK_IM_MODULE", "gtk-im-context-simple", 1);
    return command;
}

void Do(const std::vector<std::string>& command) {
    Program hand(Found(command));
    if (hand.Wait() != 0) throw std::runtime_error(command[1] + ": " + hand.output());
}

}  // namespace

// Only its display's number is of interest: it tells as well which ones it found taken.
Desk::Desk()
    : display_({"/bin/sh", "-c",
                "exec Xvfb -displayfd 1 -screen 0 1280x1000x24 -nolisten tcp 2>/dev/null"}),
      window_manager_(OnDisplay(display_, Found({"openbox"}))) {}

void Desk::Click(Point where) const {
    Do({"xdotool", "mousemove", std::to_string(where.x), std::to_string(where.y), "click", "1"});
}

void Desk::MoveTo(Point where) const {
    Do({"xdotool", "mousemove", std::to_string(where.x), std::to_string(where.y)});
}

void Desk::Press(const std::vector<std::string>& strokes) const {
    std::vector<std::string> command{"xdotool", "key", "--delay", "4"};
    command.insert(command.end(), strokes.begin(), strokes.end());
    Do(command);
}

void Desk::Type(const std::string& text) const { Do({"xdotool", "type", "--delay", "4", text}); }

void Desk::Compose(const std::vector<std::string>& codes) const {
    for (const std::string& code : codes) {
        std::vector<std::string> strokes{"ctrl+shift+u"};
        for (const char digit : code) strokes.emplace_back(1, digit);
        strokes.emplace_back("space");
        Press(strokes);
    }
}

}  // namespace tamrin::test
