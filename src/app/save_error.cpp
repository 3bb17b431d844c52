#include "app/save_error.h"

#include "app/paths.h"

namespace tamrin {

std::string SaveError(const std::string& path, const Files& files) {
    const std::string folder = FolderOf(path, files);
    if (!folder.empty() && !files.IsFolder(folder)) {
        return folder + "\r\nのフォルダがありません。保存していません。";
    }
    return path +
           "\r\nに保存できません。元のファイルはそのままです。\r\n"
           "ディスクの空き、書き込みの禁止、ほかのプログラムの使用をお確かめください。";
}

}  // namespace tamrin
