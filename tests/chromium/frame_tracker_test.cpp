#include "platform/chromium/frame_tracker.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace tamrin::test {
namespace {

using nlohmann::json;

json Agent(const char* agent, int context) {
    const json frame{{"frameId", "frame"}};
    return {
        {"context", {{"id", context}, {"uniqueId", agent}, {"name", "world"}, {"auxData", frame}}}};
}

// A frame's page moves to a session of its own and back; what the old session still reports of it
// comes before or behind what the new one reports.
TEST(FrameTracker, KeepsTheAgentOfThePageThatMoved) {
    constexpr const char* kCreated = "Runtime.executionContextCreated";
    constexpr const char* kDestroyed = "Runtime.executionContextDestroyed";
    for (const bool late : {false, true}) {
        FrameTracker frames("top", "old", "world");
        HandleEvent(frames, "old", "Page.frameAttached",
                    {{"frameId", "frame"}, {"parentFrameId", "top"}});
        if (!late) HandleEvent(frames, "old", kCreated, Agent("left", 7));
        HandleEvent(frames, "new", kCreated, Agent("stays", 2));
        if (late) HandleEvent(frames, "old", kCreated, Agent("left", 7));
        HandleEvent(frames, "old", "Page.frameDetached",
                    {{"frameId", "frame"}, {"reason", "swap"}});
        HandleEvent(frames, "old", kDestroyed, {{"executionContextId", 7}});
        const FrameInfo* frame = frames.WithContext("new", 2);
        ASSERT_TRUE(frame) << late;
        EXPECT_EQ(frame->agent, "stays") << late;
        HandleEvent(frames, "old", kCreated, Agent("again", 8));
        HandleEvent(frames, "new", "Runtime.executionContextsCleared", json::object());
        EXPECT_EQ(frame->agent, "again") << late;
        HandleEvent(frames, "old", kDestroyed, {{"executionContextId", 8}});
        EXPECT_EQ(frame->agent, "") << late;
    }
}

}  // namespace
}  // namespace tamrin::test
