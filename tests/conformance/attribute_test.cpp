#include <iterator>

#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

// What a lookup promises of an element, as one line.
std::string Keys(const Element& element) {
    std::string line = element.tagName() + "|" + element.getAttribute("type").value_or("Null") +
                       "|" + element.value() + "|" + element.name() + "|" +
                       element.getAttribute("alt").value_or("Null") + "|" +
                       element.getAttribute("href").value_or("Null");
    return line;
}

struct KeysRow {
    std::string_view html;  // the element in question has the id k
    std::string_view keys;  // tag|type|value|name|alt|href; "{}" stands for the server's address
};

constexpr KeysRow kRows[] = {
    {"<input id=k>", "INPUT|text|||Null|Null"},
    {"<input id=k name=n value=v>", "INPUT|text|v|n|Null|Null"},
    {"<input id=k type=TEXT value=v>", "INPUT|text|v||Null|Null"},
    {"<input id=k type=unheard-of value=v>", "INPUT|text|v||Null|Null"},
    {"<input id=k type=password value=p>", "INPUT|password|p||Null|Null"},
    {"<input id=k type=email value=a@b.jp>", "INPUT|email|a@b.jp||Null|Null"},
    {"<input id=k type=number value=12>", "INPUT|number|12||Null|Null"},
    {"<input id=k type=date value=2026-04-01>", "INPUT|date|2026-04-01||Null|Null"},
    {"<input id=k type=hidden name=n value=h>", "INPUT|hidden|h|n|Null|Null"},
    {"<input id=k type=file name=n>", "INPUT|file||n|Null|Null"},
    {"<input id=k type=checkbox name=n>", "INPUT|checkbox|on|n|Null|Null"},
    {"<input id=k type=radio name=n value=r>", "INPUT|radio|r|n|Null|Null"},
    {"<input id=k type=submit value=送信>", "INPUT|submit|送信||Null|Null"},
    {"<input id=k type=reset value=取消>", "INPUT|reset|取消||Null|Null"},
    {"<input id=k type=button value='a|b'>", "INPUT|button|a|b||Null|Null"},
    {"<input id=k type=image alt=検索>", "INPUT|image|||検索|Null"},
    {"<input id=k alt=''>", "INPUT|text||||Null"},
    {"<button id=k>送信</button>", "BUTTON|submit|||Null|Null"},
    {"<button id=k type=button name=n value=v>b</button>", "BUTTON|button|v|n|Null|Null"},
    {"<button id=k type=reset>b</button>", "BUTTON|reset|||Null|Null"},
    {"<textarea id=k name=n>一\n二</textarea>", "TEXTAREA|textarea|一\r\n二|n|Null|Null"},
    {"<select id=k name=n><option value=1>一<option value=2 selected>二</select>",
     "SELECT|select-one|2|n|Null|Null"},
    {"<select id=k><option>一</select>", "SELECT|select-one|一||Null|Null"},
    {"<select id=k></select>", "SELECT|select-one|||Null|Null"},
    {"<select id=k multiple><option value=1>一<option value=2 selected>二</select>",
     "SELECT|select-multiple|2||Null|Null"},
    {"<select><option id=k value=1>一</select>", "OPTION|Null|1||Null|Null"},
    {"<a id=k name=n href=x?a=1&amp;b=2>次</a>", "A|Null||n|Null|{}/x?a=1&b=2"},
    {"<a id=k href=#end>次</a>", "A|Null|||Null|{}/base#end"},
    {"<a id=k type=text/html href='javascript:f(1)'>次</a>", "A|text/html|||Null|javascript:f(1)"},
    {"<a id=k name=n>印</a>", "A|Null||n|Null|Null"},
    {"<map><area id=k alt=地図 href=/map></map>", "AREA|Null|||地図|{}/map"},
    {"<img id=k name=n alt=絵 src=data:,>", "IMG|Null||n|絵|Null"},
    {"<img id=k alt='' src=data:,>", "IMG|Null||||Null"},
    {"<label id=k>名前<input></label>", "LABEL|Null|||Null|Null"},
    {"<div id=k>地</div>", "DIV|Null|||Null|Null"},
    {"<ol id=k type=a></ol>", "OL|a|||Null|Null"},
    {"<fieldset id=k name=n></fieldset>", "FIELDSET|Null||n|Null|Null"},
    {"<p id=k name=n type=t>文</p>", "P|t||n|Null|Null"},
    {"<ul><li id=k value=3></ul>", "LI|Null|||Null|Null"},
    {"<svg><a id=k href=own></a></svg>", "A|Null|||Null|own"},
    {"<form id=k name=n><input name=id><input name=name><input name=type><input name=tagName>"
     "<input name=getAttribute><input name=value></form>",
     "FORM|Null||n|Null|Null"},
};

using GetAttribute = Suite;

