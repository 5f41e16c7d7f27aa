// SPDX-License-Identifier: MIT
#pragma once

#include "FilePath.h"

#include <QWidget>

namespace quorvane {

class MediaPlayer;
class MediaSlider;
class NumberCell;
class PictureView;
class ToolButton;

/// A sound or a film with its controls: play and pause, the place in it, mute and volume. Plays as
/// soon as it is open; volume and mute stay from one file to the next. Main thread.
class MediaView : public QWidget
{
    Q_OBJECT

public:
    explicit MediaView(QWidget* parent = nullptr);

    void open(const FilePath& path);
    void close();
    const MediaPlayer& player() const { return *m_player; }

    /// "0:07", "59:59", "1:00:00"
    static QString timeText(qint64 milliseconds);
    /// What is said of a sound that cannot be heard.
    static QString silenceText();

Q_SIGNALS:
    /// It is known to be playable and shows.
    void opened();
    /// Nothing of the file can be played here.
    void failed();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    class Stage;

    QWidget* makeControls();
    void showStatus();
    void showLoudness();
    void togglePlaying();

    MediaPlayer* m_player;
    Stage* m_stage;
    ToolButton* m_play;
    NumberCell* m_position;
    MediaSlider* m_place;
    NumberCell* m_duration;
    ToolButton* m_mute;
    MediaSlider* m_volume;
    bool m_isOpen = false;
};

} // namespace quorvane
