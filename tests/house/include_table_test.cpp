#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace tamrin {
namespace {

namespace fs = std::filesystem;

// A room of src/ and what its files may include besides the room's own headers and those of the
// standard library: rooms, and libraries by how their headers' paths begin. A file belongs to the
// first room that its path begins with.
struct Room {
    std::string name;
    std::vector<std::string> may_include;
    bool system = false;  // may use the operating system, its headers, sleeping and clocks
};

const std::vector<Room> kRooms = {
    {"platform/headless/", {"platform/"}},
    {"platform/chromium/", {"platform/", "boost/asio/", "boost/beast/", "nlohmann/"}},
    {"platform/posix/", {"platform/"}, true},
    {"platform/windows/", {"platform/"}, true},
    {"platform/explorer/", {"platform/"}, true},
    {"platform/", {}},
    {"state/", {}},
    {"scenario/", {"platform/", "boost/crc.hpp", "boost/endian/"}},
    {"browser/", {"state/", "platform/"}},
    {"player/", {"scenario/", "browser/", "state/", "platform/"}},
    {"recorder/", {"scenario/", "browser/", "state/", "platform/"}},
    {"app/", {"player/", "recorder/", "scenario/", "browser/", "state/", "platform/"}},
};

const Room* RoomOf(const std::string& path) {
    const auto holds = [&](const Room& room) { return path.starts_with(room.name); };
    const auto room = std::ranges::find_if(kRooms, holds);
    return room == kRooms.end() ? nullptr : &*room;
}

// Why `line` of the file at `path` below src/ may not be there; "" when it may.
std::string Fault(const std::string& path, const std::string& line) {
    static const std::vector<std::string> kSystem{
        "_WIN32",        "_WIN64",         "__linux__",      "sleep",
        "::Sleep",       "::system_clock", "::steady_clock", "::high_resolution_clock",
        "clock_gettime", "gettimeofday",   "GetTickCount",   "<ctime>"};
    const Room* const room = RoomOf(path);
    if (!room) return "the file is in no room of the table";
    std::string code = line;
    std::erase(code, ' ');
    if (code.starts_with("#include")) {
        const std::string header = code.substr(9, code.find_first_of("\">", 9) - 9);
        const bool standard = header.find_first_of("./") == header.npos;
        const Room* const other = RoomOf(header);
        const auto holds = [&](const std::string& listed) {
            return other ? other->name == listed : header.starts_with(listed);
        };
        // The entry files put the programs together and may include every room.
        const bool allowed =
            other == room || std::ranges::any_of(room->may_include, holds) ||
            (other ? path.starts_with("app/main_") : code[8] == '<' && (standard || room->system));
        if (!allowed) return "not allowed: " + header;
    }
    const auto named = [&](const std::string& word) { return line.find(word) != line.npos; };
    const bool allowed = room->system || std::ranges::none_of(kSystem, named);
    return allowed ? "" : "an operating system, sleeping or a clock outside the rooms for them";
}

TEST(IncludeTable, HoldsForEveryLineOfTheSource) {
    const fs::path src = fs::path(TAMRIN_SOURCE_DIR) / "src";
    int files = 0;
    // The linker takes one of two types of the same name for both.
    std::map<std::string, std::string> types;
    const std::regex type("^(?:class|struct) (\\w+)[^;]*\\{.*");
    for (const auto& entry : fs::recursive_directory_iterator(src)) {
        const std::string path = entry.path().lexically_relative(src).generic_string();
        if (!path.ends_with(".cpp") && !path.ends_with(".h")) continue;
        ++files;
        std::ifstream stream(entry.path());
        for (std::string line; std::getline(stream, line);) {
            EXPECT_EQ("", Fault(path, line.substr(0, line.find("//")))) << path << ": " << line;
            std::smatch name;
            if (!path.ends_with(".h") || !std::regex_match(line, name, type)) continue;
            EXPECT_EQ(types.try_emplace(name[1], path).first->second, path) << name[1];
        }
    }
    EXPECT_GT(files, 100);
}

}  // namespace
}  // namespace tamrin
