#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/frm_ie_auto.h"
#include "platform/headless/headless_window_system.h"
#include "platform/posix/text_codec.h"
#include "support/memory_files.h"
#include "support/no_processes.h"
#include "support/scripted_browser.h"
#include "support/scripted_dialogs.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

using enum Answer;
using Lines = std::vector<std::string>;

// The main window on a machine in memory, with the program in C:\tamrin.
class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() {
        web.pages["page"] = "<input id=a type=text>";
        files.contents["C:\\tamrin\\order.csv"] = kScenario;
        clock.AddSource([this] { windows.RunTimers(clock.TickCount()); });
    }

    HeadlessForm& form() { return *windows.FindForm("frmIeAuto"); }
    Control& Find(std::string_view name) { return form().Find(name); }
    bool Enabled(std::string_view name) { return Find(name).Enabled(); }
    ListBox& list() { return form().List("lstDtList"); }
    Lines Records() { return LinesOf(list()); }
    static Lines LinesOf(const ListBox& box) {
        Lines lines;
        for (int i = 0; i < box.Count(); ++i) lines.emplace_back(box.Line(i));
        return lines;
    }

    void Pass(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 10) {
            clock.DoEvents();
            clock.Sleep(10);
        }
    }
    void After(int milliseconds, std::function<void()> act) {
        clock.At(clock.Elapsed() + static_cast<std::uint64_t>(milliseconds), std::move(act));
    }

    // What the user does, and what it leads to.
    struct Step {
        std::string acts;  // parted by "; "
        std::string
            reply;         // to boxes: o(k), c(ancel), y(es), n(o); ">" and a path to a file dialog
        std::string said;  // part of what the boxes and dialogs show
        std::string state;  // then, as the test's State tells it
    };
    void Run(const std::vector<Step>& steps) {
        for (const Step& step : steps) {
            SCOPED_TRACE(step.acts);
            const auto path = std::min(step.reply.find('>'), step.reply.size());
            for (const char c : step.reply.substr(0, path)) {
                dialogs.answers.push_back(c == 'o'   ? kOk
                                          : c == 'c' ? kCancel
                                          : c == 'y' ? kYes
                                                     : kNo);
            }
            if (path < step.reply.size()) dialogs.paths = {step.reply.substr(path + 1)};
            dialogs.shown.clear();
            for (const std::string& act : Split(step.acts, "; ")) Act(act);
            EXPECT_TRUE(dialogs.answers.empty() && dialogs.paths.empty());
            const std::string shown = Joined(dialogs.shown);
            EXPECT_NE(shown.find(step.said), std::string::npos) << shown;
            EXPECT_EQ(State(), step.state);
        }
    }
    // A menu entry, a button, or keys; "mnuX: txtA=text, cmdOk" fills and clicks in the dialog that
    // the entry opens.
    virtual void Act(const std::string& act) {
        const auto colon = act.find(": ");
        const std::string command = act.substr(0, colon);
        windows.onModal = [&](HeadlessForm& dialog) {
            for (const std::string& part : Split(act.substr(colon + 2), ", ")) {
                const auto equals = part.find('=');
                const auto blank = part.find(' ');
                if (equals != std::string::npos) {
                    dialog.Find(part.substr(0, equals)).SetText(part.substr(equals + 1));
                } else {
                    const bool indexed = blank != std::string::npos;
                    dialog.Click(part.substr(0, blank),
                                 indexed ? std::stoi(part.substr(blank)) : -1);
                }
            }
            EXPECT_TRUE(dialog.closed()) << act;
        };
        if (colon == std::string::npos) windows.onModal = nullptr;
        const bool named = command.starts_with("mnu") || command.starts_with("cmd");
        named ? form().Click(command) : form().Press(command);
        windows.onModal = nullptr;
    }
    virtual std::string State() { return Joined(Records()); }

    static std::string Joined(const Lines& lines) {
        std::string text;
        for (const std::string& line : lines) text += (text.empty() ? "" : "/") + line;
        return text;
    }
    static Lines Split(std::string text, std::string_view by) {
        Lines parts;
        for (auto at = text.find(by); at != std::string::npos; at = text.find(by)) {
            parts.push_back(text.substr(0, at));
            text.erase(0, at + by.size());
        }
        parts.push_back(text);
        return parts;
    }

    static constexpr const char* kScenario =
        "url\t,id=,size_bar=1.2.3.4.1,indt=page\r\ninput\t,id=a,type=text,indt=x\r\n";

    VirtualClock clock;
    ScriptedDialogs dialogs;
    HeadlessWindowSystem windows{dialogs};
    MemoryFiles files;
    PosixTextCodec codec;
    NoProcesses processes;
    ScriptedWeb web{clock};
    ScriptedWindows browsers;
    Globals globals;
    Platform platform{windows, clock, files, codec, processes, web, browsers};
    frmIeAuto window{globals, platform};
};

}  // namespace tamrin::test
