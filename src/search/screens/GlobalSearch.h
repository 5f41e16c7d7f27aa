// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QSize>
#include <QString>
#include <QWidget>

#include <functional>
#include <string>

class QRect;

namespace quorvane {

class AppState;
class SearchOverlayRoot;

/// The window of the overlay: without a frame, rounded, above all others; around its edge, where
/// windows are blended, it draws its shadow. Main thread.
class SearchPanel : public QWidget
{
    Q_OBJECT

public:
    /// Of the card that the person sees, in points.
    static constexpr QSize cardSize{620, 660};

    SearchPanel(AppState& state, const QString& initialQuery);

    SearchOverlayRoot& root() { return *m_root; }
    /// Puts the card near the top of the screen where the pointer is.
    void moveIntoPlace();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    SearchOverlayRoot* m_root;
    int m_shadowRoom; ///< around the card, in points
};

/// The search overlay of the program: opens it over whatever is on the screen, and closes it. Main
/// thread.
class GlobalSearch
{
public:
    static GlobalSearch& shared();

    /// The model that the overlay works on from now on, and how the main window comes to the front;
    /// without a model nothing opens. Both outlive the overlay, or are taken back with null.
    void install(AppState* appState, std::function<void()> showMainWindow = {});
    /// Closes the overlay if it is visible, else opens it with an empty field. The token lets it
    /// come to the front of another program; see WindowSystem.
    void toggle(const std::string& activationToken = {});
    void close();
    /// Opens it with that text; with an empty one as toggle().
    void show(const QString& query);
    /// Brings a visible overlay to the front; else opens it with the text, without white space
    /// around it.
    void openFromToolbar(const QString& text);

    bool isVisible() const;
    /// Null while there is no overlay.
    SearchPanel* panel() const { return m_panel; }
    /// Shows the window of the scan in front of all others.
    void showMainWindow() const;

private:
    GlobalSearch() = default;

    void showPanel(const QString& initialQuery, const std::string& activationToken = {});
    void bringToFront(const std::string& activationToken) const;

    AppState* m_appState = nullptr;
    std::function<void()> m_showMainWindow;
    QPointer<SearchPanel> m_panel;
    QPointer<SearchPanel> m_closing; ///< until it is deleted
};

/// Where a card stands on the available part of a screen: centred, 60 below its top.
QRect centerNearTop(const QRect& available, const QSize& size);

} // namespace quorvane
