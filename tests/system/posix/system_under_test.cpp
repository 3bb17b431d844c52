#include "system/system_under_test.h"

#include "platform/headless/console_dialogs.h"
#include "platform/headless/headless_window_system.h"
#include "platform/posix/files.h"
#include "platform/posix/processes.h"
#include "platform/posix/text_codec.h"
#include "support/virtual_clock.h"

#include <iostream>

namespace tamrin::test {
namespace {

class HeadlessDesk : public Desk {
public:
    HeadlessDesk() {
        clock_.AddSource([this] { windows_.RunTimers(clock_.TickCount()); });
    }

    WindowSystem& windows() override { return windows_; }
    Clock& clock() override { return clock_; }

    void Show(Form& form) override { form.SetVisible(true); }

    void Pass(int milliseconds) override {
        for (int passed = 0; passed < milliseconds; passed += 10) {
            clock_.Sleep(10);
            clock_.DoEvents();
        }
    }

    void Click(Form& form, std::string_view name, int index) override {
        static_cast<HeadlessForm&>(form).Click(name, index);
    }

    void Press(Form& form, std::string_view key) override {
        static_cast<HeadlessForm&>(form).Press(key);
    }

    void WhenModal(Form& /*form*/, std::function<void()> act) override {
        windows_.onModal = [act = std::move(act)](HeadlessForm& /*form*/) { act(); };
    }

private:
    VirtualClock clock_;
    ConsoleDialogs dialogs_{std::cerr};
    HeadlessWindowSystem windows_{dialogs_};
};

}  // namespace

std::unique_ptr<TextCodec> MakeTextCodec() { return std::make_unique<PosixTextCodec>(); }
std::unique_ptr<Files> MakeFiles() { return std::make_unique<PosixFiles>(); }
std::unique_ptr<Processes> MakeProcesses() { return std::make_unique<PosixProcesses>(); }
std::unique_ptr<Desk> MakeDesk() { return std::make_unique<HeadlessDesk>(); }

}  // namespace tamrin::test
