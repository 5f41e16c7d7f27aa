// SPDX-License-Identifier: MIT
#include "MediaView.h"

#include "Button.h"
#include "Label.h"
#include "MediaPlayer.h"
#include "MediaSlider.h"
#include "Painting.h"
#include "PictureView.h"
#include "Symbols.h"
#include "Tokens.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QResizeEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace quorvane {
namespace {

constexpr int volumeSteps = 100;
constexpr int volumeWidth = 88;
constexpr int soundPlate = 176;
constexpr int soundSymbol = 72;
constexpr int soundNoteGap = 16;
/// One press of an arrow key and one of a page key on the rail, in milliseconds.
constexpr int seekStep = 5000;
constexpr int seekPage = 30000;

} // namespace

/// A film's frames on black; for a sound, which has none, its symbol, with a word where it cannot
/// be heard.
class MediaView::Stage : public PictureView
{
public:
    Stage() { setFillsRoom(true); }

    void setMedia(const MediaStatus& status)
    {
        m_hasFilm = status.hasFilm;
        m_hasSound = status.hasSound || status.isSilent;
        m_isSilent = status.isSilent;
        setAccessibleDescription(m_isSilent ? MediaView::silenceText() : QString());
        update();
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        QPainter painter(this);
        if (m_hasFilm) {
            painter.fillRect(rect(), Qt::black);
        } else if (m_hasSound) {
            painter.setRenderHint(QPainter::Antialiasing);
            paintSound(painter);
        }
        painter.end();
        PictureView::paintEvent(event);
    }

private:
    void paintSound(QPainter& painter) const
    {
        QRectF plate(0, 0, soundPlate, soundPlate);
        plate.moveCenter(QRectF(rect()).center());
        paintPanel(painter, plate, radius::surface, themeColor(ThemeColor::raised),
                   themeColor(ThemeColor::hairline));
        paintSymbol(painter, QStringLiteral("music.note"), plate, soundSymbol,
                    themeColor(m_isSilent ? ThemeColor::textDisabled : ThemeColor::accentText));
        if (m_isSilent) {
            const QRectF line(0, plate.bottom() + soundNoteGap, width(),
                              typeMeasure(TextStyle::caption).lineHeight);
            paintText(painter, line, Qt::AlignCenter, TextStyle::caption,
                      themeColor(ThemeColor::text2), MediaView::silenceText());
        }
    }

    bool m_hasFilm = false;
    bool m_hasSound = false;
    bool m_isSilent = false;
};

MediaView::MediaView(QWidget* parent)
    : QWidget(parent)
    , m_player(new MediaPlayer(this))
    , m_stage(new Stage)
    , m_play(new ToolButton(QStringLiteral("pause.fill"), tr("Pause")))
    , m_position(new NumberCell(QStringLiteral("00:00"), TextStyle::caption, ThemeColor::text2))
    , m_place(new MediaSlider(tr("Position")))
    , m_duration(new NumberCell(QStringLiteral("00:00"), TextStyle::caption, ThemeColor::text2))
    , m_mute(new ToolButton(QStringLiteral("speaker.wave.2.fill"), tr("Mute")))
    , m_volume(new MediaSlider(tr("Volume")))
{
    setObjectName(QStringLiteral("previewMedia"));
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing::m);
    column->addWidget(m_stage, 1);
    column->addWidget(makeControls());
    connect(m_player, &MediaPlayer::statusChanged, this, &MediaView::showStatus);
    connect(m_player, &MediaPlayer::frameReady, m_stage, &PictureView::setPicture);
}

