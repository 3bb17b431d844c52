#include "platform/window_system.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <stdexcept>

#include "system/system_under_test.h"

namespace tamrin::test {
namespace {

using Lines = std::vector<std::string>;

constexpr auto kControls = std::to_array<ControlSpec>({
    {ControlKind::kButton, "cmdGo", -1, "実行(&G)", "実行します。", {8, 8, 80, 26}},
    {ControlKind::kButton, "cmdOff", -1, "不可", "", {96, 8, 80, 26}, kFixed, kDisabled},
    {ControlKind::kOptionButton, "optDisp", 0, "なし", "", {184, 8, 60, 26}},
    {ControlKind::kOptionButton, "optDisp", 1, "タグ", "", {246, 8, 60, 26}},
    {ControlKind::kCheckBox, "chkCipher", -1, "暗号化", "", {312, 8, 80, 26}},
    {ControlKind::kListBox,
     "lstLines",
     -1,
     "",
     "",
     {8, 40, 384, 100},
     kStretchRight | kStretchBottom,
     kMultiSelect},
    {ControlKind::kListBox, "lstOne", -1, "", "", {8, 146, 384, 40}, kStretchRight | kMoveBottom},
    {ControlKind::kTextBox, "txtName", -1, "最初", "", {8, 192, 200, 22}, kMoveBottom},
    {ControlKind::kComboBox, "cmbTime", -1, "", "", {216, 192, 80, 24}, kMoveRight | kMoveBottom},
    {ControlKind::kLabel, "lblName", -1, "名前", "", {312, 192, 80, 20}, kFixed, kHidden},
    {ControlKind::kTimer, "Timer1", -1, "", "", {}, kFixed, kDisabled, 50},
});

constexpr auto kMenus = std::to_array<MenuSpec>({
    {0, "mnuFile", "ファイル(&F)"},
    {1, "mnuSave", "保存(&S)", "Ctrl+S"},
    {1, "mnuLine", "-"},
    {1, "mnuOff", "不可", "F6", kDisabled},
    {0, "mnuContext", "コンテキストメニュー", "", kHidden},
    {1, "mnuStop", "停止", "Shift+F5, F7"},
});

const FormSpec kMain{"frmMain", "題名", 400, 220, kControls, kMenus, kResizable};

constexpr auto kDialogControls = std::to_array<ControlSpec>({
    {ControlKind::kTextBox, "txtValue", -1, "", "", {8, 8, 120, 22}},
    {ControlKind::kButton, "cmdOk", -1, "OK", "", {8, 40, 80, 26}, kFixed, kDefault},
    {ControlKind::kButton, "cmdCancel", -1, "キャンセル", "", {96, 40, 80, 26}, kFixed, kCancel},
});

const FormSpec kDialog{"frmDialog", "入力", 200, 74, kDialogControls};

class WindowSystemTest : public testing::Test {
protected:
    void SetUp() override {
        form->SetPlace({100, 100, 640, 480});
        form->SetVisible(true);
        desk->Pass(50);
    }

    Control& Find(std::string_view name, int index = -1) { return form->Find(name, index); }

    // Counts the events of one kind in `count`.
    static std::function<void()> Counting(int& count) {
        return [&count] { ++count; };
    }

