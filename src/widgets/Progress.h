// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QProgressBar>
#include <QVariantAnimation>

namespace quorvane {

/// A determinate bar, 6 high.
class ProgressBar : public QProgressBar
{
    Q_OBJECT

public:
    /// `name` is the accessible name.
    explicit ProgressBar(const QString& name, QWidget* parent = nullptr);

    /// 0 to 1; values outside are held to the nearest end.
    void setFraction(double fraction);
    double fraction() const;
    void setColor(ThemeColor color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ThemeColor m_color = ThemeColor::accent;
};

/// A rail, 4 high, with a highlight that sweeps from left to right without end while the rail
/// shows. It never reverses; with reduced motion it rests in the middle.
class SweepRail : public QProgressBar
{
    Q_OBJECT

public:
    explicit SweepRail(const QString& name, QWidget* parent = nullptr);

    /// 0 (the highlight is about to enter) to 1 (it has just left).
    qreal phase() const { return m_phase; }
    bool isSweeping() const { return m_sweep.state() == QAbstractAnimation::Running; }
    /// Where the highlight lies on a rail of the given width; reaches beyond both ends.
    static QRectF highlight(qreal width, qreal phase);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void restart();

    QVariantAnimation m_sweep;
    qreal m_phase = 0.5;
};

/// A turning arc with a text behind it, while work of unknown length runs.
class Spinner : public QProgressBar
{
    Q_OBJECT

public:
    explicit Spinner(const QString& text, QWidget* parent = nullptr);

    void setText(const QString& text);
    QString text() const override { return m_text; }
    /// Without words the spinner still tells its text to assistive technology.
    void setWordsVisible(bool visible);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QString m_text;
    bool m_wordsVisible = true;
    QVariantAnimation m_turn;
    qreal m_angle = 0; ///< degrees, clockwise from the top
};

} // namespace quorvane
