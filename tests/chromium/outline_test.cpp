#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

using OutlineTest = ChromiumTest;

TEST_F(OutlineTest, IsSeenForAWhileAndNotByThePage) {
    // The picture of the page once it is drawn and looks like another one, or no more like it.
    const auto drawn = [this](const std::string& other, bool like) {
        std::string picture;
        EXPECT_TRUE(Wait([&] {
            const std::string before = std::exchange(picture, Picture().value_or(""));
            return picture == before && (picture == other) == like;
        }));
        return picture;
    };
    const std::string field = "<input id=a style='margin:40px'>";
    const std::string inner = Serve("<!doctype html>" + field);
    const Document page =
        Open(field + "<iframe src=" + Url(inner) + "></iframe><iframe src=" + OtherUrl(inner) +
             "></iframe><script>new MutationObserver(() => say('seen')).observe(document,"
             " {subtree: true, childList: true, attributes: true})</script>");
    std::vector<Element> elements = {Find("a")};
    for (const Frame& frame : page.frames()) elements.push_back(frame.document.Named("a").by_id);
    ASSERT_EQ(elements.size(), 3U);
    const std::string said = Find("log").innerText();
    const std::string plain = drawn("", false);
    EXPECT_TRUE(plain.starts_with("\x89PNG\r\n\x1A\n"));
    std::string outlined;
    for (const Element& element : elements) {
        element.Outline();
        outlined = drawn(plain, false);
        rig().system_clock.Jump(2000);
        drawn(plain, true);
    }
    // Another one takes its place, and it goes with its page.
    elements[0].Outline();
    elements[2].Outline();
    drawn(outlined, true);
    EXPECT_EQ(Find("log").innerText(), said);
    GoTo(page.url());
    drawn(plain, true);
    elements[0].Outline();
    EXPECT_EQ(Picture(), plain);
}

}  // namespace
}  // namespace tamrin::test
