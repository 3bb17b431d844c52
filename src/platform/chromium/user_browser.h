#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chromium/browser_link.h"

namespace tamrin {

// A browser in which the user works. Its tabs are known from its events; whether a tab is shown and
// has the focus only its page knows. They are attached to when somebody looks for them, and in tabs
// in the background nothing runs.
class UserBrowser {
public:
    // A call may take as long as `patience` says; `on_window` is called when a window has opened.
    UserBrowser(const Clock& clock, const Files& files, DevTools::Patience patience,
                std::function<void()> on_window);

    // Whoever owns it connects it.
    BrowserLink& link() { return link_; }
    // Begins to follow the windows of the browser that it is connected to now. DeliverEvents does
    // so when it finds itself connected.
    void Discover();

    bool Connected() const { return link_.devtools().IsOpen(); }
    // Whether it is connected or may still be: it may ask its user first.
    bool Alive() const { return Connected() || link_.devtools().IsOpening(); }

    std::uint64_t RoundTrips() const { return link_.devtools().RoundTrips(); }

    // Handles the messages that have arrived and calls the subscribers; never waits.
    void DeliverEvents();

    // The windows that show a page, the one that had the focus last first.
    std::vector<std::shared_ptr<Browser>> Visible();

    // Asks the shown tabs, and from time to time all others, whether they have the focus, and
    // answers the window that has it. Where all browsers begin before the first ends, it is one
    // round trip.
    void BeginToLook();
    std::shared_ptr<Browser> EndLook();

    // Opens a window; null when the browser does not answer.
    std::shared_ptr<Browser> Open(int limit_ms);
    // The window with which it has started.
    std::shared_ptr<Browser> First(int limit_ms);

private:
    struct Page {
        std::string target;
        std::string session{};  // "" until it is attached
        bool attaching = false;
        bool known = false;  // whether it has answered yet
        bool asked = false;  // and has not answered yet
        bool late = false;   // a look went by without its answer
        bool shown = false;
        bool focused = false;
        std::uint64_t focused_at = 0;
        std::shared_ptr<Tab> tab{};
        std::shared_ptr<ChromiumBrowser> browser{};
    };

    void OnTarget(std::string_view method, const nlohmann::json& params);
    void OnPage(const nlohmann::json& info);
    Page* Find(std::string_view target);
    void AttachToPages();
    void Ask(Page& page);
    void OnAnswer(const std::string& target, const DevToolsReply& reply);
    void Show(Page& page);
    void WaitForAnswers();
    std::shared_ptr<Browser> WindowOf(const std::function<Page*()>& find, int limit_ms);
    Page* Focused();

    const Clock& clock_;
    const std::function<void()> on_window_;
    BrowserLink link_;
    std::list<Page> pages_;
    std::uint64_t focus_count_ = 0;
    std::uint32_t all_asked_at_ = 0;  // tick of the last look at the hidden pages
    bool changed_ = true;             // a page was hidden since
    bool discovering_ = false;
};

}  // namespace tamrin
