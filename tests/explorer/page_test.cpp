#include <gtest/gtest.h>

#include <iterator>

#include "explorer/browser_double.h"
#include "explorer/page_rig.h"
#include "platform/explorer/explorer_document.h"
#include "platform/explorer/page_pool.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

class PageTest : public PageRig {
protected:
    static std::string Ids(const std::vector<Element>& elements) {
        std::string ids;
        for (const Element& element : elements) ids += element.id() + " ";
        return ids;
    }
};

struct KeysRow {
    std::string_view html;  // the element has the id k
    std::string_view keys;  // tag|type|value|name|alt|href|onclick
};

constexpr KeysRow kRows[] = {
    {"<input id=k name=n value=v>", "INPUT|text|v|n|Null|Null|Null"},
    {"<input id=k type=PASSWORD value=日本>", "INPUT|password|日本||Null|Null|Null"},
    {"<input id=k type=checkbox onclick='f()'>", "INPUT|checkbox|on||Null|Null|f()"},
    {"<input id=k type=image alt=検索>", "INPUT|image|||検索|Null|Null"},
    {"<button id=k>送信</button>", "BUTTON|submit|||Null|Null|Null"},
    {"<textarea id=k>一\n二</textarea>", "TEXTAREA|textarea|一\r\n二||Null|Null|Null"},
    {"<select id=k><option>一<option value=2 selected>二</select>",
     "SELECT|select-one|2||Null|Null|Null"},
    {"<a id=k name=n href=x?a=1&amp;b=2>次</a>", "A|Null||n|Null|http://site/dir/x?a=1&b=2|Null"},
    {"<img id=k alt='絵'>", "IMG|Null|||絵|Null|Null"},
    {"<ul><li id=k value=3></li></ul>", "LI|Null|||Null|Null|Null"},
    {"<p id=k name=n type=t>文</p>", "P|t||n|Null|Null|Null"},
    {"<form id=k name=n><input name=id><input name=name><input name=type><input name=tagName>"
     "<input name=value></form>",
     "FORM|Null||n|Null|Null|Null"},
};

TEST_F(PageTest, AnswersTheKeysOfElementsInDocumentsOldAndNew) {
    for (const int mode : {11, 9, 7, 5}) {
        for (const KeysRow& row : kRows) {
            const Document page = Open(row.html, mode);
            const Element k = page.Named("k").by_id;
            std::string keys = k.tagName() + "|" + k.getAttribute("type").value_or("Null") + "|" +
                               k.value() + "|" + k.name();
            for (const char* name : {"alt", "href", "OnClick"})
                keys += "|" + k.getAttribute(name).value_or("Null");
            EXPECT_EQ(keys, row.keys) << row.html << " in mode " << mode;
        }
    }
}

TEST_F(PageTest, FindsElementsByEachLookup) {
    for (const int mode : {11, 7}) {
        const Document page = Open(
            "<form id=f><input id=a name=n><input id=b name=n></form><form><input id=c name=n>"
            "</form><input id=n><a id=l href=x></a><img name=forms>",
            mode);
        const NamedElements named = page.Named("n");
        EXPECT_EQ(Ids(named.by_name) + "/" + named.by_id.id() + "/", "a b c /n/");
        EXPECT_EQ(Ids(page.links()), "l ");
        EXPECT_EQ(Ids(page.getElementsByTagName("input")), "a b c n ");
        EXPECT_FALSE(page.Named("absent").by_id || page.Named("").by_id);
        EXPECT_EQ(page.url(), "http://site/dir/page");
        EXPECT_TRUE(named.by_name[0] == page.Named("a").by_id);
        EXPECT_FALSE(named.by_name[0] == named.by_name[1]);
        EXPECT_EQ(named.by_name[0].form().id() + named.by_name[0].parentElement().id(), "ff");
    }
}

TEST_F(PageTest, FindsInFormsWhatTheirControlsAreCalled) {
    const Document page = Open(
        "<form id=f><input id=a name=n><input id=b name=n></form><form><input id=c name=n></form>");
    EXPECT_EQ(Ids(page.Named("n").in_forms), "a c ");
}

