#pragma once

#include <memory>
#include <string>

#include "platform/browser.h"
#include "platform/clock.h"
#include "player/player_host.h"
#include "player/run_events.h"
#include "scenario/record.h"
#include "state/globals.h"

namespace tamrin {

// Plays the record list against a browser window of its own.
class Player {
public:
    Player(Globals& globals, Clock& clock, BrowserLauncher& launcher, PlayerHost& host,
           RunEvents& events)
        : globals_(globals), clock_(clock), launcher_(launcher), host_(host), events_(events) {}

    // Plays the list as often as the setting "play count" says and returns when the run is over.
    // Must not be called while a run is on.
    //
    // A list without a "url" record, one with an empty address, or a bad size_bar ends the run with
    // the activity still "play": what the user leaves by the stop command. So does a run after
    // which the program is to close.
    RunEnd Play();

private:
    // Where a run begins: the first "url" record.
    struct Opening {
        int row = -1;
        std::string address;
        WindowPlace place;
        WindowBars bars;
    };

    RunEnd ReadOpening(Opening& opening);
    RunEnd PlayAll(const std::shared_ptr<Browser>& browser);
    RunEnd PlayRecords(const std::shared_ptr<Browser>& browser, int row);
    // Goes to the address and waits for the page.
    void Open(Browser& browser, const std::string& address);
    RunEnd NoBrowser(const std::string& why);
    void Finish(RunEnd end);
    void Report(int row, const std::string& act, RecordOutcome outcome, std::uint32_t since);

    Globals& globals_;
    Clock& clock_;
    BrowserLauncher& launcher_;
    PlayerHost& host_;
    RunEvents& events_;
};

}  // namespace tamrin
