#pragma once

#include <gtest/gtest.h>

#include <array>

#include "system_under_test.h"

namespace tamrin::test {

using Lines = std::vector<std::string>;

inline constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kButton, "cmdGo", "実行(&G)", "実行します。", {8, 8, 80, 26}},
    {ControlKind::kButton, "cmdOff", "不可", "", {96, 8, 80, 26}, kFixed, kDisabled},
    {ControlKind::kButton, "cmdOk", "OK", "", {304, 192, 40, 24}, kFixed, kDefault},
    {ControlKind::kButton, "cmdCancel", "取消", "", {350, 192, 40, 24}, kFixed, kCancel},
    {ControlKind::kOptionButton, {"optDisp", 0}, "なし", "", {184, 8, 60, 26}},
    {ControlKind::kOptionButton, {"optDisp", 1}, "タグ", "", {246, 8, 60, 26}},
    {ControlKind::kCheckBox, "chkCipher", "暗号化", "", {312, 8, 80, 26}},
    {ControlKind::kListBox, "lstLines", "", "", {8, 40, 384, 100}, 3, kMultiSelect},
    {ControlKind::kSplitter, "split", "", "", {8, 140, 384, 6}},
    {ControlKind::kListBox, "lstOne", "", "", {8, 146, 384, 40}, kStretchRight | kMoveBottom},
    {ControlKind::kTextBox, "txtName", "最初", "", {8, 192, 100, 22}, kMoveBottom},
    {ControlKind::kTextBox, "txtAll", "", "", {110, 192, 40, 22}, kFixed, kMultiLine},
    {ControlKind::kTextBox, "txtTab", "", "", {150, 192, 60, 22}, 0, kMultiLine | kTakesTab},
    {ControlKind::kComboBox, "cmbTime", "", "", {216, 192, 80, 24}, kMoveRight | kMoveBottom},
    {ControlKind::kLabel, "lblName", "名前", "", {312, 192, 80, 20}, kFixed, kHidden},
    {ControlKind::kTimer, "Timer1", "", "", {}, kFixed, kDisabled, 50},
});

inline constexpr auto kMenus = std::to_array<MenuSpec>({
    {"mnuFile", "ファイル(&F)", {}, kMenu},
    {"mnuSave", "保存(&S)", "Ctrl+S"},
    {"mnuLine", "-"},
    {"mnuOff", "不可", "F6", kDisabled},
    {"mnuDelete", "行削除", "Del"},
    {"mnuCopy", "コピー", "Ctrl+C"},
    {"mnuContext", "コンテキストメニュー", {}, kMenu | kHidden},
    {"mnuStop", "停止", "Shift+F5, F7"},
});

inline const FormSpec kMain{"frmMain", "題名", 400, 220, kControls, kMenus, kResizable};

// A form with all kinds of controls, in front, that notes what its controls raise.
class FormRig {
public:
    FormRig() {
        form->SetPlace({50, 50, 640, 480});
        desk.Show(*form);
        for (const ControlSpec& spec : kControls) Watch(spec.name.text, spec.name.index);
        for (const MenuSpec& spec : kMenus) Watch(spec.name, -1);
    }

    // Lets time pass and handles events.
    void Pass(std::uint32_t milliseconds) {
        const std::uint32_t start = desk.clock.TickCount();
        for (; desk.clock.TickCount() - start < milliseconds; desk.clock.Sleep(1))
            desk.clock.DoEvents();
    }

    Control& Find(std::string_view name, int index = -1) { return form->Find(name, index); }

    Desk desk;
    const std::unique_ptr<Form> form = desk.windows.Create(kMain);
    Lines events;  // "cmdGo", "optDisp1 on" (checked now), "txtName=text", "lstLines context"

private:
    void Watch(std::string_view name, int index) {
        Control& control = Find(name, index);
        const std::string label = std::string(name) + (index < 0 ? "" : std::to_string(index));
        control.onClick = [=, this, &control] {
            events.push_back(label + (control.Checked() ? " on" : ""));
        };
        control.onChange = [=, this, &control] { events.push_back(label + "=" + control.Text()); };
        control.onContext = [=, this] { events.push_back(label + " context"); };
    }
};

class FormTest : public testing::Test, public FormRig {};

}  // namespace tamrin::test
