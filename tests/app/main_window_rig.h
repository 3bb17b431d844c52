#pragma once

#include <gtest/gtest.h>

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
#include "support/scripted_user.h"
#include "support/virtual_clock.h"

namespace tamrin::test {

using Lines = std::vector<std::string>;

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
    NoProcesses processes;
    ScriptedWeb web{clock};
    ScriptedWindows browsers;
    Globals globals;
    frmIeAuto window{globals, {windows, clock, files, codec, processes, web, browsers}};
};

}  // namespace tamrin::test
