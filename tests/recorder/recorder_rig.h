#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "recorder/recorder.h"
#include "support/scripted_user.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

using Lines = std::vector<std::string>;

// A recorder with everything around it in memory, and a user before the recorded window.
class RecorderTest : public testing::Test, protected RecorderHost {
protected:
    // Begins to record on a page of that HTML.
    void Record(const std::string& html, RecordKind kind = RecordKind::kNew) {
        web.pages["page"] = html;
        window->Show("page");
        recorder.Start(window, kind);
    }
    void Pass(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 10) {
            clock.DoEvents();
            clock.Sleep(10);
        }
    }
    // The records once everything is recorded, TAB as "→", without the one of the page itself.
    Lines Records() {
        Pass(200);
        Lines records;
        for (std::string line : lines) {
            if (const auto tab = line.find('\t'); tab != line.npos) line.replace(tab, 1, "→");
            if (!line.starts_with("url→")) records.push_back(line);
        }
        return records;
    }

    int RecordCount() override { return static_cast<int>(lines.size()); }
    std::string_view Record(int row) override { return lines[static_cast<std::size_t>(row)]; }
    void AppendRecord(const std::string& line) override { lines.push_back(line); }
    void SelectRecord(int row) override { selected = row; }
    void SetStatus(const std::string& text) override { status = text; }
    void ShowMessage(const std::string& text, const std::string& title) override {
        messages.push_back(title + "|" + text);
    }
    void ShowNotice(const std::string& text) override { notices.push_back(text); }
    void PageShown() override { ++pages_shown; }
    void BrowserClosed() override { closed = true; }

    VirtualClock clock;
    ScriptedWeb web{clock};
    std::shared_ptr<ScriptedBrowser> window = std::make_shared<ScriptedBrowser>(web);
    ScriptedUser user{web, window};
    Globals globals;
    Recorder recorder{globals, clock, *this};

    Lines lines;
    int selected = -1;
    std::string status;
    Lines messages;
    Lines notices;
    int pages_shown = 0;
    bool closed = false;
};

}  // namespace tamrin::test
