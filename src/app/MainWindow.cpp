// SPDX-License-Identifier: MIT
#include "MainWindow.h"

#include "AppMenuBar.h"
#include "AppState.h"
#include "ContentView.h"
#include "Dialog.h"
#include "FlashPresenter.h"
#include "Ground.h"
#include "NodeColors.h"
#include "Refresher.h"
#include "Tokens.h"
#include "WindowPreview.h"

#include <QCloseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {
namespace {

QColor washColor(AppPalette palette)
{
    const Color tint = NodeColors::shellTint(palette);
    return QColor::fromRgbF(static_cast<float>(tint.r), static_cast<float>(tint.g),
                            static_cast<float>(tint.b),
                            static_cast<float>(tint.a * MainWindow::tintOpacity));
}

} // namespace

MainWindow::MainWindow(AppState& state, AppScreens screens)
    : m_state(state)
    , m_screens(std::move(screens))
    , m_content(new ContentView(state, m_screens, this))
{
    setObjectName(QStringLiteral("mainWindow"));
    auto* const menuGround = new Ground(ThemeColor::side, Ground::Edge::bottom, this);
    auto* const menuBar = new AppMenuBar(state, m_screens.sections, menuGround);
    auto* const menuRow = new QVBoxLayout(menuGround);
    menuRow->setContentsMargins(0, 0, 0, 0);
    menuRow->addWidget(menuBar);
    menuGround->setFixedHeight(measure::menuBarHeight);
    // Where the desktop shows the menus itself, the window has no place for them.
    menuGround->setVisible(!menuBar->isNativeMenuBar());
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(menuGround);
    column->addWidget(m_content);

    m_flash = new FlashPresenter(state, *this, [this] {
        const QPoint place = m_content->pos();
        return FlashPresenter::Room{m_content->detailArea().translated(place),
                                    m_content->clearDetailArea().translated(place)};
    });
    // Behind the layout of what has just come on show.
    connect(m_content, &ContentView::detailChanged, m_flash, &FlashPresenter::place,
            Qt::QueuedConnection);
    new WindowPreview(state, this);
    m_paletteChanged = state.storagePalette.addNotifier([this] { update(); });
    m_farewellRefresher = new Refresher(this, [this] { refreshFarewell(); });
    m_farewellRefresher->watch(state.isTrashingStaged, state.trashStatus);
    setMinimumSize(minimumContentSize);
    takeDefaultSize();
}

/// The default size, or what the screen has room for.
void MainWindow::takeDefaultSize()
{
    const QSize room = screen()->availableSize();
    resize(defaultSize.boundedTo(room).expandedTo(minimumContentSize));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!m_state.isTrashingStaged.value()) {
        QWidget::closeEvent(event);
        return;
    }
    event->ignore();
    if (m_farewell) {
        return;
    }
    m_farewell = new Dialog(this);
    m_farewell->setObjectName(QStringLiteral("waitForTrashDialog"));
    m_farewell->setSymbol(QStringLiteral("trash.fill"), Tint::neutral);
    m_farewell->setTitle(tr("Quorvane closes when the move is done"));
    m_farewell->addButton(tr("Keep Open"), ButtonRole::bordered, false);
    connect(m_farewell, &Dialog::rejected, this, [this] {
        m_farewell = nullptr;
        m_isQuitting = false;
    });
    refreshFarewell();
    m_farewell->open();
}

void MainWindow::refreshFarewell()
{
    if (!m_farewell) {
        return;
    }
    if (m_state.isTrashingStaged.value()) {
        m_farewell->setText(m_state.trashStatus.value().value_or(QString()));
        return;
    }
    std::exchange(m_farewell, nullptr)->closeDialog();
    if (std::exchange(m_isQuitting, false)) {
        QCoreApplication::quit();
    } else {
        close();
    }
}

void MainWindow::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // The keyboard starts at the window itself: the first Tab leads to the first control.
    if (focusWidget() == nullptr) {
        setFocus(Qt::OtherFocusReason);
    }
}

void MainWindow::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    m_ground.paint(painter, size(), event->rect(), themeColor(ThemeColor::window),
                   washColor(m_state.palette()));
}

} // namespace quorvane
