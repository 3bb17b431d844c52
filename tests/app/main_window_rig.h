#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <map>
#include <set>

#include "app/frm_ie_auto.h"
#include "platform/headless/headless_window_system.h"
#include "platform/posix/text_codec.h"
#include "support/memory_files.h"
#include "support/scripted_user.h"

namespace tamrin::test {

using enum Answer;
using Lines = std::vector<std::string>;

// Dialogs whose answers are queued. A box without a queued answer fails the test with its text.
class ScriptedDialogs : public Dialogs {
public:
    std::deque<Answer> answers;
    std::deque<std::string> paths;
    // "title|text", "title|filter|proposed" of file dialogs, "title|start" of folder dialogs
    std::vector<std::string> shown;

    Answer MsgBox(const std::string& text, const std::string& title, Buttons, bool) override {
        return Next(answers, title + "|" + text, Answer::kCancel);
    }
    std::string SaveFile(const FileDialog& dialog) override { return OpenFile(dialog); }
    std::string OpenFile(const FileDialog& dialog) override {
        return Next(paths, dialog.title + "|" + dialog.filter + "|" + dialog.proposed, {});
    }
    std::string OpenFolder(const std::string& title, const std::string& start) override {
        return Next(paths, title + "|" + start, {});
    }

private:
    template <class T>
    T Next(std::deque<T>& queue, const std::string& dialog, T answer) {
        shown.push_back(dialog);
        EXPECT_FALSE(queue.empty()) << "unexpected: " << dialog;
        if (queue.empty()) return answer;
        answer = queue.front();
        queue.pop_front();
        return answer;
    }
};

// A machine that starts no programs.
struct NoProcesses : Processes {
    std::unique_ptr<Process> Start(const ProgramStart&) override { return nullptr; }
    std::string FindExecutable(const std::string&) const override { return ""; }
    std::string MakeTemporaryFolder() override { return ""; }
    void RemoveTemporaryFolder(const std::string&) override {}
    bool HasDisplay() const override { return false; }
    bool IsRoot() const override { return false; }
    std::string Environment(const std::string&) const override { return ""; }
    std::string OwnExecutable() const override { return own; }
    bool IsRunning(const std::string& path) const override { return running.contains(path); }
    void AllowRunning(const std::string& path) override { runnable.insert(path); }
    void RaisePriority() override { raised = true; }

    bool raised = false;
    std::string own = "C:\\tamrin\\tamrin.exe";
    std::set<std::string> running, runnable;
};

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

    // What the user does, and what it leads to.
    struct Step {
        std::string acts;   // parted by "; "
        std::string reply;  // to boxes: o(k), c(ancel), y(es), n(o); ">" and a path to a dialog
        std::string said;   // part of what the boxes and dialogs show
        std::string state;  // then, as the test's State tells it
    };
    void Run(const std::vector<Step>& steps) {
        const std::map<char, Answer> answers{{'o', kOk}, {'c', kCancel}, {'y', kYes}, {'n', kNo}};
        for (const Step& step : steps) {
            SCOPED_TRACE(step.acts);
            const Lines reply = Split(step.reply, ">");
            for (const char c : reply[0]) dialogs.answers.push_back(answers.at(c));
            dialogs.paths.assign(reply.begin() + 1, reply.end());
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
        const Lines parts = Split(act, ": ");
        if (parts.size() > 1)
            windows.onModal = [&](HeadlessForm& dialog) {
                for (const std::string& part : Split(parts[1], ", ")) {
                    const auto end = std::min(part.find_first_of("= "), part.size());
                    const std::string name = part.substr(0, end);
                    const std::string rest = part.substr(std::min(end + 1, part.size()));
                    part[end] == '=' ? dialog.Find(name).SetText(rest)
                                     : dialog.Click(name, rest.empty() ? -1 : std::stoi(rest));
                }
                EXPECT_TRUE(dialog.closed()) << act;
            };
        const bool named = act.starts_with("mnu") || act.starts_with("cmd");
        named ? form().Click(parts[0]) : form().Press(parts[0]);
        windows.onModal = nullptr;
    }
    virtual std::string State() { return Joined(Records()); }

    static std::string Joined(const Lines& lines) {
        std::string text;
        for (const std::string& line : lines) text += (text.empty() ? "" : "/") + line;
        return text;
    }
    static Lines Split(const std::string& text, const std::string& by) {
        const auto at = text.find(by);
        if (at == std::string::npos) return {text};
        Lines parts = Split(text.substr(at + by.size()), by);
        parts.insert(parts.begin(), text.substr(0, at));
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
