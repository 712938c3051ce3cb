#pragma once
// Message boxes for GUI tests: every text shown is recorded, questions get scripted answers.

#include "gui/message_boxes.h"

#include <deque>
#include <string>
#include <utility>
#include <vector>

namespace tallybot::guitest {

// The front answer, or the fallback when none is left.
template <class T> T Next(std::deque<T>& answers, T fallback) {
    if (answers.empty()) return fallback;
    fallback = std::move(answers.front());
    answers.pop_front();
    return fallback;
}

struct FakeMessageBoxes : desktop::MessageBoxes {
    struct Shown {
        std::string title;
        std::string text;
    };
    std::vector<Shown> shown;
    std::vector<std::string> questions;             // "title|question", save dialogs "title|proposed path"
    std::deque<bool> yesNo;                         // answers in order; "no" when empty
    std::deque<std::optional<QString>> textAnswers; // cancelled when empty
    std::deque<desktop::SaveChoice> saveChoices;    // Cancel when empty
    std::deque<std::optional<QString>> savePaths;   // cancelled when empty

    void Show(QWidget*, const QString& title, const QString& text, desktop::BoxIcon) override {
        shown.push_back({title.toStdString(), text.toStdString()});
    }
    bool AskYesNo(QWidget*, const QString& title, const QString& question) override {
        return Ask(title, question), Next(yesNo, false);
    }
    std::optional<QString> AskText(QWidget*, const QString& title, const QString& prompt) override {
        return Ask(title, prompt), Next(textAnswers, std::optional<QString>());
    }
    desktop::SaveChoice AskSaveChanges(QWidget*, const QString& title, const QString& question) override {
        return Ask(title, question), Next(saveChoices, desktop::SaveChoice::Cancel);
    }
    std::optional<QString> ChooseSaveFile(QWidget*, const QString& title, const QString& proposed) override {
        return Ask(title, proposed), Next(savePaths, std::optional<QString>());
    }
    void Ask(const QString& title, const QString& text) {
        questions.push_back(title.toStdString() + "|" + text.toStdString());
    }
    std::string LastText() const { return shown.empty() ? std::string() : shown.back().text; }
};

} // namespace tallybot::guitest
