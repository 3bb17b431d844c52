#include "app/browser_choice.h"

#include <iterator>

#include "platform/text.h"

namespace tamrin {
namespace {

bool NamesExplorer(const std::string& path) { return EndsWithIgnoreCase(path, "iexplore.exe"); }

}  // namespace

bool BrowserChoice::UsesExplorer() {
    // A browser named on the command line comes before the settings.
    if (options_.kept_browser_path && !options_.browser_path.empty())
        return NamesExplorer(options_.browser_path);
    if (options_.browser_kind != BrowserKind::kAny)
        return options_.browser_kind == BrowserKind::kExplorer;
    if (!options_.browser_path.empty()) return NamesExplorer(options_.browser_path);
    if (!explorer_answers_) explorer_answers_ = answers_();
    return *explorer_answers_;
}

std::shared_ptr<Browser> BrowserChoice::Create(std::string& why) {
    created_explorer_ = UsesExplorer();
    return (created_explorer_ ? explorer_ : chromium_).launcher.Create(why);
}

Input& BrowserChoice::input() {
    return (created_explorer_ ? explorer_ : chromium_).launcher.input();
}

std::vector<std::shared_ptr<Browser>> BrowserChoice::Visible() {
    std::vector<std::shared_ptr<Browser>> windows;
    if (options_.browser_kind != BrowserKind::kChromium) windows = explorer_.windows.Visible();
    if (options_.browser_kind != BrowserKind::kExplorer) {
        auto others = chromium_.windows.Visible();
        windows.insert(windows.end(), std::make_move_iterator(others.begin()),
                       std::make_move_iterator(others.end()));
    }
    return windows;
}

std::shared_ptr<Browser> BrowserChoice::Focused() {
    std::shared_ptr<Browser> focused;
    if (options_.browser_kind != BrowserKind::kChromium) focused = explorer_.windows.Focused();
    if (!focused && options_.browser_kind != BrowserKind::kExplorer)
        focused = chromium_.windows.Focused();
    return focused;
}

std::shared_ptr<Browser> BrowserChoice::Open(const std::string& address, std::string& why) {
    return (UsesExplorer() ? explorer_ : chromium_).windows.Open(address, why);
}

}  // namespace tamrin
