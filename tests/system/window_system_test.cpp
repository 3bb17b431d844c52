#include "platform/window_system.h"

#include <algorithm>
#include <random>
#include <stdexcept>

#include "system/form_rig.h"

namespace tamrin::test {
namespace {

using WindowSystemTest = FormTest;

TEST_F(WindowSystemTest, MakesAFormAsItsTablesSay) {
    Lines controls;
    for (const char* name : {"cmdGo", "cmdOff", "lblName", "mnuSave", "mnuOff", "Timer1"}) {
        const Control& control = Find(name);
        controls.push_back(control.Text() + (control.Enabled() ? "" : " off") +
                           (control.Visible() ? "" : " hidden"));
    }
    EXPECT_EQ(controls,
              (Lines{"実行(&G)", "不可 off", "名前 hidden", "保存(&S)", "不可 off", " off"}));
    EXPECT_EQ(Find("optDisp", 1).Text(), "タグ");
    EXPECT_EQ(form->Caption(), "題名");
    EXPECT_THROW(Find("cmdNone"), std::logic_error);
    EXPECT_THROW(Find("optDisp"), std::logic_error);
    EXPECT_THROW(form->List("cmdGo"), std::logic_error);
}

TEST_F(WindowSystemTest, RaisesAChangeOnlyWhenATextChanges) {
    for (const char* name : {"txtName", "cmbTime"}) {
        Find(name).onChange = [this, name] { events.push_back(Find(name).Text()); };
        for (const char* text : {"値　①", "値　①", "", "終"}) Find(name).SetText(text);
    }
    form->Combo("cmbTime").SetItems({"3", "5", "7"});
    desk->Pass(20);
    EXPECT_EQ(events, (Lines{"値　①", "", "終", "値　①", "", "終"}));
    EXPECT_EQ(form->Combo("cmbTime").Items(), (Lines{"3", "5", "7"}));
    EXPECT_EQ(Find("cmbTime").Text(), "終");
}

TEST_F(WindowSystemTest, RaisesAClickOncePerChangeWhoeverMakesIt) {
    for (const int option : {0, 1}) Find("optDisp", option).onClick = Noting(option ? "1" : "0");
    Find("chkCipher").SetChecked(true);
    Find("chkCipher").SetChecked(true);
    for (const char* name : {"chkCipher", "cmdGo", "cmdOff"}) desk->Click(*form, name);
    EXPECT_FALSE(Find("chkCipher").Checked());
    EXPECT_EQ(events, (Lines{"chkCipher", "chkCipher", "cmdGo"}));

    events.clear();
    desk->Click(*form, "optDisp", 1);
    desk->Click(*form, "optDisp", 1);
    Find("optDisp", 0).SetChecked(true);
    EXPECT_FALSE(Find("optDisp", 1).Checked());
    desk->Click(*form, "optDisp", 1);
    EXPECT_TRUE(Find("optDisp", 1).Checked());
    EXPECT_FALSE(Find("optDisp", 0).Checked());
    EXPECT_EQ(events, (Lines{"1", "0", "1"}));
}

TEST_F(WindowSystemTest, CarriesOutTheMenu) {
    Find("mnuSave").SetChecked(true);
    EXPECT_TRUE(Find("mnuSave").Checked());
    for (const char* key : {"Ctrl+S", "F6", "Shift+F5", "F7"}) desk->Press(*form, key);
    desk->Click(*form, "mnuSave");
    Find("mnuSave").SetText("上書き(&S)");
    EXPECT_EQ(Find("mnuSave").Text(), "上書き(&S)");
    Find("mnuSave").SetVisible(false);
    Find("mnuOff").SetEnabled(true);
    for (const char* key : {"F6", "Ctrl+S"}) desk->Press(*form, key);
    EXPECT_EQ(events, (Lines{"mnuSave", "mnuStop", "mnuStop", "mnuSave", "mnuOff", "mnuSave"}));
}

// A list of lines as the interface describes it.
struct ListModel {
    struct Row {
        std::string text;
        bool selected = false;
        bool current = false;
        bool operator==(const Row&) const = default;
    };
    std::vector<Row> rows;

