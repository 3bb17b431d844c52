#include "chromium/chromium_fixture.h"

namespace tamrin::test {
namespace {

class FireEvent : public ChromiumTest {};

// As one record does it: the event, then the click.
TEST_F(FireEvent, TogetherWithTheClickRunsThePagesHandlersOnce) {
    Open(
        "<button id=b type=button onclick=\"log('inline')\">x</button>"
        "<script>document.onclick = (e) => log('document');"
        "b.addEventListener('click', () => log('listener'));</script>");
    const Element button = Find("b");
    EXPECT_TRUE(button.fireEvent("onclick"));
    EXPECT_TRUE(button.click());
    EXPECT_EQ(Log(), "inline listener document");
}

}  // namespace
}  // namespace tamrin::test
