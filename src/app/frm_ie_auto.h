#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/command_line.h"
#include "app/frm_ie_auto_form.h"
#include "platform/browser.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/process.h"
#include "platform/text.h"
#include "platform/window_system.h"
#include "player/player.h"
#include "player/player_host.h"
#include "state/globals.h"

namespace tamrin {

// What the program runs on.
struct Platform {
    WindowSystem& windows;
    Clock& clock;
    Files& files;
    const TextCodec& codec;
    Processes& processes;
    BrowserLauncher& launcher;
};

// How start-up dealt with the scenario of the command line.
enum class StartUp { kDone, kParameterError, kNoScenario };

// The main window. It lives as long as the program; its record list is the scenario.
class frmIeAuto : public PlayerHost, public BrowserEvents {
public:
    frmIeAuto(Globals& globals, const Platform& platform);
    ~frmIeAuto() override;
    frmIeAuto(const frmIeAuto&) = delete;
    frmIeAuto& operator=(const frmIeAuto&) = delete;

    // Starts the program: reads settings and the command line (without the program's name), loads
    // the scenario that it names and plays it. Returns when that is over.
    StartUp Form_Load(const std::string& command_line);

    // Closes the window unless the user cancels. True when it is closed.
    bool Close() { return form_->Close(); }

    // How the last run ended; kNothingToPlay before the first.
    RunEnd last_run() const { return last_run_; }
    // Whether a page could not be opened during it.
    bool page_failed() const { return page_failed_; }

    // Told of every record that a run leaves behind.
    std::function<void(const RecordReport&)> onRecordDone;

    void cmdPlay_Click();
    void cmdStop_Click();
    void mnuSave_Click();
    void mnuSaveAs_Click();
    void Timer1_Timer();

    // PlayerHost
    int RecordCount() override { return controls_.lstDtList.Count(); }
    std::string_view Record(int row) override { return controls_.lstDtList.Line(row); }
    void SelectRecord(int row) override { controls_.lstDtList.SetListIndex(row); }
    int GetRepeat() override;
    void SetMode(std::string_view mode, bool on) override;
    void SetStatus(const std::string& text) override { controls_.txtStatus.SetText(text); }
    void ShowMessage(const std::string& text, const std::string& title) override;
    std::string ClipboardText() override { return platform_.windows.ClipboardText(); }
    void HoldBrowser(std::shared_ptr<Browser> browser) override;
    bool WindowVisible() override { return form_->Visible(); }
    void SetWindowVisible(bool visible) override { form_->SetVisible(visible); }
    Rect WindowRect() override;
    void EnterTray() override;
    void LeaveTray() override;
    void CloseWindow() override { form_->Close(); }
    void RecordDone(const RecordReport& report) override;

    // BrowserEvents
    void DocumentComplete(bool top) override;
    void BeforeNavigate2(const std::string& url) override;
    void NavigateError(const std::string& url, const std::string& reason) override;
    void OnQuit() override;

private:
    // start_up.cpp
    void ApplyConf();
    StartUp ProcessCommandLine(std::string command_line);
    StartUp LoadFromSwitch(const Switch& item);
    void StreamFromSwitch(const Switch& item);

    // scenario_commands.cpp
    bool LoadScenario(const std::string& path);
    bool SaveScenario(const std::string& path);
    // Answers whether what was asked for may go on; false only when the user cancels, or wanted to
    // save and that failed.
    bool PromptSaveChanges();

    void BindEvents();
    void MyTitle(std::string_view file_name);
    void lstCsv_MouseDown();
    void optDisp_Click(int index);

    Globals& globals_;
    Platform platform_;
    std::unique_ptr<Form> form_;
    MainControls controls_;
    Player player_;
    bool playing_ = false;
    bool closed_ = false;
    bool timed_out_ = false;  // by the watchdog
    RunEnd last_run_ = RunEnd::kNothingToPlay;
    bool page_failed_ = false;

    std::shared_ptr<Browser> target_ie_;
    std::unique_ptr<Connection> event_ie_;
};

}  // namespace tamrin
