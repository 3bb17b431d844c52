#include "app/console_report.h"

#include <ostream>

namespace tamrin {
namespace {

const char* Word(RecordOutcome outcome) {
    switch (outcome) {
        case RecordOutcome::kDone:
            return "完了";
        case RecordOutcome::kComment:
            return "コメント";
        case RecordOutcome::kNotBusy:
            return "ビジーでない";
        case RecordOutcome::kSkipped:
            return "スキップ";
        case RecordOutcome::kPageFailed:
            return "ページを開けない";
        case RecordOutcome::kNotFound:
            return "該当フィールド無し";
        case RecordOutcome::kInvalid:
            return "入力データ不正";
        case RecordOutcome::kNotSent:
            return "キー送信不可";
        case RecordOutcome::kStopped:
            return "中止";
    }
    return "";
}

// Columns that a text takes on a terminal: one for an ASCII character, two for any other.
std::size_t Columns(std::string_view text) {
    std::size_t columns = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            ++columns;
        } else if (byte >= 0xC0) {
            columns += 2;
        }
    }
    return columns;
}

std::string Blanks(std::string_view text, std::size_t width) {
    const std::size_t columns = Columns(text);
    return std::string(columns < width ? width - columns : 0, ' ');
}

std::string Left(std::string_view text, std::size_t width) {
    return std::string(text) + Blanks(text, width);
}

std::string Right(std::string_view text, std::size_t width) {
    return Blanks(text, width) + std::string(text);
}

}  // namespace

void ConsoleReport::Record(const RecordReport& report) {
    const auto line = [&](std::string_view number, std::string_view act, std::string_view outcome,
                          std::string_view milliseconds) {
        output_ << Right(number, 5) << "  " << Left(act, 17) << ' ' << Left(outcome, 18)
                << Right(milliseconds, 9) << '\n';
    };
    if (!any_) line("行", "動作", "結果", "ミリ秒");
    any_ = true;
    line(std::to_string(report.row + 1), report.act, Word(report.outcome),
         std::to_string(report.milliseconds));
    output_.flush();
}

void RunResult::Add(const RecordReport& report) {
    record_failed_ |= report.outcome == RecordOutcome::kNotFound ||
                      report.outcome == RecordOutcome::kInvalid ||
                      report.outcome == RecordOutcome::kNotSent;
}

ExitCode RunResult::Code(StartUp start, const frmIeAuto& window) const {
    if (start == StartUp::kParameterError) return kNothing;
    if (start == StartUp::kNoScenario) return kUnreadable;
    switch (window.last_run()) {
        case RunEnd::kNothingToPlay:
        case RunEnd::kBadSizeBar:
            return kNothing;
        case RunEnd::kNoBrowser:
            return kNotStarted;
        case RunEnd::kBrowserDied:
            return kDied;
        case RunEnd::kStopped:
            return kInterrupted;
        case RunEnd::kTimedOut:
            return kWatchdog;
        case RunEnd::kCompleted:
            break;
    }
    if (window.page_failed()) return kPageFailed;
    return record_failed_ ? kRecordFailed : kPlayed;
}

}  // namespace tamrin
