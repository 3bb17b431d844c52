// What the browser tells of the element under a real mouse pointer.

#include <algorithm>
#include <cstdlib>

#include "conformance/suite.h"
#include "platform/chromium/chromium_windows.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "recording/recording_fixture.h"

namespace tamrin::test {
namespace {

// A window of the user's browser that this program itself watches.
class UnderPointerTest : public testing::Test {
protected:
    UnderPointerTest() {
        RecordingTest::desk();
        setenv("HOME", folder_.path().c_str(), 1);
        clock_.AddSource([this] { windows_.DeliverEvents(); });
        std::string why;
        window_ = windows_.Open(server_.Url("/"), why);
        EXPECT_TRUE(window_) << why;
    }
    ~UnderPointerTest() override {
        if (window_) window_->Quit();
        Wait([this] { return !window_ || !window_->Alive(); });
        RecordingTest::Pass(500);  // the browser still writes into its profile
    }

    bool Wait(const std::function<bool()>& condition) {
        return conformance::WaitUntil(clock_, condition);
    }

    // The path to the element under the pointer, by tags and ids: "IFRAME.f INPUT.a".
    std::string Told() {
        std::string path;
        for (const Element& element : window_->UnderPointer()) {
            conformance::AddWord(path, element.tagName() + "." + element.id());
        }
        return path;
    }

    // Moves the pointer onto an element and waits until that is told.
    std::string PointAt(const Element& element, const std::string& expected) {
        const auto corner = window_->ElementScreenPoint(element);
        if (!corner) return "not shown";
        RecordingTest::desk().MoveTo({corner->x + 5, corner->y + 5});
        Wait([&] { return Told() == expected; });
        return Told();
    }

    // Whether the page and all frames in it can be reached.
    bool Loaded() {
        const auto outer = window_->document().frames();
        return outer.size() == 2 && std::all_of(outer.begin(), outer.end(), [](const Frame& frame) {
                   const auto inner = frame.document.frames();
                   return inner.size() == 1 && inner[0].document.Named("deep").by_id;
               });
    }

    WebReply Answer(const WebRequest& request) const {
        const std::string other = "http://localhost:" + std::to_string(server_.port());
        const std::string leaf = "<input id=deep>";
        const std::string frame = " style='border:20px solid' width=300 height=120></iframe>";
        std::string body;
        if (request.path == "/") {
            body =
                "<label id=text for=field>名</label><form id=form><input id=field></form><div id=host></div><button id=label "
                "disabled><b id=bold>太い</b></button><br>"
                "<iframe id=same src=/middle" +
                frame + "<iframe id=foreign src=" + other + "/middle" + frame +
                "<script>host.attachShadow({mode: 'closed'}).innerHTML = '<p>影</p>'</script>";
        } else if (request.path == "/middle") {
            body = leaf + "<iframe id=inner src=" + server_.Url("/leaf") + " height=40></iframe>";
        } else {
            body = leaf;
        }
        return {.body = "<!doctype html><meta charset=utf-8>" + body};
    }

    TemporaryFolder folder_;
    WebServer server_{[this](const WebRequest& request) { return Answer(request); }};
    PosixProcesses processes_;
    PosixFiles files_;
    SystemClock clock_;
    ChromiumWindows windows_{processes_, files_, clock_, {.profile_folder = folder_.At("profile")}};
    std::shared_ptr<Browser> window_;
};

TEST_F(UnderPointerTest, FollowsTheFramesOfEverySite) {
    ASSERT_TRUE(window_);
    ASSERT_TRUE(Wait([this] { return Loaded(); }));
    RecordingTest::Pass(500);  // the window is put to its place
    clock_.DoEvents();
    const Document page = window_->document();
    const auto by_id = [](const Document& in, const char* id) { return in.Named(id).by_id; };
    EXPECT_EQ(PointAt(by_id(page, "field"), "INPUT.field"), "INPUT.field");
    EXPECT_EQ(PointAt(by_id(page, "host"), "DIV.host"), "DIV.host");
    EXPECT_EQ(PointAt(by_id(page, "bold"), "B.bold"), "B.bold");
    EXPECT_EQ(PointAt(by_id(page, "text"), "LABEL.text"), "LABEL.text");
    std::uint64_t trips = windows_.RoundTrips();
    Told();
    EXPECT_EQ(windows_.RoundTrips() - trips, 1U);

    for (const Frame& outer : page.frames()) {
        const std::string path = "IFRAME." + outer.element.id();
        EXPECT_EQ(PointAt(outer.element, path), path) << "border";
        EXPECT_EQ(PointAt(by_id(outer.document, "deep"), path + " INPUT.deep"),
                  path + " INPUT.deep");
        for (const Frame& inner : outer.document.frames()) {
            const std::string deeper = path + " IFRAME.inner INPUT.deep";
            EXPECT_EQ(PointAt(by_id(inner.document, "deep"), deeper), deeper);
            trips = windows_.RoundTrips();
            const auto elements = window_->UnderPointer();
            EXPECT_EQ(windows_.RoundTrips() - trips, 3U);
            EXPECT_EQ(elements.back(), by_id(inner.document, "deep"));
            EXPECT_EQ(elements.back().Get("outerHTML"), "<input id=\"deep\">");
        }
    }
    // Another tab hides the page from a pointer that stays.
    EXPECT_EQ(PointAt(by_id(page, "field"), "INPUT.field"), "INPUT.field");
    RecordingTest::desk().Press({"ctrl+t"});
    EXPECT_TRUE(Wait([this] { return Told().empty(); })) << Told();
    RecordingTest::desk().Press({"ctrl+w"});
    EXPECT_TRUE(Wait([this] { return Told() == "INPUT.field"; })) << Told();
    RecordingTest::desk().MoveTo({1279, 999});
    EXPECT_TRUE(Wait([this] { return Told().empty(); })) << Told();
}

}  // namespace
}  // namespace tamrin::test
