#include "conformance/suite.h"

namespace tamrin::conformance {
namespace {

// Each frame as a word: its name, the id of its element, the text of its page's element `p`.
std::string Words(const Document& document) {
    std::string words;
    for (const Frame& frame : document.frames()) {
        AddWord(words, frame.name + "|" + frame.element.id() + "|" +
                           frame.document.Named("p").by_id.innerText());
    }
    return words;
}

class Frames : public Suite {
protected:
    // A page that is a frame of the tests, as their own origin and as another one.
    const std::array<std::string, 2> inner_ = Origins("<p id=p>中</p>");
    const std::string& same_ = inner_[0];
    const std::string& other_ = inner_[1];
};

TEST_F(Frames, AnswersAllInTheOrderOfThePage) {
    const Document document = Open(
        "<iframe name=n1 id=e1 src=" + same_ + "></iframe><div><iframe id=e2 src=" + other_ +
        "></iframe></div><iframe name=枠 id=e3 srcdoc='<p id=p>文'></iframe><iframe id=e4 name=n4>"
        "</iframe><iframe name=n5 sandbox src=" +
        same_ + "></iframe>");
    EXPECT_EQ(Words(document), "n1|e1|中 e2|e2|中 枠|e3|文 n4|e4| n5||中");
    const auto frames = document.frames();
    ASSERT_EQ(frames.size(), 5U);
    EXPECT_EQ(frames[0].document.url() + " " + frames[1].document.url(), same_ + " " + other_);
    EXPECT_EQ(frames[0].element, Find("e1"));
    EXPECT_EQ(frames[0].element.tagName(), "IFRAME");
    EXPECT_EQ(document.Named("p").by_id, Element());
}

TEST_F(Frames, AnswersFramesOfAFrameset) {
    const Document document =
        Open("<!doctype html><frameset cols=50%,50%><frame name=left id=e1 src=" + same_ +
             "><frame name=right id=e2 src=" + other_ + "></frameset>");
    EXPECT_EQ(Words(document), "left|e1|中 right|e2|中");
    EXPECT_EQ(document.frames().at(0).element.tagName(), "FRAME");
}

TEST_F(Frames, AnswersFramesInsideFramesOfEachOrigin) {
    const auto middle = Origins("<p id=p>間</p><iframe name=same id=e1 src=" + same_ +
                                "></iframe><iframe name=other id=e2 src=" + other_ + "></iframe>");
    const Document document = Open("<iframe name=a src=" + middle[0] +
                                   "></iframe><iframe name=b src=" + middle[1] + "></iframe>");
    EXPECT_EQ(Words(document), "a||間 b||間");
    for (const Frame& frame : document.frames()) {
        EXPECT_EQ(Words(frame.document), "same|e1|中 other|e2|中") << frame.name;
    }
}

TEST_F(Frames, AreWrittenToLikePages) {
    for (const std::string& url :
         Origins("<input id=t onchange='say(value)'><input type=button id=b onclick=say(1)>")) {
        Open("<iframe id=i src=" + url + "></iframe>");
        // A lookup, wherever it is made, ends what was one click.
        Do("change:i/t:value=値 fire:i/b:onclick find:t click:i/b");
        EXPECT_TRUE(Wait([&] { return Find("i/log").innerText() == "値 1 1"; }));
        EXPECT_EQ(Find("i/t").value(), "値");
    }
}

TEST_F(Frames, FollowTheirOwnNavigation) {
    const std::string next = Serve(WebReply{.body = "<p id=p>next</p>", .delay_ms = 100});
    for (const std::string& first : Origins("<p id=p>前</p><a id=a href=" + next + ">次</a>")) {
        const Document document = Open("<iframe name=n src=" + first +
                                       "></iframe><a id=back"
                                       " target=n href=" +
                                       other_ + ">前</a>");
        const Document old = document.frames().at(0).document;
        EventLog events(browser());
        EXPECT_TRUE(old.Named("a").by_id.click());
        EXPECT_TRUE(WaitBusy());
        EXPECT_TRUE(Wait([&] { return events.Has("DocumentComplete frame"); }));
        EXPECT_TRUE(WaitComplete());
        EXPECT_FALSE(events.Has("DocumentComplete top"));
        EXPECT_EQ(Words(document), "n||next");
        EXPECT_EQ(StillAnswers(old), "");

        EXPECT_TRUE(Find("back").click());
        EXPECT_TRUE(Wait([&] { return Words(document) == "n||中"; }));
        EXPECT_EQ(document.frames().at(0).document.url(), other_);
    }
}

TEST_F(Frames, FollowThePagesScripts) {
    const Document document = Open(
        "<iframe name=a></iframe><input type=button id=b onclick=\"document.querySelector('iframe')"
        ".remove(); const f = document.createElement('iframe'); f.id = f.name = 'new'; f.src = '" +
        other_ + "'; document.body.append(f)\">");
    const Frame old = document.frames().at(0);
    EXPECT_TRUE(Find("b").click());
    EXPECT_TRUE(Wait([&] { return Words(document) == "new|new|中"; }));
    EXPECT_EQ(StillAnswers(old.document) + StillAnswers(old.element), "");
}

TEST_F(Frames, ThatCannotBeLoadedLeaveTheOthersUsable) {
    EXPECT_EQ(Words(Open("<iframe name=a src=" + same_ + "></iframe><iframe name=dead src=" +
                         DeadUrl() + "></iframe><iframe name=c src=" + other_ + "></iframe>")),
              "a||中 dead|| c||中");
}

}  // namespace
}  // namespace tamrin::conformance
