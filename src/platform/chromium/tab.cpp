#include "platform/chromium/tab.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "platform/chromium/page_agent.h"

namespace tamrin {
namespace {

using nlohmann::json;
using End = DevToolsReply::End;

}  // namespace

Tab::Tab(std::shared_ptr<DevTools> devtools, const Clock& clock, const Files& files,
         std::string target, std::string session, Owner owner)
    : devtools_(std::move(devtools)),
      clock_(clock),
      files_(files),
      target_(std::move(target)),
      owner_(owner),
      world_("tamrin " + session),
      sessions_{std::move(session)},
      frames_(target_, sessions_.front()) {}

Tab::~Tab() {
    if (alive_) {
        SetWatched(false);
        devtools_->Post("", "Target.detachFromTarget", {{"sessionId", sessions_.front()}});
    }
}

void Tab::SetUp(const std::string& session) {
    devtools_->Post(session, "Page.enable", json::object());
    if (watched_) Bind(session);
    devtools_->Post(
        session, "Page.addScriptToEvaluateOnNewDocument",
        {{"source", PageAgentScript()}, {"worldName", world_}, {"runImmediately", true}});
    devtools_->Post(session, "Runtime.enable", json::object());
    AttachFrames(session);
    // A target that waits for its debugger answers nothing until it is told to go on.
    devtools_->Post(session, "Runtime.runIfWaitingForDebugger", json::object());
}

// Frames of other sites are told of as targets of their own. Where the agent must be in them before
// their scripts, they wait for it.
void Tab::AttachFrames(const std::string& session) {
    const json only_frames = {{{"type", "iframe"}}, {{"exclude", true}}};
    devtools_->Post(session, "Target.setAutoAttach",
                    {{"autoAttach", true},
                     {"waitForDebuggerOnStart", watched_ || owner_ == Owner::kProgram},
                     {"flatten", true},
                     {"filter", only_frames}});
}

void Tab::BeginToOpen() {
    if (opening_) return;
    opening_ = true;
    SetUp(sessions_.front());
    if (owner_ == Owner::kProgram) {
        // A page without the focus is told nothing of its fields gaining and losing it.
        Post("Emulation.setFocusEmulationEnabled", {{"enabled", true}});
    }
    const auto self = weak_from_this();
    devtools_->Ask("", "Browser.getWindowForTarget", {{"targetId", target_}},
                   [self](const DevToolsReply& reply) {
                       const auto tab = self.lock();
                       if (tab) tab->window_ = static_cast<int>(reply.Number("/windowId"));
                   });
    devtools_->Ask(
        sessions_.front(), "Runtime.evaluate",
        {{"expression", "[devicePixelRatio, document.readyState]"}, {"returnByValue", true}},
        [self](const DevToolsReply& reply) {
            const auto tab = self.lock();
            const double scale = reply.Number("/result/value/0");
            if (!tab || scale <= 0) return;
            tab->viewport_.scale = scale;
            tab->loads_.Found(reply.Text("/result/value/1"));
        });
}

bool Tab::Open() {
    BeginToOpen();
    const auto reply =
        devtools_->Call(sessions_.front(), "Runtime.evaluate", {{"expression", "0"}});
    return alive_ && reply.end == End::kAnswered;
}

bool Tab::Busy() const {
    return alive_ && (dialog_ || hung_ || asking_why_ || loads_.Busy(clock_.TickCount()));
}

void Tab::AnswerDialog() {
    if (!dialog_) return;
    json params{{"accept", dialog_->accepted()}};
    if (dialog_->type() == "prompt") params["promptText"] = dialog_->text();
    const bool stays = dialog_->type() != "beforeunload";
    devtools_->Call(dialog_->session(), "Page.handleJavaScriptDialog", params);
    if (stays) Settle();
}

void Tab::Settle() {
    if (!CanRun() || Busy()) return;
    settling_ = true;
    std::vector<int> calls;
    calls.reserve(sessions_.size());
    for (const std::string& session : sessions_) {
        calls.push_back(devtools_->Begin(session, "Runtime.evaluate", {{"expression", "0"}}));
    }
    Await(calls);
    settling_ = false;
    NextMoment();
}

void Tab::Navigate(const std::string& url) {
    StopScripts();
    loads_.Navigate();
    devtools_->Ask(sessions_.front(), "Page.navigate", {{"url", url}},
                   [self = weak_from_this(), url](const DevToolsReply& reply) {
                       if (const auto tab = self.lock()) tab->OnNavigateReply(url, reply);
                   });
}

void Tab::Reload() {
    loads_.Requested("", clock_.TickCount());
    Post("Page.reload", json::object());
}

void Tab::GoThroughHistory(int steps) {
    const json history = Call("Page.getNavigationHistory", json::object()).Result();
    if (!history.is_object()) return;
    const json entries = history.value("entries", json::array());
    const int entry = history.value("currentIndex", 0) + steps;
    if (entry < 0 || entry >= static_cast<int>(entries.size())) return;
    loads_.Requested("", clock_.TickCount());
    Post("Page.navigateToHistoryEntry",
         {{"entryId", entries[static_cast<std::size_t>(entry)].value("id", 0)}});
}

void Tab::RunInPage(const std::string& script) {
    Post("Runtime.evaluate", {{"expression", script}, {"userGesture", true}});
}

void Tab::Close() {
    StopScripts();
    devtools_->Post("", "Target.closeTarget", {{"targetId", target_}});
}

// A page that hangs in a script of its own holds its successor up, too.
void Tab::StopScripts() {
    if (!hung_) return;
    hung_ = false;
    for (const std::string& session : sessions_) {
        devtools_->Post(session, "Runtime.terminateExecution", json::object());
    }
}

void Tab::BringToFront() { Post("Page.bringToFront", json::object()); }

void Tab::SetPlace(const WindowPlace& place) {
    if (!alive_) return;
    const auto unscaled = [&](int pixels) {
        return static_cast<int>(std::lround(pixels / viewport_.scale));
    };
    // A maximised window takes no numbers; it must be an ordinary one first.
    const json ordinary{{"windowState", "normal"}};
    const json bounds{{"left", unscaled(place.left)},
                      {"top", unscaled(place.top)},
                      {"width", unscaled(place.width)},
                      {"height", unscaled(place.height)}};
    for (const json& change : {ordinary, bounds}) {
        devtools_->Post("", "Browser.setWindowBounds", {{"windowId", window_}, {"bounds", change}});
    }
    NextMoment();
}

WindowState Tab::State() {
    if (!alive_) return {};
    const auto reply = devtools_->Call("", "Browser.getWindowForTarget", {{"targetId", target_}});
    if (reply.end != End::kAnswered) return {};
    const auto scaled = [&](const char* pointer) {
        return static_cast<int>(std::lround(reply.Number(pointer) * viewport_.scale));
    };
    // Which bars are shown the protocol does not tell; an ordinary window shows them all.
    const bool full_screen = reply.Text("/bounds/windowState") == "fullscreen";
    return {{scaled("/bounds/left"), scaled("/bounds/top"), scaled("/bounds/width"),
             scaled("/bounds/height")},
            {true, true, true, true},
            full_screen};
}

void Tab::Post(std::string_view method, const json& params) {
    if (alive_) devtools_->Post(sessions_.front(), method, params);
}

bool Tab::CanRun() const { return alive_ && !dialog_ && !hung_; }

int Tab::BeginRun(const std::string& agent, std::string expression, bool gesture) {
    const FrameInfo* frame = CanRun() ? frames_.WithAgent(agent) : nullptr;
    if (!frame) return 0;
    return devtools_->Begin(frame->session, "Runtime.evaluate",
                            {{"expression", std::move(expression)},
                             {"uniqueContextId", agent},
                             {"returnByValue", true},
                             {"userGesture", gesture}});
}

AgentAnswer Tab::Run(const std::string& agent, std::string expression, bool gesture) {
    const int call = BeginRun(agent, std::move(expression), gesture);
    if (call == 0) return {};
    const DevToolsReply reply = std::move(Await({call}).front());
    return {FieldBlock::FromReply(reply.message), reply.end};
}

std::vector<AgentAnswer> Tab::RunAll(
    const std::vector<std::pair<std::string, std::string>>& questions) {
    std::vector<int> calls;
    std::vector<std::size_t> asked;
    for (std::size_t i = 0; i < questions.size(); ++i) {
        const int call = BeginRun(questions[i].first, questions[i].second, false);
        if (call == 0) continue;
        calls.push_back(call);
        asked.push_back(i);
    }
    std::vector<AgentAnswer> answers(questions.size());
    const auto replies = Await(calls);
    for (std::size_t i = 0; i < replies.size(); ++i) {
        answers[asked[i]] = {FieldBlock::FromReply(replies[i].message), replies[i].end};
    }
    return answers;
}

void Tab::RunLater(const std::string& agent, const std::string& expression) {
    const FrameInfo* frame = alive_ ? frames_.WithAgent(agent) : nullptr;
    if (!frame) return;
    devtools_->Post(
        frame->session, "Runtime.evaluate",
        {{"expression", expression}, {"uniqueContextId", agent}, {"userGesture", true}});
}

DevToolsReply Tab::Call(std::string_view method, const json& params, const std::string& agent) {
    if (!CanRun()) return {};
    const FrameInfo* frame = frames_.WithAgent(agent);
    const std::string& session = frame ? frame->session : sessions_.front();
    return std::move(Await({devtools_->Begin(session, method, params)}).front());
}

bool Tab::Enter(const std::vector<std::pair<std::string, json>>& calls) {
    if (!CanRun()) return false;
    std::vector<int> begun;
    begun.reserve(calls.size());
    for (const auto& [method, params] : calls) {
        begun.push_back(devtools_->Begin(sessions_.front(), method, params));
    }
    const auto replies = Await(begun);
    NextMoment();
    Settle();
    return std::all_of(replies.begin(), replies.end(), [](const DevToolsReply& reply) {
        return reply.end == End::kAnswered || reply.end == End::kCutShort;
    });
}

void Tab::ShowOutline(const std::string& agent, const std::string& object) {
    const FrameInfo* frame = alive_ ? frames_.WithAgent(agent) : nullptr;
    if (!frame) return;
    outline_.Draw(*devtools_, frame->session, agent, object, clock_.TickCount());
    devtools_->Post(frame->session, "Runtime.releaseObject", {{"objectId", object}});
}

std::vector<DevToolsReply> Tab::Await(const std::vector<int>& calls) {
    auto replies = devtools_->Await(calls);
    for (const DevToolsReply& reply : replies) {
        if (reply.end == End::kLate || reply.end == End::kStopped) OnHung(reply.end);
    }
    return replies;
}

void Tab::OnHung(End why) {
    if (hung_ || !alive_) return;
    hung_ = true;
    if (why == End::kLate) {
        AddNotice({.kind = Notice::Kind::kNotResponding, .url = frames_.Top().url});
    }
    // What it answers first, it answers when it has come to itself.
    devtools_->Ask(sessions_.front(), "Runtime.evaluate", {{"expression", "0"}},
                   [self = weak_from_this()](const DevToolsReply&) {
                       if (const auto tab = self.lock()) tab->hung_ = false;
                   });
}

void Tab::BeginLookup(const std::string& agent) {
    if (!fired_in_.empty() && fired_in_ != agent) RunLater(fired_in_, "tamrin.forget()");
    fired_in_.clear();
}

}  // namespace tamrin
