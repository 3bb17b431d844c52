#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "conformance/back_end.h"
#include "conformance/suite.h"

namespace tamrin::conformance {

// Writes down what pages and their browser report: the event and the active element as it was, with
// its value, checked state or index, its form, and at Enter its form's default button.
class Witness : public EventLog {
public:
    Witness(Browser& browser, BackEnd& back_end)
        : EventLog(browser), browser_(browser), back_end_(back_end) {}

    // Listens to a page and its frames.
    void Listen(const Document& document) {
        for (const Frame& frame : document.frames()) Listen(frame.document);
        pages_.push_back(std::make_unique<Page>(document, *this));
    }
    // Listens to each page that the window shows from now on.
    void Follow() {
        follows_ = true;
        Listen(browser_.document());
    }

    // The element whose focus was reported last stands for what the page is left with.
    void BeforeNavigate2(const std::string& /*url*/) override {
        lines.push_back("navigate " + Told(watched_));
    }
    void NavigateComplete2() override {
        if (!follows_) return;
        pages_.clear();
        Listen(browser_.document());
    }

    // Whether the handlers fire events: onfocusin at a click, onchange at Enter.
    bool fires = false;

private:
    static std::string Told(const Element& e) {
        std::string text = e.id().empty() ? e.tagName() : e.id();
        const std::string type = e.getAttribute("type").value_or("");
        if (type == "checkbox" || type == "radio") return text + "=" + e.checked();
        if (type == "select-one") return text + "=" + e.selectedIndex();
        if (!e.value().empty()) text += "=" + e.value();
        if (e.getAttribute("href")) text += ">" + e.innerText();
        return text;
    }

    class Page : public DocumentEvents {
    public:
        Page(Document document, Witness& witness)
            : witness_(witness),
              document_(std::move(document)),
              connection_(document_.Connect(*this)) {}

        void onclick() override {
            Note("click");
            if (witness_.fires) document_.activeElement().fireEvent("onfocusin");
        }
        void onfocusin() override {
            witness_.watched_ = document_.activeElement();
            Note("focus");
        }
        void onbeforedeactivate() override { Note("leave"); }
        void onkeypress(int key_code) override {
            Note("key" + std::to_string(key_code), key_code == 13);
            if (witness_.fires && key_code == 13) document_.activeElement().fireEvent("onchange");
        }
        void onsubmit() override { Note("submit"); }

    private:
        // The moment comes with the event: nothing is asked for.
        void Note(const std::string& event, bool enter = false) {
            const auto before = witness_.back_end_.RoundTrips();
            const Element active = document_.activeElement();
            std::string line = event + " " + Told(active);
            if (const Element form = active.form()) line += " in " + form.id();
            if (const Element button = active.DefaultButton(); button && enter) {
                line += " presses " + Told(button);
            }
            EXPECT_EQ(witness_.back_end_.RoundTrips(), before) << line;
            witness_.lines.push_back(line);
        }

        Witness& witness_;
        Document document_;
        std::unique_ptr<Connection> connection_;
    };

    Browser& browser_;
    BackEnd& back_end_;
    Element watched_;
    bool follows_ = false;
    std::vector<std::unique_ptr<Page>> pages_;
};

}  // namespace tamrin::conformance
