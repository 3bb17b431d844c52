#include <gtest/gtest.h>

#include <random>

#include "app/main_window_rig.h"

namespace tamrin::test {
namespace {

// What the list, its undo and its file are to hold, as simply as it can be said: all states are
// kept, and undo steps back among them.
struct Model {
    std::vector<Lines> states{Lines{}};
    std::size_t now = 0;
    Lines saved;

    const Lines& lines() const { return states[now]; }
    void Edit(Lines next) {
        states.resize(now + 1);
        states.push_back(std::move(next));
        ++now;
    }
    void Undo() { now -= now > 0 ? 1 : 0; }
    void Redo() { now += now + 1 < states.size() ? 1 : 0; }
    void Reopen() {
        states = {saved};
        now = 0;
    }
};

std::string TextOf(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

class RandomEdits : public MainWindowTest {
protected:
    RandomEdits() { window.Form_Load(""); }

    // Does one random thing to the window and to the model.
    void Step() {
        const int current = PlaceCurrentLine();
        Lines next = model.lines();
        switch (Random(9)) {
            case 0:
                form().Click("mnuAddUpper");
                next.insert(next.begin() + std::max(current, 0), "");
                return Edited(next, std::max(current, 0), 1);
            case 1:
                form().Click("mnuAddUnder");
                next.insert(next.begin() + (current + 1), "");
                return Edited(next, current + 1, 1);
            case 2:
                return Delete(current);
            case 3:
            case 4:
                return Paste(current);
            case 5:
                form().Press("Ctrl+Z");
                return model.Undo();
            case 6:
                form().Press("Ctrl+Y");
                return model.Redo();
            case 7:
                form().Press("Ctrl+S");
                model.saved = model.lines();
                return;
            default:
                return Reopen();
        }
    }

    int Random(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }

    std::mt19937 random;
    Model model;

private:
    int PlaceCurrentLine() {
        const int current = Random(list().Count() + 1) - 1;
        list().SetListIndex(current);
        return current;
    }
    // Notes an edit, which chooses some lines: the first of them is the current one.
    void Edited(Lines next, int first, int count) {
        EXPECT_TRUE(globals.unsaved);
        EXPECT_EQ(list().ListIndex(), first);
        for (int i = 0; i < list().Count(); ++i) {
            EXPECT_EQ(list().Selected(i), i >= first && i < first + count) << i;
        }
        model.Edit(std::move(next));
    }
    void Delete(int current) {
        if (current < 0) {
            const bool unsaved = globals.unsaved;
            form().Press("Del");
            EXPECT_EQ(globals.unsaved, unsaved) << "nothing was selected";
            return;
        }
        Lines next = model.lines();
        const int other = Random(list().Count());
        list().Select(other, true);
        form().Press("Del");
        next.erase(next.begin() + std::max(current, other));
        if (other != current) next.erase(next.begin() + std::min(current, other));
        Edited(next, std::min(current, other) - 1, 1);
    }
    void Paste(int current) {
        Lines pieces;
        for (int i = Random(4); i >= 0; --i) {
            pieces.push_back("wait\t,indt=" + std::to_string(Random(1000)) + "、表");
        }
        if (pieces.size() > 1 && Random(4) == 0) pieces.back().clear();
        std::string text = TextOf(pieces);
        text.resize(text.size() - 2);
        windows.SetClipboardText(text);
        dialogs.answers = {Answer::kOk};
        form().Press("Ctrl+V");
        Lines next = model.lines();
        const int first = std::max(current, 0);
        auto at = static_cast<std::size_t>(first);
        if (next.size() < at + pieces.size()) next.resize(at + pieces.size());
        for (const std::string& piece : pieces) next[at++] = piece;
        Edited(next, first, static_cast<int>(pieces.size()));
    }
    void Reopen() {
        if (globals.unsaved && list().Count() > 0) dialogs.answers = {Answer::kNo};
        form().onDropFiles({globals.current_file});
        model.Reopen();
    }
};

TEST_F(RandomEdits, EndInTheFileThatAModelSays) {
    const std::string path = "C:\\work\\r.csv";
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        globals.settings.cipher = seed % 4 == 0;
        files.contents[path] = "";
        globals.unsaved = false;
        form().onDropFiles({path});
        model = Model();
        for (int step = 0; step < 60; ++step) {
            Step();
            ASSERT_EQ(Records(), model.lines());
            ASSERT_TRUE(globals.unsaved || Records() == model.saved);
            ASSERT_EQ(Enabled("cmdPlay"), !model.lines().empty());
        }
        form().Press("Ctrl+S");
        const bool enciphered = globals.settings.cipher;
        ASSERT_EQ(files.contents[path].starts_with("CIPHER\r\n"), enciphered);
        if (!enciphered) {
            ASSERT_EQ(codec.Decode(files.contents[path]), TextOf(model.lines()));
        }
        globals.settings.cipher = false;
        form().onDropFiles({path});
        ASSERT_EQ(Records(), model.lines());
    }
}

}  // namespace
}  // namespace tamrin::test
