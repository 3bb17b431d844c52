#include "app/browser_choice.h"

#include <gtest/gtest.h>

#include "support/scripted_browser.h"
#include "support/scripted_user.h"
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
            return made.get() == web.browser && &choice.input() == &web.input();
        };
        return of(explorer) ? "explorer" : of(chromium) ? "chromium" : "none";
    }
};

TEST(BrowserChoice, FollowsTheOptions) {
    struct Case {
        BrowserKind kind;
        const char* path;
        bool named_by_command_line;
        bool answers;
        const char* created;
    };
    constexpr Case kCases[] = {
        {BrowserKind::kAny, "", false, true, "explorer"},
        {BrowserKind::kAny, "", false, false, "chromium"},
        {BrowserKind::kAny, "C:\\chrome.exe", false, true, "chromium"},
        {BrowserKind::kAny, "C:\\IEXPLORE.EXE", false, false, "explorer"},
        {BrowserKind::kChromium, "", false, true, "chromium"},
        {BrowserKind::kExplorer, "C:\\chrome.exe", false, false, "explorer"},
        {BrowserKind::kExplorer, "C:\\chrome.exe", true, true, "chromium"},
        {BrowserKind::kChromium, "iexplore.exe", true, true, "explorer"},
    };
    for (const Case& c : kCases) {
        Kinds kinds;
        kinds.options.browser_kind = c.kind;
        kinds.options.browser_path = c.path;
        if (c.named_by_command_line) kinds.options.kept_browser_path = "";
        kinds.answers = c.answers;
        EXPECT_EQ(kinds.Created(), c.created) << c.path << c.answers << static_cast<int>(c.kind);
    }
}

TEST(BrowserChoice, AsksForInternetExplorerOnceAndOnlyWhenItMatters) {
    Kinds kinds;
    kinds.options.browser_kind = BrowserKind::kChromium;
    kinds.Created();
    kinds.choice.Visible();
    EXPECT_EQ(kinds.asked, 0);
    kinds.options.browser_kind = BrowserKind::kAny;
    kinds.Created();
    kinds.Created();
    EXPECT_EQ(kinds.asked, 1);
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
