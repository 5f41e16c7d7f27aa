// SPDX-License-Identifier: MIT
#pragma once

#include "AppPalette.h"
#include "Appearance.h"

#include <QAbstractButton>

namespace quorvane {

/// A round sample of an accent colour with its name below. The checked one has a ring and a check
/// mark.
class AccentSwatch : public QAbstractButton
{
    Q_OBJECT

public:
    explicit AccentSwatch(AccentChoice accent, QWidget* parent = nullptr);

    AccentChoice accent() const { return m_accent; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    AccentChoice m_accent;
};

/// A palette with its sample, title and subtitle, 52 high. The checked one has a check mark at the
/// right.
class PaletteRow : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PaletteRow(AppPalette palette, QWidget* parent = nullptr);

    AppPalette palette() const { return m_palette; }
    void setCurrent(bool current);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    /// Checked by its owner alone.
    void nextCheckState() override {}

private:
    AppPalette m_palette;
};

} // namespace quorvane
