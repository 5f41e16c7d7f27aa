// SPDX-License-Identifier: MIT
#include "JsonPreferences.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <utility>

namespace quorvane {
namespace {

constexpr QLatin1String dataKey("data");
constexpr std::chrono::milliseconds lockPollInterval{1};

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

/// The folder of the store, held against other processes of ours from before the file is read until
/// after it is written. The system takes the lock back from a process that ends, however it ends.
class LockedFolder
{
public:
    /// Goes on without the lock when the folder is not there, when its file system has no locks,
    /// and when another process keeps it for longer than patience.
    LockedFolder(const QString& path, std::chrono::milliseconds patience)
        : m_folder(open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        const QDeadlineTimer deadline(patience);
        while (m_folder >= 0 && flock(m_folder, LOCK_EX | LOCK_NB) != 0 &&
               (errno == EWOULDBLOCK || errno == EINTR) && !deadline.hasExpired()) {
            std::this_thread::sleep_for(lockPollInterval);
        }
    }
    LockedFolder(const LockedFolder&) = delete;
    LockedFolder& operator=(const LockedFolder&) = delete;
    ~LockedFolder()
    {
        if (m_folder >= 0) {
            // A child that is being started elsewhere may have the descriptor for a moment yet.
            flock(m_folder, LOCK_UN);
            close(m_folder);
        }
    }

    /// A rename is only safe against a power cut when the folder that holds it is synced as well.
    void sync() const
    {
        if (m_folder >= 0) {
            fsync(m_folder);
        }
    }

private:
    int m_folder;
};

} // namespace

JsonPreferences::JsonPreferences(QString filePath, std::chrono::milliseconds lockPatience)
    : m_filePath(std::move(filePath))
    , m_lockPatience(lockPatience)
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
    const QString folder = QFileInfo(m_filePath).path();
    QDir().mkpath(folder);
    const LockedFolder locked(folder, m_lockPatience);
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
    locked.sync();
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
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.write(QJsonDocument(m_values).toJson());
    // QSaveFile syncs the file itself before it renames it.
    return file.commit();
}

} // namespace quorvane