QWidget* MediaView::makeControls()
{
    auto* const controls = new QWidget;
    auto* const row = new QHBoxLayout(controls);
    row->setContentsMargins(spacing::m, 0, spacing::l, 0);
    row->setSpacing(spacing::s);
    m_play->setObjectName(QStringLiteral("mediaPlayButton"));
    connect(m_play, &QAbstractButton::clicked, this, &MediaView::togglePlaying);
    m_place->setObjectName(QStringLiteral("mediaPosition"));
    m_place->setSingleStep(seekStep);
    m_place->setPageStep(seekPage);
    connect(m_place, &QAbstractSlider::actionTriggered, this,
            [this] { m_player->seek(m_place->sliderPosition()); });
    connect(m_place, &QAbstractSlider::sliderMoved, this,
            [this](int position) { m_player->seek(position); });
    m_mute->setObjectName(QStringLiteral("mediaMuteButton"));
    connect(m_mute, &QAbstractButton::clicked, this, [this] {
        m_player->setMuted(!m_player->isMuted());
        showLoudness();
    });
    m_volume->setObjectName(QStringLiteral("mediaVolume"));
    m_volume->setRange(0, volumeSteps);
    m_volume->setValue(volumeSteps);
    m_volume->setFixedWidth(volumeWidth);
    connect(m_volume, &QAbstractSlider::valueChanged, this, [this](int value) {
        m_player->setVolume(double(value) / volumeSteps);
        m_player->setMuted(value == 0);
        showLoudness();
    });
    row->addWidget(m_play);
    row->addWidget(m_position);
    row->addWidget(m_place, 1);
    row->addWidget(m_duration);
    row->addSpacing(spacing::s);
    row->addWidget(m_mute);
    row->addWidget(m_volume);
    return controls;
}

void MediaView::open(const FilePath& path)
{
    close();
    m_player->setFrameRoom(m_stage->size() * devicePixelRatioF());
    m_player->open(path);
}

void MediaView::close()
{
    m_isOpen = false;
    m_player->close();
    m_stage->setPicture({});
    m_stage->setMedia({});
}

void MediaView::showStatus()
{
    const MediaStatus& status = m_player->status();
    if (status.phase == MediaStatus::Phase::failed) {
        Q_EMIT failed();
        return;
    }
    if (status.phase == MediaStatus::Phase::opening) {
        return;
    }
    m_play->setSymbol(status.isPlaying ? QStringLiteral("pause.fill")
                                       : QStringLiteral("play.fill"));
    const QString name = status.isPlaying ? tr("Pause") : tr("Play");
    m_play->setToolTip(name);
    m_play->setAccessibleName(name);
    m_play->setEnabled(!status.isSilent);
    const QString widest = timeText(status.duration).replace(QLatin1Char('1'), QLatin1Char('0'));
    m_position->setWidest(widest);
    m_duration->setWidest(widest);
    m_position->setText(timeText(status.position));
    m_duration->setText(timeText(status.duration));
    m_place->setEnabled(status.duration > 0 && !status.isSilent);
    if (!m_place->isSliderDown()) {
        constexpr qint64 longest = std::numeric_limits<int>::max();
        m_place->setMaximum(static_cast<int>(std::min(status.duration, longest)));
        m_place->setValue(static_cast<int>(std::min(status.position, longest)));
    }
    m_stage->setMedia(status);
    m_mute->setEnabled(status.hasSound);
    m_volume->setEnabled(status.hasSound);
    if (!m_isOpen) {
        m_isOpen = true;
        Q_EMIT opened();
    }
}

void MediaView::showLoudness()
{
    const bool isMuted = m_player->isMuted();
    m_mute->setSymbol(isMuted ? QStringLiteral("speaker.slash.fill")
                              : QStringLiteral("speaker.wave.2.fill"));
    const QString name = isMuted ? tr("Unmute") : tr("Mute");
    m_mute->setToolTip(name);
    m_mute->setAccessibleName(name);
}

void MediaView::togglePlaying()
{
    m_player->setPlaying(!m_player->status().isPlaying);
}

void MediaView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_player->setFrameRoom(m_stage->size() * devicePixelRatioF());
}

QString MediaView::silenceText()
{
    return tr("No device to play sound");
}

QString MediaView::timeText(qint64 milliseconds)
{
    constexpr qint64 perMinute = 60;
    constexpr qint64 perHour = 3600;
    const qint64 seconds = milliseconds / 1000;
    const qint64 hours = seconds / perHour;
    const auto two = [](qint64 number) {
        return QString::number(number).rightJustified(2, QLatin1Char('0'));
    };
    const QString tail = QLatin1Char(':') % two(seconds % perMinute);
    if (hours == 0) {
        return QString::number(seconds / perMinute) % tail;
    }
    return QString::number(hours) % QLatin1Char(':') % two(seconds % perHour / perMinute) % tail;
}

} // namespace quorvane
