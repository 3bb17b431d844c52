#include <iterator>

#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

struct KeysRow {
    std::string_view html;  // the element in question has the id k
    std::string_view keys;  // tag|type|value|name|alt|href; "{}" stands for the server's address
};

constexpr KeysRow kKeysRows[] = {
    {"<input id=k name=n value=v>", "INPUT|text|v|n|Null|Null"},
    {"<input id=k type=unheard-of value=v>", "INPUT|text|v||Null|Null"},
    {"<input id=k type=checkbox name=n>", "INPUT|checkbox|on|n|Null|Null"},
    {"<input id=k type=radio name=n value=r>", "INPUT|radio|r|n|Null|Null"},
    {"<input id=k type=button value='a|b'>", "INPUT|button|a|b||Null|Null"},
    {"<input id=k type=image alt=検索>", "INPUT|image|||検索|Null"},
    {"<input id=k alt=''>", "INPUT|text||||Null"},
    {"<button id=k>送信</button>", "BUTTON|submit|||Null|Null"},
    {"<textarea id=k name=n>一\n二</textarea>", "TEXTAREA|textarea|一\r\n二|n|Null|Null"},
    {"<select id=k name=n><option value=1>一<option value=2 selected>二</select>",
     "SELECT|select-one|2|n|Null|Null"},
    {"<select id=k></select>", "SELECT|select-one|||Null|Null"},
    {"<select id=k multiple><option value=1>一<option value=2 selected>二</select>",
     "SELECT|select-multiple|2||Null|Null"},
    {"<select><option id=k value=1>一</select>", "OPTION|Null|1||Null|Null"},
    {"<a id=k name=n href=x?a=1&amp;b=2>次</a>", "A|Null||n|Null|{}/x?a=1&b=2"},
    {"<a id=k href=#end>次</a>", "A|Null|||Null|{}/base#end"},
    {"<a id=k type=text/html href='javascript:f(1)'>次</a>", "A|text/html|||Null|javascript:f(1)"},
    {"<map><area id=k alt=地図 href=/map></map>", "AREA|Null|||地図|{}/map"},
    {"<ol id=k type=a></ol>", "OL|a|||Null|Null"},
    {"<p id=k name=n type=t>文</p>", "P|t||n|Null|Null"},
    {"<svg><a id=k href=own></a></svg>", "A|Null|||Null|own"},
    {"<form id=k name=n><input name=id><input name=name><input name=type><input name=tagName>"
     "<input name=getAttribute><input name=value></form>",
     "FORM|Null||n|Null|Null"},
};

using GetAttribute = Suite;

TEST_F(GetAttribute, AnswersKeysAsTheAutomationModelDoes) {
    std::string html = "<!doctype html><meta charset=utf-8><base href='" + Url("/base") + "'>";
    for (const KeysRow& row : kKeysRows) html.append(row.html).append("\n");
    std::size_t i = 0;
    for (const Element& e : Open(html).getElementsByTagName("*")) {
        if (e.id() != "k") continue;
        ASSERT_LT(i, std::size(kKeysRows));
        const auto attribute = [&](const char* name) {
            return "|" + e.getAttribute(name).value_or("Null");
        };
        std::string keys(kKeysRows[i].keys);
        if (const auto at = keys.find("{}"); at != std::string::npos) keys.replace(at, 2, Url(""));
        EXPECT_EQ(e.tagName() + attribute("type") + "|" + e.value() + "|" + e.name() +
                      attribute("alt") + attribute("href"),
                  keys)
            << kKeysRows[i].html;
        ++i;
    }
    EXPECT_EQ(i, std::size(kKeysRows));
}

TEST_F(GetAttribute, AnswersWhatThePageWrites) {
    Open("<input id=a onclick='say(\"x\")' data-note=' 注 ' SRC=p.png disabled>");
    const std::pair<const char*, std::optional<std::string>> rows[] = {
        {"onclick", "say(\"x\")"},  {"OnClick", "say(\"x\")"}, {"data-note", " 注 "},
        {"src", "p.png"},           {"disabled", ""},          {"title", std::nullopt},
        {"onchange", std::nullopt},
    };
    for (const auto& [name, value] : rows) EXPECT_EQ(Find("a").getAttribute(name), value) << name;
}

