// SPDX-License-Identifier: MIT
#include "GlobalSearch.h"

#include "FacetHost.h"
#include "Popover.h"
#include "SearchOverlayRoot.h"
#include "Tokens.h"
#include "WindowSystem.h"

#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QPainterPath>
#include <QRect>
#include <QRegion>
#include <QScreen>

#include <utility>

namespace quorvane {
namespace {

constexpr int distanceFromTop = 60;
constexpr int shadowReach = 40;

bool blendsWindows(AppState& state)
{
    const WindowSystem* const windows = FacetHost::of(state).platform().windowSystem;
    return windows == nullptr || windows->blendsWindows();
}

} // namespace

SearchPanel::SearchPanel(AppState& state, const QString& initialQuery)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::NoDropShadowWindowHint)
    , m_root(new SearchOverlayRoot(
          state, [] { GlobalSearch::shared().close(); }, initialQuery, this))
    , m_shadowRoom(blendsWindows(state) ? shadowReach : 0)
{
    setObjectName(QStringLiteral("searchPanel"));
    setWindowTitle(tr("Spotlight Search"));
    // The program may run on without any window; this one is not what keeps it.
    setAttribute(Qt::WA_QuitOnClose, false);
    m_root->setGeometry(QRect(QPoint(m_shadowRoom, m_shadowRoom), cardSize));
    setFixedSize(cardSize + QSize(2 * m_shadowRoom, 2 * m_shadowRoom));
    if (m_shadowRoom > 0) {
        setAttribute(Qt::WA_TranslucentBackground);
        auto* const shadow = new DropShadow(*m_root, DropShadow::Depth::dialog, radius::surface);
        shadow->stackUnder(m_root);
        return;
    }
    // Corners that cannot be blended are cut off.
    QPainterPath outline;
    outline.addRoundedRect(m_root->geometry(), radius::surface, radius::surface);
    setMask(QRegion(outline.toFillPolygon().toPolygon()));
}

void SearchPanel::moveIntoPlace()
{
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    screen = screen == nullptr ? QGuiApplication::primaryScreen() : screen;
    if (screen != nullptr) {
        const QRect place = centerNearTop(screen->availableGeometry(), cardSize);
        move(place.topLeft() - QPoint(m_shadowRoom, m_shadowRoom));
    }
}

void SearchPanel::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    m_root->end();
}

QRect centerNearTop(const QRect& available, const QSize& size)
{
    return {available.x() + (available.width() - size.width()) / 2, available.y() + distanceFromTop,
            size.width(), size.height()};
}

GlobalSearch& GlobalSearch::shared()
{
    static GlobalSearch search;
    return search;
}

void GlobalSearch::install(AppState* appState, std::function<void()> showMainWindow)
{
    close();
    // It may still be on its way out, and the model is about to end.
    delete m_closing;
    m_appState = appState;
    m_showMainWindow = std::move(showMainWindow);
}

bool GlobalSearch::isVisible() const
{
    return m_panel != nullptr && m_panel->isVisible();
}

void GlobalSearch::toggle(const std::string& activationToken)
{
    if (isVisible()) {
        close();
    } else {
        showPanel({}, activationToken);
    }
}

void GlobalSearch::show(const QString& query)
{
    if (query.isEmpty()) {
        toggle();
    } else {
        showPanel(query);
    }
}

void GlobalSearch::openFromToolbar(const QString& text)
{
    if (isVisible()) {
        bringToFront({});
    } else {
        showPanel(text.trimmed());
    }
}

void GlobalSearch::close()
{
    if (m_panel != nullptr) {
        m_closing = std::exchange(m_panel, nullptr);
        m_closing->close();
    }
}

void GlobalSearch::showPanel(const QString& initialQuery, const std::string& activationToken)
{
    close();
    if (m_appState == nullptr) {
        return;
    }
    m_panel = new SearchPanel(*m_appState, initialQuery);
    m_panel->moveIntoPlace();
    m_panel->show();
    bringToFront(activationToken);
}

void GlobalSearch::bringToFront(const std::string& activationToken) const
{
    if (WindowSystem* const windows = FacetHost::of(*m_appState).platform().windowSystem) {
        windows->activate(m_panel->winId(), activationToken);
    }
    m_panel->raise();
    m_panel->activateWindow();
}

void GlobalSearch::showMainWindow() const
{
    if (m_showMainWindow) {
        m_showMainWindow();
    }
}

} // namespace quorvane
