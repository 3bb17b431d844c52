#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

// An element in one line: what its lookup tells.
std::string Keys(const Element& element) {
    if (!element) return "none";
    std::string line = element.tagName() + " id=" + element.id() + " name=" + element.name() +
                       " value=" + element.value() + " href=" + element.Get("href");
    for (const char* name : {"type", "alt", "onclick", "href"}) {
        line += std::string(" ") + name + ":" + element.getAttribute(name).value_or("Null");
    }
    return line;
}

class Lookup : public ChromiumTest {};

TEST_F(Lookup, BringsTheKeysInOneRoundTrip) {
    Open(
        "<base href='http://site/dir/'><form id=f name=form><input name=x value=1><input id=x "
        "type=submit alt=a onclick=go() value='送信'><select name=s><option>o</select>"
        "<textarea name=t>text</textarea><button name=b value=v>c</button></form>"
        "<a href=page>link</a><a name=x>x</a><p id=p name=x type=t>x</p>"
        "<svg><a href=own id=svg /></svg><li value=3>");
    const struct {
        const char* tag;
        std::vector<std::string> expected;
    } rows[] = {
        {"input",
         {"INPUT id= name=x value=1 href= type:text alt:Null onclick:Null href:Null",
          "INPUT id=x name= value=送信 href= type:submit alt:a onclick:go() href:Null"}},
        {"SELECT",
         {"SELECT id= name=s value=o href= type:select-one alt:Null onclick:Null "
          "href:Null"}},
        {"textarea",
         {"TEXTAREA id= name=t value=text href= type:textarea alt:Null onclick:Null "
          "href:Null"}},
        {"button", {"BUTTON id= name=b value=v href= type:submit alt:Null onclick:Null href:Null"}},
        {"a",
         {"A id= name= value= href=http://site/dir/page type:Null alt:Null onclick:Null "
          "href:http://site/dir/page",
          "A id= name=x value= href= type:Null alt:Null onclick:Null href:Null",
          "A id=svg name= value= href=own type:Null alt:Null onclick:Null href:own"}},
        {"p", {"P id=p name=x value= href= type:t alt:Null onclick:Null href:Null"}},
        {"li", {"LI id= name= value= href= type:Null alt:Null onclick:Null href:Null"}},
        {"none", {}},
    };
    for (const auto& row : rows) {
        const auto trips = launcher_.RoundTrips();
        std::vector<std::string> lines;
        for (const Element& element : browser_.document().getElementsByTagName(row.tag)) {
            lines.push_back(Keys(element));
        }
        EXPECT_EQ(lines, row.expected);
        EXPECT_EQ(launcher_.RoundTrips(), trips + 1);
    }
    const auto trips = launcher_.RoundTrips();
    const NamedElements named = browser_.document().Named("x");
    ASSERT_EQ(named.by_name.size(), 3U);
    EXPECT_EQ(named.by_name[2].tagName(), "P");
    EXPECT_EQ(*named.by_id.getAttribute("type"), "submit");
    ASSERT_EQ(named.in_forms.size(), 1U);
    EXPECT_EQ(named.in_forms[0].value(), "1");
    EXPECT_EQ(named.by_name[0].checked(), "False");
    EXPECT_TRUE(browser_.ElementScreenPoint(named.by_name[0]));
    EXPECT_EQ(launcher_.RoundTrips(), trips + 1);
    EXPECT_EQ(named.by_name[0], named.in_forms[0]);
    EXPECT_NE(named.by_name[0], named.by_name[1]);
}

TEST_F(Lookup, TellsWhatAWriteHasChanged) {
    Open(
        "<input id=a value=1><input id=b type=radio name=r checked>"
        "<input id=c type=radio name=r><input id=d value=4>");
    const Element a = Find("a");
    const Element same = Find("a");
    const Element b = Find("b");
    const Element c = Find("c");
    const Element d = Find("d");
    EXPECT_TRUE(a.Put("value", "2"));
    EXPECT_TRUE(c.Put("checked", "True"));
    EXPECT_EQ(a.value() + same.value() + d.value(), "224");
    EXPECT_EQ(b.checked() + c.checked(), "FalseTrue");
    const auto trips = launcher_.RoundTrips();
    EXPECT_EQ(d.value(), "4");
    EXPECT_EQ(launcher_.RoundTrips(), trips) << "another element's keys still hold";
}

