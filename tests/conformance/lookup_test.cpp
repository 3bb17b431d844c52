#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using GetElementsByTagName = Suite;

TEST_F(GetElementsByTagName, AnswersDocumentOrder) {
    const Document document = Open(
        "<!doctype html><html id=1><head id=2></head><body id=3><form id=4><p id=5><input id=6></p>"
        "</form><input id=7 form=4><svg id=8><a id=9></a></svg></body></html>");
    EXPECT_EQ(Ids(document.getElementsByTagName("*")), "1 2 3 4 5 6 7 8 9");
    EXPECT_EQ(Ids(document.getElementsByTagName("INPUT")), "6 7");
    EXPECT_EQ(Ids(document.getElementsByTagName("input")), "6 7");
    EXPECT_EQ(Ids(document.getElementsByTagName("table")), "");
}

TEST_F(GetElementsByTagName, BringsKeysWithoutFurtherCalls) {
    std::string body;
    for (int i = 0; i < 500; ++i) {
        const std::string n = std::to_string(i);
        body += "<input id=i" + n + " name=n value=v" + n + " alt='' onclick=f()>";
    }
    const Document document = Open(body);
    const auto before = back_end().RoundTrips();
    int i = 0;
    for (const Element& e : document.getElementsByTagName("input")) {
        const std::string n = std::to_string(i++);
        EXPECT_EQ(e.id() + e.name() + e.tagName() + e.value() + e.Get("href") +
                      e.getAttribute("type").value_or("Null") +
                      e.getAttribute("alt").value_or("Null") +
                      e.getAttribute("onclick").value_or("Null"),
                  "i" + n + "nINPUTv" + n + "textf()");
    }
    EXPECT_EQ(i, 500);
    EXPECT_EQ(document.Named("i7").by_id.value(), "v7");
    ExpectRoundTrips(before, 2U);
}

using Named = Suite;

std::string Values(const std::vector<Element>& elements) {
    std::string values;
    for (const Element& element : elements) AddWord(values, element.value());
    return values;
}

