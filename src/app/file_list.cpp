#include "app/file_list.h"

#include "app/paths.h"
#include "app/settings_file.h"
#include "recorder/recovery_file.h"
#include "scenario/scenario_file.h"

namespace tamrin {
namespace {

std::string RecentEntry(std::size_t place) { return "mnuRecent" + std::to_string(place + 1); }

// A path as a menu shows it, where a single "&" would underline the letter behind it.
std::string RecentCaption(std::size_t place, const std::string& path) {
    std::string caption = "&" + std::to_string(place + 1) + " ";
    for (const char c : path) {
        if (c == '&') caption += '&';
        caption += c;
    }
    return caption;
}

}  // namespace

FileList::FileList(Globals& globals, const Platform& platform, Form& form, MainControls& controls,
                   ScenarioFiles& scenario)
    : globals_(globals),
      platform_(platform),
      form_(form),
      list_(controls.lstCsv),
      scenario_(scenario) {
    list_.onClick = [this] { lstCsv_Click(); };
    list_.onDblClick = [this] { lstCsv_DblClick(); };
    list_.onContext = [this] { lstCsv_MouseDown(); };
    for (std::size_t i = 0; i < kMaxRecentFiles; ++i) {
        form_.Find(RecentEntry(i)).onClick = [this, i] { OpenRecent(i); };
    }
}

std::string FileList::PathOf(int position) const {
    return scenario_.SaveFolder() + platform_.files.Separator() + std::string(list_.Line(position));
}

void FileList::SelectOpenFile() {
    int open = -1;
    for (int i = 0; i < list_.Count() && open < 0; ++i) {
        if (PathOf(i) == globals_.current_file) open = i;
    }
    selecting_ = true;
    list_.SetListIndex(open);
    selecting_ = false;
}

void FileList::RefreshFileList() {
    const Files& files = platform_.files;
    std::vector<std::string> names = ListScenarioFiles(files, scenario_.SaveFolder());
    std::erase_if(names, [&](const std::string& name) {
        return RecoveryFile::IsOne(scenario_.SaveFolder() + files.Separator() + name, files);
    });
    list_.SetLines(std::move(names));
    SelectOpenFile();
}

void FileList::lstCsv_Click() {
    if (selecting_ || list_.ListIndex() < 0) return;
    if (globals_.activity.empty() && PathOf(list_.ListIndex()) == globals_.current_file) return;
    if (!scenario_.Idle()) return;
    if (!scenario_.Open(PathOf(list_.ListIndex()))) SelectOpenFile();
}

// The first click of the two has opened the file already. The double click reads the open file
// again when another program has changed it.
void FileList::lstCsv_DblClick() {
    if (list_.ListIndex() < 0 || !scenario_.Idle()) return;
    const std::string path = PathOf(list_.ListIndex());
    if (path != globals_.current_file) {
        scenario_.Open(path);
        return;
    }
    if (!scenario_.ChangedOutside()) return;
    const Answer answer = platform_.windows.dialogs().MsgBox(
        path + "\r\nはほかのプログラムで変更されています。読み込み直しますか？", "読込の確認",
        Buttons::kOkCancel, true);
    if (answer == Answer::kOk) scenario_.Open(path);
}

void FileList::lstCsv_MouseDown() {
    if (scenario_.Idle()) form_.PopUp("mnuListEdit");
}

void FileList::mnuListDelFile_Click() {
    const int position = list_.ListIndex();
    if (position < 0 || !scenario_.Idle()) return;
    const std::string path = PathOf(position);
    const std::string name(list_.Line(position));
    Dialogs& dialogs = platform_.windows.dialogs();
    const Answer answer = dialogs.MsgBox("下記のファイルを削除してよろしいですか？\r\n\r\n" + path,
                                         "ファイル削除", Buttons::kOkCancel, true);
    if (answer != Answer::kOk) return;
    if (!DeleteScenarioFile(platform_.files, platform_.clock, path)) {
        dialogs.MsgBox(path +
                           "\r\nを削除できません。ほかのプログラムが使っているか、"
                           "書き込みが禁止されています。",
                       "ファイル削除");
        return;
    }
    // Deleting waits for a file in use; the list may have been refreshed meanwhile.
    if (list_.Line(position) == name) list_.Remove(position);
}

void FileList::mnuOpenFolder_Click() {
    if (!scenario_.Idle()) return;
    const std::string folder =
        platform_.windows.dialogs().OpenFolder("フォルダを開く", scenario_.SaveFolder());
    if (folder.empty()) return;
    const Files& files = platform_.files;
    globals_.settings.save_folder_path = RelativePath(folder, files.ProgramFolder(), files);
    RefreshFileList();
}

void FileList::ShowRecentFiles() {
    const auto& paths = globals_.options.recent_files;
    for (std::size_t i = 0; i < kMaxRecentFiles; ++i) {
        Control& entry = form_.Find(RecentEntry(i));
        entry.SetVisible(i < paths.size());
        if (i < paths.size()) entry.SetText(RecentCaption(i, paths[i]));
    }
    form_.Find("mnuFileSpc3").SetVisible(!paths.empty());
}

void FileList::OpenRecent(std::size_t place) {
    auto& paths = globals_.options.recent_files;
    if (place >= paths.size()) return;
    const std::string path = paths[place];
    if (!platform_.files.IsFile(path)) {
        platform_.windows.dialogs().MsgBox(path + "\r\nのファイルが存在しません。", "読込エラー");
        std::erase(paths, path);
        ShowRecentFiles();
        return;
    }
    scenario_.Open(path);
}

}  // namespace tamrin
