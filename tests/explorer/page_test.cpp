#include "explorer/explorer_rig.h"
#include "platform/explorer/explorer_element.h"
#include "platform/explorer/page_geometry.h"

namespace tamrin::test {
namespace {

using PageTest = ExplorerTest;

std::string Ids(const std::vector<Element>& elements) {
    std::string ids;
    for (const Element& element : elements) ids += element.id() + " ";
    return ids;
}

TEST_F(PageTest, IsReadInEachDocumentMode) {
    const struct {
        std::string_view html;  // the element has the id k
        std::string_view read;  // a property, or an attribute after "@"
        std::string_view answer;
    } rows[] = {
        {"<input id=k>", "@type", "text"},
        {"<button id=k></button>", "@TYPE", "submit"},
        {"<select id=k><option>a</select>", "@type", "select-one"},
        {"<p id=k>", "@alt", "Null"},
        {"<a id=k href=x>", "@href", "http://site/x"},
        {"<a id=k href=x>", "href", "http://site/x"},
        {"<p id=k name=n>", "name", "n"},  // has no such property
        {"<form id=k src=x>", "src", ""},
        {"<textarea id=k>a\nb\r\n\nc</textarea>", "value", "a\r\nb\r\n\r\nc"},
        {"<select id=k><option>a</select>", "value", "a"},
        {"<input id=k selectedIndex=1>", "selectedIndex", ""},
        {"<input id=k checked>", "checked", "True"},
        {"<button id=k checked></button>", "checked", ""},
        {"<b id=k>x<i>y</i></b>", "innerText", "xy"},
    };
    for (const int mode : {11, 8, 7}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(testing::Message() << mode << row.html);
            const Element k = Open(row.html, mode).Named("k").by_id;
            const auto answer =
                row.read.starts_with('@') ? k.getAttribute(row.read.substr(1)) : k.Get(row.read);
            EXPECT_EQ(answer.value_or("Null"), row.answer);
        }
    }
}

TEST_F(PageTest, ReachesMembersThatThePageHides) {
    for (const int mode : {11, 7}) {
        const Document shown = Open(
            "<form id=f name=n><input id=a name=id><input name=elements id=b><input name=tagName>"
            "<input name=getAttribute><input name=parentElement><input name=sourceIndex>"
            "<input name=submit id=s><input name=getElementsByTagName type=image id=p></form>"
            "<img name=getElementById><img name=forms><img name=activeElement><img name=URL>"
            "<a id=l href=x>l</a><img name=links><img name=getElementsByTagName>",
            mode);
        const Element f = shown.Named("f").by_id;
        EXPECT_EQ(f.id() + f.name() + f.tagName() + f.parentElement().tagName(), "fnFORMBODY");
        EXPECT_EQ(f.getAttribute("id"), "f");
        EXPECT_EQ(Ids(shown.Named("elements").in_forms) + Ids(shown.links()), "b l ");
        EXPECT_EQ(Ids(shown.Named("").in_forms), "");
        EXPECT_EQ(shown.Named("b").by_id.DefaultButton().id(), "p");
        EXPECT_EQ(shown.url() + shown.activeElement().tagName(), "http://site/BODY");
        EXPECT_EQ(Ids(shown.getElementsByTagName("form")), "f ");
    }
}

TEST_F(PageTest, ReachesFramesUntilTheyAreLeft) {
    const Document top = Open(
        "<iframe id=i src=http://site/i srcdoc='<iframe src=http://site/n></iframe>'></iframe>"
        "<iframe id=j src=http://other/ name=n></iframe>");
    auto frames = top.frames();
    EXPECT_EQ(frames.at(0).name + frames.at(1).name + frames[1].element.id(), "inj");
    EXPECT_EQ(frames[0].document.frames().at(0).document.url(), "http://site/n");
    EXPECT_FALSE(frames[1].document);  // of another origin, and without a browser
    const ComPtr<BrowserDouble> inner(new BrowserDouble(world.faults));
    inner->is["Document"] = Variant(page->frames.at(&El("j"))->document().get());
    world.browser = inner.get();
    EXPECT_EQ(top.frames()[1].document.url(), "http://other/");
    page->frames.at(&El("i")) = &world.Open("<p id=b>", 11, "http://site/b");
    it->Tell(DISPID_NAVIGATECOMPLETE2, "http://site/b", 0, inner.get());
    EXPECT_EQ(frames[0].document.url(), "");
    EXPECT_EQ(top.frames()[0].document.url() + top.url(), "http://site/bhttp://site/");
    EXPECT_EQ(Open("<frame id=x src=y>", 7).frames().at(0).document.url(), "y");
}

TEST_F(PageTest, IsWrittenAsTheUserWould) {
    const struct {
        std::string_view html;  // the element has the id k
        std::string_view property, value;
        bool taken;
        std::string_view after, said;
    } rows[] = {
        {"<input id=k oninput=i onchange=c>", "value", "山", true, "山", "i c "},
        {"<input id=k type=number value=3>", "value", "x", false, "3", ""},
        {"<input id=k type=number value=3>", "value", "", true, "", ""},
        {"<select id=k onchange=c><option>a<option>b</select>", "selectedIndex", "1", true, "1",
         "c "},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "2", false, "0", ""},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "-1", false, "0", ""},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "1b", false, "0", ""},
        {"<select id=k oninput=i><option>a<option>b</select>", "value", "b", true, "b", "i "},
        {"<select id=k><option>a<option>b</select>", "value", "c", false, "a", ""},
        {"<input id=k type=checkbox checked onclick=k>", "checked", "True", true, "True", ""},
        {"<input id=k type=checkbox checked onclick=k>", "checked", "False", true, "False", "k "},
        {"<input id=k type=checkbox disabled onclick=k>", "checked", "True", true, "True", ""},
        {"<input id=k type=radio onclick=k>", "checked", "True", true, "True", "k "},
        {"<input id=k type=radio checked onclick=k>", "checked", "False", true, "False", ""},
        {"<input id=k>", "selectedIndex", "0", false, "", ""},
        {"<input id=k type=file>", "value", "c:\\x", false, "", ""},
        {"<button id=k value=v oninput=i></button>", "value", "x", true, "x", ""},
        {"<div id=k></div>", "value", "x", false, "", ""},
        {"<p id=k contenteditable oninput=i>文</p>", "innerText", "x", false, "文", ""},
        {"<p id=k contenteditable oninput=i>文</p>", "value", "x", true, "", "i "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.html);
        const Element k = Open(row.html).Named("k").by_id;
        EXPECT_EQ(k.Change(row.property, row.value), row.taken);
        EXPECT_EQ(k.Get(row.property), row.after);
        EXPECT_EQ(page->said, row.said);
    }
}

