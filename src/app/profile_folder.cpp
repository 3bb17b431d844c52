#include "app/profile_folder.h"

namespace tamrin {

std::string ProfileFolder(const Processes& processes, const Files& files) {
    const struct {
        const char* variable;
        const char* below;
    } places[] = {
        {"LOCALAPPDATA", "\\TamrinBrowser"},
        {"HOME", "/.tamrin-browser"},
    };
    for (const auto& place : places) {
        const std::string folder = processes.Environment(place.variable);
        if (!folder.empty()) return folder + place.below;
    }
    return files.ProgramFolder() + files.Separator() + "TamrinBrowser";
}

}  // namespace tamrin