TEST_F(PageTest, ReachesMembersThatThePageHides) {
    for (const int mode : {11, 7}) {
        const Document page = Open(
            "<form id=f name=n><input id=a name=id><input name=elements id=b><input name=tagName>"
            "<input name=getAttribute><input name=parentElement><input name=sourceIndex>"
            "<input name=submit id=s><input name=getElementsByTagName type=image id=p></form>"
            "<img name=getElementById><img name=forms><img name=activeElement><img name=URL>"
            "<a id=l href=x>l</a><img name=links><img name=getElementsByTagName>",
            mode);
        const Element f = page.Named("f").by_id;
        EXPECT_EQ(f.id() + f.name() + f.tagName() + f.parentElement().tagName(), "fnFORMBODY");
        EXPECT_EQ(f.getAttribute("id"), "f");
        EXPECT_EQ(Ids(page.Named("elements").in_forms), "b ");
        EXPECT_EQ(page.Named("b").by_id.DefaultButton().id(), "p");
        EXPECT_EQ(page.url() + page.activeElement().tagName(), "http://site/dir/pageBODY");
        EXPECT_EQ(Ids(page.links()), "l ");
        EXPECT_EQ(page.getElementsByTagName("form").size(), 1U);
    }
}

TEST_F(PageTest, ReachesFramesThatRefuseThemselves) {
    world.Serve("in", "<input id=a value=in>");
    world.Serve("http://other/", "<input id=b value=other>");
    for (const int mode : {11, 7}) {
        const Document page = Open(
            "<iframe id=i src=in></iframe><iframe name=o src=http://other/>"
            "</iframe>",
            mode);
        const std::vector<Frame> frames = page.frames();
        ASSERT_EQ(frames.size(), 2U);
        EXPECT_EQ(frames[0].name + "|" + frames[1].name, "i|o");
        EXPECT_EQ(frames[0].element.tagName(), "IFRAME");
        EXPECT_EQ(frames[0].document.Named("a").by_id.value(), "in");
        EXPECT_FALSE(frames[1].document);  // its browser cannot be had either
        world.objects.browser_of = [this](IDispatch* window) {
            const ComPtr<BrowserDouble> browser(new BrowserDouble);
            const DispatchObject script(ComPtr<IDispatch>(window),
                                        std::make_shared<ObjectType>(calls, "window"));
            browser->page = world.objects.Wrap(script.Get("document").Object().get());
            return ComPtr<IWebBrowser2>(browser.get());
        };
        EXPECT_EQ(page.frames()[1].document.Named("b").by_id.value(), "other");
        world.objects.browser_of = nullptr;
    }
}

TEST_F(PageTest, LeavesThePagesEmptyThatAFrameHasLeft) {
    world.Serve("in", "<input id=a value=in>");
    const Document page = Open("<iframe id=i src=in></iframe><iframe id=j src=in></iframe>");
    const auto frames = page.frames();
    world.Run(
        "page.__frames[0].document = makeDocument('http://site/b', '<p id=b>', 11, site,"
        " el('i'))");
    pool->DropLeftFrames();
    EXPECT_EQ(frames[0].document.url(), "");
    EXPECT_EQ(frames[1].document.Named("a").by_id.value(), "in");
    EXPECT_EQ(page.frames()[0].document.url(), "http://site/b");
    EXPECT_EQ(page.url(), "http://site/dir/page");
}