    const std::unique_ptr<Desk> desk = MakeDesk();
    const std::unique_ptr<Form> form = desk->windows().Create(kMain);
};

TEST_F(WindowSystemTest, MakesAFormAsItsTablesSay) {
    EXPECT_EQ(form->Caption(), "題名");
    EXPECT_EQ(Find("cmdGo").Text(), "実行(&G)");
    EXPECT_TRUE(Find("cmdGo").Enabled());
    EXPECT_FALSE(Find("cmdOff").Enabled());
    EXPECT_FALSE(Find("lblName").Visible());
    EXPECT_EQ(Find("optDisp", 1).Text(), "タグ");
    EXPECT_EQ(Find("mnuSave").Text(), "保存(&S)");
    EXPECT_FALSE(Find("mnuOff").Enabled());
    EXPECT_FALSE(Find("Timer1").Enabled());
    EXPECT_EQ(form->List("lstLines").Count(), 0);
    EXPECT_THROW(Find("cmdNone"), std::logic_error);
    EXPECT_THROW(Find("optDisp"), std::logic_error);
    EXPECT_THROW(form->List("cmdGo"), std::logic_error);
}

TEST_F(WindowSystemTest, TellsOfATextOnlyWhenItChanges) {
    for (const char* name : {"txtName", "cmbTime"}) {
        int changes = 0;
        Find(name).onChange = Counting(changes);
        for (const char* text : {"値　①", "値　①", "", "終"}) {
            Find(name).SetText(text);
            EXPECT_EQ(Find(name).Text(), text);
        }
        desk->Pass(20);
        EXPECT_EQ(changes, 3) << name;
    }
}

TEST_F(WindowSystemTest, KeepsTheTextOfAComboBoxWhenItsItemsChange) {
    ComboBox& combo = form->Combo("cmbTime");
    combo.SetText("10");
    combo.SetItems({"3", "5", "7"});
    EXPECT_EQ(combo.Items(), (Lines{"3", "5", "7"}));
    EXPECT_EQ(combo.Text(), "10");
}

TEST_F(WindowSystemTest, TellsOfAClickOnceWhoeverDidIt) {
    int clicks = 0;
    Find("chkCipher").onClick = Counting(clicks);
    Find("chkCipher").SetChecked(true);
    Find("chkCipher").SetChecked(true);
    EXPECT_EQ(clicks, 1);
    desk->Click(*form, "chkCipher");
    EXPECT_FALSE(Find("chkCipher").Checked());
    EXPECT_EQ(clicks, 2);

    Find("cmdGo").onClick = Counting(clicks);
    desk->Click(*form, "cmdGo");
    EXPECT_EQ(clicks, 3);
    Find("cmdOff").onClick = Counting(clicks);
    desk->Click(*form, "cmdOff");
    EXPECT_EQ(clicks, 3);
}

TEST_F(WindowSystemTest, LetsOneOptionOfAnArrayBeChosen) {
    Lines events;
    Find("optDisp", 0).onClick = [&] { events.emplace_back("0"); };
    Find("optDisp", 1).onClick = [&] { events.emplace_back("1"); };
    desk->Click(*form, "optDisp", 1);
    EXPECT_TRUE(Find("optDisp", 1).Checked());
    desk->Click(*form, "optDisp", 1);
    Find("optDisp", 0).SetChecked(true);
    EXPECT_FALSE(Find("optDisp", 1).Checked());
    desk->Click(*form, "optDisp", 1);
    EXPECT_FALSE(Find("optDisp", 0).Checked());
    EXPECT_EQ(events, (Lines{"1", "0", "1"}));
}

TEST_F(WindowSystemTest, CarriesOutTheMenu) {
    Lines events;
    for (const char* name : {"mnuSave", "mnuOff", "mnuStop"}) {
        Find(name).onClick = [&events, name] { events.emplace_back(name); };
    }
    Find("mnuSave").SetChecked(true);
    EXPECT_TRUE(Find("mnuSave").Checked());
    EXPECT_EQ(events, Lines{});
    for (const char* key : {"Ctrl+S", "F6", "Shift+F5", "F7"}) desk->Press(*form, key);
    desk->Click(*form, "mnuSave");
    EXPECT_EQ(events, (Lines{"mnuSave", "mnuStop", "mnuStop", "mnuSave"}));

    Find("mnuSave").SetText("上書き(&S)");
    Find("mnuSave").SetVisible(false);
    Find("mnuOff").SetEnabled(true);
    desk->Press(*form, "F6");
    desk->Press(*form, "Ctrl+S");
    EXPECT_EQ(Find("mnuSave").Text(), "上書き(&S)");
    EXPECT_EQ((Lines{events.end() - 2, events.end()}), (Lines{"mnuOff", "mnuSave"}));
}

// A list of lines as the interface describes it.
struct ListModel {
    Lines lines;
    std::vector<bool> selected;
    int current = -1;

