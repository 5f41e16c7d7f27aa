// SPDX-License-Identifier: MIT
#pragma once

#include "FileNode.h"

#include <QAbstractButton>
#include <QProperty>
#include <QWidget>

#include <vector>

namespace quorvane {

class AppState;
class NavigationState;
class ScanState;

/// One folder of the way down to the focus.
class CrumbButton final : public QAbstractButton
{
    Q_OBJECT

public:
    CrumbButton(const QString& name, bool isCurrent, QWidget* parent);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    bool m_isCurrent;
};

/// The chain of folders from the root down to the one on show, each a button that focuses it, and
/// what the focus holds. Empty at the root. A chain that does not fit loses its first folders.
class BreadcrumbBar : public QWidget
{
    Q_OBJECT

public:
    explicit BreadcrumbBar(AppState& state, QWidget* parent = nullptr);

    /// The folders from the root down to node; empty for the root itself and for no node.
    static std::vector<FileNode*> chain(FileNode* node);
    /// "{bytes} · {fileCount} files"
    static QString summary(const FileNode& focus);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void rebuild();
    void placeCrumbs();

    ScanState& m_scan;
    NavigationState& m_navigation;
    std::vector<QPropertyNotifier> m_observers;
    std::vector<CrumbButton*> m_crumbs;
    std::vector<int> m_chevrons; ///< left edges of those on show
    QString m_summary;
};

} // namespace quorvane
