// SPDX-License-Identifier: MIT
#pragma once

#include "AppState.h"

#include <QProperty>
#include <QString>
#include <QWidget>

#include <memory>
#include <utility>
#include <vector>

namespace quorvane {

class LayoutSpinner;

/// A screen of the tree that is not drawn on a canvas. It computes its content off the main thread
/// whenever its key changes; a result for an old key is never shown, and a screen that is not on
/// show does no work. Main thread.
class KeyedScreen : public QWidget
{
    Q_OBJECT

public:
    explicit KeyedScreen(AppState& state, QWidget* parent = nullptr);
    ~KeyedScreen() override;

    bool isComputing() const { return m_task != nullptr; }

protected:
    AppState& state() const { return m_state; }
    /// The folder that the content is about. Absent without a tree.
    virtual NodePointer target() const { return m_state.shownNode(); }
    /// What the content depends on beside the tree itself.
    virtual QString key() const = 0;
    /// The hidden families as a part of a key.
    QString hiddenKey() const { return m_state.disabledBloatKey(); }
    /// Starts computing for the target; publishes through finish().
    virtual JobHandle startComputing(const NodePointer& target) = 0;
    /// Shows that there is no tree.
    virtual void clear() = 0;
    /// To be called first where a result is published.
    void finish();

    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void scheduleRefresh();
    void refresh();
    void stop();

    AppState& m_state;
    std::vector<QPropertyNotifier> m_observers;
    bool m_isScheduled = false;
    QString m_key; ///< of the content on show or on its way
    std::weak_ptr<FileNode> m_shown;
    JobHandle m_task;
    bool m_hasContent = false;
    LayoutSpinner* m_spinner;
};

} // namespace quorvane
