#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/chromium/devtools.h"
#include "platform/chromium/field_block.h"
#include "platform/chromium/frame_tracker.h"
#include "platform/chromium/notice_queue.h"

namespace tamrin {

// The script of the page agent, made at build time from the files in agent/.
std::string_view PageAgentScript();

// What a page agent answered, or why it did not.
struct AgentAnswer {
    FieldBlock fields;
    DevToolsReply::End end = DevToolsReply::End::kNoBrowser;

    explicit operator bool() const { return static_cast<bool>(fields); }
};

// A method of the DevTools protocol with its parameters.
using DevToolsCall = std::pair<std::string, nlohmann::json>;

// The calls to the page agents of one tab, and to the tab's pages in general. A call answers empty
// at once when the tab is gone, while its page hangs, and while a dialog box stops its scripts.
class PageAgents {
public:
    // A call to an agent: the unique id of its context, and the expression to evaluate there.
    using Question = std::pair<std::string, std::string>;

    PageAgents(DevTools& devtools, const FrameTracker& frames, NoticeQueue& notices);

    // Evaluates an expression in an agent's context and waits for the answer. `gesture` runs it as
    // if the user had just acted, which browsers require before a page may open windows.
    AgentAnswer Run(const std::string& agent, std::string expression, bool gesture = false);
    // Several at once, in one round trip.
    std::vector<AgentAnswer> RunAll(const std::vector<Question>& questions);
    // Sends the call and does not wait. It is sent even while a dialog box is open: the page runs
    // it when it can.
    void RunLater(const std::string& agent, const std::string& expression);

    // Calls a method of the protocol in the session of an agent, "" for the top page's.
    DevToolsReply Call(std::string_view method, const nlohmann::json& params,
                       const std::string& agent = {});
    // Several in the top page's session, in one round trip. False when one could not be delivered.
    bool CallAll(const std::vector<DevToolsCall>& calls);
    // Sends a call in the top page's session, or in an agent's, and does not wait.
    void Post(std::string_view method, const nlohmann::json& params, const std::string& agent = {});

    // Waits until the pages have reported what came of some input. They do not report it with the
    // reply to the input, only before their next answer. PageLeaves ends the wait.
    void Settle();
    void PageLeaves();

    // A dialog box stops the scripts of all pages: calls that wait end at once.
    void Hold();
    void Release() { held_ = false; }

    // Stops scripts that hang; until it ends, such a script also blocks the page that follows.
    void StopScripts();

    // Whether a call was not answered in time and the page still does not answer.
    bool Hung() const { return hung_; }

    // The tab is gone: calls that wait, and all later ones, answer empty.
    void End();
    bool Ended() const { return ended_; }

private:
    bool CanCall() const { return !ended_ && !held_ && !hung_; }
    int Begin(const Question& question, bool gesture);
    std::vector<DevToolsReply> Await(const std::vector<int>& calls);
    void OnHung(DevToolsReply::End why);
    void CutShort();

    DevTools& devtools_;
    const FrameTracker& frames_;
    NoticeQueue& notices_;
    bool ended_ = false;
    bool held_ = false;
    bool hung_ = false;
    bool settling_ = false;
};

}  // namespace tamrin