    Row* At(int i) { return i >= 0 && i < std::ssize(rows) ? &rows[i] : nullptr; }
    void Insert(int i, const std::string& text) {
        if (i >= 0 && i <= std::ssize(rows)) rows.insert(rows.begin() + i, {text});
    }
    void Remove(int i) {
        if (At(i)) rows.erase(rows.begin() + i);
    }
    void SetListIndex(int i) {
        if (i != -1 && !At(i)) return;
        for (Row& row : rows) row.selected = row.current = false;
        if (At(i)) rows[i].selected = rows[i].current = true;
    }
};

std::vector<ListModel::Row> RowsOf(const ListBox& list) {
    std::vector<ListModel::Row> rows;
    for (int i = 0; i < list.Count(); ++i) {
        rows.push_back({std::string(list.Line(i)), list.Selected(i), i == list.ListIndex()});
    }
    return rows;
}

TEST_F(WindowSystemTest, KeepsLinesSelectionAndCurrentLineThroughRandomChanges) {
    ListBox& list = form->List("lstLines");
    ListModel model;
    std::mt19937 random(1);
    for (int step = 0; step < 300; ++step) {
        const int i = static_cast<int>(random() % (model.rows.size() + 3)) - 1;
        const std::string text = "行\t" + std::to_string(step);
        const unsigned change = random() % 7;
        if (change < 2) {
            list.Insert(i, text);
            model.Insert(i, text);
        } else if (change == 2) {
            list.Remove(i);
            model.Remove(i);
        } else if (change == 3) {
            list.SetLine(i, text);
            if (auto* const row = model.At(i)) row->text = text;
        } else if (change == 4) {
            list.SetListIndex(i);
            model.SetListIndex(i);
        } else if (change == 5) {
            list.Select(i, step % 3 > 0);
            if (auto* const row = model.At(i)) row->selected = step % 3 > 0;
        } else if (i >= 0) {
            list.SelectRange(i, 3);
            for (int k = i; model.At(k) && k < i + 3; ++k) model.rows[k].selected = true;
        }
        ASSERT_TRUE(RowsOf(list) == model.rows) << "step " << step;
    }
    list.SetLines({"a", "b"});
    EXPECT_EQ(RowsOf(list), (std::vector<ListModel::Row>{{"a"}, {"b"}}));
    EXPECT_EQ(list.ListIndex(), -1);
}

TEST_F(WindowSystemTest, RaisesAClickWhenTheCurrentLineMoves) {
    for (const char* name : {"lstLines", "lstOne"}) {
        ListBox& list = form->List(name);
        list.SetLines({"a", "b", "c"});
        std::vector<int> current;
        list.onClick = [&] { current.push_back(list.ListIndex()); };
        for (const int position : {1, 1, 3, 2, -1}) list.SetListIndex(position);
        EXPECT_EQ(current, (std::vector<int>{1, 2, -1})) << name;
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
    const struct {
        const char* name;
        std::array<int, 4> grown;
    } rows[] = {{"cmdGo", {0, 0, 0, 0}},
                {"lstLines", {0, 0, 40, 30}},
                {"lstOne", {0, 30, 40, 0}},
                {"txtName", {0, 30, 0, 0}},
                {"cmbTime", {40, 30, 0, 0}}};
    const auto resize = [&](int wider, int taller) {
        Place place = form->GetPlace();
        place.width += wider;
        place.height += taller;
        form->SetPlace(place);
    };
    for (const auto& row : rows) {
        std::array<int, 4> expected = place_of(row.name);
        for (std::size_t k = 0; k < 4; ++k) expected[k] += row.grown[k];
        resize(40, 30);
        EXPECT_EQ(place_of(row.name), expected) << row.name;
        resize(-40, -30);
    }
    Find("cmbTime").SetPlace({50, 20, 90, 24});
    resize(-40, 0);
    EXPECT_EQ(place_of("cmbTime"), (std::array{10, 20, 90, 24}));
}

TEST_F(WindowSystemTest, NeverNestsATimerInItself) {
    Find("Timer1").onTimer = [&] {
        events.emplace_back("begin");
        desk->Pass(120);
        events.emplace_back("end");
    };
    desk->Pass(100);
    EXPECT_EQ(events, Lines{});
    Find("Timer1").SetEnabled(true);
    desk->Pass(300);
    Find("Timer1").SetEnabled(false);
    EXPECT_GE(events.size(), 4U);
    for (std::size_t i = 0; i < events.size(); ++i) EXPECT_EQ(events[i], i % 2 ? "end" : "begin");
    events.clear();
    desk->Pass(100);
    EXPECT_EQ(events, Lines{});
}

TEST_F(WindowSystemTest, ClosesOnceAndOnlyWhenItMay) {
    bool may = false;
    form->onQueryUnload = [&] { return may; };
    form->onUnload = Noting("unload");
    EXPECT_FALSE(form->Close());
    EXPECT_TRUE(form->Visible());
    may = true;
    EXPECT_TRUE(form->Close());
    EXPECT_TRUE(form->Close());
    EXPECT_FALSE(form->Visible());
    EXPECT_EQ(events, Lines{"unload"});
}

TEST_F(WindowSystemTest, CanBeClosedDuringAWaitInItsOwnEvent) {
    Find("cmdGo").onClick = [&] {
        Find("Timer1").SetEnabled(true);
        desk->Pass(100);
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
    const auto dialog =
        desk->windows().Create({"frmDialog", "入力", 200, 74, std::span(kControls).last(4)});
    dialog->onUnload = Noting("unload");
    desk->WhenModal(*dialog, [&] {
        events.emplace_back(dialog->Visible() ? "modal" : "");
        dialog->Close();
    });
    dialog->ShowModal(*form);
    EXPECT_FALSE(dialog->Visible());
    EXPECT_TRUE(form->Visible());
    desk->Click(*form, "cmdGo");
    EXPECT_EQ(events, (Lines{"modal", "unload", "cmdGo"}));
}

TEST_F(WindowSystemTest, KeepsTextsOnTheClipboard) {
    for (const char* text : {"行\t,id=①\r\n髙😀", "x"}) {
        EXPECT_TRUE(desk->windows().SetClipboardText(text));
        EXPECT_EQ(desk->windows().ClipboardText(), text);
    }
}

}  // namespace
}  // namespace tamrin::test
