#include <algorithm>
#include <nlohmann/json.hpp>
#include <unordered_map>

#include "platform/chromium/tab.h"

namespace tamrin {
namespace {

using nlohmann::json;

// A member that is a text, "" when it is absent.
std::string TextOf(const json& object, const char* name) {
    const auto member = object.find(name);
    return member != object.end() && member->is_string() ? member->get<std::string>() : "";
}

}  // namespace

// What each event of the protocol means for a tab. Only methods named here are read at all.
struct TabEvents {
    using Handler = void (*)(Tab&, const std::string& session, const json& params);

    static const std::unordered_map<std::string_view, Handler>& Table() {
        static const std::unordered_map<std::string_view, Handler> table = {
            {"Page.frameAttached", FrameAttached},
            {"Page.frameDetached", FrameDetached},
            {"Page.frameRequestedNavigation", FrameRequestedNavigation},
            {"Page.frameScheduledNavigation", FrameScheduledNavigation},
            {"Page.frameStartedNavigating", FrameStartedNavigating},
            {"Page.frameStartedLoading", FrameStartedLoading},
            {"Page.frameStoppedLoading", FrameStoppedLoading},
            {"Page.frameNavigated", FrameNavigated},
            {"Page.navigatedWithinDocument", NavigatedWithinDocument},
            {"Page.domContentEventFired", DomContentEventFired},
            {"Page.loadEventFired", LoadEventFired},
            {"Page.javascriptDialogOpening", DialogOpening},
            {"Page.javascriptDialogClosed", DialogClosed},
            {"Page.documentOpened", DocumentOpened},
            {"Runtime.bindingCalled", BindingCalled},
            {"Runtime.executionContextCreated", ContextCreated},
            {"Runtime.executionContextDestroyed", ContextDestroyed},
            {"Runtime.executionContextsCleared", ContextsCleared},
            {"Target.attachedToTarget", AttachedToTarget},
            {"Target.detachedFromTarget", DetachedFromTarget},
            {"Inspector.targetCrashed", TargetCrashed},
        };
        return table;
    }

    static void FrameAttached(Tab& tab, const std::string& session, const json& params) {
        tab.frames_.Attached(session, TextOf(params, "frameId"), TextOf(params, "parentFrameId"));
    }

    static void FrameDetached(Tab& tab, const std::string&, const json& params) {
        const std::string frame = TextOf(params, "frameId");
        const bool swapped = TextOf(params, "reason") == "swap";
        tab.frames_.Detached(frame, swapped);
        if (!swapped) tab.loads_.Removed(tab.LoadName(frame));
    }

    static void FrameRequestedNavigation(Tab& tab, const std::string&, const json& params) {
        if (TextOf(params, "disposition") != "currentTab") return;
        tab.OnRequested(TextOf(params, "frameId"));
    }

    // A click on a link is announced here first. A page may also plan to go elsewhere in a while;
    // until then it is at rest.
    static void FrameScheduledNavigation(Tab& tab, const std::string&, const json& params) {
        if (params.value("delay", 0.0) > 0.1) return;
        tab.OnRequested(TextOf(params, "frameId"));
    }

    static void FrameStartedNavigating(Tab& tab, const std::string&, const json& params) {
        const std::string type = TextOf(params, "navigationType");
        if (type != "sameDocument" && type != "historySameDocument") {
            tab.OnStartedNavigating(TextOf(params, "frameId"), TextOf(params, "url"));
        }
    }

    static void FrameStartedLoading(Tab& tab, const std::string&, const json& params) {
        tab.loads_.Started(tab.LoadName(TextOf(params, "frameId")), tab.clock_.TickCount());
    }

    static void FrameStoppedLoading(Tab& tab, const std::string&, const json& params) {
        const std::string frame = TextOf(params, "frameId");
        tab.loads_.Stopped(tab.LoadName(frame));
        if (tab.frames_.IsTop(frame)) return tab.notices_.EndNavigationWait();
        tab.AddNotice({.kind = Notice::Kind::kComplete, .top = false});
    }

    static void FrameNavigated(Tab& tab, const std::string& session, const json& params) {
        tab.OnFrameNavigated(session, params);
    }

    static void NavigatedWithinDocument(Tab& tab, const std::string&, const json& params) {
        tab.frames_.UrlChanged(TextOf(params, "frameId"), TextOf(params, "url"));
    }

    static void DomContentEventFired(Tab& tab, const std::string& session, const json&) {
        if (session == tab.sessions_.front()) tab.loads_.Interactive();
    }

    static void LoadEventFired(Tab& tab, const std::string& session, const json&) {
        if (session == tab.sessions_.front()) tab.OnComplete();
    }

    static void DialogOpening(Tab& tab, const std::string& session, const json& params) {
        tab.OnDialogOpening(session, params);
    }

    static void DialogClosed(Tab& tab, const std::string&, const json& params) {
        tab.OnDialogClosed(params);
    }

    // The page rewrites itself, which takes its listeners away.
    static void DocumentOpened(Tab& tab, const std::string& session, const json&) {
        tab.WatchAgain(session);
    }

    static void BindingCalled(Tab& tab, const std::string& session, const json& params) {
        tab.OnTold(session, params.value("executionContextId", 0), TextOf(params, "payload"));
    }

    static void ContextCreated(Tab& tab, const std::string& session, const json& params) {
        const json& context = params.at("context");
        if (TextOf(context, "name") != tab.world_ || !context.contains("auxData")) return;
        const std::string frame = TextOf(context["auxData"], "frameId");
        const std::string agent = TextOf(context, "uniqueId");
        tab.frames_.AgentCame(session, frame, agent, context.value("id", 0));
        if (tab.watched_) {
            // A page in a process of its own does not have the binding yet when it was asked for a
            // moment before the navigation.
            tab.Bind(session);
            tab.RunLater(agent, "tamrin.watch()");
        }
        if (tab.frames_.IsTop(frame)) tab.AddNotice({.kind = Notice::Kind::kNavigated});
    }