TEST_F(PageTest, FiresClickHandlersWithoutTheBrowsersOwnAction) {
    for (const int mode : {11, 7}) {
        const Document shown = Open("<input type=checkbox id=c onclick=c><p id=d onclick=d>", mode);
        const Element c = shown.Named("c").by_id, d = shown.Named("d").by_id;
        EXPECT_TRUE(c.fireEvent("onclick") && d.fireEvent("onclick") && !d.fireEvent("click"));
        // The newest documents cannot run handlers without the browser's own action for a click.
        EXPECT_EQ(c.checked() + " " + page->said, mode == 11 ? "False d " : "False c d ");
        EXPECT_TRUE(c.click());
        EXPECT_EQ(c.checked(), "True");
    }
}

TEST_F(PageTest, AnswersButtonsUntilAnElementIsGone) {
    const Document shown = Open(
        "<form id=f><input id=a value=v><input id=p type=image><button id=b></button></form><form>"
        "<button id=c></button><input type=submit></form><input id=out>");
    const Element a = shown.Named("a").by_id;
    EXPECT_EQ(a.DefaultButton().id(), "p");
    EXPECT_EQ(shown.Named("c").by_id.DefaultButton().id(), "c");
    EXPECT_FALSE(shown.Named("out").by_id.DefaultButton());
    a.scrollIntoView();
    EXPECT_EQ(page->said, "scrolled ");
    El("f").parent = nullptr;  // a script has removed it
    EXPECT_FALSE(a.click() || a.Put("value", "w") || a.getBoundingClientRect());
    now = 999;
    EXPECT_EQ(a.value(), "v") << "it was there when it was found";
    now = 1000;
    EXPECT_EQ(a.value() + a.getAttribute("type").value_or(""), "");
}

