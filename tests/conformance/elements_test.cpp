// What elements answer, how they are found, and which values they take.

#include <iterator>

#include "conformance/suite.h"
#include "support/temporary_folder.h"

namespace tamrin::conformance {
namespace {

// What an element answers, in words; what is empty is left out, and the server's address too.
std::string Described(const Element& element, const std::string& server) {
    std::string words = element.tagName();
    const auto add = [&](const char* name, const std::string& text) {
        if (!text.empty()) AddWord(words, std::string(name) + "=" + text);
    };
    for (const char* name : {"type", "alt", "href", "OnClick", "data-note", "disabled"}) {
        const auto attribute = element.getAttribute(name);
        if (attribute) AddWord(words, std::string(name) + "=" + *attribute);
        if (attribute == "checkbox" || attribute == "radio") add("checked", element.checked());
    }
    for (const char* name : {"value", "name", "selectedIndex", "length", "src", "unheardOf"}) {
        add(name, element.Get(name));
    }
    for (const std::string& text : element.OptionTexts()) AddWord(words, "option=" + text);
    if (element.OptionTexts().empty() && element.value().empty()) add("text", element.innerText());
    add("parent", element.parentElement().id());
    add("form", element.form().id());
    add("button", element.DefaultButton().id());
    Replace(words, server, "");
    return words;
}

std::vector<Element> EachK(const Document& page) {
    auto elements = page.getElementsByTagName("*");
    std::erase_if(elements, [](const Element& element) { return element.id() != "k"; });
    return elements;
}

using Elements = Suite;

TEST_F(Elements, AnswerAsTheAutomationModelDoes) {
    const auto set = [](const std::string& value) {
        return "<input type=hidden id=k><script>document.currentScript.previousElementSibling"
               ".value = " +
               value + "</script>";
    };
    const std::pair<std::string, std::string> rows[] = {
        {"<input id=k type=checkbox>", "INPUT type=checkbox checked=False value=on"},
        {"<input id=k type=radio value=r checked>", "INPUT type=radio checked=True value=r"},
        {"<input id=k type=button value='a|b'>", "INPUT type=button value=a|b"},
        {"<input id=k alt=''>", "INPUT type=text alt="},
        {"<input id=k onclick='f(\"x\")' data-note=' 注 ' disabled>",
         "INPUT type=text OnClick=f(\"x\") data-note= 注  disabled="},
        {"<button id=k>送信</button>", "BUTTON type=submit text=送信"},
        {"<textarea id=k>一\n二</textarea>", "TEXTAREA type=textarea value=一\r\n二"},
        {"<select id=k><option value=1>一<option value=2 selected>二</select>",
         "SELECT type=select-one value=2 selectedIndex=1 length=2 option=一 option=二"},
        {"<select id=k></select>", "SELECT type=select-one selectedIndex=-1 length=0"},
        {"<select><option id=k value=1>一</select>", "OPTION value=1"},
        {"<a id=k name=n href=x?a=1&amp;b=2>次</a>", "A href=/x?a=1&b=2 name=n text=次"},
        {"<a id=k type=t href='javascript:f(1)'>次</a>", "A type=t href=javascript:f(1) text=次"},
        {"<map><area id=k alt=地図 href=/map></map>", "AREA alt=地図 href=/map"},
        {"<p id=k name=n type=t>文</p>", "P type=t name=n text=文"},
        {"<svg><a id=k href=own></a></svg>", "A href=own"},
        {"<form id=k name=n><input name=id><input name=name><input name=type><input name=tagName>"
         "<input name=getAttribute><input name=value></form>",
         "FORM name=n"},
        {"<form id=f><table><tr><td id=td><input id=k></table><button id=go></button></form>",
         "INPUT type=text parent=td form=f button=go"},
        {"<input id=k form=f>", "INPUT type=text form=f button=go"},
        {"<div id=d><input id=k name=n value=v></div>", "INPUT type=text value=v name=n parent=d"},
        {"<select id=k><option> 一 <optgroup label=g><option>二</optgroup><option></select>",
         "SELECT type=select-one value=一 selectedIndex=0 length=3 option=一 option=二 option="},
        {"<img id=k src=/p.png>", "IMG src=/p.png"},
        {"<p id=k>  一つ<b>二</b>  つ<span style='display:none'>隠</span>\n</p>",
         "P text=一つ二 つ"},
        {set(R"('a\ud83db\udc00')"), "INPUT type=hidden value=a\uFFFDb\uFFFD"},
        {set(R"('"\'\\<\/script>')"), "INPUT type=hidden value=\"'\\</script>"},
        {set(R"('\u0001\b\f\t\u007f;,-1')"), "INPUT type=hidden value=\x01\b\f\t\x7f;,-1"},
        {set(R"('\u2028\u00a0\u3000\ufeff％～')"),
         "INPUT type=hidden value=\u2028\u00a0\u3000\ufeff％～"},
    };
    std::string body = "<!doctype html><meta charset=utf-8><base href='" + Url("/base") + "'>";
    for (const auto& [html, described] : rows) body += html + "\n";
    const auto elements = EachK(Open(body));
    ASSERT_EQ(elements.size(), std::size(rows));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        EXPECT_EQ(Described(elements[i], Url("")), rows[i].second) << rows[i].first;
    }
    EXPECT_FALSE(browser().document().getElementsByTagName("html").at(0).parentElement());
    Open("<input id=a type=hidden><script>a.value = 'aaaaaaaaa日\\0'.repeat(1e5)</script>");
    const std::string big = Find("a").value();
    EXPECT_EQ(big.size(), 1300000U);
    EXPECT_TRUE(Find("a").Put("value", big + "!"));
    EXPECT_TRUE(Find("a").value() == big + "!");
}

using Collections = Suite;

TEST_F(Collections, AnswerDocumentOrder) {
    const Document document = Open(
        "<!doctype html><html id=1><head id=2></head><body id=3><form id=4><p id=5><input id=6></p>"
        "</form><input id=7 form=4><svg id=8><a id=9></a></svg></body></html>");
    EXPECT_EQ(Ids(document.getElementsByTagName("*")), "1 2 3 4 5 6 7 8 9");
    EXPECT_EQ(Ids(document.getElementsByTagName("INPUT")), "6 7");
}

TEST_F(Collections, BringKeysWithoutFurtherCalls) {
    std::string body, expected, keys;
    for (int i = 0; i < 500; ++i) {
        const std::string n = std::to_string(i);
        body += "<input id=i" + n + " name=n value=v" + n + " alt='' onclick=f()>";
        expected += "i" + n + "nINPUTv" + n + "textf()";
    }
    const Document document = Open(body);
    auto before = back_end().RoundTrips();
    for (const Element& e : document.getElementsByTagName("input")) {
        keys += e.id() + e.name() + e.tagName() + e.value() + e.Get("href");
        for (const char* name : {"type", "alt", "onclick"}) keys += *e.getAttribute(name);
    }
    EXPECT_EQ(keys, expected);
    EXPECT_EQ(document.Named("i7").by_id.value(), "v7");
    EXPECT_EQ(back_end().RoundTrips() - before, 2U);

    const std::string page =
        "<a id=a href=/x>  次の<b> 頁</b></a><a id=none>印</a><map><area id=b href=/y></map>";
    const auto links = Open(page).links();
    before = back_end().RoundTrips();
    std::string told;
    for (const Element& e : links) told += e.id() + " " + e.innerText() + " " + e.Get("href");
    EXPECT_EQ(told, "a 次の 頁 " + Url("/x") + "b  " + Url("/y"));
    EXPECT_EQ(back_end().RoundTrips(), before);
}

using Named = Suite;

TEST_F(Named, AnswersEachOfTheThreeLookups) {
    // The name, and the ids by name, by id and in forms.
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"user", "a1 a2 a3|user|a1 a3"},
        {"only-id", "|only-id|only-id"},
        {"郵便番号", "f1||f1"},
        {R"(q"'\]b[0])", "g1||g1"},
        {"elements", "k1||k1"},
        {"__proto__", "||"},
        {"", "||"},
        {"\xFF\xED\xA0\x80", "||"},
    };
    const Document document = Open(
        "<form><input name=user id=a1><input name=user id=a2><input id=only-id>"
        "<input name=郵便番号 id=f1><input name='q&quot;&#39;\\]b[0]' id=g1></form><form>"
        "<input name=user id=a3><input name=elements id=k1></form><input id=user>");
    for (const auto& [name, ids] : rows) {
        const NamedElements named = document.Named(name);
        EXPECT_EQ(Ids(named.by_name) + "|" + named.by_id.id() + "|" + Ids(named.in_forms), ids)
            << name;
    }
    // The same element, however it is found.
    const NamedElements named = document.Named("user");
    EXPECT_EQ(named.by_name.at(0), document.getElementsByTagName("input").at(0));
    EXPECT_EQ(named.by_name[0], named.in_forms.at(0));
    EXPECT_FALSE(named.by_name[0] == named.by_name.at(1) || named.by_id == Element());
}

