#include "browser/find_element.h"

#include <gtest/gtest.h>

#include "browser/element_keys.h"
#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

class FindElementTest : public testing::Test {
protected:
    Document Page(const std::string& html) {
        web.pages["p"] = html;
        return Document(ScriptedPage::Load(web, "p"));
    }
    VirtualClock clock;
    ScriptedWeb web{clock};
};

// Elements are told apart by their attribute "k".
TEST_F(FindElementTest, TriesItsSearchesInOrder) {
    web.pages["f"] = "<input id=in k=f><a href=\"http://h/f\" k=l>inner</a><a href=rel k=r>x</a>";
    web.pages["g"] = "<iframe src=f></iframe>";
    const std::string frames = "<iframe src=no></iframe><iframe src=g></iframe><iframe src=f>";
    const std::string twice = "<iframe src=f></iframe><iframe src=f></iframe>";
    const std::string two = "<a href=\"http://h/b\" k=1>x</a><a id=i href=\"http://h/b\" k=2>y</a>";
    const std::string hidden = "<input id=n name=n type=hidden k=1>";
    constexpr const char* kSearches[] = {"nothing", "type",  "name+type", "id",   "name",
                                         "form",    "radio", "value",     "text", "address"};
    const struct {
        std::string html;
        ElementKeys keys;
        const char* found;  // the search, the element, how many it accepts, round trips
    } rows[] = {
        {"<p type=t value=a></p><p type=t value=B k=2></p>", {"", "T", "b"}, "type 2 1 1"},
        {"<p></p><p type=t k=2></p><p type=t></p>", {"", "t", ""}, "type 2 2 1"},
        {"<p type=submit>a</p><p type=submit k=2> b\n</p>", {"", "submit", "", "B"}, "type 2 1 1"},
        {"<a>x</a><a href=u alt=go k=2>y</a>", {"", "href", "GO"}, "type 2 1 2"},
        {hidden + "<p name=n type=t k=2></p><p name=n type=t>", {"n", "T", ""}, "name+type 2 2 1"},
        {"<p name=n></p><input name=n k=2>", {"n", "", ""}, "name+type 2 1 1"},
        {"<p name=n></p><div id=n k=1></div>", {"n", "text", ""}, "id 1 1 1"},
        {"<p id=n type=hidden></p><p name=n k=2></p><p name=n>", {"n", "t", ""}, "name 2 2 1"},
        {hidden, {"n", "text", ""}, "name 1 1 1"},
        {"<form><p id=n type=hidden></form><form><p id=n k=2></form>",
         {"n", "t", ""},
         "form 2 1 1"},
        {"<img alt=v><input value=V k=2>", {"no", "", "v"}, "value 2 1 2"},
        {"<img alt=v k=1>", {"no", "", "v"}, "value 1 1 3"},
        {"<input type=text>", {"", "", ""}, "nothing  0 1"},
        {frames, {"in", "text", ""}, "id f 1 3"},
        {"<iframe src=g></iframe>", {"in", "text", ""}, "nothing  0 2"},
        {frames, {"", "href", "http://h/f"}, "address l 1 3"},
        {frames, {"", "href", "inner"}, "text l 1 5"},
        {frames, {"", "href", "rel"}, "address r 1 3"},
        {twice, {"i", "href", "http://h/f"}, "nothing  0 6"},
        {twice, {"", "href", "inner"}, "text l 1 4"},
        {"<a k=1 href=a> <b>A\n b</b> </a><a href=b>a b", {"", "HREF", "A\r\nB"}, "text 1 2 1"},
        {"<a k=1 href=\"https://A\">", {"", "href", "https://a"}, "address 1 1 1"},
        {"<a k=1 href=\"ftp://h/a\">", {"", "href", "ftp://h/a"}, "address 1 1 1"},
        {"<a href=u>u2</a><p value=u>", {"i", "href", "u"}, "nothing  0 2"},
        {two, {"i", "href", "http://h/b"}, "id 2 1 2"},
        {"<a href=x>javascript:f()</a>", {"i", "href", "javascript:f()"}, "nothing  0 1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.html + " for " + row.keys.id + " " + row.keys.type + " " + row.keys.indt);
        const Document page = Page(row.html);
        web.lookups = 0;
        const Found first = FindElement(page, row.keys);
        const std::string trips = std::to_string(web.lookups);
        const Found all = FindElement(page, row.keys, Count::kAll);
        EXPECT_EQ(all.element, first.element);
        EXPECT_EQ(kSearches[static_cast<int>(first.by)] + (" " + GetAttr(first.element, "k")) +
                      " " + std::to_string(all.count) + " " + trips,
                  row.found);
    }
}

TEST_F(FindElementTest, FindsARadioButtonByItsExactValue) {
    web.pages["f"] = "<input name=g type=radio value=x k=f>";
    const Document page = Page("<p name=g value=x><p name=g type=RADIO value=y k=1><iframe src=f>");
    EXPECT_EQ(GetAttr(FindRadio(page, "g", "y").element, "k"), "1");
    EXPECT_EQ(GetAttr(FindRadio(page, "g", "x").element, "k"), "f");
    EXPECT_EQ(FindRadio(page, "g", "Y").by, FoundBy::kNothing);
}

TEST_F(FindElementTest, ReadsEachKeyByItsRule) {
    const Document page = Page(
        "<form name=f><input id=i name=n value=v alt=a></form>"
        "<form id=g><input name=only alt=al></form><a href=h>t</a>");
    std::string keys;
    for (const char* tag : {"input", "a"}) {
        for (const Element& element : page.getElementsByTagName(tag)) {
            for (auto* key : {GetElementId, GetElementName, GetTagName, GetElementType, GetValue,
                              GetHref, GetFormName}) {
                keys += key(element) + ",";
            }
        }
    }
    EXPECT_EQ(keys, "i,n,INPUT,text,v,,f,only,only,INPUT,text,al,,g,,,A,href,,h,,");
}

}  // namespace
}  // namespace tamrin::test
