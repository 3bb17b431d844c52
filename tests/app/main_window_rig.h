#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/frm_ie_auto.h"
#include "platform/headless/headless_window_system.h"
#include "platform/headless/virtual_clock.h"
#include "platform/posix/text_codec.h"
#include "support/memory_files.h"
#include "support/scripted_browser.h"
#include "support/scripted_dialogs.h"
#include "support/scripted_user.h"

namespace tamrin::test {

using Lines = std::vector<std::string>;

class QuietProcesses : public Processes {
public:
    std::unique_ptr<Process> Start(const std::string&, const Lines&) override { return nullptr; }
    std::string FindExecutable(const std::string&) const override { return ""; }
    std::string MakeTemporaryFolder() override { return ""; }
    void RemoveTemporaryFolder(const std::string&) override {}
    bool HasDisplay() const override { return false; }
    bool IsRoot() const override { return false; }
    std::string Environment(const std::string&) const override { return ""; }
    void RaisePriority() override { raised = true; }
    bool raised = false;
};

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() {
        web.pages["page"] = "<input id=a type=text>";
        files.contents["C:\\tamrin\\order.csv"] = kScenario;
        clock.AddSource([this] { windows.RunTimers(clock.TickCount()); });
    }

    Control& Find(std::string_view name) { return form().Find(name); }
    ListBox& list() { return form().List("lstDtList"); }
    HeadlessForm& form() { return *windows.FindForm("frmIeAuto"); }
    bool Enabled(std::string_view name) { return Find(name).Enabled(); }
    Lines Records() {
        Lines lines;
        for (int i = 0; i < window.RecordCount(); ++i) lines.emplace_back(window.Record(i));
        return lines;
    }

    static constexpr const char* kScenario =
        "url\t,id=,size_bar=1.2.3.4.1,indt=page\r\ninput\t,id=a,type=text,indt=x\r\n";

    VirtualClock clock;
    ScriptedDialogs dialogs;
    HeadlessWindowSystem windows{dialogs};
    MemoryFiles files;
    PosixTextCodec codec;
    QuietProcesses processes;
    ScriptedWeb web{clock};
    ScriptedWindows browsers;
    Globals globals;
    frmIeAuto window{globals, {windows, clock, files, codec, processes, web, browsers}};
};

}  // namespace tamrin::test