using GetProperty = Suite;

TEST_F(GetProperty, AnswersStateAsText) {
    const struct {
        const char* html;  // the element has the id %, the number of its row
        const char* property;
        std::string value;
    } rows[] = {
        {"<input type=checkbox id=% checked>", "checked", "True"},
        {"<input type=radio id=%>", "checked", "False"},
        {"<div id=%></div>", "checked", ""},
        {"<select id=%><option>a<option selected>b</select>", "selectedIndex", "1"},
        {"<select id=%></select>", "selectedIndex", "-1"},
        {"<select id=%><option>a<option>b</select>", "length", "2"},
        {"<img id=% src=/p.png>", "src", Url("/p.png")},
        {"<input id=% value=old><script>document.getElementById('%').value = 'new'</script>",
         "value", "new"},
        {"<div id=%></div>", "unheardOf", ""},
    };
    std::string body;
    for (std::size_t i = 0; i < std::size(rows); ++i) body += Numbered(rows[i].html, i);
    Open(body);
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(Find(Numbered("%", i)).Get(rows[i].property), rows[i].value) << rows[i].html;
    }
}

TEST_F(GetProperty, AnswersInnerTextAsItIsSeen) {
    Open(
        "<p id=p>  一つ<b>二</b>  つ<span style='display:none'>隠</span>\n</p>"
        "<a id=a href=x><img alt=絵></a><p id=later></p>");
    EXPECT_EQ(Find("p").innerText(), "一つ二 つ");
    EXPECT_EQ(Find("a").innerText(), "");
    const Element later = Find("later");
    EXPECT_EQ(later.innerText(), "");
    browser().Navigate("javascript:void(document.getElementById('later').textContent = '後')");
    EXPECT_TRUE(Wait([&] { return later.innerText() == "後"; }));
}

TEST_F(GetProperty, AnswersOddCharacters) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {R"('\ud83d\ude80𠮷')", "🚀𠮷"},
        {R"('a\ud83db\udc00')", "a\uFFFDb\uFFFD"},
        {R"('"\'\\<\/script>')", "\"'\\</script>"},
        {R"('\u0001\u0002\b\f\t\u007f\u0000;,-1')", {"\x01\x02\b\f\t\x7f\0;,-1", 11}},
        {R"('\u2028\u00a0\u3000\ufeff')", "\u2028\u00a0\u3000\ufeff"},
        {R"('％～∥－￠')", "％～∥－￠"},
        {R"('aaaaaaaaa日'.repeat(1e5))", ""},
    };
    std::string html = "<!doctype html><meta charset=utf-8>";
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        html += Numbered("<input type=hidden id=%><script>%.value = ", i);
        html.append(rows[i].first).append("</script>");
    }
    Open(html);
    for (std::size_t i = 0; i + 1 < std::size(rows); ++i) {
        EXPECT_EQ(Find(Numbered("%", i)).value(), rows[i].second) << rows[i].first;
    }
    const Element megabytes = Find(Numbered("%", std::size(rows) - 1));
    const std::string big = megabytes.value();
    EXPECT_EQ(big.size(), 1200000U);
    EXPECT_TRUE(megabytes.Put("value", big + "!"));
    EXPECT_TRUE(megabytes.value() == big + "!");
}

TEST_F(GetProperty, AnswersPagesInShiftJis) {
    // 日本語 and ソ, whose second byte is a backslash, in Shift-JIS.
    const std::string path =
        Serve(WebReply{.content_type = "text/html; charset=Shift_JIS",
                       .body = "<input id=a name=\x93\xfa\x96\x7b\x8c\xea value=\x83\x5c><p id=b>"
                               "\x93\xfa\x96\x7b\x8c\xea</p>"});
    EXPECT_EQ(GoTo(Url(path)).Named("日本語").by_name.at(0).value(), "ソ");
    EXPECT_EQ(Find("b").innerText(), "日本語");
}

}  // namespace
}  // namespace tamrin::conformance
