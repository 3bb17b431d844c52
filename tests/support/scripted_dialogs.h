#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "platform/dialogs.h"

namespace tamrin::test {

// Dialogs whose answers are queued. A box without a queued answer fails the test with its text; so
// does a queued answer that no box took.
class ScriptedDialogs : public Dialogs {
public:
    ~ScriptedDialogs() override {
        EXPECT_TRUE(answers.empty() && paths.empty()) << "a box was expected";
    }

    std::deque<Answer> answers;
    std::deque<std::string> paths;
    // "title|text", "title|filter|proposed" of file dialogs, "title|start" of folder dialogs
    std::vector<std::string> shown;

    Answer MsgBox(const std::string& text, const std::string& title, Buttons, bool) override {
        return Next(answers, title + "|" + text, Answer::kCancel);
    }
    std::string SaveFile(const FileDialog& dialog) override { return OpenFile(dialog); }
    std::string OpenFile(const FileDialog& dialog) override {
        return Next(paths, dialog.title + "|" + dialog.filter + "|" + dialog.proposed, {});
    }
    std::string OpenFolder(const std::string& title, const std::string& start) override {
        return Next(paths, title + "|" + start, {});
    }

private:
    template <class T>
    T Next(std::deque<T>& queue, const std::string& dialog, T answer) {
        shown.push_back(dialog);
        EXPECT_FALSE(queue.empty()) << "unexpected: " << dialog;
        if (queue.empty()) return answer;
        answer = queue.front();
        queue.pop_front();
        return answer;
    }
};

}  // namespace tamrin::test
