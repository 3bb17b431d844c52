#include "platform/chromium/page_agents.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace tamrin {
namespace {

using nlohmann::json;
using End = DevToolsReply::End;

}  // namespace

PageAgents::PageAgents(DevTools& devtools, const FrameTracker& frames, NoticeQueue& notices)
    : devtools_(devtools), frames_(frames), notices_(notices) {}

AgentAnswer PageAgents::Run(const std::string& agent, std::string expression, bool gesture) {
    const int call = Begin({agent, std::move(expression)}, gesture);
    if (call == 0) return {};
    const DevToolsReply reply = std::move(Await({call}).front());
    return {FieldBlock::FromReply(reply.message), reply.end};
}

std::vector<AgentAnswer> PageAgents::RunAll(const std::vector<Question>& questions) {
    std::vector<int> calls;
    std::vector<std::size_t> asked;
    for (std::size_t i = 0; i < questions.size(); ++i) {
        const int call = Begin(questions[i], false);
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

// 0 when the page cannot be asked.
int PageAgents::Begin(const Question& question, bool gesture) {
    const auto& [agent, expression] = question;
    const FrameInfo* frame = CanCall() ? frames_.WithAgent(agent) : nullptr;
    if (!frame) return 0;
    return devtools_.Begin(frame->session, "Runtime.evaluate",
                           {{"expression", expression},
                            {"uniqueContextId", agent},
                            {"returnByValue", true},
                            {"userGesture", gesture}});
}

void PageAgents::RunLater(const std::string& agent, const std::string& expression) {
    if (!frames_.WithAgent(agent)) return;
    Post("Runtime.evaluate",
         {{"expression", expression}, {"uniqueContextId", agent}, {"userGesture", true}}, agent);
}

DevToolsReply PageAgents::Call(std::string_view method, const json& params,
                               const std::string& agent) {
    if (!CanCall()) return {};
    return std::move(Await({devtools_.Begin(frames_.SessionOf(agent), method, params)}).front());
}

bool PageAgents::CallAll(const std::vector<DevToolsCall>& calls) {
    if (!CanCall()) return false;
    std::vector<int> begun;
    begun.reserve(calls.size());
    for (const auto& [method, params] : calls) {
        begun.push_back(devtools_.Begin(frames_.SessionOf(""), method, params));
    }
    const auto replies = Await(begun);
    return std::all_of(replies.begin(), replies.end(), [](const DevToolsReply& reply) {
        return reply.end == End::kAnswered || reply.end == End::kCutShort;
    });
}

void PageAgents::Post(std::string_view method, const json& params, const std::string& agent) {
    if (!ended_) devtools_.Post(frames_.SessionOf(agent), method, params);
}

void PageAgents::Settle() {
    if (!CanCall()) return;
    settling_ = true;
    std::vector<int> calls;
    calls.reserve(frames_.sessions().size());
    for (const std::string& session : frames_.sessions()) {
        calls.push_back(devtools_.Begin(session, "Runtime.evaluate", {{"expression", "0"}}));
    }
    Await(calls);
    settling_ = false;
}

void PageAgents::PageLeaves() {
    if (settling_) CutShort();
}

void PageAgents::Hold() {
    held_ = true;
    CutShort();
}

void PageAgents::StopScripts() {
    if (!hung_) return;
    hung_ = false;
    for (const std::string& session : frames_.sessions()) {
        devtools_.Post(session, "Runtime.terminateExecution", json::object());
    }
}

void PageAgents::End() {
    ended_ = true;
    CutShort();
}

void PageAgents::CutShort() {
    for (const std::string& session : frames_.sessions()) devtools_.CutShort(session);
}

std::vector<DevToolsReply> PageAgents::Await(const std::vector<int>& calls) {
    auto replies = devtools_.Await(calls);
    for (const DevToolsReply& reply : replies) {
        if (reply.end == End::kLate || reply.end == End::kStopped) OnHung(reply.end);
    }
    return replies;
}

void PageAgents::OnHung(DevToolsReply::End why) {
    if (hung_ || ended_) return;
    hung_ = true;
    if (why == End::kLate) {
        notices_.Add({.kind = Notice::Kind::kNotResponding, .url = frames_.Top().url});
    }
    // The answer to this call comes when the page runs again.
    devtools_.Ask(frames_.SessionOf(""), "Runtime.evaluate", {{"expression", "0"}},
                  [this](const DevToolsReply&) { hung_ = false; });
}

}  // namespace tamrin
