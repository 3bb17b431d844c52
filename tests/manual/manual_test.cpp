#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <regex>

#include "support/temporary_folder.h"

namespace tamrin {
namespace {

namespace fs = std::filesystem;
using Texts = std::multiset<std::string>;

// The built page: the one of this build, or one that was unpacked from a release.
fs::path PagePath() {
    const char* const path = std::getenv("TAMRIN_MANUAL");
    return path ? path : TAMRIN_MANUAL;
}

// What the group of a pattern matches in a text.
Texts Matches(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern);
    return {std::sregex_token_iterator(text.begin(), text.end(), regex, 1), {}};
}

TEST(Manual, LinksOnlyToItsOwnPlacesAndPictures) {
    const std::string page = FileBytes(PagePath());
    const Texts places = Matches(page, R"re( id="([^"]*))re");
    for (const std::string& link : Matches(page, R"re( href="([^"]*))re")) {
        EXPECT_TRUE(link.starts_with('#') && places.count(link.substr(1)) == 1) << link;
    }
    Texts files;
    for (const auto& file : fs::directory_iterator(PagePath().parent_path() / "images")) {
        files.insert("images/" + file.path().filename().string());
    }
    EXPECT_EQ(Matches(page, R"re( src="([^"]*))re"), files) << "missing, or shown nowhere";
}

// The string literals of a source, neighbours joined, without those in tables of controls: captions
// and tips explain themselves.
Texts Literals(std::string source) {
    constexpr const char* kControls = "to_array<ControlSpec>({";
    for (auto at = source.find(kControls); at != source.npos; at = source.find(kControls)) {
        source.erase(at, source.find("\n});", at) - at);
    }
    source = std::regex_replace(source, std::regex("\"\n *\""), "");
    return Matches(source, R"re(//.*|'"'|"((\\.|[^"\\])*)")re");
}

TEST(Manual, ExplainsEverySentenceOfTheProgram) {
    std::string page = std::regex_replace(FileBytes(PagePath()), std::regex("&lt;"), "<");
    page = std::regex_replace(page, std::regex("&gt;"), ">");
    int sentences = 0;
    for (const auto& file : fs::recursive_directory_iterator(TAMRIN_SOURCE_DIR "/src")) {
        // The console program speaks to those who read the README.
        const std::string name = file.path().filename().string();
        if (!name.ends_with(".cpp") || name.find("console") != name.npos) continue;
        for (std::string text : Literals(FileBytes(file.path()))) {
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
