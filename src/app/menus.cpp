#include "app/frm_about.h"
#include "app/frm_ie_auto.h"
#include "app/frm_input.h"
#include "app/frm_setting.h"
#include "app/frm_tools.h"

namespace tamrin {

void frmIeAuto::BindMenus() {
    const auto bind = [this](std::string_view name, std::function<void()> handler) {
        form_->Find(name).onClick = std::move(handler);
    };
    bind("mnuNew", [this] { scenario_.mnuNew_Click(); });
    bind("mnuOpen", [this] { scenario_.mnuOpen_Click(); });
    bind("mnuOpenFolder", [this] { file_list_.mnuOpenFolder_Click(); });
    bind("mnuSave", [this] { scenario_.mnuSave_Click(); });
    bind("mnuSaveAs", [this] { scenario_.mnuSaveAs_Click(); });
    bind("mnuMakeExe", [this] { player_maker_.mnuMakeExe_Click(); });
    bind("mnuClose", [this] { form_->Close(); });

    bind("mnuUndo", [this] { records_.mnuUndo_Click(); });
    bind("mnuRedo", [this] { records_.mnuRedo_Click(); });
    bind("mnuCopy", [this] { records_.mnuContextCopy_Click(); });
    bind("mnuPaste", [this] { records_.mnuContextPaste_Click(); });
    bind("mnuSelectAll", [this] { records_.mnuSelectAll_Click(); });
    bind("mnuEditRecord", [this] { edit_.mnuEdit_Click(); });
    bind("mnuEditLine", [this] { edit_.mnuEditLine_Click(); });
    bind("mnuEditAll", [this] { edit_.mnuEditAll_Click(); });
    // The key works on the list that has the focus.
    bind("mnuDelete", [this] {
        if (controls_.lstCsv.Focused()) {
            file_list_.mnuListDelFile_Click();
        } else {
            records_.mnuDelLine_Click();
        }
    });

    bind("mnuRec", [this] { recording_.cmdRec_Click(); });
    bind("mnuRecBrowser", [this] { recording_.mnuRecBrowser_Click(); });
    bind("mnuTools", [this] { mnuTools_Click(); });
    bind("mnuPlay", [this] { cmdPlay_Click(); });
    bind("mnuStop", [this] { cmdStop_Click(); });

    bind("mnuRepeat", [this] { mnuRepeat_Click(); });
    bind("mnuSetting", [this] { mnuSetting_Click(); });
    bind("mnuManual", [this] { mnuManual_Click(); });
    bind("mnuAbout",
         [this] { frmAbout(platform_.windows, globals_.version_text).ShowModal(*form_); });

    bind("mnuEdit", [this] { edit_.mnuEdit_Click(); });
    bind("mnuAddUpper", [this] { records_.mnuAddUpper_Click(); });
    bind("mnuAddUnder", [this] { records_.mnuAddUnder_Click(); });
    bind("mnuDelLine", [this] { records_.mnuDelLine_Click(); });
    bind("mnuContextCopy", [this] { records_.mnuContextCopy_Click(); });
    bind("mnuContextPaste", [this] { records_.mnuContextPaste_Click(); });

    bind("mnuListOpen", [this] { controls_.lstCsv.onDblClick(); });
    bind("mnuListRefresh", [this] { file_list_.RefreshFileList(); });
    bind("mnuListDelFile", [this] { file_list_.mnuListDelFile_Click(); });
}

void frmIeAuto::mnuRepeat_Click() {
    const auto count = frmInput(platform_.windows).Ask(globals_.settings.play_count, *form_);
    if (!count) return;
    globals_.settings.play_count = *count;
    display_.Apply();
}

void frmIeAuto::mnuTools_Click() {
    if (tools_ && !tools_->closed()) {
        tools_->Activate();
    } else {
        tools_ = std::make_unique<frmTools>(globals_, platform_, *form_, recording_);
    }
}

void frmIeAuto::mnuSetting_Click() {
    frmSetting(globals_, platform_).ShowModal(*form_);
    // All settings may be the default ones now.
    display_.Apply();
    file_list_.RefreshFileList();
}

void frmIeAuto::mnuManual_Click() {
    const Files& files = platform_.files;
    const std::string path = files.ProgramFolder() + files.Separator() + "manual.ja.html";
    if (!files.IsFile(path)) {
        ShowMessage(path +
                        "\r\nの使い方のファイルがありません。\r\n"
                        "プログラムと一緒に配られている manual.ja.html と images フォルダを、"
                        "プログラムと同じフォルダに置いて下さい。",
                    "使い方");
    } else if (!platform_.windows.ShellOpen(path)) {
        ShowMessage(path + "\r\nの使い方のファイルをブラウザーで開けません。", "使い方");
    }
}

}  // namespace tamrin