    bool Has(int position) const {
        return position >= 0 && position < static_cast<int>(lines.size());
    }
    void Insert(int position, const std::string& text) {
        if (position < 0 || position > static_cast<int>(lines.size())) return;
        lines.insert(lines.begin() + position, text);
        selected.insert(selected.begin() + position, false);
        if (current >= position) ++current;
    }
    void Remove(int position) {
        if (!Has(position)) return;
        lines.erase(lines.begin() + position);
        selected.erase(selected.begin() + position);
        if (current == position) current = -1;
        if (current > position) --current;
    }
    void SetListIndex(int position) {
        if (position != -1 && !Has(position)) return;
        selected.assign(lines.size(), false);
        current = position;
        if (Has(position)) selected[position] = true;
    }
};

void ExpectSame(const ListBox& list, const ListModel& model, int step) {
    Lines lines;
    std::vector<bool> selected;
    for (int i = 0; i < list.Count(); ++i) {
        lines.emplace_back(list.Line(i));
        selected.push_back(list.Selected(i));
    }
    ASSERT_EQ(lines, model.lines) << "step " << step;
    ASSERT_EQ(selected, model.selected) << "step " << step;
    ASSERT_EQ(list.ListIndex(), model.current) << "step " << step;
}

TEST_F(WindowSystemTest, KeepsLinesSelectionAndCurrentLineThroughRandomChanges) {
    ListBox& list = form->List("lstLines");
    ListModel model;
    std::mt19937 random(1);
    for (int step = 0; step < 300; ++step) {
        const int position = static_cast<int>(random() % (model.lines.size() + 3)) - 1;
        const std::string text = "行\t" + std::to_string(step);
        switch (random() % 7) {
            case 0:
            case 1:
                list.Insert(position, text);
                model.Insert(position, text);
                break;
            case 2:
                list.Remove(position);
                model.Remove(position);
                break;
            case 3:
                list.SetLine(position, text);
                if (model.Has(position)) model.lines[position] = text;
                break;
            case 4:
                list.SetListIndex(position);
                model.SetListIndex(position);
                break;
            case 5:
                if (position < 0) break;
                list.SelectRange(position, 3);
                for (int i = position; i < position + 3; ++i) {
                    if (model.Has(i)) model.selected[i] = true;
                }
                break;
            default:
                list.Select(position, step % 3 > 0);
                if (model.Has(position)) model.selected[position] = step % 3 > 0;
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame(list, model, step));
    }
    list.SetLines({"a", "b"});
    ExpectSame(list, {{"a", "b"}, {false, false}, -1}, 300);
}

TEST_F(WindowSystemTest, TellsOfACurrentLineThatMoves) {
    for (const char* name : {"lstLines", "lstOne"}) {
        ListBox& list = form->List(name);
        list.SetLines({"a", "b", "c"});
        std::vector<int> events;
        list.onClick = [&] { events.push_back(list.ListIndex()); };
        for (const int position : {1, 1, 3, 2, -1}) list.SetListIndex(position);
        EXPECT_EQ(events, (std::vector<int>{1, 2, -1})) << name;
        EXPECT_FALSE(list.Selected(2));
        EXPECT_EQ(list.Line(3), "");
        EXPECT_EQ(list.Line(-1), "");
    }
}

TEST_F(WindowSystemTest, LetsControlsFollowTheForm) {
    const auto place_of = [&](std::string_view name) {
        const Place place = Find(name).GetPlace();
        return std::array{place.left, place.top, place.width, place.height};
    };
    const std::array names{"cmdGo", "lstLines", "lstOne", "txtName", "cmbTime"};
    std::vector<std::array<int, 4>> expected;
    for (const char* name : names) expected.push_back(place_of(name));
    const std::array<std::array<int, 4>, 5> grown{
        {{0, 0, 0, 0}, {0, 0, 40, 30}, {0, 30, 40, 0}, {0, 30, 0, 0}, {40, 30, 0, 0}}};

    Place place = form->GetPlace();
    place.width += 40;
    place.height += 30;
    form->SetPlace(place);
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t k = 0; k < 4; ++k) expected[i][k] += grown[i][k];
        EXPECT_EQ(place_of(names[i]), expected[i]) << names[i];
    }