TEST_F(PageTest, StandsOnTheScreenWithFramesAndZoom) {
    const BrowserWindowDouble window;
    RECT place{};
    GetWindowRect(window.content, &place);
    for (const int mode : {11, 7}) {
        const Document shown = Open(
            "<b id=a data-box='5 -8 300 300'></b><b id=out></b><iframe data-box='100 200 300 400' "
            "id=f srcdoc=\"<p id=p data-box='0 0 500 500'><b id=b data-box='10 20 60 40'>\">",
            mode);
        const Element b = shown.frames().at(0).document.Named("b").by_id;
        const auto point = [&](const Element& element) {
            const auto at = ScreenPointOf(element, window.content).value_or(ScreenPoint());
            return std::pair(at.x - place.left, at.y - place.top);
        };
        const auto under = [&](int x, int y) {
            return Ids(ElementsAt({place.left + x, place.top + y}, window.content,
                                  ExplorerElement::Of(shown.Named("a").by_id)->page()));
        };
        EXPECT_EQ(point(shown.Named("a").by_id), std::pair(5L, -8L));
        EXPECT_EQ(point(b), std::pair(112L, 223L));
        EXPECT_EQ(under(5, 5) + under(113, 225) + under(111, 225) + under(350, 5), "a f b f p ");
        page->screen_dpi = 144;
        EXPECT_EQ(point(b), std::pair(168L, 335L));
        EXPECT_EQ(under(169, 337), "f b ");
        EXPECT_FALSE(ScreenPointOf(shown.Named("out").by_id, window.content));
        const HWND cover = MakeWindow(L"TamrinTestWindow", window.frame, WS_POPUP, place);
        EXPECT_EQ(under(5, 5), "");
        DestroyWindow(cover);
    }
}

TEST_F(PageTest, TellsOfTheUserInsideDeliverOnlyWithTheMoment) {
    for (const int mode : {11, 7}) {
        const Document shown = Open(
            "<form id=f name=g><p id=p><input id=a onclick=f value=v><button id=d></button></form>"
            "<form id=h><input id=c></form>",
            mode);
        Log log(*browser, shown);
        page->Focus(El("a"));
        EXPECT_TRUE(page->Fire(&El("a"), "onclick"));
        El("a").value = "w";
        page->Fire(&El("a"), "onkeypress", 13);
        page->Fire(&El("f"), "onsubmit");
        page->Fire(&El("h"), "onsubmit");  // nobody is in it
        page->Focus(El("c"));
        page->Fire(&El("f"), "onsubmit");
        page->Fire(&El("h"), "onsubmit");
        El("a").value = "later";
        EXPECT_EQ(log.lines, Strings());
        log.during = [&](const std::string& event) {
            if (event != "key13") return;
            const auto before = calls.count();
            const Element a = log.page.activeElement();
            log.lines.push_back(a.getAttribute("TYPE").value_or("") + a.form().name() +
                                a.getAttribute("onclick").value_or("") + a.parentElement().id() +
                                a.tagName() + a.checked() + a.DefaultButton().id());
            EXPECT_EQ(calls.count(), before);
            EXPECT_TRUE(a.Put("value", "own"));
            EXPECT_EQ(a.value(), "own");  // what is written counts
        };
        browser->DeliverEvents();
        EXPECT_EQ(log.lines, (Strings{"focus a=v", "click a=v", "key13 a=w", "textgfpINPUTFalsed",
                                      "submit a=w", "leave a=w", "focus c=", "submit c="}));
    }
}

TEST_F(PageTest, TellsOneEventAfterTheOtherUntilTheSubscriptionEnds) {
    const Document shown = Open("<input id=a onfocusin=in><input id=b>");
    Log log(*browser, shown);
    log.during = [&](const std::string& event) {
        browser->DeliverEvents();
        if (event != "click") return;
        // The focus is fired to those who listen, and not to the page.
        log.during = nullptr;
        EXPECT_TRUE(log.page.activeElement().fireEvent("onfocusin"));
        log.page_connection.reset();
    };
    page->Focus(El("a"));
    page->Fire(&El("a"), "onclick");
    page->Focus(El("b"));
    browser->DeliverEvents();
    page->Focus(El("a"));
    browser->DeliverEvents();
    EXPECT_EQ(log.lines, (Strings{"focus a=", "click a=", "focus a="}));
    EXPECT_EQ(page->said, "in in ");
}

}  // namespace
}  // namespace tamrin::test
