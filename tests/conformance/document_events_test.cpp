#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using Strings = std::vector<std::string>;

// Writes down what a page and its browser tell: the event, and the active element as it was.
class Witness : public EventLog, public DocumentEvents {
public:
    // Writes into another's lines where there is one.
    explicit Witness(Document document, Strings* another = nullptr)
        : into_(another ? *another : lines), document_(std::move(document)) {
        connection_ = document_.Connect(*this);
    }

    void onclick() override { Note("click"); }
    void onfocusin() override {
        watched_ = document_.activeElement();
        Note("focus");
    }
    void onbeforedeactivate() override { Note("leave"); }
    void onkeypress(int key_code) override { Note("key" + std::to_string(key_code)); }
    void onsubmit() override { Note("submit"); }
    // The element whose focus was told last stands for what the page is left with.
    void BeforeNavigate2(const std::string& /*url*/) override {
        into_.push_back("navigate " + Told(watched_));
    }

    // An element by its id or tag, its value, checked state or index, and its text.
    static std::string Told(const Element& e) {
        std::string text = e.id().empty() ? e.tagName() : e.id();
        const std::string type = e.getAttribute("type").value_or("");
        if (type == "checkbox" || type == "radio") return text + "=" + e.checked();
        if (type == "select-one") return text + "=" + e.selectedIndex();
        if (!e.value().empty()) text += "=" + e.value();
        if (const auto href = e.getAttribute("href")) text += ">" + e.innerText();
        return text;
    }

private:
    void Note(const std::string& event) {
        into_.push_back(event + " " + Told(document_.activeElement()));
    }

    Strings& into_;
    Document document_;
    Element watched_;
    std::unique_ptr<Connection> connection_;
};

class DocumentEvent : public Suite {
protected:
    // What is told, once it is `expected` or as much has come, and no more follows.
    Strings Told(Witness& witness, const Strings& expected) {
        Wait([&] { return witness.lines.size() >= expected.size(); });
        for (int i = 0; i < 3; ++i) Pump();
        return std::exchange(witness.lines, {});
    }
    void ExpectTold(Witness& witness, const Strings& expected) {
        EXPECT_EQ(Told(witness, expected), expected);
    }
    void Click(std::string_view id) { MouseClick(Find(id)); }
};

TEST_F(DocumentEvent, TellsOfFieldsAsTheyAreEnteredAndLeft) {
    const Document page = Open(
        "<form><input id=a><textarea id=b></textarea><input id=c type=checkbox><input id=d"
        " type=radio><select id=e><option>x<option>y</select><input id=f type=password></form>");
    Witness witness(page);
    Click("a");
    Type("あ1");
    Press("TAB");
    Type("x");
    Press("ENTER");
    ExpectTold(witness, {"focus a", "click a", "key49 a=あ", "leave a=あ1", "focus b", "key120 b",
                         "key13 b=x"});
    Click("c");
    Click("d");
    ExpectTold(witness, {"leave b=x\r\n", "focus c=False", "click c=True", "leave c=True",
                         "focus d=False", "click d=True"});
    Press("TAB");
    Press("DOWN");
    Press("TAB");
    Type("s");
    Press("TAB");
    ExpectTold(witness,
               {"leave d=True", "focus e=0", "leave e=1", "focus f", "key115 f", "leave f=s"});
}

TEST_F(DocumentEvent, TellsOfWhatWasClickedAlsoWhenThePageHasGone) {
    for (const std::string element :
         {"<form action=/echo><input type=submit id=b value=送></form>",
          "<form action=/echo><button id=b value=送>送</button></form>",
          "<input type=button id=b value=送 onclick=\"location='/echo'\">",
          "<input type=button id=b value=送 onclick=\"document.write('x'); document.close()\">"}) {
        const Document page = Open("<input id=a>" + std::string(element));
        Witness witness(page);
        const auto connection = browser().Connect(witness);
        Click("a");
        Type("1");
        Click("b");
        Strings expected = {"focus a",    "click a",    "key49 a",      "leave a=1",
                            "focus b=送", "click b=送", "navigate b=送"};
        if (element.find("write") != std::string::npos) expected.pop_back();
        Strings told = Told(witness, expected);
        std::erase(told, "submit b=送");
        std::erase_if(told, [](const auto& line) { return line.starts_with("Document"); });
        EXPECT_EQ(told, expected) << element;
    }
}

TEST_F(DocumentEvent, TellsOfFramesInTheOrderOfTheUser) {
    const std::string inner = Serve("<input id=k><input id=n>");
    for (const std::string& url : {Url(inner), OtherUrl(inner)}) {
        const Document page = Open("<input id=a><iframe id=i src=" + url + "></iframe>");
        const Document frame = page.frames().at(0).document;
        Witness witness(page);
        Witness within(frame, &witness.lines);
        Click("a");
        Type("1");
        MouseClick(frame.Named("k").by_id);
        Type("2");
        Click("a");
        {
            SCOPED_TRACE(url);
            ExpectTold(witness, {"focus a", "click a", "key49 a", "leave a=1", "focus i", "focus k",
                                 "click k", "key50 k", "leave k=2", "focus a=1", "click a=1"});
        }
    }
}

