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
};

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

TEST_F(EditorTest, PastesLinesAndSaysWhetherThereWereAny) {
    Start({"0", "1"}, 0);
    windows.SetClipboardText("a\nb\r\n");
    dialogs.answers = {Answer::kOk, Answer::kOk};
    form().Click("mnuContextPaste");
    EXPECT_EQ(Records(), (Lines{"a", "b", ""}));
    windows.SetClipboardText("");
    form().Press("Ctrl+V");
    EXPECT_EQ(dialogs.shown, (Lines{"Tamrin|貼り付け完了！", "Tamrin|貼り付けデータ無し！"}));
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
