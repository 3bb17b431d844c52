// How an event becomes a record.

#include <utility>

#include "browser/element_keys.h"
#include "browser/wait.h"
#include "platform/text.h"
#include "recorder/event_record.h"
#include "recorder/recorder.h"

namespace tamrin {
namespace {

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

// Lets a page that handles the event itself come to rest. Of events that come one behind the other
// only the first is waited for: the others have waited meanwhile, and fast work is never left
// behind.
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
    Record(id, *read, event);
}

void Recorder::Record(const std::string& id, const EventValue& read, std::string_view event) {
    if (id.empty() && read.type.empty() && read.value.empty()) {
        host_.SetStatus("All null data event!");
        return;
    }
    const std::string line = BuildEventRecord(id, read, event);
    const int count = host_.RecordCount();
    if (count == 0 || host_.Record(count - 1) != line) host_.AppendRecord(line);
    host_.SelectRecord(host_.RecordCount() - 1);
    has_password_ |= EqualsIgnoreCase(read.type, "password");
}

void Recorder::RecordUrl() {
    const WindowState now = browser_ ? browser_->State() : WindowState();
    if (now.place.width > 0) window_ = now;
    const std::string address = document().url();
    host_.AppendRecord(BuildUrlRecord(window_, address.empty() ? address_ : address));
    host_.SelectRecord(host_.RecordCount() - 1);
}

}  // namespace tamrin
