#include "explorer/explorer_rig.h"
#include "platform/explorer/explorer_element.h"
#include "platform/explorer/page_geometry.h"

namespace tamrin::test {
namespace {

// Runs each test with the newest kind of documents and with an old one.
class PageTest : public ExplorerTest, public testing::WithParamInterface<int> {
protected:
    PageTest() { world.mode = GetParam(); }
};
INSTANTIATE_TEST_SUITE_P(DocumentMode, PageTest, testing::Values(11, 7));

std::string Ids(const std::vector<Element>& elements) {
    std::string ids;
    for (const Element& element : elements) ids += element.id() + " ";
    return ids;
}

TEST_P(PageTest, IsReadInEachDocumentMode) {
    // What is read of the element with the id k is a property, or an attribute after "@".
    const struct {
        std::string_view html, read, answer;
    } rows[] = {
        {"<input id=k>", "@type", "text"},
        {"<button id=k></button>", "@TYPE", "submit"},
        {"<p id=k>", "@alt", "Null"},
        {"<a id=k href=x>", "href", "http://site/x"},
        {"<p id=k name=n>", "name", "n"},  // has no such property
        {"<form id=k src=x>", "src", ""},
        {"<textarea id=k>a\nb\r\n\nc</textarea>", "value", "a\r\nb\r\n\r\nc"},
        {"<input id=k selectedIndex=1>", "selectedIndex", ""},
        {"<button id=k checked></button>", "checked", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.html);
        const Element k = Open(row.html).Named("k").by_id;
        const auto answer =
            row.read.starts_with('@') ? k.getAttribute(row.read.substr(1)) : k.Get(row.read);
        EXPECT_EQ(answer.value_or("Null"), row.answer);
    }
}

TEST_P(PageTest, ReachesMembersThatThePageHides) {
    const Document shown = Open(
        "<form id=f name=n><input name=id><input name=elements id=b><input name=tagName>"
        "<input name=getAttribute><input name=r id=r1><input name=r><input type=image id=p>"
        "</form><img name=getElementById><img name=URL><a id=l href=x>l</a><img name=links>");
    const Element f = shown.Named("f").by_id;
    EXPECT_EQ(f.id() + f.name() + f.tagName() + f.parentElement().tagName(), "fnFORMBODY");
    EXPECT_EQ(f.getAttribute("id"), "f");
    EXPECT_EQ(Ids(shown.Named("elements").in_forms) + Ids(shown.links()), "b l ");
    EXPECT_EQ(Ids(shown.Named("r").in_forms) + Ids(shown.Named("").in_forms), "r1 ");
    EXPECT_EQ(shown.Named("b").by_id.DefaultButton().id(), "p");
    EXPECT_EQ(shown.url() + shown.activeElement().tagName(), "http://site/BODY");
}

TEST_P(PageTest, ReachesFramesUntilTheyAreLeft) {
    const Document top = Open(
        "<iframe id=i src=http://site/i srcdoc='<iframe src=http://site/n></iframe>'></iframe>"
        "<iframe id=j src=http://other/ name=n></iframe>");
    auto frames = top.frames();
    EXPECT_EQ(frames.at(0).name + frames.at(1).name + frames[1].element.id(), "inj");
    EXPECT_EQ(frames[0].document.frames().at(0).document.url(), "http://site/n");
    EXPECT_FALSE(frames[1].document);  // of another origin, and without a browser
    const auto inner = NewBrowser(page->frames.at(&El("j"))->document());
    world.browser = inner.get();
    EXPECT_EQ(top.frames()[1].document.url(), "http://other/");
    page->frames.at(&El("i")) = &world.Open("<p id=b>", "http://site/b");
    it->Tell(DISPID_NAVIGATECOMPLETE2, "http://site/b", 0, inner.get());
    EXPECT_EQ(frames[0].document.url(), "");
    EXPECT_EQ(top.frames()[0].document.url() + top.url(), "http://site/bhttp://site/");
    EXPECT_EQ(Open("<frame id=x src=y>").frames().at(0).document.url(), "y");
}

TEST_P(PageTest, IsWrittenAsTheUserWould) {
    const struct {
        std::string_view html, property, value;  // of the element with the id k
        bool taken;
        std::string_view after, said;
    } rows[] = {
        {"<input id=k oninput=i onchange=c>", "value", "山", true, "山", "i c "},
        {"<input id=k type=number value=3>", "value", "x", false, "3", ""},
        {"<input id=k type=number value=3>", "value", "", true, "", ""},
        {"<select id=k onchange=c><option>a<option>b", "selectedIndex", "1", true, "1", "c "},
        {"<select id=k><option>a<option>b", "selectedIndex", "2", false, "0", ""},
        {"<select id=k><option>a<option>b", "selectedIndex", "-1", false, "0", ""},
        {"<select id=k><option>a<option>b", "selectedIndex", "1b", false, "0", ""},
        {"<select id=k oninput=i><option>a<option>b", "value", "b", true, "b", "i "},
        {"<select id=k><option>a<option>b", "value", "c", false, "a", ""},
        {"<input id=k type=checkbox checked onclick=k>", "checked", "True", true, "True", ""},
        {"<input id=k type=checkbox checked onclick=k>", "checked", "False", true, "False", "k "},
        {"<input id=k type=checkbox disabled onclick=k>", "checked", "True", true, "True", ""},
        {"<input id=k type=radio onclick=k>", "checked", "True", true, "True", "k "},
        {"<input id=k type=radio checked onclick=k>", "checked", "False", true, "False", ""},
        {"<input id=k type=file>", "value", "c:\\x", false, "", ""},
        {"<button id=k value=v oninput=i></button>", "value", "x", true, "x", ""},
        {"<p id=k contenteditable oninput=i>文</p>", "innerText", "x", false, "文", ""},
        {"<p id=k contenteditable oninput=i>文</p>", "value", "x", true, "", "i "},
        {"<p id=k>文</p>", "value", "x", false, "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.html);
        const Element k = Open(row.html).Named("k").by_id;
        EXPECT_EQ(k.Change(row.property, row.value), row.taken);
        EXPECT_EQ(k.Get(row.property), row.after);
        EXPECT_EQ(page->said, row.said);
    }
}

TEST_P(PageTest, FiresClickHandlersWithoutTheBrowsersOwnAction) {
    world.mode = 0;  // not determined yet
    const Document shown = Open("<input type=checkbox id=c onclick=c><p id=d onclick=d>");
    const Element c = shown.Named("c").by_id, d = shown.Named("d").by_id;
    c.getAttribute("alt");
    world.mode = GetParam();
    EXPECT_TRUE(c.fireEvent("onclick") && d.fireEvent("onclick") && !d.fireEvent("click"));
    // The newest documents cannot run handlers without the browser's own action for a click.
    EXPECT_EQ(c.checked() + " " + page->said, world.mode == 11 ? "False d " : "False c d ");
    EXPECT_TRUE(c.click());
    EXPECT_EQ(c.checked(), "True");
}

TEST_P(PageTest, AnswersButtonsUntilAnElementIsGone) {
    const Document shown = Open(
        "<form id=f><input id=a value=v><input id=p type=image><button id=b></button></form><form>"
        "<button id=c></button><input type=submit></form><input id=out>");
    const Element a = shown.Named("a").by_id;
    EXPECT_EQ(a.DefaultButton().id(), "p");
    world.first_number += 1000;  // a script has changed the page's objects
    EXPECT_EQ(shown.Named("c").by_id.DefaultButton().id(), "c");
    EXPECT_FALSE(shown.Named("out").by_id.DefaultButton());
    El("f").parent = nullptr;  // a script has removed it
    EXPECT_FALSE(a.click() || a.Put("value", "w") || a.getBoundingClientRect());
    now = 999;
    EXPECT_EQ(a.value(), "v") << "it was there when it was found";
    now = 1000;
    EXPECT_EQ(a.value() + a.getAttribute("type").value_or(""), "");
    const auto written = ParseHtml("<html><body><p id=n>");  // by a script
    page->root->children.swap(written->children);
    page->root->children[0]->parent = page->root.get();
    EXPECT_TRUE(shown.Named("n").by_id.click());
}

// On a screen with 144 dots where the page counts 96.
TEST_P(PageTest, StandsOnTheScreenWithFramesAndZoom) {
    const BrowserWindowDouble window;
    RECT place{};
    GetWindowRect(window.content, &place);
    const Document shown = Open(
        "<b id=out></b><iframe id=f left=100 top=200 right=300 bottom=400 at=112224 "
        "srcdoc=\"<b id=b left=10 top=20 right=60 bottom=40 at=1022>\">");
    const auto at =
        ScreenPointOf(shown.frames().at(0).document.Named("b").by_id, window.content).value();
    EXPECT_EQ(std::pair(at.x - place.left, at.y - place.top), std::pair(168L, 333L));
    const Element out = shown.Named("out").by_id;
    EXPECT_FALSE(ScreenPointOf(out, window.content));
    const auto under = [&] {
        return Ids(ElementsAt({place.left + 169, place.top + 337}, window.content,
                              ExplorerElement::Of(out)->page()));
    };
    EXPECT_EQ(under(), "f b ");
    const HWND cover = MakeWindow(L"TamrinTestWindow", window.frame, WS_POPUP, place);
    EXPECT_EQ(under(), "");
    DestroyWindow(cover);
}

TEST_P(PageTest, TellsOfTheUserInsideDeliverOnlyWithTheMoment) {
    const Document shown = Open(
        "<form id=f name=g><p id=p><input id=a onclick=f onfocusin=in value=v>"
        "<button id=d></button></form><form id=h><input id=c></form>");
    Log log(*browser, shown);
    page->Focus(El("a"));
    EXPECT_TRUE(page->Fire(&El("a"), "onclick"));
    El("a").value = "w";
    page->Fire(&El("a"), "onkeypress", 13);
    page->Fire(&El("f"), "onsubmit");
    page->Fire(&El("h"), "onsubmit");  // nobody is in it
    page->Focus(El("c"));
    page->Fire(&El("h"), "onsubmit");
    El("a").value = "later";
    EXPECT_EQ(log.lines, Strings());
    log.during = [&](const std::string& event) {
        browser->DeliverEvents();  // the next one waits
        if (event != "key13") return;
        const auto before = calls.count();
        const Element a = log.page.activeElement();
        log.lines.push_back(a.getAttribute("TYPE").value_or("") + a.form().name() +
                            a.getAttribute("onclick").value_or("") + a.parentElement().id() +
                            a.tagName() + a.checked() + a.DefaultButton().id());
        EXPECT_TRUE(a.fireEvent("onfocusin"));  // tells the listener at once, the page nothing
        EXPECT_EQ(calls.count(), before);
        EXPECT_TRUE(a.Put("value", "own"));
        EXPECT_EQ(a.value(), "own");  // what is written counts
    };
    browser->DeliverEvents();
    page->Focus(El("a"));
    log.page_connection.reset();
    browser->DeliverEvents();
    EXPECT_EQ(log.lines,
              (Strings{"focus a=v", "click a=v", "key13 a=w", "textgfpINPUTFalsed", "focus a=w",
                       "submit a=w", "leave a=w", "focus c=", "submit c="}));
    EXPECT_EQ(page->said, "in f in ");
}

// Each call of each object of the browser fails once, or the browser leaves the page during it:
// nothing crashes, and nothing is kept.
TEST_P(PageTest, LosesNothingWhenAnyCallFails) {
    const auto drive = [this] {
        const Document shown = Open(
            "<form id=f><input id=a value=v><select id=s><option>x</select><button id=b></button>"
            "</form><a id=l href=x>l</a><iframe id=i></iframe><input type=checkbox>");
        Log log(*browser, shown);
        page->Focus(El("a"));
        page->Fire(&El("a"), "onkeypress", 13);
        it->Tell(DISPID_BEFORENAVIGATE2, "http://site/next");
        it->Tell(DISPID_DOCUMENTCOMPLETE, "http://site/next");
        browser->DeliverEvents();
        browser->SetPlace({});
        browser->State();
        shown.links();
        for (const Frame& frame : shown.frames()) frame.document.Named("x");
        const Element select = shown.Named("s").by_id;
        select.OptionTexts();
        select.Put("selectedIndex", "1");
        browser->Busy();
        page->Fire(&El("a"), "onclick");  // stays in the queue
        browser->Navigate("http://site/");
        it->Tell(DISPID_NAVIGATECOMPLETE2, "http://site/next");
        browser->Quit();
    };
    const auto leave = [this] { it->is["Document"] = {}, it->Tell(DISPID_NAVIGATECOMPLETE2); };
    world.faults = {};
    drive();
    const int all = world.faults.calls;
    EXPECT_GT(all, 100);
    int first = 0;
    // The first one is no failure: the browser leaves the page. The last is Null, or no answer.
    for (const HRESULT how :
         {S_OK, E_FAIL, E_ACCESSDENIED, RPC_E_DISCONNECTED, RPC_E_CALL_REJECTED, DISP_E_UNKNOWNNAME,
          DISP_E_MEMBERNOTFOUND, DISP_E_EXCEPTION, S_FALSE}) {
        for (int call = how ? first++ : 0; call < all; call += how ? 8 : 1) {
            SCOPED_TRACE(testing::Message() << "call " << call << " fails as " << how);
            world.faults = {.failing = call, .how = how};
            if (how == S_OK) world.faults.meanwhile = leave;
            drive();
            browser = nullptr;
            it = nullptr;
            ASSERT_EQ(ObjectDouble::alive, 0);
        }
    }
}

}  // namespace
}  // namespace tamrin::test
