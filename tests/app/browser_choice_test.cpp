#include "app/browser_choice.h"

#include <gtest/gtest.h>

#include "support/scripted_browser.h"
#include "support/virtual_clock.h"

namespace tamrin::test {
namespace {

// Two machines' worth of browsers, told apart by their page.
struct Kinds {
    VirtualClock clock;
    ScriptedWeb explorer{clock};
    ScriptedWeb chromium{clock};
    ScriptedWindows explorers;
    ScriptedWindows chromiums;
    Options options;
    bool answers = true;
    int asked = 0;
    BrowserChoice choice{options, {explorer, explorers}, {chromium, chromiums}, [this] {
                             ++asked;
                             return answers;
                         }};

    // Which of them a run gets: its browser, and the input that belongs to it.
    std::string Created() {
        std::string why;
        const auto made = choice.Create(why);
        const auto of = [&](ScriptedWeb& web) {
            return made == web.browser && &choice.input() == &web.input();
        };
        return of(explorer) ? "explorer" : of(chromium) ? "chromium" : "none";
    }
};

TEST(BrowserChoice, FollowsTheOptions) {
    using enum BrowserKind;
    const struct {
        BrowserKind kind;
        const char* path;
        bool named_by_command_line;
        bool answers;
        const char* created;
        int asked;
    } rows[] = {
        {kAny, "", false, true, "explorer", 1},
        {kAny, "", false, false, "chromium", 1},
        {kAny, "C:\\chrome.exe", false, true, "chromium", 0},
        {kAny, "C:\\IEXPLORE.EXE", false, false, "explorer", 0},
        {kAny, "", true, true, "explorer", 1},
        {kChromium, "", false, true, "chromium", 0},
        {kExplorer, "C:\\chrome.exe", false, false, "explorer", 0},
        {kExplorer, "C:\\chrome.exe", true, true, "chromium", 0},
        {kChromium, "iexplore.exe", true, true, "explorer", 0},
    };
    for (const auto& row : rows) {
        Kinds kinds;
        kinds.options.browser_kind = row.kind;
        kinds.options.browser_path = row.path;
        if (row.named_by_command_line) kinds.options.kept_browser_path = "";
        kinds.answers = row.answers;
        kinds.choice.Visible();
        for (int time = 0; time < 2; ++time) EXPECT_EQ(kinds.Created(), row.created) << row.path;
        EXPECT_EQ(kinds.asked, row.asked) << row.path;
    }
}

TEST(BrowserChoice, ShowsTheWindowsOfTheChosenKind) {
    Kinds kinds;
    const auto old = std::make_shared<ScriptedBrowser>(kinds.explorer);
    const auto other = std::make_shared<ScriptedBrowser>(kinds.chromium);
    kinds.explorers.visible = {old};
    kinds.chromiums.visible = {other};
    kinds.chromiums.focused = other;
    using Windows = std::vector<std::shared_ptr<Browser>>;
    EXPECT_EQ(kinds.choice.Visible(), (Windows{old, other}));
    EXPECT_EQ(kinds.choice.Focused(), other);
    kinds.options.browser_kind = BrowserKind::kExplorer;
    EXPECT_EQ(kinds.choice.Visible(), (Windows{old}));
    EXPECT_EQ(kinds.choice.Focused(), nullptr);
    kinds.options.browser_kind = BrowserKind::kChromium;
    EXPECT_EQ(kinds.choice.Visible(), (Windows{other}));
}

}  // namespace
}  // namespace tamrin::test
