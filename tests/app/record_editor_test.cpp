#include "app/record_editor.h"

#include <gtest/gtest.h>

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

class EditorTest : public MainWindowTest {
protected:
    EditorTest() { window.Form_Load(""); }

    void Start(Lines lines, int current) {
        list().SetLines(std::move(lines));
        list().SetListIndex(current);
        globals.unsaved = false;
    }
    std::vector<int> Selection() {
        std::vector<int> selection;
        for (int i = 0; i < list().Count(); ++i) {
            if (list().Selected(i)) selection.push_back(i);
        }
        return selection;
    }
    using Ints = std::vector<int>;
};

TEST_F(EditorTest, AddsAnEmptyLineThatIsCurrent) {
    struct Row {
        Lines before;
        int current;
        const char* command;
        Lines after;
        int now_current;
    };
    const Row rows[] = {
        {{"a", "b"}, 1, "mnuAddUpper", {"a", "", "b"}, 1},
        {{"a", "b"}, 0, "mnuAddUpper", {"", "a", "b"}, 0},
        {{"a", "b"}, -1, "mnuAddUpper", {"", "a", "b"}, 0},
        {{}, -1, "mnuAddUpper", {""}, 0},
        {{"a", "b"}, 1, "mnuAddUnder", {"a", "b", ""}, 2},
        {{"a", "b"}, 0, "mnuAddUnder", {"a", "", "b"}, 1},
        {{"a", "b"}, -1, "mnuAddUnder", {"", "a", "b"}, 0},
        {{}, -1, "mnuAddUnder", {""}, 0},
    };
    for (const Row& row : rows) {
        Start(row.before, row.current);
        form().Click(row.command);
        EXPECT_EQ(Records(), row.after) << row.command << row.current;
        EXPECT_EQ(list().ListIndex(), row.now_current) << row.command << row.current;
        EXPECT_EQ(Selection(), Ints{row.now_current}) << row.command << row.current;
        EXPECT_TRUE(globals.unsaved);
        EXPECT_TRUE(Enabled("cmdPlay"));
    }
}

TEST_F(EditorTest, DeletesTheSelectedLines) {
    struct Row {
        Ints selected;
        Lines after;
        int now_current;
    };
    const Row rows[] = {
        {{2, 5}, {"0", "1", "3", "4", "6"}, 1},
        {{0, 1}, {"2", "3", "4", "5", "6"}, -1},
        {{6}, {"0", "1", "2", "3", "4", "5"}, 5},
        {{0, 1, 2, 3, 4, 5, 6}, {}, -1},
    };
    for (const Row& row : rows) {
        Start({"0", "1", "2", "3", "4", "5", "6"}, -1);
        for (const int i : row.selected) list().Select(i, true);
        form().Press("Del");
        EXPECT_EQ(Records(), row.after);
        EXPECT_EQ(list().ListIndex(), row.now_current);
        EXPECT_EQ(Selection(), row.now_current < 0 ? Ints{} : Ints{row.now_current});
        EXPECT_TRUE(globals.unsaved);
        EXPECT_EQ(Enabled("cmdPlay"), !row.after.empty());
    }
    Start({"a"}, -1);
    form().Click("mnuDelLine");
    EXPECT_FALSE(globals.unsaved) << "nothing was selected";
}

TEST_F(EditorTest, CopiesTheSelectedLines) {
    Start({"a", "b", "c"}, -1);
    windows.SetClipboardText("before");
    form().Press("Ctrl+C");
    EXPECT_EQ(windows.ClipboardText(), "before");
    list().Select(0, true);
    list().Select(2, true);
    dialogs.answers = {Answer::kOk};
    form().Press("Ctrl+C");
    EXPECT_EQ(windows.ClipboardText(), "a\r\nc");
    EXPECT_EQ(dialogs.shown, Lines{"Tamrin|クリップボードにコピーしました。"});
    EXPECT_FALSE(globals.unsaved);
}

TEST_F(EditorTest, PastesOverTheLinesFromTheCurrentOneDown) {
    struct Row {
        Lines before;
        int current;
        const char* clipboard;
        Lines after;
        Ints selected;
    };
    const Row rows[] = {
        {{"0", "1", "2", "3", "4"},
         4,
         "a\r\nb\r\nc",
         {"0", "1", "2", "3", "a", "b", "c"},
         {4, 5, 6}},
        {{"0", "1", "2"}, 0, "a\r\nb", {"a", "b", "2"}, {0, 1}},
        {{"0", "1", "2"}, 0, "a\r\n", {"a", "", "2"}, {0, 1}},
        {{"0"}, 0, "a\r\n", {"a", ""}, {0, 1}},
        {{"0", "1"}, -1, "a", {"a", "1"}, {0}},
        {{}, -1, "a\nb", {"a", "b"}, {0, 1}},
    };
    for (const Row& row : rows) {
        Start(row.before, row.current);
        windows.SetClipboardText(row.clipboard);
        dialogs.answers = {Answer::kOk};
        form().Click("mnuContextPaste");
        EXPECT_EQ(Records(), row.after) << row.clipboard;
        EXPECT_EQ(Selection(), row.selected) << row.clipboard;
        EXPECT_EQ(dialogs.shown.back(), "Tamrin|貼り付け完了！");
        EXPECT_TRUE(globals.unsaved);
        EXPECT_TRUE(Enabled("cmdPlay"));
    }
    windows.SetClipboardText("");
    dialogs.answers = {Answer::kOk};
    form().Press("Ctrl+V");
    EXPECT_EQ(dialogs.shown.back(), "Tamrin|貼り付けデータ無し！");
}

TEST_F(EditorTest, UndoGoesBackToTheSavedListAndRedoAwayFromIt) {
    form().Press("Ctrl+Z");
    form().Press("Ctrl+Y");
    form().Click("mnuAddUpper");
    form().Click("mnuAddUnder");
    form().Press("Ctrl+Z");
    EXPECT_EQ(Records(), Lines{""});
    EXPECT_TRUE(globals.unsaved);
    form().Press("Ctrl+Z");
    EXPECT_EQ(Records(), Lines{});
    EXPECT_FALSE(globals.unsaved);
    EXPECT_FALSE(Enabled("cmdPlay"));
    form().Press("Ctrl+Y");
    form().Press("Ctrl+Shift+Z");
    EXPECT_EQ(Records(), (Lines{"", ""}));
    EXPECT_TRUE(globals.unsaved);
    list().SetLines({"recorded", "meanwhile"});
    form().Press("Ctrl+Z");
    EXPECT_EQ(Records(), (Lines{"recorded", "meanwhile"})) << "not the list that was edited";
}

TEST_F(EditorTest, EditsAHundredThousandLinesAtOnce) {
    const Lines many(100000, "url\t,id=,indt=x");
    Start(many, 0);
    form().Press("Ctrl+A");
    list().Select(50000, false);
    form().Press("Del");
    EXPECT_EQ(Records().size(), 1U);
    form().Press("Ctrl+Z");
    EXPECT_EQ(Records(), many);
}

TEST(EditHistory, KeepsTheLatestEdits) {
    EditHistory history;
    for (int i = 0; i < 1000; ++i) history.Add({i, {}, {""}});
    int undone = 0;
    while (history.Undo() != nullptr) ++undone;
    EXPECT_EQ(undone, 500);
    EXPECT_FALSE(history.IsSaved()) << "what was saved is forgotten";
}

}  // namespace
}  // namespace tamrin::test
