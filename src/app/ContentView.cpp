// SPDX-License-Identifier: MIT
#include "ContentView.h"

#include "AppScreens.h"
#include "Ground.h"
#include "NavigationState.h"
#include "NoScanPromptView.h"
#include "Refresher.h"
#include "ScanErrorView.h"
#include "ScanState.h"
#include "ScreenHeader.h"
#include "SidebarView.h"
#include "WindowToolBar.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace quorvane {

ContentView::ContentView(AppState& state, const AppScreens& screens, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
    , m_sections(screens.sections)
    , m_refresher(new Refresher(this, [this] { refresh(); }))
{
    setObjectName(QStringLiteral("contentView"));
    makeColumns(screens);
    connect(m_toolBar, &WindowToolBar::sidebarToggled, this,
            [this] { setColumnVisibility(!columnVisibility()); });
    m_refresher->watch(m_navigation.section, m_scan.rootNode);
    refresh();
}

void ContentView::makeColumns(const AppScreens& screens)
{
    m_sidebar = new SidebarView(m_state, screens.sections, this);
    m_toolBar = new WindowToolBar(m_state, screens.sections, screens.visualizers, this);
    m_detail = new Ground(ThemeColor::veil, Ground::Edge::none, this);
    m_detail->setObjectName(QStringLiteral("detailArea"));
    m_stack = new QStackedLayout(m_detail);
    m_detail->installEventFilter(this);
    connect(m_stack, &QStackedLayout::currentChanged, this, &ContentView::detailChanged);

    auto* const columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    columns->addWidget(m_sidebar);
    auto* const column = new QVBoxLayout;
    column->setSpacing(0);
    column->addWidget(m_toolBar);
    column->addWidget(new ScanFailureNotice(m_state, this));
    column->addWidget(m_detail, 1);
    columns->addLayout(column, 1);
}

void ContentView::setColumnVisibility(bool visible)
{
    m_columnVisibility = visible;
    m_sidebar->setVisible(visible);
    m_toolBar->setSidebarShown(visible);
}

QRect ContentView::detailArea() const
{
    return m_detail->geometry();
}

QRect ContentView::clearDetailArea() const
{
    QRect clear = detailArea();
    const QWidget* const screen = m_stack->currentWidget();
    const auto* const header = screen == nullptr ? nullptr : screen->findChild<ScreenHeader*>();
    if (header != nullptr && header->isVisible()) {
        const QRect gap = header->clearArea().translated(header->mapTo(this, QPoint()));
        clear.setLeft(gap.left());
        clear.setRight(gap.right());
    }
    return clear;
}

bool ContentView::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) {
        Q_EMIT detailChanged();
    }
    return QWidget::eventFilter(watched, event);
}

QWidget* ContentView::screenFor(AppSection section)
{
    const auto made = m_made.find(section);
    if (made != m_made.end()) {
        return made->second;
    }
    QWidget* const screen = m_sections.make(section, m_state, m_detail);
    if (screen != nullptr) {
        m_stack->addWidget(screen);
        m_made.emplace(section, screen);
    }
    return screen;
}

NoScanPromptView* ContentView::promptFor(AppSection section)
{
    if (m_prompt == nullptr) {
        m_prompt = new NoScanPromptView(m_state, section, m_detail);
        m_stack->addWidget(m_prompt);
    } else {
        m_prompt->setSection(section);
    }
    return m_prompt;
}

void ContentView::refresh()
{
    const AppSection section = m_navigation.section.value();
    QWidget* const screen = needsScan(section) && !m_scan.hasScan()
                                ? static_cast<QWidget*>(promptFor(section))
                                : screenFor(section);
    if (screen != nullptr) {
        show(*screen);
    }
    window()->setWindowTitle(title(section));
}

/// A screen that is shown for the first time takes the focus itself, not with whatever button comes
/// first on it: a key must not trigger what the user has not seen yet.
void ContentView::show(QWidget& screen)
{
    const QWidget* const before = m_stack->currentWidget();
    const bool wasThere =
        before != nullptr && before != &screen && before->isAncestorOf(window()->focusWidget());
    const bool isNew = screen.focusWidget() == nullptr;
    m_stack->setCurrentWidget(&screen);
    if (wasThere && isNew) {
        screen.setFocus(Qt::OtherFocusReason);
    }
}

} // namespace quorvane
