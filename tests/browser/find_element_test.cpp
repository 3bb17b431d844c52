#include "browser/find_element.h"

#include <gtest/gtest.h>

#include "browser/element_keys.h"
#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

struct Web : testing::Test {
    Document Page(const std::string& html) {
        web.pages["p"] = html;
        return MakeDocument(web, "p");
    }
    VirtualClock clock;
    ScriptedWeb web{clock};
};

class FindElementTest : public Web {
protected:
    // What tells the found element apart: its attribute "k".
    std::string Find(const std::string& html, std::string_view id, std::string_view type,
                     std::string_view indt = "") {
        return GetAttr(FindElement(Page(html), id, type, indt), "k");
    }
};

TEST_F(FindElementTest, TriesItsSearchesInOrder) {
    struct Row {
        const char* what;
        const char* html;
        const char* id;
        const char* type;
        const char* indt;
        const char* found;
    };
    const Row rows[] = {
        {"no id: the first of that type and value",
         "<input type=submit value=a k=1><input type=submit value=B k=2>", "", "Submit", "b", "2"},
        {"no id, no value: the first of that type",
         "<p k=0><input type=text k=1><input type=submit k=2></p>", "", "submit", "", "2"},
        {"no id: a link is of type href, its alt is its value",
         "<a k=1>x</a><a href=u alt=go k=2>y</a>", "", "href", "GO", "2"},
        {"named, of that type", "<input name=n type=hidden k=1><input name=n type=text k=2>", "n",
         "TEXT", "", "2"},
        {"named, no type: the first INPUT", "<select name=n k=1></select><input name=n k=2>", "n",
         "", "", "2"},
        {"the first radio of a group", "<input type=radio name=r k=1><input type=radio name=r k=2>",
         "r", "radio", "True", "1"},
        {"by its id, whatever its type", "<div id=n k=1></div>", "n", "text", "", "1"},
        {"an id that stands on a hidden field gives way to the name",
         "<input id=n type=hidden k=1><textarea name=n k=2></textarea>", "n", "text", "", "2"},
        {"a hidden field of that name serves in the end", "<input name=n type=hidden k=1>", "n",
         "text", "", "1"},
        {"a form's field, unless hidden",
         "<form><input id=x type=hidden k=1></form><form><input id=x type=hidden k=2></form>", "x",
         "text", "", ""},
        {"nothing", "<input id=a name=b type=text k=1>", "c", "text", "v", ""},
        {"no keys at all", "<input type=text k=1>", "", "", "", ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Find(row.html, row.id, row.type, row.indt), row.found) << row.what;
    }
}

TEST_F(FindElementTest, CountsWhatTheSearchThatFoundItAccepts) {
    struct Row {
        const char* html;
        const char* id;
        const char* type;
        int search;
        int count;
    };
    const Row rows[] = {
        {"<input type=submit><p></p><input type=submit>", "", "submit", 1, 2},
        {"<input name=n type=text><input name=n type=radio><input name=n type=TEXT>", "n", "text",
         2, 2},
        {"<div id=n></div><p name=n></p>", "n", "text", 3, 1},
        {"<p name=n></p><p name=n></p>", "n", "text", 4, 2},
        {"<form><p id=m></p><input id=x type=hidden></form>", "x", "", 0, 0},
    };
    for (const Row& row : rows) {
        const Document page = Page(row.html);
        const FoundElement found = CountElements(page, row.id, row.type, "");
        EXPECT_EQ(found.search, row.search) << row.html;
        EXPECT_EQ(found.count, row.count) << row.html;
        EXPECT_EQ(found.element, FindElement(page, row.id, row.type, "")) << row.html;
    }
}

TEST_F(FindElementTest, AsksThePageOnceForARecordWithAnId) {
    Find("<input id=n type=text><form><input name=m></form>", "missing", "text");
    EXPECT_EQ(web.lookups, 1);
    web.lookups = 0;
    Find("<input type=text k=1>", "", "text");
    EXPECT_EQ(web.lookups, 1);
}

TEST_F(FindElementTest, EntersFramesOneLevelDeepAndInOrder) {
    web.pages["outer"] = "<iframe src=none></iframe><iframe src=a></iframe><iframe src=b></iframe>";
    web.pages["a"] = "<iframe src=deep></iframe>";
    web.pages["b"] = "<input id=n k=b><input id=m k=bm>";
    web.pages["deep"] = "<input id=n k=deep>";
    const Element found = FindThroughFrames(
        MakeDocument(web, "outer"),
        [](const Document& document) { return FindElement(document, "n", "text", ""); });
    EXPECT_EQ(GetAttr(found, "k"), "b");
}

TEST_F(FindElementTest, FindsByTagAndValue) {
    const Document page = Page("<img alt=v k=1><input value=V k=2>");
    EXPECT_EQ(GetAttr(FindByValue(page, "input", "v"), "k"), "2");
    EXPECT_EQ(GetAttr(FindByValue(page, "*", "v"), "k"), "1");
    EXPECT_FALSE(FindByValue(page, "*", "w"));
}

using ElementKeysTest = Web;

TEST_F(ElementKeysTest, ReadsEachKeyByItsRule) {
    const Document page = Page(
        "<form name=f id=fi><input id=i name=n value=v alt=a></form><form id=noname>"
        "<input name=only alt=al></form><a href=h>t</a><span></span>"
        "<select id=s><option>one</option><option>two</option></select>"
        "<input type=radio id=r checked><input id=o type=text>");
    const auto by = [&](std::string_view id) { return page.Named(id).by_id; };
    const Element input = by("i");
    EXPECT_EQ(GetElementId(input), "i");
    EXPECT_EQ(GetElementType(input), "text");
    EXPECT_EQ(GetValue(input), "v");
    EXPECT_EQ(GetFormName(input), "f");
    const Element only = page.Named("only").by_name.at(0);
    EXPECT_EQ(GetElementId(only), "only");
    EXPECT_EQ(GetValue(only), "al");
    EXPECT_EQ(GetFormName(only), "noname");
    EXPECT_EQ(GetElementType(page.getElementsByTagName("a").at(0)), "href");
    EXPECT_EQ(GetElementType(page.getElementsByTagName("span").at(0)), "");
    EXPECT_EQ(GetDisplayValue(by("s")), "one");
    EXPECT_EQ(GetDisplayValue(by("r")), "True");
    for (auto* read : {GetElementId, GetElementType, GetValue, GetHref, GetElementName, GetTagName,
                       GetFormName, GetDisplayValue}) {
        EXPECT_EQ(read(Element()), "");
    }
}

TEST_F(ElementKeysTest, TakesAFrameByNameOrTheFirst) {
    web.pages["a"] = "<p>";
    web.pages["b"] = "<p>";
    const Document page = Page("<iframe name=x src=a></iframe><iframe id=y src=b></iframe>");
    EXPECT_EQ(GetFrameDocument(page, "").url(), "a");
    EXPECT_EQ(GetFrameDocument(page, "y").url(), "b");
    EXPECT_FALSE(GetFrameDocument(page, "z"));
    EXPECT_FALSE(GetFrameDocument(Document(), ""));
}

}  // namespace
}  // namespace tamrin::test
