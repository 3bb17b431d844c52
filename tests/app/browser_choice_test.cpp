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
        bool answers;  // Internet Explorer
        // E: Internet Explorer, C: Chromium. The visible windows; the focused one when only
        // Chromium has it, and when both have one; what is opened to record and to play, and the
        // mouse there. "?" where it was asked whether Internet Explorer answers.
        const char* chosen;
    } rows[] = {
        {kAny, "", false, true, "EC CE ?EEE"},
        {kAny, "", false, false, "EC CE ?CCC"},
        {kAny, "C:\\chrome.exe", false, true, "EC CE CCC"},
        {kAny, "C:\\IEXPLORE.EXE", false, false, "EC CE EEE"},
        {kAny, "", true, true, "EC CE ?EEE"},
        {kChromium, "", false, true, "C CC CCC"},
        {kExplorer, "C:\\chrome.exe", false, false, "E -E EEE"},
        {kExplorer, "C:\\chrome.exe", true, true, "E -E CCC"},
        {kChromium, "iexplore.exe", true, true, "C CC EEE"},
    };
    for (const auto& row : rows) {
        VirtualClock clock;
        ScriptedWeb explorer{clock}, chromium{clock};
        ScriptedWindows explorers, chromiums;
        explorers.visible = {explorers.opens = std::make_shared<ScriptedBrowser>(explorer)};
        chromiums.visible = {chromiums.opens = std::make_shared<ScriptedBrowser>(chromium)};
        chromiums.focused = chromiums.opens;
        Options options;
        options.browser_kind = row.kind;
        options.browser_path = row.path;
        if (row.on_command_line) options.kept_browser_path = "";
        std::string chosen, why;
        BrowserChoice choice{options, {explorer, explorers}, {chromium, chromiums}, [&] {
                                 chosen += '?';
                                 return row.answers;
                             }};
        const auto name = [&](const std::shared_ptr<Browser>& browser) {
            const bool old = browser == explorers.opens || browser == explorer.browser;
            return !browser ? '-' : old ? 'E' : 'C';
        };
        for (const auto& window : choice.Visible()) chosen += name(window);
        (chosen += ' ') += name(choice.Focused());
        explorers.focused = explorers.opens;
        (chosen += name(choice.Focused())) += ' ';
        const auto opened = choice.Open("", why), made = choice.Create(why);
        chosen += name(opened);
        chosen += name(made);
        chosen += &choice.input() == &explorer ? 'E' : 'C';
        EXPECT_EQ(chosen, row.chosen) << row.path;
    }
}

}  // namespace
}  // namespace tamrin::test
