#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace tamrin::test {

// Dialogs whose answers are queued. A box without a queued answer fails the test with its text; so
// does a queued answer that no box took.
class ScriptedDialogs : public Dialogs {
public:
    ~ScriptedDialogs() override {
        EXPECT_TRUE(answers.empty()) << "a box was expected";
        EXPECT_TRUE(paths.empty()) << "a file dialog was expected";
    }

    std::deque<Answer> answers;
    std::deque<std::string> paths;
    // "title|text", "title|filter|proposed" of file dialogs, "title|start" of folder dialogs
    std::vector<std::string> shown;

    Answer MsgBox(const std::string& text, const std::string& title, Buttons /*buttons*/,
                  bool /*cancel_is_default*/) override {
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
    T Next(std::deque<T>& queue, const std::string& dialog, T dismissed) {
        shown.push_back(dialog);
        if (queue.empty()) {
            ADD_FAILURE() << "unexpected: " << dialog;
            return dismissed;
        }
        const T answer = queue.front();
        queue.pop_front();
        return answer;
    }
};

}  // namespace tamrin::test
