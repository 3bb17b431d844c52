#pragma once

#include <functional>

#include "app/frm_ie_auto_form.h"
#include "app/record_editor.h"
#include "platform/browser.h"
#include "recorder/tag_list.h"
#include "state/globals.h"

namespace tamrin {

// The tag list: the elements of the page that is attached or recorded. Choosing one shows it in the
// page, and so does choosing a record of the record list while nothing runs.
class TagPane {
public:
    // `page` answers the window whose page is listed, null when there is none.
    TagPane(Globals& globals, MainControls& controls, RecordEditor& records,
            std::function<std::shared_ptr<Browser>()> page);

    // The page is another one: its elements are let go, and it is listed anew when the list is
    // seen.
    void Outdate() {
        outdated_ = true;
        tags_.elements.clear();
    }

    // Adds a record of the page of a window to the list, below the current line; at the end while
    // the list is being recorded. An empty list gets the record that opens the page before it.
    void AddRecord(Browser& browser, const std::string& record);

private:
    void Timer2_Timer();
    void Timer3_Timer();
    void lstDetail_Click();
    void lstDetail_DblClick();
    bool Shown() const { return globals_.settings.disp == 1; }
    Element Chosen() const;

    Globals& globals_;
    MainControls& controls_;
    RecordEditor& records_;
    std::function<std::shared_ptr<Browser>()> page_;
    TagList tags_;
    bool outdated_ = false;
};

}  // namespace tamrin