TEST_F(GetAttribute, AnswersKeysAsTheAutomationModelDoes) {
    std::string html = "<!doctype html><meta charset=utf-8><base href='" + Url("/base") + "'>";
    for (const KeysRow& row : kRows) html.append(row.html).append("\n");
    const Document document = OpenBare(html);

    std::vector<Element> elements;
    for (const Element& element : document.getElementsByTagName("*")) {
        if (element.id() == "k") elements.push_back(element);
    }
    ASSERT_EQ(elements.size(), std::size(kRows));
    for (size_t i = 0; i < elements.size(); ++i) {
        std::string keys(kRows[i].keys);
        if (const auto at = keys.find("{}"); at != std::string::npos) keys.replace(at, 2, Url(""));
        EXPECT_EQ(Keys(elements[i]), keys) << kRows[i].html;
    }
}

TEST_F(GetAttribute, AnswersWhatThePageWrites) {
    Open("<input id=a onclick='say(\"x\")' data-note=' 注 ' SRC=p.png disabled><div id=b></div>");
    const Element a = Find("a");
    EXPECT_EQ(a.getAttribute("onclick"), "say(\"x\")");
    EXPECT_EQ(a.getAttribute("OnClick"), "say(\"x\")");
    EXPECT_EQ(a.getAttribute("data-note"), " 注 ");
    EXPECT_EQ(a.getAttribute("src"), "p.png");
    EXPECT_EQ(a.getAttribute("disabled"), "");
    EXPECT_EQ(a.getAttribute("title"), std::nullopt);
    EXPECT_EQ(Find("b").getAttribute("onclick"), std::nullopt);
}

using GetProperty = Suite;

TEST_F(GetProperty, AnswersStateAsText) {
    Open(
        "<input type=checkbox id=on checked><input type=radio id=off>"
        "<select id=s><option>a<option selected>b</select><select id=none></select>"
        "<img id=i src=/p.png><div id=d title=t></div><input id=v value=old>"
        "<script>document.getElementById('v').value = 'new'</script>");
    EXPECT_EQ(Find("on").checked(), "True");
    EXPECT_EQ(Find("off").checked(), "False");
    EXPECT_EQ(Find("s").selectedIndex(), "1");
    EXPECT_EQ(Find("none").selectedIndex(), "-1");
    EXPECT_EQ(Find("s").Get("length"), "2");
    EXPECT_EQ(Find("i").Get("src"), Url("/p.png"));
    EXPECT_EQ(Find("v").value(), "new");
    EXPECT_EQ(Find("d").Get("checked"), "");
    EXPECT_EQ(Find("d").Get("selectedIndex"), "");
    EXPECT_EQ(Find("d").Get("unheardOf"), "");
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
    const struct {
        std::string_view script;
        std::string_view value;
    } rows[] = {
        {R"('\ud83d\ude80𠮷')", "🚀𠮷"},
        {R"('a\ud83db\udc00')", "a\uFFFDb\uFFFD"},
        {R"('"\'\\<\/script>')", "\"'\\</script>"},
        {R"('\u0001\u0002\b\f\t\u007f\u0000;,-1')", {"\x01\x02\b\f\t\x7f\0;,-1", 11}},
        {R"('\u2028\u00a0\u3000\ufeff')", "\u2028\u00a0\u3000\ufeff"},
        {R"('％～∥－￠')", "％～∥－￠"},
    };
    for (const auto& row : rows) {
        OpenBare(
            "<!doctype html><meta charset=utf-8><input id=v><script>document.getElementById("
            "'v').value = " +
            std::string(row.script) + "</script>");
        EXPECT_EQ(Find("v").value(), row.value) << row.script;
    }
    EXPECT_FALSE(browser().document().Named("\xFF\xED\xA0\x80").by_id);
}

TEST_F(GetProperty, AnswersAndTakesMegabytes) {
    Open("<input type=hidden id=v><script>v.value = 'aaaaaaaaa日'.repeat(1e5)</script>");
    const Element v = Find("v");
    const std::string big = v.value();
    EXPECT_EQ(big.size(), 1200000U);
    EXPECT_TRUE(big.ends_with("a日"));
    EXPECT_TRUE(v.Put("value", big + "!"));
    EXPECT_TRUE(v.value() == big + "!");
}

TEST_F(GetProperty, AnswersPagesInShiftJis) {
    // 日本語 and ソ, whose second byte is a backslash, in Shift-JIS.
    const std::string path =
        Serve(WebReply{.content_type = "text/html; charset=Shift_JIS",
                       .body = "<input id=a name=\x93\xfa\x96\x7b\x8c\xea value=\x83\x5c><p id=b>"
                               "\x93\xfa\x96\x7b\x8c\xea</p>"});
    const Document document = GoTo(Url(path));
    const NamedElements named = document.Named("日本語");
    ASSERT_EQ(named.by_name.size(), 1U);
    EXPECT_EQ(named.by_name[0].value(), "ソ");
    EXPECT_EQ(Find("b").innerText(), "日本語");
}

}  // namespace
}  // namespace tamrin::conformance
