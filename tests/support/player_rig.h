#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "player/player.h"
#include "support/scripted_browser.h"

namespace tamrin::test {

// A player with everything around it in memory. What it does to the window is among the calls of
// the web.
class PlayerRig : public PlayerHost {
public:
    PlayerRig() : web(clock), player(globals, clock, web, *this) {
        globals.settings.auto_point = false;
        globals.settings.mouse_click = false;
    }

    // The record line of an action and its items.
    static std::string Line(std::string_view act, std::string_view items) {
        return std::string(act) + "\t" + std::string(items);
    }
    static std::string Url(std::string_view address) {
        return Line("url", ",id=,size_bar=1.2.300.400.10110,indt=" + std::string(address));
    }

    // Plays "url page" and then `records` on a page of that HTML.
    RunEnd PlayOn(const std::string& html, std::vector<std::string> records) {
        web.pages["page"] = html;
        lines = std::move(records);
        lines.insert(lines.begin(), Url("page"));
        return player.Play();
    }

    // The calls after those with which every run begins, joined by "; ".
    std::string CallsOnPage() const {
        std::string calls;
        for (std::size_t i = 5; i < web.calls.size(); ++i) {
            calls += (calls.empty() ? "" : "; ") + web.calls[i];
        }
        return calls;
    }

    int RecordCount() override { return static_cast<int>(lines.size()); }
    std::string_view Record(int row) override {
        return row < RecordCount() ? std::string_view(lines[row]) : std::string_view();
    }
    void SelectRecord(int row) override { selected = row; }
    int GetRepeat() override { return repeat; }
    void SetMode(std::string_view mode, bool on) override {
        modes.push_back(std::string(mode) + (on ? " on" : " off"));
    }
    void SetStatus(const std::string& text) override { statuses.push_back(text); }
    void ShowMessage(const std::string& text, const std::string& title) override {
        messages.push_back(title + "|" + text);
    }
    std::string ClipboardText() override { return clipboard; }
    void HoldBrowser(std::shared_ptr<Browser> browser) override { held = std::move(browser); }
    bool WindowVisible() override { return visible; }
    void SetWindowVisible(bool now_visible) override {
        visible = now_visible;
        web.Note(visible ? "window shown" : "window hidden");
    }
    Rect WindowRect() override { return window; }
    void EnterTray() override {}
    void LeaveTray() override {}
    void CloseWindow() override { closed = true; }
    void RecordDone(const RecordReport& report) override { reports.push_back(report); }

    VirtualClock clock;
    ScriptedWeb web;
    Globals globals;
    Player player;

    std::vector<std::string> lines;
    std::vector<std::string> modes;
    std::vector<std::string> statuses;
    std::vector<std::string> messages;
    std::vector<RecordReport> reports;
    std::string clipboard;
    std::shared_ptr<Browser> held;
    Rect window;
    int selected = -1;
    int repeat = 1;
    bool visible = true;
    bool closed = false;
};

}  // namespace tamrin::test
