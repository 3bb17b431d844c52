#include <gtest/gtest.h>

#include "explorer/page_double.h"
#include "platform/explorer/explorer_document.h"

namespace tamrin::test {
namespace {

using Strings = std::vector<std::string>;

// Pages as the program has them. What every back end must do the conformance suite shows.
class PageTest : public testing::Test {
protected:
    Document Open(std::string_view html, int mode = 11) {
        return Document(pool->Page(world.Open(html, mode).document()));
    }
    PageDouble& shown() { return world.page(); }
    Node& El(std::string_view id) { return shown().El(id); }
    static std::string Ids(const std::vector<Element>& elements) {
        std::string ids;
        for (const Element& element : elements) ids += element.id() + " ";
        return ids;
    }
    PageTest() {
        calls.SetNow([this] { return now; });
    }
    // The program has let go of the page: nobody may keep a reference.
    void TearDown() override {
        pool.reset();
        EXPECT_TRUE(world.IsReleased());
    }

    std::uint64_t now = 0;
    ComCalls calls;
    PageWorld world;
    std::shared_ptr<PagePool> pool = std::make_shared<PagePool>(calls);
};

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

TEST_F(PageTest, LeavesThePagesEmptyThatAFrameHasLeft) {
    world.fetch = [](const std::string&) { return "<input id=a value=in>"; };
    const Document page = Open("<iframe id=i src=in></iframe><iframe id=j src=http://b/></iframe>");
    const auto frames = page.frames();
    EXPECT_FALSE(frames.at(1).document);  // of another origin, and without a browser
    shown().SetFrame(0, "<p id=b>", "http://site/b");
    pool->DropLeftFrames();
    EXPECT_EQ(frames[0].document.url(), "");
    EXPECT_EQ(page.frames()[0].document.url(), "http://site/b");
    pool->DropLeftFrames();
    EXPECT_EQ(page.frames()[0].document.url() + page.url(), "http://site/bhttp://site/dir/page");
}

TEST_F(PageTest, PutsAsTheUserWould) {
    const struct {
        std::string_view html;  // the element has the id k
        std::string_view property;
        std::string_view value;
        bool taken;
        std::string_view after;
        std::string_view said;
    } rows[] = {
        {"<input id=k oninput=say('i') onchange=say('c')>", "value", "山", true, "山", "i,c"},
        {"<input id=k type=number value=3>", "value", "x", false, "3", ""},
        {"<input id=k type=number value=3>", "value", "", true, "", ""},
        {"<textarea id=k></textarea>", "value", "一\r\n二", true, "一\r\n二", ""},
        {"<select id=k onchange=say('c')><option>a<option>b</select>", "selectedIndex", "1", true,
         "1", "c"},
        {"<select id=k oninput=say('i')><option>a</select>", "selectedIndex", "0", true, "0", ""},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "2", false, "0", ""},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "-1", false, "0", ""},
        {"<select id=k><option>a<option>b</select>", "selectedIndex", "1b", false, "0", ""},
        {"<select id=k oninput=say('i')><option>a<option>b</select>", "value", "b", true, "b", "i"},
        {"<select id=k><option>a<option>b</select>", "value", "c", false, "a", ""},
        {"<input id=k type=checkbox onclick=say('k')>", "checked", "True", true, "True", "k"},
        {"<input id=k type=checkbox checked onclick=say('k')>", "checked", "True", true, "True",
         ""},
        {"<input id=k type=checkbox checked onclick=say('k')>", "checked", "False", true, "False",
         "k"},
        {"<input id=k type=checkbox disabled onclick=say('k')>", "checked", "True", true, "True",
         ""},
        {"<input id=k type=radio onclick=say('k')>", "checked", "True", true, "True", "k"},
        {"<input id=k type=radio checked onclick=say('k')>", "checked", "False", true, "False", ""},
        {"<input id=k>", "checked", "True", false, "False", ""},
        {"<input id=k type=file>", "value", "c:\\x", false, "", ""},
        {"<button id=k value=v oninput=say('i')></button>", "value", "x", true, "x", ""},
        {"<div id=k></div>", "value", "x", false, "", ""},
        {"<p id=k contenteditable oninput=say('i')>文</p>", "innerText", "x", false, "文", ""},
        {"<p id=k contenteditable oninput=say('i')>文</p>", "value", "x", true, "", "i"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.html);
        const Element k = Open(row.html).Named("k").by_id;
        EXPECT_EQ(k.Change(row.property, row.value), row.taken);
        EXPECT_EQ(k.Get(row.property), row.after);
        EXPECT_EQ(shown().said, row.said);
    }
}

