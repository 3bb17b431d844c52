#include "app/paths.h"

#include <gtest/gtest.h>

#include "support/memory_files.h"

namespace tamrin::test {
namespace {

TEST(CollapseBlanks, KeepsTheFirstBlankOfEachRun) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""}, {"a", "a"}, {"a  b", "a b"}, {" 　 a　　b ", " a　b "}, {"　 x", "　x"},
    };
    for (const auto& [text, result] : rows) EXPECT_EQ(CollapseBlanks(text), result);
}

TEST(StripQuotes, TakesOneEnclosingPair) {
    const std::pair<const char*, const char*> rows[] = {
        {" \"a b\" ", "a b"}, {"\"a", "\"a"}, {"\"", "\""}, {"\"\"", ""},
        {"　a　", "a"},       {"a\"", "a\""}, {"", ""},     {"\"\"a\"\"", "\"a\""},
    };
    for (const auto& [text, result] : rows) EXPECT_EQ(StripQuotes(text), result) << text;
}

TEST(ResolvePath, MakesARelativePathAbsolute) {
    const MemoryFiles files;
    const char* const rows[][3] = {
        {"a.csv", "C:\\b", "C:\\b\\a.csv"},
        {"..\\a.csv", "C:\\b\\c", "C:\\b\\a.csv"},
        {"..\\..\\..\\a.csv", "C:\\b", "C:\\a.csv"},
        {"x\\..\\.\\a.csv", "C:\\b", "C:\\b\\a.csv"},
        {"D:\\a.csv", "C:\\b", "D:\\a.csv"},
        {"\\\\server\\share\\a.csv", "C:\\b", "\\\\server\\share\\a.csv"},
        {"\\a.csv", "C:\\b", "C:\\a.csv"},
        {"注文 書.csv", "", "C:\\work\\注文 書.csv"},
        {"", "C:\\b", ""},
    };
    for (const auto& [path, base, result] : rows) {
        EXPECT_EQ(ResolvePath(path, base, files), result) << path;
    }
}

TEST(RelativePath, ReadsBackAgainstItsBase) {
    const MemoryFiles files;
    const char* const rows[][2] = {
        {"C:\\b\\c", ""},        {"C:\\b\\c\\", ""},       {"C:\\b\\c\\d e", ".\\d e"},
        {"c:\\B\\C\\d", ".\\d"}, {"C:\\b", ".."},          {"C:\\b\\x", "..\\x"},
        {"C:\\", "..\\.."},      {"D:\\b\\c", "D:\\b\\c"}, {"\\\\server\\a", "\\\\server\\a"},
    };
    for (const auto& [path, result] : rows) {
        EXPECT_EQ(RelativePath(path, "C:\\b\\c", files), result) << path;
    }
}

}  // namespace
}  // namespace tamrin::test
