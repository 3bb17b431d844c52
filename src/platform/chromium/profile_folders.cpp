#include "platform/chromium/profile_folders.h"

#include <algorithm>
#include <utility>

namespace tamrin {
namespace {

// Where a variable of the environment names the folder above.
struct Place {
    const char* variable;
    const char* folder;  // its parts separated by '/'
};
constexpr Place kPlaces[] = {
    {"LOCALAPPDATA", "Google/Chrome/User Data"},
    {"LOCALAPPDATA", "Google/Chrome Beta/User Data"},
    {"LOCALAPPDATA", "Microsoft/Edge/User Data"},
    {"LOCALAPPDATA", "Chromium/User Data"},
    {"XDG_CONFIG_HOME", "google-chrome"},
    {"XDG_CONFIG_HOME", "microsoft-edge"},
    {"XDG_CONFIG_HOME", "chromium"},
    {"HOME", ".config/google-chrome"},
    {"HOME", ".config/google-chrome-beta"},
    {"HOME", ".config/microsoft-edge"},
    {"HOME", ".config/chromium"},
    {"HOME", "snap/chromium/common/chromium"},
};

}  // namespace

std::vector<std::string> ProfileFolders(const Processes& processes, char separator) {
    std::vector<std::string> folders;
    for (const Place& place : kPlaces) {
        std::string folder = processes.Environment(place.variable);
        if (folder.empty()) continue;
        folder += '/';
        folder += place.folder;
        std::replace(folder.begin(), folder.end(), '/', separator);
        folders.push_back(std::move(folder));
    }
    return folders;
}

}  // namespace tamrin