TEST_F(DocumentEvent, TellsOfAFormThatEnterSends) {
    const Document page = Open("<form action=/echo><input id=a><input type=submit id=b></form>");
    Witness witness(page);
    const auto connection = browser().Connect(witness);
    Click("a");
    Type("1");
    Press("ENTER");
    ExpectTold(witness, {"focus a", "click a", "key49 a", "key13 a=1", "submit a=1", "navigate a=1",
                         "DocumentComplete top"});
}

TEST_F(DocumentEvent, BringsTheButtonThatEnterPresses) {
    struct Row {
        const char* html;
        const char* button;
        const char* clicked;
    };
    const Row rows[] = {
        {"<form id=f><input id=a><button id=x type=button></button><button id=y type=reset>"
         "</button><button id=b value=v></button><input id=c type=submit></form>",
         "b=v", "a b"},
        {"<input type=image id=b form=f><form id=f><input id=a><input type=submit></form>", "b",
         "a b"},
        {"<form id=f><input id=a></form><button id=b form=f></button>", "b", "a b"},
        {"<form id=f><input id=a><input type=submit id=b disabled><button></button></form>", "b",
         "a"},
        {"<form id=f><input name=form><input name=elements><input id=a name=id><input type=image"
         " id=b></form>",
         "b", "a b"},
        {"<form id=f><input id=a><input type=checkbox checked></form><button></button>", "", "a"},
        {"<form><button></button></form><input id=a>", "", "a"},
    };
    class Pressing : public Witness {
    public:
        Pressing(Document document, BackEnd& back_end)
            : Witness(document), page_(std::move(document)), back_end_(back_end) {}
        void onclick() override {}
        void onfocusin() override {}
        void onsubmit() override {}
        void onkeypress(int /*key_code*/) override {
            const auto before = back_end_.RoundTrips();
            lines.push_back("button " + Told(page_.activeElement().DefaultButton()));
            EXPECT_EQ(back_end_.RoundTrips(), before);
        }
        Document page_;
        BackEnd& back_end_;
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.html);
        const Document page = Open(std::string(row.html) +
                                   "<script>onclick = (e) => say(e.target.id);"
                                   "onsubmit = (e) => e.preventDefault()</script>");
        EXPECT_EQ(Witness::Told(Find("a").DefaultButton()), row.button);
        Pressing witness(page, back_end());
        Click("a");
        Press("ENTER");
        ExpectTold(witness, {std::string("button ") + row.button});
        EXPECT_EQ(Said(row.clicked), row.clicked);
    }
}

TEST_F(DocumentEvent, TellsOfPagesThatTakeThePrecautions) {
    const std::string forbidding =
        "<meta http-equiv=Content-Security-Policy content=\"script-src 'none'\"><input id=a>";
    const std::string redefining =
        "<script>for (const type of [EventTarget, Document, Element, Node, Array, String, Map])"
        " for (const name of Object.getOwnPropertyNames(type.prototype)) try {"
        " type.prototype[name] = () => { throw 0; } } catch {}; WeakRef = JSON = null;</script>"
        "<script>window.onclick = (e) => e.stopImmediatePropagation()</script><input id=a>";
    const std::string rewriting =
        "<script>setTimeout(() => { document.open(); document.write('<input id=a>');"
        " document.close(); }, 100)</script>";
    for (const std::string& body : {redefining, forbidding, rewriting}) {
        const Document before = Open("");
        Witness keeps_watching(before);
        const Document page = OpenBare("<!doctype html>" + body);
        Witness witness(page);
        ASSERT_TRUE(Wait([&] { return Find("a") ? true : false; })) << body;
        Pump();
        Click("a");
        {
            SCOPED_TRACE(body);
            ExpectTold(witness, {"focus a", "click a"});
        }
    }
}

TEST_F(DocumentEvent, FiresInsideAHandlerWithoutThePage) {
    const Document page = Open("<input id=a onfocusin=say('in') onchange=say('changed')>");
    class Firing : public Witness {
    public:
        explicit Firing(Document document) : Witness(document), page_(std::move(document)) {}
        void onclick() override {
            Witness::onclick();
            EXPECT_TRUE(page_.activeElement().fireEvent("onfocusin"));
        }
        void onkeypress(int key_code) override {
            const bool fired = key_code != 13 || page_.activeElement().fireEvent("onchange");
            EXPECT_TRUE(fired);
        }
        Document page_;
    };
    Firing witness(page);
    Click("a");
    Type("1");
    Press("ENTER");
    ExpectTold(witness, {"focus a", "click a", "focus a"});
    EXPECT_EQ(Said("in changed"), "in changed");
}

TEST_F(DocumentEvent, LosesNoneOfManyActs) {
    std::string fields;
    for (int i = 0; i < 100; ++i) fields += "<input id=f" + std::to_string(i) + ">";
    const Document page = Open(fields);
    Witness witness(page);
    Strings expected;
    Click("f0");
    ExpectTold(witness, {"focus f0", "click f0"});
    for (int i = 0; i < 100; ++i) {
        const std::string field = "f" + std::to_string(i);
        ASSERT_TRUE(Type("x") && Press("TAB"));
        expected.insert(expected.end(), {"key120 " + field, "leave " + field + "=x"});
        if (i < 99) expected.push_back("focus f" + std::to_string(i + 1));
    }
    ExpectTold(witness, expected);
}

}  // namespace
}  // namespace tamrin::conformance
