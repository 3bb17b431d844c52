#include "platform/window_system.h"

#include "system/form_rig.h"

namespace tamrin::test {
namespace {

using WindowSystemTest = FormTest;

TEST_F(WindowSystemTest, RaisesAnEventForEachChangeWhoeverMakesIt) {
    const auto check = [this](std::string_view name) { Find(name).SetChecked(true); };
    const auto click = [this](std::string_view name) { desk.Click(*form, name); };
    const auto press = [this](std::string_view key) { desk.Press(*form, key); };
    const auto put = [this](const char* name, const char* text) { Find(name).SetText(text); };
    const std::pair<std::function<void()>, Lines> steps[] = {
        {[&] { check("chkCipher"); }, {"chkCipher on"}},
        {[&] { check("chkCipher"); }, {}},
        {[&] { click("chkCipher"); }, {"chkCipher"}},
        {[&] { click("cmdGo"); }, {"cmdGo"}},
        {[&] { click("cmdOff"); }, {}},
        {[&] { desk.Click(*form, "optDisp", 1); }, {"optDisp1 on"}},
        {[&] { Find("optDisp", 0).SetChecked(true); }, {"optDisp0 on"}},
        {[&] { put("txtName", "値　①"); }, {"txtName=値　①"}},
        {[&] { put("txtName", "値　①"); }, {}},
        {[&] { put("cmbTime", "終"); }, {"cmbTime=終"}},
        {[&] { form->Combo("cmbTime").SetItems({"3", "5"}); }, {}},
        {[&] { check("mnuSave"); }, {}},
        {[&] { press("F7"); }, {"mnuStop"}},
        {[&] { put("mnuSave", "上書き(&S)"); }, {}},
        {[&] { Find("mnuSave").SetVisible(false); }, {}},
        {[&] { press("Ctrl+S"); }, {"mnuSave on"}},
        {[&] { Find("mnuOff").SetEnabled(true); }, {}},
        {[&] { press("F6"); }, {"mnuOff"}},
    };
    for (const auto& step : steps) {
        events.clear();
        step.first();
        Pass(1);
        EXPECT_EQ(events, step.second) << "step " << &step - steps;
    }
    EXPECT_TRUE(Find("optDisp", 0).Checked() && !Find("optDisp", 1).Checked());
    EXPECT_TRUE(Find("cmdOff").Visible() && !Find("lblName").Visible());
    EXPECT_EQ(form->Caption() + Find("cmbTime").Text() + Find("mnuSave").Text(),
              "題名終上書き(&S)");
    EXPECT_EQ(form->Combo("cmbTime").Items(), (Lines{"3", "5"}));
}

TEST_F(WindowSystemTest, KeepsSelectionAndCurrentLineWhileAListChanges) {
    ListBox* list = &form->List("lstLines");
    // The lines, "*" before the selected ones and ">" before the current one; then the clicks.
    const std::pair<std::function<void()>, const char*> steps[] = {
        {[&] { list->SetLines({"a", "b", "c"}); }, "a b c "},
        {[&] { list->SetListIndex(1); }, "a >*b c lstLines"},
        {[&] { list->SetListIndex(1); }, "a >*b c "},
        {[&] { list->SetListIndex(3); }, "a >*b c "},
        {[&] { list->Insert(1, "行\t"); }, "a 行\t >*b c "},
        {[&] { list->Insert(4, "z"); }, "a 行\t >*b c z "},
        {[&] { list->Insert(6, "?"); }, "a 行\t >*b c z "},
        {[&] { list->Remove(0); }, "行\t >*b c z "},
        {[&] { list->SetLine(1, "B"); }, "行\t >*B c z "},
        {[&] { list->Select(3, true); }, "行\t >*B c *z "},
        {[&] { list->Select(1, false); }, "行\t >B c *z "},
        {[&] { list->SelectRange(2, 9); }, "行\t >B *c *z "},
        {[&] { list->Remove(1); }, "行\t *c *z "},
        {[&] { list->SetListIndex(0); }, ">*行\t c z lstLines"},
        {[&] { list->SetListIndex(-1); }, "行\t c z lstLines"},
        {[&] { (list = &form->List("lstOne"))->SetLines({"a", "b"}); }, "a b "},
        {[&] { list->SetListIndex(0); }, ">*a b lstOne"},
        {[&] { list->SetLines({"c"}); }, "c "},
    };
    for (const auto& step : steps) {
        events.assign(1, "");
        step.first();
        std::string shown;
        for (int i = 0; i < list->Count(); ++i) {
            shown += i == list->ListIndex() ? ">" : "";
            shown.append(list->Selected(i) ? "*" : "").append(list->Line(i)).append(" ");
        }
        EXPECT_EQ(shown + events.back(), step.second) << "step " << &step - steps;
        EXPECT_EQ(std::string(list->Line(-1)).append(list->Line(list->Count())), "");
    }
}

TEST_F(WindowSystemTest, CanBeClosedByATimerDuringAWaitInItsOwnEvent) {
    Find("Timer1").onTimer = [&] {
        events.emplace_back("begin");
        Pass(120);  // the next tick waits until this one has ended
        events.emplace_back("end");
        if (events.size() == 4) form->Close();
    };
    Find("cmdGo").onClick = [&] {
        Pass(100);
        EXPECT_EQ(events, Lines{});
        Find("Timer1").SetEnabled(true);
        for (int i = 0; i < 100 && form->Visible(); ++i) Pass(50);
        Pass(100);
        Find("txtName").SetText("後");
    };
    desk.Click(*form, "cmdGo");
    EXPECT_EQ(events, (Lines{"begin", "end", "begin", "end", "txtName=後"}));
    EXPECT_FALSE(form->Visible());
}

}  // namespace
}  // namespace tamrin::test