    static void ContextDestroyed(Tab& tab, const std::string& session, const json& params) {
        tab.frames_.AgentWent(session, params.value("executionContextId", 0));
    }

    static void ContextsCleared(Tab& tab, const std::string& session, const json&) {
        tab.frames_.AgentsWent(session);
    }

    static void AttachedToTarget(Tab& tab, const std::string&, const json& params) {
        tab.OnAttached(params);
    }

    static void DetachedFromTarget(Tab& tab, const std::string&, const json& params) {
        const std::string session = TextOf(params, "sessionId");
        if (session == tab.sessions_.front()) return tab.OnGone();
        std::erase(tab.sessions_, session);
        tab.frames_.AgentsWent(session);
        tab.devtools_->CutShort(session);
    }

    static void TargetCrashed(Tab& tab, const std::string& session, const json&) {
        if (session == tab.sessions_.front()) return tab.OnGone();
        tab.frames_.AgentsWent(session);
        tab.devtools_->CutShort(session);
    }
};

bool Tab::Handles(std::string_view method) { return TabEvents::Table().contains(method); }

bool Tab::OwnsSession(std::string_view session) const {
    return std::find(sessions_.begin(), sessions_.end(), session) != sessions_.end();
}

void Tab::OnEvent(const std::string& session, std::string_view method, const json& params) {
    const auto handler = TabEvents::Table().find(method);
    if (!alive_ || handler == TabEvents::Table().end()) return;
    try {
        handler->second(*this, session, params);
    } catch (const json::exception&) {
        // A browser of another version may write it otherwise; then it tells nothing.
    }
}

void Tab::OnGone() {
    if (!alive_) return;
    alive_ = false;
    dialog_.reset();
    for (const std::string& session : sessions_) devtools_->CutShort(session);
    notices_.EndNavigationWait();
    notices_.Add({.kind = Notice::Kind::kQuit});
}

std::string_view Tab::LoadName(const std::string& frame) const {
    return frames_.IsTop(frame) ? std::string_view() : std::string_view(frame);
}

void Tab::OnRequested(const std::string& frame) {
    loads_.Requested(LoadName(frame), clock_.TickCount());
    if (!settling_) return;
    for (const std::string& session : sessions_) devtools_->CutShort(session);
}

void Tab::OnStartedNavigating(const std::string& frame, const std::string& url) {
    const FrameInfo* info = frames_.WithId(frame);
    const bool top = frames_.IsTop(frame);
    if (top) OnRequested(frame);
    notices_.AddNavigation(WithTop({.kind = Notice::Kind::kBeforeNavigate,
                                    .top = top,
                                    .url = url,
                                    .agent = info ? info->agent : std::string()}),
                           watched_ && info && !info->agent.empty(), clock_.TickCount());
}

void Tab::OnDialogOpening(const std::string& session, const json& params) {
    dialog_.emplace(TextOf(params, "type"), TextOf(params, "defaultPrompt"), session);
    for (const std::string& other : sessions_) devtools_->CutShort(other);
}

void Tab::OnDialogClosed(const json& params) {
    if (dialog_ && dialog_->type() == "beforeunload" && !params.value("result", true)) {
        loads_.Refused();
        notices_.ForgetLastMoments();
    }
    dialog_.reset();
}

void Tab::OnFrameNavigated(const std::string& session, const json& params) {
    const json& frame = params.at("frame");
    const std::string id = TextOf(frame, "id");
    const std::string url = TextOf(frame, "url") + TextOf(frame, "urlFragment");
    frames_.Navigated(session, id, TextOf(frame, "parentId"), url);
    if (!frames_.IsTop(id)) return;
    loads_.Navigated("");
    error_url_ = TextOf(frame, "unreachableUrl");
    asking_why_ = false;
    if (TextOf(params, "type") != "BackForwardCacheRestore") return;
    // The page comes as it was, also when nobody watched it then.
    WatchAgain(session);
    OnComplete();
}

void Tab::OnComplete() {
    loads_.Complete();
    if (error_url_.empty()) {
        AddNotice({.kind = Notice::Kind::kComplete});
        return;
    }
    // The browser's own page about a failure names the reason. The tab is busy until it has, so
    // that whoever waits for the page hears of the failure, too.
    asking_why_ = true;
    devtools_->Ask(sessions_.front(), "Runtime.evaluate",
                   {{"expression", "loadTimeDataRaw.errorCode"}, {"returnByValue", true}},
                   [self = weak_from_this(), url = error_url_](const DevToolsReply& reply) {
                       const auto tab = self.lock();
                       if (!tab) return;
                       tab->asking_why_ = false;
                       const std::string reason = reply.Text("/result/value");
                       tab->AddNotice({.kind = Notice::Kind::kError,
                                       .url = url,
                                       .reason = reason.empty() ? "ERR_FAILED" : reason});
                       tab->AddNotice({.kind = Notice::Kind::kComplete});
                   });
}

void Tab::OnNavigateReply(const std::string& url, const DevToolsReply& reply) {
    loads_.NavigateAnswered();
    if (reply.end != DevToolsReply::End::kRefused) return;
    // It is no address at all, so there is no page to name the reason.
    AddNotice({.kind = Notice::Kind::kError, .url = url, .reason = "ERR_INVALID_URL"});
}

void Tab::OnAttached(const json& params) {
    const std::string session = TextOf(params, "sessionId");
    sessions_.push_back(session);
    SetUp(session);
}

}  // namespace tamrin
