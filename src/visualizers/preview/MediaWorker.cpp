// SPDX-License-Identifier: MIT
#include "MediaWorker.h"

#include "FilmRotation.h"
#include "PictureReader.h"
#include "PreviewFile.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QMediaDevices>
#include <QMediaMetaData>
#include <QTransform>
#include <QUrl>
#include <QVideoFrame>
#include <QVideoSink>

#include <algorithm>
#include <utility>

namespace quorvane {
namespace {

/// Whether every film in the file says how fast it runs. The decoder divides by that as soon as it
/// has somewhere to show the film, and ends the process where it is missing: in a damaged stream,
/// or in the cover of a piece of music.
bool tellsFrameRate([[maybe_unused]] const QMediaPlayer& player)
{
#ifdef QUORVANE_USES_FFMPEG
    const QList<QMediaMetaData> films = player.videoTracks();
    return std::all_of(films.begin(), films.end(), [](const QMediaMetaData& film) {
        return film.value(QMediaMetaData::VideoFrameRate).toReal() > 0;
    });
#else
    return true;
#endif
}

} // namespace

/// Everything of one file, in the order in which it is needed: the player goes first.
struct MediaWorker::Playback
{
    explicit Playback(std::shared_ptr<const LockedFlag> stopFlag)
        : stop(std::move(stopFlag))
        , file(stop.get())
    {}

    std::shared_ptr<const LockedFlag> stop;
    PreviewFile file;
    int rotation = 0; ///< clockwise, in degrees
    QVideoSink sink;
    std::unique_ptr<QAudioOutput> audio;
    QMediaPlayer player;
};

MediaWorker::MediaWorker(std::shared_ptr<LatestFrame> frame)
    : m_frame(std::move(frame))
{}

MediaWorker::~MediaWorker() = default;

void MediaWorker::open(int run, const FilePath& path, const std::shared_ptr<const LockedFlag>& stop)
{
    close();
    m_run = run;
    m_path = path;
    m_status = {};
    m_playback = std::make_unique<Playback>(stop);
    if (!m_playback->file.openRegular(path)) {
        fail();
        return;
    }
    m_playback->rotation = filmRotation(m_playback->file);
    m_playback->file.seek(0);
    begin();
}

void MediaWorker::begin()
{
    QMediaPlayer& player = m_playback->player;
    // Without a device an output of sound brings the decoder down.
    if (!QMediaDevices::defaultAudioOutput().isNull()) {
        m_playback->audio = std::make_unique<QAudioOutput>();
        player.setAudioOutput(m_playback->audio.get());
        setLoudness(m_volume, m_isMuted);
    }
    connect(&m_playback->sink, &QVideoSink::videoFrameChanged, this, &MediaWorker::showFrame);
    connect(&player, &QMediaPlayer::mediaStatusChanged, this, &MediaWorker::judge);
    connect(&player, &QMediaPlayer::errorOccurred, this, &MediaWorker::fail);
    connect(&player, &QMediaPlayer::durationChanged, this, &MediaWorker::tell);
    connect(&player, &QMediaPlayer::positionChanged, this, &MediaWorker::tell);
    connect(&player, &QMediaPlayer::playbackStateChanged, this, &MediaWorker::tell);
    player.setSourceDevice(&m_playback->file, QUrl());
}

void MediaWorker::close()
{
    if (m_playback) {
        disconnect(&m_playback->player, nullptr, this, nullptr);
        disconnect(&m_playback->sink, nullptr, this, nullptr);
        m_playback->player.stop();
    }
    m_playback.reset();
    m_frame->take();
}

void MediaWorker::judge(QMediaPlayer::MediaStatus status)
{
    if (!m_playback || m_status.phase != MediaStatus::Phase::opening) {
        tell();
        return;
    }
    const QMediaPlayer& player = m_playback->player;
    if (status == QMediaPlayer::InvalidMedia) {
        fail();
    } else if (status == QMediaPlayer::LoadedMedia || status == QMediaPlayer::BufferedMedia) {
        m_status.hasFilm = player.hasVideo() && tellsFrameRate(player);
        m_status.hasSound = player.hasAudio() && m_playback->audio;
        const bool plays = m_status.hasFilm || m_status.hasSound;
        m_status.isSilent = !plays && player.hasAudio();
        if (!plays && !m_status.isSilent) {
            fail();
            return;
        }
        m_status.phase = MediaStatus::Phase::ready;
        if (m_status.hasFilm) {
            m_playback->player.setVideoOutput(&m_playback->sink);
        }
        if (plays) {
            m_playback->player.play();
        }
        tell();
    }
}

/// A fault in the middle of a file leaves what has been shown so far.
void MediaWorker::fail()
{
    if (m_status.phase == MediaStatus::Phase::opening) {
        m_status.phase = MediaStatus::Phase::failed;
    }
    tell();
}

void MediaWorker::tell()
{
    if (!m_playback) {
        return;
    }
    const QMediaPlayer& player = m_playback->player;
    MediaStatus now = m_status;
    now.isPlaying = player.playbackState() == QMediaPlayer::PlayingState;
    now.duration = std::max<qint64>(player.duration(), 0);
    now.position = std::max<qint64>(player.position(), 0);
    if (now.duration > 0) {
        now.position = std::min(now.position, now.duration);
    }
    m_status = now;
    Q_EMIT statusChanged(m_run, m_status);
}

void MediaWorker::setPlaying(bool playing)
{
    if (!m_playback || m_status.phase != MediaStatus::Phase::ready || m_status.isSilent) {
        return;
    }
    QMediaPlayer& player = m_playback->player;
    if (!playing) {
        player.pause();
    } else if (player.mediaStatus() == QMediaPlayer::EndOfMedia) {
        // Sound and picture end one after the other: what is still on its way from the first end
        // would stop a player that starts again.
        open(m_run, FilePath(m_path), std::shared_ptr(m_playback->stop));
    } else {
        player.play();
    }
}

void MediaWorker::seek(qint64 position)
{
    if (m_playback && m_status.phase == MediaStatus::Phase::ready && !m_status.isSilent) {
        m_playback->player.setPosition(position);
    }
}

void MediaWorker::setLoudness(float volume, bool isMuted)
{
    m_volume = volume;
    m_isMuted = isMuted;
    if (m_playback && m_playback->audio) {
        m_playback->audio->setVolume(volume);
        m_playback->audio->setMuted(isMuted);
    }
}

void MediaWorker::showFrame(const QVideoFrame& frame)
{
    // Frames that have waited too long are left out, so that they never pile up.
    if (!m_playback || !frame.isValid() || frame != m_playback->sink.videoFrame()) {
        return;
    }
    const int rotation = m_playback->rotation;
    const QSize room = m_frame->room();
    QImage image = fitted(frame.toImage(), rotation % 180 == 0 ? room : room.transposed());
    if (rotation != 0) {
        image = image.transformed(QTransform().rotate(rotation));
    }
    if (!image.isNull() && m_frame->put(image)) {
        Q_EMIT frameReady(m_run);
    }
}

} // namespace quorvane
