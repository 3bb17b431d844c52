#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/frm_ie_auto_form.h"
#include "app/frm_notice.h"
#include "app/platform.h"
#include "app/record_editor.h"
#include "app/tag_pane.h"
#include "recorder/attachment.h"
#include "recorder/recorder.h"
#include "recorder/recovery_file.h"
#include "state/globals.h"

namespace tamrin {

// The commands that record, and what belongs to them: the attached browser, the tag list and the
// file that keeps a recording safe.
class RecordCommands : private RecorderHost {
public:
    RecordCommands(Globals& globals, const Platform& platform, Form& form, MainControls& controls,
                   RecordEditor& records);

    // Told the mode that the controls are to show.
    std::function<void(std::string_view mode)> onMode;
    // Told when a recording has been stopped.
    std::function<void()> onStopped;

    void cmdRec_Click();
    // Opens a browser window that can be recorded.
    void mnuRecBrowser_Click();

    // Records what happens in a window, without a question. `recovery` is the file that keeps the
    // lines until they are saved.
    void Start(const std::shared_ptr<Browser>& browser, RecordKind kind,
               const std::string& recovery);

    // Ends the recording when what the user has done until now is recorded. False when that is not
    // over yet; onStopped then tells when it is.
    bool Stop();

    // The window that is recorded, or else attached; null when there is none.
    std::shared_ptr<Browser> Page() const;

    // Adds a record of the page of a window to the list.
    void AddRecord(Browser& browser, const std::string& record) {
        tags_.AddRecord(browser, record);
    }

    // Whether the recorded window is still open.
    bool BrowserOpen() const { return recorder_.browser() != nullptr; }

    // The one-second poll.
    void Poll();

    // Asks whether the recording that an earlier run left behind is to be restored.
    void OfferRecovery();
    // The recording is saved or given up.
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
    void ExplainBrowsers();
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
    std::optional<frmNotice> notice_;
    bool starting_ = false;
    bool stopping_ = false;
    // Said once while the program runs.
    bool explained_ = false;
    bool told_of_password_ = false;
};

}  // namespace tamrin
