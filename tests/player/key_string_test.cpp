#include "player/key_string.h"

#include <gtest/gtest.h>

#include <string>

namespace tamrin::test {
namespace {

// Strokes in a form that can be read: modifiers as S, C, A in front of a minus.
std::string Written(std::string_view keys) {
    const auto strokes = ParseKeyString(keys);
    if (!strokes) return "malformed";
    std::string result;
    for (const KeyStroke& stroke : *strokes) {
        std::string modifiers;
        if (stroke.shift) modifiers += 'S';
        if (stroke.ctrl) modifiers += 'C';
        if (stroke.alt) modifiers += 'A';
        if (!modifiers.empty()) modifiers += '-';
        const std::string name = stroke.name.empty() ? "" : "<" + stroke.name + ">";
        result += (result.empty() ? "" : " ") + modifiers + stroke.text + name;
    }
    return result;
}

TEST(ParseKeyString, ReadsTheWholeSyntax) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"aB1", "a B 1"},
        {"日本😀", "日 本 😀"},
        {"~{ENTER}{tab}{BS}{Del}{F1}{f16}",
         "<ENTER> <ENTER> <TAB> <BACKSPACE> <DELETE> <F1> <F16>"},
        {"+a^b%c", "S-a C-b A-c"},
        {"+^%{TAB}x", "SCA-<TAB> x"},
        {"+(ab)c", "S-a S-b c"},
        {"^(a+b)", "C-a SC-b"},
        {"(ab)", "a b"},
        {"{LEFT 3}{x 2}{あ 2}", "<LEFT> <LEFT> <LEFT> x x あ あ"},
        {"{+}{^}{%}{~}{(}{)}{{}{}}{[}", "+ ^ % ~ ( ) { } ["},
        {"{} 2}", "} }"},
        {"{ }", " "},
        {"{x 0}", ""},
        {"{", "malformed"},
        {"}", "malformed"},
        {"{}", "malformed"},
        {"{TAB", "malformed"},
        {"{NO}", "malformed"},
        {"{F0}", "malformed"},
        {"{F17}", "malformed"},
        {"{F01}", "malformed"},
        {"{TAB x}", "malformed"},
        {"{TAB -1}", "malformed"},
        {"{a 99999999}", "malformed"},
        {"{a 99999999999999}", "malformed"},
        {"(a", "malformed"},
        {"a)", "malformed"},
        {"((a))", "malformed"},
        {"(a+)", "malformed"},
        {"+", "malformed"},
    };
    for (const auto& [keys, strokes] : rows) EXPECT_EQ(Written(keys), strokes) << keys;
}

TEST(KeyStringOf, TypesExactlyTheText) {
    EXPECT_EQ(Written(KeyStringOf("a+b\r\n{}(%)~^[] 日")), "a + b <ENTER> { } ( % ) ~ ^ [ ]   日");
}

}  // namespace
}  // namespace tamrin::test