// A record fires the event and then clicks, and a person's click is one.
TEST_F(PageTest, ClicksOnceWhatIsFiredAndClicked) {
    for (const int mode : {11, 9, 7}) {
        SCOPED_TRACE(mode);
        const Document page = Open(
            "<input type=checkbox id=c onclick=say('c')><div id=d onclick=say('d')>x</div>", mode);
        const Element c = page.Named("c").by_id;
        EXPECT_TRUE(c.fireEvent("onclick"));
        EXPECT_EQ(c.checked(), "False");
        EXPECT_TRUE(c.click());
        EXPECT_EQ(c.checked(), "True");
        EXPECT_TRUE(c.click());
        EXPECT_EQ(shown().said, "c,c");
        // What comes between the two makes them two.
        const Element d = page.Named("d").by_id;
        EXPECT_TRUE(d.fireEvent("onclick"));
        EXPECT_EQ(shown().said, "c,c");
        EXPECT_EQ(page.Named("c").by_id.checked(), "False");
        EXPECT_EQ(shown().said, "c,c,d");
        EXPECT_TRUE(c.fireEvent("onclick") && d.click());
        // The newest documents cannot run handlers without the browser's own action for a click.
        EXPECT_EQ(shown().said, mode == 11 ? "c,c,d,d" : "c,c,d,c,d");
        EXPECT_EQ(c.checked(), "False");
    }
}

TEST_F(PageTest, AnswersPlacesAndButtonsUntilAnElementIsGone) {
    const Document page = Open(
        "<form id=f><input id=a value=v data-box='10 20 30 50'><input id=p type=image><button id=b>"
        "</button></form><form><button id=c><input type=submit></form><input id=out>");
    const Element a = page.Named("a").by_id;
    EXPECT_EQ(a.getBoundingClientRect(), (Rect{10, 20, 30, 50}));
    EXPECT_FALSE(page.Named("out").by_id.getBoundingClientRect());
    EXPECT_EQ(a.DefaultButton().id(), "p");
    EXPECT_EQ(page.Named("c").by_id.DefaultButton().id(), "c");
    EXPECT_FALSE(page.Named("out").by_id.DefaultButton());
    a.scrollIntoView();
    EXPECT_EQ(a.getAttribute("data-scrolled"), "yes");
    El("f").parent = nullptr;  // a script has removed it
    EXPECT_FALSE(a.click() || a.Put("value", "w") || a.getBoundingClientRect());
    now = 999;
    EXPECT_EQ(a.value(), "v") << "it was there when it was found";
    now = 1000;
    EXPECT_EQ(a.value() + a.getAttribute("type").value_or(""), "");
}

// Writes down what a page tells, with the active element by its id and value.
class Witness : public DocumentEvents {
public:
    explicit Witness(Document document) : page(std::move(document)) {
        connection = page.Connect(*this);
    }
    void onclick() override { Note("click"); }
    void onfocusin() override { Note("focus"); }
    void onbeforedeactivate() override { Note("leave"); }
    void onkeypress(int key) override { Note("key" + std::to_string(key)); }
    void onsubmit() override { Note("submit"); }
    virtual void Note(const std::string& event) {
        const Element active = page.activeElement();
        lines.push_back(event + " " + active.id());
        if (!active.value().empty()) lines.back() += "=" + active.value();
        if (during) during(event);
    }

