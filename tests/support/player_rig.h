#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"
#include "player/player.h"
#include "support/scripted_browser.h"

namespace tamrin::test {

// A player with everything around it in memory. All that it does and says is written down in order
// among the calls of the web.
class PlayerRig : public PlayerHost, public RunEvents {
public:
    PlayerRig() : web(clock), player(globals, clock, web, *this, *this) {
        globals.settings.auto_point = false;
        globals.settings.mouse_click = false;
    }

    static std::string Url(std::string_view address) {
        return "url\t,id=,size_bar=1.2.300.400.10110,indt=" + std::string(address);
    }

    // Plays "url page" and then `records`, one a line, on a page of that HTML.
    RunEnd PlayOn(const std::string& html, const std::string& records) {
        web.pages["page"] = html;
        lines = SplitLines(Url("page") + "\n" + records);
        return player.Play();
    }

    // What happened once the first page was open, with "; " between.
    std::string Story() const {
        std::string story;
        bool opened = false;
        for (const std::string& call : web.calls) {
            if (opened) story += (story.empty() ? "" : "; ") + call;
            opened |= call.starts_with("bars ");
        }
        return story;
    }

    int RecordCount() override { return static_cast<int>(lines.size()); }
    std::string_view Record(int row) override { return lines.at(static_cast<size_t>(row)); }
    void SetStatus(const std::string& text) override { web.Note("status " + text); }
    void ShowMessage(const std::string& text, const std::string& title) override {
        web.Note("message " + title + "|" + text);
    }
    std::string ClipboardText() override { return clipboard; }
    std::optional<Rect> WindowRect() override { return window; }
    void SetWindowVisible(bool visible) override {
        web.Note(visible ? "window shown" : "window hidden");
    }

    void RunBegan() override { web.Note("run began"); }
    void BrowserOpened(std::shared_ptr<Browser> browser) override { held = std::move(browser); }
    void RecordBegan(int row) override { begun = row; }
    void RecordDone(const RecordReport& report) override {
        constexpr const char* kWords[] = {"done",      "comment", "not busy", "skipped",
                                          "not found", "invalid", "not sent", "stopped"};
        if (report.outcome != RecordOutcome::kDone) {
            web.Note(kWords[static_cast<std::size_t>(report.outcome)]);
        }
        reports.push_back(report);
    }
    void RunEnded(RunEnd end) override { ended.push_back(end); }

    VirtualClock clock;
    ScriptedWeb web;
    Globals globals;
    Player player;

    std::vector<std::string> lines;
    std::string clipboard;
    std::optional<Rect> window;
    int begun = -1;
    std::vector<RecordReport> reports;
    std::vector<RunEnd> ended;
    std::shared_ptr<Browser> held;
};

}  // namespace tamrin::test
