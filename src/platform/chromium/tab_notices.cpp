// What a tab tells the program: who listens, and what its pages tell of their user.

#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "platform/chromium/element_list.h"
#include "platform/chromium/tab.h"

namespace tamrin {
namespace {

using nlohmann::json;
using Kind = Notice::Kind;

const std::unordered_map<std::string_view, Kind> kKinds = {
    {"click", Kind::kClick},  {"focusin", Kind::kFocusIn}, {"leave", Kind::kLeave},
    {"key", Kind::kKeyPress}, {"submit", Kind::kSubmit},
};

}  // namespace

Notice Tab::WithTop(Notice notice) const {
    notice.top_agent = frames_.Top().agent;
    notice.top_url = frames_.Top().url;
    return notice;
}

void Tab::AddNotice(Notice notice) { notices_.Add(WithTop(std::move(notice))); }

void Tab::Bind(const std::string& session) {
    devtools_->Post(session, "Runtime.addBinding",
                    {{"name", kTell}, {"executionContextName", world_}});
}

void Tab::SetWatched(bool watched) {
    if (watched_ == watched) return;
    watched_ = watched;
    for (const std::string& session : sessions_) {
        if (watched) {
            Bind(session);
        } else {
            devtools_->Post(session, "Runtime.removeBinding", {{"name", kTell}});
        }
        AttachFrames(session);
    }
    for (const FrameInfo& frame : frames_.All()) {
        RunLater(frame.agent, watched ? "tamrin.watch()" : "tamrin.hush()");
    }
}

void Tab::WatchAgain(const std::string& session) {
    for (const FrameInfo& frame : frames_.All()) {
        if (watched_ && frame.session == session) RunLater(frame.agent, "tamrin.watch()");
    }
}

void Tab::OnTold(const std::string& session, int context, const std::string& payload) {
    const FrameInfo* frame = frames_.WithContext(session, context);
    if (!frame) return;
    const auto moment =
        std::make_shared<const PageMoment>(PageMoment{frame->agent, FieldBlock::FromText(payload)});
    const std::string_view word = moment->fields.Text(0);
    if (word == "leaving") return notices_.AddLastMoment(moment);
    if (word == "entered") {
        const FrameInfo* parent = frames_.WithId(frame->parent);
        const std::string index = std::to_string(moment->fields.Int(1));
        if (parent) RunLater(parent->agent, "tamrin.enterFrame(" + index + ")");
        return;
    }
    const auto kind = kKinds.find(word);
    if (kind == kKinds.end()) return;
    notices_.ForgetLastMoments();
    Notice notice = WithTop({.kind = kind->second,
                             .top = session == sessions_.front(),
                             .key = moment->fields.Int(1),
                             .agent = frame->agent,
                             .moments = {moment}});
    if (notice.kind == Kind::kFocusIn) {
        const auto tag = moment->fields.Text(PageMoment::kHeader + ElementList::kTagName);
        const bool onto_frame = tag == "IFRAME" || tag == "FRAME";
        notices_.AddFocus(std::move(notice), session, onto_frame, clock_.TickCount());
    } else if (notice.kind == Kind::kLeave) {
        const bool stays = notice.key != 0;  // it is left for another element of its page
        notices_.AddLeave(std::move(notice), session, stays);
    } else {
        notices_.Add(std::move(notice));
    }
}

std::unique_ptr<Connection> Tab::Connect(const std::string& agent, DocumentEvents& events) {
    const bool known = alive_ && frames_.WithAgent(agent);
    // The page may have gone already, and what it told before still wait behind the event that
    // has brought it.
    if (!known && agent != TopAgent() && !MomentOf(agent)) return nullptr;
    std::erase_if(subscribers_, [](const auto& page) { return page.second.empty(); });
    auto connection = subscribers_[agent].Connect(events);
    if (alive_) SetWatched(true);
    return connection;
}

const Notice* Tab::NextNotice() {
    const bool nobody = std::all_of(subscribers_.begin(), subscribers_.end(),
                                    [](const auto& page) { return page.second.empty(); });
    if (nobody && alive_) SetWatched(false);
    current_ = notices_.Next(clock_.TickCount());
    NextMoment();
    return current();
}

bool Tab::AllDelivered() {
    Settle();
    return notices_.Empty();
}

const PageMoment* Tab::MomentOf(std::string_view agent) const {
    if (!current_) return nullptr;
    for (const auto& moment : current_->moments) {
        if (moment->agent == agent) return moment.get();
    }
    return nullptr;
}

std::string Tab::TopAgent() const {
    if (current_ && current_->kind != Kind::kQuit) return current_->top_agent;
    return alive_ ? frames_.Top().agent : std::string();
}

void Tab::Tell(const Notice& notice) {
    const auto page = subscribers_.find(notice.agent);
    if (page == subscribers_.end()) return;
    // A handler may subscribe to other pages.
    const Subscribers<DocumentEvents> subscribers = page->second;
    subscribers.ForEach([&](DocumentEvents& events) {
        switch (notice.kind) {
            case Kind::kClick:
                return events.onclick();
            case Kind::kFocusIn:
                return events.onfocusin();
            case Kind::kLeave:
                return events.onbeforedeactivate();
            case Kind::kKeyPress:
                return events.onkeypress(notice.key);
            case Kind::kSubmit:
                return events.onsubmit();
            default:
                return;
        }
    });
}

}  // namespace tamrin
