// SPDX-License-Identifier: MIT
#include "MediaPlayer.h"

#include "MediaWorker.h"

#include <QAudio>
#include <QCoreApplication>
#include <QThread>

namespace quorvane {
namespace {

constexpr unsigned long shutdownTimeout = 1000; // milliseconds

/// The toolkit may bring several decoders and starts with one that ends the process where its
/// plug-ins are not installed. Before main(), while no thread reads the environment. A choice of
/// the user's own stays.
bool chooseDecoder()
{
    constexpr const char* choice = "QT_MEDIA_BACKEND";
    return qEnvironmentVariableIsSet(choice) || qputenv(choice, QUORVANE_MEDIA_BACKEND);
}

[[maybe_unused]] const bool isDecoderChosen = chooseDecoder();

} // namespace

MediaPlayer::MediaPlayer(QObject* parent)
    : QObject(parent)
    , m_worker(new MediaWorker(m_frame))
    , m_thread(new QThread)
{
    // Frames become pictures on the worker's thread, where no OpenGL surface can be made.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    m_worker->moveToThread(m_thread);
    connect(m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    connect(m_worker, &MediaWorker::statusChanged, this,
            [this](int run, const MediaStatus& status) {
                if (run == m_run && m_stop) {
                    m_status = status;
                    Q_EMIT statusChanged();
                }
            });
    connect(m_worker, &MediaWorker::frameReady, this, [this](int run) {
        const QImage frame = m_frame->take();
        if (run == m_run && m_stop && !frame.isNull()) {
            Q_EMIT frameReady(frame);
        }
    });
    m_thread->setObjectName(QStringLiteral("media"));
    m_thread->start();
}

MediaPlayer::~MediaPlayer()
{
    close();
    m_thread->quit();
    if (m_thread->wait(shutdownTimeout)) {
        delete m_thread;
    }
}

void MediaPlayer::open(const FilePath& path)
{
    close();
    m_stop = std::make_shared<LockedFlag>();
    const int run = ++m_run;
    QMetaObject::invokeMethod(
        m_worker, [worker = m_worker, run, path, stop = m_stop] { worker->open(run, path, stop); });
}

void MediaPlayer::close()
{
    m_status = {};
    if (!m_stop) {
        return;
    }
    m_stop->set(true);
    m_stop.reset();
    QMetaObject::invokeMethod(m_worker, [worker = m_worker] { worker->close(); });
}

void MediaPlayer::setPlaying(bool playing)
{
    QMetaObject::invokeMethod(m_worker,
                              [worker = m_worker, playing] { worker->setPlaying(playing); });
}

void MediaPlayer::seek(qint64 position)
{
    QMetaObject::invokeMethod(m_worker, [worker = m_worker, position] { worker->seek(position); });
}

void MediaPlayer::setVolume(double volume)
{
    m_volume = volume;
    applyLoudness();
}

void MediaPlayer::setMuted(bool isMuted)
{
    m_isMuted = isMuted;
    applyLoudness();
}

void MediaPlayer::applyLoudness()
{
    const float linear = QAudio::convertVolume(
        static_cast<float>(m_volume), QAudio::LogarithmicVolumeScale, QAudio::LinearVolumeScale);
    QMetaObject::invokeMethod(m_worker, [worker = m_worker, linear, isMuted = m_isMuted] {
        worker->setLoudness(linear, isMuted);
    });
}

} // namespace quorvane
