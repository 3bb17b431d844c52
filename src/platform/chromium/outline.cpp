#include "platform/chromium/outline.h"

#include <nlohmann/json.hpp>

namespace tamrin {
namespace {

using nlohmann::json;

// Long enough to find it on a full page.
constexpr std::uint32_t kShownMs = 2000;

json Colour(double opacity) { return {{"r", 230}, {"g", 60}, {"b", 0}, {"a", opacity}}; }

}  // namespace

void Outline::Draw(DevTools& devtools, const std::string& session, const std::string& agent,
                   const std::string& object, std::uint32_t tick) {
    if (session_ != session) {
        End(devtools);
        devtools.Post(session, "DOM.enable", json::object());
        devtools.Post(session, "Overlay.enable", json::object());
    }
    session_ = session;
    agent_ = agent;
    drawn_at_ = tick;
    devtools.Post(session, "Overlay.highlightNode",
                  {{"objectId", object},
                   {"highlightConfig",
                    {{"contentColor", Colour(0.35)},
                     {"paddingColor", Colour(0.35)},
                     {"borderColor", Colour(0.9)}}}});
}

void Outline::EndWhenOver(DevTools& devtools, const FrameTracker& frames, std::uint32_t tick) {
    if (session_.empty()) return;
    if (tick - drawn_at_ >= kShownMs || !frames.WithAgent(agent_)) End(devtools);
}

// A page pays for being observed only while something is shown.
void Outline::End(DevTools& devtools) {
    if (session_.empty()) return;
    devtools.Post(session_, "Overlay.disable", json::object());
    devtools.Post(session_, "DOM.disable", json::object());
    session_.clear();
}

}  // namespace tamrin
