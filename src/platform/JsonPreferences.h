// SPDX-License-Identifier: MIT
#pragma once

#include "Preferences.h"

#include <QJsonObject>
#include <QString>

namespace quorvane {

/// Preferences in one JSON file, rewritten whole and synced, file and folder, at each change. A
/// file that does not parse reads as empty and is moved aside to "{name}.broken" (with a number if
/// that is taken) before the first write, so that nothing is overwritten in silence. Data is stored
/// as an object {"data": base64}. Main thread.
class JsonPreferences final : public Preferences
{
public:
    /// The file need not exist; its folder is made when it is first written.
    explicit JsonPreferences(QString filePath);

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
    QJsonObject m_values;
    /// What could not be written so far: it outlives a reading of the file.
    QJsonObject m_unwritten;
};

} // namespace quorvane
