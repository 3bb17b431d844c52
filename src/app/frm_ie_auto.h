#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/display_options.h"
#include "app/edit_commands.h"
#include "app/file_list.h"
#include "app/frm_ie_auto_form.h"
#include "app/platform.h"
#include "app/player_maker.h"
#include "app/record_commands.h"
#include "app/record_editor.h"
#include "app/scenario_files.h"
#include "app/start_up.h"
#include "app/tool_panel.h"
#include "player/player.h"
#include "player/player_host.h"
#include "player/run_events.h"
#include "state/globals.h"

namespace tamrin {

class frmTools;

// The main window. It lives as long as the program; its record list is the scenario.
class frmIeAuto : public PlayerHost, public RunEvents, public BrowserEvents {
public:
    frmIeAuto(Globals& globals, const Platform& platform);
    ~frmIeAuto() override;
    frmIeAuto(const frmIeAuto&) = delete;
    frmIeAuto& operator=(const frmIeAuto&) = delete;

    // Starts the program: reads the settings and the command line (without the program's name),
    // loads the scenario that it names and plays it. Returns after the run. A stand-alone player
    // plays what it carries instead, on default settings; a damaged one says so and closes.
    StartUp Form_Load(const std::string& command_line);

    // Opens a scenario in place of the open one, as when its file is dropped on the window.
    bool Open(const std::string& path) { return scenario_.Open(path); }

    // Closes the window unless the user cancels. True when it is closed.
    bool Close() { return form_->Close(); }
    bool closed() const { return closed_; }

    // Offers the recording that an earlier run of the program could not save.
    void OfferRecovery() { recording_.OfferRecovery(); }

    // Saves the records as a scenario file; false, and a message, when that fails.
    bool SaveTo(const std::string& path) { return scenario_.WriteScenarioFile(path); }

    // Saves the records as a stand-alone player; false, and a message, when that fails.
    bool SavePlayerTo(const std::string& path) { return player_maker_.Save(path); }

    // The commands that record.
    RecordCommands& recording() { return recording_; }

    // Whether the user has stopped the run and it has not ended yet.
    bool Stopping() const { return playing_ && globals_.activity.empty(); }

    // How the last run ended; kNothingToPlay before the first.
    RunEnd last_run() const { return last_run_; }
    // Whether a page could not be opened during it.
    bool page_failed() const { return page_failed_; }

    // Called for each record that a run has finished.
    std::function<void(const RecordReport&)> onRecordDone;
    // Called when a run that has played records is over, while its last page still stands.
    std::function<void()> onRunEnded;

    // Enables and disables the buttons and menu entries that record, play and stop.
    void SetMode(std::string_view mode, bool on = true);

    void cmdPlay_Click();
    void cmdStop_Click();
    void Timer1_Timer();

    // PlayerHost
    int RecordCount() override { return controls_.lstDtList.Count(); }
    std::string_view Record(int row) override { return controls_.lstDtList.Line(row); }
    void SetStatus(const std::string& text) override { controls_.txtStatus.SetText(text); }
    void ShowMessage(const std::string& text, const std::string& title) override;
    std::string ClipboardText() override { return platform_.windows.ClipboardText(); }
    std::optional<Rect> WindowRect() override;
    void SetWindowVisible(bool visible) override { form_->SetVisible(visible); }

    // RunEvents
    void RunBegan() override;
    void BrowserOpened(std::shared_ptr<Browser> browser) override;
    void RecordBegan(int row) override;
    void RecordDone(const RecordReport& report) override;
    void RunEnded(RunEnd end) override;

    // BrowserEvents
    void DocumentComplete(bool top) override;
    void BeforeNavigate2(const std::string& url) override;
    void NavigateError(const std::string& url, const std::string& reason) override;
    void OnQuit() override;

private:
    void BindMenus();
    void mnuRepeat_Click();
    void mnuSetting_Click();
    void mnuTools_Click();
    void mnuManual_Click();

    // Why a run that nobody watches has to end; "" while it may go on. Pages that keep loading and
    // never complete reset the first limit, so there is a second one for each record.
    std::string WhyTooLong() const;

    void LoadSettings();
    void SaveSettings();
    void ShowWindow();

    void BindEvents();
    bool Form_QueryUnload();
    // Tells of the record that is done.
    void TellDone();
    // Takes the browser of a run, connects its events, and drops the one before; null only drops.
    void HoldBrowser(std::shared_ptr<Browser> browser);
    // Moves the main window into the notification area if the user wants that, and back.
    void EnterTray();
    void LeaveTray();
    void MyTitle(std::string_view file_name);

    Globals& globals_;
    Platform platform_;
    std::unique_ptr<Form> form_;
    MainControls controls_;
    DisplayOptions display_;
    RecordEditor records_;
    EditCommands edit_;
    ScenarioFiles scenario_;
    FileList file_list_;
    PlayerMaker player_maker_;
    RecordCommands recording_;
    ToolPanel tool_panel_;
    StartScenario start_;
    std::unique_ptr<Form> splash_;
    std::unique_ptr<frmTools> tools_;  // null until it is first opened
    Player player_;
    std::string title_;  // the caption while nothing is played
    bool playing_ = false;
    bool closed_ = false;
    bool close_when_stopped_ = false;
    bool timed_out_ = false;  // by the watchdog
    std::uint32_t record_began_ = 0;
    RunEnd last_run_ = RunEnd::kNothingToPlay;
    bool page_failed_ = false;
    bool address_failed_ = false;  // since the last record that was told of
    // The record that is done, until its page is there if it opens one.
    std::optional<RecordReport> done_;

    std::shared_ptr<Browser> target_ie_;
    std::unique_ptr<Connection> event_ie_;
};

}  // namespace tamrin
