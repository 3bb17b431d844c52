#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

class OutlineTest : public ChromiumTest {
protected:
    bool Shown() { return launcher().Picture() != page_; }

    std::optional<std::string> page_;  // as it is without a mark
};

TEST_F(OutlineTest, IsSeenForAWhileAndNotByThePage) {
    const std::string field = "<input id=a style='margin:40px'>";
    const std::string inner = Serve("<!doctype html>" + field);
    const Document page =
        Open(field + "<iframe src=" + Url(inner) + "></iframe><iframe src=" + OtherUrl(inner) +
             "></iframe><script>new MutationObserver(() => say('seen')).observe(document,"
             " {subtree: true, childList: true, attributes: true})</script>");
    std::vector<Element> elements = {Find("a")};
    for (const Frame& frame : page.frames()) elements.push_back(frame.document.Named("a").by_id);
    ASSERT_EQ(elements.size(), 3U);
    page_ = launcher().Picture();
    const std::string said = Find("log").innerText();

    std::vector<std::optional<std::string>> pictures;
    for (const Element& element : elements) {
        const std::uint32_t start = clock().TickCount();
        element.Outline();
        EXPECT_TRUE(Wait([this] { return Shown(); }));
        clock().Sleep(100);
        pictures.push_back(launcher().Picture());
        EXPECT_TRUE(Wait([this] { return !Shown(); }));
        EXPECT_GE(clock().TickCount() - start, 1900U);
    }
    // Another one takes its place, and it goes with its page.
    for (const Element& element : elements) {
        element.Outline();
        elements[1].Outline();
        EXPECT_TRUE(Wait([&] { return launcher().Picture() == pictures[1]; }));
    }
    EXPECT_EQ(Find("log").innerText(), said);
    GoTo(page.url());
    EXPECT_TRUE(Wait([this] { return launcher().Picture() == page_; }));
    elements[0].Outline();
    EXPECT_FALSE(Shown());
}

}  // namespace
}  // namespace tamrin::test
