#include "player/key_string.h"

#include <gtest/gtest.h>

#include <string>

namespace tamrin::test {
namespace {

// The strokes as text, each with its own modifiers, and "&" behind a stroke that leaves them down.
// For a malformed string, the reason.
std::string Written(std::string_view keys) {
    std::string why;
    const auto strokes = ParseKeyString(keys, why);
    if (!strokes) return why;
    std::string result;
    for (const KeyStroke& stroke : *strokes) {
        result += result.empty() ? "" : " ";
        if (stroke.shift) result += '+';
        if (stroke.ctrl) result += '^';
        if (stroke.alt) result += '%';
        result += stroke.text + stroke.name + (stroke.holds_on ? "&" : "");
    }
    return result;
}

TEST(ParseKeyString, ReadsTheWholeSyntax) {
    const std::pair<const char*, const char*> rows[] = {
        {"aB1日😀~{ENTER}{tab}{BS}{Del}{F1}{f16}",
         "a B 1 日 😀 ENTER ENTER TAB BACKSPACE DELETE F1 F16"},
        {"+a^b%c+^%{TAB}x", "+a ^b %c +^%TAB x"},
        {"^%(a+(bc)d)e", "^%a& +^%b& +^%c& ^%d e"},
        {"a^()b(ab)((c))", "a b a b c"},
        {"{LEFT 2}{x  2}{あ 2}%{TAB 2}~", "LEFT LEFT x x あ あ %TAB& %TAB ENTER"},
        {"{+}{^}{%}{~}{(}{)}{{}{}}{[}{} 2}{ }", "+ ^ % ~ ( ) { } [ } }  "},
        {"{x 0}", ""},
        {"{TAB", "「{」に対する「}」がありません。"},
        {"}", "「}」に対する「{」がありません。"},
        {"(a", "「(」に対する「)」がありません。"},
        {"a)", "「)」に対する「(」がありません。"},
        {"{}", "「{}」の中にキーがありません。"},
        {"a{NO}", "「{NO}」というキーはありません。"},
        {"{F17}", "「{F17}」というキーはありません。"},
        {"{TAB -1}", "「{TAB -1}」の回数が正しくありません。"},
        {"{TAB }", "「{TAB }」の回数が正しくありません。"},
        {"{a 10001}", "キーが多すぎます（10000 個まで）。"},
        {"(a+)", "「+」の後にキーがありません。"},
        {"^%", "「%」の後にキーがありません。"},
    };
    for (const auto& [keys, strokes] : rows) EXPECT_EQ(Written(keys), strokes) << keys;
    EXPECT_EQ(Written(KeyStringOf("a+b\r\n{}(%)~^[]")), "a + b ENTER { } ( % ) ~ ^ [ ]");
}

}  // namespace
}  // namespace tamrin::test
