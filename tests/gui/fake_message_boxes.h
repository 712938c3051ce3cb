#pragma once
// Message boxes for GUI tests: every text shown is recorded, questions get scripted answers.

#include "gui/message_boxes.h"

#include <deque>
#include <string>
#include <vector>

namespace tallybot::guitest {

struct FakeMessageBoxes : desktop::MessageBoxes {
    struct Shown {
        std::string title;
        std::string text;
    };
    std::vector<Shown> shown;
    std::vector<std::string> questions;
    std::deque<bool> yesNo;                         // answers in order; "no" when empty
    std::deque<std::optional<QString>> textAnswers; // cancelled when empty

    void Show(QWidget*, const QString& title, const QString& text) override {
        shown.push_back({title.toStdString(), text.toStdString()});
    }
    bool AskYesNo(QWidget*, const QString& title, const QString& question) override {
        questions.push_back(title.toStdString() + "|" + question.toStdString());
        if (yesNo.empty()) return false;
        const bool answer = yesNo.front();
        yesNo.pop_front();
        return answer;
    }
    std::optional<QString> AskText(QWidget*, const QString& title, const QString& prompt) override {
        questions.push_back(title.toStdString() + "|" + prompt.toStdString());
        if (textAnswers.empty()) return std::nullopt;
        auto answer = textAnswers.front();
        textAnswers.pop_front();
        return answer;
    }
    std::string LastText() const { return shown.empty() ? std::string() : shown.back().text; }
};

} // namespace tallybot::guitest
