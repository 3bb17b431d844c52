#include "app/scenario_files.h"

#include <string_view>
#include <utility>

#include "app/paths.h"
#include "app/settings_file.h"
#include "scenario/scenario_file.h"

namespace tamrin {
namespace {

// The label lacks the full stop before "tamrin"; users know it like this.
const FileDialog kSavePrompt{"", "CSVファイル(*.csv;*tamrin)", "*.csv;*.tamrin", ""};

}  // namespace

std::string SaveError(const std::string& path, const Files& files) {
    const std::string folder = FolderOf(path, files);
    if (!folder.empty() && !files.IsFolder(folder)) {
        return folder + "\r\nのフォルダがありません。保存していません。";
    }
    return path +
           "\r\nに保存できません。元のファイルはそのままです。\r\n"
           "ディスクの空き、書き込みの禁止、ほかのプログラムの使用をお確かめください。";
}

std::optional<ScenarioFiles::Contents> ScenarioFiles::ContentsOf(const std::string& path) const {
    const auto bytes = platform_.files.Read(path);
    if (!bytes) return std::nullopt;
    return Contents{bytes->size(), std::hash<std::string_view>{}(*bytes)};
}

void ScenarioFiles::Show(const std::string& text, const std::string& title) {
    platform_.windows.dialogs().MsgBox(text, title);
}

bool ScenarioFiles::Idle() {
    if (globals_.activity.empty()) return true;
    Show("「停止」して下さい！", "実行中は不可");
    return false;
}

bool ScenarioFiles::HasFile() const {
    return !globals_.current_file.empty() && globals_.current_file != "stream";
}

bool ScenarioFiles::ChangedOutside() const {
    if (!HasFile() || !known_) return false;
    const auto now = ContentsOf(globals_.current_file);
    return now && *now != *known_;
}

std::string ScenarioFiles::SaveFolder() const {
    const Files& files = platform_.files;
    const std::string folder =
        ResolvePath(StripQuotes(globals_.settings.save_folder_path), files.ProgramFolder(), files);
    return folder.empty() ? files.ProgramFolder() : folder;
}

void ScenarioFiles::SetFile(const std::string& path) {
    globals_.current_file = path;
    known_ = path.empty() ? std::nullopt : ContentsOf(path);
    damaged_ = false;
    controls_.txtUrl.SetText(path);
    if (!path.empty()) {
        auto& recent = globals_.options.recent_files;
        std::erase(recent, path);
        recent.insert(recent.begin(), path);
        if (recent.size() > kMaxRecentFiles) recent.pop_back();
    }
    if (onOpened) onOpened();
}

bool ScenarioFiles::LoadScenario(const std::string& path) {
    auto lines = ReadScenarioFile(platform_.files, platform_.codec, path);
    if (!lines) {
        Show(path + "\r\nのファイルを読み込めません。", "読込エラー");
        return false;
    }
    bool damaged = false;
    for (const std::string& line : *lines) {
        // No text has characters of code 0; pictures, programs and other encodings do.
        if (line.find('\0') != std::string::npos) {
            Show(path + "\r\nはシナリオファイルではありません。", "読込エラー");
            return false;
        }
        damaged |= line.find("\xEF\xBF\xBD") != std::string::npos;  // U+FFFD
    }
    records_.Load(*std::move(lines));
    SetFile(path);
    damaged_ = damaged;
    controls_.txtStatus.SetText(damaged ? "読めない文字を「�」に置き換えました" : "");
    return true;
}

bool ScenarioFiles::Open(const std::string& path) {
    if (!Idle() || !PromptSaveChanges(Before::kOpening)) return false;
    globals_.activity = "loading";
    const bool loaded = LoadScenario(path);
    globals_.activity.clear();
    return loaded;
}

void ScenarioFiles::mnuNew_Click() {
    if (!Idle() || !PromptSaveChanges(Before::kOpening)) return;
    records_.Load({});
    SetFile("");
    controls_.txtStatus.SetText("");
}

void ScenarioFiles::mnuOpen_Click() {
    if (!Idle()) return;
    const std::string path =
        platform_.windows.dialogs().OpenFile({"開く", "シナリオ(*.csv;*.tamrin)", "*.csv;*.tamrin",
                                              SaveFolder() + platform_.files.Separator()});
    if (!path.empty()) Open(path);
}

bool ScenarioFiles::MayOverwrite(const std::string& path) {
    const char* why = nullptr;
    if (damaged_) why = "\r\nには読めない文字がありました。上書きすると元の文字は失われます。";
    if (ChangedOutside()) why = "\r\nはほかのプログラムで変更されています。";
    if (path != globals_.current_file || !why) return true;
    return platform_.windows.dialogs().MsgBox(path + why + "上書きしますか？", "上書きの確認",
                                              Buttons::kOkCancel, true) == Answer::kOk;
}

bool ScenarioFiles::WriteScenarioFile(const std::string& path) {
    if (!MayOverwrite(path)) return false;
    Files& files = platform_.files;
    if (tamrin::WriteScenarioFile(files, platform_.codec, path, records_.Lines(),
                                  globals_.settings.cipher)) {
        records_.MarkSaved();
        if (path == globals_.current_file) known_ = ContentsOf(path);
        damaged_ = false;
        controls_.txtStatus.SetText("保存完了");
        return true;
    }
    Show(SaveError(path, files), "保存エラー");
    return false;
}

bool ScenarioFiles::PromptSaveChanges(Before before) {
    if (controls_.lstDtList.Count() == 0 || !globals_.unsaved) return true;
    const Answer answer = platform_.windows.dialogs().MsgBox(
        "未保存のデータがあります。保存しますか？", "Tamrin", Buttons::kYesNoCancel);
    if (answer == Answer::kNo) {
        globals_.unsaved = false;
        return true;
    }
    if (answer != Answer::kYes) return false;
    if (HasFile()) return WriteScenarioFile(globals_.current_file);
    const std::string path = platform_.windows.dialogs().SaveFile(kSavePrompt);
    if (path.empty()) return before == Before::kClosing;
    if (!WriteScenarioFile(path)) return false;
    if (onSavedAs) onSavedAs();
    return true;
}

void ScenarioFiles::mnuSave_Click() {
    if (HasFile()) {
        WriteScenarioFile(globals_.current_file);
    } else {
        mnuSaveAs_Click();
    }
}

void ScenarioFiles::mnuSaveAs_Click() {
    Files& files = platform_.files;
    const std::string proposed =
        HasFile() ? globals_.current_file : SaveFolder() + files.Separator() + "無題.csv";
    const std::string path = platform_.windows.dialogs().SaveFile(
        {"名前を付けて保存", "CSVファイル(*.csv)", "*.csv;*.tamrin", proposed});
    if (path.empty() || !WriteScenarioFile(path)) return;
    globals_.settings.save_folder_path =
        RelativePath(FolderOf(path, files), files.ProgramFolder(), files);
    SetFile(path);
    if (onSavedAs) onSavedAs();
}

}  // namespace tamrin
