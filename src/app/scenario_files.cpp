#include "app/scenario_files.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "app/paths.h"
#include "app/settings_file.h"
#include "scenario/scenario_text.h"

namespace tamrin {
namespace {

// Far more than anybody records, in bytes. The list takes up to 32 bytes for each.
constexpr std::size_t kMaxScenarioSize = std::size_t{32} << 20U;

// The label lacks the full stop before "tamrin"; users know it like this.
const FileDialog kSavePrompt{"", "CSVファイル(*.csv;*tamrin)", "*.csv;*.tamrin", ""};

constexpr std::string_view kZone = "ZoneId=";
constexpr std::string_view kInternet = "3";  // 4 are the restricted sites
constexpr const char* kFromInternet =
    "\r\nはインターネットから取得したファイルです。\r\n"
    "シナリオは、この PC のファイルを読んで送ることも、キーを送ることもできます。\r\n"
    "作った人を信頼できるときだけ再生してください。\r\n"
    "再生しますか？";

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

ScenarioFiles::Contents ScenarioFiles::ContentsOf(std::string_view bytes) {
    return {bytes.size(), std::hash<std::string_view>{}(bytes)};
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
    const auto now = platform_.files.Read(globals_.current_file);
    return now && ContentsOf(*now) != *known_;
}

std::string ScenarioFiles::SaveFolder() const {
    const Files& files = platform_.files;
    const std::string folder =
        ResolvePath(StripQuotes(globals_.settings.save_folder_path), files.ProgramFolder(), files);
    return folder.empty() ? files.ProgramFolder() : folder;
}

void ScenarioFiles::SetFile(const std::string& path) {
    globals_.current_file = path;
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
    const auto bytes = platform_.files.Read(path);
    if (!bytes || bytes->size() > kMaxScenarioSize) {
        Show(path + "\r\nのファイルを読み込めません。", "読込エラー");
        return false;
    }
    // No text has characters of code 0; pictures, programs and other encodings do.
    if (bytes->find('\0') != std::string::npos) {
        Show(path + "\r\nはシナリオファイルではありません。", "読込エラー");
        return false;
    }
    std::vector<std::string> lines = ReadScenarioText(*bytes, platform_.codec);
    damaged_ = std::ranges::any_of(lines, [](const std::string& line) {
        return line.find("\xEF\xBF\xBD") != std::string::npos;  // U+FFFD
    });
    records_.Load(std::move(lines));
    known_ = ContentsOf(*bytes);
    SetFile(path);
    controls_.txtStatus.SetText(damaged_ ? "読めない文字を「�」に置き換えました" : "");
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
    known_.reset();
    damaged_ = false;
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
    const std::string bytes =
        WriteScenarioText(records_.Lines(), platform_.codec, globals_.settings.cipher);
    if (!files.Replace(path, bytes)) {
        Show(SaveError(path, files), "保存エラー");
        return false;
    }
    if (files.Read(path) != bytes) {
        Show(path + "\r\nに保存した内容を読み直せません。別の場所に保存してください。",
             "保存エラー");
        return false;
    }
    records_.MarkSaved();
    known_ = ContentsOf(bytes);
    damaged_ = false;
    controls_.txtStatus.SetText("保存完了");
    return true;
}

bool ScenarioFiles::MayPlay() {
    Files& files = platform_.files;
    // Windows marks such a file by a stream of it. Other systems have no streams.
    if (!HasFile() || globals_.current_file == trusted_ || files.Separator() != '\\') return true;
    const std::string mark = globals_.current_file + ":Zone.Identifier";
    const std::string zone = files.Read(mark).value_or("");
    const auto at = zone.find(kZone);
    if (at == std::string::npos || zone.substr(at + kZone.size(), 1) < kInternet) return true;
    const Answer answer = platform_.windows.dialogs().MsgBox(
        globals_.current_file + kFromInternet, "再生の確認", Buttons::kOkCancel, true);
    if (answer != Answer::kOk) return false;
    trusted_ = globals_.current_file;
    files.Delete(mark);
    return true;
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
