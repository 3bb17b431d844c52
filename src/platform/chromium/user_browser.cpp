#include "platform/chromium/user_browser.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

namespace tamrin {
namespace {

using nlohmann::json;

// How long a look waits for the pages. A page that has not answered by then counts as without
// focus.
constexpr int kLookLimitMs = 200;

// How often hidden pages are asked while none of the shown has the focus.
constexpr std::uint32_t kHiddenLookMs = 3000;

constexpr const char* kLook =
    "(document.visibilityState === 'visible' ? 'shown' : '') + (document.hasFocus() ? '+' : '')";

}  // namespace

UserBrowser::UserBrowser(const Clock& clock, const Files& files, DevTools::Patience patience,
                         std::function<void()> on_window)
    : clock_(clock),
      on_window_(std::move(on_window)),
      link_(clock, files, std::move(patience),
            [this](std::string_view method, const json& params) { OnTarget(method, params); }) {}

void UserBrowser::Discover() {
    discovering_ = true;
    pages_.clear();
    link_.Discover();
}

void UserBrowser::DeliverEvents() {
    link_.DeliverEvents();
    if (!discovering_ && Connected()) Discover();
}

void UserBrowser::OnTarget(std::string_view method, const json& params) {
    if (method == "Target.targetDestroyed") {
        const std::string target = params.value("targetId", "");
        changed_ = true;
        pages_.remove_if([&](const Page& page) { return page.target == target; });
        return;
    }
    if (method == "Target.targetCreated" && on_window_) on_window_();
    const auto info = params.find("targetInfo");
    if (info != params.end() && info->is_object()) OnPage(*info);
}

void UserBrowser::OnPage(const json& info) {
    const std::string target = info.value("targetId", "");
    const bool is_page =
        info.value("type", "") == "page" && !info.value("url", "").starts_with("devtools://");
    if (!is_page || Find(target)) return;
    pages_.push_back({target});
}

void UserBrowser::AttachToPages() {
    if (!Connected()) return;
    link_.LeaveToUser();
    for (Page& page : pages_) {
        if (std::exchange(page.attaching, true)) continue;
        link_.Attach(page.target, [this, target = page.target](const std::string& session) {
            Page* attached = Find(target);
            if (!attached) return;
            attached->session = session;
            Ask(*attached);
        });
    }
}

UserBrowser::Page* UserBrowser::Find(std::string_view target) {
    const auto page = std::find_if(pages_.begin(), pages_.end(),
                                   [&](const Page& other) { return other.target == target; });
    return page == pages_.end() ? nullptr : &*page;
}

void UserBrowser::Ask(Page& page) {
    if (page.asked || page.session.empty()) return;
    page.asked = true;
    link_.devtools().Ask(
        page.session, "Runtime.evaluate", {{"expression", kLook}, {"returnByValue", true}},
        [this, target = page.target](const DevToolsReply& reply) { OnAnswer(target, reply); });
}

void UserBrowser::OnAnswer(const std::string& target, const DevToolsReply& reply) {
    Page* page = Find(target);
    if (!page) return;
    const std::string answer = reply.Text("/result/value");
    const bool was_shown = page->shown;
    page->asked = page->late = false;
    page->known = true;
    page->shown = answer.starts_with("shown");
    page->focused = answer.ends_with("+");
    if (page->focused) page->focused_at = ++focus_count_;
    if (page->shown) Show(*page);
    if (was_shown && !page->shown) changed_ = true;
}

void UserBrowser::Show(Page& page) {
    if (page.tab) return;
    page.tab = link_.MakeTab(page.target, page.session, Tab::Owner::kUser);
    page.tab->BeginToOpen();
    page.browser = link_.MakeBrowser(page.tab, [weak = std::weak_ptr<Tab>(page.tab)] {
        if (const auto tab = weak.lock()) tab->agents().Post("Page.bringToFront", json::object());
    });
}

std::vector<std::shared_ptr<Browser>> UserBrowser::Visible() {
    AttachToPages();
    std::vector<const Page*> shown;
    for (const Page& page : pages_) {
        if (page.shown && page.browser->document()) shown.push_back(&page);
    }
    std::sort(shown.begin(), shown.end(), [](const Page* left, const Page* right) {
        return left->focused_at > right->focused_at;
    });
    std::vector<std::shared_ptr<Browser>> windows;
    windows.reserve(shown.size());
    for (const Page* page : shown) windows.push_back(page->browser);
    return windows;
}

void UserBrowser::BeginToLook() {
    if (!Connected()) return;
    AttachToPages();
    for (Page& page : pages_) {
        if (page.shown || !page.known) Ask(page);
    }
}

void UserBrowser::WaitForAnswers() {
    const auto awaited = [](const Page& page) { return page.asked && page.shown && !page.late; };
    const bool all = link_.devtools().WaitUntil(
        [&] { return Focused() || std::none_of(pages_.begin(), pages_.end(), awaited); },
        kLookLimitMs);
    for (Page& page : pages_) {
        if (!all && page.asked) page.late = true;
    }
}

UserBrowser::Page* UserBrowser::Focused() {
    for (Page& page : pages_) {
        if (!page.asked && page.focused && page.shown) return &page;
    }
    return nullptr;
}

std::shared_ptr<Browser> UserBrowser::EndLook() {
    if (!Connected()) return nullptr;
    WaitForAnswers();
    const std::uint32_t now = clock_.TickCount();
    if (!Focused() && (changed_ || now - all_asked_at_ >= kHiddenLookMs)) {
        changed_ = false;
        all_asked_at_ = now;
        // Their answers are there at the next look.
        for (Page& page : pages_) Ask(page);
    }
    Page* page = Focused();
    return page && page->browser->document() ? page->browser : nullptr;
}

std::shared_ptr<Browser> UserBrowser::WindowOf(const std::function<Page*()>& find, int limit_ms) {
    Page* page = nullptr;
    link_.devtools().WaitUntil(
        [&] {
            AttachToPages();
            page = find();
            return page && !page->session.empty();
        },
        limit_ms);
    if (!page || page->session.empty()) return nullptr;
    page->shown = page->known = true;
    Show(*page);
    return page->tab->Open() ? page->browser : nullptr;
}

std::shared_ptr<Browser> UserBrowser::Open(int limit_ms) {
    const std::string target = link_.NewTarget();
    return WindowOf([&] { return Find(target); }, limit_ms);
}

std::shared_ptr<Browser> UserBrowser::First(int limit_ms) {
    return WindowOf([&] { return pages_.empty() ? nullptr : &pages_.front(); }, limit_ms);
}

}  // namespace tamrin
