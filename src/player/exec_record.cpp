#include "player/exec_record.h"

#include <algorithm>
#include <cmath>

#include "browser/element_keys.h"
#include "browser/find_element.h"
#include "browser/find_link.h"
#include "browser/wait.h"
#include "platform/text.h"
#include "player/element_kinds.h"
#include "player/input_data.h"
#include "player/key_string.h"
#include "scenario/record.h"

namespace tamrin {

std::string RecordExecutor::Expand(std::string_view field, bool as_keys) {
    const auto clipboard = [&] {
        return as_keys ? KeyStringOf(host_.ClipboardText()) : host_.ClipboardText();
    };
    return ExpandReservedTexts(DecodeItemValue(field), {clipboard, globals_.last_error});
}

StepResult RecordExecutor::ExecRecord(int row, int ready_state) {
    const std::string act = GetRecordItem(host_.Record(row), "Act");
    if (act == "//") return {kGoOn, RecordOutcome::kComment};
    if (act == "sendkeys") return SendRecordKeys(row);
    if (act == "sendkeys-if-busy") {
        // A browser that shows a dialog box is busy, so this answers one that may come or not.
        if (ready_state == -1) return SendRecordKeys(row);
        return {kGoOn, RecordOutcome::kNotBusy};
    }
    if (act == "quit") {
        browser_->Quit();
        return {kEndRun};
    }
    if (act == "url" || act == "navigate" || act == "wait") {
        const std::string indt = Expand(GetRecordItem(host_.Record(row), "indt"), false);
        if (act != "wait") return Navigate(indt);
        WaitMs(clock_, globals_, std::llround(LeadingNumber(FirstToken(indt))));
        return {};
    }
    if (ready_state != 4) return {kAgain};
    Fields record = ReadFields(row);
    return ExecOnElement(record);
}

StepResult RecordExecutor::Navigate(const std::string& address) {
    if (address.empty() || !browser_->Navigate(address)) return {kGoOn, RecordOutcome::kInvalid};
    return {};
}

StepResult RecordExecutor::SendRecordKeys(int row) {
    // A line that carries its keys bare, directly behind the first comma, has them in the field
    // without a name; in every line that this program writes that field is empty.
    std::string field = GetRecordItem(host_.Record(row), "");
    if (field.empty()) field = GetRecordItem(host_.Record(row), "indt");
    const std::string keys = Expand(field, true);
    WaitMs(clock_, globals_, 500);
    if (globals_.activity.empty()) return {kGoOn, RecordOutcome::kStopped};
    std::string why;
    const auto strokes = ParseKeyString(keys, why);
    const std::string number = "行番号" + std::to_string(row + 1);
    if (!strokes) {
        host_.ShowMessage(
            number + " のキー文字列が不正です。キーは送られません。\r\n" + why + "\r\n\r\n" + keys,
            "キー入力エラー");
        return {kInvalidData, RecordOutcome::kInvalid};
    }
    const bool sent = input_.SendKeys(*strokes);
    clock_.DoEvents();
    if (sent || globals_.activity.empty() || !browser_->Alive()) return {};
    host_.SetStatus(number + " <キー送信不可>前面のウィンドウがキーを受け付けません。");
    return {kGoOn, RecordOutcome::kNotSent};
}

RecordExecutor::Fields RecordExecutor::ReadFields(int row) {
    const std::string_view line = host_.Record(row);
    Fields record;
    record.row = row;
    record.act = GetRecordItem(line, "Act");
    record.id = GetRecordItem(line, "id");
    record.type = GetRecordItem(line, "type");
    const double seconds = LeadingNumber(DecodeComma(GetRecordItem(line, "userwait")));
    constexpr double kMostSeconds = 24.0 * 60 * 60;
    record.wait_ms = static_cast<int>(std::lround(std::clamp(seconds, 0.0, kMostSeconds) * 1000));
    record.clicks = StartsWithIgnoreCase(record.act, "click");
    record.real_click =
        globals_.settings.mouse_click || EqualsIgnoreCase(record.act, "click_mouse");
    record.radio_value = DecodeItemValue(GetRecordItem(line, "value"));
    record.indt = Expand(GetRecordItem(line, "indt"), false);
    return record;
}

Element RecordExecutor::Find(const Fields& record) {
    const Document document = browser_->document();
    Element element = FindThroughFrames(document, [&](const Document& page) {
        return FindElement(page, record.id, record.type, record.indt);
    });
    if (element || record.indt.empty()) return element;
    return FindThroughFrames(
        document, [&](const Document& page) { return FindByValue(page, "input", record.indt); });
}

StepResult RecordExecutor::ExecOnElement(Fields& record) {
    browser_->SetForeground();
    Element element = Find(record);
    if (EqualsIgnoreCase(record.type, "href")) {
        if (const auto followed = FollowLink(record)) return *followed;
        record.wait_ms = 0;  // it is over
    }
    if (!element && !record.indt.empty()) {
        element = FindThroughFrames(browser_->document(), [&](const Document& page) {
            return FindByValue(page, "*", record.indt);
        });
    }
    if (!element) return NotFound(record);
    const StepResult result = ActOn(element, record);
    clock_.DoEvents();
    return result;
}

std::optional<StepResult> RecordExecutor::FollowLink(const Fields& record) {
    const bool is_script = record.indt.find("javascript") != std::string::npos;
    const bool skipped = clicker_.UserWait(record.wait_ms);
    if (globals_.activity.empty()) return StepResult{kGoOn, RecordOutcome::kStopped};
    const RecordOutcome outcome = skipped ? RecordOutcome::kSkipped : RecordOutcome::kDone;
    if (is_script) {
        if (!skipped) browser_->Navigate(record.indt);
        WaitMs(clock_, globals_, 500);
        return StepResult{kFollowed, outcome};
    }
    if (!skipped) {
        const LinkMatch match = FindLinkByHref(browser_->document(), record.indt);
        if (match.count != 1) return std::nullopt;
        clicker_.Press(*browser_, match.link, record.real_click);
        WaitMs(clock_, globals_, 2000);
    }
    return StepResult{kGoOn, outcome};
}

StepResult RecordExecutor::ActOn(const Element& element, const Fields& record) {
    const std::string type = GetElementType(element);
    const ElementKind kind = KindOf(type);
    const bool is_value =
        kind == ElementKind::kText || kind == ElementKind::kCheck || kind == ElementKind::kSelect;
    if (is_value && globals_.settings.auto_point) clicker_.PointAt(*browser_, element);
    switch (EqualsIgnoreCase(record.type, "submit") ? ElementKind::kSubmit : kind) {
        case ElementKind::kText:
            return SetValue(element, record);
        case ElementKind::kCheck:
            return SetChecked(element, record);
        case ElementKind::kSelect:
            return SetSelected(element, record);
        case ElementKind::kButton:
            if (record.clicks && element.getAttribute("onclick")) element.fireEvent("onclick");
            return Click(element, record);
        case ElementKind::kImage:
            return record.clicks ? Click(element, record) : StepResult();
        case ElementKind::kSubmit:
            if (element.getAttribute("onclick")) element.fireEvent("onclick");
            return Click(element, record);
        case ElementKind::kOther:
            element.fireEvent("onclick");
            return record.clicks ? Click(element, record) : StepResult();
    }
    return {};
}

StepResult RecordExecutor::SetValue(const Element& element, const Fields& record) {
    return element.Change("value", record.indt) ? StepResult() : Invalid(element, record);
}

StepResult RecordExecutor::SetChecked(const Element& element, const Fields& record) {
    Element target = element;
    std::optional<bool> checked = TruthValue(record.indt);
    // The button of a group that a value stands for, be it in an item of its own or, in a record
    // written by hand, in place of the state.
    const std::string& value = checked ? record.radio_value : record.indt;
    if (!value.empty() && EqualsIgnoreCase(GetElementType(element), "radio")) {
        target = FindThroughFrames(browser_->document(), [&](const Document& page) {
            return FindRadio(page, element.name(), value);
        });
        if (target && !checked) checked = true;
    }
    if (!checked || !target.Change("checked", *checked ? "True" : "False")) {
        return Invalid(element, record);
    }
    return {};
}

StepResult RecordExecutor::SetSelected(const Element& element, const Fields& record) {
    std::string index;
    const auto number = WholeNumber(record.indt);
    if (number && *number >= 0 && *number < LeadingNumber(element.Get("length"))) {
        index = std::to_string(static_cast<int>(*number));
    } else {
        const auto texts = element.OptionTexts();
        // The last of several equal texts is the one that has always been chosen.
        const auto last = std::find(texts.rbegin(), texts.rend(), record.indt);
        if (last == texts.rend()) return Invalid(element, record);
        index = std::to_string(texts.rend() - last - 1);
    }
    return element.Change("selectedIndex", index) ? StepResult() : Invalid(element, record);
}

StepResult RecordExecutor::Click(const Element& element, const Fields& record) {
    const bool clicked =
        clicker_.ClickElement(*browser_, element, record.real_click, record.wait_ms);
    return {kGoOn, clicked ? RecordOutcome::kDone : RecordOutcome::kSkipped};
}

StepResult RecordExecutor::NotFound(const Fields& record) {
    globals_.last_error = "行番号" + std::to_string(record.row + 1) +
                          " <該当フィールド無し>Act=" + record.act + ",Id=" + record.id +
                          ",Type=" + record.type + ",InDt=" + record.indt;
    host_.SetStatus(globals_.last_error);
    return {kGoOn, RecordOutcome::kNotFound};
}

StepResult RecordExecutor::Invalid(const Element& element, const Fields& record) {
    // A page that has just gone takes no value either: the record then waits for the next page.
    if (!browser_->Alive() || IEState(*browser_) != 4) return {kAgain};
    host_.ShowMessage("入力データ不正\r\nId=" + element.id() + "\r\ninputdata=" + record.indt, "");
    return {kInvalidData, RecordOutcome::kInvalid};
}

}  // namespace tamrin
