// SPDX-License-Identifier: MIT
#pragma once

#include "Theme.h"

#include <QLabel>
#include <QPushButton>

namespace quorvane {

enum class Tint { neutral, accent, red, green, orange, purple, cyan };

/// The text colour of a tint, and the ground that belongs below it.
ThemeColor tintText(Tint tint);
ThemeColor tintGround(Tint tint);

/// A small rounded label that can be pressed, 24 high.
class Chip : public QPushButton
{
    Q_OBJECT

public:
    enum class Kind {
        fixed,     ///< tells something; no control
        removable, ///< a cross behind the text; a click removes it
        choice     ///< an active choice shows a check mark, others an arrow below the pointer
    };

    explicit Chip(const QString& text, Kind kind = Kind::choice, Tint tint = Tint::neutral,
                  QWidget* parent = nullptr);

    Kind kind() const { return m_kind; }
    Tint tint() const { return m_tint; }
    void setTint(Tint tint);
    /// For a choice: whether it applies now.
    void setActive(bool active);
    bool isActive() const { return m_active; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Kind m_kind;
    Tint m_tint;
    bool m_active = false;
};

/// A small tinted word or number, 18 high.
class Badge : public QLabel
{
    Q_OBJECT

public:
    explicit Badge(const QString& text, Tint tint = Tint::neutral, QWidget* parent = nullptr);

    void setTint(Tint tint);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Tint m_tint;
};

/// A key as printed on a keyboard, 18 high.
class KeyCap : public QLabel
{
    Q_OBJECT

public:
    explicit KeyCap(const QString& key, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
