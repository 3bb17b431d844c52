#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace tamrin {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

std::string ReadAll(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The built page: the one of this build, or one that was unpacked from a release.
fs::path PagePath() {
    const char* const path = std::getenv("TAMRIN_MANUAL");
    return path ? path : TAMRIN_MANUAL;
}

// The values of an attribute in a page.
Texts Values(const std::string& page, const std::string& attribute) {
    Texts values;
    const std::string begin = " " + attribute + "=\"";
    for (auto at = page.find(begin); at != page.npos; at = page.find(begin, at)) {
        at += begin.size();
        values.push_back(page.substr(at, page.find('"', at) - at));
    }
    return values;
}

TEST(Manual, LinksOnlyToItsOwnPlacesAndPictures) {
    const std::string page = ReadAll(PagePath());
    ASSERT_FALSE(page.empty()) << PagePath();
    const Texts places = Values(page, "id");
    const std::set<std::string> known(places.begin(), places.end());
    EXPECT_EQ(known.size(), places.size()) << "two places have one name";
    for (const std::string& link : Values(page, "href")) {
        EXPECT_TRUE(link.starts_with('#') && known.contains(link.substr(1))) << link;
    }
    const Texts sources = Values(page, "src");
    const std::set<std::string> pictures(sources.begin(), sources.end());
    std::set<std::string> files;
    for (const auto& file : fs::directory_iterator(PagePath().parent_path() / "images")) {
        files.insert("images/" + file.path().filename().string());
    }
    EXPECT_EQ(pictures, files) << "missing, or shown nowhere";
}

// The string literals of a source, neighbours joined, without those in tables of controls: captions
// and tips explain themselves.
Texts Literals(std::string source) {
    constexpr const char* kControls = "to_array<ControlSpec>({";
    for (auto at = source.find(kControls); at != source.npos; at = source.find(kControls)) {
        source.erase(at, source.find("\n});", at) - at);
    }
    Texts literals;
    bool joins = false;
    for (std::size_t at = 0; at < source.size(); ++at) {
        if (source.compare(at, 2, "//") == 0) {
            at = std::min(source.find('\n', at), source.size());
        } else if (source.compare(at, 3, "'\"'") == 0) {
            at += 2;
            joins = false;
        } else if (source[at] == '"') {
            const std::size_t begin = ++at;
            while (at < source.size() && source[at] != '"') at += source[at] == '\\' ? 2 : 1;
            if (!std::exchange(joins, true)) literals.emplace_back();
            literals.back() += source.substr(begin, at - begin);
        } else if (source[at] != ' ' && source[at] != '\n') {
            joins = false;
        }
    }
    return literals;
}

TEST(Manual, ExplainsEverySentenceOfTheProgram) {
    const std::string page = ReadAll(PagePath());
    int sentences = 0;
    for (const auto& file : fs::recursive_directory_iterator(TAMRIN_SOURCE_DIR "/src")) {
        // The console program speaks to those who read the README.
        const std::string name = file.path().filename().string();
        if (file.path().extension() != ".cpp" || name.find("console") != name.npos) continue;
        for (std::string text : Literals(ReadAll(file.path()))) {
            // Line by line, as the page has them.
            for (std::size_t end = 0; !text.empty(); text.erase(0, end + 4)) {
                end = std::min(text.find("\\r\\n"), text.size());
                std::string line;
                for (const char c : text.substr(0, end)) {
                    line += c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
                }
                const auto ends = [&](const char* mark) { return line.ends_with(mark); };
                if (std::ranges::none_of(std::array{"。", "！", "？", "："}, ends)) continue;
                ++sentences;
                EXPECT_NE(page.find(line), page.npos) << name << ": " << line;
            }
        }
    }
    EXPECT_GT(sentences, 50);
}

}  // namespace
}  // namespace tamrin
