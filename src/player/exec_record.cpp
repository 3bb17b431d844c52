#include "player/exec_record.h"

#include <algorithm>
#include <cmath>

#include "browser/element_keys.h"
#include "browser/element_types.h"
#include "browser/find_element.h"
#include "browser/wait.h"
#include "platform/text.h"
#include "player/input_data.h"
#include "player/key_string.h"

namespace tamrin {

std::string RecordExecutor::Expand(std::string_view item, bool as_keys) {
    const auto clipboard = [&] {
        return as_keys ? KeyStringOf(host_.ClipboardText()) : host_.ClipboardText();
    };
    return ExpandReservedTexts(DecodeItemValue(item), {clipboard, globals_.last_error});
}

StepResult RecordExecutor::ExecRecord(const Record& record, int row, int ready_state) {
    const std::string& act = record.act;
    if (act == "//") return {NextStep::kGoOn, RecordOutcome::kComment};
    if (act == "sendkeys") return SendRecordKeys(record, row);
    if (act == "sendkeys-if-busy") {
        // A browser that shows a dialog box is busy, so this answers one that may come or not.
        if (ready_state == -1) return SendRecordKeys(record, row);
        return {NextStep::kGoOn, RecordOutcome::kNotBusy};
    }
    if (act == "quit") {
        browser_->Quit();
        return {NextStep::kEndRun};
    }
    if (act == "url" || act == "navigate") return Navigate(Expand(record.indt, false));
    if (act == "wait") {
        const std::string indt = Expand(record.indt, false);
        WaitMs(clock_, globals_, std::llround(LeadingNumber(FirstToken(indt))));
        return {};
    }
    if (ready_state != 4) return {NextStep::kAgain};
    return ExecOnElement(record, row);
}

StepResult RecordExecutor::Navigate(const std::string& address) {
    const bool opened = !address.empty() && browser_->Navigate(address);
    return {NextStep::kGoOn, opened ? RecordOutcome::kDone : RecordOutcome::kInvalid};
}

StepResult RecordExecutor::SendRecordKeys(const Record& record, int row) {
    // A line that carries its keys bare, directly behind the first comma, has them in the field
    // without a name; in every line that this program writes that field is empty.
    const std::string keys = Expand(record.bare.empty() ? record.indt : record.bare, true);
    WaitMs(clock_, globals_, 500);
    if (globals_.activity.empty()) return {NextStep::kGoOn, RecordOutcome::kStopped};
    std::string why;
    const auto strokes = ParseKeyString(keys, why);
    const std::string number = "行番号" + std::to_string(row + 1);
    if (!strokes) {
        host_.ShowMessage(
            number + " のキー文字列が不正です。キーは送られません。\r\n" + why + "\r\n\r\n" + keys,
            "キー入力エラー");
        return {NextStep::kGoOn, RecordOutcome::kInvalid};
    }
    const bool sent = input_.SendKeys(*strokes);
    clock_.DoEvents();
    if (sent || globals_.activity.empty() || !browser_->Alive()) return {};
    host_.SetStatus(number + " <キー送信不可>前面のウィンドウがキーを受け付けません。");
    return {NextStep::kGoOn, RecordOutcome::kNotSent};
}

RecordExecutor::Act RecordExecutor::ReadAct(const Record& record) {
    const double seconds = LeadingNumber(DecodeComma(record.userwait));
    constexpr double kLongestWait = 24.0 * 60 * 60;
    return {
        .record = record,
        .indt = Expand(record.indt, false),
        .wait_ms = static_cast<int>(std::lround(std::clamp(seconds, 0.0, kLongestWait) * 1000)),
        .clicks = StartsWithIgnoreCase(record.act, "click"),
        .real_click = globals_.settings.mouse_click || EqualsIgnoreCase(record.act, "click_mouse"),
    };
}

StepResult RecordExecutor::ExecOnElement(const Record& record, int row) {
    browser_->SetForeground();
    Act act = ReadAct(record);
    if (EqualsIgnoreCase(record.type, "href")) {
        if (const auto result = WaitBeforeLink(act)) return *result;
        act.wait_ms = 0;
    }
    const Found found = FindElement(
        browser_->document(), {record.id, record.type, act.indt, DecodeItemValue(record.value)});
    if (!found.element) return NotFound(act, row);
    if (found.by == FoundBy::kLinkText || found.by == FoundBy::kLinkAddress) {
        return FollowLink(found.element, act);
    }
    const StepResult result = ActOn(found.element, act);
    clock_.DoEvents();
    return result;
}

std::optional<StepResult> RecordExecutor::WaitBeforeLink(const Act& act) {
    const bool skipped = clicker_.UserWait(act.wait_ms);
    if (globals_.activity.empty()) return StepResult{NextStep::kGoOn, RecordOutcome::kStopped};
    if (IsScript(act.indt)) {
        if (!skipped) browser_->Navigate(act.indt);
        WaitMs(clock_, globals_, 500);
        return StepResult{NextStep::kGoOn,
                          skipped ? RecordOutcome::kSkipped : RecordOutcome::kDone};
    }
    if (skipped) return StepResult{NextStep::kGoOn, RecordOutcome::kSkipped};
    return std::nullopt;
}

StepResult RecordExecutor::FollowLink(const Element& link, const Act& act) {
    link.scrollIntoView();
    clicker_.Press(*browser_, link, act.real_click);
    WaitMs(clock_, globals_, 2000);
    return {};
}

StepResult RecordExecutor::ActOn(const Element& element, const Act& act) {
    const ElementKind kind = KindOf(GetElementType(element));
    if (HoldsValue(kind) && globals_.settings.auto_point) clicker_.PointAt(*browser_, element);
    switch (EqualsIgnoreCase(act.record.type, "submit") ? ElementKind::kSubmit : kind) {
        case ElementKind::kText:
        case ElementKind::kEmail:
            return SetValue(element, act);
        case ElementKind::kCheck:
            return SetChecked(element, act);
        case ElementKind::kSelect:
            return SetSelected(element, act);
        case ElementKind::kButton:
            return Click(element, act, act.clicks && element.getAttribute("onclick"));
        case ElementKind::kImage:
            return act.clicks ? Click(element, act, false) : StepResult();
        case ElementKind::kSubmit:
            return Click(element, act, element.getAttribute("onclick").has_value());
        case ElementKind::kLink:
        case ElementKind::kUntyped:
        case ElementKind::kOther:
            if (act.clicks) return Click(element, act, true);
            element.fireEvent("onclick");
            return {};
    }
    return {};
}

StepResult RecordExecutor::SetValue(const Element& element, const Act& act) {
    return element.Change("value", act.indt) ? StepResult() : Invalid(element, act);
}

StepResult RecordExecutor::SetChecked(const Element& element, const Act& act) {
    Element target = element;
    std::optional<bool> checked = TruthValue(act.indt);
    const std::string item = DecodeItemValue(act.record.value);
    const std::string_view value = RadioValue(act.indt, item);
    if (!value.empty() && EqualsIgnoreCase(GetElementType(element), "radio")) {
        target = FindRadio(browser_->document(), element.name(), value).element;
        if (target && !checked) checked = true;
    }
    if (!checked || !target.Change("checked", *checked ? "True" : "False")) {
        return Invalid(element, act);
    }
    return {};
}

StepResult RecordExecutor::SetSelected(const Element& element, const Act& act) {
    std::string index;
    const auto number = WholeNumber(act.indt);
    if (number && *number >= 0 && *number < LeadingNumber(element.Get("length"))) {
        index = std::to_string(static_cast<int>(*number));
    } else {
        const auto texts = element.OptionTexts();
        // The last of several equal texts is the one that has always been chosen.
        const auto last = std::find(texts.rbegin(), texts.rend(), act.indt);
        if (last == texts.rend()) return Invalid(element, act);
        index = std::to_string(texts.rend() - last - 1);
    }
    return element.Change("selectedIndex", index) ? StepResult() : Invalid(element, act);
}

StepResult RecordExecutor::Click(const Element& element, const Act& act, bool fires) {
    const bool clicked = clicker_.ClickElement(*browser_, element, act.real_click, act.wait_ms);
    if (!clicked && fires) element.fireEvent("onclick");
    return {NextStep::kGoOn, clicked ? RecordOutcome::kDone : RecordOutcome::kSkipped};
}

StepResult RecordExecutor::NotFound(const Act& act, int row) {
    globals_.last_error = "行番号" + std::to_string(row + 1) +
                          " <該当フィールド無し>Act=" + act.record.act + ",Id=" + act.record.id +
                          ",Type=" + act.record.type +
                          ",InDt=" + ShownValue(act.record.type, act.indt);
    host_.SetStatus(globals_.last_error);
    return {NextStep::kGoOn, RecordOutcome::kNotFound};
}

StepResult RecordExecutor::Invalid(const Element& element, const Act& act) {
    // A page that has just gone takes no value either: the record then waits for the next page.
    if (!browser_->Alive() || IEState(*browser_) != 4) return {NextStep::kAgain};
    const std::string indt =
        ShownValue(act.record.type, ShownValue(GetElementType(element), act.indt));
    host_.ShowMessage("入力データ不正\r\nId=" + element.id() + "\r\ninputdata=" + indt, "");
    return {NextStep::kGoOn, RecordOutcome::kInvalid};
}

}  // namespace tamrin
