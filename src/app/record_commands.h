#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "app/frm_ie_auto_form.h"
#include "app/platform.h"
#include "app/record_editor.h"
#include "app/tag_pane.h"
#include "recorder/attachment.h"
#include "recorder/recorder.h"
#include "recorder/recovery_file.h"
#include "state/globals.h"

namespace tamrin {

// The commands that record. They hold the attached browser, the tag list and the recovery file,
// which keeps a recording until it is saved.
class RecordCommands : private RecorderHost {
public:
    RecordCommands(Globals& globals, const Platform& platform, Form& form, MainControls& controls,
                   RecordEditor& records);

    // Called with the mode that the controls must show (frmIeAuto::SetMode).
    std::function<void(std::string_view mode)> onMode;
    // Called when a recording has been stopped.
    std::function<void()> onStopped;

    void cmdRec_Click();
    // Opens a browser window that can be recorded.
    void mnuRecBrowser_Click();

    // Records what happens in a window, without asking the user. `recovery` is the path of the
    // recovery file.
    void Start(const std::shared_ptr<Browser>& browser, RecordKind kind,
               const std::string& recovery);

    // Ends the recording. Events that are still being recorded go first: then it answers false and
    // calls onStopped later.
    bool Stop();

    // The window that is recorded; when nothing is recorded, the attached one. Null when there is
    // none.
    std::shared_ptr<Browser> Page() const;

    // Adds a record of the page of a window to the list.
    void AddRecord(Browser& browser, const std::string& record) {
        tags_.AddRecord(browser, record);
    }

    // Whether the recorded window is still open.
    bool BrowserOpen() const { return recorder_.browser() != nullptr; }

    // The one-second poll.
    void Poll();

    // Asks whether to restore the recording that an earlier run of the program could not save.
    void OfferRecovery();
    // Removes the recovery file: the recording is saved or given up.
    void ForgetRecovery() { recovery_.Remove(); }

private:
    // RecorderHost
    int RecordCount() override { return controls_.lstDtList.Count(); }
    std::string_view Record(int row) override { return controls_.lstDtList.Line(row); }
    void AppendRecord(const std::string& line) override;
    void SelectRecord(int row) override { controls_.lstDtList.SetListIndex(row); }
    void SetStatus(const std::string& text) override { controls_.txtStatus.SetText(text); }
    void ShowMessage(const std::string& text, const std::string& title) override;
    void ShowNotice(const std::string& text) override;
    void PageShown() override { tags_.Outdate(); }
    void BrowserClosed() override;

    void Begin();
    bool Attached() const;
    bool WaitForBrowser();
    void AskForPage();
    void TellOfPassword();

    Globals& globals_;
    Platform platform_;
    Form& form_;
    MainControls& controls_;
    RecordEditor& records_;
    Attachment attachment_;
    Recorder recorder_;
    RecoveryFile recovery_;
    TagPane tags_;
    std::unique_ptr<Form> notice_;
    bool starting_ = false;
    bool stopping_ = false;
    bool told_of_password_ = false;  // once in each run of the program
};

}  // namespace tamrin
