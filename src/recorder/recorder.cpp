#include "recorder/recorder.h"

#include <utility>

#include "browser/element_keys.h"
#include "browser/wait.h"

namespace tamrin {
namespace {

constexpr int kEnter = 13;
// Stands for the value of a field whose getting the focus was not seen.
constexpr const char* kNoData = "-- no data --";
// Before a recording ends, the browser has to say so many times, at these intervals, that it has
// delivered all events: a key can still be on its way into the page at the first time.
constexpr int kQuietTimes = 3;
constexpr int kQuietStepMs = 20;
// How long the end of a recording waits for that at most.
constexpr std::uint32_t kFlushLimitMs = 3000;
// An event that is handled so soon after another has waited behind it.
constexpr std::uint32_t kBehindMs = 10;

}  // namespace

class Recorder::Handler {
public:
    explicit Handler(Recorder& recorder) : recorder_(recorder) {
        ++recorder_.handling_;
        const std::uint32_t now = recorder_.clock_.TickCount();
        if (now - recorder_.handled_at_ >= kBehindMs) recorder_.paused_ = false;
    }
    ~Handler() {
        recorder_.handled_at_ = recorder_.clock_.TickCount();
        --recorder_.handling_;
    }
    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;

private:
    Recorder& recorder_;
};

void Recorder::Start(std::shared_ptr<Browser> browser, RecordKind kind) {
    Release();
    kind_ = kind;
    has_password_ = false;
    watch_value_ = kNoData;
    paused_ = false;
    browser_ = std::move(browser);
    window_ = browser_->State();
    event_ie_ = browser_->Connect(*this);
    globals_.activity = "rec";
    ConnectDocument();
    globals_.unsaved = true;
}

void Recorder::Finish() {
    HandleAllEvents();
    if (!browser_ || !event_doc_ || watch_left_) return;
    // The handle that is watched answers as at its last event; a fresh one answers as it is now.
    Element active = event_doc_->document().activeElement();
    const PageLink* page = event_doc_.get();
    if (const PageLink* frame = FrameWith(active)) {
        page = frame;
        active = frame->document().activeElement();
    }
    if (!(active == watch_elm_)) return;
    watch_elm_ = active;
    if (InputText(active) != watch_text_) RecordEvent("input", page);
}

void Recorder::HandleAllEvents() {
    const std::uint32_t start = clock_.TickCount();
    for (int quiet = 0; quiet < kQuietTimes && clock_.TickCount() - start < kFlushLimitMs;) {
        clock_.DoEvents();
        const bool all = !browser_ || browser_->AllDelivered();
        quiet = all ? quiet + 1 : 0;
        clock_.Sleep(kQuietStepMs);
    }
    clock_.DoEvents();
}

void Recorder::Release() {
    frames_.clear();
    event_doc_.reset();
    event_ie_.reset();
    browser_.reset();
    watch_elm_ = Element();
    watch_left_ = true;
    default_button_.reset();
    connected_early_ = false;
}

const Document& Recorder::document() const {
    static const Document none;
    return event_doc_ ? event_doc_->document() : none;
}

void Recorder::NavigateComplete2() {
    const Handler handler(*this);
    if (!Recording()) return;
    ConnectDocument();
    connected_early_ = event_doc_ != nullptr;
}

void Recorder::DocumentComplete(bool top) {
    const Handler handler(*this);
    globals_.last_activity_tick = clock_.TickCount();
    globals_.browser_status = BrowserStatus::kExec;
    if (!Recording() || !browser_) return;
    if (!top) {
        ConnectFrames();
        return;
    }
    if (!connected_early_) ConnectDocument();
    connected_early_ = false;
    if (!event_doc_) {
        // Without a document because the next page is on its way is no fault.
        if (browser_->Busy()) return;
        host_.ShowMessage("記録を終了します。\r\n未対応のイベント発生！", "エラー発生");
        return;
    }
    ConnectFrames();
    IEWait(clock_, globals_, *browser_, 0);
    host_.PageShown();
}

void Recorder::BeforeNavigate2(const std::string& /*url*/) {
    const Handler handler(*this);
    globals_.last_activity_tick = clock_.TickCount();
    globals_.browser_status = BrowserStatus::kRecvWait;
    RecordEvent("input", nullptr);
}

void Recorder::NavigateError(const std::string& url, const std::string& reason) {
    host_.SetStatus("ページを開けません：" + url + " （" + reason + "）");
}

void Recorder::OnQuit() {
    const Handler handler(*this);
    Release();
    host_.BrowserClosed();
}

void Recorder::onclick(PageLink& page) {
    const Handler handler(*this);
    CheckClickedFrame(page);
    RecordEvent("click", &page);
}

void Recorder::onfocusin(PageLink& page) {
    const Handler handler(*this);
    default_button_.reset();
    WatchActiveElement(page);
}

void Recorder::onbeforedeactivate(PageLink& page) {
    const Handler handler(*this);
    const Element left = page.document().activeElement();
    if (left && !IsFrameElement(left) && !(left == watch_elm_)) {
        // Nobody was told that it got the focus, so nobody knows whether it was changed.
        Watch(left);
        watch_value_ = kNoData;
    }
    RecordEvent("input", &page);
    watch_left_ = true;
}

void Recorder::onkeypress(PageLink& page, int key_code) {
    const Handler handler(*this);
    default_button_.reset();
    if (key_code != kEnter) return;
    default_button_ = FindDefaultButton(page);
    page.document().activeElement().fireEvent("onchange");
}

// The click of a submit button is the record of a submit. Enter in a field clicks it as well, but
// the focus stays in the field, which is recorded first then.
void Recorder::onsubmit(PageLink& page) {
    const Handler handler(*this);
    const auto button = std::exchange(default_button_, std::nullopt);
    if (!button || !Recording()) return;
    RecordEvent("input", &page);
    sent_text_ = InputText(watch_elm_);
    Record(button->id, button->click, "click");
}

}  // namespace tamrin
