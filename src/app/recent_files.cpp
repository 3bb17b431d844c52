#include "app/recent_files.h"

#include "app/options_file.h"

namespace tamrin {
namespace {

std::string EntryName(std::size_t place) { return "mnuRecent" + std::to_string(place + 1); }

// A path as a menu shows it, where a single "&" would underline the letter behind.
std::string CaptionOf(std::size_t place, const std::string& path) {
    std::string caption = "&" + std::to_string(place + 1) + " ";
    for (const char c : path) {
        if (c == '&') caption += '&';
        caption += c;
    }
    return caption;
}

}  // namespace

RecentFiles::RecentFiles(Globals& globals, const Platform& platform, Form& form,
                         ScenarioFiles& scenario)
    : globals_(globals), platform_(platform), form_(form), scenario_(scenario) {
    for (std::size_t i = 0; i < kMostRecentFiles; ++i) {
        form_.Find(EntryName(i)).onClick = [this, i] { Open(i); };
    }
}

void RecentFiles::Show() {
    const auto& paths = globals_.options.recent_files;
    for (std::size_t i = 0; i < kMostRecentFiles; ++i) {
        Control& entry = form_.Find(EntryName(i));
        entry.SetVisible(i < paths.size());
        if (i < paths.size()) entry.SetText(CaptionOf(i, paths[i]));
    }
    form_.Find("mnuFileSpc3").SetVisible(!paths.empty());
}

void RecentFiles::Open(std::size_t place) {
    auto& paths = globals_.options.recent_files;
    if (place >= paths.size()) return;
    const std::string path = paths[place];
    if (!platform_.files.IsFile(path)) {
        platform_.windows.dialogs().MsgBox(path + "\r\nのファイルが存在しません。", "読込エラー");
        std::erase(paths, path);
        Show();
        return;
    }
    scenario_.Open(path);
}

}  // namespace tamrin
