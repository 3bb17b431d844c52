#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"
#include "recorder/recorder.h"
#include "support/scripted_user.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

// A recorder with everything around it in memory, and a user before the recorded window.
class RecorderTest : public testing::Test, protected RecorderHost {
protected:
    // Begins to record on a page of that HTML.
    void Start(const std::string& html, RecordKind kind = RecordKind::kNew) {
        web.pages["page"] = html;
        window->Show("page");
        recorder.Start(window, kind);
    }
    // What the user does, with "; " between: "type NAME TEXT", "choose NAME INDEX", "focus NAME",
    // "click NAME", "leave" (the field), "return" (from another window), "enter", "open ADDRESS",
    // "pass" (0.3 seconds), "set" ("rec change only").
    void Do(const std::string& acts) {
        for (const std::string& act : SplitLines(ReplaceAll(acts, "; ", "\n"))) {
            const std::string verb = act.substr(0, act.find(' '));
            const std::string rest = act.substr(std::min(verb.size() + 1, act.size()));
            const std::string name = rest.substr(0, rest.find(' '));
            const std::string text = rest.substr(std::min(name.size() + 1, rest.size()));
            if (verb == "type") user.Type(name, text);
            if (verb == "choose") user.Choose(name, std::stoi(text));
            if (verb == "focus" || verb == "leave") user.Focus(name);
            if (verb == "click") user.Click(name);
            if (verb == "return") user.ComeBack();
            if (verb == "enter") user.Enter();
            if (verb == "open") user.GoTo(name);
            if (verb == "pass") Pass(300);
            if (verb == "set") globals.settings.rec_change_only = true;
        }
    }
    void Pass(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 10) {
            clock.DoEvents();
            clock.Sleep(10);
        }
    }
    // The records once everything is recorded, a line each: with "→" for the tab, "[,]" and "[n]"
    // for an encoded comma and line end, and without the record of the page itself.
    std::string Records() {
        Pass(200);
        std::string records;
        for (const std::string& line : lines) {
            if (!line.starts_with("url\t")) records += line + "\n";
        }
        records = ReplaceAll(ReplaceAll(records, "\t", "→"), "\x01", "[,]");
        return std::string(Trim(ReplaceAll(records, "\x02", "[n]"), "\n"));
    }

    int RecordCount() override { return static_cast<int>(lines.size()); }
    std::string_view Record(int row) override { return lines.at(static_cast<size_t>(row)); }
    void AppendRecord(const std::string& line) override { lines.push_back(line); }
    void SelectRecord(int row) override { selected = row; }
    void SetStatus(const std::string& text) override { status = text; }
    void ShowMessage(const std::string& text, const std::string& title) override {
        said += title + "|" + text;
    }
    void ShowNotice(const std::string& text) override { said += text; }
    void PageShown() override { ++pages_shown; }
    void BrowserClosed() override { closed = true; }

    VirtualClock clock;
    ScriptedWeb web{clock};
    std::shared_ptr<ScriptedBrowser> window = std::make_shared<ScriptedBrowser>(web);
    ScriptedUser user{web, window};
    Globals globals;
    Recorder recorder{globals, clock, *this};

    std::vector<std::string> lines;
    int selected = -1;
    std::string status;
    std::string said;  // messages and notices
    int pages_shown = 0;
    bool closed = false;
};

}  // namespace tamrin::test
