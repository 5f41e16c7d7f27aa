// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"
#include "LatestFrame.h"
#include "LockedFlag.h"
#include "MediaStatus.h"

#include <QMediaPlayer>
#include <QObject>

#include <memory>

class QVideoFrame;

namespace quorvane {

/// The end of a MediaPlayer that opens, reads and decodes. Made on the main thread and moved to the
/// player's own; every call and every reading happens there.
class MediaWorker : public QObject
{
    Q_OBJECT

public:
    explicit MediaWorker(std::shared_ptr<LatestFrame> frame);
    ~MediaWorker() override;

    /// Plays the file from its beginning once it is known to be playable. Reading fails once stop
    /// is set.
    void open(int run, const FilePath& path, const std::shared_ptr<const LockedFlag>& stop);
    void close();
    void setPlaying(bool playing);
    /// Milliseconds.
    void seek(qint64 position);
    void setLoudness(float volume, bool isMuted);

Q_SIGNALS:
    /// run as open() was given it.
    void statusChanged(int run, const quorvane::MediaStatus& status);
    void frameReady(int run);

private:
    struct Playback;

    void begin();
    void judge(QMediaPlayer::MediaStatus status);
    void fail();
    void tell();
    void showFrame(const QVideoFrame& frame);

    std::shared_ptr<LatestFrame> m_frame;
    std::unique_ptr<Playback> m_playback;
    FilePath m_path;
    MediaStatus m_status;
    int m_run = 0;
    float m_volume = 1;
    bool m_isMuted = false;
};

} // namespace quorvane
