#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

namespace tamrin {
namespace {

namespace fs = std::filesystem;
using Texts = std::multiset<std::string>;

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
        values.insert(page.substr(at, page.find('"', at) - at));
    }
    return values;
}

TEST(Manual, LinksOnlyToItsOwnPlacesAndPictures) {
    const std::string page = ReadAll(PagePath());
    const Texts places = Values(page, "id");
    for (const std::string& link : Values(page, "href")) {
        EXPECT_TRUE(link.starts_with('#') && places.count(link.substr(1)) == 1) << link;
    }
    Texts files;
    for (const auto& file : fs::directory_iterator(PagePath().parent_path() / "images")) {
        files.insert("images/" + file.path().filename().string());
    }
    EXPECT_EQ(Values(page, "src"), files) << "missing, or shown nowhere";
}

// The string literals of a source, neighbours joined, without those in tables of controls: captions
// and tips explain themselves.
Texts Literals(std::string source) {
    constexpr const char* kControls = "to_array<ControlSpec>({";
    for (auto at = source.find(kControls); at != source.npos; at = source.find(kControls)) {
        source.erase(at, source.find("\n});", at) - at);
    }
    source = std::regex_replace(source, std::regex("\"\n *\""), "");
    Texts literals;
    for (std::size_t at = 0; at < source.size(); ++at) {
        if (source.compare(at, 2, "//") == 0) at = std::min(source.find('\n', at), source.size());
        if (source.compare(at, 3, "'\"'") == 0) at += 3;
        if (source[at] != '"') continue;
        const std::size_t begin = ++at;
        while (at < source.size() && source[at] != '"') at += source[at] == '\\' ? 2 : 1;
        literals.insert(source.substr(begin, at - begin));
    }
    return literals;
}

TEST(Manual, ExplainsEverySentenceOfTheProgram) {
    std::string page = std::regex_replace(ReadAll(PagePath()), std::regex("&lt;"), "<");
    page = std::regex_replace(page, std::regex("&gt;"), ">");
    int sentences = 0;
    for (const auto& file : fs::recursive_directory_iterator(TAMRIN_SOURCE_DIR "/src")) {
        // The console program speaks to those who read the README.
        const std::string name = file.path().filename().string();
        if (!name.ends_with(".cpp") || name.find("console") != name.npos) continue;
        for (std::string text : Literals(ReadAll(file.path()))) {
            // Line by line, as the page has them.
            for (std::size_t end = 0; !text.empty(); text.erase(0, end + 4)) {
                end = std::min(text.find("\\r\\n"), text.size());
                const std::string line = text.substr(0, end);
                const auto ends = [&](const std::string& mark) { return line.ends_with(mark); };
                if (std::ranges::none_of(Texts{"。", "！", "？", "："}, ends)) continue;
                ++sentences;
                EXPECT_NE(page.find(line), page.npos) << name << ": " << line;
            }
        }
    }
    EXPECT_GT(sentences, 50);
}

}  // namespace
}  // namespace tamrin
