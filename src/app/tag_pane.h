#pragma once

#include <functional>

#include "app/frm_ie_auto_form.h"
#include "app/record_editor.h"
#include "platform/browser.h"
#include "recorder/tag_list.h"
#include "state/globals.h"

namespace tamrin {

// The tag list: the elements of the page that is attached or recorded. Choosing an element outlines
// it in the page. While nothing runs, choosing a record outlines the element that it names.
class TagPane {
public:
    // `page` answers the window whose page is listed; null when there is none.
    TagPane(Globals& globals, MainControls& controls, RecordEditor& records,
            std::function<std::shared_ptr<Browser>()> page);

    // Called when the page has changed. Lets its elements go; the next page is listed as soon as
    // the list is visible.
    void Outdate() {
        outdated_ = true;
        tags_.elements.clear();
    }

    // Adds a record for the page of a window below the current line, or at the end while recording.
    // In an empty list the record that opens the page comes first.
    void AddRecord(Browser& browser, const std::string& record);

private:
    void Timer2_Timer();
    void Timer3_Timer();
    void lstDetail_Click();
    void lstDetail_DblClick();
    bool Shown() const { return controls_.optDispTags.Checked(); }
    Element Chosen() const;

    Globals& globals_;
    MainControls& controls_;
    RecordEditor& records_;
    std::function<std::shared_ptr<Browser>()> page_;
    TagList tags_;
    bool outdated_ = false;
};

}  // namespace tamrin
