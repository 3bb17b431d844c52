#include "platform/chromium/frame_tracker.h"

#include <gtest/gtest.h>

namespace tamrin::test {
namespace {

// A frame's page moves to a session of its own; what the old session has still to tell of it comes
// before or behind what the new one tells.
TEST(FrameTracker, KeepsTheAgentOfThePageThatMoved) {
    for (const bool late : {false, true}) {
        FrameTracker frames("top", "old");
        frames.Attached("old", "frame", "top");
        if (!late) frames.AgentCame("old", "frame", "left", 7);
        frames.AgentCame("new", "frame", "stays", 2);
        if (late) frames.AgentCame("old", "frame", "left", 7);
        frames.Detached("frame", true);
        frames.AgentWent("old", 7);
        ASSERT_EQ(frames.All().size(), 2U);
        const FrameInfo& frame = frames.All().back();
        EXPECT_EQ(frame.agent, "stays") << late;
        EXPECT_EQ(frame.session, "new") << late;
        EXPECT_EQ(frames.WithContext("new", 2), &frame) << late;
        // And back again.
        frames.AgentCame("old", "frame", "again", 8);
        frames.AgentsWent("new");
        EXPECT_EQ(frame.agent, "again") << late;
        frames.AgentWent("old", 8);
        EXPECT_EQ(frame.agent, "") << late;
    }
}

}  // namespace
}  // namespace tamrin::test
