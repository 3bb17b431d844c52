#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

#include "platform/dialogs.h"

namespace tamrin::test {

// Dialogs whose answers are queued. A box that nobody queued an answer for fails the test with its
// text; so does a queued answer that no box took.
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
        shown.push_back(title + "|" + text);
        if (answers.empty()) {
            ADD_FAILURE() << "unexpected box: " << text;
            return Answer::kCancel;
        }
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
    std::string SaveFile(const FileDialog& dialog) override {
        return Take(dialog.title + "|" + dialog.filter + "|" + dialog.proposed);
    }
    std::string OpenFile(const FileDialog& dialog) override {
        return Take(dialog.title + "|" + dialog.filter + "|" + dialog.proposed);
    }
    std::string OpenFolder(const std::string& title, const std::string& start) override {
        return Take(title + "|" + start);
    }

private:
    std::string Take(const std::string& what) {
        shown.push_back(what);
        if (paths.empty()) {
            ADD_FAILURE() << "unexpected dialog: " << what;
            return "";
        }
        const std::string path = paths.front();
        paths.pop_front();
        return path;
    }
};

}  // namespace tamrin::test
