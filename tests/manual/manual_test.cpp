#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
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

// The values of an attribute, written such as ` id="`.
Texts Values(const std::string& page, std::string_view attribute) {
    Texts values;
    for (auto at = page.find(attribute); at != page.npos; at = page.find(attribute, at)) {
        at += attribute.size();
        values.push_back(page.substr(at, page.find('"', at) - at));
    }
    return values;
}

TEST(Manual, LeadsToItsOwnPlacesAndPicturesAlone) {
    const std::string page = ReadAll(PagePath());
    ASSERT_FALSE(page.empty()) << PagePath();
    const Texts places = Values(page, " id=\"");
    const std::set<std::string> known(places.begin(), places.end());
    EXPECT_EQ(known.size(), places.size()) << "two places have one name";
    for (const std::string& link : Values(page, " href=\"")) {
        EXPECT_TRUE(link.starts_with('#') && known.contains(link.substr(1))) << link;
    }
    const Texts sources = Values(page, " src=\"");
    std::set<std::string> pictures(sources.begin(), sources.end());
    std::set<std::string> files;
    for (const auto& file : fs::directory_iterator(PagePath().parent_path() / "images")) {
        files.insert("images/" + file.path().filename().string());
    }
    EXPECT_EQ(pictures, files) << "missing, or shown nowhere";
}

// Tables of controls hold captions and tips, which explain themselves.
std::string WithoutControlTables(std::string source) {
    constexpr std::string_view kBegin = "to_array<ControlSpec>({";
    for (auto at = source.find(kBegin); at != source.npos; at = source.find(kBegin)) {
        source.erase(at, source.find("\n});", at) - at);
    }
    return source;
}

// The string literals of a source, of which neighbours are one.
Texts Literals(const std::string& source) {
    Texts literals;
    bool joins = false;
    for (std::size_t at = 0; at < source.size(); ++at) {
        if (source.compare(at, 2, "//") == 0) {
            at = std::min(source.find('\n', at), source.size());
        } else if (source.compare(at, 3, "'\"'") == 0) {
            at += 2;
            joins = false;
        } else if (source[at] == '"') {
            const std::size_t begin = at + 1;
            at = begin;
            while (at < source.size() && source[at] != '"') at += source[at] == '\\' ? 2 : 1;
            if (!joins) literals.emplace_back();
            literals.back() += source.substr(begin, at - begin);
            joins = true;
        } else if (source[at] != ' ' && source[at] != '\n') {
            joins = false;
        }
    }
    return literals;
}

// The sentences of a literal, one for each of its lines, as a page writes them.
Texts Sentences(const std::string& literal) {
    Texts sentences;
    std::size_t at = 0;
    while (at <= literal.size()) {
        const std::size_t end = std::min(literal.find("\\r\\n", at), literal.size());
        const std::string_view line = std::string_view(literal).substr(at, end - at);
        const auto ends_with = [&](const char* mark) { return line.ends_with(mark); };
        if (std::ranges::any_of(std::array{"。", "！", "？", "："}, ends_with)) {
            sentences.emplace_back();
            for (const char c : line) {
                sentences.back() += c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
            }
        }
        at = end + 4;
    }
    return sentences;
}

TEST(Manual, ExplainsEverySentenceThatTheProgramSays) {
    const std::string page = ReadAll(PagePath());
    int sentences = 0;
    const fs::path root = fs::path(TAMRIN_SOURCE_DIR) / "src";
    for (const auto& file : fs::recursive_directory_iterator(root)) {
        // The console program speaks to those who read the README.
        const std::string name = file.path().filename().string();
        if (file.path().extension() != ".cpp" || name.find("console") != name.npos) continue;
        for (const std::string& literal : Literals(WithoutControlTables(ReadAll(file.path())))) {
            for (const std::string& sentence : Sentences(literal)) {
                ++sentences;
                EXPECT_NE(page.find(sentence), page.npos) << name << ": " << sentence;
            }
        }
    }
    EXPECT_GT(sentences, 50);
}

}  // namespace
}  // namespace tamrin
