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
        desktop::BoxIcon icon = desktop::BoxIcon::Warning;
    };
    std::vector<Shown> shown;
    std::vector<std::string> questions;             // "title|question", save dialogs "title|proposed path"
    std::deque<bool> yesNo;                         // answers in order; "no" when empty
    std::deque<std::optional<QString>> textAnswers; // cancelled when empty
    std::deque<desktop::SaveChoice> saveChoices;    // Cancel when empty
    std::deque<QString> savePaths;                  // cancelled when empty

    void Show(QWidget*, const QString& title, const QString& text, desktop::BoxIcon icon) override {
        shown.push_back({title.toStdString(), text.toStdString(), icon});
    }
    bool AskYesNo(QWidget*, const QString& title, const QString& question) override {
        questions.push_back(title.toStdString() + "|" + question.toStdString());
        return Next(yesNo, false);
    }
    std::optional<QString> AskText(QWidget*, const QString& title, const QString& prompt) override {
        questions.push_back(title.toStdString() + "|" + prompt.toStdString());
        return Next(textAnswers, std::optional<QString>());
    }
    desktop::SaveChoice AskSaveChanges(QWidget*, const QString& title, const QString& question) override {
        questions.push_back(title.toStdString() + "|" + question.toStdString());
        return Next(saveChoices, desktop::SaveChoice::Cancel);
    }
    std::optional<QString> ChooseSaveFile(QWidget*, const QString& title, const QString& proposed) override {
        questions.push_back(title.toStdString() + "|" + proposed.toStdString());
        if (savePaths.empty()) return std::nullopt;
        return Next(savePaths, QString());
    }
    std::string LastText() const { return shown.empty() ? std::string() : shown.back().text; }

private:
    template <class T, class D> static T Next(std::deque<T>& answers, D fallback) {
        if (answers.empty()) return T(fallback);
        T answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

} // namespace tallybot::guitest
