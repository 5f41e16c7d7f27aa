// SPDX-License-Identifier: MIT
#include "JsonPreferences.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <system_error>
#include <utility>

namespace quorvane {
namespace {

constexpr QLatin1String dataKey("data");
/// A lock is mostly held for as long as one writing takes. A holder that hangs is asked for less
/// and less often.
constexpr std::chrono::milliseconds minLockPollInterval{1};
constexpr std::chrono::milliseconds maxLockPollInterval{100};

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
    /// waitsOn is called whenever another process is found to have the lock, and lets some time
    /// pass; false from it ends the waiting. A folder that is not there and a file system without
    /// locks leave nothing to wait for.
    LockedFolder(const QString& path, const std::function<bool()>& waitsOn)
        : m_folder(open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
    {
        while (m_folder >= 0 && flock(m_folder, LOCK_EX | LOCK_NB) != 0 &&
               (errno == EWOULDBLOCK || errno == EINTR)) {
            if (!waitsOn()) {
                m_isHeldElsewhere = true;
                return;
            }
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

    /// Another process has the lock still.
    bool isHeldElsewhere() const { return m_isHeldElsewhere; }

    /// A rename is only safe against a power cut when the folder that holds it is synced as well.
    void sync() const
    {
        if (m_folder >= 0) {
            fsync(m_folder);
        }
    }

private:
    int m_folder;
    bool m_isHeldElsewhere = false;
};

} // namespace

JsonPreferences::JsonPreferences(QString filePath, std::chrono::milliseconds finalLockWait)
    : m_filePath(std::move(filePath))
    , m_finalLockWait(finalLockWait)
{
    readFile(m_values);
}

JsonPreferences::~JsonPreferences()
{
    std::unique_lock guard(m_lock);
    giveLockUpIn(m_finalLockWait);
    m_isEnding = true;
    m_changed.notify_all();
    if (m_writer.joinable()) {
        guard.unlock();
        m_writer.join();
    } else if (!m_unwritten.isEmpty()) {
        writeChanges(guard, std::nullopt);
    }
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
    const std::lock_guard guard(m_lock);
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
    std::unique_lock guard(m_lock);
    const QJsonValue json = toJson(value);
    m_unwritten.insert(text(key), json);
    m_values.insert(text(key), json);
    const std::uint64_t change = ++m_lastChange;
    if (!startWriter()) {
        writeChanges(guard, QDeadlineTimer(maxLockWait));
        return m_wasWritten;
    }
    m_changed.notify_all();
    const auto isTried = [&] { return m_lastTried >= change; };
    m_tried.wait_for(guard, maxDiskWait, [&] { return isTried() || m_isHeldUp; });
    if (!isTried()) {
        m_isHeldUp = true;
        m_tried.wait_for(guard, maxLockWait, isTried);
    }
    return !isTried() || m_wasWritten;
}

bool JsonPreferences::finish(std::chrono::milliseconds atMost)
{
    std::unique_lock guard(m_lock);
    giveLockUpIn(atMost / 2);
    m_changed.notify_all();
    return m_tried.wait_for(guard, atMost, [this] { return m_lastTried == m_lastChange; });
}

/// Under the lock: the program ends. What another process still holds by then is written all the
/// same, since no later attempt could make up for it.
void JsonPreferences::giveLockUpIn(std::chrono::milliseconds wait)
{
    const QDeadlineTimer deadline(wait);
    m_lockGivenUp = m_lockGivenUp ? std::min(*m_lockGivenUp, deadline) : deadline;
}

/// Under the lock. False when the system grants no thread: the caller writes then.
bool JsonPreferences::startWriter()
{
    if (m_writer.joinable()) {
        return true;
    }
    try {
        m_writer = std::thread([this] { serveChanges(); });
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void JsonPreferences::serveChanges()
{
    std::unique_lock guard(m_lock);
    for (;;) {
        m_changed.wait(guard, [this] { return m_isEnding || m_lastTried < m_lastChange; });
        if (m_lastTried == m_lastChange) {
            return;
        }
        writeChanges(guard, std::nullopt);
    }
}

/// Writes what is unwritten; the guard is let go of meanwhile. Nothing is written when another
/// process keeps the lock up to the deadline.
void JsonPreferences::writeChanges(std::unique_lock<std::mutex>& guard,
                                   std::optional<QDeadlineTimer> deadline)
{
    const std::uint64_t change = m_lastChange;
    const QJsonObject changes = m_unwritten;
    QJsonObject values = m_values;
    guard.unlock();
    const bool isWritten = writeThrough(changes, values, deadline);
    guard.lock();
    for (auto entry = changes.constBegin(); isWritten && entry != changes.constEnd(); ++entry) {
        if (m_unwritten.value(entry.key()) == entry.value()) {
            m_unwritten.remove(entry.key());
        }
    }
    m_values = values;
    for (auto entry = m_unwritten.constBegin(); entry != m_unwritten.constEnd(); ++entry) {
        m_values.insert(entry.key(), entry.value());
    }
    m_isHeldUp = false;
    m_lastTried = change;
    m_wasWritten = isWritten;
    m_tried.notify_all();
}

/// Puts the changes into what the file holds by now; values becomes that.
bool JsonPreferences::writeThrough(const QJsonObject& changes, QJsonObject& values,
                                   const std::optional<QDeadlineTimer>& deadline)
{
    const QString folder = QFileInfo(m_filePath).path();
    QDir().mkpath(folder);
    std::chrono::milliseconds interval = minLockPollInterval;
    const LockedFolder locked(folder, [&] {
        const bool waits = awaitNextPoll(interval, deadline);
        interval = std::min(2 * interval, maxLockPollInterval);
        return waits;
    });
    if (locked.isHeldElsewhere() && !isLockGivenUp()) {
        return false;
    }
    // Another process of ours may have written meanwhile: only the keys set here are ours to
    // change.
    QJsonObject onDisk;
    const FileState state = readFile(onDisk);
    if (state == FileState::readable) {
        values = onDisk;
    }
    for (auto entry = changes.constBegin(); entry != changes.constEnd(); ++entry) {
        values.insert(entry.key(), entry.value());
    }
    // A file that could not be read now may be sound: it is neither moved nor overwritten.
    if (state == FileState::unreadable || (state == FileState::broken && !keepBrokenFileAside()) ||
        !writeFile(values)) {
        return false;
    }
    locked.sync();
    return true;
}

/// Another process has the lock: lets callers go on, and the interval pass. False when the lock is
/// not to be waited for any longer.
bool JsonPreferences::awaitNextPoll(std::chrono::milliseconds interval,
                                    const std::optional<QDeadlineTimer>& deadline)
{
    std::unique_lock guard(m_lock);
    m_isHeldUp = true;
    m_tried.notify_all();
    if ((deadline && deadline->hasExpired()) || (m_lockGivenUp && m_lockGivenUp->hasExpired())) {
        return false;
    }
    m_changed.wait_for(guard, interval);
    return true;
}

bool JsonPreferences::isLockGivenUp()
{
    const std::lock_guard guard(m_lock);
    return m_lockGivenUp && m_lockGivenUp->hasExpired();
}

bool JsonPreferences::keepBrokenFileAside() const
{
    QString aside = m_filePath + QLatin1String(".broken");
    for (int number = 2; QFile::exists(aside); ++number) {
        aside = m_filePath + QLatin1String(".broken-") + QString::number(number);
    }
    return QFile::rename(m_filePath, aside);
}

bool JsonPreferences::writeFile(const QJsonObject& values) const
{
    QSaveFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    file.write(QJsonDocument(values).toJson());
    // QSaveFile syncs the file itself before it renames it.
    return file.commit();
}

} // namespace quorvane
