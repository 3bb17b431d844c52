#pragma once

#include <string>

#include "app/frm_ie_auto_form.h"
#include "app/platform.h"
#include "app/record_editor.h"
#include "app/scenario_files.h"
#include "state/globals.h"

namespace tamrin {

// The command that writes a stand-alone player: a copy of this program that carries the records and
// plays them when it is started.
class PlayerMaker {
public:
    PlayerMaker(Globals& globals, const Platform& platform, MainControls& controls,
                RecordEditor& records, ScenarioFiles& scenario)
        : globals_(globals),
          platform_(platform),
          controls_(controls),
          records_(records),
          scenario_(scenario) {}

    // Asks for a name and writes the player there.
    void mnuMakeExe_Click();

    // Writes the player. False, and a message, when there is nothing to play, when the file is
    // running, or when it cannot be written; an older file then stays as it was.
    bool Save(const std::string& path);

private:
    // Why no player is written at `path`; "" when it was.
    std::string Write(const std::string& path);
    // The path that the dialog proposes.
    std::string Proposed() const;

    Globals& globals_;
    Platform platform_;
    MainControls& controls_;
    RecordEditor& records_;
    ScenarioFiles& scenario_;
};

}  // namespace tamrin
