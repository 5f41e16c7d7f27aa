// SPDX-License-Identifier: MIT
#include "JsonPreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace quorvane {
namespace {

constexpr QLatin1String dataKey("data");

QString text(std::string_view key)
{
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

QJsonValue toJson(const PreferenceValue& value)
{
    if (const auto* string = std::get_if<QString>(&value)) {
        return *string;
    }
    if (const auto* flag = std::get_if<bool>(&value)) {
        return *flag;
    }
    if (const auto* data = std::get_if<QByteArray>(&value)) {
        return QJsonObject{{dataKey, QString::fromLatin1(data->toBase64())}};
    }
    QJsonObject object;
    for (const auto& [key, flag] : std::get<std::map<std::string, bool>>(value)) {
        object.insert(text(key), flag);
    }
    return object;
}

std::optional<PreferenceValue> fromObject(const QJsonObject& object)
{
    if (object.size() == 1 && object.value(dataKey).isString()) {
        return QByteArray::fromBase64(object.value(dataKey).toString().toLatin1());
    }
    std::map<std::string, bool> flags;
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (!entry.value().isBool()) {
            return std::nullopt;
        }
        flags.emplace(entry.key().toStdString(), entry.value().toBool());
    }
    return flags;
}

/// A rename is only safe against a power cut when the folder that holds it is synced as well.
void syncFolder(const QString& path)
{
    const int folder =
        open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        fsync(folder);
        close(folder);
    }
}

} // namespace

JsonPreferences::JsonPreferences(QString filePath)
    : m_filePath(std::move(filePath))
{
    readFile(m_values);
}

QString JsonPreferences::standardFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/Quorvane/preferences.json");
}

JsonPreferences::FileState JsonPreferences::readFile(QJsonObject& object) const
{
    QFile file(m_filePath);
    if (!file.exists()) {
        return FileState::missing;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return FileState::unreadable;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return FileState::unreadable;
    }
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject()) {
        return FileState::broken;
    }
    object = document.object();
    return FileState::readable;
}

std::optional<PreferenceValue> JsonPreferences::value(std::string_view key) const
{
    const QJsonValue stored = m_values.value(text(key));
    if (stored.isString()) {
        return stored.toString();
    }
    if (stored.isBool()) {
        return stored.toBool();
    }
    return stored.isObject() ? fromObject(stored.toObject()) : std::nullopt;
}

bool JsonPreferences::setValue(std::string_view key, const PreferenceValue& value)
{
    m_unwritten.insert(text(key), toJson(value));
    // Another process of ours may have written meanwhile: only the keys set here are ours to
    // change.
    QJsonObject onDisk;
    const FileState state = readFile(onDisk);
    if (state == FileState::readable) {
        m_values = onDisk;
    }
    for (auto entry = m_unwritten.constBegin(); entry != m_unwritten.constEnd(); ++entry) {
        m_values.insert(entry.key(), entry.value());
    }
    // A file that could not be read now may be sound: it is neither moved nor overwritten.
    if (state == FileState::unreadable || (state == FileState::broken && !keepBrokenFileAside()) ||
        !write()) {
        return false;
    }
    m_unwritten = {};
    return true;
}

bool JsonPreferences::keepBrokenFileAside() const
{
    QString aside = m_filePath + QLatin1String(".broken");
    for (int number = 2; QFile::exists(aside); ++number) {
        aside = m_filePath + QLatin1String(".broken-") + QString::number(number);
    }
    return QFile::rename(m_filePath, aside);
}

bool JsonPreferences::write() const
{
    const QString folder = QFileInfo(m_filePath).path();
    QSaveFile file(m_filePath);
    if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.write(QJsonDocument(m_values).toJson());
    // QSaveFile syncs the file itself before it renames it.
    if (!file.commit()) {
        return false;
    }
    syncFolder(folder);
    return true;
}

} // namespace quorvane
