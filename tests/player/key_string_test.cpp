#include "player/key_string.h"

#include <gtest/gtest.h>

#include <string>

namespace tamrin::test {
namespace {

// Strokes in a form that can be read: modifiers as S, C, A in front of a minus, "&" behind a stroke
// that leaves them down. What is malformed is written as its reason.
std::string Written(std::string_view keys) {
    std::string why;
    const auto strokes = ParseKeyString(keys, why);
    if (!strokes) return why;
    std::string result;
    for (const KeyStroke& stroke : *strokes) {
        std::string modifiers;
        if (stroke.shift) modifiers += 'S';
        if (stroke.ctrl) modifiers += 'C';
        if (stroke.alt) modifiers += 'A';
        if (!modifiers.empty()) modifiers += '-';
        const std::string name = stroke.name.empty() ? "" : "<" + stroke.name + ">";
        result += (result.empty() ? "" : " ") + modifiers + stroke.text + name +
                  (stroke.holds_on ? "&" : "");
    }
    return result;
}

TEST(ParseKeyString, ReadsTheWholeSyntax) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"aB1", "a B 1"},
        {"日本😀", "日 本 😀"},
        {"~{ENTER}{tab}{BS}{Del}{F1}{f16}{Add}",
         "<ENTER> <ENTER> <TAB> <BACKSPACE> <DELETE> <F1> <F16> <ADD>"},
        {"+a^b%c", "S-a C-b A-c"},
        {"+^%{TAB}x", "SCA-<TAB> x"},
        {"+(ab)c", "S-a& S-b c"},
        {"^(a+b)", "C-a& SC-b"},
        {"^(a+(bc)d)e", "C-a& SC-b& SC-c& C-d e"},
        {"a^()b", "a b"},
        {"(ab)((c))", "a b c"},
        {"{LEFT 3}{x  2}{あ 2}", "<LEFT> <LEFT> <LEFT> x x あ あ"},
        {"%{TAB 2}~", "A-<TAB>& A-<TAB> <ENTER>"},
        {"{+}{^}{%}{~}{(}{)}{{}{}}{[}", "+ ^ % ~ ( ) { } ["},
        {"{} 2}", "} }"},
        {"{ }", " "},
        {"{x 0}", ""},
        {"a{", "「{」に対する「}」がありません。"},
        {"{TAB", "「{」に対する「}」がありません。"},
        {"}", "「}」に対する「{」がありません。"},
        {"(a", "「(」に対する「)」がありません。"},
        {"a)", "「)」に対する「(」がありません。"},
        {"{}", "「{}」の中にキーがありません。"},
        {"a{NO}", "「{NO}」というキーはありません。"},
        {"{F0}", "「{F0}」というキーはありません。"},
        {"{F17}", "「{F17}」というキーはありません。"},
        {"{F01}", "「{F01}」というキーはありません。"},
        {"{TAB x}", "「{TAB x}」の回数が正しくありません。"},
        {"{TAB -1}", "「{TAB -1}」の回数が正しくありません。"},
        {"{TAB }", "「{TAB }」の回数が正しくありません。"},
        {"{a 99999999999999}", "「{a 99999999999999}」の回数が正しくありません。"},
        {"{a 99999999}", "キーが多すぎます（10000 個まで）。"},
        {"(a+)", "「+」の後にキーがありません。"},
        {"^%", "「%」の後にキーがありません。"},
    };
    for (const auto& [keys, strokes] : rows) EXPECT_EQ(Written(keys), strokes) << keys;
}

TEST(KeyStringOf, TypesExactlyTheText) {
    EXPECT_EQ(Written(KeyStringOf("a+b\r\n{}(%)~^[] 日")), "a + b <ENTER> { } ( % ) ~ ^ [ ]   日");
}

}  // namespace
}  // namespace tamrin::test