TEST_F(PageTest, PutsAsTheUserWould) {
    struct Row {
        std::string_view html;  // the element has the id k
        std::string_view property;
        std::string_view value;
        bool taken;
        std::string_view after;
        std::string_view said;
    };
    const Row rows[] = {
        {"<input id=k oninput=say('i') onchange=say('c')>", "value", "山", true, "山", "i,c"},
        {"<textarea id=k></textarea>", "value", "一\r\n二", true, "一\r\n二", ""},
        {"<select id=k onchange=say('c')><option>a<option>b</select>", "selectedIndex", "1", true,
         "1", "c"},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "2", false, "0", ""},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "b", false, "0", ""},
        {"<select id=k><option>a<option>b</select>", "value", "b", true, "b", ""},
        {"<input id=k type=checkbox onclick=say('k')>", "checked", "True", true, "True", "k"},
        {"<input id=k type=checkbox checked onclick=say('k')>", "checked", "True", true, "True",
         ""},
        {"<input id=k type=checkbox disabled onclick=say('k')>", "checked", "True", true, "True",
         ""},
        {"<input id=k type=radio checked>", "checked", "False", true, "False", ""},
        {"<input id=k>", "checked", "True", false, "False", ""},
        {"<input id=k type=file>", "value", "c:\\x", false, "", ""},
        {"<div id=k></div>", "value", "x", false, "", ""},
    };
    for (const Row& row : rows) {
        const Element k = Open(row.html).Named("k").by_id;
        EXPECT_EQ(k.Change(row.property, row.value), row.taken) << row.html;
        EXPECT_EQ(k.Get(row.property), row.after) << row.html;
        EXPECT_EQ(world.Ask("page.__said.join()"), row.said) << row.html;
    }
}

TEST_F(PageTest, FiresToTheHandlersOnTheWay) {
    for (const int mode : {11, 9, 7}) {
        const Document page =
            Open("<form id=f onchange=say('form')><input id=a onchange=say('field')></form>", mode);
        EXPECT_TRUE(page.Named("a").by_id.fireEvent("onchange"));
        EXPECT_EQ(world.Ask("page.__said.join()"), "field,form");
    }
}

// A record fires the event and then clicks, and a person's click is one.
TEST_F(PageTest, ClicksOnceWhatIsFiredAndClicked) {
    for (const int mode : {11, 9, 7}) {
        const Document page = Open(
            "<input type=checkbox id=c onclick=say('c')><div id=d onclick=say('d')>x</div>", mode);
        const Element c = page.Named("c").by_id;
        EXPECT_TRUE(c.fireEvent("onclick"));
        EXPECT_EQ(c.checked(), "False");
        EXPECT_TRUE(c.click());
        EXPECT_EQ(c.checked(), "True");
        EXPECT_TRUE(c.click());
        EXPECT_EQ(world.Ask("page.__said.join()"), "c,c") << mode;
        // What comes between the two makes them two.
        const Element d = page.Named("d").by_id;
        EXPECT_TRUE(d.fireEvent("onclick"));
        EXPECT_EQ(page.Named("c").by_id.checked(), "False");
        EXPECT_EQ(world.Ask("page.__said.join()"), "c,c,d") << mode;
        EXPECT_TRUE(c.fireEvent("onclick") && d.click());
        // The newest documents cannot run handlers without what the browser does for a click.
        EXPECT_EQ(world.Ask("page.__said.join()"), mode == 11 ? "c,c,d,d" : "c,c,d,c,d");
        EXPECT_EQ(c.checked(), "False");
    }
}

TEST_F(PageTest, AnswersPlacesAndButtons) {
    const Document page = Open(
        "<form id=f><input id=a data-box='10 20 30 50'><input id=p type=image><button id=b>x"
        "</button></form><input id=out>");
    const Element a = page.Named("a").by_id;
    EXPECT_EQ(a.getBoundingClientRect(), (Rect{10, 20, 30, 50}));
    EXPECT_FALSE(page.Named("out").by_id.getBoundingClientRect());
    EXPECT_EQ(a.DefaultButton().id(), "p");
    EXPECT_FALSE(page.Named("out").by_id.DefaultButton());
    world.Run(
        "var a = el('a'); a.parentElement.__children.shift();"
        "a.parentElement = el('p').parentElement = null");
    EXPECT_FALSE(page.Named("p").by_id.click());
    Sleep(1100);  // it was there when it was found
    EXPECT_EQ(a.value() + a.getAttribute("type").value_or(""), "");
}

}  // namespace
}  // namespace tamrin::test
