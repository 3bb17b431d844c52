#pragma once

#include "platform/text.h"
#include "player/player.h"
#include "support/scripted_browser.h"

namespace tamrin::test {

// A player with everything around it in memory. All that it does and says is written down in order
// among the calls of the web.
class PlayerRig : public PlayerHost, public RunEvents {
public:
    PlayerRig() { globals.settings.auto_point = globals.settings.mouse_click = false; }

    static std::string Url(const std::string& address) {
        return "url\t,id=,size_bar=1.2.300.400.10110,indt=" + address;
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
        for (const std::string& call : web.calls) {
            story = call.starts_with("bars ") ? "" : story + "; " + call;
        }
        return story.substr(story.empty() ? 0 : 2);
    }

    int RecordCount() override { return static_cast<int>(lines.size()); }
    std::string_view Record(int row) override { return lines.at(static_cast<size_t>(row)); }
    void SetStatus(const std::string& text) override { web.Note("status " + text); }
    void ShowMessage(const std::string& text, const std::string& title) override {
        web.Note("message " + title + "|" + text);
    }
    std::string ClipboardText() override { return clipboard; }
    std::optional<Rect> WindowRect() override { return window; }
    void SetWindowVisible(bool shown) override {
        web.Note(shown ? "window shown" : "window hidden");
    }

    void RunBegan() override { web.Note("run began"); }
    void BrowserOpened(std::shared_ptr<Browser> /*browser*/) override {}
    void RecordBegan(int row) override { begun = row; }
    void RecordDone(const RecordReport& report) override {
        constexpr const char* kWords[] = {"done",      "comment", "not busy", "skipped",
                                          "not found", "invalid", "not sent", "stopped"};
        const bool done = report.outcome == RecordOutcome::kDone;
        if (!done) web.Note(kWords[static_cast<std::size_t>(report.outcome)]);
        reports.push_back(report);
    }
    void RunEnded(RunEnd end) override { ended.push_back(end); }

    VirtualClock clock;
    ScriptedWeb web{clock};
    Globals globals;
    Player player{globals, clock, web, *this, *this};

    std::vector<std::string> lines;
    std::string clipboard;
    std::optional<Rect> window;
    int begun = -1;
    std::vector<RecordReport> reports;
    std::vector<RunEnd> ended;
};

}  // namespace tamrin::test
