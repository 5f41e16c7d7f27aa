// SPDX-License-Identifier: MIT
#include "BreadcrumbBar.h"

#include "NavigationState.h"
#include "Painting.h"
#include "ScanState.h"
#include "Symbols.h"
#include "Theme.h"
#include "Tokens.h"

#include <QEnterEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QResizeEvent>

#include <algorithm>

namespace quorvane {
namespace {

constexpr int chevronSide = 11;
constexpr int chevronBefore = 4;
constexpr int chevronAfter = 1;
constexpr int crumbPadding = 4;
constexpr int crumbHeight = 24;
constexpr int maxCrumbWidth = 260;
constexpr int summaryGap = 24;
constexpr int leftMargin = spacing::s;
constexpr int rightMargin = 18;
/// A chain of ten thousand folders needs no ten thousand buttons: no window shows more of them.
constexpr std::size_t maxCrumbs = 64;

} // namespace

CrumbButton::CrumbButton(const QString& name, bool isCurrent, QWidget* parent)
    : QAbstractButton(parent)
    , m_isCurrent(isCurrent)
{
    setText(name);
    // An ampersand in a name is no shortcut.
    setShortcut({});
    setAccessibleName(name);
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::PointingHandCursor);
}

QSize CrumbButton::sizeHint() const
{
    const TextStyle style = m_isCurrent ? TextStyle::captionMedium : TextStyle::caption;
    return {std::min(textWidth(style, text()) + 2 * crumbPadding, maxCrumbWidth), crumbHeight};
}

void CrumbButton::paintEvent(QPaintEvent* event)
{
    static_cast<void>(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area(rect());
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(themeColor(isDown() ? ThemeColor::press : ThemeColor::hover));
        painter.drawRoundedRect(area, radius::small, radius::small);
    }
    paintText(painter, area.adjusted(crumbPadding, 0, -crumbPadding + 1, 0),
              Qt::AlignLeft | Qt::AlignVCenter,
              m_isCurrent ? TextStyle::captionMedium : TextStyle::caption,
              themeColor(m_isCurrent ? ThemeColor::accentText : ThemeColor::text2), text(),
              Qt::ElideMiddle);
    if (hasFocus()) {
        paintFocusLine(painter, area, radius::small);
    }
}

void CrumbButton::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    update();
}

void CrumbButton::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    update();
}

BreadcrumbBar::BreadcrumbBar(AppState& state, QWidget* parent)
    : QWidget(parent)
    , m_scan(ScanState::of(state))
    , m_navigation(NavigationState::of(state))
{
    setObjectName(QStringLiteral("breadcrumbBar"));
    setAccessibleName(tr("Path"));
    setFixedHeight(measure::crumbsHeight);
    const auto changed = [this] { rebuild(); };
    m_observers.push_back(m_scan.rootNode.addNotifier(changed));
    m_observers.push_back(m_navigation.focusNode.addNotifier(changed));
    connect(&ThemeNotifier::instance(), &ThemeNotifier::themeChanged, this, [this] {
        placeCrumbs();
        update();
    });
    rebuild();
}

std::vector<FileNode*> BreadcrumbBar::chain(FileNode* node)
{
    std::vector<FileNode*> nodes;
    if (node == nullptr || node->parent() == nullptr) {
        return nodes;
    }
    for (; node != nullptr; node = node->parent()) {
        nodes.push_back(node);
    }
    std::reverse(nodes.begin(), nodes.end());
    return nodes;
}

QString BreadcrumbBar::summary(const FileNode& focus)
{
    return focus.formattedBytes() + QStringLiteral(" · ") + QString::number(focus.fileCount()) +
           QStringLiteral(" files");
}

void BreadcrumbBar::rebuild()
{
    for (CrumbButton* const crumb : m_crumbs) {
        crumb->hide();
        crumb->deleteLater();
    }
    m_crumbs.clear();
    const NodePointer focus = m_navigation.focusNode.value();
    const NodePointer shown = m_navigation.shownNode();
    std::vector<FileNode*> nodes = chain(shown.get());
    if (nodes.size() > maxCrumbs) {
        nodes.erase(nodes.begin(), nodes.end() - static_cast<std::ptrdiff_t>(maxCrumbs));
    }
    for (FileNode* const node : nodes) {
        auto* const crumb = new CrumbButton(node->displayName(), node == focus.get(), this);
        crumb->setObjectName(QStringLiteral("crumb-") + QString::number(node->id()));
        // A crumb that is yet to be deleted must not hold an old tree.
        const std::weak_ptr<FileNode> target = NodePointer(shown, node);
        connect(crumb, &QAbstractButton::clicked, this, [this, target] {
            if (const NodePointer folder = target.lock()) {
                m_navigation.focus(folder);
            }
        });
        m_crumbs.push_back(crumb);
    }
    m_summary = focus ? summary(*focus) : QString();
    placeCrumbs();
    update();
}

void BreadcrumbBar::placeCrumbs()
{
    constexpr int step = chevronBefore + chevronSide + chevronAfter;
    const int room =
        width() - leftMargin - rightMargin -
        (m_summary.isEmpty() ? 0 : textWidth(TextStyle::caption, m_summary) + summaryGap);
    // The last crumbs matter most: they are kept, from the end, as far as they fit.
    std::size_t first = m_crumbs.size();
    int used = 0;
    while (first > 0) {
        const int next = m_crumbs[first - 1]->sizeHint().width() + step;
        if (used + next > room && first < m_crumbs.size()) {
            break;
        }
        used += next;
        --first;
    }
    m_chevrons.clear();
    int x = leftMargin;
    for (std::size_t i = 0; i < m_crumbs.size(); ++i) {
        m_crumbs[i]->setVisible(i >= first);
        if (i < first) {
            continue;
        }
        m_chevrons.push_back(x + chevronBefore);
        x += step;
        const int crumbWidth = std::min(m_crumbs[i]->sizeHint().width(), std::max(room, 0));
        m_crumbs[i]->setGeometry(x, (height() - crumbHeight) / 2, crumbWidth, crumbHeight);
        x += crumbWidth;
    }
}

QSize BreadcrumbBar::sizeHint() const
{
    return {400, measure::crumbsHeight};
}

void BreadcrumbBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeCrumbs();
}

void BreadcrumbBar::paintEvent(QPaintEvent* event)
{
    static_cast<void>(event);
    QPainter painter(this);
    for (const int x : m_chevrons) {
        const QRect place(x, (height() - chevronSide) / 2, chevronSide, chevronSide);
        paintSymbol(painter, QStringLiteral("chevron.right"), place, chevronSide,
                    themeColor(ThemeColor::text3));
    }
    if (!m_summary.isEmpty()) {
        paintText(painter, QRectF(rect()).adjusted(0, 0, -rightMargin, 0),
                  Qt::AlignRight | Qt::AlignVCenter, TextStyle::caption,
                  themeColor(ThemeColor::text2), m_summary);
    }
}

} // namespace quorvane
