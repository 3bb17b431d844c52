// The real windows against their limits: a long scenario shown, dialogs opened and closed many
// times.
#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/edit_commands.h"
#include "app/frm_ie_auto.h"
#include "app/frm_setting.h"
#include "app/small_forms.h"
#include "platform/windows/clock.h"
#include "platform/windows/files.h"
#include "platform/windows/processes.h"
#include "platform/windows/text_codec.h"
#include "platform/windows/window_system.h"
#include "table.h"

namespace tamrin {
namespace {

constexpr int kLines = 100000;
constexpr int kOpenings = 1000;

// Nothing is played or recorded here.
class NoBrowsers : public BrowserLauncher, public BrowserWindows, public Input {
public:
    std::shared_ptr<Browser> Create(std::string& /*why*/) override { return nullptr; }
    Input& input() override { return *this; }
    std::vector<std::shared_ptr<Browser>> Visible() override { return {}; }
    std::shared_ptr<Browser> Focused() override { return nullptr; }
    std::shared_ptr<Browser> Open(const std::string& /*address*/, std::string& /*why*/) override {
        return nullptr;
    }
    ScreenPoint GetCursorPos() override { return {}; }
    void SetCursorPos(ScreenPoint /*point*/) override {}
    void LeftButton(bool /*down*/) override {}
    bool SendKeys(const std::vector<KeyStroke>& /*keys*/) override { return false; }
};

struct Desk {
    WindowsFiles files;
    WindowsTextCodec codec;
    WindowsProcesses processes;
    WindowsClock clock;
    WindowsWindowSystem windows{clock};
    NoBrowsers browsers;
    Globals globals;
    Platform platform{windows, clock, files, codec, processes, browsers, browsers};
};

std::string WriteScenario(Files& files) {
    std::string text = "url\t,id=,size_bar=0.0.800.600.11111,indt=http://127.0.0.1/\r\n";
    for (int i = 1; i < kLines; ++i) {
        // "Tokyo" in code page 932.
        text += "input\t,id=name" + std::to_string(i) + ",type=text,indt=\x93\x8C\x8B\x9E\r\n";
    }
    const std::string path = files.ProgramFolder() + "\\bench.csv";
    files.Replace(path, text);
    return path;
}

void MeasureList(Table& table, Desk& desk) {
    frmIeAuto window(desk.globals, desk.platform);
    desk.globals.close_after_play = true;  // leaves the settings on the disk alone
    window.Form_Load("");
    desk.clock.DoEvents();
    const std::string path = WriteScenario(desk.files);
    const HWND form = FindWindowW(L"frmIeAuto", nullptr);
    const double loading = BestSeconds([&] {
        window.Open(path);
        desk.clock.DoEvents();
    });
    table.Row("opening 100,000 records in the window", loading, 2, "s");
    int row = 0;
    table.Row("making the next record current, 100 times", BestSeconds([&] {
                  for (int i = 0; i < 100; ++i) {
                      window.RecordBegan(++row);
                      desk.clock.DoEvents();
                  }
              }),
              1, "s");
    const HWND list = FindWindowExW(form, nullptr, L"ListBox", nullptr);
    table.Row("scrolling down 100 pages", BestSeconds([&] {
                  for (int i = 0; i < 100; ++i) {
                      SendMessageW(list, WM_VSCROLL, SB_PAGEDOWN, 0);
                      desk.clock.DoEvents();
                  }
              }),
              1, "s");
    window.Close();
    desk.files.Delete(path);
}

struct Objects {
    double gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    double user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    double handles = 0;

    Objects() {
        DWORD count = 0;
        if (GetProcessHandleCount(GetCurrentProcess(), &count)) handles = count;
    }
};

// Opens a form many times, closing each by its close box, and counts what is left behind.
void MeasureOpenings(Table& table, Desk& desk, const std::string& name,
                     const std::function<void()>& open) {
    const auto repeat = [&](int times) {
        for (int i = 0; i < times; ++i) {
            open();
            desk.clock.DoEvents();
        }
    };
    repeat(5);
    const Objects before;
    repeat(kOpenings);
    const Objects after;
    table.Row((name + ": GDI objects lost").c_str(), after.gdi - before.gdi, 1, "");
    table.Row((name + ": windows and menus lost").c_str(), after.user - before.user, 1, "");
    table.Row((name + ": handles lost").c_str(), after.handles - before.handles, 5, "");
}

void MeasureDialogs(Table& table, Desk& desk) {
    const auto owner = desk.windows.Create(MainFormSpec());
    owner->SetVisible(true);
    // Whatever dialog stands open is closed by its close box.
    desk.clock.AddSource([] {
        for (const wchar_t* form :
             {L"frmSetting", L"frmEdit", L"frmSimpleEdit", L"frmInput", L"frmAbout"}) {
            const HWND dialog = FindWindowW(form, nullptr);
            if (dialog && IsWindowVisible(dialog)) PostMessageW(dialog, WM_CLOSE, 0, 0);
        }
    });
    MeasureOpenings(table, desk, "frmSetting",
                    [&] { frmSetting(desk.globals, desk.platform).ShowModal(*owner); });
    MeasureOpenings(table, desk, "frmEdit",
                    [&] { EditRecord(desk.windows, "input\t,id=a,type=text,indt=b", *owner); });
    MeasureOpenings(table, desk, "frmSimpleEdit",
                    [&] { EditLines(desk.windows, {"a", "b"}, *owner); });
    MeasureOpenings(table, desk, "frmInput", [&] { AskPlayCount(desk.windows, 1, *owner); });
    MeasureOpenings(table, desk, "frmAbout", [&] { ShowAbout(desk.windows, "0.1", *owner); });
    MeasureOpenings(table, desk, "frmSplash", [&] { ShowSplash(desk.windows, "0.1", *owner); });
}

}  // namespace
}  // namespace tamrin

int main() {
    tamrin::Desk desk;
    tamrin::Table table;
    tamrin::MeasureList(table, desk);
    tamrin::MeasureDialogs(table, desk);
    return table.ExitCode();
}
