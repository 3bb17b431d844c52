#include "player/player.h"

#include <array>

#include "browser/wait.h"
#include "player/exec_record.h"
#include "player/input_data.h"

namespace tamrin {
namespace {

// How long a page that the last record has opened may take to come.
constexpr std::uint32_t kLastPageMs = 25000;

// The parts of a size_bar field: four numbers and a run of flags, parted by full stops. False when
// there are fewer than five parts.
bool ReadSizeBar(std::string size_bar, WindowPlace& place, WindowBars& bars) {
    size_bar += "00000";  // flags that are not written are off
    std::array<std::string_view, 5> parts;
    std::string_view rest = size_bar;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto stop = rest.find('.');
        parts[i] = rest.substr(0, stop);
        if (stop == std::string_view::npos) {
            if (i + 1 < parts.size()) return false;
            break;
        }
        rest.remove_prefix(stop + 1);
    }
    const auto number = [&](int i) { return static_cast<int>(LeadingNumber(parts[i])); };
    const auto flag = [&](std::size_t i) { return i < parts[4].size() && parts[4][i] != '0'; };
    place = {number(0), number(1), number(2), number(3)};
    bars = {flag(0), flag(1), flag(2), flag(3)};
    return true;
}

}  // namespace

RunEnd Player::Play() {
    host_.SetStatus("");
    if (host_.RecordCount() == 0) {
        host_.ShowMessage("再生するデータがありません。", "");
        return RunEnd::kNothingToPlay;
    }
    globals_.activity = "play";
    globals_.last_activity_tick = clock_.TickCount();
    events_.RunBegan();
    std::string why;
    const std::shared_ptr<Browser> browser = launcher_.Create(why);
    if (!browser) {
        clock_.DoEvents();  // the user may have stopped it
        return NoBrowser(why);
    }
    return PlayAll(browser);
}

RunEnd Player::PlayAll(const std::shared_ptr<Browser>& browser) {
    events_.BrowserOpened(browser);
    browser->SetForeground();
    Opening opening;
    RunEnd end = ReadOpening(opening);
    if (end != RunEnd::kCompleted) {
        events_.RunEnded(end);
        return end;
    }
    const int repeat = globals_.settings.play_count;
    std::uint32_t since = clock_.TickCount();
    Open(*browser, opening.address);
    browser->SetVisible(true);
    browser->SetPlace(opening.place);
    browser->SetBars(opening.bars);
    Report(opening.row, "url", RecordOutcome::kDone, since);
    for (int time = 1;; ++time) {
        end = PlayRecords(browser, opening.row + 1);
        if (end != RunEnd::kCompleted || time >= repeat || !browser->Alive()) break;
        since = clock_.TickCount();
        Open(*browser, opening.address);
        Report(opening.row, "url", RecordOutcome::kDone, since);
    }
    // What the last record has begun, such as sending a form, would end with the browser.
    if (end == RunEnd::kCompleted && !globals_.keep_browser) {
        globals_.last_activity_tick = clock_.TickCount();
        IEWait(clock_, globals_, *browser, kLastPageMs);
        if (globals_.activity.empty()) end = RunEnd::kStopped;
    }
    Finish(end);
    return end;
}

RunEnd Player::ReadOpening(Opening& opening) {
    int row = 0;
    while (row < host_.RecordCount() && GetRecordItem(host_.Record(row), "Act") != "url") ++row;
    if (row == host_.RecordCount()) return RunEnd::kNothingToPlay;
    const Record record = ParseRecord(host_.Record(row));
    opening.row = row;
    opening.address = DecodeItemValue(record.indt);
    if (opening.address.empty()) return RunEnd::kNothingToPlay;
    if (!ReadSizeBar(record.size_bar, opening.place, opening.bars)) {
        host_.ShowMessage("位置・サイズまたはツールバーの指定が不正です。", "フォーマットエラー");
        return RunEnd::kBadSizeBar;
    }
    return RunEnd::kCompleted;
}

void Player::Open(Browser& browser, const std::string& address) {
    browser.Navigate(address);
    IEWait(clock_, globals_, browser, 0);
}

RunEnd Player::PlayRecords(const std::shared_ptr<Browser>& browser, int row) {
    IEWait(clock_, globals_, *browser, 0);
    RecordExecutor executor(globals_, clock_, launcher_.input(), host_, browser);
    std::uint32_t previous_step = 0;
    std::uint32_t record_start = clock_.TickCount();
    while (row < host_.RecordCount()) {
        if (globals_.activity.empty()) return RunEnd::kStopped;
        const Record record = ParseRecord(host_.Record(row));
        if (!browser->Alive() && !(browser->Closed() && record.act == "quit")) {
            return RunEnd::kBrowserDied;
        }
        events_.RecordBegan(row);
        int ready_state = IEState(*browser);
        // This limits one pass, not the record: the first record of a run goes ahead on an
        // unfinished page, and so does a record after a single pass that took longer than the
        // limit.
        if (ready_state != 4 &&
            clock_.TickCount() - previous_step > globals_.settings.MaxWaitMs()) {
            ready_state = 4;
        }
        const StepResult step = executor.ExecRecord(record, row, ready_state);
        previous_step = clock_.TickCount();
        if (step.next == NextStep::kAgain) {
            clock_.Sleep(1);  // leaves the processor to the page
            clock_.DoEvents();
            continue;
        }
        const bool stopped = globals_.activity.empty();
        Report(row, record.act, stopped ? RecordOutcome::kStopped : step.outcome, record_start);
        if (step.next == NextStep::kEndRun) return RunEnd::kCompleted;
        clock_.DoEvents();
        record_start = clock_.TickCount();
        ++row;
    }
    if (globals_.activity.empty()) return RunEnd::kStopped;
    // The last record may have closed the window itself, as a page does that logs its user out.
    const bool in_order = browser->Alive() || browser->Closed();
    return in_order ? RunEnd::kCompleted : RunEnd::kBrowserDied;
}

RunEnd Player::NoBrowser(const std::string& why) {
    if (globals_.activity.empty()) {
        Finish(RunEnd::kStopped);
        return RunEnd::kStopped;
    }
    globals_.activity.clear();
    host_.ShowMessage(why, "ブラウザーを起動できません");
    events_.RunEnded(RunEnd::kNoBrowser);
    return RunEnd::kNoBrowser;
}

void Player::Finish(RunEnd end) {
    clock_.DoEvents();  // those of the last page
    if (end == RunEnd::kBrowserDied) {
        host_.ShowMessage("ブラウザーが終了したか、ページが異常終了したため、再生を中止しました。",
                          "再生エラー");
    }
    const bool closes = globals_.close_after_play || globals_.settings.quit_after_play;
    if (!closes) globals_.activity.clear();
    events_.RunEnded(end);
}

void Player::Report(int row, const std::string& act, RecordOutcome outcome, std::uint32_t since) {
    events_.RecordDone({row, act, outcome, clock_.TickCount() - since});
}

}  // namespace tamrin
