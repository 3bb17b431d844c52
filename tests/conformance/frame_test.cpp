#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

using Frames = Suite;

// One frame as a line: its name, the id of its element, the text of its page's element `p`.
std::string Line(const Frame& frame) {
    return frame.name + "|" + frame.element.id() + "|" +
           frame.document.Named("p").by_id.innerText();
}

std::vector<std::string> Lines(const std::vector<Frame>& frames) {
    std::vector<std::string> lines;
    for (const Frame& frame : frames) lines.push_back(Line(frame));
    return lines;
}

using Strings = std::vector<std::string>;

TEST_F(Frames, AnswersAllInTheOrderOfThePage) {
    const std::string inner = Serve("<p id=p>中</p>");
    const Document document =
        Open("<iframe name=n1 id=e1 src=" + inner +
             "></iframe><div><iframe id=e2 src=" + OtherUrl(inner) +
             "></iframe></div><iframe name=枠 id=e3 srcdoc='<p id=p>文'></iframe>" +
             "<iframe id=e4 name=n4></iframe><iframe name=n5 sandbox src=" + inner + "></iframe>");
    const auto frames = document.frames();
    EXPECT_EQ(Lines(frames), (Strings{"n1|e1|中", "e2|e2|中", "枠|e3|文", "n4|e4|", "n5||中"}));
    ASSERT_EQ(frames.size(), 5U);
    EXPECT_EQ(frames[0].document.url(), Url(inner));
    EXPECT_EQ(frames[1].document.url(), OtherUrl(inner));
    EXPECT_EQ(frames[0].element, Find("e1"));
    EXPECT_EQ(frames[0].element.tagName(), "IFRAME");
    EXPECT_EQ(document.Named("p").by_id, Element());
}

TEST_F(Frames, AnswersFramesOfAFrameset) {
    const std::string inner = Serve("<p id=p>中</p>");
    const Document document =
        OpenBare("<frameset cols=50%,50%><frame name=left id=e1 src=" + inner +
                 "><frame name=right id=e2 src=" + OtherUrl(inner) + "></frameset>");
    EXPECT_EQ(Lines(document.frames()), (Strings{"left|e1|中", "right|e2|中"}));
    EXPECT_EQ(document.frames().at(0).element.tagName(), "FRAME");
}

TEST_F(Frames, AnswersFramesInsideFramesOfEachOrigin) {
    const std::string leaf = Serve("<p id=p>葉</p>");
    const std::string middle =
        Serve("<p id=p>中</p><iframe name=same id=e1 src=" + Url(leaf) +
              "></iframe><iframe name=other id=e2 src=" + OtherUrl(leaf) + "></iframe>");
    const Document document =
        Open("<iframe name=a src=" + Url(middle) +
             "></iframe><iframe name=b src=" + OtherUrl(middle) + "></iframe>");
    const auto frames = document.frames();
    EXPECT_EQ(Lines(frames), (Strings{"a||中", "b||中"}));
    for (const Frame& frame : frames) {
        EXPECT_EQ(Lines(frame.document.frames()), (Strings{"same|e1|葉", "other|e2|葉"}));
    }
}

TEST_F(Frames, AreWrittenToLikePages) {
    const std::string inner = Serve(
        "<input id=t onchange='say(value)' name=n>"
        "<input type=button id=b onclick=say(1)>");
    const Document document = Open("<iframe src=" + Url(inner) +
                                   "></iframe><iframe src=" + OtherUrl(inner) + "></iframe>");
    for (const Frame& frame : document.frames()) {
        const NamedElements named = frame.document.Named("n");
        const Element field = named.by_name.at(0);
        EXPECT_TRUE(field.Put("value", "値") && field.fireEvent("onchange"));
        EXPECT_EQ(field.value(), "値");
        const Element log = frame.document.Named("log").by_id;
        const Element button = frame.document.Named("b").by_id;
        EXPECT_TRUE(button.fireEvent("onclick"));
        EXPECT_FALSE(Find("t"));  // A lookup, wherever it is made, ends what was one click.
        EXPECT_TRUE(button.click());
        EXPECT_TRUE(Wait([&] { return log.innerText() == "値 1 1"; })) << log.innerText();
        EXPECT_EQ(frame.document.links().size(), 0U);
        EXPECT_EQ(Ids(frame.document.getElementsByTagName("input")), "t b");
    }
}

TEST_F(Frames, FollowTheirOwnNavigation) {
    const std::string next = Serve(WebReply{.body = "<p id=p>next</p>", .delay_ms = 100});
    const std::string inner = Serve("<p id=p>前</p><a id=a href=" + next + ">次</a>");
    for (const std::string& first : {Url(inner), OtherUrl(inner)}) {
        const Document document = Open("<iframe name=n src=" + first +
                                       "></iframe><a id=back target=n"
                                       " href=" +
                                       OtherUrl(inner) + ">前</a>");
        const Document old = document.frames().at(0).document;
        EventLog events;
        const auto connection = browser().Connect(events);
        EXPECT_TRUE(old.Named("a").by_id.click());
        EXPECT_TRUE(Wait([&] { return browser().Busy(); }));
        EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete frame"); }));
        EXPECT_TRUE(WaitComplete());
        EXPECT_FALSE(events.Has("DocumentComplete top"));
        EXPECT_EQ(Line(document.frames().at(0)), "n||next");
        EXPECT_FALSE(old.Named("p").by_id);

        EXPECT_TRUE(Find("back").click());
        EXPECT_TRUE(Wait([&] { return Line(document.frames().at(0)) == "n||前"; }));
        EXPECT_EQ(document.frames().at(0).document.url(), OtherUrl(inner));
    }
}

TEST_F(Frames, FollowThePagesScripts) {
    const std::string inner = Serve("<p id=p>中</p>");
    const Document document = Open(
        "<iframe name=a></iframe><input type=button id=b onclick=\"document.querySelector('iframe')"
        ".remove(); const f = document.createElement('iframe'); f.id = f.name = 'new'; f.src = '" +
        OtherUrl(inner) + "'; document.body.append(f)\">");
    const Frame old = document.frames().at(0);
    EXPECT_TRUE(Find("b").click());
    EXPECT_TRUE(Wait([&] { return Lines(document.frames()) == Strings{"new|new|中"}; }));
    EXPECT_EQ(Ids(old.document.getElementsByTagName("*")), "");
    EXPECT_FALSE(old.element.getBoundingClientRect());
}

TEST_F(Frames, ThatCannotBeLoadedLeaveTheOthersUsable) {
    const std::string inner = Serve("<p id=p>中</p>");
    const Document document =
        Open("<iframe name=a src=" + inner + "></iframe><iframe name=dead src=" + DeadUrl() +
             "></iframe><iframe name=c src=" + OtherUrl(inner) + "></iframe>");
    EXPECT_EQ(Lines(document.frames()), (Strings{"a||中", "dead||", "c||中"}));
}

}  // namespace
}  // namespace tamrin::conformance