TEST_F(Named, AnswersEachOfTheThreeLookups) {
    const struct {
        std::string_view name;
        std::string_view found;  // the values by name, by id and in forms
    } rows[] = {
        {"user", "a1 a2 a3|b1|a1 a3"},
        {"only-id", "|c1|c1"},
        {"secret", "d1 d2|d2|d1"},
        {"twice", "|e1|e1"},
        {"郵便番号", "f1||f1"},
        {R"(q"'\]b[0])", "g1||g1"},
        {"outside", "h1||"},
        {"linked", "i1||i1"},
        {"picture", "j1||"},
        {"elements", "k1||k1"},
        {"length", "||"},
        {"__proto__", "||"},
        {"absent", "||"},
        {"", "||"},
        {" user", "||"},
        {"\xFF\xED\xA0\x80", "||"},
    };
    const Document document = Open(
        "<form id=first><input name=user value=a1><input name=user value=a2><input id=only-id value=c1>"
        "<input type=hidden name=secret value=d1><input id=twice value=e1><input id=twice value=e2>"
        "<input name=郵便番号 value=f1><input name='q&quot;&#39;\\]b[0]' value=g1></form>"
        "<form><input name=user value=a3><input name=elements value=k1>"
        "<input type=image name=picture value=j1></form>"
        "<input name=outside value=h1><input id=user value=b1><input name=secret id=secret value=d2>"
        "<input name=linked form=first value=i1>");
    for (const auto& row : rows) {
        const NamedElements named = document.Named(row.name);
        EXPECT_EQ(Values(named.by_name) + "|" + named.by_id.value() + "|" + Values(named.in_forms),
                  row.found)
            << row.name;
    }
}

TEST_F(Named, WorksInPagesThatTakeTheirWorldApart) {
    const std::string pages[] = {
        "<meta http-equiv=Content-Security-Policy content=\"script-src 'none'\">",
        // Built-ins that throw, and that answer wrongly.
        "<script>for (const type of [Array, String, Map, Set, Element, Node, Document])"
        " for (const name of Object.getOwnPropertyNames(type.prototype))"
        " try { Object.defineProperty(type.prototype, name, {get() { throw 1 }}) } catch {}"
        "JSON.stringify = Object.defineProperty = WeakRef = WeakMap = null</script>",
        "<script>Array.prototype.map = Array.prototype.toJSON = () => 'x';"
        "JSON.stringify = () => '0'; document.getElementById = () => null;"
        "Object.prototype.id = 'bad'; String.prototype.toWellFormed = () => 'bad';</script>",
        // Names that hide members.
        "<form><input name=id><input name=elements><input name=tagName><input name=length>"
        "<input name=getAttribute><input name=parentNode></form><img name=forms>"
        "<img name=getElementsByName><img name=getElementById><img name=activeElement>"
        "<form name=links></form>",
        // A page that writes itself anew.
        "<script>document.addEventListener('DOMContentLoaded', () => setTimeout(() => {"
        " document.open(); document.write('<form id=g><input name=n id=u value=v></form>"
        "<a id=l href=/x>l</a>'); document.close() }))</script>",
    };
    for (const std::string& page : pages) {
        SCOPED_TRACE(page);
        Open("<!doctype html>" + page +
             "<form id=g><input name=n id=u value=v></form><a id=l href=/x>次</a>");
        EXPECT_TRUE(Wait([&] { return browser().document().Named("n").in_forms.size() == 1; }));
        const Document document = browser().document();
        const NamedElements named = document.Named("n");
        EXPECT_EQ(Ids(named.by_name) + Ids(named.in_forms) + Ids(document.links()), "uul");
        EXPECT_EQ(document.activeElement().tagName(), "BODY");
        for (const Element& form : document.getElementsByTagName("form")) {
            EXPECT_EQ(form.tagName(), "FORM");
        }
        const Element field = Find("u");
        EXPECT_EQ(field.form().id() + field.parentElement().id(), "gg");
        EXPECT_TRUE(field.Put("value", "w") && field.fireEvent("onclick") && field.click());
        EXPECT_EQ(field.value(), "w");
    }
}

TEST_F(Named, AnswersTheSameElementHoweverItIsFound) {
    const Document document = Open("<form><input id=a name=b><input id=c name=b></form>");
    const NamedElements named = document.Named("b");
    ASSERT_EQ(named.by_name.size(), 2U);
    EXPECT_EQ(named.by_name[0], Find("a"));
    EXPECT_EQ(named.by_name[0], document.getElementsByTagName("input")[0]);
    EXPECT_EQ(named.by_name[0], named.in_forms.at(0));
    EXPECT_FALSE(named.by_name[0] == named.by_name[1]);
    EXPECT_FALSE(Find("a") == Element());
    EXPECT_EQ(Element(), Find("absent"));
}

using Links = Suite;

TEST_F(Links, AnswersLinksWithTextAndWholeAddress) {
    const Document document = Open(
        "<a id=a href=/x>  次の<b> 頁</b></a><a id=none>印</a><link rel=help href=/h>"
        "<map name=m><area id=b alt=地図 href='?q=1'></map><img usemap=#m width=9 height=9>"
        "<a id=c href='http://example.test/日本'><img alt=絵></a><a id=d href=mailto:a@b.jp>便</a>");
    const auto links = document.links();
    const auto before = back_end().RoundTrips();
    Strings lines;
    for (const Element& e : links) {
        lines.push_back(e.id() + "|" + e.innerText() + "|" + *e.getAttribute("href") + "|" +
                        e.getAttribute("alt").value_or("Null"));
    }
    EXPECT_EQ(
        lines,
        (Strings{"a|次の 頁|" + Url("/x") + "|Null", "b||" + document.url() + "?q=1|地図",
                 "c||http://example.test/%E6%97%A5%E6%9C%AC|Null", "d|便|mailto:a@b.jp|Null"}));
    EXPECT_EQ(links.at(0).Get("href"), Url("/x"));
    ExpectRoundTrips(before, 0U);
}

using ElementReads = Suite;

TEST_F(ElementReads, AnswersParentFormAndOptions) {
    Open(
        "<form id=f><table id=t><tr><td id=td><input id=in></table><button id=go></button></form>"
        "<input id=linked form=f><div id=d><input id=free></div><select id=s><option> 一 <optgroup"
        " label=g><option value=2>二</optgroup><option></select>");
    const struct {
        const char* id;
        const char* related;  // the ids of its parent, its form and the button that Enter presses
        Strings options = {};
    } rows[] = {
        {"in", "td f go"}, {"linked", " f go"},           {"free", "d  "},
        {"d", "  "},       {"s", "  ", {"一", "二", ""}},
    };
    for (const auto& row : rows) {
        const Element e = Find(row.id);
        EXPECT_EQ(e.parentElement().id() + " " + e.form().id() + " " + e.DefaultButton().id(),
                  row.related)
            << row.id;
        EXPECT_EQ(e.OptionTexts(), row.options) << row.id;
    }
    const Element html = Find("d").parentElement().parentElement();
    EXPECT_EQ(html.tagName(), "HTML");
    EXPECT_FALSE(html.parentElement() || html.form());
}

TEST_F(ElementReads, AnswersTheFocus) {
    const Document document = Open("<input id=a><input id=b autofocus>");
    ASSERT_TRUE(WaitFocus("b"));
    EXPECT_TRUE(document.hasFocus());
    EXPECT_EQ(document.activeElement().getAttribute("type"), "text");
    EXPECT_EQ(Open("<input>").activeElement().tagName(), "BODY");
}

}  // namespace
}  // namespace tamrin::conformance