    Find("cmbTime").SetPlace({10, 20, 90, 24});
    place.width -= 40;
    form->SetPlace(place);
    EXPECT_EQ(place_of("cmbTime"), (std::array{-30, 20, 90, 24}));
}

TEST_F(WindowSystemTest, NeverNestsATimerInItself) {
    int depth = 0;
    int deepest = 0;
    int ticks = 0;
    Find("Timer1").onTimer = [&] {
        deepest = std::max(deepest, ++depth);
        ++ticks;
        desk->Pass(200);
        --depth;
    };
    desk->Pass(200);
    EXPECT_EQ(ticks, 0);
    Find("Timer1").SetEnabled(true);
    desk->Pass(700);
    Find("Timer1").SetEnabled(false);
    EXPECT_GE(ticks, 2);
    EXPECT_EQ(deepest, 1);
    const int before = ticks;
    desk->Pass(200);
    EXPECT_EQ(ticks, before);
}

TEST_F(WindowSystemTest, ClosesOnceAndOnlyWhenItMay) {
    int unloads = 0;
    bool may = false;
    form->onQueryUnload = [&] { return may; };
    form->onUnload = Counting(unloads);
    EXPECT_FALSE(form->Close());
    EXPECT_TRUE(form->Visible());
    may = true;
    EXPECT_TRUE(form->Close());
    EXPECT_TRUE(form->Close());
    EXPECT_FALSE(form->Visible());
    EXPECT_EQ(unloads, 1);
}

TEST_F(WindowSystemTest, CanBeClosedDuringAWaitInItsOwnEvent) {
    Find("cmdGo").onClick = [&] {
        Find("Timer1").SetEnabled(true);
        desk->Pass(200);
        Find("txtName").SetText("後");
        form->List("lstLines").SetLines({"x"});
    };
    Find("Timer1").onTimer = [&] { form->Close(); };
    desk->Click(*form, "cmdGo");
    EXPECT_FALSE(form->Visible());
    EXPECT_EQ(Find("txtName").Text(), "後");
    EXPECT_EQ(form->List("lstLines").Count(), 1);
}

TEST_F(WindowSystemTest, ShowsAModalFormUntilItIsClosed) {
    const auto dialog = desk->windows().Create(kDialog);
    Lines events;
    dialog->Find("cmdOk").onClick = [&] {
        events.push_back("ok " + dialog->Find("txtValue").Text());
        dialog->Close();
    };
    dialog->onUnload = [&] { events.emplace_back("unload"); };
    desk->WhenModal(*dialog, [&] {
        EXPECT_TRUE(dialog->Visible());
        dialog->Find("txtValue").SetText("3");
        desk->Click(*dialog, "cmdOk");
    });
    dialog->ShowModal(*form);
    EXPECT_EQ(events, (Lines{"ok 3", "unload"}));
    EXPECT_FALSE(dialog->Visible());
    EXPECT_TRUE(form->Visible());

    int clicks = 0;
    Find("cmdGo").onClick = Counting(clicks);
    desk->Click(*form, "cmdGo");
    EXPECT_EQ(clicks, 1) << "the form takes input again";
}

TEST_F(WindowSystemTest, KeepsTextsOnTheClipboard) {
    for (const char* text : {"行\t,id=①\r\n髙😀", "x"}) {
        EXPECT_TRUE(desk->windows().SetClipboardText(text));
        EXPECT_EQ(desk->windows().ClipboardText(), text);
    }
}

}  // namespace
}  // namespace tamrin::test
