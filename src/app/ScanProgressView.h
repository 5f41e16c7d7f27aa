// SPDX-License-Identifier: MIT
#pragma once

#include "Ground.h"

#include <QProperty>

namespace quorvane {

class AppState;
class ScanState;
class ElidedLabel;
class Refresher;
class SpringAnimation;
class SweepRail;
class TabularLabel;

/// A running scan: bytes, folders and files so far, where it is, and the button to stop it. Follows
/// the progress only while it is on show. Main thread.
class ScanProgressView : public GlowView
{
    Q_OBJECT

public:
    explicit ScanProgressView(AppState& state, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeColumn();
    QWidget* makeLiveLine();
    void followProgress();
    void showBytes(double bytes);
    void showLiveLine();

    ScanState& m_scan;
    TabularLabel* m_bytes;
    TabularLabel* m_folders;
    TabularLabel* m_files;
    SweepRail* m_sweep;
    ElidedLabel* m_liveName;
    ElidedLabel* m_liveParent;
    SpringAnimation* m_byteSpring;
    bool m_hasReportedPath; ///< during this scan
    Refresher* m_refresher;
    QPropertyNotifier m_scanStarted;
    QPropertyNotifier m_pathReported;
};

} // namespace quorvane
