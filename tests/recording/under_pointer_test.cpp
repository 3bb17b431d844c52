// What the browser reports of the element under a real mouse pointer.

#include <cstdlib>

#include "conformance/suite.h"
#include "platform/chromium/chromium_windows.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/system_clock.h"
#include "recording/rig.h"

namespace tamrin::test {
namespace {

// A window of the user's browser that this program itself watches.
class UnderPointer : public testing::Test {
protected:
    UnderPointer() {
        Hand({"version"});
        setenv("HOME", folder_.path().c_str(), 1);
        clock_.AddSource([this] { windows_.DeliverEvents(); });
        std::string why;
        window_ = windows_.Open(server_.Url("/"), why);
        EXPECT_TRUE(window_) << why;
    }
    ~UnderPointer() override {
        if (window_) window_->Quit();
        Wait([this] { return !window_ || !window_->Alive(); });
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

    // Moves the pointer onto an element, wherever the window goes, and waits until that is told, in
    // one round trip for each page on the way.
    void PointAt(const Element& element, const std::string& expected, std::uint64_t pages) {
        std::optional<ScreenPoint> at;
        Wait([&] {
            const auto corner = window_->ElementScreenPoint(element);
            if (corner && corner != at) test::PointAt(corner->x + 5, corner->y + 5);
            at = corner;
            return Told() == expected;
        });
        const std::uint64_t before = windows_.RoundTrips();
        const auto elements = window_->UnderPointer();
        EXPECT_EQ(windows_.RoundTrips() - before, pages);
        EXPECT_EQ(Told(), expected);
        ASSERT_FALSE(elements.empty());
        EXPECT_EQ(elements.back(), element);
    }

    WebReply Answer(const WebRequest& request) const {
        const std::string other = "http://localhost:" + std::to_string(server_.port());
        const std::string frame = " style='border:20px solid' width=300 height=120></iframe>";
        std::string body = "<input id=deep>";
        if (request.path == "/") {
            body =
                "<label id=text for=field>名</label><form><input id=field></form><div id=host></div>"
                "<button disabled><b id=bold>太い</b></button><br><iframe id=same src=/middle" +
                frame + "<iframe id=foreign src=" + other + "/middle" + frame +
                "<script>host.attachShadow({mode: 'closed'}).innerHTML = '<p>影</p>'</script>";
        } else if (request.path == "/middle") {
            body += "<iframe id=inner src=" + server_.Url("/leaf") + " height=40></iframe>";
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

TEST_F(UnderPointer, FollowsTheFramesOfEverySite) {
    ASSERT_TRUE(window_);
    const auto page = [this] { return window_->document(); };
    const auto inner = [&](std::size_t frame) {
        const auto outer = page().frames();
        const auto frames =
            frame < outer.size() ? outer[frame].document.frames() : std::vector<Frame>();
        return frames.empty() ? Document() : frames[0].document;
    };
    const auto in = [](const Document& document, const char* id) {
        return document.Named(id).by_id;
    };
    ASSERT_TRUE(Wait([&] { return in(inner(0), "deep") && in(inner(1), "deep"); }));
    PointAt(in(page(), "field"), "INPUT.field", 1);
    PointAt(in(page(), "host"), "DIV.host", 1);
    PointAt(in(page(), "bold"), "B.bold", 1);
    PointAt(in(page(), "text"), "LABEL.text", 1);
    for (const std::size_t frame : {0, 1}) {
        const Frame outer = page().frames()[frame];
        const std::string path = "IFRAME." + outer.element.id();
        PointAt(outer.element, path, 2);  // its border
        PointAt(in(outer.document, "deep"), path + " INPUT.deep", 2);
        PointAt(in(inner(frame), "deep"), path + " IFRAME.inner INPUT.deep", 3);
    }
    EXPECT_EQ(window_->UnderPointer().back().Get("outerHTML"), "<input id=\"deep\">");
    // Another tab hides the page from a pointer that stays.
    PointAt(in(page(), "field"), "INPUT.field", 1);
    Hand({"key", "ctrl+t"});
    EXPECT_TRUE(Wait([this] { return Told().empty(); })) << Told();
    Hand({"key", "ctrl+w"});
    EXPECT_TRUE(Wait([this] { return Told() == "INPUT.field"; })) << Told();
    test::PointAt(1279, 999);
    EXPECT_TRUE(Wait([this] { return Told().empty(); })) << Told();
}

}  // namespace
}  // namespace tamrin::test
