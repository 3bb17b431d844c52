#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using Strings = std::vector<std::string>;

// Writes down what a page and its browser tell: the event, and the active element as it was.
class Witness : public EventLog, public DocumentEvents {
public:
    explicit Witness(Document document) : document_(std::move(document)) {
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
        lines.push_back("navigate " + Told(watched_));
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
        lines.push_back(event + " " + Told(document_.activeElement()));
    }

    Document document_;
    Element watched_;
    std::unique_ptr<Connection> connection_;
};

class DocumentEvent : public Suite {
protected:
    // What is told once no more has come for a while.
    Strings Told(Witness& witness) {
        for (std::size_t before = 0;;) {
            for (int i = 0; i < 12; ++i) Pump();
            if (before == witness.lines.size()) break;
            before = witness.lines.size();
        }
        return std::exchange(witness.lines, {});
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
    EXPECT_EQ(Told(witness), (Strings{"focus a", "click a", "key49 a=あ", "leave a=あ1", "focus b",
                                      "key120 b", "key13 b=x"}));
    Click("c");
    Click("d");
    EXPECT_EQ(Told(witness), (Strings{"leave b=x\r\n", "focus c=False", "click c=True",
                                      "leave c=True", "focus d=False", "click d=True"}));
    Press("TAB");
    Press("DOWN");
    Press("TAB");
    Type("s");
    Press("TAB");
    EXPECT_EQ(Told(witness), (Strings{"leave d=True", "focus e=0", "leave e=1", "focus f",
                                      "key115 f", "leave f=s"}));
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
        Strings told = Told(witness);
        std::erase(told, "submit b=送");
        std::erase_if(told, [](const auto& line) { return line.starts_with("Document"); });
        Strings expected = {"focus a",    "click a",    "key49 a",      "leave a=1",
                            "focus b=送", "click b=送", "navigate b=送"};
        if (element.find("write") != std::string::npos) expected.pop_back();
        EXPECT_EQ(told, expected) << element;
    }
}

}  // namespace
}  // namespace tamrin::conformance
