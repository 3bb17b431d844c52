#include "recorder/recorder.h"

#include <utility>

#include "browser/element_keys.h"
#include "browser/wait.h"
#include "platform/text.h"

namespace tamrin {
namespace {

constexpr int kEnter = 13;
// Stands for the value of a field whose getting the focus was not seen.
constexpr const char* kNoData = "-- no data --";
// Before a recording ends, the browser has to say so many times, at these intervals, that it has
// delivered all events: a key can still be on its way into the page at the first time.
constexpr int kQuietTimes = 5;
constexpr int kQuietStepMs = 40;
// How long the end of a recording waits for that at most.
constexpr std::uint32_t kFlushLimitMs = 3000;
// An event that is handled so soon after another one was waiting in the queue.
constexpr std::uint32_t kBehindMs = 10;
// How soon the second click of a double click follows at most.
constexpr std::uint32_t kDoubleClickMs = 500;
// How long the page gets to handle an event itself.
constexpr int kPauseMs = 100;

// Whether nothing has the focus: then the page itself stands for the active element.
bool IsPage(const Element& element) {
    const std::string tag = element.tagName();
    for (const char* page : {"BODY", "HTML", "FRAMESET"}) {
        if (EqualsIgnoreCase(tag, page)) return true;
    }
    return false;
}

bool IsScriptLink(const Element& active) {
    const std::string href = GetHref(active);
    return (href.empty() ? GetHref(active.parentElement()) : href).starts_with("javascript:");
}

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
    left_at_.reset();
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
    // The watched handle answers as at its last event; a new one answers as the element is now.
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
        const std::uint32_t asked = clock_.TickCount();
        const bool all = !browser_ || browser_->AllDelivered();
        // A browser that answers slowly is slow with the last keys, too.
        const bool quick = clock_.TickCount() - asked < std::uint32_t{kQuietStepMs};
        quiet = all && quick ? quiet + 1 : 0;
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
    if (!Recording() || !browser_) return;
    if (!top) {
        ConnectFrames();
        return;
    }
    if (!connected_early_) ConnectDocument();
    connected_early_ = false;
    if (!event_doc_) {
        // No document because the next page is already loading: that is no fault.
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
    left_at_ = globals_.last_activity_tick = clock_.TickCount();
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
        // Its focus event was never seen, so whether it has changed is unknown.
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

// A submit is recorded as the click of the submit button. Enter in a field clicks it too, but the
// focus stays in the field, so the field is recorded first.
void Recorder::onsubmit(PageLink& page) {
    const Handler handler(*this);
    const auto button = std::exchange(default_button_, std::nullopt);
    if (!button || !Recording()) return;
    RecordEvent("input", &page);
    sent_text_ = InputText(watch_elm_);
    Append(button->id, button->click, "click");
}

// Gives the page time to handle the event itself. Of events that follow each other without a gap
// only the first one waits: the others have waited in the queue meanwhile, so the recorder keeps up
// with fast work.
void Recorder::Pause() {
    if (std::exchange(paused_, true)) return;
    clock_.DoEvents();
    WaitMs(clock_, globals_, kPauseMs);
}

void Recorder::RecordEvent(std::string_view event, const PageLink* page) {
    if (!Recording()) return;
    if (kind_ == RecordKind::kNew && host_.RecordCount() == 0) RecordUrl();
    if (!watch_elm_) return;
    const std::string id = IsPage(watch_elm_) ? std::string() : GetElementId(watch_elm_);
    Pause();
    const std::string type = GetElementType(watch_elm_);
    if (event == "click" && !page) return;
    const Element active = page ? page->document().activeElement() : watch_elm_;
    const auto read = ReadEvent(event, watch_elm_, type, active);
    if (!read || (event == "input" && sent_text_ == read->value)) return;
    if (event == "click" && EqualsIgnoreCase(read->type, "href") && IsScriptLink(active)) {
        host_.ShowNotice("javascript:は、現在未対応");
    }
    const bool unchanged = !watch_value_.empty() && CleanValue(watch_value_) == read->value;
    if (globals_.settings.rec_change_only && unchanged) return;
    if (HidesPath(*read)) {
        host_.SetStatus("ファイルの場所が分からないため、メモの行として記録しました。");
        event = "//";
    }
    Append(id, *read, event);
}

void Recorder::Append(const std::string& id, const EventValue& read, std::string_view event) {
    if (id.empty() && read.type.empty() && read.value.empty()) {
        host_.SetStatus("All null data event!");
        return;
    }
    const std::string line = BuildEventRecord(id, read, event);
    const int count = host_.RecordCount();
    const bool repeats = count > 0 && host_.Record(count - 1) == line;
    if (!repeats || !IsEcho(event)) host_.AppendRecord(line);
    host_.SelectRecord(host_.RecordCount() - 1);
    has_password_ |= EqualsIgnoreCase(read.type, "password");
}

// A field that is left again without a change tells nothing new. A button is pressed as often as
// the user presses it, but the second click of a double click on what leaves the page does nothing.
bool Recorder::IsEcho(std::string_view event) const {
    if (event != "click") return true;
    return left_at_ && clock_.TickCount() - *left_at_ < kDoubleClickMs;
}

void Recorder::RecordUrl() {
    const WindowState now = browser_ ? browser_->State() : WindowState();
    if (now.place.width > 0) window_ = now;
    const std::string address = document().url();
    host_.AppendRecord(BuildUrlRecord(window_, address.empty() ? address_ : address));
    host_.SelectRecord(host_.RecordCount() - 1);
}

}  // namespace tamrin