TEST_F(Named, WorksInPagesThatTakeTheirWorldApart) {
    const std::string pages[] = {
        "<meta http-equiv=Content-Security-Policy content=\"script-src 'none'\">",
        // Built-ins that throw.
        "<script>for (const type of [Array, String, Map, Set, Element, Node, Document])"
        " for (const name of Object.getOwnPropertyNames(type.prototype))"
        " try { Object.defineProperty(type.prototype, name, {get() { throw 1 }}) } catch {}"
        "JSON.stringify = Object.defineProperty = WeakRef = WeakMap = null</script>",
        // Names that hide members.
        "<form><input name=id><input name=elements><input name=tagName><input name=length>"
        "<input name=getAttribute><input name=parentNode></form><img name=forms>"
        "<img name=getElementsByName><img name=getElementById><img name=activeElement>"
        "<form name=links></form>",
    };
    for (const std::string& page : pages) {
        SCOPED_TRACE(page);
        Open("<!doctype html>" + page +
             "<form id=g><input name=n id=u value=v></form><a id=l href=/x>次</a>");
        Do("put:u:value=w fire:u:onclick click:u");
        EXPECT_EQ(Described(Find("u"), ""), "INPUT type=text value=w name=n parent=g form=g");
        const Document document = browser().document();
        EXPECT_EQ(Ids(document.Named("n").by_name) + Ids(document.links()), "ul");
        EXPECT_EQ(document.activeElement().tagName(), "BODY");
    }
}

