#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tamrin {

// Whether a tab is busy and how far its page has come, told from the browser's events alone. Every
// tick is a Clock::TickCount.
//
// A tab is busy from the moment it is told to navigate, or its page asks for it, until the load has
// stopped. The frames of a page count, too: in a page made of frames a click often loads another
// frame, and what follows must wait for it.
class LoadTracker {
public:
    // The tab was told to navigate; NavigateAnswered follows when the browser has answered, which
    // it does when the page begins to arrive, or cannot.
    void Navigate();
    void NavigateAnswered();

    // Of the frame `frame` ("" is the top one): the page asked for a navigation; a load began; the
    // new page took the old one's place; the load ended, in a page or not.
    void Requested(std::string_view frame, std::uint32_t tick);
    void Started(std::string_view frame, std::uint32_t tick);
    void Navigated(std::string_view frame);
    void Stopped(std::string_view frame);
    // The frame is gone.
    void Removed(std::string_view frame);

    // How far the page had come when the tab was found, by its document.readyState.
    void Found(std::string_view state);

    // Of the top frame: its text is read, and all of it is loaded.
    void Interactive() { ready_state_ = 3; }
    void Complete() { ready_state_ = 4; }

    // The user refused to leave the page: what was asked for will not come.
    void Refused();

    bool Busy(std::uint32_t tick) const;
    int ReadyState() const { return ready_state_; }

private:
    struct Load {
        std::string frame;
        std::uint32_t tick;
        bool started;
    };

    Load& Of(std::string_view frame, std::uint32_t tick);
    bool TopLoads() const;

    std::vector<Load> loads_;
    int navigates_ = 0;  // not yet answered
    int ready_state_ = 4;
};

}  // namespace tamrin
