// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

class QDBusVariant;
class QVariant;

namespace quorvane {

/// What the desktop asks of programs: its colour scheme and whether movement should be reduced.
/// Answers at once with what is known, asks the desktop's settings service without waiting, and
/// tells when its answer differs. QUORVANE_REDUCED_MOTION=1 or =0 in the environment overrules the
/// desktop. Main thread only.
class DesktopSettings : public QObject
{
    Q_OBJECT

public:
    /// The program has one: instance().
    DesktopSettings();
    static DesktopSettings& instance();

    bool prefersDark() const { return m_prefersDark; }
    bool reducedMotion() const { return m_reducedMotion; }

    void setPrefersDark(bool dark);
    /// What the desktop's own palette is like: decides where the settings service has no
    /// preference or there is none.
    void setPaletteIsDark(bool dark);
    void setReducedMotion(bool reduced);

    /// Asks the settings service and follows it; no bus or no service leaves everything as it is.
    void follow();

Q_SIGNALS:
    void prefersDarkChanged();
    void reducedMotionChanged();

private Q_SLOTS:
    void settingChanged(const QString& area, const QString& key, const QDBusVariant& value);

private:
    void take(const QString& area, const QString& key, const QVariant& value);
    void ask(const QString& area, const QString& key);

    bool m_prefersDark = true;
    bool m_paletteIsDark = true;
    bool m_hasPreference = false; ///< the settings service has told light or dark
    bool m_reducedMotion = false;
    bool m_motionForced = false;
    bool m_following = false;
};

/// True when nothing should move: animations then take no time at all.
bool reducedMotion();

/// `milliseconds`, or 0 with reduced motion.
int animationDuration(int milliseconds);

} // namespace quorvane
