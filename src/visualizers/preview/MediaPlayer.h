// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "LatestFrame.h"
#include "LockedFlag.h"
#include "MediaStatus.h"

#include <QImage>
#include <QObject>

#include <memory>

class QThread;

namespace quorvane {

class MediaWorker;

/// Plays a sound or a film. Opening, reading and decoding happen on a thread of its own, so that no
/// call waits for the disk or for the sound server. Main thread.
class MediaPlayer : public QObject
{
    Q_OBJECT

public:
    explicit MediaPlayer(QObject* parent = nullptr);
    /// Waits a moment for the reading to end; a call to the system that hangs is left behind.
    ~MediaPlayer() override;

    /// Plays the file from its beginning as soon as it is open.
    void open(const FilePath& path);
    /// Falls silent at once and lets the file go.
    void close();
    void setPlaying(bool playing);
    /// Milliseconds.
    void seek(qint64 position);
    /// From 0 to 1 as the ear hears it; 1 at first.
    void setVolume(double volume);
    double volume() const { return m_volume; }
    void setMuted(bool isMuted);
    bool isMuted() const { return m_isMuted; }
    /// Device pixels that a frame may have.
    void setFrameRoom(const QSize& room) { m_frame->setRoom(room); }

    /// As last told by the other thread.
    const MediaStatus& status() const { return m_status; }

Q_SIGNALS:
    void statusChanged();
    void frameReady(const QImage& frame);

private:
    void applyLoudness();

    std::shared_ptr<LatestFrame> m_frame = std::make_shared<LatestFrame>();
    MediaWorker* m_worker;
    QThread* m_thread;
    std::shared_ptr<LockedFlag> m_stop;
    MediaStatus m_status;
    int m_run = 0;
    double m_volume = 1;
    bool m_isMuted = false;
};

} // namespace quorvane
