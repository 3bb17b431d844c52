#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "conformance/back_end.h"
#include "conformance/suite.h"

namespace tamrin::conformance {

// Writes down what a browser and the pages that it shows now and later report, with their frames:
// the event and the active element as it was, with its value, checked state or index, its form, and
// at Enter its form's default button. Then it also fires events, of which the page must see
// nothing.
class Witness : public EventLog {
public:
    Witness(Browser& browser, BackEnd& back_end)
        : EventLog(browser), browser_(browser), back_end_(back_end) {
        Listen(browser.document());
    }

    // The element whose focus was reported last stands for what the page is left with.
    void BeforeNavigate2(const std::string& /*url*/) override {
        lines.push_back("navigate " + Told(watched_));
    }
    void NavigateComplete2() override {
        pages_.clear();
        Listen(browser_.document());
    }
    void DocumentComplete(bool top) override {
        EventLog::DocumentComplete(top);
        if (!top) return;
        for (const Frame& frame : browser_.document().frames()) Listen(frame.document);
    }

private:
    static std::string Told(const Element& e) {
        std::string text = e.id();
        const std::string type = e.getAttribute("type").value_or("");
        if (type == "checkbox" || type == "radio") return text + "=" + e.checked();
        if (type == "select-one") return text + "=" + e.selectedIndex();
        return e.value().empty() ? text : text + "=" + e.value();
    }

    class Page : public DocumentEvents {
    public:
        Page(Document document, Witness& witness)
            : witness_(witness), document_(std::move(document)) {}

        void onclick() override { Note("click"); }
        void onfocusin() override {
            witness_.watched_ = document_.activeElement();
            Note("focus");
        }
        void onbeforedeactivate() override { Note("leave"); }
        void onkeypress(int key_code) override {
            const bool enter = key_code == 13;
            Note("key" + std::to_string(key_code), enter);
            for (const char* event : {"onfocusin", "onchange"}) {
                if (enter) document_.activeElement().fireEvent(event);
            }
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
        std::unique_ptr<Connection> connection_ = document_.Connect(*this);
    };

    void Listen(const Document& document) {
        pages_.push_back(std::make_unique<Page>(document, *this));
    }

    Browser& browser_;
    BackEnd& back_end_;
    Element watched_;
    std::vector<std::unique_ptr<Page>> pages_;
};

}  // namespace tamrin::conformance
