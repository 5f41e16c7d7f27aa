// SPDX-License-Identifier: MIT
#pragma once

#include "Preferences.h"

#include <QJsonObject>
#include <QString>

#include <chrono>

namespace quorvane {

/// Preferences in one JSON file, rewritten whole and synced, file and folder, at each change;
/// several processes may change it at the same instant and none loses a key of another. A file that
/// does not parse reads as empty and is moved aside to "{name}.broken" (with a number if that is
/// taken) before the first write, so that nothing is overwritten in silence. Data is stored as an
/// object {"data": base64}. Main thread.
class JsonPreferences final : public Preferences
{
public:
    /// The file need not exist; its folder is made when it is first written. lockPatience: how long
    /// a write waits for another process that is writing before it goes ahead all the same.
    explicit JsonPreferences(QString filePath,
                             std::chrono::milliseconds lockPatience = std::chrono::seconds(5));

    std::optional<PreferenceValue> value(std::string_view key) const override;
    bool setValue(std::string_view key, const PreferenceValue& value) override;

    /// "Quorvane/preferences.json" below the user's configuration folder.
    static QString standardFilePath();

private:
    /// unreadable: the file is there, but the system does not give it; it may be sound.
    enum class FileState { missing, readable, broken, unreadable };

    FileState readFile(QJsonObject& object) const;
    bool keepBrokenFileAside() const;
    bool write() const;

    QString m_filePath;
    std::chrono::milliseconds m_lockPatience;
    QJsonObject m_values;
    /// What could not be written so far: it outlives a reading of the file.
    QJsonObject m_unwritten;
};

} // namespace quorvane
