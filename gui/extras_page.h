#pragma once
// The Options dialog's "Extras" page: one row per key of the [Extras] section, each with its
// control, a short explanation and its check. The rows are a table, so a new key is one more row.

#include "base/extras_settings.h"

#include <optional>
#include <string>
#include <vector>

#include <QString>
#include <QWidget>

namespace tallybot::desktop {

enum class ExtrasKind { Flag, Number, Text, Secret, Choice };

struct ExtrasRow {
    const char* key; // the key in the settings file; the control is named "ext" + key
    ExtrasKind kind;
    const char* label;
    const char* explanation;
    int base::ExtrasSettings::*number = nullptr;       // Flag and Number
    std::string base::ExtrasSettings::*text = nullptr; // Text, Secret and Choice
    int minimum = 0;                                   // Number
    int maximum = 0;
    std::vector<const char*> choices = {}; // Choice: the stored values
    // Text: why a value is refused, or nothing when it is fine.
    std::optional<QString> (*check)(const QString& value) = nullptr;
};

const std::vector<ExtrasRow>& ExtrasRows();

class ExtrasPage : public QWidget {
public:
    explicit ExtrasPage(QWidget* parent = nullptr);

    void Load(const base::ExtrasSettings& extras);
    // The first refusal (the control gets the focus), or nothing when every value is fine.
    std::optional<QString> Check() const;
    void Store(base::ExtrasSettings& extras) const;

private:
    QWidget* Control(const ExtrasRow& row) const;
};

} // namespace tallybot::desktop