TEST_F(Lookup, OfElementsAroundOne) {
    Open(
        "<form id=f><fieldset id=s><select id=e><option> one <option value=2>二</select>"
        "</fieldset></form><input id=outside form=f><p id=p>a <b>b</b></p>");
    const Element select = Find("e");
    EXPECT_EQ(select.parentElement().id(), "s");
    EXPECT_EQ(select.form().id(), "f");
    EXPECT_EQ(Find("outside").form().id(), "f");
    EXPECT_FALSE(Find("p").form());
    EXPECT_EQ(select.OptionTexts(), (std::vector<std::string>{"one", "二"}));
    EXPECT_EQ(select.Get("length"), "2");
    EXPECT_TRUE(Find("p").OptionTexts().empty());
    EXPECT_EQ(Find("p").innerText(), "a b");
    EXPECT_EQ(browser_.document().activeElement().tagName(), "BODY");
    EXPECT_TRUE(browser_.document().hasFocus());
}

TEST_F(Lookup, OfAnElementThatIsGoneAnswersEmpty) {
    Open("<input id=a><button id=b type=button onclick=\"a.remove()\">remove</button>");
    const Element gone = Find("a");
    EXPECT_TRUE(Find("b").click());
    EXPECT_EQ(gone.innerText(), "");
    EXPECT_FALSE(gone.Put("value", "x"));
    EXPECT_FALSE(gone.fireEvent("onclick"));
    EXPECT_FALSE(gone.click());
    EXPECT_FALSE(gone.parentElement());
    EXPECT_FALSE(gone.getBoundingClientRect());
    EXPECT_FALSE(browser_.ElementScreenPoint(gone));
}