using Put = Suite;

TEST_F(Put, IsNoticedByThePageAsAUsersInput) {
    const struct {
        std::string html;  // the element has the id k
        std::string_view property, value;
        bool taken;
        std::string_view after;         // the property afterwards
        std::string_view events = "*";  // what the page saw; "*" for anything
    } rows[] = {
        {"<input id=k>", "value", "山田 🚀 \"'\\", true, "山田 🚀 \"'\\", "input change"},
        {"<input id=k value=old>", "value", "", true, "", "input change"},
        {"<input id=k type=number>", "value", "abc", false, "", ""},
        {"<input id=k type=color>", "value", "#FF0000", true, "#ff0000", "input change"},
        {"<input id=k disabled>", "value", "x", true, "x"},
        {"<textarea id=k></textarea>", "value", "一\r\n", true, "一\r\n", "input change"},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "1", true, "1",
         "input change"},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "2", false, "0", ""},
        {"<select id=k><option>a<option value=2>b</select>", "value", "2", true, "2",
         "input change"},
        {"<input id=k type=checkbox>", "checked", "True", true, "True", "click input change"},
        {"<input id=k type=checkbox checked>", "checked", "False", true, "False",
         "click input change"},
        {"<input id=k type=checkbox checked>", "checked", "True", true, "True", "change"},
        {"<input id=k type=checkbox disabled>", "checked", "True", true, "True"},
        {"<input id=k type=radio name=r><input type=radio name=r checked>", "checked", "True", true,
         "True", "click input change"},
        {"<input id=k type=radio name=s checked>", "checked", "False", true, "False"},
        {"<input id=k type=file>", "value", "/no/such/file", false, "", ""},
        {"<div id=k>文</div>", "value", "x", false, "", ""},
    };
    std::string body =
        "<script>for (const type of ['click', 'input', 'change']) addEventListener(type,"
        " e => e.target.title += (e.target.title ? ' ' : '') + type, true);</script>";
    for (const auto& row : rows) body += row.html + "\n";
    for (const bool in_one : {false, true}) {
        const auto elements = EachK(Open(body));
        ASSERT_EQ(elements.size(), std::size(rows));
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const auto& row = rows[i];
            const Element& element = elements[i];
            SCOPED_TRACE(row.html + (in_one ? " by Change" : " by Put"));
            EXPECT_EQ(in_one
                          ? element.Change(row.property, row.value)
                          : element.Put(row.property, row.value) && element.fireEvent("onchange"),
                      row.taken);
            const std::string seen = element.getAttribute("title").value_or("");
            EXPECT_EQ(element.Get(row.property), row.after);
            EXPECT_EQ(row.events == "*" ? "*" : seen, row.events);
        }
    }
}

TEST_F(Put, ReachesFieldsWhoseFrameworkTracksThemAndFilesAndHandlesFoundBefore) {
    const TemporaryFolder folder;
    const std::string file = folder.Write("一行.txt", "一行");
    Check({
        // As the frameworks do: the field's own accessor notes what scripts set, and an input event
        // that brings nothing new is not a user's.
        {"<input id=f><input type=checkbox id=c><p id=p contenteditable"
         " oninput=say(textContent)></p><script>"
         "const own = Object.getOwnPropertyDescriptor(f.constructor.prototype, 'value');"
         "let known = ''; Object.defineProperty(f, 'value', {get() { return own.get.call(f); },"
         " set(v) { known = v; own.set.call(f, v); }});"
         "f.oninput = () => { if (f.value !== known) say(known = f.value); };"
         "let set = false; Object.defineProperty(c, 'checked', {set() { set = true; }});"
         "c.onclick = () => say(set ? 'set' : 'clicked');</script>",
         "put:f:value=一 fire:f:onchange put:f:value=二 put:c:checked=True put:p:value=文",
         "一 二 clicked 文"},
        {"<input type=radio name=r id=a checked><input type=radio name=r id=b><input id=c>",
         "find:a put:b:checked=True put:c:value=2 is:a:checked is:b:checked is:c:value",
         "|False|True|2"},
        {"<input type=file id=f onchange='say(files[0].name + files[0].size)'>",
         "put:f:value=" + file + " is:f:value", "一行.txt6|" + file},
    });
}

}  // namespace
}  // namespace tamrin::conformance
