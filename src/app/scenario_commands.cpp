#include "app/frm_ie_auto.h"
#include "app/paths.h"
#include "scenario/scenario_file.h"

namespace tamrin {
namespace {

// The filter label has always been written so, without the full stop before "tamrin".
const FileDialog kSavePrompt{"", "CSVファイル(*.csv;*tamrin)", "*.csv;*.tamrin", ""};

}  // namespace

bool frmIeAuto::LoadScenario(const std::string& path) {
    auto lines = ReadScenarioFile(platform_.files, platform_.codec, path);
    if (!lines) {
        ShowMessage(path + "\r\nのファイルを読み込めません。", "読込エラー");
        return false;
    }
    controls_.lstDtList.SetLines(*std::move(lines));
    globals_.current_file = path;
    globals_.unsaved = false;
    controls_.txtUrl.SetText(path);
    MyTitle(path);
    return true;
}

bool frmIeAuto::SaveScenario(const std::string& path) {
    std::vector<std::string> lines;
    lines.reserve(static_cast<std::size_t>(controls_.lstDtList.Count()));
    for (int i = 0; i < controls_.lstDtList.Count(); ++i) {
        lines.emplace_back(controls_.lstDtList.Line(i));
    }
    if (!WriteScenarioFile(platform_.files, platform_.codec, path, lines,
                           globals_.settings.cipher)) {
        ShowMessage(path + "\r\nに保存できません。元のファイルはそのままです。", "保存エラー");
        return false;
    }
    globals_.unsaved = false;
    SetStatus("保存完了");
    return true;
}

bool frmIeAuto::PromptSaveChanges() {
    if (controls_.lstDtList.Count() == 0 || !globals_.unsaved) return true;
    const Answer answer = platform_.windows.dialogs().MsgBox(
        "未保存のデータがあります。保存しますか？", "Tamrin", Buttons::kYesNoCancel);
    if (answer == Answer::kCancel) return false;
    if (answer == Answer::kNo) {
        globals_.unsaved = false;
        return true;
    }
    const bool has_path = !globals_.current_file.empty() && globals_.current_file != "stream";
    const std::string path =
        has_path ? globals_.current_file : platform_.windows.dialogs().SaveFile(kSavePrompt);
    return path.empty() || SaveScenario(path);
}

void frmIeAuto::mnuSave_Click() {
    if (globals_.current_file.empty() || globals_.current_file == "stream") {
        mnuSaveAs_Click();
    } else {
        SaveScenario(globals_.current_file);
    }
}

void frmIeAuto::mnuSaveAs_Click() {
    const Files& files = platform_.files;
    std::string proposed = globals_.current_file;
    if (proposed.empty() || proposed == "stream") {
        const std::string folder = ResolvePath(StripQuotes(globals_.settings.save_folder_path),
                                               files.ProgramFolder(), files);
        proposed =
            (folder.empty() ? files.ProgramFolder() : folder) + files.Separator() + "無題.csv";
    }
    const std::string path = platform_.windows.dialogs().SaveFile(
        {"名前を付けて保存", "CSVファイル(*.csv)", "*.csv;*.tamrin", proposed});
    if (path.empty() || !SaveScenario(path)) return;
    globals_.current_file = path;
    MyTitle(path);
}

}  // namespace tamrin