// Whatever a page does to its own world, the agent's is another one.
TEST_F(Lookup, WorksInPagesThatTakeTheirWorldApart) {
    const struct {
        const char* what;
        const char* html;
    } rows[] = {
        {"forbids all scripts",
         "<meta http-equiv=Content-Security-Policy content=\"script-src 'none'\">"},
        {"redefines built-ins",
         "<script>for (const type of [Array, String, Map, Set, Element, Node, Document]) "
         "for (const name of Object.getOwnPropertyNames(type.prototype)) "
         "try { Object.defineProperty(type.prototype, name, {get() { throw 1 }}) } catch {}"
         "JSON.stringify = Object.defineProperty = WeakRef = WeakMap = null; tamrin = 1</script>"},
        {"hides members by names",
         "<form id=tamrin><input name=id><input name=elements><input name=tagName>"
         "<input name=getAttribute><input name=parentNode></form>"
         "<img name=forms><img name=getElementsByName><img name=getElementById>"
         "<img name=activeElement><form name=links></form>"},
        {"writes itself anew",
         "<script>document.addEventListener('DOMContentLoaded', () => setTimeout(() => {"
         "document.open(); document.write('<form id=g><input name=n value=v></form>');"
         "document.close() }))</script>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Open(std::string(row.html) + "<form id=g><input name=n value=v></form>");
        EXPECT_TRUE(Wait([&] { return browser_.document().Named("n").in_forms.size() == 1; }));
        const NamedElements named = browser_.document().Named("n");
        ASSERT_EQ(named.in_forms.size(), 1U);
        EXPECT_EQ(Keys(named.in_forms[0]),
                  "INPUT id= name=n value=v href= type:text alt:Null onclick:Null href:Null");
        EXPECT_EQ(named.in_forms[0].parentElement().id(), "g");
        EXPECT_EQ(named.in_forms[0].form().id(), "g");
        EXPECT_TRUE(named.in_forms[0].Put("value", "w"));
        EXPECT_TRUE(named.in_forms[0].fireEvent("onclick"));
        EXPECT_TRUE(named.in_forms[0].click());
        EXPECT_EQ(named.in_forms[0].value(), "w");
        for (const Element& form : browser_.document().getElementsByTagName("form")) {
            EXPECT_EQ(form.tagName(), "FORM");
        }
    }
}

TEST_F(Lookup, TellsEveryText) {
    Open(
        "<input id=lone><input id=mixed><p id=big hidden></p><input id=put type=hidden><script>"
        "lone.value = 'a\\ud800\\ud801\\udc01b\\udfff';"
        "mixed.value = '\\b\\f\\t\\\\\"/;,-1\\u007f\\u00e9\\u65e5\\ud83d\\ude00\\u0000\\u2028';"
        "document.getElementById('big').textContent = 'aaaaaaaaa日'.repeat(1e6);</script>");
    EXPECT_EQ(Find("lone").value(),
              "a\xEF\xBF\xBD\xF0\x90\x90\x81"
              "b\xEF\xBF\xBD");
    EXPECT_EQ(Find("mixed").value(),
              std::string("\b\f\t\\\"/;,-1\x7F\xC3\xA9日\xF0\x9F\x98\x80\0\xE2\x80\xA8", 24));
    const std::string big = Find("big").innerText();
    EXPECT_EQ(big.size(), 12000000U);
    EXPECT_TRUE(big.ends_with("a日"));
    EXPECT_TRUE(Find("put").Put("value", big));
    EXPECT_TRUE(Find("put").value() == big);
    EXPECT_FALSE(browser_.document().Named("\xFF\xED\xA0\x80").by_id);
}

class Frames : public ChromiumTest {
protected:
    std::string Elsewhere(const std::string& path) {
        return "http://localhost:" + std::to_string(world_.server.port()) + path;
    }
};

// A frame's page is reached wherever it lives, and clicked where it stands on the screen.
TEST_F(Frames, AreReachedAndClickedWhateverSiteTheyAreOf) {
    Serve([this](const WebRequest& request) {
        const std::string frame_style =
            "style='margin:7px;border:3px solid;padding:5px;height:90px'";
        const auto frame = [&](const std::string& name, const std::string& url) {
            return "<iframe name=" + name + " src=" + url + " " + frame_style + "></iframe>";
        };
        const std::string button =
            "<button id=b type=button onclick=\"log('" + request.path + "')\">press here</button>";
        if (request.path == "/") {
            return WebReply{.body = Page("<iframe id=blank></iframe>" + frame("same", "/same") +
                                         frame("other", Elsewhere("/other")) +
                                         "<iframe name=boxed sandbox=allow-scripts src=/boxed>"
                                         "</iframe>")};
        }
        if (request.path == "/same") {
            return WebReply{.body = Page(button + frame("inner", Elsewhere("/inner")))};
        }
        if (request.path == "/other") {
            return WebReply{.body = Page(button + frame("inner", Elsewhere("/inner2")))};
        }
        return WebReply{.body = Page(button)};
    });
    OpenUrl(world_.server.Url("/"));
    const auto frames = browser_.document().frames();
    ASSERT_EQ(frames.size(), 4U);
    const struct {
        const char* name;
        std::string url;
        std::size_t inner;
    } rows[] = {
        {"blank", "about:blank", 0},
        {"same", world_.server.Url("/same"), 1},
        {"other", Elsewhere("/other"), 1},
        {"boxed", world_.server.Url("/boxed"), 0},
    };
    std::vector<Document> pages;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(frames[i].name, rows[i].name);
        EXPECT_EQ(frames[i].element.tagName(), "IFRAME");
        EXPECT_EQ(frames[i].document.url(), rows[i].url);
        const auto inner = frames[i].document.frames();
        EXPECT_EQ(inner.size(), rows[i].inner);
        if (i > 0) pages.push_back(frames[i].document);
        for (const Frame& frame : inner) {
            EXPECT_EQ(frame.name, "inner");
            pages.push_back(frame.document);
        }
    }
    for (const Document& page : pages) {
        SCOPED_TRACE(page.url());
        const Element button = page.Named("b").by_id;
        ASSERT_TRUE(button);
        button.scrollIntoView();
        const auto corner = browser_.ElementScreenPoint(button);
        ASSERT_TRUE(corner);
        world_.clock.Sleep(100);  // as the player does: the page is drawn where it was scrolled to
        launcher_.input().SetCursorPos({corner->x + 2, corner->y + 2});
        launcher_.input().LeftButton(true);
        launcher_.input().LeftButton(false);
        EXPECT_EQ("http://127.0.0.1" + page.Named("log").by_id.innerText(),
                  "http://127.0.0.1" + page.url().substr(page.url().rfind('/')));
    }
    Serve("");
}

TEST_F(Frames, ThatComeAndGoAreCountedAnew) {
    Open(
        "<iframe name=first src='data:text/html,1'></iframe>"
        "<button id=b type=button onclick=\"document.querySelector('iframe').remove();"
        "document.body.insertAdjacentHTML('beforeend', '<iframe name=second></iframe>'"
        " + '<iframe name=third></iframe>')\">change</button>");
    ASSERT_EQ(browser_.document().frames().size(), 1U);
    EXPECT_TRUE(Find("b").click());
    EXPECT_TRUE(WaitComplete());
    const auto frames = browser_.document().frames();
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[0].name + frames[1].name, "secondthird");
    EXPECT_TRUE(frames[1].document);
}

}  // namespace
}  // namespace tamrin::test
