#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/file_mark.h"
#include "app/frm_ie_auto_form.h"
#include "app/platform.h"
#include "app/record_editor.h"
#include "state/globals.h"

namespace tamrin {

// The commands on scenario files: the open scenario, and whether it has been saved.
class ScenarioFiles {
public:
    ScenarioFiles(Globals& globals, const Platform& platform, MainControls& controls,
                  RecordEditor& records)
        : globals_(globals), platform_(platform), controls_(controls), records_(records) {}

    // Told when another scenario is open, or this one has got another name.
    std::function<void()> onOpened;
    // Told when a scenario was saved under a name of the user's choice, after onOpened.
    std::function<void()> onSavedAs;

    void mnuNew_Click();
    void mnuOpen_Click();
    void mnuSave_Click();
    void mnuSaveAs_Click();

    // Opens a file in place of the open scenario, once the user has been asked about that. False
    // when the open scenario is still the one before.
    bool Open(const std::string& path);

    // The same without a question.
    bool LoadScenario(const std::string& path);

    // Asks whether unsaved records are to be saved, and saves them. Answers whether what was asked
    // for may go on: not when the user cancels, or wanted to save and that failed. Saying yes and
    // then dismissing the dialog gives the records up when the window closes, which is how it has
    // always been; before another scenario is opened it cancels.
    enum class Before { kOpening, kClosing };
    bool PromptSaveChanges(Before before);

    // The folder of scenario files, absolute; the program's own when none is set.
    std::string SaveFolder() const;

    // Whether the open scenario has a file: neither a new one nor one from the command line.
    bool HasFile() const;
    // Whether another program has changed the open file since it was read or written.
    bool ChangedOutside() const;

    // Says that it cannot be done while something runs; true when nothing does.
    bool Idle();

    // Writes the list, and says so when that fails.
    bool WriteScenarioFile(const std::string& path);

private:
    // Asks before the open file is overwritten where that would lose something.
    bool MayOverwrite(const std::string& path);
    void Show(const std::string& text, const std::string& title);
    void SetFile(const std::string& path);

    Globals& globals_;
    Platform platform_;
    MainControls& controls_;
    RecordEditor& records_;
    std::optional<FileMark> mark_;  // of the open file as it was read or written
    bool damaged_ = false;          // the open file holds characters that could not be read
};

}  // namespace tamrin
