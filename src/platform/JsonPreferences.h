// SPDX-License-Identifier: MIT
#pragma once

#include "Preferences.h"

#include <QDeadlineTimer>
#include <QJsonObject>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <thread>

namespace quorvane {

/// Preferences in one JSON file, rewritten whole and synced, file and folder, at each change;
/// several processes may change it at the same instant and none loses a key of another. A thread of
/// the store's own writes, and a change waits for it; behind a process that holds the lock only for
/// maxLockWait, and behind a disk that hangs for maxDiskWait once. It is then written later, when
/// the lock is free; without the lock at the program's end alone, which no other attempt follows. A
/// file
/// that does not parse reads as empty and is moved aside to "{name}.broken" (with a number if that
/// is taken) before the first write, so that nothing is overwritten in silence. Data is stored as
/// an object
/// {"data": base64}. Main thread.
class JsonPreferences final : public Preferences
{
public:
    static constexpr std::chrono::milliseconds maxLockWait{40};
    static constexpr std::chrono::milliseconds maxDiskWait{1000};

    /// The file need not exist; its folder is made when it is first written. finalLockWait: how
    /// long the destructor waits for another process that has the lock before it writes all the
    /// same.
    explicit JsonPreferences(QString filePath,
                             std::chrono::milliseconds finalLockWait = std::chrono::seconds(5));
    /// Waits until every change has been written or refused.
    ~JsonPreferences() override;

    std::optional<PreferenceValue> value(std::string_view key) const override;
    bool setValue(std::string_view key, const PreferenceValue& value) override;
    /// For an end of the program that runs no destructor: waits until every change has been written
    /// or refused, at most atMost, and for another process that has the lock half of that. Returns
    /// whether all is done.
    bool finish(std::chrono::milliseconds atMost);

    /// "Quorvane/preferences.json" below the user's configuration folder.
    static QString standardFilePath();

private:
    /// unreadable: the file is there, but the system does not give it; it may be sound.
    enum class FileState { missing, readable, broken, unreadable };

    FileState readFile(QJsonObject& object) const;
    bool keepBrokenFileAside() const;
    bool writeFile(const QJsonObject& values) const;
    bool writeThrough(const QJsonObject& changes, QJsonObject& values,
                      const std::optional<QDeadlineTimer>& deadline);
    bool awaitNextPoll(std::chrono::milliseconds interval,
                       const std::optional<QDeadlineTimer>& deadline);
    bool isLockGivenUp();
    void giveLockUpIn(std::chrono::milliseconds wait);
    bool startWriter();
    void serveChanges();
    void writeChanges(std::unique_lock<std::mutex>& guard, std::optional<QDeadlineTimer> deadline);

    const QString m_filePath;
    const std::chrono::milliseconds m_finalLockWait;

    mutable std::mutex m_lock; ///< for all below
    std::condition_variable m_changed;
    std::condition_variable m_tried;
    QJsonObject m_values;
    /// What could not be written so far: it outlives a reading of the file.
    QJsonObject m_unwritten;
    std::uint64_t m_lastChange = 0;
    std::uint64_t m_lastTried = 0; ///< the last change that was written or refused
    bool m_wasWritten = true;      ///< what came of that
    bool m_isHeldUp = false;       ///< the writing under way takes longer than a change may wait
    bool m_isEnding = false;
    std::optional<QDeadlineTimer> m_lockGivenUp; ///< from then on, writing goes without the lock
    std::thread m_writer;
};

} // namespace quorvane
