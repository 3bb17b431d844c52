#include "app/browser_choice.h"

#include <gtest/gtest.h>

#include "support/scripted_browser.h"

namespace tamrin::test {
namespace {

TEST(BrowserChoice, FollowsTheOptions) {
    using enum BrowserKind;
    const struct {
        BrowserKind kind;
        const char* path;
        bool on_command_line;
        bool answers, explorer;  // Internet Explorer: whether it does, and whether it is chosen
        int asked;
        const char* visible;  // E: Internet Explorer, C: Chromium
    } rows[] = {
        {kAny, "", false, true, true, 1, "EC"},
        {kAny, "", false, false, false, 1, "EC"},
        {kAny, "C:\\chrome.exe", false, true, false, 0, "EC"},
        {kAny, "C:\\IEXPLORE.EXE", false, false, true, 0, "EC"},
        {kAny, "", true, true, true, 1, "EC"},
        {kChromium, "", false, true, false, 0, "C"},
        {kExplorer, "C:\\chrome.exe", false, false, true, 0, "E"},
        {kExplorer, "C:\\chrome.exe", true, true, false, 0, "E"},
        {kChromium, "iexplore.exe", true, true, true, 0, "C"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.path) + row.visible);
        VirtualClock clock;
        ScriptedWeb explorer{clock}, chromium{clock};
        const auto old = std::make_shared<ScriptedBrowser>(explorer);
        const auto other = std::make_shared<ScriptedBrowser>(chromium);
        ScriptedWindows explorers, chromiums;
        explorers.visible = {explorers.opens = old};
        chromiums.visible = {chromiums.focused = other};
        Options options;
        options.browser_kind = row.kind;
        options.browser_path = row.path;
        if (row.on_command_line) options.kept_browser_path = "";
        int asked = 0;
        BrowserChoice choice{options, {explorer, explorers}, {chromium, chromiums}, [&] {
                                 ++asked;
                                 return row.answers;
                             }};
        std::string visible;
        for (const auto& window : choice.Visible()) visible += window == old ? 'E' : 'C';
        EXPECT_EQ(visible, row.visible);
        EXPECT_EQ(choice.Focused() == other, visible != "E");
        explorers.focused = old;
        EXPECT_EQ(choice.Focused() == old, visible != "C");
        std::string why;
        EXPECT_EQ(choice.Open("", why) == old, row.explorer);
        const auto made = choice.Create(why);
        const ScriptedWeb& web = row.explorer ? explorer : chromium;
        EXPECT_TRUE(made == web.browser && &choice.input() == &web);
        EXPECT_EQ(asked, row.asked);
    }
}

}  // namespace
}  // namespace tamrin::test
