#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace tamrin {
namespace {

namespace fs = std::filesystem;

// The rooms of src/, and which rooms' headers each may include besides its own. A file belongs to
// the room with the longest name that its path begins with.
struct Room {
    std::string_view name;
    std::vector<std::string_view> may_include;
};

const std::vector<Room> kRooms = {
    {"platform", {}},
    {"platform/headless", {"platform"}},
    {"platform/posix", {"platform"}},
    {"platform/chromium", {"platform"}},
    {"platform/windows", {"platform"}},
    {"platform/explorer", {"platform"}},
    {"state", {}},
    {"scenario", {"platform"}},
    {"browser", {"state", "platform"}},
    {"player", {"scenario", "browser", "state", "platform"}},
    {"recorder", {"scenario", "browser", "state", "platform"}},
    {"app", {"player", "recorder", "scenario", "browser", "state", "platform"}},
};

// The programs' entry files put the parts together and may include every room.
constexpr std::string_view kEntryFiles = "app/main_";

// What only the rooms of an operating system may touch. Elsewhere time is handed in, so that tests
// can stand in for it.
const std::vector<std::string_view> kSystemRooms = {"platform/posix", "platform/windows",
                                                    "platform/explorer"};
constexpr struct {
    std::string_view word;
    const char* what;
} kSystemWords[] = {
    {"windows.h", "an operating system's header"},
    {"Windows.h", "an operating system's header"},
    {"unistd.h", "an operating system's header"},
    {"<sys/", "an operating system's header"},
    {"_WIN32", "the choice of an operating system"},
    {"_WIN64", "the choice of an operating system"},
    {"__linux__", "the choice of an operating system"},
    {"sleep_for", "sleeping"},
    {"sleep_until", "sleeping"},
    {"usleep", "sleeping"},
    {"nanosleep", "sleeping"},
    {"::Sleep", "sleeping"},
    {"system_clock", "a clock"},
    {"steady_clock", "a clock"},
    {"high_resolution_clock", "a clock"},
    {"clock_gettime", "a clock"},
    {"gettimeofday", "a clock"},
    {"GetTickCount", "a clock"},
    {"ctime", "a clock"},
    {"time.h", "a clock"},
};

struct Line {
    int number;
    std::string text;
};

// The lines of a source without their comments.
std::vector<Line> CodeLines(const fs::path& file) {
    std::vector<Line> lines;
    std::ifstream stream(file);
    std::string text;
    for (int number = 1; std::getline(stream, text); ++number) {
        if (const auto comment = text.find("//"); comment != std::string::npos) text.erase(comment);
        lines.push_back({number, text});
    }
    return lines;
}

const Room* RoomOf(std::string_view path) {
    const Room* room = nullptr;
    for (const Room& candidate : kRooms) {
        const bool within =
            path.starts_with(candidate.name) && path.substr(candidate.name.size()).starts_with('/');
        if (within && (!room || candidate.name.size() > room->name.size())) room = &candidate;
    }
    return room;
}

bool MayInclude(const Room& from, const Room& to) {
    return from.name == to.name || std::ranges::count(from.may_include, to.name) > 0;
}

// The file that `line` includes by the quoted form; "" when it is no such line.
std::string_view IncludedFile(std::string_view line) {
    const auto hash = line.find_first_not_of(" \t");
    if (hash == std::string_view::npos || line[hash] != '#') return {};
    const auto word = line.find("include", hash);
    const auto open = line.find('"', hash);
    if (word > open || open == std::string_view::npos) return {};
    return line.substr(open + 1, line.find('"', open + 1) - open - 1);
}

// Whether `word` stands in the line and is not just a part of a longer name.
bool HasWord(std::string_view line, std::string_view word) {
    const auto is_name = [](char c) {
        return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0;
    };
    for (auto at = line.find(word); at != std::string_view::npos; at = line.find(word, at + 1)) {
        const auto end = at + word.size();
        const bool begins = at == 0 || !is_name(line[at - 1]);
        const bool ends = end == line.size() || !is_name(word.back()) || !is_name(line[end]);
        if (begins && ends) return true;
    }
    return false;
}

// Why `line` of the file at `path` (below src/) may not stand there; "" when it may.
std::string Fault(std::string_view path, std::string_view line) {
    const Room* room = RoomOf(path);
    if (!room) return "the file is in no room of the table";
    if (const auto file = IncludedFile(line); !file.empty()) {
        const Room* other = RoomOf(file);
        if (!other) return "include by the path below src/, from a room of the table";
        if (!path.starts_with(kEntryFiles) && !MayInclude(*room, *other))
            return std::string(room->name) + " may not include " + std::string(other->name);
        return "";  // a file of this project may be named after a clock
    }
    if (std::ranges::count(kSystemRooms, room->name) > 0) return "";
    for (const auto& [word, what] : kSystemWords) {
        if (HasWord(line, word))
            return std::string(what) + " outside the rooms of an operating system";
    }
    return "";
}

TEST(IncludeTable, TellsAFaultFromGoodCode) {
    const struct {
        const char* path;
        const char* line;
        bool good;
    } rows[] = {
        {"scenario/record.cpp", "#include \"scenario/record.h\"", true},
        {"scenario/record.cpp", "#include \"platform/text.h\"", true},
        {"scenario/record.cpp", "#include \"browser/wait.h\"", false},
        {"scenario/record.cpp", "#include \"platform/posix/files.h\"", false},
        {"scenario/record.cpp", "  #  include \"app/modes.h\"", false},
        {"player/player.cpp", "#include \"recorder/session.h\"", false},
        {"recorder/session.cpp", "#include \"player/player.h\"", false},
        {"platform/text.cpp", "#include \"state/globals.h\"", false},
        {"platform/chromium/launcher.cpp", "#include \"platform/headless/form.h\"", false},
        {"platform/chromium/launcher.cpp", "#include \"launcher.h\"", false},
        {"app/main_console.cpp", "#include \"platform/chromium/launcher.h\"", true},
        {"app/start_up.cpp", "#include \"platform/chromium/launcher.h\"", false},
        {"platform/explorer/variant.cpp", "#include <windows.h>", true},
        {"platform/explorer/variant.cpp", "#include \"platform/windows/wide.h\"", false},
        {"attic/old.cpp", "", false},
        {"app/start_up.cpp", "#include <windows.h>", false},
        {"app/start_up.cpp", "#include <Windows.h>", false},
        {"app/start_up.cpp", "#include <sys/stat.h>", false},
        {"app/start_up.cpp", "#ifdef _WIN32", false},
        {"platform/windows/clock.cpp", "#include <windows.h>", true},
        {"player/player.cpp", "clock_.Sleep(10);", true},
        {"player/player.cpp", "::Sleep(10);", false},
        {"platform/headless/clock.cpp", "void VirtualClock::Sleep(int milliseconds) {", true},
        {"app/main_console.cpp", "std::this_thread::sleep_for(10ms);", false},
        {"app/main_console.cpp", "usleep(10);", false},
        {"platform/posix/clock.cpp", "nanosleep(&time, nullptr);", true},
        {"browser/wait.cpp", "const auto now = std::chrono::steady_clock::now();", false},
        {"browser/wait.cpp", "#include <ctime>", false},
        {"browser/wait.cpp", "const auto now = clock.TickCount();", true},
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
        for (const Line& line : CodeLines(entry.path())) {
            const std::string fault = Fault(path, line.text);
            EXPECT_EQ("", fault) << "src/" << path << ":" << line.number << ": " << line.text;
        }
    }
    EXPECT_GT(files, 10);
}

}  // namespace
}  // namespace tamrin
