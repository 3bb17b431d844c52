#include "app/frm_tools.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/text.h"
#include "platform/utf8.h"
#include "recorder/event_record.h"

namespace tamrin {
namespace {

constexpr int kWidth = 520;
constexpr int kHeight = 540;
constexpr int kTickMs = 250;
constexpr int kNoticeTicks = 8;
constexpr int kRowHeight = 26;
constexpr int kRecordRow = kFacts;  // its button copies the record

// A page may be very long, and nobody reads more than this in a text box.
constexpr std::size_t kMaxHtml = 20000;

constexpr std::array<std::string_view, kFacts> kLabels{
    "タグ", "id", "name", "type", "value", "href", "フォーム", "フレーム", "HTML"};

constexpr const char* kPointSomewhere =
    "ブラウザーのページの要素に、マウスのポインターを合わせてください。";

void AddRow(std::vector<ControlSpec>& controls, int row, std::string_view label, int top,
            int height, unsigned down) {
    const bool tall = height > kRowHeight;
    const unsigned stretch = kStretchRight | (tall ? kStretchBottom : down);
    const ControlName box =
        row == kRecordRow ? ControlName("txtRecord") : ControlName("txtFact", row);
    controls.push_back(
        {ControlKind::kLabel, {"lblFact", row}, label, "", {12, top + 3, 76, 20}, down});
    controls.push_back({ControlKind::kTextBox,
                        box,
                        "",
                        "",
                        {92, top, 340, tall ? height : 22},
                        stretch,
                        kReadOnly | (tall ? kMultiLine : kNoFlags)});
    controls.push_back({ControlKind::kButton,
                        {"cmdCopy", row},
                        "コピー",
                        "左の内容をクリップボードにコピーします。",
                        {438, top - 1, 70, 24},
                        kMoveRight | down});
}

std::vector<ControlSpec> Controls() {
    std::vector<ControlSpec> controls{
        {ControlKind::kLabel, "lblState", "", "", {12, 10, 496, 20}, kStretchRight}};
    int top = 34;
    for (int row = 0; row < kHtml; ++row) {
        AddRow(controls, row, kLabels[static_cast<std::size_t>(row)], top, kRowHeight, kFixed);
        top += kRowHeight;
    }
    AddRow(controls, kHtml, kLabels[kHtml], top, 96, kFixed);
    constexpr unsigned kBelow = kMoveBottom;
    const ControlSpec rest[] = {
        {ControlKind::kCheckBox,
         "chkFreeze",
         "固定(&F)",
         "選んでいる間、表示を変えません。",
         {92, 346, 90, 22},
         kBelow},
        {ControlKind::kLabel,
         "lblFreeze",
         "Ctrl キーを押している間も固定します。",
         "",
         {190, 348, 318, 20},
         kBelow | kStretchRight},
        {ControlKind::kButton,
         "cmdRecord",
         "レコード作成(&R)",
         "表示している要素のレコードを作り、ページの中で探します。",
         {92, 376, 130, 26},
         kBelow},
        {ControlKind::kButton,
         "cmdAdd",
         "行追加(&A)",
         "作成したレコードをシナリオに追加します。",
         {230, 376, 110, 26},
         kBelow,
         kDisabled},
    };
    controls.insert(controls.end(), std::begin(rest), std::end(rest));
    AddRow(controls, kRecordRow, "レコード", 410, kRowHeight, kBelow);
    controls.push_back(
        {ControlKind::kLabel, "lblFinding", "", "", {92, 438, 416, 62}, kBelow | kStretchRight});
    controls.push_back({ControlKind::kTimer, "Timer1", "", "", {}, kFixed, kNoFlags, kTickMs});
    controls.push_back({ControlKind::kButton,
                        "cmdClose",
                        "閉じる",
                        "",
                        {416, 504, 92, 26},
                        kBelow | kMoveRight,
                        kCancel});
    return controls;
}

const FormSpec& Spec() {
    static const std::vector<ControlSpec> controls = Controls();
    static const FormSpec spec{"frmTools", "タグ解析", kWidth, kHeight, controls, {}, kResizable};
    return spec;
}

// The part of the HTML that its box shows.
std::string ShownHtml(const std::string& html) {
    std::string shown = JoinLines(SplitLines(html.substr(0, CutLength(html, kMaxHtml))));
    if (html.size() > kMaxHtml) shown += "\r\n……";
    return shown;
}

}  // namespace

frmTools::frmTools(const Globals& globals, const Platform& platform, const Form& main,
                   RecordCommands& recording)
    : globals_(globals),
      platform_(platform),
      recording_(recording),
      form_(platform.windows.Create(Spec())),
      lblState(form_->Find("lblState")),
      chkFreeze(form_->Find("chkFreeze")),
      cmdRecord(form_->Find("cmdRecord")),
      cmdAdd(form_->Find("cmdAdd")),
      txtRecord(form_->Find("txtRecord")),
      lblFinding(form_->Find("lblFinding")) {
    BindEvents();
    StandBeside(main);
    form_->SetTopMost(true);
    form_->SetVisible(true);
    Activate();
    Timer1_Timer();
}

void frmTools::BindEvents() {
    form_->Find("Timer1").onTimer = [this] { Timer1_Timer(); };
    for (int row = 0; row <= kRecordRow; ++row) {
        form_->Find("cmdCopy", row).onClick = [this, row] { cmdCopy_Click(row); };
    }
    chkFreeze.onClick = [this] { Timer1_Timer(); };
    cmdRecord.onClick = [this] { cmdRecord_Click(); };
    cmdAdd.onClick = [this] { cmdAdd_Click(); };
    form_->Find("cmdClose").onClick = [this] { form_->Close(); };
    form_->onUnload = [this] {
        closed_ = true;
        browser_.reset();
        record_browser_.reset();
        path_.clear();
        form_->Find("Timer1").SetEnabled(false);
    };
}

void frmTools::Activate() { cmdRecord.SetFocus(); }

// Right of the main window if the screen has room there, otherwise left of it, so that neither
// hides the other.
void frmTools::StandBeside(const Form& main) {
    const Place screen = platform_.windows.Screen();
    const Place beside = main.GetPlace();
    Place place = form_->GetPlace();
    const int right = beside.left + beside.width;
    place.left = right + place.width <= screen.width ? right : beside.left - place.width;
    if (place.left < 0) place.left = std::max(0, screen.width - place.width);
    place.top = std::max(0, std::min(beside.top, screen.height - place.height));
    form_->SetPlace(place);
}

bool frmTools::Frozen() const { return chkFreeze.Checked() || platform_.windows.CtrlHeld(); }

void frmTools::Timer1_Timer() {
    const bool playing = globals_.ActivityContains("play");
    cmdRecord.SetEnabled(!playing);
    cmdAdd.SetEnabled(!playing && !record_.empty());
    const char* state = "ポインターの下の要素を表示しています。";
    if (playing) {
        state = "再生中は、表示を更新しません。";
    } else if (Frozen() && !path_.empty()) {
        state = "固定しています。";
    } else if (!Look()) {
        const bool none = platform_.browsers.Visible().empty();
        state = none            ? "記録できるブラウザーが開かれていません。"
                : path_.empty() ? kPointSomewhere
                                : "ポインターはページの外にあります。最後の要素を表示しています。";
    }
    if (notice_ticks_ > 0) {
        --notice_ticks_;
    } else if (lblState.Text() != state) {
        lblState.SetText(state);
    }
}

bool frmTools::Look() {
    const std::shared_ptr<Browser> attached = recording_.Page();
    if (LookIn(browser_)) return true;
    if (attached != browser_ && LookIn(attached)) return true;
    for (const auto& other : platform_.browsers.Visible()) {
        if (other != browser_ && other != attached && LookIn(other)) return true;
    }
    return false;
}

bool frmTools::LookIn(const std::shared_ptr<Browser>& browser) {
    if (!browser || !browser->Alive()) return false;
    std::vector<Element> path = browser->UnderPointer();
    if (path.empty()) return false;
    ElementFacts facts = KeysOf(path);
    const bool same = !path_.empty() && path.back() == path_.back() &&
                      std::equal(facts.begin(), facts.begin() + kForm, facts_.begin());
    browser_ = browser;
    path_ = std::move(path);
    if (same) return true;
    ReadOtherFacts(path_, facts);
    ShowFacts(std::move(facts));
    return true;
}

void frmTools::ShowFacts(ElementFacts facts) {
    facts_ = std::move(facts);
    for (int row = 0; row < kFacts; ++row) {
        const std::string& fact = facts_[static_cast<std::size_t>(row)];
        form_->Find("txtFact", row).SetText(row == kHtml ? ShownHtml(fact) : fact);
    }
}

void frmTools::Notice(const char* text) {
    lblState.SetText(text);
    notice_ticks_ = kNoticeTicks;
}

void frmTools::cmdCopy_Click(int row) {
    const std::string& text = row == kRecordRow ? record_ : facts_[static_cast<std::size_t>(row)];
    const bool done = platform_.windows.SetClipboardText(text);
    Notice(done ? "クリップボードにコピーしました。" : "クリップボードを使えません。");
}

void frmTools::cmdRecord_Click() {
    record_.clear();
    std::string finding = kPointSomewhere;
    // The element may have left the page since it was shown.
    if (!path_.empty() && path_.back().Get("outerHTML").empty()) {
        finding = "この要素は、もうページにありません。";
    } else if (!path_.empty()) {
        const Element recorded = RecordedElement(path_.back());
        record_ = RecordWithoutPassword(recorded);
        finding = record_.empty() ? "この要素のレコードは作れません。" : FindingOf(recorded);
    }
    record_browser_ = browser_;
    txtRecord.SetText(record_);
    lblFinding.SetText(finding);
    cmdAdd.SetEnabled(!record_.empty());
}

std::string frmTools::FindingOf(const Element& recorded) const {
    return Describe({recorded,
                     {path_.begin(), path_.end() - 1},
                     path_.back(),
                     FindByRecord(browser_->document(), record_)});
}

void frmTools::cmdAdd_Click() {
    if (record_.empty() || globals_.ActivityContains("play")) return;
    recording_.AddRecord(*record_browser_, record_);
    Notice("シナリオに追加しました。");
}

}  // namespace tamrin
