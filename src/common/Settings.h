#pragma once

#include <QString>
#include <optional>
#include <vector>

// What the program remembers between runs: texts under (section, key) in the platform's per-user store.
// Sections and keys are found whatever their case, also those that somebody wrote there by hand. A key may
// hold any character.

namespace brackwell {

/// The stored text, or the default where there is none.
QString GetSetting(const QString& section, const QString& key, const QString& defaultValue = QString());

/// Creates or overwrites. Other windows see the value at once, and so does the next run however this one
/// ends.
void SaveSetting(const QString& section, const QString& key, const QString& value);

struct Setting {
  QString Section;
  QString Key;
  QString Value;
};

/// Saves all of them in one step and makes sure that they are on the disk. Where they cannot be written
/// nothing is saved, also not for the rest of this run, and the result is false.
bool SaveSettings(const std::vector<Setting>& settings);

/// Where the settings are kept, as a user would look for it.
QString SettingsPlace();

/// Forgets the key; one that is not there is no error.
void DeleteSetting(const QString& section, const QString& key);

/// The stored text as a number, halves rounded to the even neighbour. Nothing where a text is stored that is
/// no number (or one beyond an int), so that the caller can keep what it has.
std::optional<int> GetSettingNumber(const QString& section, const QString& key, int defaultValue);

/// The stored text as a truth value: 0 and "False" are false, other numbers and "True" are true, anything
/// else is the default.
bool GetSettingFlag(const QString& section, const QString& key, bool defaultValue);

}  // namespace brackwell