    Document page;
    std::unique_ptr<Connection> connection;
    Strings lines;
    std::function<void(const std::string& event)> during;  // runs in each handler
};

TEST_F(PageTest, TellsOfTheUserInsideDeliverOnly) {
    for (const int mode : {11, 7}) {
        Witness witness(
            Open("<form id=f><input id=a><input id=b value=w></form><form id=g><input id=c></form>",
                 mode));
        shown().Click(El("a"));
        shown().Type(El("a"), "1");
        shown().Click(El("b"));
        shown().Press(El("b"), 13);
        shown().Fire(&El("f"), "onsubmit");
        shown().Fire(&El("g"), "onsubmit");  // nobody is in it
        shown().Focus(El("c"));
        shown().Fire(&El("f"), "onsubmit");
        shown().Fire(&El("g"), "onsubmit");
        EXPECT_EQ(witness.lines, Strings());
        pool->events().Deliver();
        EXPECT_EQ(witness.lines,
                  (Strings{"focus a", "click a", "key49 a", "leave a=1", "focus b=w", "click b=w",
                           "key13 b=w", "submit b=w", "leave b=w", "focus c", "submit c"}));
    }
}

TEST_F(PageTest, BringsASnapshotWithEachEvent) {
    Witness reader(
        Open("<form id=f name=g><p id=p><input id=a onclick='f()' value=v></p><button id=d>"
             "</button></form>"));
    reader.during = [&](const std::string& event) {
        const auto before = calls.count();
        const Element a = reader.page.activeElement();
        reader.lines.push_back(a.getAttribute("TYPE").value_or("") +
                               a.getAttribute("onclick").value_or("Null") + a.parentElement().id() +
                               a.form().name() + a.tagName() + a.checked() + reader.page.url());
        if (event == "key13") reader.lines.push_back(a.DefaultButton().id());
        EXPECT_EQ(calls.count(), before);
        if (event == "key13") {
            EXPECT_TRUE(a.Put("value", "own"));
            reader.lines.push_back(a.value());  // what is written counts
        }
    };
    shown().Focus(El("a"));
    shown().Press(El("a"), 13);
    El("a").value = "later";
    pool->events().Deliver();
    const std::string moment = "textf()pgINPUTFalsehttp://site/dir/page";
    EXPECT_EQ(reader.lines, (Strings{"focus a=v", moment, "key13 a=v", moment, "d", "own"}));
    EXPECT_EQ(reader.page.activeElement().value(), "own");
}

TEST_F(PageTest, TellsOneEventAfterTheOtherUntilTheSubscriptionEnds) {
    Witness waiting(Open("<input id=a onfocusin=say('in')><input id=b>"));
    waiting.during = [&](const std::string& event) {
        pool->events().Deliver();
        if (event != "click") return;
        // The focus is fired to those who listen, and not to the page.
        waiting.during = nullptr;
        EXPECT_TRUE(waiting.page.activeElement().fireEvent("onfocusin"));
        waiting.connection.reset();
    };
    shown().Click(El("a"));
    shown().Click(El("b"));
    pool->events().Deliver();
    shown().Click(El("a"));
    pool->events().Deliver();
    EXPECT_EQ(waiting.lines, (Strings{"focus a", "click a", "focus a"}));
    EXPECT_EQ(shown().said, "in,in");
}

TEST_F(PageTest, LeavesNoReferenceToAPageThatIsGone) {
    Witness witness(Open("<form><input id=a></form>"));
    shown().Focus(El("a"));
    for (int i = 0; i < 100; ++i) Witness(witness.page);
    pool->KeepOnly(nullptr);
    EXPECT_EQ(witness.page.url() + witness.page.Named("a").by_id.id(), "");
    EXPECT_FALSE(witness.page.Connect(witness));
    shown().Click(El("a"));
    pool->events().Deliver();
    EXPECT_EQ(witness.lines, Strings{"focus a"});
    EXPECT_TRUE(world.IsReleased());
}

}  // namespace
}  // namespace tamrin::test
