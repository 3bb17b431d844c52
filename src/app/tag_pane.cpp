#include "app/tag_pane.h"

#include <utility>

#include "app/tag_analysis.h"
#include "recorder/event_record.h"
#include "scenario/record.h"

namespace tamrin {
namespace {

// The element that a record names, null when the page has none.
Element ElementOfRecord(const Document& document, std::string_view record) {
    const bool named =
        !GetRecordItem(record, "id").empty() || !GetRecordItem(record, "type").empty();
    return named ? FindByRecord(document, record).element : Element();
}

}  // namespace

TagPane::TagPane(Globals& globals, MainControls& controls, RecordEditor& records,
                 std::function<std::shared_ptr<Browser>()> page)
    : globals_(globals), controls_(controls), records_(records), page_(std::move(page)) {
    controls_.Timer2.onTimer = [this] { Timer2_Timer(); };
    controls_.Timer3.onTimer = [this] { Timer3_Timer(); };
    controls_.lstDetail.onClick = [this] { lstDetail_Click(); };
    controls_.lstDetail.onDblClick = [this] { lstDetail_DblClick(); };
    controls_.lstDtList.onClick = [this] {
        // Restart the interval: while the user moves through the list, nothing is looked up.
        controls_.Timer3.SetEnabled(false);
        controls_.Timer3.SetEnabled(Shown() && globals_.activity.empty());
    };
}

void TagPane::Timer2_Timer() {
    if (!outdated_ || !Shown()) return;
    outdated_ = false;
    const std::shared_ptr<Browser> browser = page_();
    tags_ = browser ? ListTags(browser->document()) : TagList();
    controls_.lstDetail.SetLines(std::move(tags_.lines));
}

void TagPane::Timer3_Timer() {
    controls_.Timer3.SetEnabled(false);
    const std::shared_ptr<Browser> browser = page_();
    if (!browser || !Shown() || !globals_.activity.empty()) return;
    ElementOfRecord(browser->document(), controls_.lstDtList.Line(controls_.lstDtList.ListIndex()))
        .Outline();
}

Element TagPane::Chosen() const {
    const int position = controls_.lstDetail.ListIndex();
    const bool listed = position >= 0 && position < static_cast<int>(tags_.elements.size());
    return listed ? tags_.elements[static_cast<std::size_t>(position)] : Element();
}

void TagPane::lstDetail_Click() { Chosen().Outline(); }

void TagPane::lstDetail_DblClick() {
    const std::shared_ptr<Browser> browser = page_();
    const Element element = Chosen();
    if (!browser || !element || globals_.ActivityContains("play")) return;
    const std::string record = RecordOfElement(element);
    if (record.empty()) {
        controls_.txtStatus.SetText("All null data event!");
        return;
    }
    AddRecord(*browser, record);
}

void TagPane::AddRecord(Browser& browser, const std::string& record) {
    ListBox& list = controls_.lstDtList;
    std::vector<std::string> lines;
    if (list.Count() == 0 && browser.Alive()) {
        lines.push_back(BuildUrlRecord(browser.State(), browser.document().url()));
    }
    lines.push_back(record);
    const bool at_end = globals_.ActivityContains("rec") || list.ListIndex() < 0;
    const int position = at_end ? list.Count() : list.ListIndex() + 1;
    const int last = position + static_cast<int>(lines.size()) - 1;
    records_.Replace(position, 0, std::move(lines));
    list.SetListIndex(last);
}

}  // namespace tamrin
