#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace tamrin {
namespace {

namespace fs = std::filesystem;

// A room of src/ and what its files may include besides the room's own headers and those of the
// standard library. A file belongs to the room with the longest name that its path begins with.
struct Room {
    std::string name;
    std::vector<std::string> rooms;
    std::vector<std::string> libraries = {};  // how their headers' paths begin
    bool system = false;  // may use the operating system, its headers, sleeping and clocks
};

const std::vector<Room> kRooms = {
    {"platform", {}},
    {"platform/headless", {"platform"}},
    {"platform/chromium", {"platform"}, {"boost/asio/", "boost/beast/", "nlohmann/"}},
    {"platform/posix", {"platform"}, {}, true},
    {"platform/windows", {"platform"}, {}, true},
    {"platform/explorer", {"platform"}, {}, true},
    {"state", {}},
    {"scenario", {"platform"}, {"boost/crc.hpp", "boost/endian/"}},
    {"browser", {"state", "platform"}},
    {"player", {"scenario", "browser", "state", "platform"}},
    {"recorder", {"scenario", "browser", "state", "platform"}},
    {"app", {"player", "recorder", "scenario", "browser", "state", "platform"}},
};

// The entry files put the programs together and may include every room.
constexpr const char* kEntryFiles = "app/main_";

const Room* RoomOf(const std::string& path) {
    const Room* room = nullptr;
    for (const Room& each : kRooms) {
        const bool longer = !room || each.name.size() > room->name.size();
        if (longer && path.starts_with(each.name + "/")) room = &each;
    }
    return room;
}

bool NamesSystem(const std::string& line) {
    std::istringstream words(
        "_WIN32 _WIN64 __linux__ sleep_for sleep_until usleep nanosleep ::Sleep system_clock "
        "steady_clock high_resolution_clock clock_gettime gettimeofday GetTickCount <ctime>");
    for (std::string word; words >> word;) {
        if (line.find(word) != line.npos) return true;
    }
    return false;
}

// Why `line` of the file at `path` below src/ may not be there; "" when it may.
std::string Fault(const std::string& path, const std::string& line) {
    const Room* const room = RoomOf(path);
    if (!room) return "the file is in no room of the table";
    std::string code = line;
    std::erase(code, ' ');
    if (code.starts_with("#include")) {
        const std::string header = code.substr(9, code.find_first_of("\">", 9) - 9);
        if (code[8] == '"') {
            const Room* const other = RoomOf(header);
            if (!other) return "include by the path below src/, from a room of the table";
            const bool allowed = other == room || std::ranges::count(room->rooms, other->name) > 0;
            return allowed || path.starts_with(kEntryFiles) ? "" : "not allowed: " + other->name;
        }
        const auto begins = [&](const std::string& library) { return header.starts_with(library); };
        const bool standard = header.find_first_of("./") == header.npos;
        if (!standard && !room->system && std::ranges::none_of(room->libraries, begins)) {
            return "not allowed: " + header;
        }
    }
    if (room->system || !NamesSystem(line)) return "";
    return "an operating system, sleeping or a clock outside the rooms for them";
}

TEST(IncludeTable, DistinguishesFaultsFromGoodCode) {
    const struct {
        const char* path;
        const char* line;
        bool good;
    } rows[] = {
        {"scenario/record.cpp", "#include \"platform/text.h\"", true},
        {"scenario/record.cpp", "  #  include \"app/modes.h\"", false},
        {"scenario/record.cpp", "#include <boost/crc.hpp>", true},
        {"player/player.cpp", "#include <boost/crc.hpp>", false},
        {"platform/chromium/launcher.cpp", "#include \"launcher.h\"", false},
        {"app/main_console.cpp", "#include \"platform/chromium/launcher.h\"", true},
        {"app/start_up.cpp", "#include <sys/stat.h>", false},
        {"platform/windows/clock.cpp", "#include <windows.h>", true},
        {"player/player.cpp", "clock_.Sleep(10);", true},
        {"player/player.cpp", "::Sleep(10);", false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.good, Fault(row.path, row.line).empty()) << row.path << ": " << row.line;
    }
}

TEST(IncludeTable, HoldsForEveryLineOfTheSource) {
    const fs::path src = fs::path(TAMRIN_SOURCE_DIR) / "src";
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(src)) {
        const fs::path extension = entry.path().extension();
        if (extension != ".cpp" && extension != ".h") continue;
        ++files;
        const std::string path = entry.path().lexically_relative(src).generic_string();
        std::ifstream stream(entry.path());
        std::string line;
        for (int number = 1; std::getline(stream, line); ++number) {
            const std::string fault = Fault(path, line.substr(0, line.find("//")));
            EXPECT_EQ("", fault) << "src/" << path << ":" << number << ": " << line;
        }
    }
    EXPECT_GT(files, 100);
}

}  // namespace
}  // namespace tamrin
