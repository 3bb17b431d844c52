#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

    // Called when another scenario is open, or the open one has another name.
    std::function<void()> onOpened;
    // Called when the user has saved the scenario under another name, after onOpened where it goes
    // on under that name.
    std::function<void()> onSavedAs;

    void mnuNew_Click();
    void mnuOpen_Click();
    void mnuSave_Click();
    void mnuSaveAs_Click();

    // Opens a file in place of the open scenario, after asking about unsaved records. False when
    // the scenario before it is still open.
    bool Open(const std::string& path);

    // The same without asking.
    bool LoadScenario(const std::string& path);

    // Asks whether to save unsaved records, and saves them. True when the command may go on: not
    // when the user cancels, or wants to save and saving fails. When the user answers yes and then
    // cancels the file dialog, a closing window gives the records up (users are used to it), and
    // opening another scenario is cancelled.
    enum class Before { kOpening, kClosing };
    bool PromptSaveChanges(Before before);

    // The folder of scenario files, absolute; the program's own when none is set.
    std::string SaveFolder() const;

    // Whether the open scenario has a file: neither a new one nor one from the command line.
    bool HasFile() const;
    // Whether another program has changed the open file since it was read or written.
    bool ChangedOutside() const;

    // True when nothing is recorded or played; otherwise tells the user to stop that first.
    bool Idle();

    // Whether the open scenario may be played: asks once about a file from the Internet.
    bool MayPlay();

    // Saves the list as a file and reads it back. False, and a message, when one of them fails: the
    // list is unsaved as before then.
    bool WriteScenarioFile(const std::string& path);

private:
    // What a file held at some moment. File times are not compared: copying and synchronising
    // programs change them without changing the text, and keep them while changing it.
    struct Contents {
        std::size_t size = 0;
        std::size_t hash = 0;
        bool operator==(const Contents&) const = default;
    };

    static Contents ContentsOf(std::string_view bytes);
    // Asks before the open file is overwritten where that would lose something.
    bool MayOverwrite(const std::string& path);
    void Show(const std::string& text, const std::string& title);
    void SetFile(const std::string& path);

    Globals& globals_;
    Platform platform_;
    MainControls& controls_;
    RecordEditor& records_;
    std::optional<Contents> known_;  // of the open file as it was read or written
    bool damaged_ = false;           // the open file holds characters that could not be read
    std::string trusted_;            // a file from the Internet that the user has allowed to play
};

// What the user is told when a file could not be written at `path`.
std::string SaveError(const std::string& path, const Files& files);

}  // namespace tamrin
