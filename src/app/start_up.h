#pragma once

#include <string>

#include "app/command_line.h"
#include "app/frm_ie_auto_form.h"
#include "app/platform.h"
#include "app/record_editor.h"
#include "app/scenario_files.h"
#include "state/globals.h"

namespace tamrin {

// How start-up dealt with the scenario of the command line.
enum class StartUp { kDone, kParameterError, kNoScenario };

// Finds out at start what the program is to do: play the scenario that its own file carries, or
// what the command line says.
class StartScenario {
public:
    StartScenario(Globals& globals, const Platform& platform, MainControls& controls,
                  RecordEditor& records, ScenarioFiles& scenario)
        : globals_(globals),
          platform_(platform),
          controls_(controls),
          records_(records),
          scenario_(scenario) {}

    // Loads the scenario that the program's own file carries; the program is then a stand-alone
    // player. kNoScenario, and a message, when the player is damaged.
    StartUp LoadCarried();

    // Carries out the switches of the command line, or the command line of a player. Not kDone, and
    // a message, when the scenario that it names cannot be loaded; the rest is then not read.
    StartUp ReadCommandLine(std::string command_line);

private:
    StartUp LoadFromSwitch(const Switch& item);
    // Loads the scenario that is to be played at once.
    StartUp Load(const std::string& path);
    void StreamFromSwitch(const Switch& item);
    StartUp CountFromSwitch(const Switch& item);
    void BrowserFromSwitch(const Switch& item);
    void ShowMessage(const std::string& text, const std::string& title);

    Globals& globals_;
    Platform platform_;
    MainControls& controls_;
    RecordEditor& records_;
    ScenarioFiles& scenario_;
};

}  // namespace tamrin
